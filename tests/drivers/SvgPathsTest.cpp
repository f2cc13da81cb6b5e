// Polylines, line segments, arcs, points, circles and fills as the SVG writer writes them.
#include <cmath>
#include <limits>

#include "tests/drivers/SvgDriverFixture.h"

namespace {

using svgtest::CountOf;
using svgtest::SvgDriverTest;

class SvgPaths : public SvgDriverTest {
protected:
  DrvPolyline Record(std::vector<OdGePoint2d> points, double width = 0) {
    DrvPolyline p;
    p.points = std::move(points);
    p.width = width;
    p.lineTypeName = L"CONTINUOUS";
    return p;
  }
  std::string Finish() {
    std::string text = WrappedPending();
    EXPECT_EQ(svgtest::XmlTextProblems(text, "dm_svg_paths.svg"), "") << text.substr(0, 2000);
    return text;
  }
};

TEST_F(SvgPaths, PolylineThroughTheWholeDriver) {
  BeginView(L"Model", kViewModelSpace, 0, 0, 100, 100);
  Layer(L"Walls");
  Polyline({{0, 0}, {50, 0}, {50, 30}});
  ASSERT_EQ(OutputView(), 1);
  std::string file = Written("plan.svg");
  EXPECT_NE(file.find("d=\"M0,100h50v-30\" />"), std::string::npos) << file;
  EXPECT_EQ(svgtest::XmlProblems(Path("plan.svg")), "");
}

TEST_F(SvgPaths, StepsAndLongStepsInOneRecord) {
  StartDirectOutput();
  svg().WritePolylines({Record({{0, 50}, {150, 50}, {249.99, 50}, {249.99, 50.0005}, {249.99, -50}, {260, -40}})},
                       false);
  EXPECT_NE(Finish().find("d=\"M0,50H150h99.99V150l10.01,-10\" />"), std::string::npos);
}

TEST_F(SvgPaths, MergingRules) {
  struct Case {
    const char* what;
    void (*second)(DrvPolyline&);
    int elements;
  };
  const Case cases[] = {
      {"equal attributes share an element", [](DrvPolyline&) {}, 1},
      {"another width", [](DrvPolyline& p) { p.width = 2; }, 2},
      {"another line weight", [](DrvPolyline& p) { p.lineWeight = 35; }, 2},
      {"another line type", [](DrvPolyline& p) { p.lineTypeName = L"DASHED"; }, 2},
      {"a handle", [](DrvPolyline& p) { p.hasHandle = true; }, 2},
      {"a room id", [](DrvPolyline& p) { p.roomId = "101"; }, 2},
      {"an area", [](DrvPolyline& p) { p.area = 4; }, 2},
      {"closed", [](DrvPolyline& p) { p.closedKind = 1; }, 2},
      {"a thousand points", [](DrvPolyline& p) { p.points.resize(1000, {70, 70}); }, 2},
  };
  for (const Case& c : cases) {
    SetUp();
    StartDirectOutput();
    DrvPolyline first = Record({{0, 0}, {10, 0}});
    DrvPolyline second = Record({{20, 0}, {30, 5}});
    c.second(second);
    svg().WritePolylines({first, second}, false);
    std::string text = Finish();
    EXPECT_EQ(CountOf(text, "<path "), c.elements) << c.what;
    EXPECT_EQ(CountOf(text, "M"), 2) << c.what;
    TearDown();
  }
}

TEST_F(SvgPaths, WithHandlesEveryRecordIsItsOwnElement) {
  StartDirectOutput(2);
  DrvPolyline a = Record({{0, 0}, {10, 0}});
  a.handle = "2A4";
  DrvPolyline b = Record({{0, 5}, {10, 5}});
  b.handle = "2A5";
  svg().WritePolylines({a, b}, true);
  std::string text = Finish();
  EXPECT_EQ(CountOf(text, "<path "), 2);
  EXPECT_NE(text.find("fill=\"none\" class=\"sClr_red ZW  vtrl_handles\" vtrl:node='NODE_1'  vtrl:handle='2A4' d=\"M0,100h10"),
            std::string::npos)
      << text;
  EXPECT_NE(text.find("vtrl:node='NODE_2'  vtrl:handle='2A5'"), std::string::npos);
}

TEST_F(SvgPaths, RoomOutlines) {
  StartDirectOutput(2);
  DrvPolyline room = Record({{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}});
  room.roomId = "R'1<";
  room.area = 100;
  room.closedKind = 1;
  svg().SetListArea(true);
  svg().WritePolylines({room}, false);
  std::string text = Finish();
  EXPECT_NE(text.find("class=\"sClr_red  ZW vtrl_nodes\" vtrl:node='NODE_1' vtrl:roomId='R&apos;1&lt;' "
                      "fill=\"transparent\" vtrl:area=\"100\" d=\"M0,100h10v-10h-10v10\" />"),
            std::string::npos)
      << text;
}

TEST_F(SvgPaths, LongPolylinesAreSplitEvery200Points) {
  StartDirectOutput();
  std::vector<OdGePoint2d> points;
  for (int i = 0; i < 450; ++i) points.push_back({i * 0.2, (i % 2) * 0.5});
  svg().WritePolylines({Record(points)}, false);
  std::string text = Finish();
  EXPECT_EQ(CountOf(text, "<path "), 3);
  EXPECT_EQ(CountOf(text, "M"), 3);
  // The second element starts at point 200 (index 199), where the first stopped.
  EXPECT_NE(text.find("\" />\n<path id=\"cv_2\" fill=\"none\" class=\"sClr_cyan ZW \" d=\"M39.8,99.5l"), std::string::npos)
      << text.substr(0, 300);
}

TEST_F(SvgPaths, WidthsAndDashes) {
  struct Case {
    const char* what;
    DrvPolyline record;
    std::vector<std::string> present;
    std::vector<std::string> absent;
  };
  auto with = [&](double width, int lineWeight, bool absolute, const wchar_t* type, double scale) {
    DrvPolyline p = Record({{0, 0}, {10, 0}}, width);
    p.lineWeight = lineWeight;
    p.absoluteWidth = absolute;
    p.lineTypeName = type;
    p.lineTypeScale = scale;
    return p;
  };
  svg().DefineLineType(L"DASHED", {0.5, -0.25});
  svg().DefineLineType(L"DOTS", {0, -0.25});
  const Case cases[] = {
      {"zero width", with(0, 0, true, L"CONTINUOUS", 1), {"class=\"sClr_cyan ZW \""}, {"stroke-width"}},
      {"line weight 0.35 mm", with(35, 35, false, L"CONTINUOUS", 1), {"class=\"sClr_cyan \" stroke-width=\"0.35\""}, {"ZW"}},
      {"below the minimum", with(0.5, 0, false, L"CONTINUOUS", 1), {"stroke-width=\"0.01\""}, {}},
      {"dashed at scale 1", with(0, 0, true, L"DASHED", 1), {"class=\"sClr_cyan ZW sLt_DASHED\""}, {"stroke-dasharray"}},
      {"dashed at scale 2", with(0, 0, true, L"DASHED", 2),
       {"class=\"sClr_cyan ZW\" stroke-dasharray=\"16.000000 8.000000\" "}, {"sLt_"}},
      {"dots at scale 2", with(0, 0, true, L"DOTS", 2), {"stroke-dasharray=\"0.400000 8.000000\" "}, {}},
      {"unknown line type at scale 2", with(0, 0, true, L"NOSUCH", 2), {}, {"stroke-dasharray", "sLt_"}},
  };
  for (const Case& c : cases) {
    SetUp();
    svg().DefineLineType(L"DASHED", {0.5, -0.25});
    svg().DefineLineType(L"DOTS", {0, -0.25});
    StartDirectOutput();
    svg().WritePolylines({c.record}, false);
    std::string text = Finish();
    for (const auto& part : c.present) EXPECT_NE(text.find(part), std::string::npos) << c.what << "\n" << text;
    for (const auto& part : c.absent) EXPECT_EQ(text.find(part), std::string::npos) << c.what << "\n" << text;
    TearDown();
  }
}

TEST_F(SvgPaths, StrokeWidthOperation) {
  // Geometric widths on a page smaller than the drawing (SVG scale above 1) follow the scale.
  EXPECT_DOUBLE_EQ(svg().GetStrokeWidth(35, 35, false), 0.35);
  EXPECT_DOUBLE_EQ(svg().GetStrokeWidth(35, 5000, false), 0.35);
  EXPECT_DOUBLE_EQ(svg().GetStrokeWidth(0.2, 0, false), 0.01);
  svg().SetLineWidthScale(2);
  EXPECT_DOUBLE_EQ(svg().GetStrokeWidth(35, 35, false), 0.7);
  // The minimum is compared before the scale applies: 0.009 * 2 stays 0.01.
  EXPECT_DOUBLE_EQ(svg().GetStrokeWidth(0.9, 0, false), 0.01);
  EXPECT_DOUBLE_EQ(svg().GetStrokeWidth(2, 0, true), 0.04);
}

TEST_F(SvgPaths, LineSegmentsMergeWhileTheirStrokeAgrees) {
  BeginView(L"Model", kViewModelSpace, 0, 0, 100, 100);
  Layer(L"Walls", 2);
  svg().DrawLine(L"CONTINUOUS", true, 1, 0, 0, 10, 0, 1, 0);
  svg().DrawLine(L"CONTINUOUS", true, 1, 0, 10, 0, 20, 1, 0);
  svg().DrawLine(L"CONTINUOUS", true, 1, 0, 10, 0, 20, 1, 0);  // a repeat: stored once
  svg().DrawLine(L"CONTINUOUS", true, 0, 0, 30, 200, 30, 1, 35);
  svg().DrawLine(L"CONTINUOUS", true, 1, 5, 5, 5, 5, 1, 0);  // zero length: not stored
  ASSERT_EQ(OutputView(), 1);
  std::string file = Written("plan.svg");
  EXPECT_NE(file.find("class=\"sClr_red  ZW\" d=\"M0,100h10M0,90v-10\" />"), std::string::npos) << file;
  EXPECT_NE(file.find("class=\"sClr_red \" stroke-width=\"0.35\" d=\"M0,70H200\" />"), std::string::npos) << file;
  EXPECT_EQ(svgtest::XmlProblems(Path("plan.svg")), "");
}

TEST_F(SvgPaths, ArcsPointsCirclesAndFills) {
  StartDirectOutput(2);
  DrvArc arc;
  arc.center = {50, 50};
  arc.radius = 10;
  arc.startAngle = 0;
  arc.endAngle = 270;
  arc.lineTypeName = L"CONTINUOUS";
  svg().WriteArcs({arc});
  svg().WritePoints({{10, 10}, {20, 10}});
  svg().SetPointCircle(1);
  svg().WritePoints({{30, 30}});
  DrvCircle circle;
  circle.center = {50, 50};
  circle.radiusX = circle.radiusY = 5;
  circle.lineTypeName = L"CONTINUOUS";
  DrvCircle ellipse = circle;
  ellipse.isEllipse = true;
  ellipse.radiusY = 2;
  ellipse.rotation = 30;
  ellipse.filled = true;
  ellipse.opacity = 0.5;
  svg().WriteCircles({circle, ellipse});
  DrvFill fill{{{0, 0}, {10, 0}, {10, 10}}, "1F", 2};
  DrvFill tooSmall{{{0, 0}}, "", 2};
  svg().WriteFills({fill, tooSmall});
  std::string text = Finish();
  const char* expected[] = {
      "class=\"sClr_red  ZW\" d=\"M60,50A 10 10 0 1 0 ",
      "class=\"qwsPoints sClr_red\" stroke=\"red\" d=\"M9.99,90h0.01m9.99,-0h0.01\" />",
      "class=\"qwsPoints fClr_red\" cx=\"30\" cy=\"70\" />",
      "<g class=\"sClr_red\" >\n<circle id=\"cv_4\" class=\"ZW\" cx=\"50\" cy=\"50\" r=\"5\" />\n</g>\n",
      "<g opacity=\"0.5\" class=\"fClr_red\" >\n<ellipse id=\"cv_5\" class=\"ZW\" fill=\"red\" cx=\"50\" cy=\"50\" rx=\"5\" "
      "ry=\"2\" transform=\"rotate(330 50 50)\" />\n</g>\n",
      "<path id=\"cv_6\" class=\"fClr_red vtrl_handles\" vtrl:handle='1F' opacity=\"1.\" d=\"M0,100h10v-10 Z \"/>",
  };
  for (const char* part : expected) EXPECT_NE(text.find(part), std::string::npos) << part << "\n" << text;
  EXPECT_EQ(CountOf(text, "fClr_red"), 3) << "the one-point fill is left out";
}

TEST_F(SvgPaths, ValuesThatAreNotNumbersLeaveNoTrace) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  StartDirectOutput();
  svg().WritePolylines({Record({{nan, nan}, {inf, 0}}), Record({{0, 0}, {nan, 1}, {5, 0}}, nan)}, false);
  DrvLine line;
  line.start = {0, inf};
  line.end = {1, 1};
  svg().WriteLines({line});
  DrvArc arc;
  arc.radius = nan;
  svg().WriteArcs({arc});
  DrvCircle circle;
  circle.center = {inf, 0};
  svg().WriteCircles({circle});
  svg().WritePoints({{nan, 0}});
  svg().WriteFills({DrvFill{{{nan, 0}, {inf, 1}}, "", 7}});
  std::string text = Finish();
  EXPECT_EQ(text.find("nan"), std::string::npos) << text;
  EXPECT_EQ(text.find("inf"), std::string::npos) << text;
  EXPECT_EQ(CountOf(text, "<path "), 0) << text;
}

}  // namespace

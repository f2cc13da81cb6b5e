// The dumper's point-list routine: duplicates, dots, lines, circles found in tessellations,
// viewport and raster frames, background masks.
#include <cmath>
#include <vector>

#include "RecordingDriver.h"
#include "vectorizer/OdGiDumperImpl.h"

namespace vectest {
namespace {

class OutputPolylineTest : public VectorizerTest {
protected:
  void Output(const std::vector<OdGePoint3d>& points) { dumper.outputPolyline(int32_t(points.size()), points.data()); }
  OdGiDumperImpl dumper;
};

std::vector<OdGePoint3d> CirclePoints(int count, double radius, OdGePoint2d center = {0, 0}) {
  std::vector<OdGePoint3d> points;
  for (int i = 0; i < count; ++i) {
    double a = 2 * kPi * i / count;
    points.emplace_back(center.x + radius * std::cos(a), center.y + radius * std::sin(a), 0.0);
  }
  return points;
}

std::vector<OdGePoint3d> Square(double size) {
  return {{0, 0, 0}, {size, 0, 0}, {size, size, 0}, {0, size, 0}, {0, 0, 0}};
}

TEST_F(OutputPolylineTest, PointsWithinATenthOfTheLastTakenAreDropped) {
  RecordingDriver& driver = UseDriver();
  Output({{0, 0, 0}, {0.05, 0.05, 0}, {1, 0, 0}, {1.09, 0, 0.09}, {2, 0, 0}});
  ASSERT_EQ(driver.Polylines().size(), 1u);
  EXPECT_EQ(driver.Polylines()[0].points, (std::vector<OdGePoint2d>{{0, 0}, {1, 0}, {2, 0}}));

  // A list still ends at its own end, where the next line starts.
  Output({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2.06, 0.04, 0}});
  ASSERT_EQ(driver.Polylines().size(), 2u);
  EXPECT_EQ(driver.Polylines()[1].points, (std::vector<OdGePoint2d>{{0, 0}, {1, 0}, {2.06, 0.04}}));
}

TEST_F(OutputPolylineTest, ListsThatCollapseToOnePointAreDotsUnlessArcsHandleThem) {
  for (bool arcHandled : {false, true}) {
    SCOPED_TRACE(arcHandled);
    RecordingDriver& driver = UseDriver();
    driver.arcHandled = arcHandled;
    Output({{3, 4, 0}, {3.05, 4.05, 0}, {3.01, 4, 0.02}});
    EXPECT_EQ(driver.Dots().size(), arcHandled ? 0u : 1u);
    EXPECT_EQ(driver.PrimitiveCount(), arcHandled ? 0u : 1u);
  }
}

TEST_F(OutputPolylineTest, TwoPointsAreALineUnlessTheWidthIsGeometric) {
  for (int geometric : {0, 1}) {
    SCOPED_TRACE(geometric);
    RecordingDriver& driver = UseDriver();
    g_EntityDrawState.widthIsGeometric = geometric;
    g_EntityDrawState.lineWidth = 2.0;
    Output({{0, 0, 0}, {10, 0, 0}});
    EXPECT_EQ(driver.Lines().size(), geometric ? 0u : 1u);
    EXPECT_EQ(driver.Polylines().size(), geometric ? 1u : 0u);
  }
}

// Two entities with the same line (a common fault of drawings) write it once.
TEST_F(OutputPolylineTest, TheSameLineInTheNextPointListIsDroppedAsARepeat) {
  RecordingDriver& driver = UseDriver();
  Output({{0, 0, 0}, {10, 0, 0}});
  Output({{0, 0, 0}, {10, 0, 0}});
  Output({{0, 5, 0}, {10, 5, 0}});
  EXPECT_EQ(driver.Lines().size(), 2u);
}

TEST_F(OutputPolylineTest, TwentyOnePointsOfACircleCandidateMakeACircle) {
  for (int count : {20, 21, 64}) {
    SCOPED_TRACE(count);
    RecordingDriver& driver = UseDriver();
    g_EntityDrawState.circleCandidate = 1;
    g_EntityDrawState.circleRadius = 10.0;
    Output(CirclePoints(count, 10.0, {5, 5}));
    bool circle = count >= 21;
    ASSERT_EQ(driver.Circles().size(), circle ? 1u : 0u);
    EXPECT_EQ(driver.Polylines().size(), circle ? 0u : 1u);
    EXPECT_EQ(g_EntityDrawState.circleCandidate, 0);
    if (circle) {
      EXPECT_NEAR(driver.Circles()[0].radiusX, 10.0, 1e-9);
    }
  }
}

TEST_F(OutputPolylineTest, WithoutTheCandidateFlagATessellatedCircleStaysAPolyline) {
  RecordingDriver& driver = UseDriver();
  Output(CirclePoints(40, 10.0));
  EXPECT_TRUE(driver.Circles().empty());
  EXPECT_EQ(driver.Polylines().size(), 1u);
}

TEST_F(OutputPolylineTest, OnlyWholeRoundCandidatesBecomeCircles) {
  // A circle scaled unevenly (an ellipse), and a circle cut by a clip boundary (a piece of it).
  std::vector<OdGePoint3d> ellipse = CirclePoints(64, 10.0);
  for (OdGePoint3d& p : ellipse) p.x *= 2;
  std::vector<OdGePoint3d> piece = CirclePoints(64, 10.0);
  piece.resize(40);
  for (const auto& points : {ellipse, piece}) {
    RecordingDriver& driver = UseDriver();
    g_EntityDrawState.circleCandidate = 1;
    g_EntityDrawState.circleRadius = 10.0;
    Output(points);
    EXPECT_TRUE(driver.Circles().empty());
    ASSERT_EQ(driver.Polylines().size(), 1u);
    EXPECT_EQ(driver.Polylines()[0].points.size(), points.size());
  }
}

struct RingCase {
  const char* name;
  int format;
  int geometric;
  double lineWidth;
  bool fillOn;
  bool filled;
  double radius;
  double width;
};

TEST_F(OutputPolylineTest, DetectedCirclesAreRingsDisksOrWeightedCircles) {
  // Points at radius 20 for an entity of radius 10; geometric widths are already in output units.
  const RingCase cases[] = {
      {"svg ring: width 0.75 w", 1016, 1, 4.0, false, false, 20 - 0.75 * 4 / 2, 2 * 0.75 * 4},
      {"pdf ring: width w", 1007, 1, 4.0, false, false, 20 - 4.0 / 2, 2 * 4.0},
      {"wider than the radius: disk", 1007, 1, 25.0, false, true, 20, 0},
      {"as wide as the radius: disk", 1007, 1, 20.0, false, true, 20, 0},
      {"fill on: disk", 1016, 1, 1.0, true, true, 20, 0},
      // A line weight is no geometry: radius and weight stay as a native circle has them.
      {"line weight 0.50 mm", 1016, 0, 50.0, false, false, 20, 50},
      {"line weight wider than the radius", 1007, 0, 211.0, false, false, 20, 211},
  };
  for (const RingCase& c : cases) {
    SCOPED_TRACE(c.name);
    RecordingDriver& driver = UseDriver(c.format);
    g_EntityDrawState.circleCandidate = 1;
    g_EntityDrawState.circleRadius = 10.0;
    g_EntityDrawState.lineWidth = c.lineWidth;
    g_EntityDrawState.widthIsGeometric = c.geometric;
    g_EntityDrawState.fillOn = c.fillOn;
    Output(CirclePoints(30, 20.0));
    ASSERT_EQ(driver.Circles().size(), 1u);
    const DrvCircle circle = driver.Circles()[0];
    EXPECT_EQ(circle.filled, c.filled);
    EXPECT_NEAR(circle.radiusX, c.radius, 1e-9);
    // The record keeps a geometric width in hundredths of an output unit; without a page a line
    // weight's millimetre is one unit.
    EXPECT_NEAR(circle.width, c.width * (c.geometric ? 100 : 1), 1e-9);
  }
}

TEST_F(OutputPolylineTest, ViewportFrameIsSwallowedOnce) {
  RecordingDriver& driver = UseDriver();
  g_EntityDrawState.skipNextFrame = 1;
  Output({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}});
  EXPECT_EQ(driver.Polylines().size(), 1u);
  Output(Square(10));
  EXPECT_EQ(driver.Polylines().size(), 1u);
  EXPECT_EQ(g_EntityDrawState.skipNextFrame, 0);
  Output(Square(10));
  EXPECT_EQ(driver.Polylines().size(), 2u);
}

TEST_F(OutputPolylineTest, FivePointFrameOfARasterFileBecomesTheImage) {
  RecordingDriver& driver = UseDriver();
  g_EntityDrawState.rasterFileName = L"/tmp/picture.png";
  g_EntityDrawState.rasterWidth = 640;
  g_EntityDrawState.rasterHeight = 480;
  Output({{2, 3, 0}, {12, 3, 0}, {12, 9, 0}, {2, 9, 0}, {2, 3, 0}});
  ASSERT_EQ(driver.Images().size(), 1u);
  const DrvImage image = driver.Images()[0];
  EXPECT_EQ(image.fileName, OdString(L"/tmp/picture.png"));
  EXPECT_EQ(image.pixelWidth, 640);
  EXPECT_EQ(image.minX, 2);
  EXPECT_EQ(image.minY, 3);
  EXPECT_EQ(image.maxX, 12);
  EXPECT_EQ(image.maxY, 9);
  EXPECT_TRUE(driver.Polylines().empty());
  EXPECT_TRUE(g_EntityDrawState.rasterFileName.isEmpty());
}

struct MaskCase {
  const char* name;
  int background;
  bool fillOn;
  DrvRgb fillColor;
  uint8_t maskFilled;
};

TEST_F(OutputPolylineTest, BackgroundMasksArePaintedInThePageColour) {
  const MaskCase cases[] = {
      {"white page", 255, true, {255, 255, 255}, 1},
      {"black page", 0, true, {0, 0, 0}, 1},
      {"fill off: no mask", 255, false, {255, 0, 0}, 0},
  };
  // A tilted quadrilateral: its first and fourth corners differ in x and y.
  const std::vector<OdGePoint3d> quad = {{0, 0, 0}, {10, 2, 0}, {8, 12, 0}, {-2, 10, 0}};
  for (const MaskCase& c : cases) {
    SCOPED_TRACE(c.name);
    RecordingDriver& driver = UseDriver();
    driver.SetBackgroundColor(c.background);
    driver.SetColor(2);
    g_EntityDrawState.isBackgroundMask = 1;
    g_EntityDrawState.closedFlag = 1;
    g_EntityDrawState.fillOn = c.fillOn;
    g_EntityDrawState.lineTypeName = L"DASHED";
    g_EntityDrawState.lineWidth = 3.0;
    Output(quad);
    EXPECT_EQ(g_EntityDrawState.maskFilled, c.maskFilled);
    EXPECT_EQ(driver.GetColorIndex(), 2);
    EXPECT_EQ(g_EntityDrawState.lineTypeName, OdString(L"CONTINUOUS"));
    EXPECT_EQ(g_EntityDrawState.lineWidth, 0.0);
    std::vector<DrvFill> fills = driver.All(&DrvColorGroup::fills);
    std::vector<DrvPolyline> lines = driver.Polylines();
    ASSERT_EQ(fills.size() + lines.size(), 1u);
    int colour = fills.empty() ? lines[0].colorIndex : fills[0].colorIndex;
    EXPECT_EQ(driver.GetColorTable()[size_t(colour)], c.fillColor);
  }
}

TEST_F(OutputPolylineTest, NothingHappensWithoutADriverOrPoints) {
  g_pOutputDriver = nullptr;
  Output(Square(10));
  RecordingDriver& driver = UseDriver();
  dumper.outputPolyline(0, nullptr);
  EXPECT_EQ(driver.PrimitiveCount(), 0u);
}

}  // namespace
}  // namespace vectest

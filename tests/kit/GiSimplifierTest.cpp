// The simplifier: curves within the deviation (a chord error, not a fixed count), faces and
// edges of shells and meshes, polyline bulges and widths, construction lines, text strokes.
#include <gtest/gtest.h>

#include <cmath>

#include "kit/gi/StrokeFont.h"
#include "tests/kit/GiRecordingSink.h"

namespace {

// A sink that simplifies everything, so that the point lists can be measured.
struct PointSink : RecordingSink {
  PointSink() { nativeCurves = false; }
  void xlineProc(const OdGePoint3d& a, const OdGePoint3d& b) override { OdGiGeometrySimplifier::xlineProc(a, b); }
  void rayProc(const OdGePoint3d& a, const OdGePoint3d& b) override { OdGiGeometrySimplifier::rayProc(a, b); }
  void shellProc(int32_t nv, const OdGePoint3d* v, int32_t nf, const int32_t* f, const OdGiEdgeData* e = nullptr,
                 const OdGiFaceData* fd = nullptr, const OdGiVertexData* vd = nullptr) override {
    OdGiGeometrySimplifier::shellProc(nv, v, nf, f, e, fd, vd);
  }
  void textProc(const OdGePoint3d& p, const OdGeVector3d& d, const OdGeVector3d& u, const OdChar* m, int32_t n,
                bool raw, const OdGiTextStyle* s, const OdGeVector3d* x = nullptr) override {
    OdGiGeometrySimplifier::textProc(p, d, u, m, n, raw, s, x);
  }
};

double maxChainError(const std::vector<OdGePoint3d>& truth, const std::vector<OdGePoint3d>& chain) {
  double worst = 0.0;
  for (const OdGePoint3d& p : truth) worst = std::max(worst, distanceToChain(p, chain));
  return worst;
}

struct CircleCase {
  double radius;
  double deviation;
};

class CircleDeviation : public ::testing::TestWithParam<CircleCase> {};

TEST_P(CircleDeviation, StaysWithinTheDeviationEverywhere) {
  const CircleCase& c = GetParam();
  PointSink sink;
  OdGiUniformDeviation deviation(c.deviation);
  sink.setDeviation(&deviation);
  OdGePoint3d center(3, -2, 0);
  sink.circleProc(center, c.radius, OdGeVector3d::kZAxis());
  ASSERT_EQ(sink.calls.size(), 1u);
  const auto& pts = sink.calls[0].points;
  ASSERT_GE(pts.size(), 9u);
  EXPECT_NEAR(pts.front().distanceTo(pts.back()), 0.0, 1e-9) << "a full circle comes back to its start";
  std::vector<OdGePoint3d> truth;
  for (int i = 0; i < 3600; ++i) {
    double t = 2 * kPi * i / 3600;
    truth.push_back(center + OdGeVector3d(std::cos(t), std::sin(t), 0) * c.radius);
  }
  for (const OdGePoint3d& p : pts) EXPECT_NEAR(p.distanceTo(center), c.radius, 1e-9 * c.radius);
  if (c.deviation < c.radius) {
    EXPECT_LE(maxChainError(truth, pts), c.deviation * 1.001);
  }
}

INSTANTIATE_TEST_SUITE_P(Radii, CircleDeviation,
                         ::testing::Values(CircleCase{1.0, 0.01}, CircleCase{100.0, 0.5}, CircleCase{1000.0, 0.5},
                                           CircleCase{5000.0, 0.05}, CircleCase{2.0, 5.0}));

TEST(Simplifier, ChordCountFollowsTheRadiusNotAFixedNumber) {
  OdGiUniformDeviation deviation(0.5);
  size_t counts[3];
  double radii[3] = {10.0, 1000.0, 100000.0};
  for (int i = 0; i < 3; ++i) {
    PointSink sink;
    sink.setDeviation(&deviation);
    sink.circleProc(OdGePoint3d(), radii[i], OdGeVector3d::kZAxis());
    counts[i] = sink.calls.at(0).points.size();
  }
  EXPECT_LT(counts[0], counts[1]);
  EXPECT_LT(counts[1], counts[2]);
  EXPECT_LE(counts[2], 8193u) << "a huge radius is capped";
}

TEST(Simplifier, EllipseAndNurbsStayWithinTheDeviation) {
  OdGiUniformDeviation deviation(0.05);
  {
    PointSink sink;
    sink.setDeviation(&deviation);
    OdGeEllipArc3d arc(OdGePoint3d(1, 1, 0), OdGeVector3d(1, 1, 0), OdGeVector3d(-1, 1, 0), 50.0, 5.0, 0.3, 4.0);
    sink.ellipArcProc(arc);
    ASSERT_EQ(sink.count("polyline"), 1u);
    std::vector<OdGePoint3d> truth;
    for (int i = 0; i <= 2000; ++i) truth.push_back(arc.evalPoint(0.3 + 3.7 * i / 2000));
    EXPECT_LE(maxChainError(truth, sink.calls[0].points), 0.05 * 1.001);
    EXPECT_NEAR(sink.calls[0].points.front().distanceTo(arc.startPoint()), 0.0, 1e-9);
    EXPECT_NEAR(sink.calls[0].points.back().distanceTo(arc.endPoint()), 0.0, 1e-9);
  }
  {
    // A rational quadratic quarter circle of radius 100.
    PointSink sink;
    sink.setDeviation(&deviation);
    OdGeNurbCurve3d quarter(2, {0, 0, 0, 1, 1, 1}, {{100, 0, 0}, {100, 100, 0}, {0, 100, 0}},
                            {1.0, std::sqrt(0.5), 1.0});
    ASSERT_TRUE(quarter.isValid());
    sink.nurbsProc(quarter);
    const auto& pts = sink.calls.at(0).points;
    ASSERT_GE(pts.size(), 5u);
    for (const OdGePoint3d& p : pts) EXPECT_NEAR(p.distanceTo(OdGePoint3d()), 100.0, 1e-6);
    std::vector<OdGePoint3d> truth;
    for (int i = 0; i <= 1000; ++i) {
      double t = kPi / 2 * i / 1000;
      truth.push_back({100 * std::cos(t), 100 * std::sin(t), 0});
    }
    EXPECT_LE(maxChainError(truth, pts), 0.05 * 1.001);
  }
}

TEST(Simplifier, ArcsKeepTheirSenseAndTypes) {
  PointSink sink;
  // Three points counter-clockwise over the top.
  sink.circularArcProc(OdGePoint3d(1, 0, 0), OdGePoint3d(0, 1, 0), OdGePoint3d(-1, 0, 0));
  ASSERT_EQ(sink.count("polyline"), 1u);
  for (const OdGePoint3d& p : sink.calls[0].points) EXPECT_GE(p.y, -1e-9);
  // Negative normal: counter-clockwise about -Z runs clockwise seen from above.
  sink.calls.clear();
  sink.circularArcProc(OdGePoint3d(), 1.0, OdGeVector3d(0, 0, -1), OdGeVector3d(1, 0, 0), kPi / 2);
  const auto& pts = sink.calls.at(0).points;
  EXPECT_NEAR(pts.back().x, 0.0, 1e-9);
  EXPECT_NEAR(pts.back().y, -1.0, 1e-9);
  // Sectors close through the centre as areas.
  sink.calls.clear();
  sink.circularArcProc(OdGePoint3d(), 1.0, OdGeVector3d::kZAxis(), OdGeVector3d(1, 0, 0), kPi / 2, kOdGiArcSector);
  ASSERT_EQ(sink.count("polygon"), 1u);
  EXPECT_EQ(sink.calls[0].points.back(), OdGePoint3d());
  // Collinear points cannot make an arc: they stay a line.
  sink.calls.clear();
  sink.circularArcProc(OdGePoint3d(0, 0, 0), OdGePoint3d(1, 1, 0), OdGePoint3d(2, 2, 0));
  ASSERT_EQ(sink.count("polyline"), 1u);
  EXPECT_EQ(sink.calls[0].points.size(), 3u);
}

TEST(Simplifier, ShellFacesAreFilledWithTheirHolesOrDrawnAsVisibleEdges) {
  // A 10 x 10 square with a 2 x 2 hole, then a separate triangle.
  std::vector<OdGePoint3d> v = {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}, {4, 4, 0}, {6, 4, 0},
                                {6, 6, 0}, {4, 6, 0}, {20, 0, 0}, {22, 0, 0}, {21, 1, 0}};
  std::vector<int32_t> faces = {4, 0, 1, 2, 3, -4, 4, 5, 6, 7, 3, 8, 9, 10};
  FixedTraitsContext context;
  PointSink filled;
  filled.setDrawContext(&context);
  context.data.fillType = kOdGiFillAlways;
  filled.shellProc(int32_t(v.size()), v.data(), int32_t(faces.size()), faces.data());
  ASSERT_EQ(filled.count("polygon"), 2u);
  EXPECT_NEAR(std::fabs(areaOf(filled.calls[0].points)), 96.0, 1e-9) << "the hole is cut out";
  EXPECT_NEAR(std::fabs(areaOf(filled.calls[1].points)), 1.0, 1e-9);

  context.data.fillType = kOdGiFillNever;
  PointSink edges;
  edges.setDrawContext(&context);
  edges.shellProc(int32_t(v.size()), v.data(), int32_t(faces.size()), faces.data());
  EXPECT_EQ(edges.count("polygon"), 0u);
  EXPECT_EQ(edges.count("polyline"), 3u) << "outer loop, hole and triangle";

  // The second edge of the square invisible: the loop is drawn as one run of three edges.
  std::vector<uint8_t> visibility(11, kOdGiVisible);
  visibility[1] = kOdGiInvisible;
  OdGiEdgeData edgeData;
  edgeData.visibility = visibility.data();
  std::vector<int32_t> square = {4, 0, 1, 2, 3};
  PointSink hidden;
  hidden.setDrawContext(&context);
  hidden.shellProc(4, v.data(), int32_t(square.size()), square.data(), &edgeData);
  ASSERT_EQ(hidden.count("polyline"), 1u);
  EXPECT_EQ(hidden.calls[0].points.size(), 4u);
  EXPECT_EQ(hidden.calls[0].points.front(), v[2]);
  EXPECT_EQ(hidden.calls[0].points.back(), v[1]);
}

TEST(Simplifier, BrokenShellListsEndQuietly) {
  std::vector<OdGePoint3d> v = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}};
  FixedTraitsContext context;
  context.data.fillType = kOdGiFillAlways;
  PointSink sink;
  sink.setDrawContext(&context);
  std::vector<int32_t> tooLong = {3, 0, 1, 2, 9, 0, 1};
  sink.shellProc(3, v.data(), int32_t(tooLong.size()), tooLong.data());
  EXPECT_EQ(sink.count("polygon"), 1u);
  std::vector<int32_t> badIndex = {3, 0, 1, 77};
  sink.calls.clear();
  sink.shellProc(3, v.data(), int32_t(badIndex.size()), badIndex.data());
  EXPECT_EQ(sink.count("polygon"), 0u);
}

TEST(Simplifier, MeshesGiveRowAndColumnLinesOrQuads) {
  std::vector<OdGePoint3d> grid;
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 4; ++c) grid.push_back({double(c), double(r), 0});
  }
  FixedTraitsContext context;
  PointSink lines;
  lines.setDrawContext(&context);
  lines.meshProc(3, 4, grid.data());
  EXPECT_EQ(lines.count("polyline"), 3u + 4u);
  context.data.fillType = kOdGiFillAlways;
  PointSink quads;
  quads.setDrawContext(&context);
  quads.meshProc(3, 4, grid.data());
  EXPECT_EQ(quads.count("polygon"), 6u);
}

TEST(Simplifier, PolylineBulgesAndWidths) {
  OdGiUniformDeviation deviation(0.001);
  PointSink sink;
  sink.setDeviation(&deviation);
  OdGiPolyline half;
  half.points = {{0, 0}, {2, 0}};
  half.bulges = {1.0, 0.0};  // a half circle, counter-clockwise: below the chord
  sink.plineProc(half);
  ASSERT_EQ(sink.count("polyline"), 1u);
  const auto& pts = sink.calls[0].points;
  EXPECT_GT(pts.size(), 10u);
  for (const OdGePoint3d& p : pts) {
    EXPECT_LE(p.y, 1e-9);
    EXPECT_NEAR(p.distanceTo(OdGePoint3d(1, 0, 0)), 1.0, 1e-9);
  }
  // A negative normal mirrors the plane: the same data lies at x in [-2, 0].
  sink.calls.clear();
  half.normal = {0, 0, -1};
  sink.plineProc(half);
  for (const OdGePoint3d& p : sink.calls.at(0).points) EXPECT_LE(p.x, 1e-9);

  // Vertex widths: a 10-unit segment 2 wide becomes a filled outline of area 20; the zero-width
  // segment after it stays a line.
  sink.calls.clear();
  OdGiPolyline wide;
  wide.points = {{0, 0}, {10, 0}, {10, 5}};
  wide.widths = {{2, 2}, {0, 0}, {0, 0}};
  sink.plineProc(wide);
  ASSERT_EQ(sink.count("polygon"), 1u);
  EXPECT_NEAR(std::fabs(areaOf(sink.ofKind("polygon")[0].points)), 20.0, 1e-9);
  ASSERT_EQ(sink.count("polyline"), 1u);
  EXPECT_EQ(sink.ofKind("polyline")[0].points.size(), 2u);
  // A tapering segment (arrow head) from 4 to 0 over length 3: area 6.
  sink.calls.clear();
  OdGiPolyline arrow;
  arrow.points = {{0, 0}, {3, 0}};
  arrow.widths = {{4, 0}, {0, 0}};
  sink.plineProc(arrow);
  EXPECT_NEAR(std::fabs(areaOf(sink.ofKind("polygon").at(0).points)), 6.0, 1e-9);
}

TEST(Simplifier, ConstructionLinesOnlyWhenAskedAndClipped) {
  PointSink sink;
  sink.xlineProc(OdGePoint3d(0, 0, 0), OdGePoint3d(1, 1, 0));
  sink.rayProc(OdGePoint3d(0, 0, 0), OdGePoint3d(1, 0, 0));
  EXPECT_TRUE(sink.calls.empty());
  sink.setDrawConstructionLines(true, OdGeExtents3d({-10, -5, 0}, {10, 5, 0}));
  sink.xlineProc(OdGePoint3d(0, 0, 0), OdGePoint3d(1, 1, 0));
  ASSERT_EQ(sink.calls.size(), 1u);
  EXPECT_EQ(sink.calls[0].points[0], OdGePoint3d(-5, -5, 0));
  EXPECT_EQ(sink.calls[0].points[1], OdGePoint3d(5, 5, 0));
  sink.rayProc(OdGePoint3d(0, 0, 0), OdGePoint3d(-1, 0, 0));
  ASSERT_EQ(sink.calls.size(), 2u);
  EXPECT_EQ(sink.calls[1].points[0], OdGePoint3d(0, 0, 0));
  EXPECT_EQ(sink.calls[1].points[1], OdGePoint3d(-10, 0, 0));
  sink.rayProc(OdGePoint3d(20, 20, 0), OdGePoint3d(21, 21, 0));
  EXPECT_EQ(sink.calls.size(), 2u) << "a ray leaving the extents draws nothing";
}

TEST(Simplifier, TextStrokesLieInTheTextBox) {
  OdGiTextStyle style;
  style.setFileName(OdString(L"romans.shx"));
  if (!gi::strokeFontFor(style)) GTEST_SKIP() << "no stroke fonts on this machine";
  PointSink sink;
  OdGePoint3d origin(100, 50, 0);
  // Height 2 rotated 90 degrees: direction up the y axis, glyphs rising towards -x.
  OdGeVector3d direction(0, 2, 0), up(-2, 0, 0);
  sink.textProc(origin, direction, up, L"HI%%d", -1, false, &style);
  ASSERT_GE(sink.count("polyline"), 4u);
  double maxAlong = 0.0;
  for (const RecordedCall& c : sink.calls) {
    for (const OdGePoint3d& p : c.points) {
      EXPECT_GE(p.x, 100 - 2.0 * 1.3);
      EXPECT_LE(p.x, 100 + 2.0 * 0.4);
      EXPECT_GE(p.y, 50 - 1e-9);
      maxAlong = std::max(maxAlong, p.y - 50);
    }
  }
  EXPECT_GT(maxAlong, 2.0) << "three glyphs advance along the direction";
  EXPECT_LT(maxAlong, 3 * 2.0 * 1.5);
  // Raw text keeps the percent signs as characters: more strokes than the one degree sign.
  PointSink decoded, raw;
  decoded.textProc(origin, direction, up, L"%%d", -1, false, &style);
  raw.textProc(origin, direction, up, L"%%d", -1, true, &style);
  EXPECT_GT(raw.count("polyline"), decoded.count("polyline"));
}

}  // namespace

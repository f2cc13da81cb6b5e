// The sink's choice between native driver calls and simplified point lists.
#include <cmath>
#include <memory>

#include "RecordingDriver.h"
#include "vectorizer/OdGiConveyorGeometryDumper.h"
#include "vectorizer/OdGiDumperImpl.h"

namespace vectest {
namespace {

// Counts the point lists that the simplifier base produced.
class CountingSink : public OdGiConveyorGeometryDumper {
public:
  CountingSink() : OdGiConveyorGeometryDumper(std::make_shared<OdGiDumperImpl>()) {}
  void polygonOut(int32_t n, const OdGePoint3d* p) override {
    ++simplified;
    OdGiConveyorGeometryDumper::polygonOut(n, p);
  }
  void polylineOut(int32_t n, const OdGePoint3d* p) override {
    ++simplified;
    OdGiConveyorGeometryDumper::polylineOut(n, p);
  }
  int simplified = 0;
};

class SinkTest : public VectorizerTest {
protected:
  CountingSink sink;
};

struct CircleCase {
  const char* name;
  OdGeVector3d normal;
  bool native;
};

TEST_F(SinkTest, CirclesInTheDrawingPlaneAreNativeOthersTessellated) {
  const CircleCase cases[] = {
      {"+Z", {0, 0, 1}, true}, {"-Z", {0, 0, -1}, true}, {"+X", {1, 0, 0}, false}, {"tilted", {0, 1, 1}, false}};
  for (const CircleCase& c : cases) {
    SCOPED_TRACE(c.name);
    RecordingDriver& driver = UseDriver();
    g_ViewportExtents.Clear();
    sink.circleProc(OdGePoint3d(10, 20, 0), 5.0, c.normal);
    ASSERT_EQ(driver.Circles().size(), c.native ? 1u : 0u);
    EXPECT_EQ(driver.Polylines().empty(), c.native);
    if (!c.native) continue;
    EXPECT_EQ(driver.Circles()[0].center, OdGePoint2d(10, 20));
    EXPECT_EQ(driver.Circles()[0].radiusX, 5.0);
    ASSERT_EQ(g_ViewportExtents.Count(), 1u);
    EXPECT_EQ(g_ViewportExtents.boxes[0].minPoint, OdGePoint3d(5, 15, 0));
    EXPECT_EQ(g_ViewportExtents.boxes[0].maxPoint, OdGePoint3d(15, 25, 0));
  }
}

TEST_F(SinkTest, ForceFillFillsOneNativeCircleOnly) {
  RecordingDriver& driver = UseDriver();
  g_EntityDrawState.forceFill = 1;
  sink.circleProc(OdGePoint3d(0, 0, 0), 2.0, OdGeVector3d(0, 0, 1));
  sink.circleProc(OdGePoint3d(10, 0, 0), 2.0, OdGeVector3d(0, 0, 1));
  ASSERT_EQ(driver.Circles().size(), 2u);
  EXPECT_TRUE(driver.Circles()[0].filled);
  EXPECT_FALSE(driver.Circles()[1].filled);
}

struct ArcCase {
  const char* name;
  OdGeVector3d normal;
  OdGeVector3d start;
  double sweep;
  double startDegrees;
  double endDegrees;
};

TEST_F(SinkTest, ArcsReachTheDriverCounterClockwiseInDegrees) {
  const double q = kPi / 2;
  const ArcCase cases[] = {
      {"+Z quarter", {0, 0, 1}, {1, 0, 0}, q, 0.0, 90.0},
      {"-Z quarter runs from -90 to 0", {0, 0, -1}, {1, 0, 0}, q, -90.0, 0.0},
      {"+Z starting at 90", {0, 0, 1}, {0, 1, 0}, q, 90.0, 180.0},
      {"+Z negative sweep", {0, 0, 1}, {1, 0, 0}, -q, -90.0, 0.0},
  };
  for (const ArcCase& c : cases) {
    SCOPED_TRACE(c.name);
    RecordingDriver& driver = UseDriver();
    sink.circularArcProc(OdGePoint3d(0, 0, 0), 10.0, c.normal, c.start, c.sweep);
    ASSERT_EQ(driver.Arcs().size(), 1u);
    EXPECT_NEAR(driver.Arcs()[0].startAngle, c.startDegrees, 1e-4);
    EXPECT_NEAR(driver.Arcs()[0].endAngle, c.endDegrees, 1e-4);
  }
}

TEST_F(SinkTest, TiltedArcIsTessellated) {
  RecordingDriver& driver = UseDriver();
  sink.circularArcProc(OdGePoint3d(0, 0, 0), 10.0, OdGeVector3d(1, 0, 0), OdGeVector3d(0, 1, 0), kPi / 2);
  EXPECT_TRUE(driver.Arcs().empty());
  EXPECT_EQ(driver.Polylines().size(), 1u);
}

TEST_F(SinkTest, ArcThroughThreeFlatPointsIsNative) {
  RecordingDriver& driver = UseDriver();
  sink.circularArcProc(OdGePoint3d(10, 0, 0), OdGePoint3d(0, 10, 0), OdGePoint3d(-10, 0, 0));
  ASSERT_EQ(driver.Arcs().size(), 1u);
  EXPECT_NEAR(driver.Arcs()[0].radius, 10.0, 1e-9);
  EXPECT_NEAR(driver.Arcs()[0].startAngle, 0.0, 1e-4);
  EXPECT_NEAR(driver.Arcs()[0].endAngle, 180.0, 1e-4);
  // Clockwise through the same ends: the lower half, given from its other end.
  sink.circularArcProc(OdGePoint3d(10, 0, 0), OdGePoint3d(0, -10, 0), OdGePoint3d(-10, 0, 0));
  ASSERT_EQ(driver.Arcs().size(), 2u);
  EXPECT_NEAR(driver.Arcs()[1].startAngle, -180.0, 1e-4);
  EXPECT_NEAR(driver.Arcs()[1].endAngle, 0.0, 1e-4);
}

TEST_F(SinkTest, PolygonsOutOfPlaneGoThroughTheSimplifier) {
  UseDriver();
  const OdGePoint3d square[4] = {{0, 0, 0}, {0, 10, 0}, {0, 10, 10}, {0, 0, 10}};
  OdGeVector3d down(0, 0, -1), side(1, 0, 0);
  sink.polygonProc(4, square, &down);
  EXPECT_EQ(sink.simplified, 0);
  sink.polygonProc(4, square, &side);
  EXPECT_EQ(sink.simplified, 1);
}

TEST_F(SinkTest, ClosedPolylineIsDrawnClosedAndFilledWithFillOn) {
  const OdGePoint3d ring[5] = {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}, {0, 0, 1e-12}};
  for (uint8_t fill : {0, 1}) {
    SCOPED_TRACE(int(fill));
    RecordingDriver& driver = UseDriver();
    g_EntityDrawState.fillOn = fill;
    sink.polylineProc(5, ring);
    EXPECT_EQ(g_EntityDrawState.closedFlag, 1);
    std::vector<DrvFill> fills = driver.All(&DrvColorGroup::fills);
    ASSERT_EQ(fills.size(), fill ? 1u : 0u);
    ASSERT_EQ(driver.Polylines().size(), fill ? 0u : 1u);
    if (fill) {
      EXPECT_EQ(fills[0].points.back(), OdGePoint2d(0, 0));
    } else {
      EXPECT_EQ(driver.Polylines()[0].closedKind, 1);
    }
  }
}

TEST_F(SinkTest, ConstructionLinesAndMetafilesDrawNothing) {
  RecordingDriver& driver = UseDriver();
  sink.xlineProc(OdGePoint3d(0, 0, 0), OdGePoint3d(1, 1, 0));
  sink.rayProc(OdGePoint3d(0, 0, 0), OdGePoint3d(1, 1, 0));
  sink.xlineProc2(OdGePoint3d(0, 0, 0), OdGeVector3d(1, 0, 0));
  sink.rayProc2(OdGePoint3d(0, 0, 0), OdGeVector3d(1, 0, 0));
  sink.metafileProc(OdGePoint3d(0, 0, 0), OdGeVector3d(1, 0, 0), OdGeVector3d(0, 1, 0), nullptr);
  EXPECT_EQ(driver.PrimitiveCount(), 0u);
}

TEST_F(SinkTest, ShellsAreFilled) {
  RecordingDriver& driver = UseDriver();
  const OdGePoint3d vertices[3] = {{0, 0, 0}, {10, 0, 0}, {0, 10, 0}};
  const int32_t faces[4] = {3, 0, 1, 2};
  sink.shellProc(3, vertices, 4, faces);
  EXPECT_EQ(g_EntityDrawState.fillOn, 1);
  EXPECT_EQ(driver.Polylines().size() + driver.All(&DrvColorGroup::fills).size(), 1u);
}

TEST_F(SinkTest, NonZeroSimplificationLevelDropsWhatIsNotNative) {
  RecordingDriver& driver = UseDriver();
  sink.simplificationLevel = 1;
  sink.circleProc(OdGePoint3d(0, 0, 0), 5.0, OdGeVector3d(1, 0, 0));
  sink.ellipArcProc(OdGeEllipArc3d(OdGePoint3d(0, 0, 0), OdGeVector3d(1, 0, 0), OdGeVector3d(0, 1, 0), 4, 2));
  EXPECT_EQ(driver.PrimitiveCount(), 0u);
  sink.circleProc(OdGePoint3d(0, 0, 0), 5.0, OdGeVector3d(0, 0, 1));
  EXPECT_EQ(driver.Circles().size(), 1u);
}

}  // namespace
}  // namespace vectest

// Primitive intake: de-duplication, validation, layer and colour groups, node groups.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "tests/drivers/DriverTestSupport.h"

using drvtest::DriverTest;
using drvtest::W;

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

// A driver with a view, on the writing tolerance.
class CollectionTest : public DriverTest {
protected:
  CollectionTest() {
    driver.ResetFile();
    driver.DefineView(W("ModelSpace"), kViewModelSpace);
    driver.SetLayer(W("L1"), 3);
  }
  int line(double x1, double y1, double x2, double y2) {
    return driver.DrawLine(W("CONTINUOUS"), true, 0, x1, y1, x2, y2, 1.0, 0.0);
  }
  int polyline(const std::vector<OdGePoint2d>& points, bool filled = false) {
    return driver.DrawPolyline(points, filled, 0, W("CONTINUOUS"), true, 1, 1.0, 0.5);
  }
  DrvLayer& layer(const char* name) { return driver.GetCurrentView()->layers.at(W(name)); }
  DrvColorGroup& group(const char* name, int color) { return *layer(name).findColorGroup(color); }
  std::size_t totalLines() {
    std::size_t n = 0;
    for (auto& [key, l] : driver.GetCurrentView()->layers)
      for (auto& g : l.colorGroups) n += g.lines.size();
    return n;
  }
  TRANS_BASE2 driver;
};

using Seg = std::array<double, 4>;

TEST_F(CollectionTest, DuplicateRingRemembersTheLastFiveSegments) {
  const Seg a{0, 0, 10, 0}, b{0, 1, 10, 1}, c{0, 2, 10, 2}, d{0, 3, 10, 3}, e{0, 4, 10, 4}, f{0, 5, 10, 5};
  const Seg aNear{0.0005, 0, 10, 0.0009};
  struct Case {
    const char* what;
    std::vector<Seg> segments;
    std::size_t stored;
  } cases[] = {
      {"same segment twice in a row", {a, a}, 1},
      {"repeat within tolerance", {a, aNear}, 1},
      {"repeat after four others", {a, b, c, d, e, a}, 5},
      {"repeat after five others", {a, b, c, d, e, f, a}, 7},
      {"reversed segment is another segment", {a, {10, 0, 0, 0}}, 2},
      {"alternating pair", {a, b, a, b, a}, 2},
  };
  for (const auto& c : cases) {
    TRANS_BASE2 fresh;
    fresh.ResetFile();
    fresh.DefineView(W("V"), kViewModelSpace);
    for (const auto& s : c.segments) fresh.DrawLine(W("CONTINUOUS"), true, 0, s[0], s[1], s[2], s[3], 1.0, 0.0);
    std::size_t n = 0;
    for (auto& [key, l] : fresh.GetCurrentView()->layers)
      for (auto& g : l.colorGroups) n += g.lines.size();
    EXPECT_EQ(n, c.stored) << c.what;
  }
}

// Only a new file forgets the ring; the start of a point list does not.
TEST_F(CollectionTest, RingOutlivesPointListsUntilTheFileIsReset) {
  EXPECT_EQ(line(0, 0, 10, 10), 1);
  driver.ResetPendingPath();
  EXPECT_EQ(line(0, 0, 10, 10), 0);
  driver.ResetFile();
  driver.DefineView(W("ModelSpace"), kViewModelSpace);
  driver.SetLayer(W("L1"), 3);
  EXPECT_EQ(line(0, 0, 10, 10), 1);
}

TEST_F(CollectionTest, DegenerateAndNonFiniteSegmentsAreDropped) {
  struct Case {
    Seg s;
    const char* what;
  } cases[] = {{{5, 5, 5, 5}, "zero length"},
               {{5, 5, 5.0005, 5.0005}, "within tolerance"},
               {{kNaN, 0, 1, 1}, "NaN"},
               {{0, 0, kInf, 1}, "infinite"},
               {{0, -kInf, 1, 1}, "minus infinite"}};
  for (const auto& c : cases) EXPECT_EQ(line(c.s[0], c.s[1], c.s[2], c.s[3]), 0) << c.what;
  EXPECT_EQ(totalLines(), 0u);
  EXPECT_TRUE(driver.GetPageExtents().empty);
}

TEST_F(CollectionTest, CoarseCollectingToleranceDropsShortSegments) {
  TRANS_BASE2 fresh;  // 15.1 until the first ResetFile
  fresh.DefineView(W("V"), kViewModelSpace);
  EXPECT_EQ(fresh.DrawLine(W("CONTINUOUS"), true, 0, 0, 0, 10, 10, 1.0, 0.0), 0);
  EXPECT_EQ(fresh.DrawLine(W("CONTINUOUS"), true, 0, 0, 0, 20, 0, 1.0, 0.0), 1);
}

TEST_F(CollectionTest, LineRecordCarriesScaledPointsWidthAndColour) {
  driver.SetUnitScale(2.0);
  driver.SetColor(5);
  driver.SetCurrentHandle("2A4");
  ASSERT_EQ(driver.DrawLine(W("DASHED"), false, 0, 1, 2, 3, 4, 7.0, 25.0), 1);
  const DrvLine& rec = group("L1", 5).lines.at(0);
  EXPECT_EQ(rec.start, (OdGePoint2d{2, 4}));
  EXPECT_EQ(rec.end, (OdGePoint2d{6, 8}));
  EXPECT_EQ(rec.lineTypeName, W("DASHED"));
  EXPECT_EQ(rec.lineTypeScale, 1.0);
  EXPECT_TRUE(rec.hasWidth);
  EXPECT_FALSE(rec.absoluteWidth);
  EXPECT_EQ(rec.lineWeight, 25);
  EXPECT_EQ(rec.colorIndex, 5);
  EXPECT_EQ(rec.handle, "2A4");
  EXPECT_EQ(driver.GetPageExtents().maxX, 6);
  EXPECT_EQ(driver.GetSvgExtents().minY, 4);
}

TEST_F(CollectionTest, PolylineHoldsBackTinyStepsButEndsAtItsEndPoint) {
  struct Case {
    const char* what;
    std::vector<OdGePoint2d> in;
    std::vector<OdGePoint2d> out;
  } cases[] = {
      {"all within 0.0001 of the first", {{1, 1}, {1.00001, 1}, {1.00002, 1.00005}}, {{1, 1}, {1.00002, 1.00005}}},
      {"tiny step in the middle", {{0, 0}, {0.00005, 0}, {5, 0}}, {{0, 0}, {5, 0}}},
      {"step of exactly 0.0001 kept", {{0, 0}, {0.0001, 0}, {5, 0}}, {{0, 0}, {0.0001, 0}, {5, 0}}},
      {"two points", {{0, 0}, {3, 4}}, {{0, 0}, {3, 4}}},
  };
  for (const auto& c : cases) {
    TRANS_BASE2 fresh;
    fresh.ResetFile();
    fresh.DefineView(W("V"), kViewModelSpace);
    ASSERT_EQ(fresh.DrawPolyline(c.in, false, 0, W("CONTINUOUS"), true, 0, 1.0, 0.0), 1) << c.what;
    const auto& stored = fresh.GetCurrentLayer()->colorGroups.at(0).polylines.at(0).points;
    ASSERT_EQ(stored.size(), c.out.size()) << c.what;
    for (std::size_t i = 0; i < stored.size(); ++i) {
      EXPECT_NEAR(stored[i].x, c.out[i].x, 1e-12) << c.what << " point " << i;
      EXPECT_NEAR(stored[i].y, c.out[i].y, 1e-12) << c.what << " point " << i;
    }
  }
}

TEST_F(CollectionTest, PolylineClosedOnlyWithEqualEndsAndMoreThanThreePoints) {
  ASSERT_EQ(polyline({{0, 0}, {4, 0}, {4, 3}, {0, 3}, {0, 0}}), 1);
  ASSERT_EQ(polyline({{0, 0}, {4, 0}, {0, 0}}), 1);
  ASSERT_EQ(polyline({{0, 0}, {4, 0}, {4, 3}, {0, 3.0000001}}), 1);
  const auto& lines = group("L1", 7).polylines;
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0].closedKind, 1);
  EXPECT_DOUBLE_EQ(lines[0].area, 12.0);
  EXPECT_EQ(lines[1].closedKind, 0);
  EXPECT_EQ(lines[2].closedKind, 0);
  EXPECT_EQ(lines[2].area, 0.0);
}

TEST_F(CollectionTest, PolylineNeedsTwoFinitePoints) {
  EXPECT_EQ(polyline({}), 0);
  EXPECT_EQ(polyline({{1, 1}}), 0);
  EXPECT_EQ(polyline({{0, 0}, {kNaN, 1}, {2, 2}}), 0);
  EXPECT_EQ(polyline({{0, 0}, {1, kInf}}), 0);
  EXPECT_TRUE(driver.GetCurrentView()->layers.empty() || layer("L1").isEmpty());
}

TEST_F(CollectionTest, FilledOutlinesBecomeFills) {
  driver.SetCurrentHandle("FF");
  ASSERT_EQ(polyline({{0, 0}, {1, 0}, {1, 1}, {0, 0}}, true), 1);
  DrvColorGroup& g = group("L1", 7);
  EXPECT_TRUE(g.polylines.empty());
  ASSERT_EQ(g.fills.size(), 1u);
  EXPECT_EQ(g.fills[0].handle, "FF");
  EXPECT_EQ(g.fills[0].points.size(), 4u);
}

TEST_F(CollectionTest, HandleLayersMarkTheirPolylines) {
  driver.AddHandleLayer(W("H"));
  polyline({{0, 0}, {1, 1}});
  driver.SetLayer(W("H"), 7);
  polyline({{0, 0}, {1, 1}});
  EXPECT_FALSE(group("L1", 7).polylines[0].hasHandle);
  EXPECT_TRUE(group("H", 7).polylines[0].hasHandle);
}

TEST_F(CollectionTest, ArcsCirclesEllipsesAndDots) {
  ASSERT_EQ(driver.DrawArc(W("CONTINUOUS"), true, 0, 0, 0, 10, 0, 90, 1.0, 0.0), 1);
  ASSERT_EQ(driver.DrawCircle(true, W("CONTINUOUS"), true, 1, 5, 5, 2, 1.0, 0.0), 1);
  ASSERT_EQ(driver.DrawEllipse(false, W("CONTINUOUS"), true, 1, 5, 5, 4, 2, 30, 1.0, 0.0), 1);
  ASSERT_EQ(driver.DrawDot(3, 4), 1);
  for (int dropped : {driver.DrawArc(W("C"), true, 0, 0, 0, 0, 0, 90, 1.0, 0.0),
                      driver.DrawArc(W("C"), true, 0, 0, kNaN, 1, 0, 90, 1.0, 0.0),
                      driver.DrawCircle(false, W("C"), true, 0, 0, 0, -1, 1.0, 0.0),
                      driver.DrawEllipse(false, W("C"), true, 0, 0, 0, 1, 0, 0, 1.0, 0.0),
                      driver.DrawDot(kInf, 0)})
    EXPECT_EQ(dropped, 0);
  DrvColorGroup& g = group("L1", 7);
  ASSERT_EQ(g.arcs.size(), 1u);
  EXPECT_NEAR(g.arcs[0].start.x, 10, 1e-3);
  EXPECT_NEAR(g.arcs[0].start.y, 0, 1e-3);
  EXPECT_NEAR(g.arcs[0].end.x, 0, 1e-3);
  EXPECT_NEAR(g.arcs[0].end.y, 10, 1e-3);
  ASSERT_EQ(g.circles.size(), 2u);
  EXPECT_TRUE(g.circles[0].filled);
  EXPECT_FALSE(g.circles[0].isEllipse);
  EXPECT_TRUE(g.circles[1].isEllipse);
  EXPECT_EQ(g.circles[1].rotation, 30);
  ASSERT_EQ(g.points.size(), 1u);
  EXPECT_EQ(driver.GetPageExtents().minX, -10);  // the arc's whole circle
}

TEST_F(CollectionTest, NodeIdKeepsWholeNameUpToSixCharacters) {
  struct Case {
    const char* layer;
    const char* nodeId;
  } cases[] = {{"NODE_12", "12"}, {"NODE_1", "NODE_1"}, {"NODE_", "NODE_"},   {"NODE_ABC", "ABC"},
               {"node_12", "node_12"}, {"Walls", "Walls"}, {"", "0"}};
  for (const auto& c : cases) {
    driver.SetLayer(W(c.layer), 7);
    driver.SetAttributes();
    EXPECT_EQ(driver.GetNodeId(), c.nodeId) << c.layer;
  }
}

TEST_F(CollectionTest, LayerNamesCompareWithoutCaseAndColourGroupsKeepCreationOrder) {
  driver.SetColor(5);
  line(0, 0, 10, 10);
  driver.SetColor(2);
  line(0, 0, 20, 10);
  driver.SetColor(5);
  line(0, 0, 30, 10);
  driver.SetLayer(W("l1"), 3);  // same layer, other spelling
  line(0, 0, 40, 10);
  ASSERT_EQ(driver.GetCurrentView()->layers.size(), 1u);
  const auto& groups = layer("L1").colorGroups;
  ASSERT_EQ(groups.size(), 2u);
  EXPECT_EQ(groups[0].colorIndex, 5);
  EXPECT_EQ(groups[1].colorIndex, 2);
  EXPECT_EQ(groups[0].lines.size(), 3u);
  EXPECT_EQ(layer("L1").color, 3);
}

TEST_F(CollectionTest, NodeGroupsCollectTheirOwnLayersAndRestoreTheOuterOne) {
  driver.SetColor(2);
  line(0, 0, 10, 10);
  driver.SetCurrentHandle("1F");
  driver.SetHyperlink(W("http://x/?a=1&b=2"), W("door"), false);
  driver.BeginGroup(W("DOOR"));
  EXPECT_TRUE(driver.IsInGroup());
  EXPECT_TRUE(driver.GetCurrentLayerName().isEmpty());
  driver.SetLayer(W("L1"), 3);
  line(0, 0, 20, 10);
  driver.BeginGroup(W("KNOB"));
  driver.SetLayer(W("L2"), 4);
  line(0, 0, 30, 10);
  driver.EndGroup(W("KNOB"));
  line(0, 0, 40, 10);  // back in DOOR
  driver.EndGroup(W("DOOR"));
  EXPECT_FALSE(driver.IsInGroup());
  EXPECT_EQ(driver.GetCurrentLayerName(), W("L1"));
  EXPECT_EQ(driver.GetColorIndex(), 3);  // the layer's colour
  line(0, 0, 50, 10);

  DrvView& view = *driver.GetCurrentView();
  ASSERT_EQ(view.nodeGroups.size(), 2u);
  const DrvNodeGroup& door = view.nodeGroups[0];
  EXPECT_EQ(door.name, W("DOOR"));
  EXPECT_EQ(door.handle, "1F");
  EXPECT_EQ(door.linkText, W("http://x/?a=1&b=2"));
  EXPECT_EQ(door.linkTarget, W("door"));
  ASSERT_EQ(door.layers.count(W("L1")), 1u);
  std::size_t doorLines = 0;
  for (const auto& g : door.layers.at(W("L1")).colorGroups) doorLines += g.lines.size();
  EXPECT_EQ(doorLines, 2u);
  EXPECT_EQ(view.nodeGroups[1].layers.count(W("L2")), 1u);
  EXPECT_EQ(view.layers.count(W("L2")), 0u);
  EXPECT_EQ(group("L1", 2).lines.size(), 1u);
  EXPECT_EQ(group("L1", 3).lines.size(), 1u);
}

TEST_F(CollectionTest, UnbalancedEndGroupAndDrawingWithoutViewAreHarmless) {
  driver.EndGroup(W("nothing open"));
  EXPECT_EQ(line(0, 0, 10, 10), 1);
  TRANS_BASE2 noView;
  EXPECT_EQ(noView.DrawDot(1, 1), 0);
  EXPECT_EQ(noView.AddRoomLabel("101", 1, 1), 0);
  noView.BeginGroup(W("G"));
  EXPECT_FALSE(noView.IsInGroup());
  std::vector<OdGePoint2d> square{{0, 0}, {100, 0}, {100, 100}, {0, 0}};
  EXPECT_EQ(noView.DrawPolyline(square, false, 0, W("C"), true, 0, 1.0, 0.0), 0);
}

TEST_F(CollectionTest, ImagesAndRoomLabelsAreStoredScaled) {
  driver.SetUnitScale(10.0);
  ASSERT_EQ(driver.DrawEmbeddedImage(W("pic.png"), 640, 480, {{0, 0}, {1, 1}}, 1, 0, 0, 2, 3), 1);
  EXPECT_EQ(driver.DrawEmbeddedImage(W("bad.png"), 1, 1, {}, 1, kNaN, 0, 2, 3), 0);
  ASSERT_EQ(driver.AddRoomLabel("1_A_101", 1.5, 2.5), 1);
  const DrvImage& image = group("L1", 7).images.at(0);
  EXPECT_EQ(image.fileName, W("pic.png"));
  EXPECT_EQ(image.maxY, 30);
  EXPECT_EQ(image.clipPoints.at(1), (OdGePoint2d{10, 10}));
  const auto& label = driver.GetCurrentView()->roomLabels.at(0);
  EXPECT_EQ(label.text, "1_A_101");
  EXPECT_EQ(label.position, (OdGePoint2d{15, 25}));
}

}  // namespace

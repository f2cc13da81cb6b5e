// Views as drawings save them: the active viewport's, a named view's and a viewport's direction,
// twist and field; front and back clipping planes; clip regions of several loops; and views whose
// stored values are degenerate.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "kit/gi/GiClipStage.h"
#include "kit/gi/GiClipping.h"
#include "kit/gs/StoredView.h"
#include "tests/kit/GsTestSupport.h"

namespace {

ViewportRecord& activeRecord(OdDbDatabase& db) {
  if (ViewportRecord* record = db.activeViewport()) return *record;
  auto* record = db.newObject<ViewportRecord>();
  record->name = "*Active";
  record->handle = db.allocateHandle();
  db.adoptHandle(record);
  db.viewports().add(record);
  return *record;
}

// Where an isometric view (from target + direction, no twist) puts a world point on the screen,
// relative to the target: x is level, y climbs towards world z.
OdGePoint2d isometric(const OdGeVector3d& direction, const OdGePoint3d& p) {
  OdGeVector3d d = direction.normal();
  OdGeVector3d x = OdGeVector3d::kZAxis().crossProduct(d).normal();
  OdGeVector3d y = d.crossProduct(x);
  OdGeVector3d v = p - OdGePoint3d();
  return {v.dotProduct(x), v.dotProduct(y)};
}

// Model space: a 10-unit wire square at z 0 and a post up to z 10, shown on a 1000 x 1000 device
// with y upward (scale 1000 / field height).
class GsSavedView : public ::testing::Test {
protected:
  GsSavedView() : rig(emptyDrawing()) {
    BlockRecord& model = *rig.db->modelSpace();
    addLine(*rig.db, model, {0, 0, 0}, {10, 0, 0});
    addLine(*rig.db, model, {0, 0, 0}, {0, 0, 10});
  }
  std::vector<RecordedCall> drawView(const StoredView& stored) {
    rig.sink.calls.clear();
    rig.device->eraseAllViews();
    view = rig.device->createView();
    rig.device->addView(view.get());
    view->setSceneBlock(rig.db->modelSpace());
    applyStoredView(*view, stored);
    rig.device->onSize(OdGsDCRect(0, 1000, 0, 1000));
    rig.device->update();
    // Lines seen end on come out as points: only those with length count.
    std::vector<RecordedCall> lines = rig.sink.ofKind("polyline");
    std::erase_if(lines, [](const RecordedCall& c) { return c.points.front().to2d().distanceTo(c.points.back().to2d()) < 1e-9; });
    return lines;
  }
  static StoredView looking(OdGeVector3d direction, double height = 20.0) {
    StoredView v;
    v.direction = direction;
    v.width = v.height = height;
    return v;
  }

  GsRig rig;
  OdGsViewPtr view;
};

TEST_F(GsSavedView, IsometricDirectionProjectsParallelFromTheTarget) {
  const OdGeVector3d sw(-1, -1, 1);
  auto lines = drawView(looking(sw));
  ASSERT_EQ(lines.size(), 2u);
  // Scale 50 device units per unit, the target at the device's centre.
  OdGePoint2d xEnd = isometric(sw, {10, 0, 0});
  OdGePoint2d zEnd = isometric(sw, {0, 0, 10});
  EXPECT_TRUE(nearXY(lines[0].points.front(), 500, 500));
  EXPECT_TRUE(nearXY(lines[0].points.back(), 500 + 50 * xEnd.x, 500 + 50 * xEnd.y));
  EXPECT_TRUE(nearXY(lines[1].points.back(), 500 + 50 * zEnd.x, 500 + 50 * zEnd.y));
  // From the south-west the x axis runs up to the right and z straight up.
  EXPECT_GT(xEnd.x, 0.0);
  EXPECT_GT(xEnd.y, 0.0);
  EXPECT_NEAR(zEnd.x, 0.0, 1e-12);
  EXPECT_NEAR(zEnd.y, 10 * std::sqrt(2.0 / 3.0), 1e-12);
}

TEST_F(GsSavedView, ActiveViewportRecordKeepsItsDirectionAndCentre) {
  ViewportRecord& record = activeRecord(*rig.db);
  record.viewDirection = {1, -1, 1};
  record.target = {0, 0, 0};
  record.center = {2, 3};
  record.height = 20;
  record.aspectRatio = 1;
  OdGsLayoutHelperPtr helper = rig.setup();
  OdGsView& active = *helper->activeView();
  // The centre is in display coordinates: along the screen axes from the target.
  OdGePoint3d centreInEye = active.worldToEyeMatrix().transform(OdGePoint3d(0, 0, 0));
  EXPECT_NEAR(centreInEye.x, -2, 1e-9);
  EXPECT_NEAR(centreInEye.y, -3, 1e-9);
  OdGeVector3d sight = (active.position() - active.target()).normal();
  EXPECT_NEAR(sight.dotProduct(OdGeVector3d(1, -1, 1).normal()), 1.0, 1e-12);
}

TEST_F(GsSavedView, NamedViewTwistTurnsTheScreen) {
  ViewRecord named;
  named.direction = {0, 0, 1};
  named.twist = kPi / 2;
  named.height = named.width = 20;
  auto lines = drawView(storedViewOf(named));
  ASSERT_EQ(lines.size(), 1u);  // the post is seen end on
  // World +x points up the screen.
  EXPECT_TRUE(nearXY(lines[0].points.back(), 500, 1000));
}

TEST_F(GsSavedView, FrontAndBackPlanesCutAlongTheSight) {
  StoredView front = looking({0, -1, 0});
  front.frontClip = front.backClip = true;
  front.frontClipAtEye = false;
  front.frontDistance = 10;
  front.backDistance = -10;
  front.target = {0, 0, 4};
  // From the front, the post's z becomes screen y; depth is -y: both lines lie at depth 0.
  EXPECT_EQ(drawView(front).size(), 2u);
  // Planes at depths 1 and 3 leave the lines lying at depth 0 out.
  front.frontDistance = 3;
  front.backDistance = 1;
  EXPECT_TRUE(drawView(front).empty());
  // Seen from the side, the x line runs through the depths (end on, a point on the screen):
  // only 2 <= x <= 6 is left, and the post at depth 0 goes.
  StoredView side = looking({1, 0, 0});
  side.frontClip = side.backClip = true;
  side.frontClipAtEye = false;
  side.frontDistance = 6;
  side.backDistance = 2;
  EXPECT_TRUE(drawView(side).empty());
  auto kept = rig.sink.ofKind("polyline");
  ASSERT_EQ(kept.size(), 1u);
  EXPECT_NEAR(kept[0].points.front().z / 50, 2, 1e-9);
  EXPECT_NEAR(kept[0].points.back().z / 50, 6, 1e-9);
  // A front plane at the eye keeps all of a parallel view.
  side.frontClipAtEye = true;
  side.backClip = false;
  EXPECT_EQ(drawView(side).size(), 1u);
  EXPECT_EQ(rig.sink.ofKind("polyline").size(), 2u);
}

TEST_F(GsSavedView, PerspectiveEnlargesWhatIsNearerTheCamera) {
  BlockRecord& model = *rig.db->modelSpace();
  model.entities.clear();
  addLine(*rig.db, model, {0, 0, 0}, {4, 0, 0});  // in the target's plane: its size kept
  addLine(*rig.db, model, {0, 2, 5}, {4, 2, 5});  // half way to the camera: twice as long
  addLine(*rig.db, model, {0, 4, 5}, {0, 4, 20});  // reaching behind the camera: cut short of it
  StoredView v = looking({0, 0, 10});
  v.perspective = true;
  auto lines = drawView(v);
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_NEAR(lines[0].points.back().x - lines[0].points.front().x, 4 * 50, 1e-6);
  EXPECT_NEAR(lines[1].points.back().x - lines[1].points.front().x, 8 * 50, 1e-6);
  EXPECT_NEAR(lines[1].points.front().y, 500 + 4 * 50, 1e-6);
  for (const OdGePoint3d& p : lines[2].points) EXPECT_TRUE(std::isfinite(p.y));
  EXPECT_LT(lines[2].points.back().z / 50, 10.0);
  // The same view in parallel keeps every length.
  v.perspective = false;
  lines = drawView(v);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_NEAR(lines[1].points.back().x - lines[1].points.front().x, 4 * 50, 1e-6);
}

TEST_F(GsSavedView, DegenerateStoredValuesStillDrawInPlan) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  for (OdGeVector3d direction : {OdGeVector3d(0, 0, 0), OdGeVector3d(nan, 0, 1), OdGeVector3d(inf, inf, inf)}) {
    StoredView v = looking(direction);
    v.twist = nan;
    v.center = {nan, 0};
    auto lines = drawView(v);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(nearXY(lines[0].points.back(), 1000, 500));
  }
  StoredView flat = looking({0, 0, 1}, 0.0);
  flat.frontClip = flat.backClip = true;
  flat.frontClipAtEye = false;
  flat.frontDistance = nan;
  flat.backDistance = -inf;
  EXPECT_EQ(drawView(flat).size(), 1u);
  EXPECT_TRUE(std::isfinite(view->fieldHeight()));
}

TEST_F(GsSavedView, PlanIsRecognisedOnlyWithoutTwistOrTilt) {
  EXPECT_TRUE(isPlanView(looking({0, 0, 5})));
  EXPECT_FALSE(isPlanView(looking({0, 0, -1})));
  EXPECT_FALSE(isPlanView(looking({0, 1e-3, 1})));
  StoredView twisted = looking({0, 0, 1});
  twisted.twist = 0.1;
  EXPECT_FALSE(isPlanView(twisted));
}

// ---- Clip regions of several loops -------------------------------------------------------------

// A 10 x 10 square with a 4 x 4 hole in its middle.
gi::ClipLoops squareWithHole() {
  return {{{0, 0}, {10, 0}, {10, 10}, {0, 10}}, {{3, 3}, {7, 3}, {7, 7}, {3, 7}}};
}

TEST(GiClipRegion, PolylinesSkipTheHole) {
  auto pieces = gi::clipPolyline({{-5, 5, 0}, {15, 5, 0}}, squareWithHole());
  ASSERT_EQ(pieces.size(), 2u);
  EXPECT_TRUE(nearXY(pieces[0].front(), 0, 5));
  EXPECT_TRUE(nearXY(pieces[0].back(), 3, 5));
  EXPECT_TRUE(nearXY(pieces[1].front(), 7, 5));
  EXPECT_TRUE(nearXY(pieces[1].back(), 10, 5));
  EXPECT_TRUE(gi::clipPolyline({{4, 4, 0}, {6, 6, 0}}, squareWithHole()).empty());
  EXPECT_FALSE(gi::pointInRegion({5, 5}, squareWithHole()));
  EXPECT_TRUE(gi::pointInRegion({1, 5}, squareWithHole()));
}

TEST(GiClipRegion, BoxesInTheHoleAreOutside) {
  using gi::BoxRelation;
  gi::ClipLoops loops = squareWithHole();
  EXPECT_EQ(gi::boxRelation(OdGeExtents3d({4, 4, 0}, {6, 6, 0}), loops), BoxRelation::kOutside);
  EXPECT_EQ(gi::boxRelation(OdGeExtents3d({1, 1, 0}, {2, 9, 0}), loops), BoxRelation::kInside);
  EXPECT_EQ(gi::boxRelation(OdGeExtents3d({2, 2, 0}, {4, 4, 0}), loops), BoxRelation::kCrossing);
  EXPECT_EQ(gi::boxRelation(OdGeExtents3d({20, 20, 0}, {30, 30, 0}), loops), BoxRelation::kOutside);
}

TEST(GiClipRegion, DegenerateLoopsAreLeftOut) {
  gi::ClipLoops loops = {{}, {{1, 1}}, {{0, 0}, {10, 0}, {10, 10}, {0, 10}}, {{5, 5}, {5, 5}}};
  auto pieces = gi::clipPolyline({{-5, 5, 0}, {15, 5, 0}}, loops);
  ASSERT_EQ(pieces.size(), 1u);
  EXPECT_TRUE(nearXY(pieces[0].back(), 10, 5));
  EXPECT_TRUE(gi::clipPolyline({{-5, 5, 0}, {15, 5, 0}}, gi::ClipLoops{{}, {{1, 1}, {2, 2}}}).empty());
  // Outlines whose loops all coincide cancel out.
  gi::ClipLoops twice = {loops[2], loops[2]};
  EXPECT_TRUE(gi::clipPolyline({{-5, 5, 0}, {15, 5, 0}}, twice).empty());
}

TEST(GiClipRegion, AreasAreCutToTheOuterLoops) {
  gi::ClipLoops loops = {{{0, 0}, {4, 0}, {4, 4}, {0, 4}}, {{6, 0}, {10, 0}, {10, 4}, {6, 4}}};
  auto areas = gi::clipPolygon({{-1, 1, 0}, {11, 1, 0}, {11, 2, 0}, {-1, 2, 0}}, loops);
  ASSERT_EQ(areas.size(), 2u);
  for (const auto& area : areas) EXPECT_EQ(area.size(), 4u);
}

TEST(GiClipDepth, PointListsKeepTheSlab) {
  auto pieces = gi::clipPolylineToDepth({{0, 0, -5}, {0, 0, 5}, {1, 0, 5}, {1, 0, -5}}, -1, 1);
  ASSERT_EQ(pieces.size(), 2u);
  EXPECT_NEAR(pieces[0].front().z, -1, 1e-12);
  EXPECT_NEAR(pieces[0].back().z, 1, 1e-12);
  EXPECT_NEAR(pieces[1].front().z, 1, 1e-12);
  EXPECT_NEAR(pieces[1].back().z, -1, 1e-12);
  EXPECT_TRUE(gi::clipPolylineToDepth({{0, 0, 2}, {1, 0, 2}}, -1, 1).empty());
  auto area = gi::clipPolygonToDepth({{0, 0, -5}, {1, 0, 5}, {0, 1, 5}}, -HUGE_VAL, 0);
  ASSERT_GE(area.size(), 3u);
  for (const OdGePoint3d& p : area) EXPECT_LE(p.z, 1e-12);
}

// A view clipped by two contours on the device keeps what lies in an odd number of them.
TEST_F(GsSavedView, ViewportClipUsesEveryContour) {
  BlockRecord& model = *rig.db->modelSpace();
  model.entities.clear();
  addLine(*rig.db, model, {-10, 0, 0}, {10, 0, 0});
  CircleEntity* circle = addEntity<CircleEntity>(*rig.db, model);
  circle->radius = 1;
  StoredView v = looking({0, 0, 1}, 20.0);
  rig.sink.calls.clear();
  rig.device->eraseAllViews();
  view = rig.device->createView();
  rig.device->addView(view.get());
  view->setSceneBlock(&model);
  applyStoredView(*view, v);
  rig.device->onSize(OdGsDCRect(0, 1000, 0, 1000));
  // Device units: the square 100..900 with the hole 300..700.
  OdGePoint2d vertices[8] = {{100, 100}, {900, 100}, {900, 900}, {100, 900},
                             {300, 300}, {700, 300}, {700, 700}, {300, 700}};
  int counts[2] = {4, 4};
  view->setViewportClipRegion(2, counts, vertices);
  rig.device->update();
  auto lines = rig.sink.ofKind("polyline");
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_TRUE(nearXY(lines[0].points.front(), 100, 500));
  EXPECT_TRUE(nearXY(lines[0].points.back(), 300, 500));
  EXPECT_TRUE(nearXY(lines[1].points.front(), 700, 500));
  EXPECT_EQ(rig.sink.count("circle"), 0u);  // the circle (radius 50 on the device) lies in the hole
}

}  // namespace

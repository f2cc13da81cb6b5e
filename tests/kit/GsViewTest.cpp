// The kit's base view and device: world to device mapping (y down or up as the device rectangle
// says, aspect kept, centred),
// viewports and clip outlines, per-view frozen layers and zoom.
#include <gtest/gtest.h>

#include "kit/base/OdError.h"
#include "kit/gs/DrawOrder.h"
#include "kit/gs/GeomExtents.h"
#include "tests/kit/GsTestSupport.h"

namespace {

// Model space with a line from (0, 0) to (100, 50) and a circle at (50, 25), radius 10, shown by
// one plain view zoomed to (0, 0)-(100, 50) on a 1000 x 1000 device.
class GsModelViewTest : public ::testing::Test {
protected:
  GsModelViewTest() : rig(emptyDrawing()) {
    BlockRecord& model = *rig.db->modelSpace();
    addLine(*rig.db, model, {0, 0, 0}, {100, 50, 0});
    CircleEntity* circle = addEntity<CircleEntity>(*rig.db, model);
    circle->center = {50, 25, 0};
    circle->radius = 10;
    view = rig.device->createView();
    rig.device->addView(view.get());
    view->setSceneBlock(&model);
    view->zoomExtents({0, 0, 0}, {100, 50, 0});
    rig.device->onSize(OdGsDCRect(0, 1000, 1000, 0));  // rows counted downward, as on a screen
  }
  std::vector<RecordedCall> drawn(const std::string& kind) {
    rig.sink.calls.clear();
    rig.device->update();
    return rig.sink.ofKind(kind);
  }

  GsRig rig;
  OdGsViewPtr view;
};

TEST_F(GsModelViewTest, FieldFitsTheDeviceKeepingAspectCentredWithYDownward) {
  auto lines = drawn("polyline");
  ASSERT_EQ(lines.size(), 1u);
  // Scale 10 (the width limits), centred vertically: world y 0 is device y 750.
  EXPECT_TRUE(nearXY(lines[0].points.front(), 0, 750));
  EXPECT_TRUE(nearXY(lines[0].points.back(), 1000, 250));
  auto circles = rig.sink.ofKind("circle");
  ASSERT_EQ(circles.size(), 1u);
  EXPECT_TRUE(nearXY(circles[0].center, 500, 500));
  EXPECT_NEAR(circles[0].radius, 100, 1e-9);
  // The y flip mirrors the drawing plane: its normal reaches the sink reversed.
  EXPECT_NEAR(circles[0].normal.z, -1, 1e-12);
}

TEST_F(GsModelViewTest, RectangleGivenBottomUpKeepsTheDrawingsYAxis) {
  rig.device->onSize(OdGsDCRect(0, 1000, 0, 1000));
  auto lines = drawn("polyline");
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_TRUE(nearXY(lines[0].points.front(), 0, 250));
  EXPECT_TRUE(nearXY(lines[0].points.back(), 1000, 750));
  auto circles = rig.sink.ofKind("circle");
  ASSERT_EQ(circles.size(), 1u);
  EXPECT_NEAR(circles[0].normal.z, 1, 1e-12);
}

TEST_F(GsModelViewTest, TallDeviceCentresHorizontally) {
  rig.device->onSize(OdGsDCRect(10, 210, 1000, 0));  // 200 wide: scale 2
  auto lines = drawn("polyline");
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_TRUE(nearXY(lines[0].points.front(), 10, 550));
  EXPECT_TRUE(nearXY(lines[0].points.back(), 210, 450));
}

TEST_F(GsModelViewTest, ViewportInNormalisedCoordinatesTakesItsPartOfTheDevice) {
  view->setViewport(OdGePoint2d(0.5, 0.0), OdGePoint2d(1.0, 0.5));  // lower right quarter
  OdGsDCRect rect;
  view->getViewport(rect);
  EXPECT_EQ(rect, OdGsDCRect(500, 1000, 500, 1000));
  auto lines = drawn("polyline");
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_TRUE(nearXY(lines[0].points.front(), 500, 875));
  EXPECT_TRUE(nearXY(lines[0].points.back(), 1000, 625));
  // The same place given in device units.
  view->setViewport(OdGePoint2d(0, 0), OdGePoint2d(1, 1));
  view->setViewport(OdGsDCRect(500, 1000, 500, 1000));
  OdGePoint2d ll, ur;
  view->getViewport(ll, ur);
  EXPECT_NEAR(ll.x, 0.5, 1e-12);
  EXPECT_NEAR(ll.y, 0.0, 1e-12);
  EXPECT_NEAR(ur.y, 0.5, 1e-12);
}

TEST_F(GsModelViewTest, ZoomShowsMoreOrLessAndClipsToTheViewport) {
  view->zoom(2.0);  // field 50 x 25: the line runs past the device on both sides
  EXPECT_NEAR(view->fieldWidth(), 50, 1e-12);
  auto lines = drawn("polyline");
  ASSERT_EQ(lines.size(), 1u);
  for (const OdGePoint3d& p : lines[0].points) {
    EXPECT_GE(p.x, -1e-6);
    EXPECT_LE(p.x, 1000 + 1e-6);
  }
  EXPECT_EQ(rig.sink.count("circle"), 1u);  // still wholly inside
  view->zoom(0.0);   // ignored
  view->zoom(-1.0);  // ignored
  EXPECT_NEAR(view->fieldWidth(), 50, 1e-12);
}

TEST_F(GsModelViewTest, ClipRegionCutsWhatCrossesIt) {
  // A triangle over the left half of the device: the line's right end is cut off.
  OdGePoint2d triangle[3] = {{0, 0}, {500, 500}, {0, 1000}};
  int count = 3;
  view->setViewportClipRegion(1, &count, triangle);
  auto lines = drawn("polyline");
  ASSERT_FALSE(lines.empty());
  for (const RecordedCall& line : lines) {
    for (const OdGePoint3d& p : line.points) EXPECT_LE(p.x, 500 + 1e-6);
  }
  EXPECT_EQ(rig.sink.count("circle"), 0u);  // the circle at (500, 500) crosses the tip: broken up
  view->removeViewportClipRegion();
  EXPECT_EQ(drawn("circle").size(), 1u);
}

TEST_F(GsModelViewTest, FrozenLayerOfTheViewIsNotDrawn) {
  LayerRecord* hidden = rig.db->layerNamed("Hidden");
  addLine(*rig.db, *rig.db->modelSpace(), {0, 50, 0}, {100, 50, 0}, hidden);
  EXPECT_EQ(drawn("polyline").size(), 2u);
  view->freezeLayer(hidden);
  view->freezeLayer(hidden);
  EXPECT_EQ(view->frozenLayers().size(), 1u);
  EXPECT_EQ(drawn("polyline").size(), 1u);
  view->thawLayer(hidden);
  EXPECT_EQ(drawn("polyline").size(), 2u);
}

TEST_F(GsModelViewTest, MatricesAgreeWithEachOther) {
  view->setView({10, 20, 5}, {10, 20, 0}, {-1, 0, 0}, 40, 40);  // up is world -x
  OdGeMatrix3d eyeToWorld = view->eyeToWorldMatrix();
  OdGePoint3d back = eyeToWorld.transform(view->worldToEyeMatrix().transform(OdGePoint3d(3, 4, 0)));
  EXPECT_TRUE(nearXY(back, 3, 4, 1e-9));
  // Eye y (up on the screen) is world -x: a point left of the target in world is above it.
  OdGePoint3d dev = view->worldToDeviceMatrix().transform(OdGePoint3d(0, 20, 0));
  EXPECT_NEAR(dev.x, 500, 1e-9);
  EXPECT_LT(dev.y, 500);
}

TEST_F(GsModelViewTest, SetUpHookGivesTheSinkTheViewsDeviationAndTraits) {
  auto* base = static_cast<OdGsBaseVectorizeViewDef*>(view.get());
  base->setDeviceDeviation(0.25);
  rig.device->update();
  EXPECT_EQ(rig.sink.deviationObject(), &base->deviationObject());
  EXPECT_DOUBLE_EQ(rig.sink.deviation(kOdGiMaxDevForCircle, {0.1, 0.1, 0.1}), 0.25);
  // Traits reached the sink with each primitive while drawing; the context is let go afterwards.
  EXPECT_EQ(rig.sink.calls.front().traits.layer, rig.db->layerZero());
  EXPECT_EQ(rig.sink.drawContext(), nullptr);
  EXPECT_GT(base->traitsChangeCount(), 0u);
  EXPECT_FALSE(base->isVectorizing());
}

// A view that records what the base hands to its hooks.
class HookView : public OdGsBaseVectorizeViewDef {
public:
  std::vector<size_t> depths;
  int begins = 0;
  void beginViewVectorization() override {
    ++begins;
    OdGsBaseVectorizeViewDef::beginViewVectorization();
  }
  void draw(const OdGiDrawable* drawable) override {
    depths.push_back(blockDepth());
    if (drawable->type != DbType::kCircle) OdGsBaseVectorizeViewDef::draw(drawable);  // skips circles
  }
};

TEST(GsViewHooks, DrawIsCalledForTopLevelAndNestedEntities) {
  GsRig rig(readDxfText(dxfText(
      {"0 SECTION", "2 BLOCKS", "0 BLOCK", "2 B", "70 0", "10 0", "20 0", "30 0", "0 LINE", "8 0", "10 0", "20 0",
       "11 1", "21 0", "0 CIRCLE", "8 0", "10 0", "20 0", "40 1", "0 ENDBLK", "0 ENDSEC", "0 SECTION",
       "2 ENTITIES", "0 INSERT", "8 0", "2 B", "10 5", "20 5", "0 CIRCLE", "8 0", "10 0", "20 0", "40 2",
       "0 ENDSEC", "0 EOF"})));
  OdGsViewPtr view = OdRxObjectImpl<HookView, OdGsView>::createObject();
  auto* hooks = static_cast<HookView*>(view.get());
  hooks->init(rig.device.get());
  rig.device->addView(view.get());
  view->setSceneBlock(rig.db->modelSpace());
  view->zoomExtents({-10, -10, 0}, {10, 10, 0});
  rig.device->update();
  EXPECT_EQ(hooks->begins, 1);
  // The insert and the circle at the top, the block's line and circle one level down.
  EXPECT_EQ(hooks->depths, (std::vector<size_t>{0, 1, 1, 0}));
  EXPECT_EQ(rig.sink.count("circle"), 0u);
  EXPECT_EQ(rig.sink.count("polyline"), 1u);
}

TEST(GsViewHooks, NothingIsDrawnWithoutASinkABlockOrAnArea) {
  GsRig rig(emptyDrawing());
  addLine(*rig.db, *rig.db->modelSpace(), {0, 0, 0}, {1, 1, 0});
  OdGsViewPtr view = rig.device->createView();
  rig.device->addView(view.get());
  rig.device->addView(view.get());  // once only
  EXPECT_EQ(rig.device->numViews(), 1);
  rig.device->update();  // no scene block
  view->setSceneBlock(rig.db->modelSpace());
  rig.device->onSize(OdGsDCRect(5, 5, 0, 100));  // no width
  rig.device->update();
  EXPECT_TRUE(rig.sink.calls.empty());
  EXPECT_TRUE(rig.device->eraseView(view.get()));
  EXPECT_FALSE(rig.device->eraseView(view.get()));
  EXPECT_EQ(rig.device->viewAt(0), nullptr);
}

TEST(GsGeomExtents, BlockExtentsCoverWhatIsDrawnOnVisibleLayers) {
  OdDbDatabasePtr db = emptyDrawing();
  BlockRecord& model = *db->modelSpace();
  addLine(*db, model, {0, 0, 0}, {100, 50, 0});
  CircleEntity* circle = addEntity<CircleEntity>(*db, model);
  circle->center = {120, 0, 0};
  circle->radius = 5;
  LayerRecord* off = db->layerNamed("Off");
  off->setIsOff(true);
  addLine(*db, model, {-500, -500, 0}, {0, 0, 0}, off);
  OdGeExtents3d box;
  ASSERT_TRUE(blockGeomExtents(*db, model, box));
  EXPECT_TRUE(nearXY(box.minPoint, 0, -5));
  EXPECT_TRUE(nearXY(box.maxPoint, 125, 50));
  ASSERT_TRUE(entityGeomExtents(*db, *circle, box));
  EXPECT_TRUE(nearXY(box.minPoint, 115, -5));
  OdGeExtents3d none;
  EXPECT_FALSE(blockGeomExtents(*db, *db->paperSpace(), none));
}

}  // namespace

namespace {

TEST(GsDrawOrder, SortHandlesOfTheBlocksTableDecideTheOrder) {
  OdDbDatabasePtr db = emptyDrawing();
  BlockRecord& model = *db->modelSpace();
  LineEntity* first = addLine(*db, model, {0, 0, 0}, {1, 0, 0});
  LineEntity* second = addLine(*db, model, {0, 1, 0}, {1, 1, 0});
  LineEntity* third = addLine(*db, model, {0, 2, 0}, {1, 2, 0});
  EXPECT_EQ(entitiesInDrawOrder(*db, model), (std::vector<const Entity*>{first, second, third}));
  auto* table = db->newObject<SortEntsTableObject>();
  table->blockRecordHandle = model.handle;
  // The first line is drawn as if it came after the third.
  table->entries.emplace_back(first->handle, OdDbHandle(third->handle.value() + 1));
  db->addObject(table);
  EXPECT_EQ(entitiesInDrawOrder(*db, model), (std::vector<const Entity*>{second, third, first}));

  GsRig rig(db);
  OdGsViewPtr view = rig.device->createView();
  rig.device->addView(view.get());
  view->setSceneBlock(&model);
  view->zoomExtents({0, 0, 0}, {1, 2, 0});  // the outer lines lie on the view's edges: still drawn
  rig.device->update();
  auto lines = rig.sink.ofKind("polyline");
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_NEAR(lines[2].points[0].y, 0, 1e-6);  // the first line, world y 0, comes last
}

}  // namespace

// The layout helper: model space from the active viewport configuration, paper layouts with
// their viewports (scale, clip outline, frozen layers, PSLTSCALE), making layouts current, and
// every corpus drawing set up and drawn.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <limits>

#include "kit/base/OdError.h"
#include "kit/gs/EntityOutline.h"
#include "kit/gs/GeomExtents.h"
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

// A two-point polyline from a to b (either way round), within `tol`.
bool hasSegment(const std::vector<RecordedCall>& calls, OdGePoint3d a, OdGePoint3d b, double tol = 1e-6) {
  for (const RecordedCall& c : calls) {
    if (c.points.size() != 2) continue;
    const OdGePoint3d& p = c.points[0];
    const OdGePoint3d& q = c.points[1];
    if ((nearXY(p, a.x, a.y, tol) && nearXY(q, b.x, b.y, tol)) || (nearXY(p, b.x, b.y, tol) && nearXY(q, a.x, a.y, tol)))
      return true;
  }
  return false;
}

TEST(GsModelLayout, ActiveViewportRecordGivesTheView) {
  GsRig rig(emptyDrawing());
  ViewportRecord& record = activeRecord(*rig.db);
  record.center = {10, 5};
  record.height = 20;
  record.aspectRatio = 2;
  addLine(*rig.db, *rig.db->modelSpace(), {0, 0, 0}, {20, 10, 0});
  rig.db->setCurrentLayout(OdString(L"Model"));
  OdGsLayoutHelperPtr helper = rig.setup();
  ASSERT_EQ(helper->numViews(), 1);
  EXPECT_TRUE(helper->isModelLayout());
  EXPECT_EQ(helper->activeViewportId(), record.handle);
  EXPECT_EQ(helper->activeView()->sceneBlock(), rig.db->modelSpace());
  EXPECT_NEAR(helper->activeView()->fieldWidth(), 40, 1e-12);
  helper->onSize(OdGsDCRect(0, 1000, 500, 0));  // the helper passes it on to the device
  EXPECT_EQ(rig.device->outputRect(), OdGsDCRect(0, 1000, 500, 0));
  helper->update();
  EXPECT_TRUE(hasSegment(rig.sink.ofKind("polyline"), {250, 375, 0}, {750, 125, 0}));
}

TEST(GsModelLayout, TwistTurnsTheDrawingCounterClockwise) {
  GsRig rig(emptyDrawing());
  ViewportRecord& record = activeRecord(*rig.db);
  record.center = {0, 0};
  record.height = 20;
  record.aspectRatio = 1;
  record.twist = kPi / 2;
  addLine(*rig.db, *rig.db->modelSpace(), {0, 0, 0}, {5, 0, 0});
  OdGsLayoutHelperPtr helper = rig.setup();
  rig.device->onSize(OdGsDCRect(0, 200, 200, 0));
  rig.device->update();
  // World +x points up the screen.
  EXPECT_TRUE(hasSegment(rig.sink.ofKind("polyline"), {100, 100, 0}, {100, 50, 0}, 1e-6));
}

TEST(GsModelLayout, WithoutAViewportRecordTheDrawnExtentsAreShown) {
  GsRig rig(emptyDrawing());
  if (ViewportRecord* record = rig.db->activeViewport()) rig.db->viewports().remove(record);
  rig.db->header().extMin = {1e20, 1e20, 1e20};
  addLine(*rig.db, *rig.db->modelSpace(), {100, 100, 0}, {300, 200, 0});
  OdGsLayoutHelperPtr helper = rig.setup();
  EXPECT_TRUE(helper->activeViewportId().isNull());
  EXPECT_NEAR(helper->activeView()->fieldWidth(), 200, 1e-9);
  EXPECT_NEAR(helper->activeView()->fieldHeight(), 100, 1e-9);
  EXPECT_TRUE(nearXY(helper->activeView()->target(), 200, 150));
}

// Layout1 on a 400 x 300 sheet with two viewports of model space, each 100 x 100 on paper: A at
// (100, 150) showing 50 model units (scale 2), B at (300, 150) showing 200 (scale 0.5) and
// clipped by a triangle. A layer is frozen in B only. The device is 800 x 600: paper scale 2.
class GsPaperLayoutTest : public ::testing::Test {
protected:
  GsPaperLayoutTest() : rig(emptyDrawing()) {
    OdDbDatabase& db = *rig.db;
    layout = db.findLayout("Layout1");
    paper = layout->block;
    layout->limMin = {0, 0};
    layout->limMax = {400, 300};
    overall = viewport(1, {200, 150}, 400, 300, 300);
    a = viewport(2, {100, 150}, 100, 100, 50);
    b = viewport(3, {300, 150}, 100, 100, 200);
    auto* triangle = addEntity<LwPolylineEntity>(db, *paper);
    triangle->points = {{250, 100}, {350, 100}, {300, 200}};
    triangle->flags = LwPolylineEntity::kClosed;
    b->statusFlags |= ViewportEntity::kNonRectangularClip;
    b->clipBoundary = triangle->handle;
    onlyA = db.layerNamed("OnlyA");
    b->frozenLayers.push_back(onlyA);
    addLine(db, *db.modelSpace(), {-100, 0, 0}, {100, 0, 0});
    addLine(db, *db.modelSpace(), {-5, 10, 0}, {5, 10, 0}, onlyA);
    db.setCurrentLayout(OdString(L"Layout1"));
  }
  ViewportEntity* viewport(int16_t number, OdGePoint2d centre, double w, double h, double viewHeight) {
    auto* vp = addEntity<ViewportEntity>(*rig.db, *paper);
    vp->number = number;
    vp->status = number;
    vp->center = {centre.x, centre.y, 0};
    vp->width = w;
    vp->height = h;
    vp->viewHeight = viewHeight;
    return vp;
  }
  OdGsBaseVectorizeViewDef* viewOf(const OdGsLayoutHelperPtr& helper, const ViewportEntity* vp) {
    for (int i = 0; i < helper->numViews(); ++i) {
      auto* view = static_cast<OdGsBaseVectorizeViewDef*>(helper->viewAt(i));
      if (view->clientViewInfo().viewportObjectId == vp->handle) return view;
    }
    return nullptr;
  }

  GsRig rig;
  Layout* layout = nullptr;
  BlockRecord* paper = nullptr;
  ViewportEntity* overall = nullptr;
  ViewportEntity* a = nullptr;
  ViewportEntity* b = nullptr;
  LayerRecord* onlyA = nullptr;
};

TEST_F(GsPaperLayoutTest, PaperViewFirstThenOneViewPerViewportThatIsOn) {
  viewport(4, {50, 50}, 10, 10, 10)->status = 0;  // switched off
  OdGsLayoutHelperPtr helper = rig.setup();
  EXPECT_FALSE(helper->isModelLayout());
  EXPECT_EQ(helper->layout(), layout);
  ASSERT_EQ(helper->numViews(), 3);
  EXPECT_EQ(helper->viewAt(0), helper->activeView());
  EXPECT_EQ(helper->activeViewportId(), overall->handle);
  EXPECT_EQ(helper->activeView()->sceneBlock(), paper);
  EXPECT_NEAR(helper->activeView()->fieldWidth(), 400, 1e-9);
  EXPECT_EQ(helper->viewAt(1)->sceneBlock(), rig.db->modelSpace());
  EXPECT_EQ(helper->viewAt(1)->clientViewInfo().viewportId, 2);
  EXPECT_EQ(helper->viewAt(2)->clientViewInfo().viewportId, 3);
}

TEST_F(GsPaperLayoutTest, LayoutSavedWhileNotCurrentStillShowsItsViewports) {
  // Such layouts number every viewport 0 with status 0; the first is the layout's own.
  for (ViewportEntity* vp : {overall, a, b}) vp->number = vp->status = 0;
  b->statusFlags |= ViewportEntity::kViewportOff;
  OdGsLayoutHelperPtr helper = rig.setup();
  ASSERT_EQ(helper->numViews(), 2);
  EXPECT_EQ(helper->activeViewportId(), overall->handle);
  EXPECT_EQ(helper->viewAt(1)->clientViewInfo().viewportObjectId, a->handle);
}

TEST_F(GsPaperLayoutTest, ViewportsShowModelSpaceAtTheirScaleClippedToTheirOutline) {
  OdGsLayoutHelperPtr helper = rig.setup();
  rig.device->onSize(OdGsDCRect(0, 800, 600, 0));
  rig.device->update();
  auto lines = rig.sink.ofKind("polyline");
  // A: paper x 50..150 (its rectangle cuts the line), device x 100..300 at y 300.
  EXPECT_TRUE(hasSegment(lines, {100, 300, 0}, {300, 300, 0}));
  // B: model 200 units on 100 paper units; the triangle spans paper x 275..325 at its height.
  EXPECT_TRUE(hasSegment(lines, {550, 300, 0}, {650, 300, 0}));
  // The layer frozen in B shows in A only (paper y 170: device y 260).
  EXPECT_TRUE(hasSegment(lines, {180, 260, 0}, {220, 260, 0}));
  for (const RecordedCall& c : lines) {
    for (const OdGePoint3d& p : c.points) EXPECT_FALSE(p.x > 500 && std::fabs(p.y - 290) < 1e-6) << p.x;
  }
}

TEST_F(GsPaperLayoutTest, ViewportsFollowTheDeviceSizeAndThePaperZoom) {
  OdGsLayoutHelperPtr helper = rig.setup();
  rig.device->onSize(OdGsDCRect(0, 800, 600, 0));
  OdGsDCRect rect;
  viewOf(helper, a)->getViewport(rect);
  EXPECT_EQ(rect, OdGsDCRect(100, 300, 200, 400));
  helper->activeView()->zoom(2.0);  // paper scale 4 about the sheet's centre (device 400, 300)
  viewOf(helper, a)->getViewport(rect);
  EXPECT_EQ(rect, OdGsDCRect(-200, 200, 100, 500));
  gi::ClipLoops loops = viewOf(helper, b)->deviceClipLoops();
  ASSERT_EQ(loops.size(), 1u);
  const std::vector<OdGePoint2d>& clip = loops.front();
  ASSERT_EQ(clip.size(), 3u);
  EXPECT_NEAR(clip[2].x, 400 + 4 * 100, 1e-9);
  EXPECT_NEAR(clip[2].y, 300 - 4 * 50, 1e-9);
}

TEST_F(GsPaperLayoutTest, PaperLinetypeScalingFollowsTheLayoutsFlag) {
  layout->layoutFlags |= Layout::kPsLtScale;
  OdGsLayoutHelperPtr helper = rig.setup();
  EXPECT_DOUBLE_EQ(viewOf(helper, a)->linetypeScaleFactor(), 2.0);
  EXPECT_DOUBLE_EQ(viewOf(helper, b)->linetypeScaleFactor(), 0.5);
  layout->layoutFlags &= ~Layout::kPsLtScale;
  helper = rig.setup();
  EXPECT_DOUBLE_EQ(viewOf(helper, a)->linetypeScaleFactor(), 1.0);
}

TEST_F(GsPaperLayoutTest, SetUpAgainReplacesTheViews) {
  OdGsLayoutHelperPtr first = rig.setup();
  rig.db->setCurrentLayout(OdString(L"model"));
  EXPECT_TRUE(rig.db->getTILEMODE());
  OdGsLayoutHelperPtr second = rig.setup();
  EXPECT_EQ(rig.device->numViews(), 1);
  EXPECT_TRUE(second->isModelLayout());
  first.release();  // the device keeps its views
  EXPECT_EQ(rig.device->numViews(), 1);
}

TEST(GsLayoutErrors, BadSetUpThrowsKitErrors) {
  GsRig rig(emptyDrawing());
  EXPECT_THROW(rig.db->setCurrentLayout(OdString(L"No such layout")), OdError);
  EXPECT_THROW(OdDbGsManager::setupActiveLayoutViews(rig.device.get(), nullptr), OdError);
  EXPECT_THROW(OdDbGsManager::setupActiveLayoutViews(nullptr, rig.context.get()), OdError);
  OdGiContextForDbDatabasePtr empty = OdGiContextForDbDatabase::createObject();
  EXPECT_THROW(OdDbGsManager::setupActiveLayoutViews(rig.device.get(), empty.get()), OdError);
}

// Every corpus drawing, model space and each layout, set up and drawn on a device.
TEST(GsCorpus, EveryLayoutOfEveryDrawingIsDrawnWithoutFailure) {
  namespace fs = std::filesystem;
  fs::path root = corpusPath("dxf");
  if (!fs::exists(root)) GTEST_SKIP() << "no corpus at " << root;
  size_t drawings = 0, layouts = 0, primitives = 0;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
    std::string ext = entry.path().extension().string();
    if (!entry.is_regular_file() || (ext != ".dxf" && ext != ".DXF")) continue;
    OdDbDatabasePtr db = readDxfFile(entry.path().string());
    if (!db) continue;
    ++drawings;
    GsRig rig(db);
    for (Layout* layout : db->layouts()) {
      SCOPED_TRACE(entry.path().string() + " " + layout->name);
      ++layouts;
      db->setCurrentLayout(layout);
      OdGsLayoutHelperPtr helper = rig.setup();
      ASSERT_GE(helper->numViews(), 1);
      OdGeExtents3d box;
      const BlockRecord* block = helper->activeView()->sceneBlock();
      if (block && blockGeomExtents(*db, *block, box)) helper->activeView()->zoomExtents(box.minPoint, box.maxPoint);
      rig.device->onSize(OdGsDCRect(10, 2990, 10, 1990));
      EXPECT_NO_THROW(helper->update());
      primitives += rig.sink.calls.size();
      rig.sink.calls.clear();
    }
  }
  EXPECT_GT(drawings, 0u);
  EXPECT_GE(layouts, 2 * drawings);
  EXPECT_GT(primitives, 100 * drawings);
}

}  // namespace

namespace {

TEST(GsClipOutline, HiddenCircleStillGivesItsLoopAndStaysHidden) {
  OdDbDatabasePtr db = emptyDrawing();
  LayerRecord* hidden = db->layerNamed("Boundaries");
  hidden->setIsOff(true);
  hidden->setIsFrozen(true);
  CircleEntity* circle = addEntity<CircleEntity>(*db, *db->paperSpace(), hidden);
  circle->center = {10, 20, 0};
  circle->radius = 5;
  circle->entityFlags = Entity::kInvisible;
  std::vector<OdGePoint2d> loop = entityOutline(*db, *circle, 0.01);
  ASSERT_GE(loop.size(), 16u);
  for (const OdGePoint2d& p : loop) EXPECT_NEAR(p.distanceTo({10, 20}), 5, 0.011);
  EXPECT_GT(loop.front().distanceTo(loop.back()), 1e-9);  // not closed by a repeated point
  EXPECT_TRUE(hidden->isOff());
  EXPECT_TRUE(hidden->isFrozen());
  EXPECT_FALSE(circle->isVisible());
  LineEntity* line = addLine(*db, *db->paperSpace(), {0, 0, 0}, {1, 1, 0});
  EXPECT_TRUE(entityOutline(*db, *line, 0.01).empty());
}

}  // namespace

namespace {

// Damaged view data (not finite, zero or negative sizes) sets up views that draw only finite
// coordinates, or nothing.
TEST(GsDamagedViews, NonFiniteAndEmptyViewDataDrawNothingOrFiniteGeometry) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  struct Case {
    double height, aspect, centerX, twist, viewHeight;
  };
  const Case cases[] = {{nan, 1, 0, 0, 10}, {0, 1, 0, 0, 0},    {-5, 1, 0, 0, -1}, {10, inf, 0, 0, inf},
                        {10, 1, nan, 0, nan}, {10, 1, 0, nan, 10}, {1e300, 1, 1e300, 0, 1e-300}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.height);
    GsRig rig(emptyDrawing());
    ViewportRecord& record = activeRecord(*rig.db);
    record.height = c.height;
    record.aspectRatio = c.aspect;
    record.center = {c.centerX, 0};
    record.twist = c.twist;
    addLine(*rig.db, *rig.db->modelSpace(), {0, 0, 0}, {10, 10, 0});
    auto* vp = addEntity<ViewportEntity>(*rig.db, *rig.db->paperSpace());
    vp->number = 2;
    vp->status = 2;
    vp->center = {5, 5, 0};
    vp->width = vp->height = 10;
    vp->viewHeight = c.viewHeight;
    vp->viewCenter = {c.centerX, 0};
    vp->twistAngle = c.twist;
    for (bool model : {true, false}) {
      rig.db->setCurrentLayout(OdString(model ? L"Model" : L"Layout1"));
      OdGsLayoutHelperPtr helper = rig.setup();
      rig.device->onSize(OdGsDCRect(0, 100, 0, 100));
      rig.sink.calls.clear();
      EXPECT_NO_THROW(helper->update());
      for (const RecordedCall& call : rig.sink.calls) {
        for (const OdGePoint3d& p : call.points) EXPECT_TRUE(std::isfinite(p.x) && std::isfinite(p.y));
      }
    }
  }
}

}  // namespace

// OdDbGsManager: the views of model space or of a paper-space layout, set up on a device.
#include <algorithm>
#include <cmath>

#include "kit/base/OdError.h"
#include "kit/gs/EntityOutline.h"
#include "kit/gs/GeomExtents.h"
#include "kit/gs/OdGsBaseVectorizeView.h"
#include "kit/gs/OdGsLayoutHelper.h"
#include "kit/gs/StoredView.h"

namespace {

bool finitePositive(double v) { return v > 0.0 && std::isfinite(v); }

StoredView fromBox(const OdGeExtents3d& box) {
  StoredView v;
  v.center = {(box.minPoint.x + box.maxPoint.x) / 2.0, (box.minPoint.y + box.maxPoint.y) / 2.0};
  v.width = box.maxPoint.x - box.minPoint.x;
  v.height = box.maxPoint.y - box.minPoint.y;
  if (!finitePositive(v.width) && !finitePositive(v.height)) v.width = v.height = 1.0;
  return v;
}

// Model space without a usable "*Active" record: the header's view, its extents, or what is drawn.
StoredView modelFallback(const OdDbDatabase& db) {
  const DatabaseHeader& header = db.header();
  if (finitePositive(header.viewSize)) {
    StoredView v;
    v.center = header.viewCtr.to2d();
    v.direction = header.viewDir;
    v.height = v.width = header.viewSize;
    return v;
  }
  OdGeExtents3d box(header.extMin, header.extMax);
  if (box.isValidExtents() && header.extMin.x > -1e20) return fromBox(box);
  if (db.modelSpace() && blockGeomExtents(db, *db.modelSpace(), box)) return fromBox(box);
  return fromBox(OdGeExtents3d({header.limMin.x, header.limMin.y, 0.0}, {header.limMax.x, header.limMax.y, 0.0}));
}

OdGsViewPtr newView(OdGsDevice& device, int32_t viewportId, OdDbHandle objectId, const BlockRecord* block) {
  OdGsClientViewInfo info;
  info.viewportId = viewportId;
  info.viewportObjectId = objectId;
  OdGsViewPtr view = device.createView(&info);
  if (!view) throw OdError(eNullPtr, OdString(L"The device made no view"));
  device.addView(view.get());
  view->setSceneBlock(block);
  return view;
}

void setupModel(OdGsLayoutHelper& helper, OdGsDevice& device, const OdDbDatabase& db) {
  const ViewportRecord* record = db.activeViewport();
  bool usable = record && finitePositive(record->height) && finitePositive(record->aspectRatio);
  OdGsViewPtr view = newView(device, 1, record ? record->handle : OdDbHandle(), db.modelSpace());
  applyStoredView(*view, usable ? storedViewOf(*record) : modelFallback(db));
  helper.setActiveView(view.get(), record ? record->handle : OdDbHandle());
}

std::vector<const ViewportEntity*> viewportsOf(const BlockRecord& block) {
  std::vector<const ViewportEntity*> result;
  for (const Entity* entity : block.entities) {
    if (const auto* vp = dbCast<ViewportEntity>(entity)) result.push_back(vp);
  }
  return result;
}

// The layout's own viewport: number 1; layouts saved while not current may number all their
// viewports 0, and then the first (created with the layout) is it. A layout whose only viewports
// show the model (one made for an empty layout, say) has none.
const ViewportEntity* overallViewport(const std::vector<const ViewportEntity*>& viewports) {
  for (const ViewportEntity* vp : viewports) {
    if (vp->number == 1) return vp;
  }
  return viewports.empty() || viewports.front()->number > 1 ? nullptr : viewports.front();
}

bool contains(const OdGeExtents3d& outer, const OdGeExtents3d& inner) {
  return inner.minPoint.x >= outer.minPoint.x && inner.minPoint.y >= outer.minPoint.y &&
         inner.maxPoint.x <= outer.maxPoint.x && inner.maxPoint.y <= outer.maxPoint.y;
}

// The paper view shows the sheet (the layout's limits) when what is drawn lies on it (within a
// tenth of its size), else what is drawn; the layout's own viewport when neither is known.
StoredView paperField(const OdDbDatabase& db, const Layout* layout, const BlockRecord& block,
                      const ViewportEntity* overall) {
  OdGePoint2d lo = layout ? layout->limMin : db.header().plimMin;
  OdGePoint2d hi = layout ? layout->limMax : db.header().plimMax;
  OdGeExtents3d sheet({lo.x, lo.y, 0.0}, {hi.x, hi.y, 0.0});
  bool sheetValid = sheet.isValidExtents() && hi.x > lo.x && hi.y > lo.y;
  OdGeExtents3d drawn;
  bool drawnValid = blockGeomExtents(db, block, drawn);
  if (sheetValid && drawnValid) {
    double mx = (hi.x - lo.x) / 10.0, my = (hi.y - lo.y) / 10.0;
    OdGeExtents3d margin({lo.x - mx, lo.y - my, -1e300}, {hi.x + mx, hi.y + my, 1e300});
    return contains(margin, drawn) ? fromBox(sheet) : fromBox(drawn);
  }
  if (sheetValid) return fromBox(sheet);
  if (drawnValid) return fromBox(drawn);
  if (overall && finitePositive(overall->width) && finitePositive(overall->height)) {
    StoredView v;
    v.center = overall->center.to2d();
    v.width = overall->width;
    v.height = overall->height;
    return v;
  }
  return fromBox(sheet);
}

// The clip loops of a viewport in paper coordinates: its clip entity's loops, if it has one.
gi::ClipLoops viewportClip(const OdDbDatabase& db, const ViewportEntity& vp) {
  if ((vp.statusFlags & ViewportEntity::kNonRectangularClip) == 0 || vp.clipBoundary.isNull()) return {};
  const auto* boundary = db.findAs<Entity>(vp.clipBoundary);
  if (!boundary) return {};
  double deviation = std::max(vp.width, vp.height) / 2000.0;
  return entityOutlines(db, *boundary, deviation);
}

void setupViewport(OdGsDevice& device, const OdDbDatabase& db, const Layout* layout, const OdGsView& paperView,
                   const ViewportEntity& vp) {
  OdGsViewPtr view = newView(device, vp.number, vp.handle, db.modelSpace());
  applyStoredView(*view, storedViewOf(vp));
  for (const LayerRecord* layer : vp.frozenLayers) view->freezeLayer(layer);

  OdGePoint2d lo(vp.center.x - vp.width / 2.0, vp.center.y - vp.height / 2.0);
  OdGePoint2d hi(vp.center.x + vp.width / 2.0, vp.center.y + vp.height / 2.0);
  if (auto* base = dynamic_cast<OdGsBaseVectorizeViewDef*>(view.get())) {
    base->setPaperPlacement(&paperView, lo, hi, viewportClip(db, vp));
    bool psltscale = layout ? (layout->layoutFlags & Layout::kPsLtScale) != 0 : db.header().psLtScale;
    if (psltscale) base->setLinetypeScaleFactor(vp.height / vp.viewHeight);
  }
}

// A layout saved while not current has every viewport's status at 0 ("off"); only the status
// flag then tells a viewport switched off.
bool showsModel(const ViewportEntity& vp, bool layoutInactive) {
  bool on = (vp.statusFlags & ViewportEntity::kViewportOff) == 0 && (layoutInactive || vp.status != 0);
  return on && finitePositive(vp.width) && finitePositive(vp.height) && finitePositive(vp.viewHeight);
}

void setupPaper(OdGsLayoutHelper& helper, OdGsDevice& device, const OdDbDatabase& db, const Layout* layout,
                const BlockRecord& block) {
  std::vector<const ViewportEntity*> viewports = viewportsOf(block);
  const ViewportEntity* overall = overallViewport(viewports);
  bool layoutInactive =
      std::all_of(viewports.begin(), viewports.end(), [](const ViewportEntity* vp) { return vp->status == 0; });
  OdGsViewPtr paperView = newView(device, 1, overall ? overall->handle : OdDbHandle(), &block);
  applyStoredView(*paperView, paperField(db, layout, block, overall));
  helper.setActiveView(paperView.get(), overall ? overall->handle : OdDbHandle());
  for (const ViewportEntity* vp : viewports) {
    if (vp != overall && showsModel(*vp, layoutInactive)) setupViewport(device, db, layout, *paperView, *vp);
  }
}

}  // namespace

OdGsLayoutHelperPtr OdDbGsManager::setupLayoutViews(const Layout* layout, OdGsDevice* device,
                                                    OdGiContextForDbDatabase* context) {
  if (!device) throw OdError(eNullPtr, OdString(L"No device"));
  OdDbDatabase* db = context ? context->getDatabase() : nullptr;
  if (!db) throw OdError(eNullPtr, OdString(L"No database"));
  device->setUserGiContext(context);
  device->eraseAllViews();

  const BlockRecord* block = layout ? layout->block : nullptr;
  bool model = !layout || !block || block->isModelSpace();
  OdGsLayoutHelperPtr helper(new OdGsLayoutHelper());
  helper->attach(device, layout, model);
  if (model) setupModel(*helper, *device, *db);
  else setupPaper(*helper, *device, *db, layout, *block);
  return helper;
}

OdGsLayoutHelperPtr OdDbGsManager::setupActiveLayoutViews(OdGsDevice* device, OdGiContextForDbDatabase* context) {
  OdDbDatabase* db = context ? context->getDatabase() : nullptr;
  if (!db) throw OdError(eNullPtr, OdString(L"No database"));
  const Layout* layout = db->activeLayout();
  // Paper space without a layout object still has its block: draw it as a layout.
  if (!layout && !db->getTILEMODE() && db->paperSpace()) {
    if (!device) throw OdError(eNullPtr, OdString(L"No device"));
    device->setUserGiContext(context);
    device->eraseAllViews();
    OdGsLayoutHelperPtr helper(new OdGsLayoutHelper());
    helper->attach(device, nullptr, false);
    setupPaper(*helper, *device, *db, nullptr, *db->paperSpace());
    return helper;
  }
  return setupLayoutViews(layout, device, context);
}

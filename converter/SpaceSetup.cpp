// The "Set View" step: the layout helper for model space (the whole drawing, the last saved view or
// a named view) or for a paper-space layout, its zoom, and the size of the view's output.
#include <algorithm>
#include <string>

#include "converter/CDm2017.h"
#include "converter/DrawingUnits.h"
#include "converter/ModelExtents.h"
#include "converter/VectorizationObjects.h"
#include "kit/base/OdError.h"
#include "kit/gs/GeomExtents.h"
#include "kit/gs/StoredView.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

namespace {

constexpr int kInputDwf = 1000;
constexpr double kExtentsLimit = 1e101;

// Looks at `center` from straight above with the given field.
void ShowPlan(OdGsView& view, const OdGePoint3d& center, double fieldWidth, double fieldHeight) {
  view.setView(center + OdGeVector3d(0.0, 0.0, 1.0), center, OdGeVector3d(0.0, 1.0, 0.0),
               std::max(fieldWidth, 1e-9), std::max(fieldHeight, 1e-9));
}

// The view looks straight down z with y up: the drawing's plan, fitted to the header's box.
bool LooksInPlan(const OdGsView& view) {
  const OdGeVector3d sight = view.position() - view.target();
  const OdGeVector3d up = view.upVector();
  return sight.x == 0.0 && sight.y == 0.0 && sight.z > 0.0 && up.x == 0.0 && up.z == 0.0 && up.y > 0.0;
}

// Keeps the view's direction and twist and fits it to what model space draws as seen that way
// (the header box's corners when nothing can be measured): a 3D drawing fills the page as the
// saved view shows it.
void FitAlongSight(OdGsView& view, const OdDbDatabase& db, const OdGePoint3d& low, const OdGePoint3d& high,
                   double margin) {
  const OdGeMatrix3d toEye = view.worldToEyeMatrix();
  OdGeExtents3d eye;
  if (!db.modelSpace() || !blockGeomExtents(db, *db.modelSpace(), toEye, eye)) {
    for (int i = 0; i < 8; ++i) {
      eye.addPoint(toEye.transform(OdGePoint3d((i & 1) ? high.x : low.x, (i & 2) ? high.y : low.y,
                                               (i & 4) ? high.z : low.z)));
    }
  }
  if (!eye.isValidExtents()) return;
  const OdGePoint3d centre((eye.minPoint.x + eye.maxPoint.x) / 2.0, (eye.minPoint.y + eye.maxPoint.y) / 2.0, 0.0);
  const OdGePoint3d target = view.eyeToWorldMatrix().transform(centre);
  const OdGeVector3d sight = view.position() - view.target();
  view.setView(target + sight, target, view.upVector(), std::max((eye.maxPoint.x - eye.minPoint.x) * margin, 1e-9),
               std::max((eye.maxPoint.y - eye.minPoint.y) * margin, 1e-9),
               view.isPerspective() ? OdGsView::kPerspective : OdGsView::kParallel);
}

double Clamp(double value) { return std::clamp(value, -kExtentsLimit, kExtentsLimit); }

// The converter's units code for a layout whose drawing names no known unit.
int UnitsOfLayout(const OdDbDatabase& db, const OdDbLayout& layout) {
  switch (db.header().insUnits) {
    case 1: case 2: case 3: case 4: case 5: case 6: case 10:
      return UnitsFromDrawing(db.header().insUnits, db.header().measurement);
    default:
      return layout.paperUnits == 1 ? 5 : 1;
  }
}

}  // namespace

void CDm2017::RefreshLayerLists() {
  for (LayerRecord* layer : g_pDb->layers()) layerVisibility[layer->getName()] = !layer->isOff();
}

int CDm2017::SetView() {
  RefreshLayerLists();
  if (!layoutName.isEmpty()) return SetViewForLayout();
  if (!viewName.isEmpty()) {
    TraceMessage("Process ModelSpace", viewName);
    ProcessModelSpace(viewName);
    return 0;
  }
  const bool model = viewMode == 1 || (viewMode == 0 && g_pDb->getTILEMODE());
  if (model) {
    TraceMessage("Process ModelSpace");
    ProcessModelSpace(OdString());
    return 0;
  }
  TraceMessage("Process PaperSpace");
  ProcessPaperSpace(OdString());
  return 0;
}

int CDm2017::SetViewForLayout() {
  std::string utf8;
  OdDbLayout* layout = g_pDb->findLayout(OdStringToUtf8(utf8, layoutName));
  if (!layout) {
    PrintMessage("Layout Does Not Exist in Drawing", layoutName.c_str());
    return 1;
  }
  if (IsLayoutEmpty(layoutName)) {
    if (inputKind == kInputDwf) {
      PrintMessage("Empty Layout Ignored from DWF");
      return 0;
    }
    if (!noUninit) {
      TraceMessage("Empty Layout", layoutName);
      return 0;
    }
    PrintMessage("Empty Layout, Creating Modelspace Viewport", layoutName.c_str());
    CreateModelSpaceViewport(layout);
  }
  TraceMessage("Process PaperSpace", layoutName);
  ProcessPaperSpace(layoutName);
  return 0;
}

void CDm2017::ProcessModelSpace(const OdString& namedView) {
  TraceMessage("******************* In ProcessModelSpace *********************");
  TraceMessage("   ViewName", namedView);
  try {
    TraceMessage("   setCurrentLayout");
    g_pDb->setCurrentLayout(OdString(L"Model"));
    TraceMessage("    setupActiveLayoutViews");
    g_pLayoutHelper = OdDbGsManager::setupActiveLayoutViews(g_pDevice.get(), g_pContext.get());
    TraceMessage("    after setupActiveLayoutViews");
    TraceMessage("    getActiveViewportId");
    OdGsView* view = g_pLayoutHelper ? g_pLayoutHelper->activeView() : nullptr;
    if (!view) {
      TraceMessage("No Valid Active Viewport");
      return;
    }
    TraceMessage("    getEXTMIN/getEXTMAX");
    OdGePoint3d low = g_pDb->header().extMin, high = g_pDb->header().extMax;
    bool valid = HeaderExtentsValid(low, high);
    if (namedView.isEmpty() && viewMode != 0) {
      TraceMessage("Not LastSavedView and View Not Set");
      TraceMessage("    Zoom To Header");
      TraceMessage("    Define Layer Helper");
      TraceMessage("    Get Viewport Table");
      TraceMessage("    Define Abstract View Pointer");
      OdGeExtents3d geometric;
      const bool needGeometric = zoomExtents || !valid;
      const bool haveGeometric =
          needGeometric && g_pDb->modelSpace() && blockGeomExtents(*g_pDb, *g_pDb->modelSpace(), geometric);
      // Drawings whose header has no extents are fitted to what they draw.
      if (!valid && haveGeometric) {
        low = geometric.minPoint;
        high = geometric.maxPoint;
        valid = true;
      }
      const bool plan = LooksInPlan(*view);
      if (valid && plan) {
        const OdGePoint3d center((low.x + high.x) / 2.0, (low.y + high.y) / 2.0, 0.0);
        ShowPlan(*view, center, (high.x - low.x) * 1.02, (high.y - low.y) * 1.02);
      } else if (valid) {
        FitAlongSight(*view, *g_pDb, low, high, zoomExtents ? 1.0 : 1.02);
      }
      if (zoomExtents && plan) {
        TraceMessage("    Zoom to GeomExtents");
        TraceMessage("Calculate Geometric Extents");
        TraceMessage("    Open id");
        TraceMessage("zoomExtents");
        if (haveGeometric) view->zoomExtents(geometric.minPoint, geometric.maxPoint);
      }
    } else {
      TraceMessage("    Last Save View or View Set");
      TraceMessage("    Open id");
      TraceMessage("    ZoomToExtents");
      TraceMessage("    Define Layer Helper");
      TraceMessage("    Get Viewport Table");
      TraceMessage("    Define Abstract View Pointer");
      TraceMessage("    Define Abstract View");
      std::string utf8;
      if (!namedView.isEmpty()) {
        if (const OdDbViewTableRecord* record = g_pDb->views().find(OdStringToUtf8(utf8, namedView))) {
          applyStoredView(*view, storedViewOf(*record));
        }
      }
    }
    TraceMessage("MS Width", view->fieldWidth());
    TraceMessage("MS Height", view->fieldHeight());
    ComputeViewSize(view->fieldWidth(), view->fieldHeight());
  } catch (const OdError& error) {
    std::string text;
    PrintMessageOnce("ERROR", OdStringToUtf8(text, error.description()).c_str());
    TraceMessage("ARRGGHHH !!!");
  }
}

void CDm2017::ProcessPaperSpace(const OdString& name) {
  std::string utf8;
  OdDbLayout* layout = nullptr;
  if (!name.isEmpty()) {
    layout = g_pDb->findLayout(OdStringToUtf8(utf8, name));
  } else if (viewMode == 0) {
    layout = g_pDb->layoutOfBlock(g_pDb->paperSpace());
  } else {
    layout = g_pDb->findLayout("Layout1");
  }
  if (!layout) layout = g_pDb->activeLayout();
  if (!layout) return;
  g_pDb->setCurrentLayout(layout);

  // Viewport scales: paper units per model unit, for the sizes of the output stage.
  if (layout->block) {
    for (Entity* entity : layout->block->entities) {
      const auto* viewport = dbCast<ViewportEntity>(entity);
      if (!viewport || viewport->number == 1 || viewport->viewHeight <= 0.0) continue;
      double scale = viewport->height / viewport->viewHeight;
      if (viewport->width < 100.0 && viewport->height < 100.0 && scale == 1.0) scale /= 25.4;
      TraceMessage("Viewport Scale", scale);
    }
  }
  if (units == 0) SetUnits(UnitsOfLayout(*g_pDb, *layout));

  g_pLayoutHelper = OdDbGsManager::setupActiveLayoutViews(g_pDevice.get(), g_pContext.get());
  OdGsView* view = g_pLayoutHelper ? g_pLayoutHelper->activeView() : nullptr;
  if (!view) return;
  if (zoomExtents && layout->block) {
    OdGeExtents3d extents;
    if (blockGeomExtents(*g_pDb, *layout->block, extents)) {
      const OdGePoint3d low(Clamp(extents.minPoint.x), Clamp(extents.minPoint.y), 0.0);
      const OdGePoint3d high(Clamp(extents.maxPoint.x), Clamp(extents.maxPoint.y), 0.0);
      view->zoomExtents(low, high);
    }
  }
  ComputeViewSize(view->fieldWidth(), view->fieldHeight());
}

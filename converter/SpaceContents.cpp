// Whether model space, paper space or a layout has anything to draw, and the viewport given to an
// empty layout so that it shows the model.
#include <algorithm>
#include <string>

#include "converter/CDm2017.h"
#include "converter/ModelExtents.h"
#include "projects/common/CommonRoutines.h"

namespace {

bool BlockIsEmpty(const OdDbBlockTableRecord* block) { return block == nullptr || block->entities.empty(); }

}  // namespace

bool CDm2017::IsModelSpaceEmpty() const { return !g_pDb || BlockIsEmpty(g_pDb->modelSpace()); }

bool CDm2017::IsPaperSpaceEmpty() const { return !g_pDb || BlockIsEmpty(g_pDb->paperSpace()); }

bool CDm2017::IsLayoutEmpty(const OdString& name) const {
  if (!g_pDb) return true;
  std::string utf8;
  const OdDbLayout* layout = g_pDb->findLayout(OdStringToUtf8(utf8, name));
  return layout == nullptr || BlockIsEmpty(layout->block);
}

// The viewport takes the paper size shrunk by 1.058 (a margin), in whole units, and shows the model
// extents fitted into it.
void CDm2017::CreateModelSpaceViewport(OdDbLayout* layout) {
  if (!g_pDb || !layout || !layout->block) return;
  OdDbDatabase& db = *g_pDb;
  double paperWidth = layout->paperWidth;
  double paperHeight = layout->paperHeight;
  if (paperWidth <= 0.0 || paperHeight <= 0.0) {
    paperWidth = layout->limMax.x - layout->limMin.x;
    paperHeight = layout->limMax.y - layout->limMin.y;
  }
  const double width = static_cast<double>(static_cast<long long>(paperWidth / 1.058));
  const double height = static_cast<double>(static_cast<long long>(paperHeight / 1.058));
  if (width <= 0.0 || height <= 0.0) return;

  OdGePoint3d low, high;
  ModelExtents(db, low, high);
  const double modelWidth = std::max(high.x - low.x, 1e-9);
  const double modelHeight = std::max(high.y - low.y, 1e-9);

  auto* viewport = db.newObject<ViewportEntity>();
  viewport->layer = db.layerZero();
  viewport->linetype = db.linetypeByLayer();
  viewport->entityFlags = Entity::kPaperSpace;
  viewport->center = OdGePoint3d(width / 2.0, height / 2.0, 0.0);
  viewport->width = width;
  viewport->height = height;
  viewport->viewCenter = OdGePoint2d((low.x + high.x) / 2.0, (low.y + high.y) / 2.0);
  viewport->viewHeight = std::max(modelHeight, modelWidth * height / width);
  viewport->number = 2;
  viewport->status = 1;
  viewport->ownerHandle = layout->block->handle;
  viewport->handle = db.allocateHandle();
  db.adoptHandle(viewport);
  layout->block->entities.push_back(viewport);
}

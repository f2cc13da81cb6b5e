// Helpers for the device and view tests: a kit device drawing into a recording sink, and
// entities added to a loaded database by hand.
#pragma once

#include <string>
#include <vector>

#include "kit/gs/OdGiContextForDbDatabase.h"
#include "kit/gs/OdGsBaseVectorizeDevice.h"
#include "kit/gs/OdGsBaseVectorizeView.h"
#include "kit/gs/OdGsLayoutHelper.h"
#include "tests/kit/DxfTestSupport.h"
#include "tests/kit/GiRecordingSink.h"

struct GsRig {
  OdDbDatabasePtr db;
  RecordingSink sink;
  OdGiContextForDbDatabasePtr context = OdGiContextForDbDatabase::createObject();
  OdSmartPtr<OdGsBaseVectorizeDevice> device = OdRxObjectImpl<OdGsBaseVectorizeDevice>::createObject();

  explicit GsRig(OdDbDatabasePtr database) : db(std::move(database)) {
    context->setDatabase(db.get());
    device->setUserGiContext(context.get());
    device->setDestGeometry(sink);
  }
  OdGsLayoutHelperPtr setup() { return OdDbGsManager::setupActiveLayoutViews(device.get(), context.get()); }
};

// An entity of kind E in `block`, on `layer` (layer 0 when null), with a handle of its own.
template <class E>
E* addEntity(OdDbDatabase& db, BlockRecord& block, LayerRecord* layer = nullptr) {
  E* e = db.newObject<E>();
  e->layer = layer ? layer : db.layerZero();
  e->linetype = db.linetypeByLayer();
  e->handle = db.allocateHandle();
  db.adoptHandle(e);
  block.entities.push_back(e);
  return e;
}

inline LineEntity* addLine(OdDbDatabase& db, BlockRecord& block, OdGePoint3d a, OdGePoint3d b,
                           LayerRecord* layer = nullptr) {
  LineEntity* line = addEntity<LineEntity>(db, block, layer);
  line->start = a;
  line->end = b;
  return line;
}

// An empty R2000 drawing (model space, Layout1 on *Paper_Space).
inline OdDbDatabasePtr emptyDrawing() { return readDxfText(dxfWithEntities({})); }

inline bool nearXY(const OdGePoint3d& p, double x, double y, double tol = 1e-6) {
  return std::fabs(p.x - x) <= tol && std::fabs(p.y - y) <= tol;
}

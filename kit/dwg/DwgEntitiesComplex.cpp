// Entities that own others or mark structure: BLOCK, ENDBLK and SEQEND, INSERT and MINSERT with
// their attributes, and the POLYLINE kinds with their vertices.
#include "kit/dwg/DwgEntityReaders.h"
#include "kit/dwg/DwgLoader.h"

void readDwgBlockBegin(DwgObjectContext& c) {
  (void)c.s.text();  // the name: the block header's counts
  c.role = DwgRole::kBlockBegin;
  if (BlockRecord* block = c.block(c.frame.owner)) {
    block->blockLayer = c.layer(c.frame.layer);
    block->hasDefinition = true;
    if (block->beginHandle.isNull()) block->beginHandle = c.frame.handle;
  }
}

void readDwgBlockEnd(DwgObjectContext& c) { c.role = DwgRole::kBlockEnd; }

void readDwgSequenceEnd(DwgObjectContext& c) { c.role = DwgRole::kSequenceEnd; }

namespace {

// Sub-objects of a complex entity: first and last before R2004, all of them after; then SEQEND.
DwgOwnedObjects readOwnedHandles(DwgObjectContext& c, int32_t ownedCount, bool hasSequence) {
  DwgOwnedObjects owned;
  if (!hasSequence) return owned;
  if (c.before(kDwgR2004)) {
    owned.first = c.s.handle();
    owned.last = c.s.handle();
  } else {
    uint32_t count = c.boundedCount(ownedCount, 8, c.s.handles);
    owned.handles.reserve(count);
    for (uint32_t i = 0; i < count; ++i) owned.handles.push_back(c.s.handle());
  }
  owned.sequenceEnd = c.s.handle();
  return owned;
}

void readInsert(DwgObjectContext& c, bool array) {
  auto* e = c.newEntity<BlockReferenceEntity>();
  DwgBitReader& d = c.d;
  e->position = d.point3BD();
  e->scale = readDwgInsertScale(c);
  e->rotation = d.BD();
  e->normal = d.vector3BD();
  bool hasAttributes = d.B();
  int32_t ownedCount = (hasAttributes && c.atLeast(kDwgR2004)) ? d.BL() : 0;
  if (array) {
    e->columnCount = d.BS();
    e->rowCount = d.BS();
    e->columnSpacing = d.BD();
    e->rowSpacing = d.BD();
  }
  e->block = c.block(c.s.handle());
  DwgOwnedObjects owned = readOwnedHandles(c, ownedCount, hasAttributes);
  e->seqendHandle = owned.sequenceEnd;
  if (hasAttributes) c.setOwned(owned);
}

template <class Read>
void readPolyline(DwgObjectContext& c, Read readOwnData) {
  auto* e = c.newEntity<PolylineEntity>();
  readOwnData(*e);
  int32_t ownedCount = c.atLeast(kDwgR2004) ? c.d.BL() : 0;
  DwgOwnedObjects owned = readOwnedHandles(c, ownedCount, true);
  e->seqendHandle = owned.sequenceEnd;
  c.setOwned(owned);
}

// A vertex is kept aside until the assembly gives it to its polyline.
PolylineVertex& newVertex(DwgObjectContext& c) {
  c.role = DwgRole::kVertex;
  PolylineVertex& v = c.loader.vertices_.add();
  v.handle = c.frame.handle;
  v.color = c.frame.color;
  v.flags = c.d.RC();
  return v;
}

}  // namespace

OdGeVector3d readDwgInsertScale(DwgObjectContext& c) {
  DwgBitReader& d = c.d;
  if (c.before(kDwgR2000)) return {d.BD(), d.BD(), d.BD()};
  switch (d.BB()) {
    case 3: return {1.0, 1.0, 1.0};
    case 1: {
      double y = d.DD(1.0);
      return {1.0, y, d.DD(1.0)};
    }
    case 2: {
      double x = d.RD();
      return {x, x, x};
    }
    default: {
      double x = d.RD();
      double y = d.DD(x);
      return {x, y, d.DD(x)};
    }
  }
}

void readDwgInsert(DwgObjectContext& c) { readInsert(c, false); }
void readDwgMInsert(DwgObjectContext& c) { readInsert(c, true); }

void readDwgPolyline2d(DwgObjectContext& c) {
  readPolyline(c, [&](PolylineEntity& e) {
    e.flags = uint16_t(c.d.BS());
    e.curveType = c.d.BS();
    e.defaultStartWidth = c.d.BD();
    e.defaultEndWidth = c.d.BD();
    e.thickness = c.s.thickness();
    e.elevation = c.d.BD();
    e.normal = c.s.extrusion();
  });
}

void readDwgPolyline3d(DwgObjectContext& c) {
  readPolyline(c, [&](PolylineEntity& e) {
    uint8_t spline = c.d.RC();
    uint8_t closed = c.d.RC();
    e.flags = PolylineEntity::k3dPolyline;
    if (closed & 1) e.flags |= PolylineEntity::kClosed;
    if (spline & 3) {
      e.flags |= PolylineEntity::kSplineFit;
      e.curveType = (spline & 2) ? 6 : 5;
    }
  });
}

void readDwgPolyfaceMesh(DwgObjectContext& c) {
  readPolyline(c, [&](PolylineEntity& e) {
    e.flags = PolylineEntity::kPolyfaceMesh;
    e.meshM = c.d.BS();
    e.meshN = c.d.BS();
  });
}

void readDwgPolygonMesh(DwgObjectContext& c) {
  readPolyline(c, [&](PolylineEntity& e) {
    e.flags = uint16_t(c.d.BS()) | PolylineEntity::kPolygonMesh;
    e.curveType = c.d.BS();
    e.meshM = c.d.BS();
    e.meshN = c.d.BS();
    e.smoothM = c.d.BS();
    e.smoothN = c.d.BS();
  });
}

void readDwgVertex2d(DwgObjectContext& c) {
  PolylineVertex& v = newVertex(c);
  DwgBitReader& d = c.d;
  v.position = d.point3BD();
  double start = d.BD();
  if (start < 0.0) {
    v.startWidth = v.endWidth = -start;
  } else {
    v.startWidth = start;
    v.endWidth = d.BD();
  }
  v.bulge = d.BD();
  if (c.atLeast(kDwgR2010)) d.BL();  // vertex id
  v.tangent = d.BD();
}

void readDwgVertex3d(DwgObjectContext& c) {
  PolylineVertex& v = newVertex(c);
  v.position = c.d.point3BD();
}

void readDwgFaceRecord(DwgObjectContext& c) {
  c.role = DwgRole::kVertex;
  PolylineVertex& v = c.loader.vertices_.add();
  v.handle = c.frame.handle;
  v.color = c.frame.color;
  v.flags = PolylineVertex::kPolyfaceFace | PolylineVertex::kMeshVertex;
  for (int32_t& index : v.faceIndices) index = c.d.BS();
}

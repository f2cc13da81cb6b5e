// LEADER and TOLERANCE: annotation entities that take their look from a dimension style.
#include <cmath>

#include "kit/db/DimStyleOverrides.h"
#include "kit/dwg/DwgEntityReaders.h"
#include "kit/dwg/DwgLoader.h"

namespace {

// DWG files leave a leader's hook line out of its vertices; DXF files and the drawing list it.
// AutoCAD hooks a leader with an annotation whose last segment is steeper than 15 degrees to
// the annotation's direction, with a hook as long as an arrowhead, toward the annotation.
void addHookLine(LeaderEntity& e) {
  constexpr double kSteepest = 15.0 * M_PI / 180.0;
  if (e.annotationType == 3 || e.annotation.isNull() || e.vertices.size() < 2) return;
  OdGeVector3d along = e.horizontalDirection.isZeroLength() ? OdGeVector3d(1.0, 0.0, 0.0) : e.horizontalDirection.normal();
  const OdGePoint3d end = e.vertices.back();
  OdGeVector3d last = end - e.vertices[e.vertices.size() - 2];
  if (last.isZeroLength()) return;
  double angle = std::acos(std::min(1.0, std::fabs(last.normal().dotProduct(along))));
  if (!(angle > kSteepest)) return;
  double length = dimensionArrowSize(e, e.style);
  e.vertices.insert(e.vertices.end() - 1, end + along * (e.hooklineOppositeDirection ? -length : length));
  e.hasHookline = true;
}

}  // namespace

void readDwgLeader(DwgObjectContext& c) {
  auto* e = c.newEntity<LeaderEntity>();
  DwgBitReader& d = c.d;
  d.B();  // unknown
  e->annotationType = d.BS();
  e->pathType = d.BS();
  uint32_t n = c.boundedCount(d.BL(), 6);
  e->vertices.reserve(n);
  for (uint32_t i = 0; i < n && !d.overrun(); ++i) e->vertices.push_back(d.point3BD());
  d.point3BD();  // plane origin
  e->normal = d.vector3BD();
  e->horizontalDirection = d.vector3BD();
  e->blockOffset = d.vector3BD();
  if (c.atLeast(kDwgR14)) e->annotationOffset = d.vector3BD();
  if (c.before(kDwgR2000)) d.BD();  // text gap
  // From R2010 on the annotation box's size is no longer stored.
  if (c.before(kDwgR2010)) {
    e->textHeight = d.BD();
    e->textWidth = d.BD();
  }
  e->hooklineOppositeDirection = !d.B();  // the file says whether the hook line runs along x
  e->hasArrowhead = d.B();
  if (c.before(kDwgR2000)) {
    d.BS();  // arrowhead kind
    d.BD();  // arrowhead size
    d.B();
    d.B();
    d.BS();
    e->overrideColor = OdCmEntityColor::fromACI(d.BS());
    d.B();
    d.B();
  } else {
    d.BS();
    d.B();
    d.B();
  }
  e->annotation = c.s.handle();
  e->style = c.dimStyle(c.s.handle());
  addHookLine(*e);
}

void readDwgTolerance(DwgObjectContext& c) {
  auto* e = c.newEntity<ToleranceEntity>();
  DwgBitReader& d = c.d;
  if (c.before(kDwgR2000)) {
    d.BS();  // unknown
    d.BD();  // height
    d.BD();  // gap
  }
  e->position = d.point3BD();
  e->direction = d.vector3BD();
  e->normal = d.vector3BD();
  e->text = c.s.text();
  e->style = c.dimStyle(c.s.handle());
}

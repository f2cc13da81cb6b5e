#include "converter/ModelExtents.h"

#include <cmath>

#include "kit/gs/GeomExtents.h"

// Programs that do not keep the header extents up to date write the same point twice, and fitting
// a view to that point shows nothing.
bool HeaderExtentsValid(const OdGePoint3d& low, const OdGePoint3d& high) {
  // AutoCAD marks extents never set with 1e20; anything past 1e15 is as unusable.
  constexpr double kNeverSet = 1e15;
  for (double v : {low.x, low.y, high.x, high.y}) {
    if (!(std::fabs(v) < kNeverSet)) return false;
  }
  if (!(low.x <= high.x && low.y <= high.y)) return false;
  return high.x > low.x || high.y > low.y;
}

void ModelExtents(const OdDbDatabase& db, OdGePoint3d& low, OdGePoint3d& high) {
  const DatabaseHeader& header = db.header();
  if (HeaderExtentsValid(header.extMin, header.extMax)) {
    low = header.extMin;
    high = header.extMax;
    return;
  }
  OdGeExtents3d drawn;
  if (db.modelSpace() && blockGeomExtents(db, *db.modelSpace(), drawn)) {
    low = drawn.minPoint;
    high = drawn.maxPoint;
    return;
  }
  low = OdGePoint3d(header.limMin.x, header.limMin.y, 0.0);
  high = OdGePoint3d(header.limMax.x, header.limMax.y, 0.0);
}

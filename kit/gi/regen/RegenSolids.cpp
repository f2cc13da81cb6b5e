// SOLID and TRACE: a filled triangle or quadrilateral (corners stored in zig-zag order), or its
// outline when FILLMODE is off.
#include "kit/gi/regen/RegenEntities.h"
#include "kit/gi/regen/RegenPrimitives.h"

namespace gi {

void regenSolid(GiRegenContext& ctx, const OdGePoint3d (&corners)[4], const OdGeVector3d& normal) {
  OdGeVector3d n = normal.isZeroLength() ? kDefaultNormal : normal.normal();
  OdGeMatrix3d plane = OdGeMatrix3d::planeToWorld(n);
  // Stored order 1 2 4 3 around the outline; a triangle repeats its third corner.
  std::vector<OdGePoint3d> outline = {plane.transform(corners[0]), plane.transform(corners[1]),
                                      plane.transform(corners[3])};
  if (!(corners[2] == corners[3])) outline.push_back(plane.transform(corners[2]));
  if (ctx.fillMode()) {
    drawFilledPolygon(ctx, outline, &n);
    return;
  }
  outline.push_back(outline.front());
  drawChain(ctx, outline, &n);
}

}  // namespace gi

// One outline from a polygon with holes: each hole is joined to the outline by a bridge that runs
// there and back, so that a filled path of the result leaves the holes empty under both the
// even-odd and the non-zero rule. The outer loop comes out counter-clockwise about the normal,
// the holes clockwise.
#pragma once

#include <vector>

#include "kit/base/Geometry.h"

namespace gi {

// Loops need not be closed (a repeated first point is ignored). The normal may be null: the
// outer loop's own normal is used.
std::vector<OdGePoint3d> mergeHoles(const std::vector<OdGePoint3d>& outer,
                                    const std::vector<std::vector<OdGePoint3d>>& holes,
                                    const OdGeVector3d* normal = nullptr);

// Newell's normal of a loop (not normalised; zero for a degenerate loop).
OdGeVector3d loopNormal(const std::vector<OdGePoint3d>& loop);
// Signed area of a 2D loop, positive counter-clockwise.
double signedArea(const std::vector<OdGePoint2d>& loop);
// Even-odd point in polygon test.
bool pointInPolygon(const OdGePoint2d& p, const std::vector<OdGePoint2d>& polygon);

}  // namespace gi

// Clipping in the xy plane (z follows along): lines to boxes, polylines and polygons to clip
// polygons. Clip polygons are closed loops without a repeated first point.
#pragma once

#include <vector>

#include "kit/base/Geometry.h"

namespace gi {

// The part of the line p0 + t (p1 - p0), t in [t0, t1], inside the box's xy rectangle; t0 and t1
// are narrowed. False when nothing is inside. Infinite bounds are allowed.
bool clipLineToBox(const OdGePoint3d& p0, const OdGePoint3d& p1, const OdGeExtents3d& box, double& t0, double& t1);

// The inside pieces of an open point list (an even-odd inside test on the clip polygon).
std::vector<std::vector<OdGePoint3d>> clipPolyline(const std::vector<OdGePoint3d>& points,
                                                   const std::vector<OdGePoint2d>& clip);
// A closed area cut to the clip polygon (Sutherland-Hodgman: exact for convex clip polygons).
std::vector<OdGePoint3d> clipPolygon(const std::vector<OdGePoint3d>& points, const std::vector<OdGePoint2d>& clip);

enum class BoxRelation { kInside, kOutside, kCrossing };
// Where an xy box lies relative to the clip polygon.
BoxRelation boxRelation(const OdGeExtents3d& box, const std::vector<OdGePoint2d>& clip);

// The matrix's largest stretch of a unit vector (for turning deviations between spaces).
double matrixScale(const OdGeMatrix3d& m);

}  // namespace gi

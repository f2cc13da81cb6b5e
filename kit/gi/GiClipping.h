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

// The pieces of an open point list whose z lies within [zmin, zmax] (a view's back and front
// clipping planes once in eye or output coordinates).
std::vector<std::vector<OdGePoint3d>> clipPolylineToDepth(const std::vector<OdGePoint3d>& points, double zmin,
                                                          double zmax);
// A closed area cut to the slab zmin <= z <= zmax; empty when less than a triangle is left.
std::vector<OdGePoint3d> clipPolygonToDepth(const std::vector<OdGePoint3d>& points, double zmin, double zmax);

enum class BoxRelation { kInside, kOutside, kCrossing };
// Where an xy box lies relative to the clip polygon.
BoxRelation boxRelation(const OdGeExtents3d& box, const std::vector<OdGePoint2d>& clip);

// A clip region of several loops (a viewport clipped by a region with holes, or by an outline
// drawn as several loops): a point is inside when an odd number of loops hold it. Loops of fewer
// than three points are left out.
using ClipLoops = std::vector<std::vector<OdGePoint2d>>;
bool pointInRegion(const OdGePoint2d& p, const ClipLoops& loops);
BoxRelation boxRelation(const OdGeExtents3d& box, const ClipLoops& loops);
std::vector<std::vector<OdGePoint3d>> clipPolyline(const std::vector<OdGePoint3d>& points, const ClipLoops& loops);
// A closed area cut to each loop that bounds the region from outside (one held by an even number
// of the others); the holes of the region do not cut areas.
std::vector<std::vector<OdGePoint3d>> clipPolygon(const std::vector<OdGePoint3d>& points, const ClipLoops& loops);

// The matrix's largest stretch of a unit vector (for turning deviations between spaces).
double matrixScale(const OdGeMatrix3d& m);

}  // namespace gi

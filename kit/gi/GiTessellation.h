// Breaking curves into point lists whose chords stay within a deviation of the true curve (a
// chord error, so that big curves get many points and small ones few). Every routine appends to
// `out` and caps the points it makes, so that a hostile radius cannot exhaust memory.
#pragma once

#include <vector>

#include "kit/base/Geometry.h"
#include "kit/gi/GiCurves.h"

struct HatchEdge;

namespace gi {

constexpr int kMaxSegmentsPerCircle = 8192;
constexpr size_t kMaxCurvePoints = 200000;

// Chords for an arc of this radius and sweep (radians) within the deviation.
int arcSegmentCount(double radius, double sweep, double deviation);

// The arc centre + r (cos t * xAxis + sin t * yAxis) for t in [0, sweep]; xAxis and yAxis unit
// and perpendicular. The first point is left out when `includeStart` is false.
void tessellateArc(const OdGePoint3d& center, double radius, const OdGeVector3d& xAxis, const OdGeVector3d& yAxis,
                   double sweep, double deviation, std::vector<OdGePoint3d>& out, bool includeStart = true);
void tessellateEllipse(const OdGeEllipArc3d& arc, double deviation, std::vector<OdGePoint3d>& out,
                       bool includeStart = true);
void tessellateNurbs(const OdGeNurbCurve3d& curve, double deviation, std::vector<OdGePoint3d>& out);

// A polyline segment from p0 to p1 with a bulge (tan of a quarter of the included angle,
// positive counter-clockwise), in the plane z = 0; the start point is left out.
void tessellateBulge(const OdGePoint2d& p0, const OdGePoint2d& p1, double bulge, double deviation,
                     std::vector<OdGePoint2d>& out);
// Centre, radius and start angle of a bulge segment; false when the bulge is (almost) zero.
bool bulgeArc(const OdGePoint2d& p0, const OdGePoint2d& p1, double bulge, OdGePoint2d& center, double& radius,
              double& startAngle, double& sweep);

// The closed outline of hatch-style boundary edges, in their 2D plane.
void tessellateEdges(const std::vector<HatchEdge>& edges, double deviation, std::vector<OdGePoint2d>& out);

}  // namespace gi

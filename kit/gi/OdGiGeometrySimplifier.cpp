#include "kit/gi/OdGiGeometrySimplifier.h"

#include <cmath>
#include <limits>

#include "kit/gi/GiClipping.h"
#include "kit/gi/GiImageOutline.h"
#include "kit/gi/GiPolygonHoles.h"
#include "kit/gi/GiTessellation.h"

OdGiGeometrySimplifier::~OdGiGeometrySimplifier() = default;

double OdGiGeometrySimplifier::deviation(OdGiDeviationType type, const OdGePoint3d& point) const {
  double value = deviation_ ? deviation_->deviation(type, point) : defaultDeviation_;
  return (value > 0.0 && std::isfinite(value)) ? value : defaultDeviation_;
}

bool OdGiGeometrySimplifier::fillsFaces() const {
  return context_ && context_->effectiveTraits().fillType == kOdGiFillAlways;
}

void OdGiGeometrySimplifier::polylineOut(int32_t, const OdGePoint3d*) {}
void OdGiGeometrySimplifier::polygonOut(int32_t, const OdGePoint3d*) {}

void OdGiGeometrySimplifier::shellFaceOut(const std::vector<std::vector<OdGePoint3d>>& loops,
                                          const OdGeVector3d* normal) {
  if (loops.empty()) return;
  std::vector<OdGePoint3d> merged =
      loops.size() == 1 ? loops[0]
                        : gi::mergeHoles(loops[0], std::vector<std::vector<OdGePoint3d>>(loops.begin() + 1, loops.end()),
                                         normal);
  if (!merged.empty()) polygonOut(int32_t(merged.size()), merged.data());
}

void OdGiGeometrySimplifier::outputPoints(const std::vector<OdGePoint3d>& points, bool closedArea) {
  if (points.empty()) return;
  if (closedArea) polygonOut(int32_t(points.size()), points.data());
  else polylineOut(int32_t(points.size()), points.data());
}

// ---- Lines --------------------------------------------------------------------------------------

void OdGiGeometrySimplifier::polylineProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d*,
                                          const OdGeVector3d*, int64_t) {
  if (numPoints > 0 && vertexList) polylineOut(numPoints, vertexList);
}

void OdGiGeometrySimplifier::polygonProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d*,
                                         const OdGeVector3d*) {
  if (numPoints > 0 && vertexList) polygonOut(numPoints, vertexList);
}

void OdGiGeometrySimplifier::strokeLine(const OdGePoint3d& base, const OdGeVector3d& direction, bool bothWays) {
  if (!drawConstructionLines_ || direction.isZeroLength()) return;
  double t0 = bothWays ? -std::numeric_limits<double>::infinity() : 0.0;
  double t1 = std::numeric_limits<double>::infinity();
  if (!gi::clipLineToBox(base, base + direction, constructionExtents_, t0, t1)) return;
  OdGePoint3d points[2] = {base + direction * t0, base + direction * t1};
  polylineOut(2, points);
}

void OdGiGeometrySimplifier::xlineProc(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint) {
  strokeLine(firstPoint, secondPoint - firstPoint, true);
}

void OdGiGeometrySimplifier::rayProc(const OdGePoint3d& basePoint, const OdGePoint3d& throughPoint) {
  strokeLine(basePoint, throughPoint - basePoint, false);
}

void OdGiGeometrySimplifier::polypointProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d*) {
  for (int32_t i = 0; i < numPoints; ++i) polylineOut(1, vertexList + i);
}

// ---- Curves -------------------------------------------------------------------------------------

void OdGiGeometrySimplifier::circleProc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                                        const OdGeVector3d*) {
  if (!std::isfinite(radius)) return;
  OdGeVector3d n = normal.isZeroLength() ? OdGeVector3d::kZAxis() : normal.normal();
  OdGeVector3d x = arbitraryAxisX(n);
  std::vector<OdGePoint3d> points;
  gi::tessellateArc(center, std::fabs(radius), x, n.crossProduct(x), 2 * kPi,
                    deviation(kOdGiMaxDevForCircle, center), points);
  outputPoints(points, false);
}

void OdGiGeometrySimplifier::circleProc(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint,
                                        const OdGePoint3d& thirdPoint, const OdGeVector3d* extrusion) {
  OdGePoint3d center;
  double radius;
  OdGeVector3d normal;
  if (circleThroughPoints(firstPoint, secondPoint, thirdPoint, center, radius, normal)) {
    circleProc(center, radius, normal, extrusion);
  }
}

void OdGiGeometrySimplifier::circularArcProc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                                             const OdGeVector3d& startVector, double sweepAngle, OdGiArcType arcType,
                                             const OdGeVector3d*) {
  if (!std::isfinite(radius) || !std::isfinite(sweepAngle)) return;
  OdGeVector3d n = normal.isZeroLength() ? OdGeVector3d::kZAxis() : normal.normal();
  OdGeVector3d x = startVector.isZeroLength() ? arbitraryAxisX(n) : startVector.normal();
  // The start vector may lean out of the plane: keep only its in-plane part.
  x = (x - n * x.dotProduct(n));
  x = x.isZeroLength() ? arbitraryAxisX(n) : x.normal();
  double sweep = std::clamp(sweepAngle, -2 * kPi, 2 * kPi);
  std::vector<OdGePoint3d> points;
  gi::tessellateArc(center, std::fabs(radius), x, n.crossProduct(x), sweep, deviation(kOdGiMaxDevForCircle, center),
                    points);
  if (arcType == kOdGiArcSector) points.push_back(center);
  outputPoints(points, arcType != kOdGiArcSimple);
}

void OdGiGeometrySimplifier::circularArcProc(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint,
                                             const OdGePoint3d& thirdPoint, OdGiArcType arcType,
                                             const OdGeVector3d* extrusion) {
  OdGePoint3d center;
  double radius;
  OdGeVector3d normal;
  if (!circleThroughPoints(firstPoint, secondPoint, thirdPoint, center, radius, normal)) {
    OdGePoint3d points[3] = {firstPoint, secondPoint, thirdPoint};
    polylineOut(3, points);
    return;
  }
  // The normal of the three points makes the arc run counter-clockwise from the first point
  // through the second to the third.
  OdGeVector3d start = firstPoint - center;
  OdGeVector3d end = thirdPoint - center;
  OdGeVector3d y = normal.crossProduct(start.normal());
  double sweep = std::atan2(end.dotProduct(y), end.dotProduct(start.normal()));
  if (sweep <= 0.0) sweep += 2 * kPi;
  circularArcProc(center, radius, normal, start, sweep, arcType, extrusion);
}

void OdGiGeometrySimplifier::ellipArcProc(const OdGeEllipArc3d& ellipArc, const OdGePoint3d* endPointOverrides,
                                          OdGiArcType arcType, const OdGeVector3d*) {
  std::vector<OdGePoint3d> points;
  gi::tessellateEllipse(ellipArc, deviation(kOdGiMaxDevForCurve, ellipArc.center()), points);
  if (points.empty()) return;
  if (endPointOverrides) {
    points.front() = endPointOverrides[0];
    points.back() = endPointOverrides[1];
  }
  if (arcType == kOdGiArcSector) points.push_back(ellipArc.center());
  outputPoints(points, arcType != kOdGiArcSimple);
}

void OdGiGeometrySimplifier::nurbsProc(const OdGeNurbCurve3d& nurbsCurve) {
  if (nurbsCurve.controlPoints().empty()) return;
  std::vector<OdGePoint3d> points;
  gi::tessellateNurbs(nurbsCurve, deviation(kOdGiMaxDevForCurve, nurbsCurve.controlPoints().front()), points);
  outputPoints(points, false);
}

void OdGiGeometrySimplifier::edgeProc(const std::vector<HatchEdge>& edges, const OdGeMatrix3d* transform) {
  double scale = transform ? gi::matrixScale(*transform) : 1.0;
  double dev = deviation(kOdGiMaxDevForBoundary, OdGePoint3d()) / (scale > 0.0 ? scale : 1.0);
  std::vector<OdGePoint2d> flat;
  gi::tessellateEdges(edges, dev, flat);
  std::vector<OdGePoint3d> points;
  points.reserve(flat.size());
  for (const OdGePoint2d& p : flat) {
    OdGePoint3d q(p.x, p.y, 0.0);
    points.push_back(transform ? transform->transform(q) : q);
  }
  outputPoints(points, true);
}

// ---- What this simplifier does not draw ---------------------------------------------------------

void OdGiGeometrySimplifier::shapeProc(const OdGePoint3d&, const OdGeVector3d&, const OdGeVector3d&, int,
                                       const OdGiTextStyle*, const OdGeVector3d*) {}

void OdGiGeometrySimplifier::rasterImageProc(const OdGePoint3d& origin, const OdGeVector3d& u, const OdGeVector3d& v,
                                             const OdGiRasterImage* image, const OdGePoint2d* uvBoundary,
                                             uint32_t numBoundPts, bool, double, double, double) {
  // A picture this sink cannot show is drawn as its outline.
  if (!image) return;
  std::vector<OdGePoint3d> outline = gi::imageOutline(origin, u, v, image->pixelWidth(), image->pixelHeight(),
                                                      uvBoundary, numBoundPts);
  outputPoints(outline, false);
}

void OdGiGeometrySimplifier::metafileProc(const OdGePoint3d&, const OdGeVector3d&, const OdGeVector3d&,
                                          const OdGiMetafile*, bool, bool) {}

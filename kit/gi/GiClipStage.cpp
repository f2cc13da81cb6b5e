#include "kit/gi/GiClipStage.h"

#include <cmath>

#include "kit/gi/GiClipping.h"
#include "kit/gi/GiPolygonHoles.h"

void GiClipStage::pushBoundary(std::vector<OdGePoint2d> boundary) {
  gi::ClipLoops loops;
  loops.push_back(std::move(boundary));
  pushBoundary(std::move(loops));
}

void GiClipStage::pushBoundary(gi::ClipLoops loops) {
  for (auto& loop : loops) {
    if (loop.size() > 1 && loop.front() == loop.back()) loop.pop_back();
  }
  boundaries_.push_back(std::move(loops));
}

void GiClipStage::popBoundary() {
  if (!boundaries_.empty()) boundaries_.pop_back();
}

void GiClipStage::setDepthLimits(double zmin, double zmax) {
  zmin_ = std::isnan(zmin) ? -HUGE_VAL : zmin;
  zmax_ = std::isnan(zmax) ? HUGE_VAL : zmax;
  depthLimited_ = std::isfinite(zmin_) || std::isfinite(zmax_);
}

GiClipStage::Where GiClipStage::locate(const OdGeExtents3d& box) const {
  if (!box.isValidExtents()) return Where::kOutside;
  bool crossing = false;
  if (depthLimited_) {
    if (box.maxPoint.z < zmin_ || box.minPoint.z > zmax_) return Where::kOutside;
    crossing = box.minPoint.z < zmin_ || box.maxPoint.z > zmax_;
  }
  for (const auto& boundary : boundaries_) {
    gi::BoxRelation relation = gi::boxRelation(box, boundary);
    if (relation == gi::BoxRelation::kOutside) return Where::kOutside;
    if (relation == gi::BoxRelation::kCrossing) crossing = true;
  }
  return crossing ? Where::kCrossing : Where::kInside;
}

GiClipStage::Where GiClipStage::locate(int32_t numPoints, const OdGePoint3d* points) const {
  if (!isClipping()) return Where::kInside;
  OdGeExtents3d box;
  for (int32_t i = 0; i < numPoints; ++i) box.addPoint(points[i]);
  return locate(box);
}

bool GiClipStage::pointInside(const OdGePoint3d& p) const {
  if (!depthInside(p.z)) return false;
  for (const auto& boundary : boundaries_) {
    if (!gi::pointInRegion(p.to2d(), boundary)) return false;
  }
  return true;
}

// ---- Point lists: cut where they cross ----------------------------------------------------------

void GiClipStage::polylineOut(int32_t numPoints, const OdGePoint3d* vertexList) {
  if (!dest_ || numPoints <= 0) return;
  // Most point lists lie wholly inside or outside: only those that cross are cut.
  switch (locate(numPoints, vertexList)) {
    case Where::kInside: dest_->polylineProc(numPoints, vertexList); return;
    case Where::kOutside: return;
    case Where::kCrossing: break;
  }
  std::vector<OdGePoint3d> points(vertexList, vertexList + numPoints);
  std::vector<std::vector<OdGePoint3d>> pieces;
  if (depthLimited_) pieces = gi::clipPolylineToDepth(points, zmin_, zmax_);
  else pieces.push_back(std::move(points));
  for (const auto& boundary : boundaries_) {
    std::vector<std::vector<OdGePoint3d>> next;
    for (const auto& piece : pieces) {
      for (auto& cut : gi::clipPolyline(piece, boundary)) next.push_back(std::move(cut));
    }
    pieces = std::move(next);
  }
  for (const auto& piece : pieces) dest_->polylineProc(int32_t(piece.size()), piece.data());
}

void GiClipStage::polygonOut(int32_t numPoints, const OdGePoint3d* vertexList) {
  if (!dest_ || numPoints <= 0) return;
  switch (locate(numPoints, vertexList)) {
    case Where::kInside: dest_->polygonProc(numPoints, vertexList); return;
    case Where::kOutside: return;
    case Where::kCrossing: break;
  }
  std::vector<std::vector<OdGePoint3d>> areas = {std::vector<OdGePoint3d>(vertexList, vertexList + numPoints)};
  if (depthLimited_) areas.front() = gi::clipPolygonToDepth(areas.front(), zmin_, zmax_);
  for (const auto& boundary : boundaries_) {
    std::vector<std::vector<OdGePoint3d>> next;
    for (const auto& area : areas) {
      if (area.empty()) continue;
      if (boundary.size() == 1) {
        next.push_back(gi::clipPolygon(area, boundary.front()));
        continue;
      }
      for (auto& cut : gi::clipPolygon(area, boundary)) next.push_back(std::move(cut));
    }
    areas = std::move(next);
  }
  for (const auto& area : areas) {
    if (!area.empty()) dest_->polygonProc(int32_t(area.size()), area.data());
  }
}

void GiClipStage::polylineProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d* normal,
                               const OdGeVector3d* extrusion, int64_t marker) {
  switch (locate(numPoints, vertexList)) {
    case Where::kInside:
      if (dest_) dest_->polylineProc(numPoints, vertexList, normal, extrusion, marker);
      return;
    case Where::kOutside: return;
    case Where::kCrossing: polylineOut(numPoints, vertexList); return;
  }
}

void GiClipStage::polygonProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d* normal,
                              const OdGeVector3d* extrusion) {
  switch (locate(numPoints, vertexList)) {
    case Where::kInside:
      if (dest_) dest_->polygonProc(numPoints, vertexList, normal, extrusion);
      return;
    case Where::kOutside: return;
    case Where::kCrossing: polygonOut(numPoints, vertexList); return;
  }
}

void GiClipStage::plineProc(const OdGiPolyline& polyline, const OdGeMatrix3d* transform, uint32_t fromIndex,
                            uint32_t numSegs) {
  if (!isClipping()) {
    if (dest_) dest_->plineProc(polyline, transform, fromIndex, numSegs);
    return;
  }
  // Broken into lines and outlines, which polylineProc and polygonProc then locate.
  OdGiGeometrySimplifier::plineProc(polyline, transform, fromIndex, numSegs);
}

// ---- Whole primitives: pass, drop, or break down ------------------------------------------------

void GiClipStage::meshProc(int32_t numRows, int32_t numColumns, const OdGePoint3d* vertexList,
                           const OdGiEdgeData* edgeData, const OdGiFaceData* faceData,
                           const OdGiVertexData* vertexData) {
  if (numRows <= 0 || numColumns <= 0 || int64_t(numRows) * numColumns > (int64_t(1) << 28)) return;
  switch (locate(numRows * numColumns, vertexList)) {
    case Where::kInside:
      if (dest_) dest_->meshProc(numRows, numColumns, vertexList, edgeData, faceData, vertexData);
      return;
    case Where::kOutside: return;
    case Where::kCrossing:
      OdGiGeometrySimplifier::meshProc(numRows, numColumns, vertexList, edgeData, faceData, vertexData);
      return;
  }
}

void GiClipStage::shellProc(int32_t numVertices, const OdGePoint3d* vertexList, int32_t faceListSize,
                            const int32_t* faceList, const OdGiEdgeData* edgeData, const OdGiFaceData* faceData,
                            const OdGiVertexData* vertexData) {
  switch (locate(numVertices, vertexList)) {
    case Where::kInside:
      if (dest_) dest_->shellProc(numVertices, vertexList, faceListSize, faceList, edgeData, faceData, vertexData);
      return;
    case Where::kOutside: return;
    case Where::kCrossing:
      OdGiGeometrySimplifier::shellProc(numVertices, vertexList, faceListSize, faceList, edgeData, faceData,
                                        vertexData);
      return;
  }
}

void GiClipStage::circleProc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                             const OdGeVector3d* extrusion) {
  double r = std::fabs(radius);
  OdGeExtents3d box({center.x - r, center.y - r, center.z - r}, {center.x + r, center.y + r, center.z + r});
  Where where = isClipping() ? locate(box) : Where::kInside;
  if (where == Where::kInside && dest_) dest_->circleProc(center, radius, normal, extrusion);
  if (where == Where::kCrossing) OdGiGeometrySimplifier::circleProc(center, radius, normal, extrusion);
}

void GiClipStage::circularArcProc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                                  const OdGeVector3d& startVector, double sweepAngle, OdGiArcType arcType,
                                  const OdGeVector3d* extrusion) {
  double r = std::fabs(radius);
  OdGeExtents3d box({center.x - r, center.y - r, center.z - r}, {center.x + r, center.y + r, center.z + r});
  Where where = isClipping() ? locate(box) : Where::kInside;
  if (where == Where::kInside && dest_) {
    dest_->circularArcProc(center, radius, normal, startVector, sweepAngle, arcType, extrusion);
  }
  if (where == Where::kCrossing) {
    OdGiGeometrySimplifier::circularArcProc(center, radius, normal, startVector, sweepAngle, arcType, extrusion);
  }
}

void GiClipStage::ellipArcProc(const OdGeEllipArc3d& ellipArc, const OdGePoint3d* endPointOverrides,
                               OdGiArcType arcType, const OdGeVector3d* extrusion) {
  double r = std::max(ellipArc.majorRadius(), ellipArc.minorRadius());
  const OdGePoint3d& c = ellipArc.center();
  OdGeExtents3d box({c.x - r, c.y - r, c.z - r}, {c.x + r, c.y + r, c.z + r});
  Where where = isClipping() ? locate(box) : Where::kInside;
  if (where == Where::kInside && dest_) dest_->ellipArcProc(ellipArc, endPointOverrides, arcType, extrusion);
  if (where == Where::kCrossing) OdGiGeometrySimplifier::ellipArcProc(ellipArc, endPointOverrides, arcType, extrusion);
}

void GiClipStage::nurbsProc(const OdGeNurbCurve3d& nurbsCurve) {
  const auto& cps = nurbsCurve.controlPoints();
  // The control polygon's box holds the curve.
  Where where = locate(int32_t(cps.size()), cps.data());
  if (where == Where::kInside && dest_) dest_->nurbsProc(nurbsCurve);
  if (where == Where::kCrossing) OdGiGeometrySimplifier::nurbsProc(nurbsCurve);
}

void GiClipStage::textProc(const OdGePoint3d& position, const OdGeVector3d& direction, const OdGeVector3d& upVector,
                           const OdChar* msg, int32_t numChars, bool raw, const OdGiTextStyle* textStyle,
                           const OdGeVector3d* extrusion) {
  if (dest_ && pointInside(position)) {
    dest_->textProc(position, direction, upVector, msg, numChars, raw, textStyle, extrusion);
  }
}

void GiClipStage::shapeProc(const OdGePoint3d& position, const OdGeVector3d& direction, const OdGeVector3d& upVector,
                            int shapeNumber, const OdGiTextStyle* textStyle, const OdGeVector3d* extrusion) {
  if (dest_ && pointInside(position)) dest_->shapeProc(position, direction, upVector, shapeNumber, textStyle, extrusion);
}

void GiClipStage::rasterImageProc(const OdGePoint3d& origin, const OdGeVector3d& u, const OdGeVector3d& v,
                                  const OdGiRasterImage* image, const OdGePoint2d* uvBoundary, uint32_t numBoundPts,
                                  bool transparency, double brightness, double contrast, double fade) {
  if (!dest_) return;
  // A picture is not cut: it shows whole unless it lies wholly outside.
  double width = image ? double(image->pixelWidth()) : 1.0, height = image ? double(image->pixelHeight()) : 1.0;
  OdGeVector3d across = u * width, up = v * height;
  OdGePoint3d corners[4] = {origin, origin + across, origin + across + up, origin + up};
  if (locate(4, corners) != Where::kOutside) {
    dest_->rasterImageProc(origin, u, v, image, uvBoundary, numBoundPts, transparency, brightness, contrast, fade);
  }
}

void GiClipStage::polypointProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d* normals) {
  if (!dest_) return;
  if (!isClipping()) {
    dest_->polypointProc(numPoints, vertexList, normals);
    return;
  }
  for (int32_t i = 0; i < numPoints; ++i) {
    if (pointInside(vertexList[i])) dest_->polypointProc(1, vertexList + i);
  }
}

void GiClipStage::xlineProc(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint) {
  if (dest_) dest_->xlineProc(firstPoint, secondPoint);
}

void GiClipStage::rayProc(const OdGePoint3d& basePoint, const OdGePoint3d& throughPoint) {
  if (dest_) dest_->rayProc(basePoint, throughPoint);
}

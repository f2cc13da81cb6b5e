#include "kit/gi/OdGiConveyorGeometry.h"

#include <algorithm>
#include <cmath>

#include "kit/db/Entities.h"
#include "kit/gi/GiTessellation.h"

bool OdGiPolyline::hasVertexWidths() const {
  return std::any_of(widths.begin(), widths.end(), [](const OdGePoint2d& w) { return w.x > 0.0 || w.y > 0.0; });
}

OdGiConveyorGeometry::~OdGiConveyorGeometry() = default;

void OdGiConveyorGeometry::circleProc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                                      const OdGeVector3d&, const OdGeVector3d* extrusion) {
  circleProc(center, radius, normal, extrusion);
}

void OdGiConveyorGeometry::textProc2(const OdGePoint3d& position, const OdGeVector3d& direction,
                                     const OdGeVector3d& upVector, const OdChar* msg, int32_t numChars, bool raw,
                                     const OdGiTextStyle* textStyle, const OdGeVector3d* extrusion,
                                     const OdGeExtents3d*) {
  textProc(position, direction, upVector, msg, numChars, raw, textStyle, extrusion);
}

void OdGiConveyorGeometry::xlineProc2(const OdGePoint3d& basePoint, const OdGeVector3d& direction) {
  xlineProc(basePoint, basePoint + direction);
}

void OdGiConveyorGeometry::rayProc2(const OdGePoint3d& basePoint, const OdGeVector3d& direction) {
  rayProc(basePoint, basePoint + direction);
}

void OdGiConveyorGeometry::setExtentsProc(const OdGePoint3d*, bool) {}

void OdGiConveyorGeometry::conveyorBoundaryInfoProc(const OdGeExtents3d&, uint32_t&) {}

void OdGiConveyorGeometry::rowOfDotsProc(int32_t numPoints, const OdGePoint3d& startPoint,
                                         const OdGeVector3d& dirToNextPoint) {
  if (numPoints <= 0) return;
  std::vector<OdGePoint3d> points;
  points.reserve(size_t(std::min(numPoints, 1 << 20)));
  for (int32_t i = 0; i < numPoints && i < (1 << 20); ++i) points.push_back(startPoint + dirToNextPoint * double(i));
  polypointProc(int32_t(points.size()), points.data());
}

void OdGiConveyorGeometry::worldLineProc(const OdGePoint3d& first, const OdGePoint3d& second) {
  OdGePoint3d points[2] = {first, second};
  polylineProc(2, points);
}

void OdGiConveyorGeometry::polypointProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d*) {
  for (int32_t i = 0; i < numPoints; ++i) polylineProc(1, vertexList + i);
}

void OdGiConveyorGeometry::ttfPolyDrawProc(int32_t, const OdGePoint3d*, int32_t, const int32_t*, const uint8_t*,
                                           const OdGiFaceData*) {}

void OdGiConveyorGeometry::edgeProc(const std::vector<HatchEdge>& edges, const OdGeMatrix3d* transform) {
  // Without a deviation here, curves get a tolerance relative to the boundary's own size.
  std::vector<OdGePoint2d> flat;
  gi::tessellateEdges(edges, 0.0, flat);
  OdGeExtents3d box;
  for (const OdGePoint2d& p : flat) box.addPoint({p.x, p.y, 0.0});
  if (!box.isValidExtents()) return;
  double deviation = (box.maxPoint - box.minPoint).length() / 1000.0;
  flat.clear();
  gi::tessellateEdges(edges, deviation, flat);
  std::vector<OdGePoint3d> points;
  for (const OdGePoint2d& p : flat) {
    OdGePoint3d q(p.x, p.y, 0.0);
    points.push_back(transform ? transform->transform(q) : q);
  }
  if (points.size() >= 2) polygonProc(int32_t(points.size()), points.data());
}

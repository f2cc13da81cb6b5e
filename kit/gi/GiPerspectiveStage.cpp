#include "kit/gi/GiPerspectiveStage.h"

#include <cmath>

#include "kit/gi/GiClipping.h"

GiPerspectiveStage::GiPerspectiveStage(OdGiConveyorGeometry* destination, double cameraDistance,
                                       const OdGeMatrix3d& eyeToOutput)
    : dest_(destination),
      distance_(cameraDistance > 0.0 && std::isfinite(cameraDistance) ? cameraDistance : 1.0),
      nearest_(distance_ * (1.0 - 1e-3)),
      toOutput_(eyeToOutput) {}

OdGePoint3d GiPerspectiveStage::project(const OdGePoint3d& eye) const {
  double f = distance_ / (distance_ - std::fmin(eye.z, nearest_));
  return toOutput_.transform(OdGePoint3d(eye.x * f, eye.y * f, eye.z));
}

void GiPerspectiveStage::polylineOut(int32_t numPoints, const OdGePoint3d* vertexList) {
  if (!dest_ || numPoints <= 0 || !vertexList) return;
  std::vector<OdGePoint3d> points(vertexList, vertexList + numPoints);
  for (auto& piece : gi::clipPolylineToDepth(points, -HUGE_VAL, nearest_)) {
    for (OdGePoint3d& p : piece) p = project(p);
    dest_->polylineProc(int32_t(piece.size()), piece.data());
  }
}

void GiPerspectiveStage::polygonOut(int32_t numPoints, const OdGePoint3d* vertexList) {
  if (!dest_ || numPoints <= 0 || !vertexList) return;
  std::vector<OdGePoint3d> area =
      gi::clipPolygonToDepth(std::vector<OdGePoint3d>(vertexList, vertexList + numPoints), -HUGE_VAL, nearest_);
  if (area.empty()) return;
  for (OdGePoint3d& p : area) p = project(p);
  dest_->polygonProc(int32_t(area.size()), area.data());
}

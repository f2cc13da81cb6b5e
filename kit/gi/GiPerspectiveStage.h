// A conveyor stage that draws eye coordinates in perspective: everything is broken into point
// lists, cut where it comes within reach of the camera, and each point scaled by its depth towards
// the camera before the output transform. The target's plane (eye z 0) keeps its size; eye z is
// kept (through the output transform) for the clip stage's depth limits.
#pragma once

#include "kit/gi/OdGiGeometrySimplifier.h"

class GiPerspectiveStage : public OdGiGeometrySimplifier {
public:
  // `cameraDistance`: the camera's height above the target's plane along eye z (> 0).
  GiPerspectiveStage(OdGiConveyorGeometry* destination, double cameraDistance, const OdGeMatrix3d& eyeToOutput);

  // A point of eye coordinates in front of the camera as the output sees it.
  OdGePoint3d project(const OdGePoint3d& eye) const;

  void polylineOut(int32_t numPoints, const OdGePoint3d* vertexList) override;
  void polygonOut(int32_t numPoints, const OdGePoint3d* vertexList) override;

private:
  OdGiConveyorGeometry* dest_;
  double distance_;
  double nearest_;  // the largest eye z drawn: just short of the camera
  OdGeMatrix3d toOutput_;
};

// A conveyor stage that keeps only what lies inside its clip boundaries (a paper-space
// viewport's outline, the boundary of a clipped block reference), working in the xy plane, and
// between two depths in z (a view's back and front clipping planes).
// Primitives wholly inside pass unchanged and wholly outside are dropped; only those crossing a
// boundary are broken into point lists and cut. Texts pass when their position is inside.
#pragma once

#include <cmath>
#include <vector>

#include "kit/gi/GiClipping.h"
#include "kit/gi/OdGiGeometrySimplifier.h"

class GiClipStage : public OdGiGeometrySimplifier {
public:
  explicit GiClipStage(OdGiConveyorGeometry* destination = nullptr) : dest_(destination) {}
  void setDestination(OdGiConveyorGeometry* destination) { dest_ = destination; }

  // Boundaries are closed loops (first point not repeated); a primitive must lie inside all.
  void pushBoundary(std::vector<OdGePoint2d> boundary);
  // A boundary of several loops, inside where an odd number of them hold a point.
  void pushBoundary(gi::ClipLoops loops);
  void popBoundary();
  size_t boundaryCount() const { return boundaries_.size(); }
  // Keeps what lies within zmin <= z <= zmax; infinite limits cut nothing on their side.
  void setDepthLimits(double zmin, double zmax);
  bool isClipping() const { return !boundaries_.empty() || depthLimited_; }

  void plineProc(const OdGiPolyline& polyline, const OdGeMatrix3d* transform = nullptr, uint32_t fromIndex = 0,
                 uint32_t numSegs = 0) override;
  void polylineProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d* normal = nullptr,
                    const OdGeVector3d* extrusion = nullptr, int64_t baseSubEntMarker = -1) override;
  void polygonProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d* normal = nullptr,
                   const OdGeVector3d* extrusion = nullptr) override;
  void xlineProc(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint) override;
  void rayProc(const OdGePoint3d& basePoint, const OdGePoint3d& throughPoint) override;
  void meshProc(int32_t numRows, int32_t numColumns, const OdGePoint3d* vertexList,
                const OdGiEdgeData* edgeData = nullptr, const OdGiFaceData* faceData = nullptr,
                const OdGiVertexData* vertexData = nullptr) override;
  void shellProc(int32_t numVertices, const OdGePoint3d* vertexList, int32_t faceListSize, const int32_t* faceList,
                 const OdGiEdgeData* edgeData = nullptr, const OdGiFaceData* faceData = nullptr,
                 const OdGiVertexData* vertexData = nullptr) override;
  using OdGiGeometrySimplifier::circleProc;
  void circleProc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                  const OdGeVector3d* extrusion = nullptr) override;
  void circularArcProc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                       const OdGeVector3d& startVector, double sweepAngle, OdGiArcType arcType = kOdGiArcSimple,
                       const OdGeVector3d* extrusion = nullptr) override;
  using OdGiGeometrySimplifier::circularArcProc;
  void ellipArcProc(const OdGeEllipArc3d& ellipArc, const OdGePoint3d* endPointOverrides = nullptr,
                    OdGiArcType arcType = kOdGiArcSimple, const OdGeVector3d* extrusion = nullptr) override;
  void nurbsProc(const OdGeNurbCurve3d& nurbsCurve) override;
  void textProc(const OdGePoint3d& position, const OdGeVector3d& direction, const OdGeVector3d& upVector,
                const OdChar* msg, int32_t numChars, bool raw, const OdGiTextStyle* textStyle,
                const OdGeVector3d* extrusion = nullptr) override;
  void shapeProc(const OdGePoint3d& position, const OdGeVector3d& direction, const OdGeVector3d& upVector,
                 int shapeNumber, const OdGiTextStyle* textStyle, const OdGeVector3d* extrusion = nullptr) override;
  void rasterImageProc(const OdGePoint3d& origin, const OdGeVector3d& u, const OdGeVector3d& v,
                       const OdGiRasterImage* image, const OdGePoint2d* uvBoundary, uint32_t numBoundPts,
                       bool transparency = false, double brightness = 50.0, double contrast = 50.0,
                       double fade = 0.0) override;
  void polypointProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d* normals = nullptr) override;

  void polylineOut(int32_t numPoints, const OdGePoint3d* vertexList) override;
  void polygonOut(int32_t numPoints, const OdGePoint3d* vertexList) override;

private:
  enum class Where { kInside, kOutside, kCrossing };
  Where locate(const OdGeExtents3d& box) const;
  Where locate(int32_t numPoints, const OdGePoint3d* points) const;
  bool pointInside(const OdGePoint3d& p) const;
  bool depthInside(double z) const { return z >= zmin_ && z <= zmax_; }

  OdGiConveyorGeometry* dest_;
  std::vector<gi::ClipLoops> boundaries_;
  bool depthLimited_ = false;
  double zmin_ = -HUGE_VAL;
  double zmax_ = HUGE_VAL;
};

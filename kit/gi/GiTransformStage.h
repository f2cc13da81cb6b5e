// A conveyor stage that maps every primitive through a matrix (block transforms, the view's
// world-to-device mapping). Circles and arcs stay circles and arcs while the matrix keeps their
// plane's shape; otherwise they become elliptical arcs. Texts keep their run and have their
// vectors mapped, so that a scaled or mirrored block still hands on placed text.
#pragma once

#include <vector>

#include "kit/gi/GiGeometryForwarder.h"

class GiTransformStage : public GiGeometryForwarder {
public:
  explicit GiTransformStage(OdGiConveyorGeometry* destination = nullptr) : GiGeometryForwarder(destination) {}

  void setMatrix(const OdGeMatrix3d& matrix);
  const OdGeMatrix3d& matrix() const { return matrix_; }

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
  using GiGeometryForwarder::circleProc;
  void circleProc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                  const OdGeVector3d* extrusion = nullptr) override;
  void circleProc(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint, const OdGePoint3d& thirdPoint,
                  const OdGeVector3d* extrusion = nullptr) override;
  void circularArcProc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                       const OdGeVector3d& startVector, double sweepAngle, OdGiArcType arcType = kOdGiArcSimple,
                       const OdGeVector3d* extrusion = nullptr) override;
  void circularArcProc(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint, const OdGePoint3d& thirdPoint,
                       OdGiArcType arcType = kOdGiArcSimple, const OdGeVector3d* extrusion = nullptr) override;
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
  void metafileProc(const OdGePoint3d& origin, const OdGeVector3d& u, const OdGeVector3d& v,
                    const OdGiMetafile* metafile, bool dcAligned = true, bool allowClipping = false) override;
  void polypointProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d* normals = nullptr) override;
  void edgeProc(const std::vector<HatchEdge>& edges, const OdGeMatrix3d* transform = nullptr) override;

private:
  struct PlaneImage {
    OdGeVector3d normal;  // the image of the plane's normal (zero when the plane collapses)
    double scale = 0.0;   // how much the plane stretches
    bool similar = false; // shapes in the plane keep their form (circles stay circles)
  };
  PlaneImage planeImage(const OdGeVector3d& normal) const;
  static bool isDrawable(const OdGePoint3d& center, double radius);
  const OdGePoint3d* mapped(int32_t numPoints, const OdGePoint3d* points);
  OdGeVector3d mappedNormal(const OdGeVector3d* normal) const;

  OdGeMatrix3d matrix_;
  bool identity_ = true;
  std::vector<OdGePoint3d> buffer_;
};

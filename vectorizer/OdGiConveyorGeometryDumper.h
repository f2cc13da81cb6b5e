// The end of the kit's conveyor: each primitive becomes a native driver call (circles and arcs in
// the drawing plane, texts) or is broken into point lists by the simplifier base, which all end in
// the dumper's outputPolyline.
#pragma once

#include <memory>

#include "kit/gi/OdGiGeometrySimplifier.h"
#include "vectorizer/OdGiDumper.h"

class OdGiConveyorGeometryDumper : public OdGiGeometrySimplifier {
public:
  explicit OdGiConveyorGeometryDumper(std::shared_ptr<OdGiDumper> dumper);
  ~OdGiConveyorGeometryDumper() override;

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
  void xlineProc2(const OdGePoint3d& basePoint, const OdGeVector3d& direction) override;
  void rayProc2(const OdGePoint3d& basePoint, const OdGeVector3d& direction) override;
  void polypointProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d* normals = nullptr) override;
  void ttfPolyDrawProc(int32_t numVertices, const OdGePoint3d* vertexList, int32_t faceListSize,
                       const int32_t* faceList, const uint8_t* bezierTypes, const OdGiFaceData* faceData) override;
  void edgeProc(const std::vector<HatchEdge>& edges, const OdGeMatrix3d* transform = nullptr) override;

  void polylineOut(int32_t numPoints, const OdGePoint3d* vertexList) override;
  void polygonOut(int32_t numPoints, const OdGePoint3d* vertexList) override;

  const std::shared_ptr<OdGiDumper>& dumper() const { return dumper_; }
  // 0: primitives not drawn natively are simplified; anything else drops them.
  int32_t simplificationLevel = 0;

private:
  bool simplifies() const { return simplificationLevel == 0; }
  void drawNativeCircle(const OdGePoint3d& center, double radius);
  void drawNativeArc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                     const OdGeVector3d& startVector, double sweepAngle);
  // The text entry: native text record, room label or strokes.
  void drawText(const OdGePoint3d& position, const OdGeVector3d& direction, const OdGeVector3d& upVector,
                const OdString& text, const OdGiTextStyle& style);
  void strokeText(const OdGePoint3d& position, const OdGeVector3d& direction, const OdGeVector3d& upVector,
                  const OdString& text, const OdGiTextStyle& style);

  std::shared_ptr<OdGiDumper> dumper_;
};

// Parallel to the Z axis either way, within the kit's default tolerance: lies in the drawing plane.
bool IsZNormal(const OdGeVector3d& normal);

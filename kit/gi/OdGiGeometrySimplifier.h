// The base of sinks that take only some primitives natively: everything else is broken down here
// into point lists (polylineOut, polygonOut) within the deviation of the geometry's kind. Curves
// are cut by chord error, shells and meshes into faces or edges by the fill type, texts into the
// strokes of a stroke font, wide polylines into filled outlines.
#pragma once

#include <vector>

#include "kit/gi/OdGiConveyorGeometry.h"
#include "kit/gi/OdGiDeviation.h"
#include "kit/gi/OdGiSubEntityTraits.h"

class OdGiGeometrySimplifier : public OdGiConveyorGeometry {
public:
  OdGiGeometrySimplifier() = default;
  ~OdGiGeometrySimplifier() override;

  void plineProc(const OdGiPolyline& polyline, const OdGeMatrix3d* transform = nullptr, uint32_t fromIndex = 0,
                 uint32_t numSegs = 0) override;
  void polylineProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d* normal = nullptr,
                    const OdGeVector3d* extrusion = nullptr, int64_t baseSubEntMarker = -1) override;
  void polygonProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d* normal = nullptr,
                   const OdGeVector3d* extrusion = nullptr) override;
  // Construction lines are drawn only when asked for, clipped to the construction extents.
  void xlineProc(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint) override;
  void rayProc(const OdGePoint3d& basePoint, const OdGePoint3d& throughPoint) override;
  void meshProc(int32_t numRows, int32_t numColumns, const OdGePoint3d* vertexList,
                const OdGiEdgeData* edgeData = nullptr, const OdGiFaceData* faceData = nullptr,
                const OdGiVertexData* vertexData = nullptr) override;
  void shellProc(int32_t numVertices, const OdGePoint3d* vertexList, int32_t faceListSize, const int32_t* faceList,
                 const OdGiEdgeData* edgeData = nullptr, const OdGiFaceData* faceData = nullptr,
                 const OdGiVertexData* vertexData = nullptr) override;
  using OdGiConveyorGeometry::circleProc;
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

  // ---- Simplifier set-up --------------------------------------------------------------------
  virtual void setDeviation(const OdGiDeviation* deviation) { deviation_ = deviation; }
  virtual void setDrawContext(const OdGiConveyorContext* context) { context_ = context; }

  // ---- Output of the simplified geometry: everything ends here -------------------------------
  virtual void polylineOut(int32_t numPoints, const OdGePoint3d* vertexList);
  virtual void polygonOut(int32_t numPoints, const OdGePoint3d* vertexList);
  // One filled face with holes; by default merged into a single outline for polygonOut.
  virtual void shellFaceOut(const std::vector<std::vector<OdGePoint3d>>& loops, const OdGeVector3d* normal);

  // ---- Queries and settings -----------------------------------------------------------------
  const OdGiDeviation* deviationObject() const { return deviation_; }
  const OdGiConveyorContext* drawContext() const { return context_; }
  // The deviation of that kind near the point; without a deviation object, `defaultDeviation`.
  double deviation(OdGiDeviationType type, const OdGePoint3d& point) const;
  void setDefaultDeviation(double value) { defaultDeviation_ = value; }
  // Shells and meshes are filled when the current fill type is "always".
  bool fillsFaces() const;
  void setDrawConstructionLines(bool on, const OdGeExtents3d& extents) {
    drawConstructionLines_ = on;
    constructionExtents_ = extents;
  }

protected:
  void outputPoints(const std::vector<OdGePoint3d>& points, bool closedArea);

private:
  void strokeLine(const OdGePoint3d& base, const OdGeVector3d& direction, bool bothWays);
  void plineOutlines(const OdGiPolyline& polyline, const OdGeMatrix3d& m, size_t first, size_t count);

  const OdGiDeviation* deviation_ = nullptr;
  const OdGiConveyorContext* context_ = nullptr;
  double defaultDeviation_ = 0.5;
  bool drawConstructionLines_ = false;
  OdGeExtents3d constructionExtents_;
};

// The sink's conveyor slots: which primitives go straight to the dumper and which the simplifier
// base breaks down first. Circles and arcs are in SinkCircles.cpp, texts in SinkText.cpp, raster
// images in SinkRasterImages.cpp.
#include "vectorizer/OdGiConveyorGeometryDumper.h"

#include "services/Trace.h"
#include "vectorizer/EntityDrawState.h"

namespace {

constexpr double kEqualPointTolerance = 1e-10;
constexpr double kEqualVectorTolerance = 1e-10;

bool SamePoint(const OdGePoint3d& a, const OdGePoint3d& b) { return a.distanceTo(b) <= kEqualPointTolerance; }

void SetClosed(bool closed) { g_EntityDrawState.closedFlag = closed ? 1 : 0; }

}  // namespace

bool IsZNormal(const OdGeVector3d& normal) {
  OdGeVector3d n = normal.normal();
  const OdGeVector3d z = OdGeVector3d::kZAxis();
  return (n - z).length() <= kEqualVectorTolerance || (n + z).length() <= kEqualVectorTolerance;
}

OdGiConveyorGeometryDumper::OdGiConveyorGeometryDumper(std::shared_ptr<OdGiDumper> dumper)
    : dumper_(std::move(dumper)) {}

OdGiConveyorGeometryDumper::~OdGiConveyorGeometryDumper() = default;

void OdGiConveyorGeometryDumper::plineProc(const OdGiPolyline& polyline, const OdGeMatrix3d* transform,
                                           uint32_t fromIndex, uint32_t numSegs) {
  SetClosed(false);
  if (simplifies()) OdGiGeometrySimplifier::plineProc(polyline, transform, fromIndex, numSegs);
}

void OdGiConveyorGeometryDumper::polylineProc(int32_t numPoints, const OdGePoint3d* vertexList,
                                              const OdGeVector3d* normal, const OdGeVector3d* extrusion,
                                              int64_t baseSubEntMarker) {
  if (numPoints <= 0 || !vertexList) return;
  SetClosed(numPoints > 1 && SamePoint(vertexList[numPoints - 1], vertexList[0]));
  if (!normal || IsZNormal(*normal)) {
    if (dumper_) dumper_->outputPolyline(numPoints, vertexList);
  } else if (simplifies()) {
    OdGiGeometrySimplifier::polylineProc(numPoints, vertexList, normal, extrusion, baseSubEntMarker);
  }
}

void OdGiConveyorGeometryDumper::polygonProc(int32_t numPoints, const OdGePoint3d* vertexList,
                                             const OdGeVector3d* normal, const OdGeVector3d* extrusion) {
  if (numPoints <= 0 || !vertexList) return;
  SetClosed(true);
  if (!normal || IsZNormal(*normal)) {
    if (dumper_) dumper_->outputPolyline(numPoints, vertexList);
  } else if (simplifies()) {
    OdGiGeometrySimplifier::polygonProc(numPoints, vertexList, normal, extrusion);
  }
}

void OdGiConveyorGeometryDumper::xlineProc(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint) {
  SetClosed(false);
  if (simplifies()) OdGiGeometrySimplifier::xlineProc(firstPoint, secondPoint);
}

void OdGiConveyorGeometryDumper::rayProc(const OdGePoint3d& basePoint, const OdGePoint3d& throughPoint) {
  SetClosed(false);
  if (simplifies()) OdGiGeometrySimplifier::rayProc(basePoint, throughPoint);
}

void OdGiConveyorGeometryDumper::meshProc(int32_t numRows, int32_t numColumns, const OdGePoint3d* vertexList,
                                          const OdGiEdgeData* edgeData, const OdGiFaceData* faceData,
                                          const OdGiVertexData* vertexData) {
  SetClosed(false);
  if (simplifies()) OdGiGeometrySimplifier::meshProc(numRows, numColumns, vertexList, edgeData, faceData, vertexData);
}

void OdGiConveyorGeometryDumper::shellProc(int32_t numVertices, const OdGePoint3d* vertexList, int32_t faceListSize,
                                           const int32_t* faceList, const OdGiEdgeData* edgeData,
                                           const OdGiFaceData* faceData, const OdGiVertexData* vertexData) {
  TraceMessage("    Process shell");
  SetClosed(true);
  g_EntityDrawState.fillOn = 1;
  if (simplifies()) {
    OdGiGeometrySimplifier::shellProc(numVertices, vertexList, faceListSize, faceList, edgeData, faceData,
                                      vertexData);
  }
}

void OdGiConveyorGeometryDumper::ellipArcProc(const OdGeEllipArc3d& ellipArc, const OdGePoint3d* endPointOverrides,
                                              OdGiArcType arcType, const OdGeVector3d* extrusion) {
  SetClosed(false);
  if (simplifies()) OdGiGeometrySimplifier::ellipArcProc(ellipArc, endPointOverrides, arcType, extrusion);
}

void OdGiConveyorGeometryDumper::nurbsProc(const OdGeNurbCurve3d& nurbsCurve) {
  SetClosed(false);
  if (simplifies()) OdGiGeometrySimplifier::nurbsProc(nurbsCurve);
}

void OdGiConveyorGeometryDumper::shapeProc(const OdGePoint3d& position, const OdGeVector3d& direction,
                                           const OdGeVector3d& upVector, int shapeNumber,
                                           const OdGiTextStyle* textStyle, const OdGeVector3d* extrusion) {
  SetClosed(false);
  if (dumper_) {
    dumper_->outputLabel(L"Start shapeProc");
    dumper_->outputValue(L"position", OdString().format(L"%g, %g, %g", position.x, position.y, position.z));
    dumper_->outputValue(L"direction", OdString().format(L"%g, %g, %g", direction.x, direction.y, direction.z));
    dumper_->outputValue(L"upVector", OdString().format(L"%g, %g, %g", upVector.x, upVector.y, upVector.z));
    dumper_->outputValue(L"shapeNumber", OdString().format(L"%d", shapeNumber));
    if (extrusion) {
      dumper_->outputValue(L"Extrusion vector",
                           OdString().format(L"%g, %g, %g", extrusion->x, extrusion->y, extrusion->z));
    }
    dumper_->outputTextStyle(textStyle);
    dumper_->outputLabel(L"Reduced shape data");
  }
  if (simplifies()) OdGiGeometrySimplifier::shapeProc(position, direction, upVector, shapeNumber, textStyle, extrusion);
  if (dumper_) dumper_->outputLabel(L"End shapeProc");
}

void OdGiConveyorGeometryDumper::metafileProc(const OdGePoint3d&, const OdGeVector3d&, const OdGeVector3d&,
                                              const OdGiMetafile*, bool, bool) {
  SetClosed(false);
}

void OdGiConveyorGeometryDumper::xlineProc2(const OdGePoint3d& basePoint, const OdGeVector3d& direction) {
  xlineProc(basePoint, basePoint + direction);
}

void OdGiConveyorGeometryDumper::rayProc2(const OdGePoint3d& basePoint, const OdGeVector3d& direction) {
  rayProc(basePoint, basePoint + direction);
}

void OdGiConveyorGeometryDumper::polypointProc(int32_t numPoints, const OdGePoint3d* vertexList,
                                               const OdGeVector3d* normals) {
  SetClosed(false);
  if (simplifies()) OdGiGeometrySimplifier::polypointProc(numPoints, vertexList, normals);
}

void OdGiConveyorGeometryDumper::ttfPolyDrawProc(int32_t, const OdGePoint3d*, int32_t, const int32_t*,
                                                 const uint8_t*, const OdGiFaceData*) {
  SetClosed(false);
}

void OdGiConveyorGeometryDumper::edgeProc(const std::vector<HatchEdge>& edges, const OdGeMatrix3d* transform) {
  SetClosed(false);
  if (simplifies()) OdGiGeometrySimplifier::edgeProc(edges, transform);
}

void OdGiConveyorGeometryDumper::polylineOut(int32_t numPoints, const OdGePoint3d* vertexList) {
  SetClosed(false);
  if (dumper_ && numPoints > 0 && vertexList) dumper_->outputPolyline(numPoints, vertexList);
}

void OdGiConveyorGeometryDumper::polygonOut(int32_t numPoints, const OdGePoint3d* vertexList) {
  SetClosed(true);
  if (dumper_ && numPoints > 0 && vertexList) dumper_->outputPolyline(numPoints, vertexList);
}

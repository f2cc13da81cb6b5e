#include "kit/gi/GiGeometryForwarder.h"

void GiGeometryForwarder::plineProc(const OdGiPolyline& polyline, const OdGeMatrix3d* transform, uint32_t fromIndex,
                                    uint32_t numSegs) {
  if (dest_) dest_->plineProc(polyline, transform, fromIndex, numSegs);
}
void GiGeometryForwarder::polylineProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d* normal,
                                       const OdGeVector3d* extrusion, int64_t marker) {
  if (dest_) dest_->polylineProc(numPoints, vertexList, normal, extrusion, marker);
}
void GiGeometryForwarder::polygonProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d* normal,
                                      const OdGeVector3d* extrusion) {
  if (dest_) dest_->polygonProc(numPoints, vertexList, normal, extrusion);
}
void GiGeometryForwarder::xlineProc(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint) {
  if (dest_) dest_->xlineProc(firstPoint, secondPoint);
}
void GiGeometryForwarder::rayProc(const OdGePoint3d& basePoint, const OdGePoint3d& throughPoint) {
  if (dest_) dest_->rayProc(basePoint, throughPoint);
}
void GiGeometryForwarder::meshProc(int32_t numRows, int32_t numColumns, const OdGePoint3d* vertexList,
                                   const OdGiEdgeData* edgeData, const OdGiFaceData* faceData,
                                   const OdGiVertexData* vertexData) {
  if (dest_) dest_->meshProc(numRows, numColumns, vertexList, edgeData, faceData, vertexData);
}
void GiGeometryForwarder::shellProc(int32_t numVertices, const OdGePoint3d* vertexList, int32_t faceListSize,
                                    const int32_t* faceList, const OdGiEdgeData* edgeData,
                                    const OdGiFaceData* faceData, const OdGiVertexData* vertexData) {
  if (dest_) dest_->shellProc(numVertices, vertexList, faceListSize, faceList, edgeData, faceData, vertexData);
}
void GiGeometryForwarder::circleProc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                                     const OdGeVector3d* extrusion) {
  if (dest_) dest_->circleProc(center, radius, normal, extrusion);
}
void GiGeometryForwarder::circleProc(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint,
                                     const OdGePoint3d& thirdPoint, const OdGeVector3d* extrusion) {
  if (dest_) dest_->circleProc(firstPoint, secondPoint, thirdPoint, extrusion);
}
void GiGeometryForwarder::circularArcProc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                                          const OdGeVector3d& startVector, double sweepAngle, OdGiArcType arcType,
                                          const OdGeVector3d* extrusion) {
  if (dest_) dest_->circularArcProc(center, radius, normal, startVector, sweepAngle, arcType, extrusion);
}
void GiGeometryForwarder::circularArcProc(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint,
                                          const OdGePoint3d& thirdPoint, OdGiArcType arcType,
                                          const OdGeVector3d* extrusion) {
  if (dest_) dest_->circularArcProc(firstPoint, secondPoint, thirdPoint, arcType, extrusion);
}
void GiGeometryForwarder::ellipArcProc(const OdGeEllipArc3d& ellipArc, const OdGePoint3d* endPointOverrides,
                                       OdGiArcType arcType, const OdGeVector3d* extrusion) {
  if (dest_) dest_->ellipArcProc(ellipArc, endPointOverrides, arcType, extrusion);
}
void GiGeometryForwarder::nurbsProc(const OdGeNurbCurve3d& nurbsCurve) {
  if (dest_) dest_->nurbsProc(nurbsCurve);
}
void GiGeometryForwarder::textProc(const OdGePoint3d& position, const OdGeVector3d& direction,
                                   const OdGeVector3d& upVector, const OdChar* msg, int32_t numChars, bool raw,
                                   const OdGiTextStyle* textStyle, const OdGeVector3d* extrusion) {
  if (dest_) dest_->textProc(position, direction, upVector, msg, numChars, raw, textStyle, extrusion);
}
void GiGeometryForwarder::shapeProc(const OdGePoint3d& position, const OdGeVector3d& direction,
                                    const OdGeVector3d& upVector, int shapeNumber, const OdGiTextStyle* textStyle,
                                    const OdGeVector3d* extrusion) {
  if (dest_) dest_->shapeProc(position, direction, upVector, shapeNumber, textStyle, extrusion);
}
void GiGeometryForwarder::rasterImageProc(const OdGePoint3d& origin, const OdGeVector3d& u, const OdGeVector3d& v,
                                          const OdGiRasterImage* image, const OdGePoint2d* uvBoundary,
                                          uint32_t numBoundPts, bool transparency, double brightness,
                                          double contrast, double fade) {
  if (dest_) {
    dest_->rasterImageProc(origin, u, v, image, uvBoundary, numBoundPts, transparency, brightness, contrast, fade);
  }
}
void GiGeometryForwarder::metafileProc(const OdGePoint3d& origin, const OdGeVector3d& u, const OdGeVector3d& v,
                                       const OdGiMetafile* metafile, bool dcAligned, bool allowClipping) {
  if (dest_) dest_->metafileProc(origin, u, v, metafile, dcAligned, allowClipping);
}
void GiGeometryForwarder::polypointProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d* normals) {
  if (dest_) dest_->polypointProc(numPoints, vertexList, normals);
}
void GiGeometryForwarder::edgeProc(const std::vector<HatchEdge>& edges, const OdGeMatrix3d* transform) {
  if (dest_) dest_->edgeProc(edges, transform);
}

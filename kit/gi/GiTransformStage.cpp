#include "kit/gi/GiTransformStage.h"

#include <cmath>

void GiTransformStage::setMatrix(const OdGeMatrix3d& matrix) {
  matrix_ = matrix;
  identity_ = matrix.isIdentity(0.0);
}

GiTransformStage::PlaneImage GiTransformStage::planeImage(const OdGeVector3d& normal) const {
  OdGeVector3d n = normal.isZeroLength() ? OdGeVector3d::kZAxis() : normal.normal();
  OdGeVector3d a = arbitraryAxisX(n);
  OdGeVector3d b = n.crossProduct(a);
  OdGeVector3d ma = matrix_.transform(a), mb = matrix_.transform(b);
  PlaneImage image;
  double la = ma.length(), lb = mb.length();
  OdGeVector3d cross = ma.crossProduct(mb);
  if (!(la > 0.0) || !(lb > 0.0) || cross.isZeroLength(1e-300)) return image;
  image.normal = cross.normal();
  image.scale = la;
  double tol = 1e-9 * std::max(la, lb);
  image.similar = std::fabs(la - lb) <= tol && std::fabs(ma.dotProduct(mb)) <= tol * std::max(la, lb);
  return image;
}

// A circle without a finite place or size has nothing to draw (and would only spread NaN).
bool GiTransformStage::isDrawable(const OdGePoint3d& center, double radius) {
  return std::isfinite(center.x) && std::isfinite(center.y) && std::isfinite(center.z) && std::isfinite(radius);
}

const OdGePoint3d* GiTransformStage::mapped(int32_t numPoints, const OdGePoint3d* points) {
  if (identity_ || numPoints <= 0 || !points) return points;
  buffer_.resize(size_t(numPoints));
  for (int32_t i = 0; i < numPoints; ++i) buffer_[size_t(i)] = matrix_.transform(points[i]);
  return buffer_.data();
}

OdGeVector3d GiTransformStage::mappedNormal(const OdGeVector3d* normal) const {
  return planeImage(normal ? *normal : OdGeVector3d::kZAxis()).normal;
}

void GiTransformStage::plineProc(const OdGiPolyline& polyline, const OdGeMatrix3d* transform, uint32_t fromIndex,
                                 uint32_t numSegs) {
  OdGeMatrix3d combined = transform ? matrix_ * *transform : matrix_;
  GiGeometryForwarder::plineProc(polyline, &combined, fromIndex, numSegs);
}

void GiTransformStage::polylineProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d* normal,
                                    const OdGeVector3d* extrusion, int64_t marker) {
  if (identity_) return GiGeometryForwarder::polylineProc(numPoints, vertexList, normal, extrusion, marker);
  OdGeVector3d n = normal ? mappedNormal(normal) : OdGeVector3d();
  bool keepNormal = normal && !n.isZeroLength();
  GiGeometryForwarder::polylineProc(numPoints, mapped(numPoints, vertexList), keepNormal ? &n : nullptr, nullptr,
                                    marker);
}

void GiTransformStage::polygonProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d* normal,
                                   const OdGeVector3d* extrusion) {
  if (identity_) return GiGeometryForwarder::polygonProc(numPoints, vertexList, normal, extrusion);
  OdGeVector3d n = normal ? mappedNormal(normal) : OdGeVector3d();
  bool keepNormal = normal && !n.isZeroLength();
  GiGeometryForwarder::polygonProc(numPoints, mapped(numPoints, vertexList), keepNormal ? &n : nullptr);
}

void GiTransformStage::xlineProc(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint) {
  GiGeometryForwarder::xlineProc(matrix_.transform(firstPoint), matrix_.transform(secondPoint));
}

void GiTransformStage::rayProc(const OdGePoint3d& basePoint, const OdGePoint3d& throughPoint) {
  GiGeometryForwarder::rayProc(matrix_.transform(basePoint), matrix_.transform(throughPoint));
}

void GiTransformStage::meshProc(int32_t numRows, int32_t numColumns, const OdGePoint3d* vertexList,
                                const OdGiEdgeData* edgeData, const OdGiFaceData* faceData,
                                const OdGiVertexData* vertexData) {
  if (numRows <= 0 || numColumns <= 0) return;
  int64_t count = int64_t(numRows) * numColumns;
  if (count > (int64_t(1) << 28)) return;
  // Normals do not survive a general transform: only the face visibility is handed on.
  OdGiFaceData faces;
  if (faceData) faces.visibility = faceData->visibility;
  GiGeometryForwarder::meshProc(numRows, numColumns, mapped(int32_t(count), vertexList), edgeData,
                                identity_ ? faceData : (faceData ? &faces : nullptr),
                                identity_ ? vertexData : nullptr);
}

void GiTransformStage::shellProc(int32_t numVertices, const OdGePoint3d* vertexList, int32_t faceListSize,
                                 const int32_t* faceList, const OdGiEdgeData* edgeData, const OdGiFaceData* faceData,
                                 const OdGiVertexData* vertexData) {
  OdGiFaceData faces;  // as for meshes: visibility only
  if (faceData) faces.visibility = faceData->visibility;
  GiGeometryForwarder::shellProc(numVertices, mapped(numVertices, vertexList), faceListSize, faceList, edgeData,
                                 identity_ ? faceData : (faceData ? &faces : nullptr),
                                 identity_ ? vertexData : nullptr);
}

void GiTransformStage::circleProc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                                  const OdGeVector3d* extrusion) {
  if (!isDrawable(center, radius)) return;
  if (identity_) return GiGeometryForwarder::circleProc(center, radius, normal, extrusion);
  PlaneImage image = planeImage(normal);
  if (image.similar) {
    GiGeometryForwarder::circleProc(matrix_.transform(center), radius * image.scale, image.normal);
    return;
  }
  OdGeVector3d n = normal.isZeroLength() ? OdGeVector3d::kZAxis() : normal.normal();
  OdGeVector3d x = arbitraryAxisX(n);
  OdGeEllipArc3d full(center, x, n.crossProduct(x), radius, radius);
  GiGeometryForwarder::ellipArcProc(full.transformedBy(matrix_));
}

void GiTransformStage::circleProc(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint,
                                  const OdGePoint3d& thirdPoint, const OdGeVector3d* extrusion) {
  OdGePoint3d center;
  double radius;
  OdGeVector3d normal;
  if (circleThroughPoints(firstPoint, secondPoint, thirdPoint, center, radius, normal)) {
    circleProc(center, radius, normal, extrusion);
  }
}

void GiTransformStage::circularArcProc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                                       const OdGeVector3d& startVector, double sweepAngle, OdGiArcType arcType,
                                       const OdGeVector3d* extrusion) {
  if (!isDrawable(center, radius) || !std::isfinite(sweepAngle)) return;
  if (identity_) {
    return GiGeometryForwarder::circularArcProc(center, radius, normal, startVector, sweepAngle, arcType, extrusion);
  }
  OdGeVector3d n = normal.isZeroLength() ? OdGeVector3d::kZAxis() : normal.normal();
  OdGeVector3d x = startVector - n * startVector.dotProduct(n);
  x = x.isZeroLength() ? arbitraryAxisX(n) : x.normal();
  PlaneImage image = planeImage(n);
  if (image.similar) {
    GiGeometryForwarder::circularArcProc(matrix_.transform(center), radius * image.scale, image.normal,
                                         matrix_.transform(x).normal(), sweepAngle, arcType);
    return;
  }
  // Clockwise sweeps become counter-clockwise ones about the reversed minor axis.
  OdGeVector3d y = n.crossProduct(x) * (sweepAngle < 0 ? -1.0 : 1.0);
  OdGeEllipArc3d arc(center, x, y, radius, radius, 0.0, std::fabs(sweepAngle));
  GiGeometryForwarder::ellipArcProc(arc.transformedBy(matrix_), nullptr, arcType);
}

void GiTransformStage::circularArcProc(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint,
                                       const OdGePoint3d& thirdPoint, OdGiArcType arcType,
                                       const OdGeVector3d* extrusion) {
  OdGePoint3d center;
  double radius;
  OdGeVector3d normal;
  if (!circleThroughPoints(firstPoint, secondPoint, thirdPoint, center, radius, normal)) {
    OdGePoint3d points[3] = {firstPoint, secondPoint, thirdPoint};
    polylineProc(3, points);
    return;
  }
  OdGeVector3d start = (firstPoint - center).normal();
  OdGeVector3d end = thirdPoint - center;
  double sweep = std::atan2(end.dotProduct(normal.crossProduct(start)), end.dotProduct(start));
  if (sweep <= 0.0) sweep += 2 * kPi;
  circularArcProc(center, radius, normal, start, sweep, arcType, extrusion);
}

void GiTransformStage::ellipArcProc(const OdGeEllipArc3d& ellipArc, const OdGePoint3d* endPointOverrides,
                                    OdGiArcType arcType, const OdGeVector3d* extrusion) {
  if (identity_) return GiGeometryForwarder::ellipArcProc(ellipArc, endPointOverrides, arcType, extrusion);
  OdGePoint3d ends[2];
  if (endPointOverrides) {
    ends[0] = matrix_.transform(endPointOverrides[0]);
    ends[1] = matrix_.transform(endPointOverrides[1]);
  }
  GiGeometryForwarder::ellipArcProc(ellipArc.transformedBy(matrix_), endPointOverrides ? ends : nullptr, arcType);
}

void GiTransformStage::nurbsProc(const OdGeNurbCurve3d& nurbsCurve) {
  if (identity_) return GiGeometryForwarder::nurbsProc(nurbsCurve);
  GiGeometryForwarder::nurbsProc(nurbsCurve.transformedBy(matrix_));
}

void GiTransformStage::textProc(const OdGePoint3d& position, const OdGeVector3d& direction,
                                const OdGeVector3d& upVector, const OdChar* msg, int32_t numChars, bool raw,
                                const OdGiTextStyle* textStyle, const OdGeVector3d* extrusion) {
  if (identity_) {
    return GiGeometryForwarder::textProc(position, direction, upVector, msg, numChars, raw, textStyle, extrusion);
  }
  GiGeometryForwarder::textProc(matrix_.transform(position), matrix_.transform(direction),
                                matrix_.transform(upVector), msg, numChars, raw, textStyle);
}

void GiTransformStage::shapeProc(const OdGePoint3d& position, const OdGeVector3d& direction,
                                 const OdGeVector3d& upVector, int shapeNumber, const OdGiTextStyle* textStyle,
                                 const OdGeVector3d* extrusion) {
  if (identity_) {
    return GiGeometryForwarder::shapeProc(position, direction, upVector, shapeNumber, textStyle, extrusion);
  }
  GiGeometryForwarder::shapeProc(matrix_.transform(position), matrix_.transform(direction),
                                 matrix_.transform(upVector), shapeNumber, textStyle);
}

void GiTransformStage::rasterImageProc(const OdGePoint3d& origin, const OdGeVector3d& u, const OdGeVector3d& v,
                                       const OdGiRasterImage* image, const OdGePoint2d* uvBoundary,
                                       uint32_t numBoundPts, bool transparency, double brightness, double contrast,
                                       double fade) {
  GiGeometryForwarder::rasterImageProc(matrix_.transform(origin), matrix_.transform(u), matrix_.transform(v), image,
                                       uvBoundary, numBoundPts, transparency, brightness, contrast, fade);
}

void GiTransformStage::metafileProc(const OdGePoint3d& origin, const OdGeVector3d& u, const OdGeVector3d& v,
                                    const OdGiMetafile* metafile, bool dcAligned, bool allowClipping) {
  GiGeometryForwarder::metafileProc(matrix_.transform(origin), matrix_.transform(u), matrix_.transform(v), metafile,
                                    dcAligned, allowClipping);
}

void GiTransformStage::polypointProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d* normals) {
  GiGeometryForwarder::polypointProc(numPoints, mapped(numPoints, vertexList), identity_ ? normals : nullptr);
}

void GiTransformStage::edgeProc(const std::vector<HatchEdge>& edges, const OdGeMatrix3d* transform) {
  OdGeMatrix3d combined = transform ? matrix_ * *transform : matrix_;
  GiGeometryForwarder::edgeProc(edges, &combined);
}

// Curves and faces: LINE, POINT, CIRCLE, ARC, ELLIPSE, LWPOLYLINE, POLYLINE with its VERTEX
// records and SEQEND, SPLINE, HELIX, XLINE, RAY, SOLID, TRACE, 3DFACE.
#include "kit/dxf/DxfWriterEntities.h"

void writeLine(DxfWriterContext& c, const LineEntity& e) {
  c.entityStart("LINE", e);
  c.out.raw(100, "AcDbLine");
  writeThickness(c, e.thickness);
  c.out.point(10, e.start);
  c.out.point(11, e.end);
  writeNormal(c, e.normal);
  c.entityEnd(e);
}

void writePoint(DxfWriterContext& c, const PointEntity& e) {
  c.entityStart("POINT", e);
  c.out.raw(100, "AcDbPoint");
  c.out.point(10, e.position);
  writeThickness(c, e.thickness);
  writeNormal(c, e.normal);
  if (e.xAxisAngle != 0.0) c.out.angle(50, e.xAxisAngle);
  c.entityEnd(e);
}

static void writeCircleGroups(DxfWriterContext& c, const OdGePoint3d& center, double radius, double thickness,
                              const OdGeVector3d& normal) {
  c.out.raw(100, "AcDbCircle");
  writeThickness(c, thickness);
  c.out.point(10, center);
  c.out.real(40, radius);
  writeNormal(c, normal);
}

void writeCircle(DxfWriterContext& c, const CircleEntity& e) {
  c.entityStart("CIRCLE", e);
  writeCircleGroups(c, e.center, e.radius, e.thickness, e.normal);
  c.entityEnd(e);
}

void writeArc(DxfWriterContext& c, const ArcEntity& e) {
  c.entityStart("ARC", e);
  writeCircleGroups(c, e.center, e.radius, e.thickness, e.normal);
  c.out.raw(100, "AcDbArc");
  c.out.angle(50, e.startAngle);
  c.out.angle(51, e.endAngle);
  c.entityEnd(e);
}

void writeEllipse(DxfWriterContext& c, const EllipseEntity& e) {
  c.entityStart("ELLIPSE", e);
  c.out.raw(100, "AcDbEllipse");
  c.out.point(10, e.center);
  c.out.point(11, e.majorAxis);
  c.out.point(210, e.normal);
  c.out.real(40, e.radiusRatio);
  c.out.real(41, e.startParam);
  c.out.real(42, e.endParam);
  c.entityEnd(e);
}

void writeLwPolyline(DxfWriterContext& c, const LwPolylineEntity& e) {
  c.entityStart("LWPOLYLINE", e);
  c.out.raw(100, "AcDbPolyline");
  c.out.integer(90, int64_t(e.points.size()));
  c.out.integer(70, e.flags);
  if (e.constantWidth != 0.0 || e.widths.empty()) c.out.real(43, e.constantWidth);
  if (e.elevation != 0.0) c.out.real(38, e.elevation);
  writeThickness(c, e.thickness);
  for (size_t i = 0; i < e.points.size(); ++i) {
    c.out.point(10, e.points[i]);
    if (i < e.widths.size()) {
      c.out.real(40, e.widths[i].x);
      c.out.real(41, e.widths[i].y);
    }
    if (i < e.bulges.size()) c.out.real(42, e.bulges[i]);
  }
  writeNormal(c, e.normal);
  c.entityEnd(e);
}

namespace {

const char* polylineSubclass(PolylineEntity::Kind kind) {
  switch (kind) {
    case PolylineEntity::Kind::k3d: return "AcDb3dPolyline";
    case PolylineEntity::Kind::kPolygonMesh: return "AcDbPolygonMesh";
    case PolylineEntity::Kind::kPolyfaceMesh: return "AcDbPolyFaceMesh";
    default: return "AcDb2dPolyline";
  }
}

const char* vertexSubclass(PolylineEntity::Kind kind, const PolylineVertex& v) {
  switch (kind) {
    case PolylineEntity::Kind::k3d: return "AcDb3dPolylineVertex";
    case PolylineEntity::Kind::kPolygonMesh: return "AcDbPolygonMeshVertex";
    case PolylineEntity::Kind::kPolyfaceMesh:
      return (v.flags & PolylineVertex::kMeshVertex) || !(v.flags & PolylineVertex::kPolyfaceFace)
                 ? "AcDbPolyFaceMeshVertex"
                 : nullptr;  // a face record: AcDbFaceRecord only
    default: return "AcDb2dVertex";
  }
}

// Vertices and sequence ends have no reactors or extended data of their own.
const DbObject kPlainObject(DbType::kUnknown);

void writeVertex(DxfWriterContext& c, const PolylineEntity& p, const PolylineVertex& v) {
  c.objectStart("VERTEX", kPlainObject, c.handles.vertex(v), p.handle);
  c.out.raw(100, "AcDbEntity");
  if (c.paperSpaceFlag(p)) c.out.integer(67, 1);
  c.out.text(8, recordName(p.layer, "0"));
  if (v.color.isByACI() || v.color.isByBlock()) c.out.integer(62, v.color.colorIndex());
  else if (v.color.isForeground()) c.out.integer(62, 257);
  else if (v.color.isByColor()) c.out.integer(420, int64_t(v.color.rgb()));
  c.out.raw(100, "AcDbVertex");
  PolylineEntity::Kind kind = p.kind();
  if (const char* sub = vertexSubclass(kind, v)) c.out.raw(100, sub);
  else c.out.raw(100, "AcDbFaceRecord");
  c.out.point(10, v.position);
  // Widths default to the polyline's (the reader fills them in that way).
  if (v.startWidth != p.defaultStartWidth) c.out.real(40, v.startWidth);
  if (v.endWidth != p.defaultEndWidth) c.out.real(41, v.endWidth);
  if (v.bulge != 0.0) c.out.real(42, v.bulge);
  c.out.integer(70, v.flags);
  if (v.tangent != 0.0) c.out.angle(50, v.tangent);
  for (int i = 0; i < 4; ++i) {
    if (v.faceIndices[i] != 0) c.out.integer(71 + i, v.faceIndices[i]);
  }
}

}  // namespace

void writePolyline(DxfWriterContext& c, const PolylineEntity& e) {
  c.entityStart("POLYLINE", e);
  c.out.raw(100, polylineSubclass(e.kind()));
  c.out.integer(66, 1);
  c.out.point(10, OdGePoint3d(0.0, 0.0, e.elevation));
  writeThickness(c, e.thickness);
  c.out.integer(70, e.flags);
  if (e.defaultStartWidth != 0.0) c.out.real(40, e.defaultStartWidth);
  if (e.defaultEndWidth != 0.0) c.out.real(41, e.defaultEndWidth);
  if (e.meshM != 0) c.out.integer(71, e.meshM);
  if (e.meshN != 0) c.out.integer(72, e.meshN);
  if (e.smoothM != 0) c.out.integer(73, e.smoothM);
  if (e.smoothN != 0) c.out.integer(74, e.smoothN);
  if (e.curveType != 0) c.out.integer(75, e.curveType);
  writeNormal(c, e.normal);
  c.entityEnd(e);
  for (const PolylineVertex& v : e.vertices) writeVertex(c, e, v);
  c.sequenceEnd(c.handles.polylineEnd(e), e);
}

// The AcDbSpline groups, shared by SPLINE and HELIX.
static void writeSplineGroups(DxfWriterContext& c, const SplineData& s, const OdGeVector3d* normal) {
  c.out.raw(100, "AcDbSpline");
  if (normal && ((s.flags & SplineData::kPlanar) || !(*normal == kDefaultNormal))) c.out.point(210, *normal);
  c.out.integer(70, s.flags);
  c.out.integer(71, s.degree);
  c.out.integer(72, int64_t(s.knots.size()));
  c.out.integer(73, int64_t(s.controlPoints.size()));
  c.out.integer(74, int64_t(s.fitPoints.size()));
  c.out.real(42, s.knotTolerance);
  c.out.real(43, s.controlTolerance);
  if (!s.fitPoints.empty() || s.fitTolerance != 1e-10) c.out.real(44, s.fitTolerance);
  if (!s.startTangent.isZeroLength(0.0)) c.out.point(12, s.startTangent);
  if (!s.endTangent.isZeroLength(0.0)) c.out.point(13, s.endTangent);
  for (double k : s.knots) c.out.real(40, k);
  for (double w : s.weights) c.out.real(41, w);
  for (const OdGePoint3d& p : s.controlPoints) c.out.point(10, p);
  for (const OdGePoint3d& p : s.fitPoints) c.out.point(11, p);
}

void writeSpline(DxfWriterContext& c, const SplineEntity& e) {
  c.entityStart("SPLINE", e);
  writeSplineGroups(c, e, &e.normal);
  c.entityEnd(e);
}

void writeHelix(DxfWriterContext& c, const HelixEntity& e) {
  c.entityStart("HELIX", e);
  writeSplineGroups(c, e, nullptr);
  c.out.raw(100, "AcDbHelix");
  c.out.integer(90, 29);  // the helix format's major and maintenance release
  c.out.integer(91, 63);
  c.out.point(10, e.axisBasePoint);
  c.out.point(11, e.startPoint);
  c.out.point(12, e.axisVector);
  c.out.real(40, e.radius);
  c.out.real(41, e.turns);
  c.out.real(42, e.turnHeight);
  c.out.boolean(290, e.rightHanded);
  c.out.integer(280, e.constraint);
  c.entityEnd(e);
}

void writeXLine(DxfWriterContext& c, const XLineEntity& e) {
  c.entityStart("XLINE", e);
  c.out.raw(100, "AcDbXline");
  c.out.point(10, e.basePoint);
  c.out.point(11, e.direction);
  c.entityEnd(e);
}

void writeRay(DxfWriterContext& c, const RayEntity& e) {
  c.entityStart("RAY", e);
  c.out.raw(100, "AcDbRay");
  c.out.point(10, e.basePoint);
  c.out.point(11, e.direction);
  c.entityEnd(e);
}

static void writeCorners(DxfWriterContext& c, const OdGePoint3d (&corners)[4]) {
  for (int i = 0; i < 4; ++i) c.out.point(10 + i, corners[i]);
}

void writeSolid(DxfWriterContext& c, const SolidEntity& e) {
  c.entityStart("SOLID", e);
  c.out.raw(100, "AcDbTrace");
  writeCorners(c, e.corners);
  writeThickness(c, e.thickness);
  writeNormal(c, e.normal);
  c.entityEnd(e);
}

void writeTrace(DxfWriterContext& c, const TraceEntity& e) {
  c.entityStart("TRACE", e);
  c.out.raw(100, "AcDbTrace");
  writeCorners(c, e.corners);
  writeThickness(c, e.thickness);
  writeNormal(c, e.normal);
  c.entityEnd(e);
}

void writeFace(DxfWriterContext& c, const FaceEntity& e) {
  c.entityStart("3DFACE", e);
  c.out.raw(100, "AcDbFace");
  writeCorners(c, e.corners);
  if (e.invisibleEdges != 0) c.out.integer(70, e.invisibleEdges);
  c.entityEnd(e);
}

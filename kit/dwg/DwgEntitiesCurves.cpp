// Curves and simple faces: LINE, POINT, CIRCLE, ARC, ELLIPSE, RAY, XLINE, SOLID, TRACE,
// 3DFACE, LWPOLYLINE, SPLINE and HELIX.
#include "kit/dwg/DwgEntityReaders.h"
#include "kit/dwg/DwgLoader.h"
#include "kit/dwg/DwgLwPolylineData.h"

void readDwgLine(DwgObjectContext& c) {
  auto* e = c.newEntity<LineEntity>();
  DwgBitReader& d = c.d;
  if (c.before(kDwgR2000)) {
    e->start = d.point3BD();
    e->end = d.point3BD();
  } else {
    bool zIsZero = d.B();
    e->start.x = d.RD();
    e->end.x = d.DD(e->start.x);
    e->start.y = d.RD();
    e->end.y = d.DD(e->start.y);
    if (!zIsZero) {
      e->start.z = d.RD();
      e->end.z = d.DD(e->start.z);
    }
  }
  e->thickness = c.s.thickness();
  e->normal = c.s.extrusion();
}

void readDwgPoint(DwgObjectContext& c) {
  auto* e = c.newEntity<PointEntity>();
  e->position = c.d.point3BD();
  e->thickness = c.s.thickness();
  e->normal = c.s.extrusion();
  e->xAxisAngle = c.d.BD();
}

void readDwgCircle(DwgObjectContext& c) {
  auto* e = c.newEntity<CircleEntity>();
  e->center = c.d.point3BD();
  e->radius = c.d.BD();
  e->thickness = c.s.thickness();
  e->normal = c.s.extrusion();
}

void readDwgArc(DwgObjectContext& c) {
  auto* e = c.newEntity<ArcEntity>();
  e->center = c.d.point3BD();
  e->radius = c.d.BD();
  e->thickness = c.s.thickness();
  e->normal = c.s.extrusion();
  e->startAngle = c.d.BD();
  e->endAngle = c.d.BD();
}

void readDwgEllipse(DwgObjectContext& c) {
  auto* e = c.newEntity<EllipseEntity>();
  e->center = c.d.point3BD();
  e->majorAxis = c.d.vector3BD();
  e->normal = c.d.vector3BD();
  e->radiusRatio = c.d.BD();
  e->startParam = c.d.BD();
  e->endParam = c.d.BD();
}

void readDwgRay(DwgObjectContext& c) {
  auto* e = c.newEntity<RayEntity>();
  e->basePoint = c.d.point3BD();
  e->direction = c.d.vector3BD();
}

void readDwgXLine(DwgObjectContext& c) {
  auto* e = c.newEntity<XLineEntity>();
  e->basePoint = c.d.point3BD();
  e->direction = c.d.vector3BD();
}

namespace {

template <class E>
void readCorners(DwgObjectContext& c, E* e) {
  e->thickness = c.s.thickness();
  double elevation = c.d.BD();
  for (OdGePoint3d& corner : e->corners) {
    OdGePoint2d p = c.d.point2RD();
    corner = {p.x, p.y, elevation};
  }
  e->normal = c.s.extrusion();
}

}  // namespace

void readDwgSolid(DwgObjectContext& c) { readCorners(c, c.newEntity<SolidEntity>()); }
void readDwgTrace(DwgObjectContext& c) { readCorners(c, c.newEntity<TraceEntity>()); }

void readDwgFace(DwgObjectContext& c) {
  auto* e = c.newEntity<FaceEntity>();
  DwgBitReader& d = c.d;
  if (c.before(kDwgR2000)) {
    for (OdGePoint3d& corner : e->corners) corner = d.point3BD();
    e->invisibleEdges = d.BS();
    return;
  }
  bool noFlags = d.B();
  bool zIsZero = d.B();
  e->corners[0].x = d.RD();
  e->corners[0].y = d.RD();
  e->corners[0].z = zIsZero ? 0.0 : d.RD();
  for (int i = 1; i < 4; ++i) e->corners[i] = d.point3DD(e->corners[i - 1]);
  if (!noFlags) e->invisibleEdges = d.BS();
}

void readDwgLwPolyline(DwgObjectContext& c) {
  readDwgLwPolylineData(c.d, c.version(), *c.newEntity<LwPolylineEntity>());
}

void readDwgSplineData(DwgObjectContext& c, SplineData& s) {
  DwgBitReader& d = c.d;
  int32_t scenario = d.BL();
  if (c.atLeast(kDwgR2013)) {
    int32_t splineFlags = d.BL();
    int32_t knotParameter = d.BL();
    if (splineFlags & 4) s.flags |= SplineData::kClosed;
    scenario = (knotParameter == 15 || !(splineFlags & 1)) ? 1 : 2;
  }
  s.degree = int16_t(d.BL());
  uint32_t fit = 0, knots = 0, control = 0;
  bool weighted = false;
  if (scenario == 2) {
    s.fitTolerance = d.BD();
    s.startTangent = d.vector3BD();
    s.endTangent = d.vector3BD();
    fit = uint32_t(d.BL());
  } else if (scenario == 1) {
    if (d.B()) s.flags |= SplineData::kRational;
    if (d.B()) s.flags |= SplineData::kClosed;
    if (d.B()) s.flags |= SplineData::kPeriodic;
    s.knotTolerance = d.BD();
    s.controlTolerance = d.BD();
    knots = uint32_t(d.BL());
    control = uint32_t(d.BL());
    weighted = d.B();
  } else {
    d.skip(d.bitsLeft() + 1);  // no other scenario exists
    return;
  }
  knots = c.boundedCount(knots, 2);
  s.knots.reserve(knots);
  for (uint32_t i = 0; i < knots; ++i) s.knots.push_back(d.BD());
  control = c.boundedCount(control, 6);
  s.controlPoints.reserve(control);
  for (uint32_t i = 0; i < control; ++i) {
    s.controlPoints.push_back(d.point3BD());
    if (weighted) s.weights.push_back(d.BD());
  }
  fit = c.boundedCount(fit, 6);
  s.fitPoints.reserve(fit);
  for (uint32_t i = 0; i < fit; ++i) s.fitPoints.push_back(d.point3BD());
}

void readDwgSpline(DwgObjectContext& c) {
  auto* e = c.newEntity<SplineEntity>();
  readDwgSplineData(c, *e);
}

void readDwgHelix(DwgObjectContext& c) {
  auto* e = c.newEntity<HelixEntity>();
  readDwgSplineData(c, *e);
  DwgBitReader& d = c.d;
  d.BS();  // major version
  d.BS();  // maintenance version
  e->axisBasePoint = d.point3BD();
  e->startPoint = d.point3BD();
  e->axisVector = d.vector3BD();
  e->radius = d.BD();
  e->turns = d.BD();
  e->turnHeight = d.BD();
  e->rightHanded = d.B();
  e->constraint = d.RC();
}

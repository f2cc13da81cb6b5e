// Lines, points, circles, arcs, ellipses, splines, helices, construction lines and rays.
#include <cmath>

#include "kit/gi/regen/RegenEntities.h"
#include "kit/gi/regen/RegenPrimitives.h"

namespace gi {

void regenLine(GiRegenContext& ctx, const LineEntity& e) { drawChain(ctx, {e.start, e.end}); }

namespace {

// The symbol PDMODE asks for around a point: 0 a dot, 1 nothing, 2 a cross, 3 an x, 4 a tick
// upwards; plus 32 a circle, plus 64 a square. PDSIZE > 0 is absolute, < 0 a percentage of the
// view's height, 0 five percent of it. Both are the host drawing's, points of external references
// included.
void drawPointSymbol(GiRegenContext& ctx, const PointEntity& e) {
  const DatabaseHeader& header = ctx.hostDatabase().header();
  int mode = header.pdMode;
  double size = header.pdSize;
  if (size <= 0.0) size = ctx.viewHeight() * (size < 0.0 ? -size : 5.0) / 100.0;
  OdGePoint3d p = e.position;
  int shape = mode & 7;
  if (shape == 0 || !(size > 0.0) || !std::isfinite(size)) {
    if (shape != 1) ctx.geometry().polylineProc(1, &p);
    if (!(size > 0.0) || !std::isfinite(size)) return;
  }
  OdGeMatrix3d plane = OdGeMatrix3d::planeToWorld(e.normal);
  OdGeVector3d x = plane.transform(OdGeVector3d(std::cos(-e.xAxisAngle), std::sin(-e.xAxisAngle), 0.0));
  OdGeVector3d y = e.normal.normal().crossProduct(x);
  double h = size / 2.0;
  auto line = [&](const OdGeVector3d& from, const OdGeVector3d& to) {
    OdGePoint3d pts[2] = {p + from, p + to};
    ctx.geometry().polylineProc(2, pts);
  };
  if (shape == 2) {
    line(x * -h, x * h);
    line(y * -h, y * h);
  } else if (shape == 3) {
    line((x + y) * -h, (x + y) * h);
    line((x - y) * -h, (x - y) * h);
  } else if (shape == 4) {
    line(OdGeVector3d(), y * h);
  }
  if (mode & 32) ctx.geometry().circleProc(p, h, e.normal.normal());
  if (mode & 64) {
    OdGePoint3d square[5] = {p + (x + y) * -h, p + (x - y) * h, p + (x + y) * h, p + (y - x) * h, p + (x + y) * -h};
    ctx.geometry().polylineProc(5, square);
  }
}

}  // namespace

void regenPoint(GiRegenContext& ctx, const PointEntity& e) { drawPointSymbol(ctx, e); }

void regenCircle(GiRegenContext& ctx, const CircleEntity& e) {
  OdGeMatrix3d plane = OdGeMatrix3d::planeToWorld(e.normal);
  drawCircle(ctx, plane.transform(e.center), e.radius, e.normal.isZeroLength() ? kDefaultNormal : e.normal.normal());
}

void regenArc(GiRegenContext& ctx, const ArcEntity& e) {
  OdGeMatrix3d plane = OdGeMatrix3d::planeToWorld(e.normal);
  OdGeVector3d normal = e.normal.isZeroLength() ? kDefaultNormal : e.normal.normal();
  double sweep = std::fmod(e.endAngle - e.startAngle, 2 * kPi);
  if (sweep <= 0.0) sweep += 2 * kPi;
  if (!std::isfinite(sweep)) return;
  OdGeVector3d start = plane.transform(OdGeVector3d(std::cos(e.startAngle), std::sin(e.startAngle), 0.0));
  drawArc(ctx, plane.transform(e.center), e.radius, normal, start, sweep);
}

void regenEllipse(GiRegenContext& ctx, const EllipseEntity& e) {
  double major = e.majorAxis.length();
  if (!(major > 0.0) || !std::isfinite(major)) return;
  OdGeVector3d normal = e.normal.isZeroLength() ? kDefaultNormal : e.normal.normal();
  OdGeVector3d x = e.majorAxis.normal();
  OdGeVector3d y = normal.crossProduct(x).normal();
  double start = e.startParam, end = e.endParam;
  if (!std::isfinite(start) || !std::isfinite(end)) return;
  bool full = std::fabs(end - start) >= 2 * kPi - 1e-9 || std::fabs(end - start) < 1e-12;
  if (full) {
    start = 0.0;
    end = 2 * kPi;
  } else {
    while (end <= start) end += 2 * kPi;
  }
  drawEllipse(ctx, OdGeEllipArc3d(e.center, x, y, major, major * std::fabs(e.radiusRatio), start, end));
}

void regenXLine(GiRegenContext& ctx, const XLineEntity& e) {
  if (e.direction.isZeroLength()) return;
  ctx.geometry().xlineProc(e.basePoint, e.basePoint + e.direction);
}

void regenRay(GiRegenContext& ctx, const RayEntity& e) {
  if (e.direction.isZeroLength()) return;
  ctx.geometry().rayProc(e.basePoint, e.basePoint + e.direction);
}

void regenSpline(GiRegenContext& ctx, const SplineData& s) {
  OdGeNurbCurve3d curve(s.degree, s.knots, s.controlPoints,
                        (s.flags & SplineData::kRational) ? s.weights : std::vector<double>());
  if (!curve.isValid() && s.fitPoints.size() >= 2) {
    bool closed = (s.flags & (SplineData::kClosed | SplineData::kPeriodic)) != 0;
    curve = OdGeNurbCurve3d::throughPoints(s.fitPoints, s.startTangent, s.endTangent, closed);
  }
  if (curve.isValid()) {
    drawNurbs(ctx, curve);
    return;
  }
  // Too little to make a curve of: the control points as a line, so that nothing is lost.
  const std::vector<OdGePoint3d>& pts = s.controlPoints.empty() ? s.fitPoints : s.controlPoints;
  if (!pts.empty()) drawChain(ctx, pts);
}

}  // namespace gi

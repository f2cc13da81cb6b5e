#include "kit/gi/regen/RegenPrimitives.h"

#include <cmath>

#include "kit/gi/GiClipping.h"
#include "kit/gi/GiTessellation.h"

namespace gi {

namespace {

// Dashes whose whole pattern spans fewer output units than this many deviations are drawn as a
// continuous line: they could not be told apart at the output's resolution.
constexpr double kMinPatternInDeviations = 40.0;

void emitPiece(GiRegenContext& ctx, const std::vector<OdGePoint3d>& piece, const OdGeVector3d* normal) {
  ctx.geometry().polylineProc(int32_t(piece.size()), piece.data(), normal);
}

}  // namespace

DashPattern currentDashes(GiRegenContext& ctx) {
  const OdGiSubEntityTraitsData& t = ctx.effectiveTraits();
  DashPattern pattern = dashPatternOf(t.lineType, t.lineTypeScale);
  if (!pattern.isDashed()) return {};
  double local = ctx.localDeviation();
  if (pattern.total < kMinPatternInDeviations * local) return {};
  return pattern;
}

void drawChain(GiRegenContext& ctx, const std::vector<OdGePoint3d>& points, const OdGeVector3d* normal) {
  if (points.empty()) return;
  DashPattern pattern = currentDashes(ctx);
  if (pattern.isDashed() && points.size() >= 2 &&
      dashChain(points, pattern, [&](const std::vector<OdGePoint3d>& piece) { emitPiece(ctx, piece, normal); })) {
    return;
  }
  ctx.geometry().polylineProc(int32_t(points.size()), points.data(), normal);
}

void drawArc(GiRegenContext& ctx, const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
             const OdGeVector3d& startVector, double sweep) {
  if (!std::isfinite(radius) || !std::isfinite(sweep) || !(radius > 0.0)) return;
  DashPattern pattern = currentDashes(ctx);
  std::vector<DashInterval> intervals;
  if (!pattern.isDashed() || !dashIntervals(std::fabs(sweep) * radius, pattern, intervals)) {
    ctx.geometry().circularArcProc(center, radius, normal, startVector, sweep);
    return;
  }
  OdGeVector3d n = normal.normal();
  OdGeVector3d x = startVector.normal();
  OdGeVector3d y = n.crossProduct(x);
  double sign = sweep < 0 ? -1.0 : 1.0;
  for (const DashInterval& d : intervals) {
    double a0 = sign * d.from / radius;
    OdGeVector3d start = x * std::cos(a0) + y * std::sin(a0);
    if (d.to > d.from) {
      ctx.geometry().circularArcProc(center, radius, n, start, sign * (d.to - d.from) / radius);
    } else {
      OdGePoint3d dot = center + start * radius;
      ctx.geometry().polylineProc(1, &dot);
    }
  }
}

void drawCircle(GiRegenContext& ctx, const OdGePoint3d& center, double radius, const OdGeVector3d& normal) {
  if (!(radius > 0.0) || !std::isfinite(radius)) return;
  if (!currentDashes(ctx).isDashed()) {
    ctx.geometry().circleProc(center, radius, normal);
    return;
  }
  drawArc(ctx, center, radius, normal, arbitraryAxisX(normal.normal()), 2 * kPi);
}

void drawEllipse(GiRegenContext& ctx, const OdGeEllipArc3d& arc) {
  if (!currentDashes(ctx).isDashed()) {
    ctx.geometry().ellipArcProc(arc);
    return;
  }
  std::vector<OdGePoint3d> points;
  tessellateEllipse(arc, ctx.localDeviation(), points);
  drawChain(ctx, points);
}

void drawNurbs(GiRegenContext& ctx, const OdGeNurbCurve3d& curve) {
  if (!currentDashes(ctx).isDashed()) {
    ctx.geometry().nurbsProc(curve);
    return;
  }
  std::vector<OdGePoint3d> points;
  tessellateNurbs(curve, ctx.localDeviation(), points);
  drawChain(ctx, points);
}

void drawPline(GiRegenContext& ctx, const OdGiPolyline& polyline, bool continuousPattern) {
  if (polyline.points.empty()) return;
  if (!currentDashes(ctx).isDashed() || polyline.hasVertexWidths()) {
    ctx.geometry().plineProc(polyline);
    return;
  }
  OdGeMatrix3d plane = OdGeMatrix3d::planeToWorld(polyline.normal);
  OdGeVector3d normal = polyline.normal.normal();
  double deviation = ctx.localDeviation();
  auto toBlock = [&](const OdGePoint2d& p) { return plane.transform(OdGePoint3d(p.x, p.y, polyline.elevation)); };
  std::vector<OdGePoint3d> chain;
  std::vector<OdGePoint2d> flat;
  const size_t n = polyline.points.size();
  for (size_t s = 0; s < polyline.numSegments(); ++s) {
    flat.assign(1, polyline.points[s]);
    tessellateBulge(polyline.points[s], polyline.points[(s + 1) % n], polyline.bulgeAt(s), deviation, flat);
    if (!continuousPattern) chain.clear();
    for (size_t k = (continuousPattern && !chain.empty()) ? 1 : 0; k < flat.size(); ++k) chain.push_back(toBlock(flat[k]));
    if (!continuousPattern) drawChain(ctx, chain, &normal);
  }
  if (continuousPattern) drawChain(ctx, chain, &normal);
  if (polyline.numSegments() == 0) {
    OdGePoint3d p = toBlock(polyline.points[0]);
    ctx.geometry().polylineProc(1, &p, &normal);
  }
}

void drawFilledPolygon(GiRegenContext& ctx, const std::vector<OdGePoint3d>& points, const OdGeVector3d* normal) {
  if (points.size() < 3) {
    if (!points.empty()) ctx.geometry().polylineProc(int32_t(points.size()), points.data(), normal);
    return;
  }
  OdGiFillType before = ctx.effectiveTraits().fillType;
  ctx.traits().setFillType(kOdGiFillAlways);
  ctx.geometry().polygonProc(int32_t(points.size()), points.data(), normal);
  ctx.traits().setFillType(before);
}

}  // namespace gi

#include "kit/gi/GiTessellation.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "kit/db/Entities.h"

namespace gi {

int arcSegmentCount(double radius, double sweep, double deviation) {
  double fraction = std::min(std::fabs(sweep) / (2 * kPi), 1.0);
  if (!std::isfinite(fraction) || fraction <= 0.0) return 1;
  int minimum = std::max(1, int(std::ceil(8 * fraction)));
  if (!(radius > 0.0) || !std::isfinite(radius) || !(deviation > 0.0)) return minimum;
  if (deviation >= radius) return minimum;
  double step = 2.0 * std::acos(1.0 - deviation / radius);
  double count = std::ceil(std::fabs(sweep) / step);
  double maximum = std::max(double(minimum), std::ceil(kMaxSegmentsPerCircle * fraction));
  return int(std::clamp(count, double(minimum), maximum));
}

void tessellateArc(const OdGePoint3d& center, double radius, const OdGeVector3d& xAxis, const OdGeVector3d& yAxis,
                   double sweep, double deviation, std::vector<OdGePoint3d>& out, bool includeStart) {
  int n = arcSegmentCount(radius, sweep, deviation);
  for (int i = includeStart ? 0 : 1; i <= n; ++i) {
    double t = sweep * i / n;
    out.push_back(center + xAxis * (radius * std::cos(t)) + yAxis * (radius * std::sin(t)));
  }
}

void tessellateEllipse(const OdGeEllipArc3d& arc, double deviation, std::vector<OdGePoint3d>& out,
                       bool includeStart) {
  double sweep = arc.endAng() - arc.startAng();
  if (!std::isfinite(sweep)) return;
  sweep = std::clamp(sweep, -2 * kPi, 2 * kPi);
  // Steps sized for the major radius are conservative: the chord error of a parameter step never
  // exceeds that of the circle of the major radius.
  int n = arcSegmentCount(std::max(arc.majorRadius(), arc.minorRadius()), sweep, deviation);
  for (int i = includeStart ? 0 : 1; i <= n; ++i) out.push_back(arc.evalPoint(arc.startAng() + sweep * i / n));
}

namespace {

double distanceToChord(const OdGePoint3d& p, const OdGePoint3d& a, const OdGePoint3d& b) {
  OdGeVector3d ab = b - a;
  double len2 = ab.dotProduct(ab);
  if (len2 <= 0.0) return p.distanceTo(a);
  double t = std::clamp((p - a).dotProduct(ab) / len2, 0.0, 1.0);
  return p.distanceTo(a + ab * t);
}

// Splits [t0, t1] until the curve's midpoints lie within the deviation of the chords.
void subdivide(const std::function<OdGePoint3d(double)>& f, double t0, const OdGePoint3d& p0, double t1,
               const OdGePoint3d& p1, double deviation, int depth, std::vector<OdGePoint3d>& out) {
  double tm = 0.5 * (t0 + t1);
  OdGePoint3d pm = f(tm);
  bool flat = distanceToChord(pm, p0, p1) <= deviation &&
              distanceToChord(f(0.5 * (t0 + tm)), p0, pm) <= deviation &&
              distanceToChord(f(0.5 * (tm + t1)), pm, p1) <= deviation;
  if (flat || depth >= 12 || out.size() >= kMaxCurvePoints) {
    out.push_back(p1);
    return;
  }
  subdivide(f, t0, p0, tm, pm, deviation, depth + 1, out);
  subdivide(f, tm, pm, t1, p1, deviation, depth + 1, out);
}

}  // namespace

void tessellateNurbs(const OdGeNurbCurve3d& curve, double deviation, std::vector<OdGePoint3d>& out) {
  if (!curve.isValid()) {
    out.insert(out.end(), curve.controlPoints().begin(), curve.controlPoints().end());
    return;
  }
  auto f = [&curve](double t) { return curve.evalPoint(t); };
  const std::vector<double>& knots = curve.knots();
  size_t first = size_t(curve.degree()), last = curve.controlPoints().size();
  if (!(deviation > 0.0)) deviation = 1e-6;
  out.push_back(f(knots[first]));
  for (size_t k = first; k < last && out.size() < kMaxCurvePoints; ++k) {
    double a = knots[k], b = knots[k + 1];
    if (!(b > a)) continue;
    // A few pieces per span first, so that a span whose midpoint happens to lie on its chord
    // (an S-shape) is still split.
    const int pieces = curve.degree() + 1;
    for (int i = 0; i < pieces; ++i) {
      double t0 = a + (b - a) * i / pieces, t1 = a + (b - a) * (i + 1) / pieces;
      subdivide(f, t0, out.back(), t1, f(t1), deviation, 0, out);
    }
  }
}

bool bulgeArc(const OdGePoint2d& p0, const OdGePoint2d& p1, double bulge, OdGePoint2d& center, double& radius,
              double& startAngle, double& sweep) {
  double chord = p0.distanceTo(p1);
  if (std::fabs(bulge) < 1e-10 || !(chord > 0.0) || !std::isfinite(bulge)) return false;
  sweep = 4.0 * std::atan(bulge);
  radius = chord * (1.0 + bulge * bulge) / (4.0 * std::fabs(bulge));
  // Centre: from the chord midpoint along the chord's normal, by the sagitta's complement.
  OdGePoint2d mid((p0.x + p1.x) / 2, (p0.y + p1.y) / 2);
  OdGeVector2d dir((p1.x - p0.x) / chord, (p1.y - p0.y) / chord);
  OdGeVector2d left(-dir.y, dir.x);
  double toCenter = radius - std::fabs(bulge) * chord / 2.0;
  center = mid + left * (bulge > 0 ? toCenter : -toCenter);
  startAngle = std::atan2(p0.y - center.y, p0.x - center.x);
  return std::isfinite(radius);
}

void tessellateBulge(const OdGePoint2d& p0, const OdGePoint2d& p1, double bulge, double deviation,
                     std::vector<OdGePoint2d>& out) {
  OdGePoint2d c;
  double r, a0, sweep;
  if (!bulgeArc(p0, p1, bulge, c, r, a0, sweep)) {
    out.push_back(p1);
    return;
  }
  int n = arcSegmentCount(r, sweep, deviation);
  for (int i = 1; i < n; ++i) {
    double t = a0 + sweep * i / n;
    out.emplace_back(c.x + r * std::cos(t), c.y + r * std::sin(t));
  }
  out.push_back(p1);  // exactly the vertex, so that joints stay closed
}

namespace {

void appendPoint(std::vector<OdGePoint2d>& out, const OdGePoint2d& p) {
  if (out.empty() || !(out.back() == p)) out.push_back(p);
}

void tessellateEdge(const HatchEdge& edge, double deviation, std::vector<OdGePoint2d>& out) {
  switch (edge.type) {
    case HatchEdge::kLine:
      appendPoint(out, edge.start);
      appendPoint(out, edge.end);
      break;
    case HatchEdge::kCircularArc: {
      double a0 = edge.startAngle, a1 = edge.endAngle;
      // Edge arcs are stored counter-clockwise; clockwise ones have their angles mirrored.
      if (!edge.counterClockwise) {
        a0 = -a0;
        a1 = -a1;
      }
      double sweep = edge.counterClockwise ? a1 - a0 : a0 - a1;
      while (sweep <= 0.0) sweep += 2 * kPi;
      if (sweep > 2 * kPi) sweep = 2 * kPi;
      double dir = edge.counterClockwise ? 1.0 : -1.0;
      int n = arcSegmentCount(edge.radius, sweep, deviation);
      for (int i = 0; i <= n; ++i) {
        double t = a0 + dir * sweep * i / n;
        appendPoint(out, {edge.start.x + edge.radius * std::cos(t), edge.start.y + edge.radius * std::sin(t)});
      }
      break;
    }
    case HatchEdge::kEllipticArc: {
      OdGeVector3d major(edge.end.x, edge.end.y, 0.0);
      double a = major.length();
      if (!(a > 0.0)) break;
      OdGeVector3d minorDir = OdGeVector3d::kZAxis().crossProduct(major).normal();
      double a0 = edge.startAngle, a1 = edge.endAngle;
      if (!edge.counterClockwise) {
        a0 = -a0;
        a1 = -a1;
      }
      double sweep = edge.counterClockwise ? a1 - a0 : a0 - a1;
      while (sweep <= 0.0) sweep += 2 * kPi;
      if (sweep > 2 * kPi) sweep = 2 * kPi;
      double dir = edge.counterClockwise ? 1.0 : -1.0;
      OdGeEllipArc3d arc(OdGePoint3d(edge.start.x, edge.start.y, 0.0), major, minorDir * dir, a, a * edge.radius,
                         dir * a0, dir * a0 + sweep);
      std::vector<OdGePoint3d> pts;
      tessellateEllipse(arc, deviation, pts);
      for (const OdGePoint3d& p : pts) appendPoint(out, p.to2d());
      break;
    }
    case HatchEdge::kSpline: {
      if (!edge.spline) break;
      const HatchSplineEdge& s = *edge.spline;
      std::vector<OdGePoint3d> cps, pts;
      for (const OdGePoint2d& p : s.controlPoints) cps.emplace_back(p.x, p.y, 0.0);
      OdGeNurbCurve3d curve(s.degree, s.knots, cps, s.rational ? s.weights : std::vector<double>());
      if (!curve.isValid() && s.fitPoints.size() >= 2) {
        std::vector<OdGePoint3d> fit;
        for (const OdGePoint2d& p : s.fitPoints) fit.emplace_back(p.x, p.y, 0.0);
        curve = OdGeNurbCurve3d::throughPoints(fit, {s.startTangent.x, s.startTangent.y, 0.0},
                                               {s.endTangent.x, s.endTangent.y, 0.0}, false);
      }
      tessellateNurbs(curve, deviation, pts);
      for (const OdGePoint3d& p : pts) appendPoint(out, p.to2d());
      break;
    }
  }
}

}  // namespace

void tessellateEdges(const std::vector<HatchEdge>& edges, double deviation, std::vector<OdGePoint2d>& out) {
  for (const HatchEdge& edge : edges) {
    if (out.size() >= kMaxCurvePoints) break;
    tessellateEdge(edge, deviation, out);
  }
}

}  // namespace gi

#include "kit/gi/acis/AcisCurves.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "kit/gi/acis/AcisSplines.h"

std::vector<double> acisNumbers(const AcisModel& model, const AcisRecord& record) {
  std::vector<double> numbers;
  for (size_t i = model.firstValue(record); i < record.values.size(); ++i) {
    const AcisValue& v = record.values[i];
    if (v.isNumber()) numbers.push_back(v.number);
    if (v.kind != AcisValue::Kind::kString) continue;
    const char* at = v.text.data();
    const char* end = at + v.text.size();
    while (at < end) {
      while (at < end && *at == ' ') ++at;
      double x = 0.0;
      auto [next, ec] = std::from_chars(at, end, x);
      if (ec != std::errc()) break;
      numbers.push_back(x);
      at = next;
    }
  }
  return numbers;
}

namespace {

OdGePoint3d pointAt(const std::vector<double>& n, size_t i) { return {n[i], n[i + 1], n[i + 2]}; }
OdGeVector3d vectorAt(const std::vector<double>& n, size_t i) { return {n[i], n[i + 1], n[i + 2]}; }

bool finite(const std::vector<double>& numbers) {
  for (double x : numbers) {
    if (!std::isfinite(x)) return false;
  }
  return true;
}

// "centre normal majorAxis ratio": the arc from the edge's first vertex to its last, in the
// direction the edge runs along the ellipse.
bool ellipseArc(const AcisModel& model, const AcisRecord& curve, const AcisEdgeEnds& ends, OdGeEllipArc3d& arc) {
  std::vector<double> n = acisNumbers(model, curve);
  if (n.size() < 10 || !finite(n)) return false;
  OdGePoint3d center = pointAt(n, 0);
  OdGeVector3d normal = vectorAt(n, 3);
  OdGeVector3d major = vectorAt(n, 6);
  double majorRadius = major.length();
  double minorRadius = majorRadius * std::fabs(n[9]);
  if (!(majorRadius > 0.0) || !(minorRadius > 0.0) || normal.isZeroLength()) return false;
  OdGeVector3d x = major * (1.0 / majorRadius);
  OdGeVector3d y = normal.normal().crossProduct(x);
  if (y.isZeroLength()) return false;
  y = y.normal();
  auto paramOf = [&](const OdGePoint3d& p) {
    OdGeVector3d d = p - center;
    return angleOf(d.dotProduct(x) / majorRadius, d.dotProduct(y) / minorRadius);
  };
  double start = 0.0, end = 2 * kPi;
  if (!ends.closed) {
    start = paramOf(ends.reversed ? ends.end : ends.start);
    end = paramOf(ends.reversed ? ends.start : ends.end);
    if (end <= start) end += 2 * kPi;
  }
  arc = OdGeEllipArc3d(center, x, y, majorRadius, minorRadius, start, end);
  return true;
}

// The spline parameter nearest to a point, by sampling.
double nearestParam(const OdGeNurbCurve3d& curve, const OdGePoint3d& p) {
  constexpr int kSamples = 256;
  double from = curve.startParam(), to = curve.endParam();
  double best = from, bestDistance = HUGE_VAL;
  for (int i = 0; i <= kSamples; ++i) {
    double t = from + (to - from) * i / kSamples;
    double d = curve.evalPoint(t).distanceTo(p);
    if (d < bestDistance) {
      bestDistance = d;
      best = t;
    }
  }
  return best;
}

bool landsOnVertices(const OdGeNurbCurve3d& curve, double s, double e, const AcisEdgeEnds& ends) {
  double size = std::max({std::fabs(ends.start.x), std::fabs(ends.start.y), std::fabs(ends.start.z), 1.0});
  double tolerance = 1e-6 * size;
  OdGePoint3d p = curve.evalPoint(s), q = curve.evalPoint(e);
  auto near = [&](const OdGePoint3d& u, const OdGePoint3d& v) { return u.distanceTo(v) <= tolerance; };
  return (near(p, ends.start) && near(q, ends.end)) || (near(p, ends.end) && near(q, ends.start));
}

// The spline over the edge's range: whole when the edge spans it, otherwise as points along it.
void splinePiece(const OdGeNurbCurve3d& curve, bool curveReversed, const AcisEdgeEnds& ends, AcisEdgeShape& shape) {
  double from = curve.startParam(), to = curve.endParam();
  double span = to - from;
  double a = from, b = to;
  if (!ends.closed) {
    // The stored range, turned into the spline's own parameters, when it lands on the vertices;
    // otherwise the parameters nearest to the vertices.
    bool ranged = false;
    if (ends.hasRange) {
      double s = ends.reversed ? -ends.endParam : ends.startParam;
      double e = ends.reversed ? -ends.startParam : ends.endParam;
      if (curveReversed) {
        double t = s;
        s = -e;
        e = -t;
      }
      ranged = landsOnVertices(curve, s, e, ends);
      a = s;
      b = e;
    }
    if (!ranged) {
      a = nearestParam(curve, ends.start);
      b = nearestParam(curve, ends.end);
    }
    if (a > b) std::swap(a, b);
  }
  if (a <= from + 1e-9 * span && b >= to - 1e-9 * span) {
    shape.kind = AcisEdgeShape::Kind::kSpline;
    shape.spline = curve;
    return;
  }
  shape.kind = AcisEdgeShape::Kind::kPolyline;
  size_t steps = std::clamp<size_t>(curve.controlPoints().size() * 8, 16, 512);
  for (size_t i = 0; i <= steps; ++i) shape.points.push_back(curve.evalPoint(a + (b - a) * double(i) / double(steps)));
}

}  // namespace

AcisCurveFit acisEdgeShape(const AcisModel& model, const AcisRecord* curve, const AcisEdgeEnds& ends,
                           AcisEdgeShape& shape) {
  shape = AcisEdgeShape();
  shape.points = {ends.start, ends.end};
  if (!curve) return AcisCurveFit::kChord;
  if (curve->name == "straight-curve") return AcisCurveFit::kExact;
  if (curve->name == "ellipse-curve") {
    if (!ellipseArc(model, *curve, ends, shape.arc)) return AcisCurveFit::kChord;
    shape.kind = AcisEdgeShape::Kind::kArc;
    shape.points.clear();
    return AcisCurveFit::kExact;
  }
  if (curve->name == "intcurve-curve") {
    AcisSpline spline;
    if (!readAcisSpline(model, *curve, spline)) return AcisCurveFit::kChord;
    if (!spline.curve.isValid()) {
      shape.kind = AcisEdgeShape::Kind::kPolyline;
      shape.points = spline.controlPoints;
      return AcisCurveFit::kApprox;
    }
    shape.points.clear();
    splinePiece(spline.curve, spline.reversed, ends, shape);
    return AcisCurveFit::kExact;
  }
  return AcisCurveFit::kChord;
}

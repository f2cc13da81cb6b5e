// Splines given by fit points (as files keep splines drawn through points): the cubic AutoCAD
// makes of them, found again. It passes through every fit point at parameters spaced by the
// chords between them, is twice continuously differentiable, and at each end either leaves with
// the given tangent at unit speed or bends no more (its second derivative is zero). Closed
// splines are joined piecewise instead, with tangents from the neighbouring points.
#include <algorithm>
#include <array>
#include <cmath>

#include "kit/gi/GiCurves.h"

namespace {

// One B-spline basis function of degree p and its first two derivatives at u, straight from
// the recursion (only degree 3 and a few evaluations per fit point are needed).
class Basis {
public:
  explicit Basis(const std::vector<double>& knots) : u_(knots) {}

  double value(size_t i, int p, double t) const {
    if (p == 0) return inSpan(i, t) ? 1.0 : 0.0;
    return left(i, p) * (t - u_[i]) * value(i, p - 1, t) + right(i, p) * (u_[i + p + 1] - t) * value(i + 1, p - 1, t);
  }
  double derivative(size_t i, int p, double t, int order) const {
    if (order == 0) return value(i, p, t);
    return p * (left(i, p) * derivative(i, p - 1, t, order - 1) - right(i, p) * derivative(i + 1, p - 1, t, order - 1));
  }

private:
  // 1 / (knot difference), 0 where the knots coincide.
  double left(size_t i, int p) const { return u_[i + p] > u_[i] ? 1.0 / (u_[i + p] - u_[i]) : 0.0; }
  double right(size_t i, int p) const { return u_[i + p + 1] > u_[i + 1] ? 1.0 / (u_[i + p + 1] - u_[i + 1]) : 0.0; }
  // Half-open spans, the last one closed at the end of the curve.
  bool inSpan(size_t i, double t) const {
    if (!(u_[i] < u_[i + 1])) return false;
    return (u_[i] <= t && t < u_[i + 1]) || (t == u_.back() && u_[i + 1] == u_.back());
  }

  const std::vector<double>& u_;
};

// A banded system (each row's unknowns within two of its own index), solved in place.
class BandSystem {
public:
  explicit BandSystem(size_t n) : a_(n), b_(n) {}
  void set(size_t row, size_t column, double value) { a_[row][column + kHalf - row] = value; }
  void rhs(size_t row, const OdGePoint3d& value) { b_[row] = value.asVector(); }

  bool solve(std::vector<OdGePoint3d>& x) {
    const size_t n = a_.size();
    for (size_t c = 0; c < n; ++c) {
      double pivot = a_[c][kHalf];
      if (!(std::fabs(pivot) > 1e-300)) return false;
      for (size_t r = c + 1; r < std::min(n, c + kHalf + 1); ++r) {
        double f = at(r, c) / pivot;
        if (f == 0.0) continue;
        for (size_t k = c; k < std::min(n, c + kHalf + 1); ++k) a_[r][k + kHalf - r] -= f * at(c, k);
        b_[r] = b_[r] - b_[c] * f;
      }
    }
    x.assign(n, OdGePoint3d());
    for (size_t r = n; r-- > 0;) {
      OdGeVector3d sum = b_[r];
      for (size_t k = r + 1; k < std::min(n, r + kHalf + 1); ++k) sum = sum - x[k].asVector() * at(r, k);
      OdGeVector3d v = sum * (1.0 / a_[r][kHalf]);
      x[r] = OdGePoint3d(v.x, v.y, v.z);
    }
    return true;
  }

private:
  static constexpr size_t kHalf = 2;
  double at(size_t row, size_t column) const { return a_[row][column + kHalf - row]; }
  std::vector<std::array<double, 2 * kHalf + 1>> a_;
  std::vector<OdGeVector3d> b_;
};

// Piecewise cubic through closed fit points, with tangents from each point's neighbours.
OdGeNurbCurve3d closedThroughPoints(const std::vector<OdGePoint3d>& pts) {
  const size_t count = pts.size();
  std::vector<double> h(count - 1);
  for (size_t i = 0; i + 1 < count; ++i) h[i] = std::max(pts[i].distanceTo(pts[i + 1]), 1e-12);
  std::vector<OdGeVector3d> d(count);
  for (size_t i = 1; i + 1 < count; ++i) d[i] = (pts[i + 1] - pts[i - 1]) * (1.0 / (h[i - 1] + h[i]));
  d[0] = d[count - 1] = (pts[1] - pts[count - 2]) * (1.0 / (h[0] + h[count - 2]));
  std::vector<OdGePoint3d> cps{pts[0]};
  std::vector<double> knots = {0.0, 0.0, 0.0, 0.0};
  double u = 0.0;
  for (size_t i = 0; i + 1 < count; ++i) {
    cps.push_back(pts[i] + d[i] * (h[i] / 3.0));
    cps.push_back(pts[i + 1] - d[i + 1] * (h[i] / 3.0));
    cps.push_back(pts[i + 1]);
    u += h[i];
    for (int k = (i + 2 == count) ? 4 : 3; k > 0; --k) knots.push_back(u);
  }
  return OdGeNurbCurve3d(3, std::move(knots), std::move(cps));
}

}  // namespace

OdGeNurbCurve3d OdGeNurbCurve3d::throughPoints(const std::vector<OdGePoint3d>& fitPoints,
                                               const OdGeVector3d& startTangent, const OdGeVector3d& endTangent,
                                               bool closed) {
  std::vector<OdGePoint3d> pts;
  for (const OdGePoint3d& p : fitPoints) {
    if (pts.empty() || p.distanceTo(pts.back()) > 1e-12) pts.push_back(p);
  }
  if (closed && pts.size() > 2 && pts.front().distanceTo(pts.back()) > 1e-12) pts.push_back(pts.front());
  if (pts.size() < 2) return {};
  if (pts.size() == 2 && startTangent.isZeroLength() && endTangent.isZeroLength()) {
    return OdGeNurbCurve3d(1, {0.0, 0.0, 1.0, 1.0}, pts);
  }
  if (closed) return closedThroughPoints(pts);

  // Parameters: the fit points' distances along the chords; they are the inner knots.
  const size_t n = pts.size();
  std::vector<double> params{0.0};
  for (size_t i = 1; i < n; ++i) params.push_back(params.back() + std::max(pts[i].distanceTo(pts[i - 1]), 1e-12));
  std::vector<double> knots(4, 0.0);
  knots.insert(knots.end(), params.begin() + 1, params.end() - 1);
  knots.insert(knots.end(), 4, params.back());

  // Unknowns: n + 2 control points. Rows: the first point, the start condition, the inner fit
  // points, the end condition, the last point.
  const size_t unknowns = n + 2;
  Basis basis(knots);
  BandSystem system(unknowns);
  auto condition = [&](size_t row, size_t first, double t, const OdGeVector3d& tangent) {
    int order = tangent.isZeroLength() ? 2 : 1;
    for (size_t k = first; k < first + 3; ++k) system.set(row, k, basis.derivative(k, 3, t, order));
    OdGeVector3d wanted = tangent.isZeroLength() ? OdGeVector3d() : tangent.normal();
    system.rhs(row, OdGePoint3d(wanted.x, wanted.y, wanted.z));
  };
  system.set(0, 0, 1.0);
  system.rhs(0, pts[0]);
  condition(1, 0, params[0], startTangent);
  for (size_t i = 1; i + 1 < n; ++i) {
    for (size_t k = i; k < i + 3; ++k) system.set(i + 1, k, basis.value(k, 3, params[i]));
    system.rhs(i + 1, pts[i]);
  }
  condition(n, n - 1, params.back(), endTangent);
  system.set(n + 1, n + 1, 1.0);
  system.rhs(n + 1, pts.back());
  std::vector<OdGePoint3d> cps;
  if (!system.solve(cps)) return closedThroughPoints(pts);  // degenerate: fall back to pieces
  return OdGeNurbCurve3d(3, std::move(knots), std::move(cps));
}

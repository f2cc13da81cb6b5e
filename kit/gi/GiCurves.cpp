#include "kit/gi/GiCurves.h"

#include <algorithm>
#include <cmath>

double angleOf(double x, double y) {
  double a = std::atan2(y, x);
  if (a < 0.0) a += 2 * kPi;
  if (a >= 2 * kPi) a = 0.0;
  return a;
}

// ---- Elliptical arcs ---------------------------------------------------------------------------

OdGeEllipArc3d::OdGeEllipArc3d(const OdGePoint3d& center, const OdGeVector3d& majorAxis,
                               const OdGeVector3d& minorAxis, double majorRadius, double minorRadius,
                               double startAngle, double endAngle)
    : center_(center), major_(majorAxis.normal()), minor_(minorAxis.normal()), majorRadius_(majorRadius),
      minorRadius_(minorRadius), start_(startAngle), end_(endAngle) {}

bool OdGeEllipArc3d::isCircular(double tol) const {
  double r = std::max(std::fabs(majorRadius_), std::fabs(minorRadius_));
  return std::fabs(majorRadius_ - minorRadius_) <= tol * std::max(r, 1.0);
}

OdGePoint3d OdGeEllipArc3d::evalPoint(double t) const {
  return center_ + major_ * (majorRadius_ * std::cos(t)) + minor_ * (minorRadius_ * std::sin(t));
}

namespace {

// Any unit vector perpendicular to v.
OdGeVector3d perpendicularTo(const OdGeVector3d& v) {
  OdGeVector3d n = v.normal();
  OdGeVector3d ref = std::fabs(n.z) < 0.9 ? OdGeVector3d::kZAxis() : OdGeVector3d::kXAxis();
  return ref.crossProduct(n).normal();
}

}  // namespace

OdGeEllipArc3d OdGeEllipArc3d::transformedBy(const OdGeMatrix3d& m) const {
  OdGeVector3d a = m.transform(major_ * majorRadius_);
  OdGeVector3d b = m.transform(minor_ * minorRadius_);
  // Conjugate diameters a, b become the principal axes at parameter shift t0.
  double t0 = 0.5 * std::atan2(2.0 * a.dotProduct(b), a.dotProduct(a) - b.dotProduct(b));
  OdGeVector3d u = a * std::cos(t0) + b * std::sin(t0);
  OdGeVector3d w = a * -std::sin(t0) + b * std::cos(t0);
  double shift = t0;
  if (w.length() > u.length()) {
    OdGeVector3d major = w;
    w = -u;
    u = major;
    shift += kPi / 2;
  }
  OdGeEllipArc3d result;
  result.center_ = m.transform(center_);
  double ru = u.length(), rw = w.length();
  result.major_ = ru > 0.0 ? u * (1.0 / ru) : OdGeVector3d::kXAxis();
  result.minor_ = rw > 1e-300 ? w * (1.0 / rw) : perpendicularTo(result.major_);
  result.majorRadius_ = ru;
  result.minorRadius_ = rw;
  result.start_ = start_ - shift;
  result.end_ = end_ - shift;
  return result;
}

// ---- NURBS curves ------------------------------------------------------------------------------

OdGeNurbCurve3d::OdGeNurbCurve3d(int degree, std::vector<double> knots, std::vector<OdGePoint3d> controlPoints,
                                 std::vector<double> weights)
    : degree_(degree), knots_(std::move(knots)), controlPoints_(std::move(controlPoints)), weights_(std::move(weights)) {
  validate();
}

void OdGeNurbCurve3d::validate() {
  valid_ = false;
  size_t n = controlPoints_.size();
  if (degree_ < 1 || degree_ > 25 || n < size_t(degree_) + 1) return;
  for (const OdGePoint3d& p : controlPoints_) {
    if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z)) return;
  }
  if (!weights_.empty()) {
    bool usable = weights_.size() == n;
    for (double w : weights_) usable = usable && std::isfinite(w) && w > 0.0;
    bool allOne = std::all_of(weights_.begin(), weights_.end(), [](double w) { return w == 1.0; });
    if (!usable || allOne) weights_.clear();
  }
  bool knotsUsable = knots_.size() == n + size_t(degree_) + 1;
  for (size_t i = 0; knotsUsable && i < knots_.size(); ++i) {
    knotsUsable = std::isfinite(knots_[i]) && (i == 0 || knots_[i] >= knots_[i - 1]);
  }
  if (knotsUsable) knotsUsable = knots_[n] > knots_[size_t(degree_)];
  if (!knotsUsable) {
    // A clamped uniform knot vector keeps the curve usable when the file's knots are not.
    knots_.assign(n + size_t(degree_) + 1, 0.0);
    size_t spans = n - size_t(degree_);
    for (size_t i = 0; i < knots_.size(); ++i) {
      if (i <= size_t(degree_)) knots_[i] = 0.0;
      else if (i >= n) knots_[i] = double(spans);
      else knots_[i] = double(i - size_t(degree_));
    }
  }
  valid_ = true;
}

double OdGeNurbCurve3d::startParam() const { return valid_ ? knots_[size_t(degree_)] : 0.0; }
double OdGeNurbCurve3d::endParam() const { return valid_ ? knots_[controlPoints_.size()] : 0.0; }

OdGePoint3d OdGeNurbCurve3d::evalPoint(double t) const {
  if (!valid_) return controlPoints_.empty() ? OdGePoint3d() : controlPoints_.front();
  const size_t p = size_t(degree_), n = controlPoints_.size();
  t = std::clamp(t, startParam(), endParam());
  // The knot span holding t (the last non-empty span for the end parameter).
  size_t k = p;
  while (k + 1 < n && knots_[k + 1] <= t) ++k;
  // De Boor's algorithm in homogeneous coordinates.
  double hx[26], hy[26], hz[26], hw[26];
  for (size_t j = 0; j <= p; ++j) {
    const OdGePoint3d& c = controlPoints_[k - p + j];
    double w = weights_.empty() ? 1.0 : weights_[k - p + j];
    hx[j] = c.x * w;
    hy[j] = c.y * w;
    hz[j] = c.z * w;
    hw[j] = w;
  }
  for (size_t r = 1; r <= p; ++r) {
    for (size_t j = p; j >= r; --j) {
      size_t i = k - p + j;
      double denom = knots_[i + p - r + 1] - knots_[i];
      double alpha = denom > 0.0 ? (t - knots_[i]) / denom : 0.0;
      hx[j] = (1.0 - alpha) * hx[j - 1] + alpha * hx[j];
      hy[j] = (1.0 - alpha) * hy[j - 1] + alpha * hy[j];
      hz[j] = (1.0 - alpha) * hz[j - 1] + alpha * hz[j];
      hw[j] = (1.0 - alpha) * hw[j - 1] + alpha * hw[j];
    }
  }
  double w = hw[p] != 0.0 ? hw[p] : 1.0;
  return {hx[p] / w, hy[p] / w, hz[p] / w};
}

OdGeNurbCurve3d OdGeNurbCurve3d::transformedBy(const OdGeMatrix3d& m) const {
  OdGeNurbCurve3d result = *this;
  for (OdGePoint3d& p : result.controlPoints_) p = m.transform(p);
  return result;
}

// ---- Circles through points --------------------------------------------------------------------

bool circleThroughPoints(const OdGePoint3d& p1, const OdGePoint3d& p2, const OdGePoint3d& p3, OdGePoint3d& center,
                         double& radius, OdGeVector3d& normal) {
  OdGeVector3d a = p2 - p1, b = p3 - p1;
  OdGeVector3d n = a.crossProduct(b);
  double n2 = n.dotProduct(n);
  double scale = std::max(a.dotProduct(a), b.dotProduct(b));
  if (!(n2 > 1e-20 * scale * scale) || !std::isfinite(n2)) return false;
  OdGeVector3d offset = (b.crossProduct(n) * a.dotProduct(a) + n.crossProduct(a) * b.dotProduct(b)) * (0.5 / n2);
  center = p1 + offset;
  radius = offset.length();
  normal = n.normal();
  return radius > 0.0 && std::isfinite(radius);
}

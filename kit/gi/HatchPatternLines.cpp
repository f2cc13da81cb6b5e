#include "kit/gi/HatchPatternLines.h"

#include <algorithm>
#include <cmath>

#include "kit/db/Entities.h"
#include "kit/gi/GiPolygonHoles.h"

namespace gi {

namespace {

// Dashes of the pattern over [t0, t1] of a line whose pattern starts at t = 0.
void dashInterval(const OdGePoint2d& origin, const OdGeVector2d& d, double t0, double t1,
                  const std::vector<double>& dashes, double total, std::vector<HatchSegment>& out, size_t maxSegments) {
  auto at = [&](double t) { return origin + d * t; };
  if (dashes.empty() || !(total > 0.0)) {
    out.push_back({at(t0), at(t1)});
    return;
  }
  double cycle = std::floor(t0 / total) * total;
  size_t i = 0;
  double pos = cycle;
  while (pos <= t1 && out.size() < maxSegments) {
    double len = dashes[i];
    double end = pos + std::fabs(len);
    if (len > 0.0 && end > t0 && pos < t1) out.push_back({at(std::max(pos, t0)), at(std::min(end, t1))});
    if (len == 0.0 && pos >= t0) out.push_back({at(pos), at(pos)});
    pos = end;
    i = (i + 1) % dashes.size();
  }
}

}  // namespace

bool hatchPatternSegments(const std::vector<std::vector<OdGePoint2d>>& loops, const HatchPatternLine& line,
                          size_t maxSegments, std::vector<HatchSegment>& out) {
  OdGeVector2d d(std::cos(line.angle), std::sin(line.angle));
  OdGeVector2d n(-d.y, d.x);
  double spacing = line.offset.dotProduct(n);
  if (!(std::fabs(spacing) > 1e-12) || !std::isfinite(spacing)) return true;
  double vmin = 1e300, vmax = -1e300;
  for (const auto& loop : loops) {
    for (const OdGePoint2d& p : loop) {
      double v = (p - line.basePoint).dotProduct(n);
      vmin = std::min(vmin, v);
      vmax = std::max(vmax, v);
    }
  }
  if (vmin > vmax) return true;
  double k0 = std::ceil(std::min(vmin / spacing, vmax / spacing));
  double k1 = std::floor(std::max(vmin / spacing, vmax / spacing));
  if (!std::isfinite(k0) || !std::isfinite(k1) || k1 - k0 > double(maxSegments)) return false;
  double total = 0.0;
  for (double len : line.dashes) total += std::fabs(len);
  std::vector<double> ts;
  for (double k = k0; k <= k1; k += 1.0) {
    OdGePoint2d origin = line.basePoint + line.offset * k;
    ts.clear();
    for (const auto& loop : loops) {
      for (size_t i = 0; i < loop.size(); ++i) {
        const OdGePoint2d& a = loop[i];
        const OdGePoint2d& b = loop[(i + 1) % loop.size()];
        double va = (a - origin).dotProduct(n), vb = (b - origin).dotProduct(n);
        if ((va > 0.0) == (vb > 0.0)) continue;
        double ta = (a - origin).dotProduct(d), tb = (b - origin).dotProduct(d);
        ts.push_back(ta + (tb - ta) * va / (va - vb));
      }
    }
    std::sort(ts.begin(), ts.end());
    for (size_t i = 0; i + 1 < ts.size(); i += 2) {
      if (ts[i + 1] > ts[i]) dashInterval(origin, d, ts[i], ts[i + 1], line.dashes, total, out, maxSegments);
      if (out.size() >= maxSegments) return false;
    }
  }
  return true;
}

std::vector<int> loopDepths(const std::vector<std::vector<OdGePoint2d>>& loops) {
  std::vector<int> depths(loops.size(), 0);
  for (size_t i = 0; i < loops.size(); ++i) {
    if (loops[i].empty()) continue;
    // A vertex of the loop tells whether it lies inside another (loops do not cross).
    const OdGePoint2d& probe = loops[i][0];
    for (size_t j = 0; j < loops.size(); ++j) {
      if (i != j && loops[j].size() >= 3 && pointInPolygon(probe, loops[j])) ++depths[i];
    }
  }
  return depths;
}

}  // namespace gi

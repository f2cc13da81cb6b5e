// Glyph strokes to points: arcs by their bulges, and the quadratic and cubic Bézier segments of
// TrueType outlines cut into as many chords as keep them within the deviation.
#include <algorithm>
#include <cmath>

#include "kit/gi/GiTessellation.h"
#include "kit/gi/StrokeFont.h"

namespace gi {

namespace {

// A chord of a curve whose second derivative is at most `bend` strays from it by bend·h²/8 over a
// parameter step h: the number of equal steps that keeps that within the deviation.
int chordCount(double bend, double deviation) {
  if (!(bend > 0.0)) return 1;
  double steps = std::ceil(std::sqrt(bend / (8.0 * std::max(deviation, 1e-9))));
  return int(std::clamp(steps, 1.0, 256.0));
}

OdGePoint2d combine(std::initializer_list<std::pair<double, OdGePoint2d>> terms) {
  double x = 0.0, y = 0.0;
  for (const auto& [weight, p] : terms) {
    x += weight * p.x;
    y += weight * p.y;
  }
  return {x, y};
}

void flattenQuadratic(const OdGePoint2d& p0, const OdGePoint2d& c, const OdGePoint2d& p1, double deviation,
                      std::vector<OdGePoint2d>& out) {
  double bend = 2.0 * std::hypot(p0.x - 2 * c.x + p1.x, p0.y - 2 * c.y + p1.y);
  int n = chordCount(bend, deviation);
  for (int i = 1; i <= n; ++i) {
    double t = double(i) / n, u = 1.0 - t;
    out.push_back(combine({{u * u, p0}, {2 * u * t, c}, {t * t, p1}}));
  }
}

void flattenCubic(const OdGePoint2d& p0, const OdGePoint2d& c0, const OdGePoint2d& c1, const OdGePoint2d& p1,
                  double deviation, std::vector<OdGePoint2d>& out) {
  double bend = 6.0 * std::max(std::hypot(p0.x - 2 * c0.x + c1.x, p0.y - 2 * c0.y + c1.y),
                               std::hypot(c0.x - 2 * c1.x + p1.x, c0.y - 2 * c1.y + p1.y));
  int n = chordCount(bend, deviation);
  for (int i = 1; i <= n; ++i) {
    double t = double(i) / n, u = 1.0 - t;
    out.push_back(combine({{u * u * u, p0}, {3 * u * u * t, c0}, {3 * u * t * t, c1}, {t * t * t, p1}}));
  }
}

}  // namespace

void flattenStroke(const std::vector<GlyphVertex>& stroke, double deviation, std::vector<OdGePoint2d>& out) {
  out.clear();
  if (stroke.empty()) return;
  out.push_back(stroke.front().point);
  size_t last = 0;  // the previous on-curve vertex
  for (size_t k = 1; k < stroke.size(); ++k) {
    if (stroke[k].control) continue;
    const OdGePoint2d& from = stroke[last].point;
    const OdGePoint2d& to = stroke[k].point;
    size_t controls = k - last - 1;
    if (controls == 1) flattenQuadratic(from, stroke[last + 1].point, to, deviation, out);
    else if (controls == 2) flattenCubic(from, stroke[last + 1].point, stroke[last + 2].point, to, deviation, out);
    else tessellateBulge(from, to, stroke[k].bulge, deviation, out);
    last = k;
  }
}

}  // namespace gi

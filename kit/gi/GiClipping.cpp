#include "kit/gi/GiClipping.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "kit/gi/GiPolygonHoles.h"

namespace gi {

bool clipLineToBox(const OdGePoint3d& p0, const OdGePoint3d& p1, const OdGeExtents3d& box, double& t0, double& t1) {
  double d[2] = {p1.x - p0.x, p1.y - p0.y};
  double s[2] = {p0.x, p0.y};
  double lo[2] = {box.minPoint.x, box.minPoint.y};
  double hi[2] = {box.maxPoint.x, box.maxPoint.y};
  for (int axis = 0; axis < 2; ++axis) {
    if (d[axis] == 0.0) {
      if (s[axis] < lo[axis] || s[axis] > hi[axis]) return false;
      continue;
    }
    double a = (lo[axis] - s[axis]) / d[axis];
    double b = (hi[axis] - s[axis]) / d[axis];
    if (a > b) std::swap(a, b);
    t0 = std::max(t0, a);
    t1 = std::min(t1, b);
    if (t0 > t1) return false;
  }
  return std::isfinite(t0) && std::isfinite(t1);
}

namespace {

OdGePoint3d lerp(const OdGePoint3d& a, const OdGePoint3d& b, double t) { return a + (b - a) * t; }

// Appends the parameters along a -> b where the segment crosses clip edges.
void appendCrossings(const OdGePoint3d& a, const OdGePoint3d& b, const std::vector<OdGePoint2d>& clip,
                     std::vector<double>& ts) {
  double dx = b.x - a.x, dy = b.y - a.y;
  for (size_t i = 0; i < clip.size(); ++i) {
    const OdGePoint2d& c = clip[i];
    const OdGePoint2d& e = clip[(i + 1) % clip.size()];
    double ex = e.x - c.x, ey = e.y - c.y;
    double denom = dx * ey - dy * ex;
    if (denom == 0.0) continue;
    double t = ((c.x - a.x) * ey - (c.y - a.y) * ex) / denom;
    double u = ((c.x - a.x) * dy - (c.y - a.y) * dx) / denom;
    if (t > 0.0 && t < 1.0 && u >= 0.0 && u <= 1.0) ts.push_back(t);
  }
}

// Parameters along a -> b where the segment crosses clip edges, sorted.
void crossings(const OdGePoint3d& a, const OdGePoint3d& b, const std::vector<OdGePoint2d>& clip,
               std::vector<double>& ts) {
  ts.clear();
  appendCrossings(a, b, clip, ts);
  std::sort(ts.begin(), ts.end());
}

struct Box2d {
  double x0 = HUGE_VAL, y0 = HUGE_VAL, x1 = -HUGE_VAL, y1 = -HUGE_VAL;
  template <class P>
  void add(const P& p) {
    x0 = std::min(x0, p.x), y0 = std::min(y0, p.y), x1 = std::max(x1, p.x), y1 = std::max(y1, p.y);
  }
  bool contains(const Box2d& b) const { return b.x0 >= x0 && b.x1 <= x1 && b.y0 >= y0 && b.y1 <= y1; }
  bool misses(const Box2d& b) const { return b.x1 < x0 || b.x0 > x1 || b.y1 < y0 || b.y0 > y1; }
};

// A clip outline that is a rectangle along the axes (every view's own): a box test decides for
// most polylines without cutting them edge by edge.
bool isAxisRectangle(const std::vector<OdGePoint2d>& clip, const Box2d& box) {
  if (clip.size() != 4) return false;
  for (size_t i = 0; i < 4; ++i) {
    const OdGePoint2d& p = clip[i];
    const OdGePoint2d& next = clip[(i + 1) % 4];
    if ((p.x != box.x0 && p.x != box.x1) || (p.y != box.y0 && p.y != box.y1)) return false;
    // Corners in turn round the box: four corners taken crosswise make a bow tie.
    if (p.x != next.x && p.y != next.y) return false;
  }
  return true;
}

// The inside pieces of a point list: each segment is split where `crossingsOf` says it crosses
// the outline, and each part kept when `inside` holds its middle.
template <class Crossings, class Inside>
std::vector<std::vector<OdGePoint3d>> cutAtCrossings(const std::vector<OdGePoint3d>& points, Crossings crossingsOf,
                                                     Inside inside) {
  std::vector<std::vector<OdGePoint3d>> pieces;
  std::vector<OdGePoint3d> current;
  std::vector<double> ts;
  for (size_t i = 0; i + 1 < points.size(); ++i) {
    const OdGePoint3d& a = points[i];
    const OdGePoint3d& b = points[i + 1];
    crossingsOf(a, b, ts);
    double prev = 0.0;
    ts.push_back(1.0);
    for (double t : ts) {
      OdGePoint3d mid = lerp(a, b, 0.5 * (prev + t));
      if (inside(mid.to2d())) {
        OdGePoint3d from = lerp(a, b, prev);
        if (current.empty()) current.push_back(from);
        current.push_back(t == 1.0 ? b : lerp(a, b, t));
      } else if (!current.empty()) {
        pieces.push_back(std::move(current));
        current.clear();
      }
      prev = t;
    }
  }
  if (!current.empty()) pieces.push_back(std::move(current));
  return pieces;
}

}  // namespace

std::vector<std::vector<OdGePoint3d>> clipPolyline(const std::vector<OdGePoint3d>& points,
                                                   const std::vector<OdGePoint2d>& clip) {
  std::vector<std::vector<OdGePoint3d>> pieces;
  if (clip.size() < 3 || points.empty()) return pieces;
  Box2d clipBox, pointsBox;
  for (const OdGePoint2d& p : clip) clipBox.add(p);
  for (const OdGePoint3d& p : points) pointsBox.add(p);
  if (clipBox.misses(pointsBox)) return pieces;
  if (isAxisRectangle(clip, clipBox) && clipBox.contains(pointsBox)) {
    pieces.push_back(points);
    return pieces;
  }
  if (points.size() == 1) {
    if (pointInPolygon(points[0].to2d(), clip)) pieces.push_back(points);
    return pieces;
  }
  return cutAtCrossings(
      points, [&](const OdGePoint3d& a, const OdGePoint3d& b, std::vector<double>& ts) { crossings(a, b, clip, ts); },
      [&](const OdGePoint2d& p) { return pointInPolygon(p, clip); });
}

std::vector<OdGePoint3d> clipPolygon(const std::vector<OdGePoint3d>& points, const std::vector<OdGePoint2d>& clip) {
  std::vector<OdGePoint3d> result = points;
  if (clip.size() < 3) return result;
  if (result.size() > 1 && result.front() == result.back()) result.pop_back();
  // Clip edges taken counter-clockwise so that "inside" is to the left of each edge.
  std::vector<OdGePoint2d> ccw = clip;
  if (signedArea(ccw) < 0.0) std::reverse(ccw.begin(), ccw.end());
  for (size_t i = 0; i < ccw.size() && !result.empty(); ++i) {
    const OdGePoint2d& c = ccw[i];
    const OdGePoint2d& e = ccw[(i + 1) % ccw.size()];
    auto side = [&](const OdGePoint3d& p) { return (e.x - c.x) * (p.y - c.y) - (e.y - c.y) * (p.x - c.x); };
    std::vector<OdGePoint3d> next;
    next.reserve(result.size() + 4);
    for (size_t k = 0; k < result.size(); ++k) {
      const OdGePoint3d& p = result[k];
      const OdGePoint3d& q = result[(k + 1) % result.size()];
      double sp = side(p), sq = side(q);
      if (sp >= 0.0) next.push_back(p);
      if ((sp >= 0.0) != (sq >= 0.0)) next.push_back(lerp(p, q, sp / (sp - sq)));
    }
    result = std::move(next);
  }
  if (result.size() < 3) result.clear();
  return result;
}

std::vector<std::vector<OdGePoint3d>> clipPolylineToDepth(const std::vector<OdGePoint3d>& points, double zmin,
                                                          double zmax) {
  std::vector<std::vector<OdGePoint3d>> pieces;
  auto inside = [&](const OdGePoint3d& p) { return p.z >= zmin && p.z <= zmax; };
  if (points.size() == 1) {
    if (inside(points[0])) pieces.push_back(points);
    return pieces;
  }
  std::vector<OdGePoint3d> current;
  for (size_t i = 0; i + 1 < points.size(); ++i) {
    const OdGePoint3d& a = points[i];
    const OdGePoint3d& b = points[i + 1];
    double t0 = 0.0, t1 = 1.0, dz = b.z - a.z;
    if (dz == 0.0) {
      if (!inside(a)) t0 = 2.0;
    } else {
      double u = (zmin - a.z) / dz, v = (zmax - a.z) / dz;
      if (u > v) std::swap(u, v);
      t0 = std::max(t0, u);
      t1 = std::min(t1, v);
    }
    if (!(t0 <= t1)) {
      if (!current.empty()) pieces.push_back(std::move(current));
      current.clear();
      continue;
    }
    if (current.empty() || t0 > 0.0) {
      if (!current.empty()) pieces.push_back(std::move(current));
      current.assign(1, t0 == 0.0 ? a : lerp(a, b, t0));
    }
    current.push_back(t1 == 1.0 ? b : lerp(a, b, t1));
    if (t1 < 1.0) {
      pieces.push_back(std::move(current));
      current.clear();
    }
  }
  if (!current.empty()) pieces.push_back(std::move(current));
  return pieces;
}

std::vector<OdGePoint3d> clipPolygonToDepth(const std::vector<OdGePoint3d>& points, double zmin, double zmax) {
  std::vector<OdGePoint3d> result = points;
  // Two planes, each keeping the side where side(p) >= 0.
  const std::pair<double, double> planes[2] = {{zmin, 1.0}, {zmax, -1.0}};
  for (const auto& [level, sign] : planes) {
    if (!std::isfinite(level) || result.empty()) continue;
    std::vector<OdGePoint3d> next;
    next.reserve(result.size() + 2);
    for (size_t k = 0; k < result.size(); ++k) {
      const OdGePoint3d& p = result[k];
      const OdGePoint3d& q = result[(k + 1) % result.size()];
      double sp = sign * (p.z - level), sq = sign * (q.z - level);
      if (sp >= 0.0) next.push_back(p);
      if ((sp >= 0.0) != (sq >= 0.0)) next.push_back(lerp(p, q, sp / (sp - sq)));
    }
    result = std::move(next);
  }
  if (result.size() < 3) result.clear();
  return result;
}

BoxRelation boxRelation(const OdGeExtents3d& box, const std::vector<OdGePoint2d>& clip) {
  if (clip.size() < 3 || !box.isValidExtents()) return BoxRelation::kOutside;
  OdGeExtents3d clipBox;
  for (const OdGePoint2d& p : clip) clipBox.addPoint({p.x, p.y, 0.0});
  if (box.maxPoint.x < clipBox.minPoint.x || box.minPoint.x > clipBox.maxPoint.x ||
      box.maxPoint.y < clipBox.minPoint.y || box.minPoint.y > clipBox.maxPoint.y) {
    return BoxRelation::kOutside;
  }
  OdGePoint2d corners[4] = {{box.minPoint.x, box.minPoint.y}, {box.maxPoint.x, box.minPoint.y},
                            {box.maxPoint.x, box.maxPoint.y}, {box.minPoint.x, box.maxPoint.y}};
  for (const OdGePoint2d& c : corners) {
    if (!pointInPolygon(c, clip)) return BoxRelation::kCrossing;
  }
  // All corners inside: inside unless a clip edge runs through the box (a vertex poking into it,
  // or the crossing of an outline that crosses itself).
  for (size_t i = 0; i < clip.size(); ++i) {
    OdGePoint3d a(clip[i].x, clip[i].y, 0.0);
    const OdGePoint2d& next = clip[(i + 1) % clip.size()];
    OdGePoint3d b(next.x, next.y, 0.0);
    double t0 = 0.0, t1 = 1.0;
    if (!clipLineToBox(a, b, box, t0, t1)) continue;
    OdGePoint3d mid = a + (b - a) * (0.5 * (t0 + t1));
    if (mid.x > box.minPoint.x && mid.x < box.maxPoint.x && mid.y > box.minPoint.y && mid.y < box.maxPoint.y) {
      return BoxRelation::kCrossing;
    }
  }
  return BoxRelation::kInside;
}

// ---- Regions of several loops ---------------------------------------------------------------------

namespace {

bool usable(const std::vector<OdGePoint2d>& loop) { return loop.size() >= 3; }

// Of a region, the one loop when there is exactly one usable loop, else null.
const std::vector<OdGePoint2d>* singleLoop(const ClipLoops& loops) {
  const std::vector<OdGePoint2d>* found = nullptr;
  for (const auto& loop : loops) {
    if (!usable(loop)) continue;
    if (found) return nullptr;
    found = &loop;
  }
  return found;
}

}  // namespace

bool pointInRegion(const OdGePoint2d& p, const ClipLoops& loops) {
  bool inside = false;
  for (const auto& loop : loops) {
    if (usable(loop) && pointInPolygon(p, loop)) inside = !inside;
  }
  return inside;
}

BoxRelation boxRelation(const OdGeExtents3d& box, const ClipLoops& loops) {
  if (const auto* loop = singleLoop(loops)) return boxRelation(box, *loop);
  if (!box.isValidExtents()) return BoxRelation::kOutside;
  OdGeExtents3d flat({box.minPoint.x, box.minPoint.y, 0.0}, {box.maxPoint.x, box.maxPoint.y, 0.0});
  bool any = false;
  for (const auto& loop : loops) {
    if (!usable(loop)) continue;
    any = true;
    for (size_t i = 0; i < loop.size(); ++i) {
      const OdGePoint2d& c = loop[i];
      const OdGePoint2d& e = loop[(i + 1) % loop.size()];
      double t0 = 0.0, t1 = 1.0;
      if (clipLineToBox({c.x, c.y, 0.0}, {e.x, e.y, 0.0}, flat, t0, t1)) return BoxRelation::kCrossing;
    }
  }
  if (!any) return BoxRelation::kOutside;
  // No edge meets the box: all of it lies on one side of every loop.
  OdGePoint2d centre((box.minPoint.x + box.maxPoint.x) / 2.0, (box.minPoint.y + box.maxPoint.y) / 2.0);
  return pointInRegion(centre, loops) ? BoxRelation::kInside : BoxRelation::kOutside;
}

std::vector<std::vector<OdGePoint3d>> clipPolyline(const std::vector<OdGePoint3d>& points, const ClipLoops& loops) {
  if (const auto* loop = singleLoop(loops)) return clipPolyline(points, *loop);
  std::vector<std::vector<OdGePoint3d>> pieces;
  if (points.empty() || !std::any_of(loops.begin(), loops.end(), usable)) return pieces;
  if (points.size() == 1) {
    if (pointInRegion(points[0].to2d(), loops)) pieces.push_back(points);
    return pieces;
  }
  auto crossingsOf = [&](const OdGePoint3d& a, const OdGePoint3d& b, std::vector<double>& ts) {
    ts.clear();
    for (const auto& loop : loops) {
      if (usable(loop)) appendCrossings(a, b, loop, ts);
    }
    std::sort(ts.begin(), ts.end());
  };
  return cutAtCrossings(points, crossingsOf, [&](const OdGePoint2d& p) { return pointInRegion(p, loops); });
}

std::vector<std::vector<OdGePoint3d>> clipPolygon(const std::vector<OdGePoint3d>& points, const ClipLoops& loops) {
  std::vector<std::vector<OdGePoint3d>> areas;
  for (size_t i = 0; i < loops.size(); ++i) {
    if (!usable(loops[i])) continue;
    int holders = 0;
    for (size_t j = 0; j < loops.size(); ++j) {
      if (j != i && usable(loops[j]) && pointInPolygon(loops[i][0], loops[j])) ++holders;
    }
    if (holders % 2 != 0) continue;
    std::vector<OdGePoint3d> area = clipPolygon(points, loops[i]);
    if (!area.empty()) areas.push_back(std::move(area));
  }
  return areas;
}

double matrixScale(const OdGeMatrix3d& m) {
  double s = 0.0;
  for (int c = 0; c < 3; ++c) {
    double len = std::sqrt(m.entry[0][c] * m.entry[0][c] + m.entry[1][c] * m.entry[1][c] + m.entry[2][c] * m.entry[2][c]);
    s = std::max(s, len);
  }
  return s;
}

}  // namespace gi

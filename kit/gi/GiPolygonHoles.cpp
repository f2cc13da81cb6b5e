#include "kit/gi/GiPolygonHoles.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace gi {

OdGeVector3d loopNormal(const std::vector<OdGePoint3d>& loop) {
  OdGeVector3d n;
  for (size_t i = 0; i < loop.size(); ++i) {
    const OdGePoint3d& a = loop[i];
    const OdGePoint3d& b = loop[(i + 1) % loop.size()];
    n.x += (a.y - b.y) * (a.z + b.z);
    n.y += (a.z - b.z) * (a.x + b.x);
    n.z += (a.x - b.x) * (a.y + b.y);
  }
  return n;
}

double signedArea(const std::vector<OdGePoint2d>& loop) {
  double area = 0.0;
  for (size_t i = 0; i < loop.size(); ++i) {
    const OdGePoint2d& a = loop[i];
    const OdGePoint2d& b = loop[(i + 1) % loop.size()];
    area += a.x * b.y - b.x * a.y;
  }
  return area / 2.0;
}

bool pointInPolygon(const OdGePoint2d& p, const std::vector<OdGePoint2d>& polygon) {
  bool inside = false;
  for (size_t i = 0, j = polygon.size() - 1; i < polygon.size(); j = i++) {
    const OdGePoint2d& a = polygon[i];
    const OdGePoint2d& b = polygon[j];
    if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x) inside = !inside;
  }
  return inside;
}

namespace {

struct Vertex {
  OdGePoint2d p;  // in the plane
  OdGePoint3d q;  // as given
};
using Loop = std::vector<Vertex>;

Loop toLoop(const std::vector<OdGePoint3d>& pts, const OdGeVector3d& u, const OdGeVector3d& v, bool wantCcw) {
  Loop loop;
  for (const OdGePoint3d& q : pts) {
    OdGePoint2d p(q.asVector().dotProduct(u), q.asVector().dotProduct(v));
    if (loop.empty() || !(loop.back().p == p)) loop.push_back({p, q});
  }
  if (loop.size() > 1 && loop.front().p == loop.back().p) loop.pop_back();
  std::vector<OdGePoint2d> flat;
  for (const Vertex& x : loop) flat.push_back(x.p);
  if ((signedArea(flat) > 0.0) != wantCcw) std::reverse(loop.begin(), loop.end());
  return loop;
}

double cross(const OdGePoint2d& o, const OdGePoint2d& a, const OdGePoint2d& b) {
  return (a.x - o.x) * (b.y - o.y) - (a.y - o.y) * (b.x - o.x);
}

bool inTriangle(const OdGePoint2d& p, const OdGePoint2d& a, const OdGePoint2d& b, const OdGePoint2d& c) {
  double d1 = cross(a, b, p), d2 = cross(b, c, p), d3 = cross(c, a, p);
  bool hasNeg = d1 < 0 || d2 < 0 || d3 < 0, hasPos = d1 > 0 || d2 > 0 || d3 > 0;
  return !(hasNeg && hasPos);
}

// The vertex of `poly` that the hole vertex m can see to its right (the bridge's other end).
size_t bridgeVertex(const Loop& poly, const OdGePoint2d& m) {
  double bestX = std::numeric_limits<double>::infinity();
  size_t edge = poly.size();
  for (size_t i = 0; i < poly.size(); ++i) {
    const OdGePoint2d& a = poly[i].p;
    const OdGePoint2d& b = poly[(i + 1) % poly.size()].p;
    if ((a.y > m.y) == (b.y > m.y)) continue;  // half-open rule: each crossing counted once
    double x = a.x + (m.y - a.y) * (b.x - a.x) / (b.y - a.y);
    if (x >= m.x && x < bestX) {
      bestX = x;
      edge = i;
    }
  }
  if (edge == poly.size()) {
    // No edge to the right (a hole outside its outline): join to the nearest vertex.
    size_t nearest = 0;
    for (size_t i = 1; i < poly.size(); ++i) {
      if (poly[i].p.distanceTo(m) < poly[nearest].p.distanceTo(m)) nearest = i;
    }
    return nearest;
  }
  size_t candidate = poly[edge].p.x > poly[(edge + 1) % poly.size()].p.x ? edge : (edge + 1) % poly.size();
  OdGePoint2d hit(bestX, m.y), pc = poly[candidate].p;
  if (pc == hit) return candidate;
  // A reflex vertex inside the triangle (m, hit, candidate) would hide the candidate: take the
  // one with the smallest angle to the ray instead.
  double bestAngle = std::numeric_limits<double>::infinity();
  size_t best = candidate;
  for (size_t i = 0; i < poly.size(); ++i) {
    const OdGePoint2d& p = poly[i].p;
    if (i == candidate || p.x < m.x || !inTriangle(p, m, hit, pc)) continue;
    const OdGePoint2d& prev = poly[(i + poly.size() - 1) % poly.size()].p;
    const OdGePoint2d& next = poly[(i + 1) % poly.size()].p;
    if (cross(prev, p, next) > 0.0) continue;  // convex vertex
    double angle = std::atan2(std::fabs(p.y - m.y), p.x - m.x);
    if (angle < bestAngle) {
      bestAngle = angle;
      best = i;
    }
  }
  return best;
}

}  // namespace

std::vector<OdGePoint3d> mergeHoles(const std::vector<OdGePoint3d>& outer,
                                    const std::vector<std::vector<OdGePoint3d>>& holes, const OdGeVector3d* normal) {
  OdGeVector3d n = normal && !normal->isZeroLength() ? normal->normal() : loopNormal(outer).normal();
  if (n.isZeroLength()) n = OdGeVector3d::kZAxis();
  OdGeVector3d u = arbitraryAxisX(n);
  OdGeVector3d v = n.crossProduct(u).normal();
  Loop poly = toLoop(outer, u, v, true);
  if (poly.size() < 3) {
    std::vector<OdGePoint3d> out;
    for (const Vertex& x : poly) out.push_back(x.q);
    return out;
  }
  std::vector<Loop> rest;
  for (const auto& hole : holes) {
    Loop loop = toLoop(hole, u, v, false);
    if (loop.size() >= 3) rest.push_back(std::move(loop));
  }
  auto rightmost = [](const Loop& loop) {
    size_t k = 0;
    for (size_t i = 1; i < loop.size(); ++i) {
      if (loop[i].p.x > loop[k].p.x) k = i;
    }
    return k;
  };
  std::sort(rest.begin(), rest.end(),
            [&](const Loop& a, const Loop& b) { return a[rightmost(a)].p.x > b[rightmost(b)].p.x; });
  for (const Loop& hole : rest) {
    size_t m = rightmost(hole);
    size_t target = bridgeVertex(poly, hole[m].p);
    Loop merged;
    merged.reserve(poly.size() + hole.size() + 2);
    merged.insert(merged.end(), poly.begin(), poly.begin() + long(target) + 1);
    for (size_t k = 0; k <= hole.size(); ++k) merged.push_back(hole[(m + k) % hole.size()]);
    merged.push_back(poly[target]);
    merged.insert(merged.end(), poly.begin() + long(target) + 1, poly.end());
    poly = std::move(merged);
  }
  std::vector<OdGePoint3d> out;
  out.reserve(poly.size());
  for (const Vertex& x : poly) out.push_back(x.q);
  return out;
}

}  // namespace gi

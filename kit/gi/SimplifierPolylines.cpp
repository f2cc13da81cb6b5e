// Lightweight polylines: the centre line with its bulges cut into chords, or, for polylines whose
// vertices carry widths, filled outlines of the wide segments.
#include <algorithm>
#include <cmath>

#include "kit/gi/GiClipping.h"
#include "kit/gi/GiTessellation.h"
#include "kit/gi/OdGiGeometrySimplifier.h"

namespace {

struct PlineFrame {
  OdGeMatrix3d toOutput;  // plane coordinates to the output space
  OdGeVector3d normal;
  double planeDeviation;  // the output deviation in plane units

  OdGePoint3d map(const OdGePoint2d& p, double elevation) const { return toOutput.transform(OdGePoint3d(p.x, p.y, elevation)); }
};

PlineFrame frameOf(const OdGiPolyline& polyline, const OdGeMatrix3d* transform, double outputDeviation) {
  PlineFrame frame;
  OdGeMatrix3d plane = OdGeMatrix3d::planeToWorld(polyline.normal);
  frame.toOutput = transform ? *transform * plane : plane;
  OdGeVector3d x = frame.toOutput.transform(OdGeVector3d::kXAxis());
  OdGeVector3d y = frame.toOutput.transform(OdGeVector3d::kYAxis());
  frame.normal = x.crossProduct(y).normal();
  double scale = gi::matrixScale(frame.toOutput);
  frame.planeDeviation = scale > 0.0 ? outputDeviation / scale : outputDeviation;
  return frame;
}

OdGePoint2d widthsAt(const OdGiPolyline& polyline, size_t i) {
  if (i < polyline.widths.size()) return polyline.widths[i];
  return {polyline.constantWidth, polyline.constantWidth};
}

}  // namespace

void OdGiGeometrySimplifier::plineProc(const OdGiPolyline& polyline, const OdGeMatrix3d* transform,
                                       uint32_t fromIndex, uint32_t numSegs) {
  const size_t total = polyline.numSegments();
  if (polyline.points.empty()) return;
  PlineFrame frame = frameOf(polyline, transform, deviation(kOdGiMaxDevForCurve, OdGePoint3d()));
  if (total == 0) {
    OdGePoint3d p = frame.map(polyline.points[0], polyline.elevation);
    polylineProc(1, &p, &frame.normal);
    return;
  }
  size_t first = std::min<size_t>(fromIndex, total);
  size_t count = numSegs == 0 ? total - first : std::min<size_t>(numSegs, total - first);
  if (count == 0) return;
  if (polyline.hasVertexWidths()) {
    plineOutlines(polyline, frame.toOutput, first, count);
    return;
  }
  std::vector<OdGePoint2d> flat = {polyline.points[first]};
  for (size_t s = first; s < first + count && flat.size() < gi::kMaxCurvePoints; ++s) {
    const OdGePoint2d& a = polyline.points[s];
    const OdGePoint2d& b = polyline.points[(s + 1) % polyline.points.size()];
    gi::tessellateBulge(a, b, polyline.bulgeAt(s), frame.planeDeviation, flat);
  }
  std::vector<OdGePoint3d> points;
  points.reserve(flat.size());
  for (const OdGePoint2d& p : flat) points.push_back(frame.map(p, polyline.elevation));
  polylineProc(int32_t(points.size()), points.data(), &frame.normal);
}

void OdGiGeometrySimplifier::plineOutlines(const OdGiPolyline& polyline, const OdGeMatrix3d& m, size_t first,
                                           size_t count) {
  PlineFrame frame = frameOf(polyline, nullptr, deviation(kOdGiMaxDevForCurve, OdGePoint3d()));
  frame.toOutput = m;
  double scale = gi::matrixScale(m);
  double planeDeviation = deviation(kOdGiMaxDevForCurve, OdGePoint3d()) / (scale > 0.0 ? scale : 1.0);
  OdGeVector3d normal = m.transform(OdGeVector3d::kXAxis()).crossProduct(m.transform(OdGeVector3d::kYAxis())).normal();
  std::vector<OdGePoint3d> thin;  // a run of zero-width segments, drawn as a line
  auto flushThin = [&]() {
    if (thin.size() >= 2) polylineProc(int32_t(thin.size()), thin.data(), &normal);
    thin.clear();
  };
  const size_t n = polyline.points.size();
  for (size_t s = first; s < first + count; ++s) {
    const OdGePoint2d& a = polyline.points[s];
    const OdGePoint2d& b = polyline.points[(s + 1) % n];
    OdGePoint2d w = widthsAt(polyline, s);
    double bulge = polyline.bulgeAt(s);
    if (!(w.x > 0.0) && !(w.y > 0.0)) {
      std::vector<OdGePoint2d> flat = {a};
      gi::tessellateBulge(a, b, bulge, planeDeviation, flat);
      for (const OdGePoint2d& p : flat) {
        OdGePoint3d q = frame.map(p, polyline.elevation);
        if (thin.empty() || !(thin.back() == q)) thin.push_back(q);
      }
      continue;
    }
    flushThin();
    // Left and right edges of the band: offsets across the centre line, widths interpolated.
    std::vector<OdGePoint2d> left, right;
    OdGePoint2d center;
    double radius, a0, sweep;
    if (gi::bulgeArc(a, b, bulge, center, radius, a0, sweep)) {
      int pieces = gi::arcSegmentCount(radius + std::max(w.x, w.y), sweep, planeDeviation);
      for (int i = 0; i <= pieces; ++i) {
        double f = double(i) / pieces, t = a0 + sweep * f;
        double half = 0.5 * (w.x + (w.y - w.x) * f);
        OdGeVector2d radial(std::cos(t), std::sin(t));
        double sign = sweep > 0 ? 1.0 : -1.0;  // left of travel is towards the centre for ccw arcs
        left.push_back(center + radial * (radius - sign * half));
        right.push_back(center + radial * (radius + sign * half));
      }
    } else {
      double len = a.distanceTo(b);
      if (!(len > 0.0)) continue;
      OdGeVector2d across(-(b.y - a.y) / len, (b.x - a.x) / len);
      left = {a + across * (w.x / 2), b + across * (w.y / 2)};
      right = {a + across * (-w.x / 2), b + across * (-w.y / 2)};
    }
    std::vector<OdGePoint3d> outline;
    for (const OdGePoint2d& p : left) outline.push_back(frame.map(p, polyline.elevation));
    for (auto it = right.rbegin(); it != right.rend(); ++it) outline.push_back(frame.map(*it, polyline.elevation));
    polygonProc(int32_t(outline.size()), outline.data(), &normal);
  }
  flushThin();
}

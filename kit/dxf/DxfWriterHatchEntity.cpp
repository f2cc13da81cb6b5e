// HATCH: boundary loops (polyline loops and edge loops of lines, arcs, elliptic arcs and
// splines), pattern definition lines, seed points and gradient fills, in the order the reader
// tells its parts apart by. MPOLYGON the same way, in its own group codes.
#include "kit/dxf/DxfWriterEntities.h"

namespace {

void writePolylineLoop(DxfWriterContext& c, const HatchLoop& loop) {
  bool bulges = !loop.bulges.empty();
  c.out.boolean(72, bulges);
  c.out.boolean(73, loop.closed);
  c.out.integer(93, int64_t(loop.points.size()));
  for (size_t i = 0; i < loop.points.size(); ++i) {
    c.out.point(10, loop.points[i]);
    if (bulges) c.out.real(42, i < loop.bulges.size() ? loop.bulges[i] : 0.0);
  }
}

void writeSplineEdge(DxfWriterContext& c, const HatchSplineEdge& s) {
  c.out.integer(94, s.degree);
  c.out.boolean(73, s.rational);
  c.out.boolean(74, s.periodic);
  c.out.integer(95, int64_t(s.knots.size()));
  c.out.integer(96, int64_t(s.controlPoints.size()));
  for (double k : s.knots) c.out.real(40, k);
  for (size_t i = 0; i < s.controlPoints.size(); ++i) {
    c.out.point(10, s.controlPoints[i]);
    if (i < s.weights.size()) c.out.real(42, s.weights[i]);
  }
  // Weights beyond the control points (damaged files) still go back.
  for (size_t i = s.controlPoints.size(); i < s.weights.size(); ++i) c.out.real(42, s.weights[i]);
  if (s.fitPoints.empty()) return;
  c.out.integer(97, int64_t(s.fitPoints.size()));
  for (const OdGePoint2d& p : s.fitPoints) c.out.point(11, p);
  c.out.real(12, s.startTangent.x);
  c.out.real(22, s.startTangent.y);
  c.out.real(13, s.endTangent.x);
  c.out.real(23, s.endTangent.y);
}

void writeEdge(DxfWriterContext& c, const HatchEdge& edge) {
  c.out.integer(72, edge.type);
  switch (edge.type) {
    case HatchEdge::kLine:
      c.out.point(10, edge.start);
      c.out.point(11, edge.end);
      break;
    case HatchEdge::kCircularArc:
      c.out.point(10, edge.start);
      c.out.real(40, edge.radius);
      c.out.angle(50, edge.startAngle);
      c.out.angle(51, edge.endAngle);
      c.out.boolean(73, edge.counterClockwise);
      break;
    case HatchEdge::kEllipticArc:
      c.out.point(10, edge.start);
      c.out.point(11, edge.end);
      c.out.real(40, edge.radius);
      c.out.angle(50, edge.startAngle);
      c.out.angle(51, edge.endAngle);
      c.out.boolean(73, edge.counterClockwise);
      break;
    case HatchEdge::kSpline:
      if (edge.spline) writeSplineEdge(c, *edge.spline);
      else writeSplineEdge(c, HatchSplineEdge());
      break;
  }
}

void writeLoop(DxfWriterContext& c, const HatchLoop& loop) {
  c.out.integer(92, loop.flags);
  if (loop.isPolyline()) {
    writePolylineLoop(c, loop);
  } else {
    c.out.integer(93, int64_t(loop.edges.size()));
    for (const HatchEdge& edge : loop.edges) writeEdge(c, edge);
  }
  c.out.integer(97, int64_t(loop.sourceObjects.size()));
  for (OdDbHandle h : loop.sourceObjects) c.out.handle(330, h);
}

void writePattern(DxfWriterContext& c, const HatchData& h) {
  bool pattern = !h.solidFill || !h.patternLines.empty() || h.patternAngle != 0.0 || h.patternScale != 1.0 ||
                 h.patternDouble;
  if (!pattern) return;
  c.out.angle(52, h.patternAngle);
  c.out.real(41, h.patternScale);
  c.out.boolean(77, h.patternDouble);
  c.out.integer(78, int64_t(h.patternLines.size()));
  for (const HatchPatternLine& line : h.patternLines) {
    c.out.angle(53, line.angle);
    c.out.real(43, line.basePoint.x);
    c.out.real(44, line.basePoint.y);
    c.out.real(45, line.offset.x);
    c.out.real(46, line.offset.y);
    c.out.integer(79, int64_t(line.dashes.size()));
    for (double d : line.dashes) c.out.real(49, d);
  }
}

void writeGradient(DxfWriterContext& c, const HatchGradient& g) {
  if (!g.enabled && g.colors.empty() && g.name.empty()) return;
  c.out.integer(450, g.enabled ? 1 : 0);
  c.out.integer(451, 0);
  c.out.real(460, g.angle);  // radians, unlike other angles
  c.out.real(461, g.shift);
  c.out.boolean(452, g.singleColor);
  c.out.real(462, g.tint);
  c.out.integer(453, int64_t(g.colors.size()));
  for (const auto& [value, color] : g.colors) {
    c.out.real(463, value);
    if (color.isByColor()) c.out.integer(421, int64_t(color.rgb()));
    else c.out.integer(63, color.colorIndex());
  }
  c.out.text(470, g.name);
}

}  // namespace

void writeHatch(DxfWriterContext& c, const HatchEntity& h) {
  c.entityStart("HATCH", h);
  c.out.raw(100, "AcDbHatch");
  c.out.point(10, h.elevationPoint);
  c.out.point(210, h.normal);
  c.out.text(2, h.patternName);
  c.out.boolean(70, h.solidFill);
  c.out.boolean(71, h.associative);
  c.out.integer(91, int64_t(h.loops.size()));
  for (const HatchLoop& loop : h.loops) writeLoop(c, loop);
  // The first group after the loops must not be one a loop could take: 75 is not.
  c.out.integer(75, h.style);
  c.out.integer(76, h.patternType);
  writePattern(c, h);
  if (h.pixelSize != 0.0) c.out.real(47, h.pixelSize);
  c.out.integer(98, int64_t(h.seedPoints.size()));
  for (const OdGePoint2d& p : h.seedPoints) c.out.point(10, p);
  writeGradient(c, h.gradient);
  c.entityEnd(h);
}

// MPOLYGON: 70 is the version and 71 the solid flag; its loops are polylines, closed before bulged.
void writeMPolygon(DxfWriterContext& c, const MPolygonEntity& m) {
  c.entityStart("MPOLYGON", m);
  c.out.raw(100, "AcDbMPolygon");
  c.out.integer(70, 1);
  c.out.point(10, m.elevationPoint);
  c.out.point(210, m.normal);
  c.out.text(2, m.patternName);
  c.out.boolean(71, m.solidFill);
  int64_t polylines = 0;
  for (const HatchLoop& loop : m.loops) polylines += loop.isPolyline() ? 1 : 0;
  c.out.integer(91, polylines);
  for (const HatchLoop& loop : m.loops) {
    if (!loop.isPolyline()) continue;
    c.out.integer(92, loop.flags);
    c.out.boolean(73, loop.closed);
    c.out.boolean(72, !loop.bulges.empty());
    c.out.integer(93, int64_t(loop.points.size()));
    for (size_t i = 0; i < loop.points.size(); ++i) {
      c.out.point(10, loop.points[i]);
      if (!loop.bulges.empty()) c.out.real(42, i < loop.bulges.size() ? loop.bulges[i] : 0.0);
    }
  }
  c.out.integer(76, m.patternType);
  if (!m.solidFill) writePattern(c, m);
  if (m.hasFillColor) {
    if (m.fillColor.isByColor()) c.out.integer(421, int64_t(m.fillColor.rgb()));
    else c.out.integer(63, m.fillColor.colorIndex());
  }
  c.out.point(11, OdGePoint2d(m.patternOffset.x, m.patternOffset.y));
  c.out.integer(99, 0);
  writeGradient(c, m.gradient);
  c.entityEnd(m);
}

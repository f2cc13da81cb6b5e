// HATCH: boundary loops in the hatch's plane; solid fills (and gradients, drawn in their first
// colour) as one shell whose faces carry their islands as holes; patterns as line families cut
// to the loops. A pattern too dense to draw is filled instead. MPOLYGON: the same fill, in its own
// colour when solid, and its boundary drawn.
#include <cmath>

#include "kit/gi/GiPolygonHoles.h"
#include "kit/gi/GiTessellation.h"
#include "kit/gi/HatchPatternLines.h"
#include "kit/gi/regen/RegenEntities.h"
#include "kit/gi/regen/RegenPrimitives.h"

namespace gi {

namespace {

constexpr size_t kMaxPatternSegments = 500000;

std::vector<OdGePoint2d> loopOutline(const HatchLoop& loop, double deviation) {
  std::vector<OdGePoint2d> out;
  if (loop.isPolyline()) {
    const size_t n = loop.points.size();
    if (n == 0) return out;
    out.push_back(loop.points[0]);
    size_t segments = n;  // hatch boundaries are closed
    for (size_t i = 0; i < segments; ++i) {
      double bulge = i < loop.bulges.size() ? loop.bulges[i] : 0.0;
      tessellateBulge(loop.points[i], loop.points[(i + 1) % n], bulge, deviation, out);
    }
  } else {
    tessellateEdges(loop.edges, deviation, out);
  }
  if (out.size() > 1 && out.front() == out.back()) out.pop_back();
  return out;
}

// Loops taking part by the hatch style: all (odd parity), the outer two levels, or the outermost.
std::vector<std::vector<OdGePoint2d>> selectedLoops(const HatchData& e, double deviation, std::vector<int>& depths) {
  std::vector<std::vector<OdGePoint2d>> loops;
  for (const HatchLoop& loop : e.loops) {
    std::vector<OdGePoint2d> outline = loopOutline(loop, deviation);
    if (outline.size() >= 3) loops.push_back(std::move(outline));
  }
  std::vector<int> all = loopDepths(loops);
  int maxDepth = e.style == 1 ? 1 : e.style == 2 ? 0 : 1 << 20;
  std::vector<std::vector<OdGePoint2d>> kept;
  depths.clear();
  for (size_t i = 0; i < loops.size(); ++i) {
    if (all[i] > maxDepth) continue;
    kept.push_back(std::move(loops[i]));
    depths.push_back(all[i]);
  }
  return kept;
}

void drawSolid(GiRegenContext& ctx, const HatchData& e, const std::vector<std::vector<OdGePoint2d>>& loops,
               const std::vector<int>& depths) {
  OdGeMatrix3d plane = OdGeMatrix3d::planeToWorld(e.normal);
  double z = e.elevationPoint.z;
  std::vector<OdGePoint3d> vertices;
  std::vector<int32_t> faces;
  auto addLoop = [&](const std::vector<OdGePoint2d>& loop, bool hole) {
    faces.push_back(hole ? -int32_t(loop.size()) : int32_t(loop.size()));
    for (const OdGePoint2d& p : loop) {
      faces.push_back(int32_t(vertices.size()));
      vertices.push_back(plane.transform(OdGePoint3d(p.x, p.y, z)));
    }
  };
  // Even depths are filled areas; the loops one level deeper inside them are their holes.
  for (size_t i = 0; i < loops.size(); ++i) {
    if (depths[i] % 2 != 0) continue;
    addLoop(loops[i], false);
    for (size_t j = 0; j < loops.size(); ++j) {
      if (depths[j] != depths[i] + 1) continue;
      if (pointInPolygon(loops[j][0], loops[i])) addLoop(loops[j], true);
    }
  }
  if (faces.empty()) return;
  OdGiFillType before = ctx.effectiveTraits().fillType;
  ctx.traits().setFillType(kOdGiFillAlways);
  ctx.geometry().shellProc(int32_t(vertices.size()), vertices.data(), int32_t(faces.size()), faces.data());
  ctx.traits().setFillType(before);
}

// Pattern lines of a hatch whose file gave none: ANSI31's 45-degree lines.
std::vector<HatchPatternLine> defaultPattern(const HatchData& e) {
  HatchPatternLine line;
  double scale = e.patternScale > 0.0 && std::isfinite(e.patternScale) ? e.patternScale : 1.0;
  line.angle = kPi / 4 + e.patternAngle;
  double spacing = 3.175 * scale;
  line.offset = OdGeVector2d(-std::sin(line.angle) * spacing, std::cos(line.angle) * spacing);
  return {line};
}

bool drawPattern(GiRegenContext& ctx, const HatchData& e, const std::vector<std::vector<OdGePoint2d>>& loops) {
  std::vector<HatchSegment> segments;
  const std::vector<HatchPatternLine> lines = e.patternLines.empty() ? defaultPattern(e) : e.patternLines;
  for (const HatchPatternLine& line : lines) {
    if (!hatchPatternSegments(loops, line, kMaxPatternSegments, segments)) return false;
  }
  OdGeMatrix3d plane = OdGeMatrix3d::planeToWorld(e.normal);
  double z = e.elevationPoint.z;
  const LinetypeRecord* linetype = ctx.effectiveTraits().lineType;
  double ltScale = ctx.effectiveTraits().lineTypeScale;
  ctx.traits().setLineType(nullptr, 1.0);  // pattern lines carry their own dashes
  for (const HatchSegment& s : segments) {
    OdGePoint3d pts[2] = {plane.transform(OdGePoint3d(s.from.x, s.from.y, z)),
                          plane.transform(OdGePoint3d(s.to.x, s.to.y, z))};
    ctx.geometry().polylineProc(s.from == s.to ? 1 : 2, pts);
  }
  ctx.traits().setLineType(linetype, ltScale);
  return true;
}

void drawFill(GiRegenContext& ctx, const HatchData& e) {
  std::vector<int> depths;
  std::vector<std::vector<OdGePoint2d>> loops = selectedLoops(e, ctx.localDeviation(), depths);
  if (loops.empty()) return;
  if (e.gradient.enabled && !e.gradient.colors.empty()) {
    ctx.setTraitsColor(e.gradient.colors.front().second);
    drawSolid(ctx, e, loops, depths);
    return;
  }
  if (e.solidFill) {
    drawSolid(ctx, e, loops, depths);
    return;
  }
  if (!drawPattern(ctx, e, loops)) drawSolid(ctx, e, loops, depths);
}

}  // namespace

void regenHatch(GiRegenContext& ctx, const HatchEntity& e) { drawFill(ctx, e); }

void regenMPolygon(GiRegenContext& ctx, const MPolygonEntity& e) {
  OdGiSubEntityTraitsData entityTraits = ctx.effectiveTraits();
  if (e.solidFill && e.hasFillColor) ctx.setTraitsColor(e.fillColor);
  drawFill(ctx, e);
  ctx.traits().setAll(entityTraits);
  OdGeMatrix3d plane = OdGeMatrix3d::planeToWorld(e.normal);
  for (const HatchLoop& loop : e.loops) {
    std::vector<OdGePoint2d> outline = loopOutline(loop, ctx.localDeviation());
    if (outline.size() < 2) continue;
    std::vector<OdGePoint3d> points;
    for (const OdGePoint2d& p : outline) points.push_back(plane.transform(OdGePoint3d(p.x, p.y, e.elevationPoint.z)));
    points.push_back(points.front());
    drawChain(ctx, points, &e.normal);
  }
}

}  // namespace gi

// Lightweight polylines and 2D/3D polylines: bulges, widths (a constant width stays a centre line
// with that width; varying widths become filled outlines), linetype generation along the whole
// polyline or per segment.
#include <cmath>

#include "kit/gi/regen/RegenEntities.h"
#include "kit/gi/regen/RegenPrimitives.h"

namespace gi {

namespace {

// Per-vertex widths that are all the same become the polyline's constant width.
void foldEqualWidths(OdGiPolyline& polyline) {
  if (polyline.widths.empty()) return;
  const size_t segments = polyline.numSegments();
  double w = polyline.widths[0].x;
  for (size_t i = 0; i < segments && i < polyline.widths.size(); ++i) {
    if (polyline.widths[i].x != w || polyline.widths[i].y != w) return;
  }
  polyline.constantWidth = w > 0.0 ? w : polyline.constantWidth;
  polyline.widths.clear();
}

bool isFrameVertex(const PolylineVertex& v) { return (v.flags & PolylineVertex::kSplineFrame) != 0; }

}  // namespace

void regenLwPolyline(GiRegenContext& ctx, const LwPolylineEntity& e) {
  OdGiPolyline polyline;
  polyline.points = e.points;
  polyline.bulges = e.bulges;
  polyline.widths = e.widths;
  polyline.constantWidth = e.constantWidth;
  polyline.elevation = e.elevation;
  polyline.normal = e.normal.isZeroLength() ? kDefaultNormal : e.normal;
  polyline.closed = e.isClosed();
  foldEqualWidths(polyline);
  if (polyline.hasVertexWidths() && ctx.fillMode()) {
    OdGiFillType before = ctx.effectiveTraits().fillType;
    ctx.traits().setFillType(kOdGiFillAlways);
    drawPline(ctx, polyline, true);
    ctx.traits().setFillType(before);
    return;
  }
  drawPline(ctx, polyline, (e.flags & LwPolylineEntity::kPlinegen) != 0);
}

void regenPolyline(GiRegenContext& ctx, const PolylineEntity& e) {
  // Spline- and curve-fitted polylines draw their generated vertices, not the frame.
  bool fitted = (e.flags & (PolylineEntity::kSplineFit | PolylineEntity::kCurveFit)) != 0;
  std::vector<const PolylineVertex*> vertices;
  for (const PolylineVertex& v : e.vertices) {
    if ((v.flags & PolylineVertex::kPolyfaceFace) != 0) continue;
    if (fitted && isFrameVertex(v)) continue;
    vertices.push_back(&v);
  }
  if (vertices.empty()) return;
  if (e.kind() == PolylineEntity::Kind::k3d) {
    std::vector<OdGePoint3d> points;
    for (const PolylineVertex* v : vertices) points.push_back(v->position);
    if (e.isClosed() && points.size() > 2) points.push_back(points.front());
    drawChain(ctx, points);
    return;
  }
  OdGiPolyline polyline;
  polyline.elevation = e.elevation != 0.0 ? e.elevation : vertices.front()->position.z;
  polyline.normal = e.normal.isZeroLength() ? kDefaultNormal : e.normal;
  polyline.closed = e.isClosed();
  bool anyWidth = false;
  bool anyBulge = false;
  for (const PolylineVertex* v : vertices) {
    polyline.points.push_back(v->position.to2d());
    polyline.bulges.push_back(v->bulge);
    double start = v->startWidth, end = v->endWidth;
    if (start == 0.0 && end == 0.0) {
      start = e.defaultStartWidth;
      end = e.defaultEndWidth;
    }
    polyline.widths.emplace_back(start, end);
    anyWidth = anyWidth || start > 0.0 || end > 0.0;
    anyBulge = anyBulge || v->bulge != 0.0;
  }
  if (!anyWidth) polyline.widths.clear();
  if (!anyBulge) polyline.bulges.clear();
  foldEqualWidths(polyline);
  bool plinegen = (e.flags & PolylineEntity::kPlinegen) != 0;
  if (polyline.hasVertexWidths() && ctx.fillMode()) {
    OdGiFillType before = ctx.effectiveTraits().fillType;
    ctx.traits().setFillType(kOdGiFillAlways);
    drawPline(ctx, polyline, true);
    ctx.traits().setFillType(before);
    return;
  }
  drawPline(ctx, polyline, plinegen);
}

}  // namespace gi

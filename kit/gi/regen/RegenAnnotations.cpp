// Dimensions and tables through the anonymous blocks that hold their graphics; leaders with their
// arrowheads; tolerance frames as their text.
#include <cmath>

#include "kit/db/DimStyleOverrides.h"
#include "kit/gi/regen/RegenEntities.h"
#include "kit/gi/regen/RegenPrimitives.h"

namespace gi {

void drawArrowhead(GiRegenContext& ctx, const OdGePoint3d& tip, const OdGePoint3d& from, double size,
                   const OdGeVector3d& normal) {
  OdGeVector3d along = from - tip;
  if (!(size > 0.0) || !std::isfinite(size) || along.isZeroLength()) return;
  along = along.normal();
  OdGeVector3d across = normal.normal().crossProduct(along);
  OdGePoint3d base = tip + along * size;
  // A closed filled arrow one third as wide as it is long.
  std::vector<OdGePoint3d> triangle = {tip, base + across * (size / 6), base - across * (size / 6)};
  OdGiSubEntityTraitsData before = ctx.effectiveTraits();
  ctx.traits().setLineType(nullptr, 1.0);
  drawFilledPolygon(ctx, triangle, &normal);
  ctx.traits().setAll(before);
}

namespace {

void drawOwnedBlock(GiRegenContext& ctx, const Entity& owner, const BlockRecord* block, const OdGeMatrix3d& placement) {
  if (!block || block->entities.empty()) return;
  if (!ctx.pushBlock(block, owner, ctx.blockTransform() * placement)) return;
  ctx.drawBlockEntities(*block);
  ctx.popBlock();
}

}  // namespace

void regenDimension(GiRegenContext& ctx, const DimensionEntity& e) {
  if (e.block && !e.block->entities.empty()) {
    // The block holds the dimension's graphics where they are drawn.
    drawOwnedBlock(ctx, e, e.block, OdGeMatrix3d());
    return;
  }
  regenDimensionFromStyle(ctx, e);
}

void regenTable(GiRegenContext& ctx, const TableEntity& e) {
  OdGeVector3d normal = e.normal.isZeroLength() ? kDefaultNormal : e.normal.normal();
  double angle = std::atan2(e.horizontalDirection.y, e.horizontalDirection.x);
  OdGeMatrix3d placement = OdGeMatrix3d::planeToWorld(normal) * OdGeMatrix3d::translation(e.position.asVector()) *
                           OdGeMatrix3d::rotation(std::isfinite(angle) ? angle : 0.0, OdGeVector3d::kZAxis());
  // A table's position is in world coordinates; undo the plane for it.
  if (!(normal == kDefaultNormal)) {
    OdGeMatrix3d toPlane;
    OdGeMatrix3d::planeToWorld(normal).invert(toPlane);
    placement = OdGeMatrix3d::planeToWorld(normal) *
                OdGeMatrix3d::translation(toPlane.transform(e.position).asVector()) *
                OdGeMatrix3d::rotation(std::isfinite(angle) ? angle : 0.0, OdGeVector3d::kZAxis());
  }
  drawOwnedBlock(ctx, e, e.block, placement);
}

void regenLeader(GiRegenContext& ctx, const LeaderEntity& e) {
  if (e.vertices.size() < 2) return;
  OdGeVector3d normal = e.normal.isZeroLength() ? kDefaultNormal : e.normal.normal();
  if (e.pathType == 1 && e.vertices.size() > 2) {
    drawNurbs(ctx, OdGeNurbCurve3d::throughPoints(e.vertices, {}, {}, false));
  } else {
    drawChain(ctx, e.vertices);
  }
  if (e.hasArrowhead) drawArrowhead(ctx, e.vertices[0], e.vertices[1], dimensionArrowSize(e, e.style), normal);
}

void regenTolerance(GiRegenContext& ctx, const ToleranceEntity& e) {
  if (e.text.empty()) return;
  // Frame separators become bars; the frames themselves are not drawn.
  std::string text = e.text;
  for (size_t at = text.find("%%v"); at != std::string::npos; at = text.find("%%v", at)) text.replace(at, 3, " | ");
  for (size_t at = text.find("^J"); at != std::string::npos; at = text.find("^J", at)) text.replace(at, 2, "  ");
  TextData data;
  data.text = text;
  data.position = e.position;
  data.normal = e.normal;
  data.rotation = std::atan2(e.direction.y, e.direction.x);
  if (!std::isfinite(data.rotation)) data.rotation = 0.0;
  data.height = e.style ? e.style->dimtxt() * e.style->dimscale() : ctx.database().header().dimTxt;
  data.verticalMode = TextData::kMiddleV;
  data.hasAlignmentPoint = true;
  data.alignmentPoint = e.position;
  regenText(ctx, data);
}

}  // namespace gi

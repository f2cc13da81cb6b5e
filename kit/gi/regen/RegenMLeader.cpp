// MLEADER: leader lines to their landing, doglegs, arrowheads, and the content (text or a block).
#include <cmath>

#include "kit/gi/regen/RegenEntities.h"
#include "kit/gi/regen/RegenPrimitives.h"

namespace gi {

namespace {

void drawLeaderLines(GiRegenContext& ctx, const MLeaderEntity& e, const OdGeVector3d& normal) {
  double arrow = e.contextArrowheadSize > 0.0 ? e.contextArrowheadSize : e.arrowheadSize;
  OdGiSubEntityTraitsData entityTraits = ctx.effectiveTraits();
  if (!e.leaderColor.isByBlock()) ctx.setTraitsColor(e.leaderColor);
  for (const MLeaderBranch& branch : e.branches) {
    for (const MLeaderLine& line : branch.lines) {
      std::vector<OdGePoint3d> points = line.vertices;
      if (branch.hasLastLeaderLinePoint) points.push_back(branch.lastLeaderLinePoint);
      if (points.size() < 2) continue;
      if (e.leaderType == 2 && points.size() > 2) drawNurbs(ctx, OdGeNurbCurve3d::throughPoints(points, {}, {}, false));
      else drawChain(ctx, points);
      drawArrowhead(ctx, points[0], points[1], arrow, normal);
    }
    if (branch.hasDogleg && e.doglegEnabled && branch.hasLastLeaderLinePoint && branch.doglegLength > 0.0 &&
        !branch.doglegVector.isZeroLength()) {
      OdGePoint3d end = branch.lastLeaderLinePoint + branch.doglegVector.normal() * branch.doglegLength;
      drawChain(ctx, {branch.lastLeaderLinePoint, end});
    }
  }
  ctx.traits().setAll(entityTraits);
}

void drawTextContent(GiRegenContext& ctx, const MLeaderEntity& e) {
  if (!e.hasMText || e.text.empty()) return;
  MTextData text;
  text.text = e.text;
  text.position = e.textLocation;
  text.normal = e.textNormal;
  text.xDirection = e.textDirection;
  text.height = e.contextTextHeight;
  text.referenceWidth = e.textWidth;
  text.attachment = e.textAttachment;
  text.lineSpacingFactor = e.textLineSpacingFactor;
  text.lineSpacingStyle = e.textLineSpacingStyle;
  text.style = ctx.database().findAs<TextStyleRecord>(e.contextTextStyle);
  if (!text.style) text.style = ctx.database().findAs<TextStyleRecord>(e.textStyle);
  OdGiSubEntityTraitsData entityTraits = ctx.effectiveTraits();
  if (!e.contextTextColor.isByBlock()) ctx.setTraitsColor(e.contextTextColor);
  regenMText(ctx, text);
  ctx.traits().setAll(entityTraits);
}

void drawBlockContent(GiRegenContext& ctx, const MLeaderEntity& e) {
  if (!e.hasBlock) return;
  const BlockRecord* block = ctx.database().findAs<BlockRecord>(e.contextBlock);
  if (!block) block = ctx.database().findAs<BlockRecord>(e.blockContent);
  if (!block || block->entities.empty()) return;
  OdGeMatrix3d m;
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) m.entry[r][c] = std::isfinite(e.blockTransform[r * 4 + c]) ? e.blockTransform[r * 4 + c] : 0.0;
  }
  if (m.determinant() == 0.0) m = OdGeMatrix3d::translation(e.blockPosition.asVector());
  if (!ctx.pushBlock(block, e, ctx.blockTransform() * m)) return;
  ctx.drawBlockEntities(*block);
  ctx.popBlock();
}

}  // namespace

void regenMLeader(GiRegenContext& ctx, const MLeaderEntity& e) {
  OdGeVector3d normal = e.planeXAxis.crossProduct(e.planeYAxis);
  normal = normal.isZeroLength() ? kDefaultNormal : normal.normal();
  if (e.leaderType != 0) drawLeaderLines(ctx, e, normal);
  if (e.contentType == MLeaderEntity::kMTextContent) drawTextContent(ctx, e);
  if (e.contentType == MLeaderEntity::kBlockContent) drawBlockContent(ctx, e);
}

}  // namespace gi

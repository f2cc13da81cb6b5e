// Block references: the block's entities (for an external reference, the referenced drawing's
// model space) through the reference's transform (and for arrays once per row and column),
// by-block traits from the reference, the clip boundary of a clipped reference, then the
// reference's attributes.
#include <algorithm>
#include <cmath>

#include "kit/db/ExternalReference.h"
#include "kit/gi/GiClipStage.h"
#include "kit/gi/regen/RegenEntities.h"

namespace gi {

namespace {

// More array cells than this are not drawn: a hostile MINSERT must not run for hours.
constexpr int64_t kMaxArrayCells = 100000;

OdGeMatrix3d referenceTransform(const BlockReferenceEntity& e, const OdGePoint3d& basePoint, double columnOffset,
                                double rowOffset) {
  OdGeMatrix3d plane = OdGeMatrix3d::planeToWorld(e.normal);
  OdGeVector3d scale = e.scale;
  if (!std::isfinite(scale.x) || scale.x == 0.0) scale.x = 1.0;
  if (!std::isfinite(scale.y) || scale.y == 0.0) scale.y = 1.0;
  if (!std::isfinite(scale.z) || scale.z == 0.0) scale.z = 1.0;
  return plane * OdGeMatrix3d::translation(e.position.asVector()) *
         OdGeMatrix3d::rotation(e.rotation, OdGeVector3d::kZAxis()) *
         OdGeMatrix3d::translation({columnOffset, rowOffset, 0.0}) * OdGeMatrix3d::scaling(scale.x, scale.y, scale.z) *
         OdGeMatrix3d::translation(-basePoint.asVector());
}

// The clip boundary of a clipped reference in block coordinates, or empty.
std::vector<OdGePoint3d> clipBoundaryInBlock(const GiRegenContext& ctx, const BlockReferenceEntity& e) {
  const SpatialFilterObject* filter = ctx.database().spatialFilterOf(e);
  // A clip switched off (XCLIP OFF) keeps its boundary but shows the whole reference.
  if (!filter || !filter->displayBoundary || filter->boundary.size() < 2) return {};
  std::vector<OdGePoint2d> loop = filter->boundary;
  if (loop.size() == 2) {
    OdGePoint2d a = loop[0], b = loop[1];
    loop = {a, {b.x, a.y}, b, {a.x, b.y}};
  }
  OdGeMatrix3d plane = OdGeMatrix3d::planeToWorld(filter->normal);
  OdGeMatrix3d toBlock = filter->inverseInsertTransform * filter->clipTransform;
  std::vector<OdGePoint3d> result;
  for (const OdGePoint2d& p : loop) {
    result.push_back(toBlock.transform(plane.transform(OdGePoint3d(p.x, p.y, 0.0)) + filter->origin.asVector()));
  }
  return result;
}

void pushClip(GiRegenContext& ctx, const std::vector<OdGePoint3d>& boundary) {
  if (boundary.size() < 3 || !ctx.clipStage()) return;
  OdGeMatrix3d toOutput = ctx.viewTransform() * ctx.blockTransform();
  std::vector<OdGePoint2d> outline;
  for (const OdGePoint3d& p : boundary) outline.push_back(toOutput.transform(p).to2d());
  ctx.clipStage()->pushBoundary(std::move(outline));
  ctx.markFrameClipped();
}

// What a reference to a block draws: the block's own entities, or for an external reference the
// referenced drawing's model space (nothing while that drawing is not loaded).
struct BlockContent {
  const BlockRecord* entities = nullptr;
  const ExternalReference* xref = nullptr;
  OdGePoint3d basePoint;
};

BlockContent contentOf(const GiRegenContext& ctx, const BlockRecord* block) {
  if (!block) return {};
  if (!block->isFromExternalReference()) return {block, nullptr, block->basePoint};
  const ExternalReference* xref = ctx.database().externalReference(block);
  if (!xref || !xref->isResolved()) return {};
  return {xref->content(), xref, xref->basePoint()};
}

void drawAttributes(GiRegenContext& ctx, const BlockReferenceEntity& e, const GiBlockFrame& frame) {
  if (e.attributes.empty()) return;
  // Attributes are placed in the coordinates the reference itself lives in, and take by-block
  // traits from the reference.
  GiBlockFrame attributeFrame = frame;
  attributeFrame.block = nullptr;
  attributeFrame.transform = ctx.blockTransform();
  if (!ctx.pushFrame(attributeFrame)) return;
  for (const AttributeEntity* attribute : e.attributes) {
    if (attribute) ctx.drawNested(*attribute);
  }
  ctx.popBlock();
}

}  // namespace

void regenBlockReference(GiRegenContext& ctx, const BlockReferenceEntity& e) {
  const BlockRecord* block = e.block;
  GiBlockFrame frame = ctx.frameFor(e, block);
  const BlockContent content = contentOf(ctx, block);
  if (content.entities && !content.entities->entities.empty()) {
    int rows = std::max<int>(1, e.rowCount), columns = std::max<int>(1, e.columnCount);
    if (int64_t(rows) * columns > kMaxArrayCells) rows = int(std::max<int64_t>(1, kMaxArrayCells / columns));
    std::vector<OdGePoint3d> clip = clipBoundaryInBlock(ctx, e);
    for (int r = 0; r < rows; ++r) {
      for (int c = 0; c < columns; ++c) {
        GiBlockFrame cell = frame;
        cell.xref = content.xref;
        cell.transform = ctx.blockTransform() *
                         referenceTransform(e, content.basePoint, c * e.columnSpacing, r * e.rowSpacing);
        if (!ctx.pushFrame(cell)) return;
        pushClip(ctx, clip);
        ctx.drawBlockEntities(*content.entities);
        ctx.popBlock();
      }
    }
  }
  drawAttributes(ctx, e, frame);
}

}  // namespace gi

#include "kit/gi/regen/GiRegenContext.h"

#include <algorithm>
#include <cmath>

#include "kit/db/ExternalReference.h"
#include "kit/gi/GiClipStage.h"
#include "kit/gi/GiClipping.h"

namespace {

constexpr size_t kMaxBlockDepth = 32;

bool isLayerZero(const LayerRecord* layer) { return layer && layer->name == "0"; }

}  // namespace

GiRegenContext::GiRegenContext(const OdDbDatabase& db, OdGiConveyorGeometry& output, GiRegenHost* host)
    : db_(db), host_(host), xform_(&output) {
  const DatabaseHeader& header = db.header();
  fillMode_ = header.fillMode;
}

void GiRegenContext::setViewTransform(const OdGeMatrix3d& worldToOutput) {
  view_ = worldToOutput;
  applyTransform();
}

void GiRegenContext::applyTransform() { xform_.setMatrix(view_ * blockTransform()); }

OdGiConveyorGeometry& GiRegenContext::geometry() {
  if (traits_.isModified()) {
    traits_.setModified(false);
    if (host_) host_->onTraitsModified();
  }
  return xform_;
}

double GiRegenContext::localDeviation() const {
  double scale = gi::matrixScale(xform_.matrix());
  return scale > 0.0 && std::isfinite(scale) ? outputDeviation_ / scale : outputDeviation_;
}

// ---- Entities -----------------------------------------------------------------------------------

void GiRegenContext::drawNested(const Entity& entity) {
  if (host_) host_->drawNested(entity);
  else regenEntity(*this, entity);
}

const OdDbDatabase& GiRegenContext::database() const {
  for (auto frame = frames_.rbegin(); frame != frames_.rend(); ++frame) {
    if (frame->xref && frame->xref->drawing) return *frame->xref->drawing;
  }
  return db_;
}

// Each external reference maps the records of its drawing to those of the drawing around it.
template <class Record>
const Record* GiRegenContext::hostRecord(const Record* record) const {
  for (auto frame = frames_.rbegin(); frame != frames_.rend() && record; ++frame) {
    if (frame->xref) record = frame->xref->hostRecord(record);
  }
  return record;
}

const LayerRecord* GiRegenContext::effectiveLayer(const Entity& entity) const {
  const LayerRecord* layer = hostRecord(entity.layer);
  if (!frames_.empty() && (isLayerZero(layer) || !layer) && frames_.back().layer) return frames_.back().layer;
  return layer;
}

bool GiRegenContext::isLayerVisible(const LayerRecord* layer) const {
  if (!layer) return true;
  if (layer->isOff() || layer->isFrozen()) return false;
  return std::find(vpFrozen_.begin(), vpFrozen_.end(), layer) == vpFrozen_.end();
}

OdCmEntityColor GiRegenContext::resolveColor(const OdCmEntityColor& color, const LayerRecord* layer) const {
  if (color.isByLayer()) {
    OdCmEntityColor layerColor = layer ? layer->color : OdCmEntityColor::fromACI(7);
    return layerColor.isByLayer() || layerColor.isByBlock() ? OdCmEntityColor::fromACI(7) : layerColor;
  }
  if (color.isByBlock()) return frames_.empty() ? OdCmEntityColor::fromACI(7) : frames_.back().color;
  if (color.isForeground() || color.isNone()) return OdCmEntityColor::fromACI(7);
  return color;
}

const LinetypeRecord* GiRegenContext::resolveLinetype(const Entity& entity) const {
  const LinetypeRecord* lt = hostRecord(entity.linetype);
  if (!lt || lt->isByLayer()) {
    const LayerRecord* layer = effectiveLayer(entity);
    lt = layer ? layer->linetype : nullptr;
    if (lt && (lt->isByLayer() || lt->isByBlock())) lt = nullptr;
    return lt;
  }
  if (lt->isByBlock()) return frames_.empty() ? nullptr : frames_.back().linetype;
  return lt;
}

int16_t GiRegenContext::resolveLineweight(int16_t lineweight, const LayerRecord* layer) const {
  const int16_t kDefault = kLnWtByLwDefault;
  if (lineweight == kLnWtByLayer) {
    int16_t w = layer ? layer->lineweight : kDefault;
    return w < 0 ? kDefault : w;
  }
  if (lineweight == kLnWtByBlock) return frames_.empty() ? kDefault : frames_.back().lineweight;
  return lineweight < 0 ? kDefault : lineweight;
}

double GiRegenContext::linetypeScaleFor(const Entity& entity) const {
  double scale = db_.header().ltScale * entity.linetypeScale / ltViewFactor_;
  return (scale > 0.0 && std::isfinite(scale)) ? scale : 1.0;
}

bool GiRegenContext::beginEntity(const Entity& entity) {
  if (!entity.isVisible()) return false;
  const LayerRecord* layer = effectiveLayer(entity);
  if (entity.type == DbType::kBlockReference) {
    // A reference on a layer that is off still shows its contents on other layers.
    if (layer && (layer->isFrozen() ||
                  std::find(vpFrozen_.begin(), vpFrozen_.end(), layer) != vpFrozen_.end())) {
      return false;
    }
  } else if (!isLayerVisible(layer)) {
    return false;
  }
  current_ = &entity;
  OdGiSubEntityTraitsData data;
  data.trueColor = resolveColor(entity.color, layer);
  data.layer = layer;
  data.lineType = resolveLinetype(entity);
  data.lineTypeScale = linetypeScaleFor(entity);
  data.lineWeight = resolveLineweight(entity.lineweight, layer);
  data.fillType = kOdGiFillNever;
  if (entity.transparency.isByLayer()) data.transparency = layer ? layer->transparency : OdCmTransparency();
  else if (entity.transparency.isByBlock()) data.transparency = frames_.empty() ? OdCmTransparency() : frames_.back().transparency;
  else data.transparency = entity.transparency;
  traits_.setAll(data);
  return true;
}

void GiRegenContext::setTraitsColor(const OdCmEntityColor& color) {
  const LayerRecord* layer = current_ ? effectiveLayer(*current_) : nullptr;
  traits_.setTrueColor(resolveColor(color, layer));
}

// ---- Blocks ---------------------------------------------------------------------------------------

const OdGeMatrix3d& GiRegenContext::blockTransform() const {
  static const OdGeMatrix3d identity;
  return frames_.empty() ? identity : frames_.back().transform;
}

GiBlockFrame GiRegenContext::frameFor(const Entity& owner, const BlockRecord* block) const {
  const OdGiSubEntityTraitsData& t = traits_.traits();
  GiBlockFrame frame;
  frame.color = t.trueColor;
  frame.linetype = t.lineType;
  frame.linetypeScale = t.lineTypeScale;
  frame.lineweight = t.lineWeight;
  frame.transparency = t.transparency;
  frame.layer = effectiveLayer(owner);
  frame.owner = &owner;
  frame.block = block;
  return frame;
}

bool GiRegenContext::pushFrame(const GiBlockFrame& frame) {
  if (frames_.size() >= kMaxBlockDepth) return false;
  if (frame.block) {
    for (const GiBlockFrame& outer : frames_) {
      if (outer.block == frame.block) return false;  // a block that contains itself
    }
  }
  frames_.push_back(frame);
  frames_.back().clipped = false;
  applyTransform();
  return true;
}

bool GiRegenContext::pushBlock(const BlockRecord* block, const Entity& owner, const OdGeMatrix3d& blockToWorld) {
  GiBlockFrame frame = frameFor(owner, block);
  frame.transform = blockToWorld;
  return pushFrame(frame);
}

void GiRegenContext::popBlock() {
  if (frames_.empty()) return;
  if (frames_.back().clipped && clip_) clip_->popBoundary();
  frames_.pop_back();
  applyTransform();
}

void GiRegenContext::markFrameClipped() {
  if (!frames_.empty()) frames_.back().clipped = true;
}

void GiRegenContext::drawBlockEntities(const BlockRecord& block) {
  for (const Entity* child : block.entities) {
    if (!child) continue;
    drawNested(*child);
    current_ = nullptr;
  }
}

OdGiTextStyle GiRegenContext::textStyleOf(const TextStyleRecord* style, double height, double widthFactor,
                                          double oblique) const {
  OdGiTextStyle result;
  if (style) {
    result.setFileName(toOdString(style->fontFile));
    result.setBigFontFileName(toOdString(style->bigFontFile));
    // TrueType flags as the style's extended data gives them: bit 24 italic, bit 25 bold.
    bool italic = (style->trueTypeFlags & 0x1000000) != 0;
    bool bold = (style->trueTypeFlags & 0x2000000) != 0;
    int charset = (style->trueTypeFlags >> 8) & 0xFF;
    int pitch = style->trueTypeFlags & 0xFF;
    result.setTypeface(toOdString(style->trueTypeFace), bold, italic, charset, pitch);
    result.setVertical(style->isVertical());
    result.setShapeFile(style->isShapeFile());
  }
  result.setTextSize(height);
  result.setXScale(widthFactor);
  result.setObliquingAngle(oblique);
  return result;
}

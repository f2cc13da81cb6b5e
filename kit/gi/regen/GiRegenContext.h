// The state of one regeneration: the database, the conveyor the primitives go to (through a
// transform stage holding the block and view transforms), the traits of the entity being drawn
// and the by-block traits of the block references around it, layer visibility, linetype scaling
// and the deviation. Entity regenerators (kit/gi/regen/Regen*.cpp) emit through it.
#pragma once

#include <vector>

#include "kit/db/OdDbDatabase.h"
#include "kit/gi/GiTransformStage.h"
#include "kit/gi/OdGiDrawable.h"
#include "kit/gi/OdGiSubEntityTraits.h"
#include "kit/gi/OdGiTextStyle.h"
#include "kit/gi/regen/GiRegenHost.h"

class GiClipStage;
struct ExternalReference;

// Traits a block reference passes to the entities inside it that say "by block", and the layer
// its layer-0 entities take.
struct GiBlockFrame {
  OdCmEntityColor color = OdCmEntityColor::fromACI(7);
  const LinetypeRecord* linetype = nullptr;  // null: continuous
  double linetypeScale = 1.0;
  int16_t lineweight = kLnWtByLwDefault;
  OdCmTransparency transparency;
  const LayerRecord* layer = nullptr;
  const Entity* owner = nullptr;  // the block reference (or dimension, table ...)
  const BlockRecord* block = nullptr;
  // Set for the contents of an external reference: they belong to the referenced drawing, and
  // their layers and linetypes stand for the host's "block|name" records.
  const ExternalReference* xref = nullptr;
  OdGeMatrix3d transform;  // block coordinates to world
  bool clipped = false;    // a clip boundary was pushed for this frame
};

class GiRegenContext {
public:
  GiRegenContext(const OdDbDatabase& db, OdGiConveyorGeometry& output, GiRegenHost* host = nullptr);

  // The database of what is being drawn: inside an external reference, the referenced drawing.
  const OdDbDatabase& database() const;
  // The database the regeneration was started for.
  const OdDbDatabase& hostDatabase() const { return db_; }
  GiRegenHost* host() const { return host_; }

  // ---- Output -------------------------------------------------------------------------------
  // The view's world-to-output transform; block transforms are applied on top of it.
  void setViewTransform(const OdGeMatrix3d& worldToOutput);
  const OdGeMatrix3d& viewTransform() const { return view_; }
  // The conveyor for the next primitive, in the coordinates of the block being drawn; changed
  // traits are reported to the host first.
  OdGiConveyorGeometry& geometry();
  // The deviation in output units, and the same in the current block's units.
  void setOutputDeviation(double deviation) { outputDeviation_ = deviation > 0.0 ? deviation : 0.5; }
  double outputDeviation() const { return outputDeviation_; }
  double localDeviation() const;
  // The stage that clip boundaries go to (in output coordinates); null when nothing clips.
  void setClipStage(GiClipStage* clip) { clip_ = clip; }
  GiClipStage* clipStage() const { return clip_; }

  // ---- Entities -----------------------------------------------------------------------------
  // Draws an entity through the host (or directly without one): the entry for block contents.
  void drawNested(const Entity& entity);
  // Resolves and sets the entity's traits; false when the entity is not to be drawn (invisible,
  // on a layer that is off or frozen here).
  bool beginEntity(const Entity& entity);
  const Entity* currentEntity() const { return current_; }
  OdGiSubEntityTraitsImpl& traits() { return traits_; }
  const OdGiSubEntityTraitsData& effectiveTraits() const { return traits_.traits(); }
  void setTraitsColor(const OdCmEntityColor& color);  // resolves by layer / by block

  // ---- Blocks -------------------------------------------------------------------------------
  const std::vector<GiBlockFrame>& blockStack() const { return frames_; }
  size_t blockDepth() const { return frames_.size(); }
  // Enters a block: its entities are drawn through `blockToWorld`, with by-block traits taken from
  // `owner`. False (and nothing entered) when the block is already being drawn or the nesting is
  // too deep.
  bool pushBlock(const BlockRecord* block, const Entity& owner, const OdGeMatrix3d& blockToWorld);
  // The same in two steps, for block references drawn several times (arrays): the frame is taken
  // once from the owner's traits, then pushed per instance with its own transform.
  GiBlockFrame frameFor(const Entity& owner, const BlockRecord* block) const;
  bool pushFrame(const GiBlockFrame& frame);
  void popBlock();
  // Marks the innermost frame as owning a clip boundary (popped with the frame).
  void markFrameClipped();
  const OdGeMatrix3d& blockTransform() const;
  // Draws every entity of a block in its current frame.
  void drawBlockEntities(const BlockRecord& block);

  // ---- Resolution ---------------------------------------------------------------------------
  // The entity's layer as the host drawing knows it (through the external references around it);
  // entities on layer 0 inside a block take the layer of the reference that shows them.
  const LayerRecord* effectiveLayer(const Entity& entity) const;
  bool isLayerVisible(const LayerRecord* layer) const;
  // Layers frozen in the viewport being drawn.
  void setViewportFrozenLayers(std::vector<const LayerRecord*> layers) { vpFrozen_ = std::move(layers); }
  OdCmEntityColor resolveColor(const OdCmEntityColor& color, const LayerRecord* layer) const;
  const LinetypeRecord* resolveLinetype(const Entity& entity) const;
  int16_t resolveLineweight(int16_t lineweight, const LayerRecord* layer) const;
  // LTSCALE times the entity's scale, divided by the view's factor (paper-space scaling of model
  // linetypes in viewports).
  double linetypeScaleFor(const Entity& entity) const;
  void setLinetypeViewFactor(double factor) { ltViewFactor_ = factor > 0.0 ? factor : 1.0; }
  // Text style values as the conveyor carries them.
  OdGiTextStyle textStyleOf(const TextStyleRecord* style, double height, double widthFactor, double oblique) const;

  // ---- Display settings ---------------------------------------------------------------------
  bool fillMode() const { return fillMode_; }
  void setFillMode(bool on) { fillMode_ = on; }
  OdCmEntityColor backgroundColor() const { return background_; }
  void setBackgroundColor(const OdCmEntityColor& color) { background_ = color; }
  // Paper space: attribute definitions and viewports are drawn differently there.
  bool drawingPaperSpace() const { return paperSpace_; }
  void setDrawingPaperSpace(bool value) { paperSpace_ = value; }
  // The height of the view in world units (point symbols sized relative to the view use it).
  double viewHeight() const { return viewHeight_; }
  void setViewHeight(double height) { viewHeight_ = height; }

private:
  void applyTransform();
  // A record of the drawing being drawn as the host drawing knows it.
  template <class Record>
  const Record* hostRecord(const Record* record) const;

  const OdDbDatabase& db_;
  GiRegenHost* host_;
  GiTransformStage xform_;
  GiClipStage* clip_ = nullptr;
  OdGeMatrix3d view_;
  double outputDeviation_ = 0.5;
  OdGiSubEntityTraitsImpl traits_;
  const Entity* current_ = nullptr;
  std::vector<GiBlockFrame> frames_;
  std::vector<const LayerRecord*> vpFrozen_;
  double ltViewFactor_ = 1.0;
  bool fillMode_ = true;
  OdCmEntityColor background_ = OdCmEntityColor::fromRGB(255, 255, 255);
  bool paperSpace_ = false;
  double viewHeight_ = 0.0;
};

// Draws one entity: the kit's regeneration of every entity kind (kit/gi/regen/RegenDispatch.cpp).
void regenEntity(GiRegenContext& ctx, const Entity& entity);

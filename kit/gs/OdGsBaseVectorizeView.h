// The kit's view: holds the eye, the place on the device, clipping and per-view frozen layers, and
// regenerates its block's entities through the conveyor into the device's destination geometry.
// Views of the system derive from OdGsBaseVectorizeViewDef and override the hooks marked below.
#pragma once

#include <memory>
#include <vector>

#include "kit/db/OdDbDatabase.h"
#include "kit/gi/GiClipStage.h"
#include "kit/gi/OdGiDeviation.h"
#include "kit/gi/OdGiDrawable.h"
#include "kit/gi/OdGiSubEntityTraits.h"
#include "kit/gi/regen/GiRegenContext.h"
#include "kit/gi/regen/GiRegenHost.h"
#include "kit/gs/OdGsView.h"

class OdGsBaseVectorizeDevice;

class OdGsBaseVectorizeViewDef : public OdGsView,
                                 public GiRegenHost,
                                 public OdGiConveyorContext,
                                 public OdGiDeviation {
public:
  OdGsBaseVectorizeViewDef();
  ~OdGsBaseVectorizeViewDef() override;

  // Binds the view to its device (which draws it) and records where it comes from.
  void init(OdGsBaseVectorizeDevice* device, const OdGsClientViewInfo* viewInfo = nullptr,
            bool enableLayerVisibilityPerView = false);

  OdGsDevice* device() const override;
  OdGsBaseVectorizeDevice* baseDevice() const { return device_; }
  OdGiContextForDbDatabase* userGiContext() const override;
  const OdGsClientViewInfo& clientViewInfo() const override { return info_; }

  void setSceneBlock(const BlockRecord* block) override { block_ = block; }
  const BlockRecord* sceneBlock() const override { return block_; }

  void setView(const OdGePoint3d& position, const OdGePoint3d& target, const OdGeVector3d& upVector,
               double fieldWidth, double fieldHeight, Projection projection = kParallel) override;
  OdGePoint3d position() const override { return position_; }
  OdGePoint3d target() const override { return target_; }
  OdGeVector3d upVector() const override { return up_; }
  double fieldWidth() const override { return fieldWidth_; }
  double fieldHeight() const override { return fieldHeight_; }
  bool isPerspective() const override { return perspective_; }
  double lensLength() const override { return lensLength_; }
  void setLensLength(double lensLength) override { lensLength_ = lensLength; }

  void setEnableFrontClip(bool enable) override { frontClipOn_ = enable; }
  bool isFrontClipped() const override { return frontClipOn_; }
  void setFrontClip(double distance) override { frontClip_ = distance; }
  double frontClip() const override { return frontClip_; }
  void setEnableBackClip(bool enable) override { backClipOn_ = enable; }
  bool isBackClipped() const override { return backClipOn_; }
  void setBackClip(double distance) override { backClip_ = distance; }
  double backClip() const override { return backClip_; }

  void setViewport(const OdGePoint2d& lowerLeft, const OdGePoint2d& upperRight) override;
  void getViewport(OdGePoint2d& lowerLeft, OdGePoint2d& upperRight) const override;
  void setViewport(const OdGsDCRect& screenRect) override;
  void getViewport(OdGsDCRect& screenRect) const override;
  void setViewportClipRegion(int numContours, const int* counts, const OdGePoint2d* vertices) override;
  void viewportClipRegion(std::vector<int>& counts, std::vector<OdGePoint2d>& vertices) const override;
  void removeViewportClipRegion() override;

  void freezeLayer(const LayerRecord* layer) override;
  void thawLayer(const LayerRecord* layer) override;
  void clearFrozenLayers() override { frozen_.clear(); }
  const std::vector<const LayerRecord*>& frozenLayers() const override { return frozen_; }

  void zoom(double factor) override;
  void zoomExtents(const OdGePoint3d& minPoint, const OdGePoint3d& maxPoint) override;

  OdGeMatrix3d eyeToWorldMatrix() const override;
  OdGeMatrix3d worldToEyeMatrix() const override;
  OdGeMatrix3d worldToDeviceMatrix() const override;

  // ---- Placement inside a paper-space view ----------------------------------------------------
  // A viewport of a layout: its place on the device follows the paper view's mapping of the
  // viewport's paper rectangle (and of its clip loops, paper coordinates, when not empty: inside
  // where an odd number of loops hold a point), so that it stays right when the device is resized
  // or the paper view zoomed. Not owned.
  void setPaperPlacement(const OdGsView* paperView, const OdGePoint2d& paperMin, const OdGePoint2d& paperMax,
                         gi::ClipLoops paperClip = {});
  const OdGsView* paperView() const { return paperView_.get(); }
  // Linetype patterns of model space are divided by this factor (PSLTSCALE in a viewport).
  void setLinetypeScaleFactor(double factor) { linetypeFactor_ = factor; }
  double linetypeScaleFactor() const { return linetypeFactor_; }

  // ---- Hooks ------------------------------------------------------------------------------------
  // Hook: draws the view. Base: sets up a regeneration with the world-to-device transform,
  // clipping to the viewport rectangle or clip outline in device units, the per-view frozen layers
  // and the deviation for the device resolution; calls beginViewVectorization(), draw() for each
  // entity of the scene block in draw order, then endViewVectorization().
  void update() override;
  // Hook: the start of vectorization, once the regeneration is set up. Base: gives the
  // destination geometry (when it is a simplifier) this view's deviation and traits.
  virtual void beginViewVectorization();
  // Hook: the end of vectorization. Base: nothing.
  virtual void endViewVectorization();
  // Hook: draws one entity (top-level or met inside a block). Base: regenerates it.
  virtual void draw(const OdGiDrawable* drawable);
  // Hook: the traits of the entity being drawn changed; effectiveTraits() has the new ones. Base:
  // counts the changes.
  void onTraitsModified() override;

  // ---- Queries for overriding views -------------------------------------------------------------
  const OdDbDatabase* database() const;
  bool isVectorizing() const { return ctx_ != nullptr; }
  // The regeneration under way, or null outside update().
  GiRegenContext* regenContext() const { return ctx_; }
  // Block references entered around the entity being drawn (0 at the top level).
  size_t blockDepth() const;
  // Block coordinates of the entity being drawn to world (identity at the top level).
  OdGeMatrix3d blockToWorldTransform() const;
  const OdGiSubEntityTraitsData& effectiveTraits() const override;
  size_t traitsChangeCount() const { return traitsChanges_; }
  // Deviations in device units, the same for every kind; the view is its own deviation object.
  double deviation(OdGiDeviationType type, const OdGePoint3d& point) const override;
  const OdGiDeviation& deviationObject() const { return *this; }
  void setDeviceDeviation(double deviceUnits);
  // The geometric extents of one entity in the coordinates of its block; false when it has none.
  bool entityGeomExtents(const OdGiDrawable& drawable, OdGeExtents3d& extents) const;
  // The view's rectangle on the device (min <= max in both axes), as exact values.
  void deviceRect(double& xmin, double& ymin, double& xmax, double& ymax) const;
  // The clip loops of an update, device units: the viewport's clip loops, or the corners of its
  // rectangle when it has none.
  gi::ClipLoops deviceClipLoops() const;

  // GiRegenHost: a nested entity goes through draw().
  bool drawNested(const OdGiDrawable& entity) override;

private:
  OdGeMatrix3d eyeToDeviceMatrix() const;
  // The front and back clipping planes, when on, as the clip stage's depth limits.
  void applyDepthClipping(GiClipStage& clip) const;
  void vectorizeScene(GiRegenContext& ctx);

  OdGsBaseVectorizeDevice* device_ = nullptr;
  OdGsClientViewInfo info_;
  const BlockRecord* block_ = nullptr;
  OdGePoint3d position_{0.0, 0.0, 1.0};
  OdGePoint3d target_;
  OdGeVector3d up_{0.0, 1.0, 0.0};
  double fieldWidth_ = 1.0;
  double fieldHeight_ = 1.0;
  bool perspective_ = false;
  double lensLength_ = 50.0;
  bool frontClipOn_ = false;
  bool backClipOn_ = false;
  double frontClip_ = 0.0;
  double backClip_ = 0.0;
  OdGePoint2d ndcMin_{0.0, 0.0};
  OdGePoint2d ndcMax_{1.0, 1.0};
  std::vector<int> clipCounts_;
  std::vector<OdGePoint2d> clipVertices_;
  std::vector<const LayerRecord*> frozen_;
  OdSmartPtr<const OdGsView> paperView_;
  OdGePoint2d paperMin_;
  OdGePoint2d paperMax_;
  gi::ClipLoops paperClip_;
  double linetypeFactor_ = 1.0;
  double deviceDeviation_ = 0.5;
  GiRegenContext* ctx_ = nullptr;
  size_t traitsChanges_ = 0;
};

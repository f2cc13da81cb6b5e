// What a device shows: a view looks at one block (model space, a layout's paper) from an eye
// point, and maps its field to a part of the device's output rectangle. Views are made by a device
// (OdGsDevice::createView) and drawn by its update.
#pragma once

#include <cstdint>
#include <vector>

#include "kit/base/Geometry.h"
#include "kit/base/OdRxObject.h"
#include "kit/db/Handle.h"

struct BlockRecord;
struct LayerRecord;
class OdGsDevice;
class OdGiContextForDbDatabase;

// A rectangle of device units. Given with ymin above ymax (as screens and images count rows), device
// y grows downward; given bottom-up, it grows upward like the drawing's.
struct OdGsDCRect {
  long xmin = 0;
  long xmax = 0;
  long ymin = 0;
  long ymax = 0;

  OdGsDCRect() = default;
  OdGsDCRect(long xMin, long xMax, long yMin, long yMax) : xmin(xMin), xmax(xMax), ymin(yMin), ymax(yMax) {}
  bool operator==(const OdGsDCRect&) const = default;
};

// What the creator of a view tells it about where it comes from.
struct OdGsClientViewInfo {
  int32_t viewportId = -1;    // the viewport's number in its layout, -1 when none
  OdDbHandle viewportObjectId;  // the VPORT record or viewport entity shown
  uint32_t viewportFlags = 0;
};

class OdGsView : public OdRxObject {
public:
  enum Projection { kParallel = 0, kPerspective = 1 };

  virtual OdGsDevice* device() const = 0;
  virtual OdGiContextForDbDatabase* userGiContext() const = 0;
  virtual const OdGsClientViewInfo& clientViewInfo() const = 0;

  // ---- What is drawn ------------------------------------------------------------------------
  // The block whose entities the view draws (model space or a layout's block).
  virtual void setSceneBlock(const BlockRecord* block) = 0;
  virtual const BlockRecord* sceneBlock() const = 0;

  // ---- Eye ----------------------------------------------------------------------------------
  // `target` is the point at the centre of the view; the view looks from `position` towards it.
  virtual void setView(const OdGePoint3d& position, const OdGePoint3d& target, const OdGeVector3d& upVector,
                       double fieldWidth, double fieldHeight, Projection projection = kParallel) = 0;
  virtual OdGePoint3d position() const = 0;
  virtual OdGePoint3d target() const = 0;
  virtual OdGeVector3d upVector() const = 0;
  virtual double fieldWidth() const = 0;
  virtual double fieldHeight() const = 0;
  virtual bool isPerspective() const = 0;
  virtual double lensLength() const = 0;
  virtual void setLensLength(double lensLength) = 0;

  virtual void setEnableFrontClip(bool enable) = 0;
  virtual bool isFrontClipped() const = 0;
  virtual void setFrontClip(double distance) = 0;
  virtual double frontClip() const = 0;
  virtual void setEnableBackClip(bool enable) = 0;
  virtual bool isBackClipped() const = 0;
  virtual void setBackClip(double distance) = 0;
  virtual double backClip() const = 0;

  // ---- Place on the device ------------------------------------------------------------------
  // Normalised device coordinates: (0, 0) the lower left and (1, 1) the upper right of the
  // device's output rectangle.
  virtual void setViewport(const OdGePoint2d& lowerLeft, const OdGePoint2d& upperRight) = 0;
  virtual void getViewport(OdGePoint2d& lowerLeft, OdGePoint2d& upperRight) const = 0;
  // The same in device units.
  virtual void setViewport(const OdGsDCRect& screenRect) = 0;
  virtual void getViewport(OdGsDCRect& screenRect) const = 0;
  // A clip outline in device units: contours of `counts[i]` vertices each. No contour: the
  // viewport rectangle clips.
  virtual void setViewportClipRegion(int numContours, const int* counts, const OdGePoint2d* vertices) = 0;
  virtual void viewportClipRegion(std::vector<int>& counts, std::vector<OdGePoint2d>& vertices) const = 0;
  virtual void removeViewportClipRegion() = 0;

  // ---- Layers -------------------------------------------------------------------------------
  virtual void freezeLayer(const LayerRecord* layer) = 0;
  virtual void thawLayer(const LayerRecord* layer) = 0;
  virtual void clearFrozenLayers() = 0;
  virtual const std::vector<const LayerRecord*>& frozenLayers() const = 0;

  // ---- Zoom ---------------------------------------------------------------------------------
  // Factor > 1 shows less (closer), < 1 more.
  virtual void zoom(double factor) = 0;
  // Centres the view on the box (world coordinates) and fits the field to it.
  virtual void zoomExtents(const OdGePoint3d& minPoint, const OdGePoint3d& maxPoint) = 0;

  // ---- Matrices -----------------------------------------------------------------------------
  // Eye coordinates: origin at the target, x to the right, y up, z towards the eye.
  virtual OdGeMatrix3d eyeToWorldMatrix() const = 0;
  virtual OdGeMatrix3d worldToEyeMatrix() const = 0;
  // World to device units under the device's current output rectangle.
  virtual OdGeMatrix3d worldToDeviceMatrix() const = 0;

  // Regenerates the view's entities into the device's destination geometry.
  virtual void update() = 0;
};

using OdGsViewPtr = OdSmartPtr<OdGsView>;

// A device: an output rectangle, a logical palette and background, the drawing context, and the
// views it draws into its destination geometry on update.
#pragma once

#include <cstdint>

#include "kit/base/OdRxObject.h"
#include "kit/gs/OdGsPalette.h"
#include "kit/gs/OdGsView.h"

class OdGiContextForDbDatabase;

class OdGsDevice : public OdRxObject {
public:
  virtual OdGiContextForDbDatabase* userGiContext() const = 0;
  virtual void setUserGiContext(OdGiContextForDbDatabase* context) = 0;

  // The palette is copied; up to 256 entries are kept.
  virtual void setLogicalPalette(const ODCOLORREF* palette, int numColors) = 0;
  virtual const ODCOLORREF* getLogicalPalette(int& numColors) const = 0;
  virtual bool setBackgroundColor(ODCOLORREF color) = 0;
  virtual ODCOLORREF getBackgroundColor() const = 0;

  virtual void onSize(const OdGsDCRect& outputRect) = 0;
  virtual void getSize(OdGsDCRect& outputRect) const = 0;
  virtual const OdGsDCRect& outputRect() const = 0;

  // A new view of this device's kind, not yet added.
  virtual OdGsViewPtr createView(const OdGsClientViewInfo* viewInfo = nullptr,
                                 bool enableLayerVisibilityPerView = false) = 0;
  // Adds a view (a view already added stays where it is).
  virtual void addView(OdGsView* view) = 0;
  virtual bool eraseView(OdGsView* view) = 0;
  virtual void eraseAllViews() = 0;
  virtual int numViews() const = 0;
  virtual OdGsView* viewAt(int index) const = 0;

  // Draws every view, in order.
  virtual void update() = 0;
};

using OdGsDevicePtr = OdSmartPtr<OdGsDevice>;

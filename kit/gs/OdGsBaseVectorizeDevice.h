// The kit's device: keeps the palette, background, output rectangle, drawing context and views,
// and on update has each view regenerate its entities into the destination geometry (a device's
// geometry sink). Devices of the system derive from it and override what they need.
#pragma once

#include <vector>

#include "kit/gi/OdGiConveyorGeometry.h"
#include "kit/gs/OdGiContextForDbDatabase.h"
#include "kit/gs/OdGsDevice.h"

class OdGsBaseVectorizeDevice : public OdGsDevice {
public:
  OdGsBaseVectorizeDevice();
  ~OdGsBaseVectorizeDevice() override;

  OdGiContextForDbDatabase* userGiContext() const override { return context_.get(); }
  void setUserGiContext(OdGiContextForDbDatabase* context) override { context_ = context; }

  void setLogicalPalette(const ODCOLORREF* palette, int numColors) override;
  const ODCOLORREF* getLogicalPalette(int& numColors) const override;
  bool setBackgroundColor(ODCOLORREF color) override;
  ODCOLORREF getBackgroundColor() const override { return background_; }

  void onSize(const OdGsDCRect& outputRect) override { outputRect_ = outputRect; }
  void getSize(OdGsDCRect& outputRect) const override { outputRect = outputRect_; }
  const OdGsDCRect& outputRect() const override { return outputRect_; }

  // Base: a plain kit view, initialised for this device.
  OdGsViewPtr createView(const OdGsClientViewInfo* viewInfo = nullptr,
                         bool enableLayerVisibilityPerView = false) override;
  void addView(OdGsView* view) override;
  bool eraseView(OdGsView* view) override;
  void eraseAllViews() override;
  int numViews() const override { return int(views_.size()); }
  OdGsView* viewAt(int index) const override;

  // Hands the device settings to setDeviceSettings, then updates each view in order.
  void update() override;

  // Where every view's primitives end (in device units). Not owned.
  void setDestGeometry(OdGiConveyorGeometry& geometry) { dest_ = &geometry; }
  OdGiConveyorGeometry* destGeometry() const { return dest_; }

  // Two device settings the kit hands over at the start of each update (the output rectangle's
  // width and height); devices may keep them.
  virtual void setDeviceSettings(uint32_t first, uint32_t second);
  uint32_t deviceSetting(int which) const { return which == 0 ? settings_[0] : settings_[1]; }

private:
  OdGiContextForDbDatabasePtr context_;
  std::vector<ODCOLORREF> palette_;
  ODCOLORREF background_ = ODRGB(255, 255, 255);
  OdGsDCRect outputRect_{0, 100, 0, 100};
  std::vector<OdGsViewPtr> views_;
  OdGiConveyorGeometry* dest_ = nullptr;
  uint32_t settings_[2] = {0, 0};
};

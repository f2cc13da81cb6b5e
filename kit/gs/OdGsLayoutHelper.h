// The views of one layout set up on a device: model space as the active viewport configuration
// shows it, or a layout's paper sheet with a view per viewport showing model space. The helper is
// itself a device that passes every call on to the device underneath.
#pragma once

#include "kit/gs/OdGiContextForDbDatabase.h"
#include "kit/gs/OdGsDevice.h"

class OdGsLayoutHelper : public OdGsDevice {
public:
  OdGsLayoutHelper() = default;
  ~OdGsLayoutHelper() override;

  OdGsDevice* underlyingDevice() const { return device_.get(); }
  // The view the layout is edited in: model space's view, or the paper view of a layout.
  OdGsView* activeView() const { return activeView_.get(); }
  // The VPORT record ("*Active") of model space, or the layout's own paper viewport entity; null
  // when the drawing has none.
  OdDbHandle activeViewportId() const { return activeViewportId_; }
  const Layout* layout() const { return layout_; }
  bool isModelLayout() const { return model_; }

  // Set-up (by OdDbGsManager).
  void attach(OdGsDevice* device, const Layout* layout, bool model);
  void setActiveView(OdGsView* view, OdDbHandle viewportId);

  OdGiContextForDbDatabase* userGiContext() const override;
  void setUserGiContext(OdGiContextForDbDatabase* context) override;
  void setLogicalPalette(const ODCOLORREF* palette, int numColors) override;
  const ODCOLORREF* getLogicalPalette(int& numColors) const override;
  bool setBackgroundColor(ODCOLORREF color) override;
  ODCOLORREF getBackgroundColor() const override;
  void onSize(const OdGsDCRect& outputRect) override;
  void getSize(OdGsDCRect& outputRect) const override;
  const OdGsDCRect& outputRect() const override;
  OdGsViewPtr createView(const OdGsClientViewInfo* viewInfo = nullptr,
                         bool enableLayerVisibilityPerView = false) override;
  void addView(OdGsView* view) override;
  bool eraseView(OdGsView* view) override;
  void eraseAllViews() override;
  int numViews() const override;
  OdGsView* viewAt(int index) const override;
  void update() override;

private:
  OdGsDevicePtr device_;
  OdGsViewPtr activeView_;
  OdDbHandle activeViewportId_;
  const Layout* layout_ = nullptr;
  bool model_ = true;
};

using OdGsLayoutHelperPtr = OdSmartPtr<OdGsLayoutHelper>;

class OdDbGsManager {
public:
  // Replaces the device's views with those of the database's current layout (model space when
  // TILEMODE is set). Throws OdError when the context has no database or the device is null.
  static OdGsLayoutHelperPtr setupActiveLayoutViews(OdGsDevice* device, OdGiContextForDbDatabase* context);
  // The same for a given layout.
  static OdGsLayoutHelperPtr setupLayoutViews(const Layout* layout, OdGsDevice* device,
                                              OdGiContextForDbDatabase* context);
};

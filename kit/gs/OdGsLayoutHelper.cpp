#include "kit/gs/OdGsLayoutHelper.h"

#include "kit/base/OdError.h"

OdGsLayoutHelper::~OdGsLayoutHelper() = default;

void OdGsLayoutHelper::attach(OdGsDevice* device, const Layout* layout, bool model) {
  device_ = device;
  layout_ = layout;
  model_ = model;
}

void OdGsLayoutHelper::setActiveView(OdGsView* view, OdDbHandle viewportId) {
  activeView_ = view;
  activeViewportId_ = viewportId;
}

namespace {

OdGsDevice& checked(const OdGsDevicePtr& device) {
  if (!device) throw OdError(eNullPtr, OdString(L"Layout helper without a device"));
  return *device;
}

}  // namespace

OdGiContextForDbDatabase* OdGsLayoutHelper::userGiContext() const { return checked(device_).userGiContext(); }
void OdGsLayoutHelper::setUserGiContext(OdGiContextForDbDatabase* context) {
  checked(device_).setUserGiContext(context);
}
void OdGsLayoutHelper::setLogicalPalette(const ODCOLORREF* palette, int numColors) {
  checked(device_).setLogicalPalette(palette, numColors);
}
const ODCOLORREF* OdGsLayoutHelper::getLogicalPalette(int& numColors) const {
  return checked(device_).getLogicalPalette(numColors);
}
bool OdGsLayoutHelper::setBackgroundColor(ODCOLORREF color) { return checked(device_).setBackgroundColor(color); }
ODCOLORREF OdGsLayoutHelper::getBackgroundColor() const { return checked(device_).getBackgroundColor(); }
void OdGsLayoutHelper::onSize(const OdGsDCRect& outputRect) { checked(device_).onSize(outputRect); }
void OdGsLayoutHelper::getSize(OdGsDCRect& outputRect) const { checked(device_).getSize(outputRect); }
const OdGsDCRect& OdGsLayoutHelper::outputRect() const { return checked(device_).outputRect(); }
OdGsViewPtr OdGsLayoutHelper::createView(const OdGsClientViewInfo* viewInfo, bool enableLayerVisibilityPerView) {
  return checked(device_).createView(viewInfo, enableLayerVisibilityPerView);
}
void OdGsLayoutHelper::addView(OdGsView* view) { checked(device_).addView(view); }
bool OdGsLayoutHelper::eraseView(OdGsView* view) { return checked(device_).eraseView(view); }
void OdGsLayoutHelper::eraseAllViews() { checked(device_).eraseAllViews(); }
int OdGsLayoutHelper::numViews() const { return checked(device_).numViews(); }
OdGsView* OdGsLayoutHelper::viewAt(int index) const { return checked(device_).viewAt(index); }
void OdGsLayoutHelper::update() { checked(device_).update(); }

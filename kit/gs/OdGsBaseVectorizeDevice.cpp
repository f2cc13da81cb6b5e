#include "kit/gs/OdGsBaseVectorizeDevice.h"

#include <algorithm>

#include "kit/base/OdError.h"
#include "kit/gs/OdGsBaseVectorizeView.h"

OdGsBaseVectorizeDevice::OdGsBaseVectorizeDevice()
    : palette_(odcmAcadLightPalette(), odcmAcadLightPalette() + 256) {}

OdGsBaseVectorizeDevice::~OdGsBaseVectorizeDevice() = default;

void OdGsBaseVectorizeDevice::setLogicalPalette(const ODCOLORREF* palette, int numColors) {
  if (!palette || numColors <= 0) return;
  palette_.assign(palette, palette + std::min(numColors, 256));
}

const ODCOLORREF* OdGsBaseVectorizeDevice::getLogicalPalette(int& numColors) const {
  numColors = int(palette_.size());
  return palette_.data();
}

bool OdGsBaseVectorizeDevice::setBackgroundColor(ODCOLORREF color) {
  background_ = color;
  return true;
}

OdGsViewPtr OdGsBaseVectorizeDevice::createView(const OdGsClientViewInfo* viewInfo,
                                                bool enableLayerVisibilityPerView) {
  OdGsViewPtr view = OdRxObjectImpl<OdGsBaseVectorizeViewDef, OdGsView>::createObject();
  static_cast<OdGsBaseVectorizeViewDef*>(view.get())->init(this, viewInfo, enableLayerVisibilityPerView);
  return view;
}

void OdGsBaseVectorizeDevice::addView(OdGsView* view) {
  if (!view) return;
  for (const OdGsViewPtr& existing : views_) {
    if (existing.get() == view) return;
  }
  views_.emplace_back(view);
}

bool OdGsBaseVectorizeDevice::eraseView(OdGsView* view) {
  auto it = std::find_if(views_.begin(), views_.end(), [view](const OdGsViewPtr& v) { return v.get() == view; });
  if (it == views_.end()) return false;
  views_.erase(it);
  return true;
}

void OdGsBaseVectorizeDevice::eraseAllViews() { views_.clear(); }

OdGsView* OdGsBaseVectorizeDevice::viewAt(int index) const {
  if (index < 0 || size_t(index) >= views_.size()) return nullptr;
  return views_[size_t(index)].get();
}

void OdGsBaseVectorizeDevice::setDeviceSettings(uint32_t first, uint32_t second) {
  settings_[0] = first;
  settings_[1] = second;
}

void OdGsBaseVectorizeDevice::update() {
  long width = outputRect_.xmax - outputRect_.xmin;
  long height = outputRect_.ymax - outputRect_.ymin;
  setDeviceSettings(uint32_t(width < 0 ? -width : width), uint32_t(height < 0 ? -height : height));
  // Views may be erased while drawing (a view's hooks are the system's code): draw a copy.
  std::vector<OdGsViewPtr> views = views_;
  for (const OdGsViewPtr& view : views) {
    view->update();
  }
}

#include "vectorizer/ExGsSimpleDevice.h"

#include "drivers/TRANS_BASE2.h"
#include "vectorizer/EntityDrawState.h"
#include "vectorizer/EntityRuleState.h"
#include "vectorizer/ExSimpleView.h"
#include "vectorizer/OutputDriverPointer.h"

namespace {

constexpr int kPaletteSize = 256;

}  // namespace

ExGsSimpleDevice::ExGsSimpleDevice() {
  bool white = g_pOutputDriver && g_pOutputDriver->GetWhiteBackground();
  setLogicalPalette(white ? odcmAcadLightPalette() : odcmAcadDarkPalette(), kPaletteSize);
  onSize(OdGsDCRect(0, 100, 0, 100));
}

OdSmartPtr<OdGsDevice> ExGsSimpleDevice::createObject(int32_t deviceType) {
  OdSmartPtr<OdGsDevice> device = OdRxObjectImpl<ExGsSimpleDevice, OdGsDevice>::createObject();
  auto* self = static_cast<ExGsSimpleDevice*>(device.get());
  self->deviceType = deviceType;
  self->CreateSink();
  self->DefinePaletteInDriver();
  g_EntityDrawState.fillOn = 0;
  EntityRuleState& rules = g_EntityRuleState;
  rules.database = nullptr;
  rules.pendingRoomLabel.clear();
  return device;
}

void ExGsSimpleDevice::CreateSink() {
  dumper = std::make_shared<OdGiDumperImpl>();
  geometrySink = std::make_shared<OdGiConveyorGeometryDumper>(dumper);
  if (TRANS_BASE2* driver = g_pOutputDriver) {
    g_DefaultFontName = driver->GetDefaultFontName();
    g_DefaultItalicFontName = driver->GetDefaultItalicFontName();
  }
  setDestGeometry(*geometrySink);
}

// The driver's colour table starts as the drawing's palette in the background's variant.
void ExGsSimpleDevice::DefinePaletteInDriver() {
  TRANS_BASE2* driver = g_pOutputDriver;
  int count = 0;
  const ODCOLORREF* palette = getLogicalPalette(count);
  if (!driver || !palette) return;
  for (int i = 0; i < kPaletteSize && i < count; ++i) {
    driver->DefineColor(i, ODGETRED(palette[i]), ODGETGREEN(palette[i]), ODGETBLUE(palette[i]));
  }
}

OdGsViewPtr ExGsSimpleDevice::createView(const OdGsClientViewInfo* viewInfo, bool enableLayerVisibilityPerView) {
  OdGsViewPtr view = OdRxObjectImpl<ExSimpleView, OdGsView>::createObject();
  auto* simple = static_cast<ExSimpleView*>(view.get());
  simple->init(this, viewInfo, enableLayerVisibilityPerView);
  // Table cells become node groups only while the driver keeps blocks.
  simple->driverFlag = g_pOutputDriver && !g_pOutputDriver->GetNoBlocks() ? 1 : 0;
  if (OdGiContextForDbDatabase* context = simple->userGiContext()) {
    g_EntityRuleState.database = context->getDatabase();
  }
  addView(view.get());
  return view;
}

void ExGsSimpleDevice::setDeviceSettings(uint32_t first, uint32_t second) {
  g_EntityDrawState.deviceSetting1 = int32_t(first);
  g_EntityDrawState.deviceSetting2 = int32_t(second);
  OdGsBaseVectorizeDevice::setDeviceSettings(first, second);
}

void ExGsSimpleDevice::update() {
  ResetVectorizationState();
  OdGsBaseVectorizeDevice::update();
}

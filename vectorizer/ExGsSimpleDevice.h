// The vectorization device of the system: chooses the palette by the driver's background, hands
// the palette to the driver, owns the geometry sink that every view draws into, and makes the
// system's views.
#pragma once

#include <cstdint>
#include <memory>

#include "kit/gs/OdGsBaseVectorizeDevice.h"
#include "vectorizer/OdGiConveyorGeometryDumper.h"
#include "vectorizer/OdGiDumperImpl.h"

class ExGsSimpleDevice : public OdGsBaseVectorizeDevice {
public:
  ExGsSimpleDevice();

  // Creates the device for the active output driver (g_pOutputDriver, which must be set).
  static OdSmartPtr<OdGsDevice> createObject(int32_t deviceType);

  OdGsViewPtr createView(const OdGsClientViewInfo* viewInfo = nullptr,
                         bool enableLayerVisibilityPerView = false) override;
  void setDeviceSettings(uint32_t first, uint32_t second) override;
  // Starts from a clean per-view state, then draws every view.
  void update() override;

  int32_t deviceType = 0;
  std::shared_ptr<OdGiConveyorGeometryDumper> geometrySink;
  std::shared_ptr<OdGiDumperImpl> dumper;

private:
  void CreateSink();
  void DefinePaletteInDriver();
};

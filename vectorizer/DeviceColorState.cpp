#include "vectorizer/DeviceColorState.h"

#include "drivers/TRANS_BASE2.h"
#include "vectorizer/EntityDrawState.h"
#include "vectorizer/OutputDriverPointer.h"

void SetDeviceTrueColor(uint32_t packedColor) {
  EntityDrawState& s = g_EntityDrawState;
  if (packedColor == s.lastTrueColor && s.colorIsTrue && !s.colorDirty) return;
  s.colorIsTrue = 1;
  s.colorDirty = 0;
  s.lastTrueColor = packedColor;
  TRANS_BASE2* driver = g_pOutputDriver;
  if (!driver) return;
  int index = driver->SetColorRGB(int(packedColor & 0xFF), int((packedColor >> 8) & 0xFF),
                                  int((packedColor >> 16) & 0xFF));
  if (index >= 0) driver->SetColor(index);
}

void SetDeviceColorIndex(int32_t colorIndex) {
  EntityDrawState& s = g_EntityDrawState;
  int16_t index = int16_t(colorIndex & 0xFFFF);
  if (index == s.lastColorIndex && !s.colorIsTrue && !s.colorDirty) return;
  s.colorIsTrue = 0;
  s.colorDirty = 0;
  s.lastColorIndex = index;
  if (TRANS_BASE2* driver = g_pOutputDriver) driver->SetColor(index);
}

void SetDeviceFillMode(int fillType) {
  EntityDrawState& s = g_EntityDrawState;
  if (s.forceFill) {
    s.fillOn = 1;
  } else if (s.suppressFillOnce) {
    s.fillOn = 0;
    s.suppressFillOnce = 0;
  } else {
    s.fillOn = fillType == 1 ? 1 : 0;
  }
}

// The device's colour and fill setters: a colour is sent to the driver only when it changed (or
// the entity rules marked it dirty), and the fill flag follows the traits' fill type.
#pragma once

#include <cstdint>

// A true colour packed as red | green << 8 | blue << 16.
void SetDeviceTrueColor(uint32_t packedColor);
void SetDeviceColorIndex(int32_t colorIndex);
// Fill type 1 means "always fill".
void SetDeviceFillMode(int fillType);
// Pack red, green and blue as the true-colour setter takes them.
constexpr uint32_t PackTrueColor(uint8_t red, uint8_t green, uint8_t blue) {
  return uint32_t(red) | uint32_t(green) << 8 | uint32_t(blue) << 16;
}

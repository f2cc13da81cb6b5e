// Device colours and the two standard 256-entry palettes of the AutoCAD colour index, one for
// light and one for dark backgrounds: they differ only where index 0 (the background) and 7 (the
// foreground) sit.
#pragma once

#include <cstdint>

// A colour packed as red | green << 8 | blue << 16.
using ODCOLORREF = uint32_t;

constexpr ODCOLORREF ODRGB(uint8_t red, uint8_t green, uint8_t blue) {
  return ODCOLORREF(red) | ODCOLORREF(green) << 8 | ODCOLORREF(blue) << 16;
}
constexpr uint8_t ODGETRED(ODCOLORREF color) { return uint8_t(color & 0xFF); }
constexpr uint8_t ODGETGREEN(ODCOLORREF color) { return uint8_t((color >> 8) & 0xFF); }
constexpr uint8_t ODGETBLUE(ODCOLORREF color) { return uint8_t((color >> 16) & 0xFF); }

// Index 0 white, index 7 black.
const ODCOLORREF* odcmAcadLightPalette();
// Index 0 black, index 7 white.
const ODCOLORREF* odcmAcadDarkPalette();
// The colour of an index 1..255 as the colour index defines it (7 as white).
ODCOLORREF odcmAciColor(int index);

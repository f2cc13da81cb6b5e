// The colour index of the watermark text: the user's index, or the palette entry nearest to the
// user's red, green and blue.
#pragma once

#include <cstdint>
#include <string>

// Palette entries are 0x00BBGGRR (red in the low byte), as the device's logical palette keeps them.
// The index with the smallest sum of squared differences; the lower index on a tie; 0 for an
// empty palette.
int NearestPaletteIndex(const uint32_t* palette, int size, int red, int green, int blue);

// `rgb` empty: `colorIndex` when it is 1..255, else 7. Otherwise "r,g,b": the nearest palette
// index, or 7 with "Error in wm_rgb" when a component is missing or outside 0..255.
int WatermarkColorIndex(int colorIndex, const std::string& rgb, const uint32_t* palette, int size);

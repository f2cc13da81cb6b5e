#include "converter/WatermarkColor.h"

#include <cstdlib>
#include <vector>

#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

int NearestPaletteIndex(const uint32_t* palette, int size, int red, int green, int blue) {
  if (!palette || size <= 0) return 0;
  auto distance = [&](uint32_t entry) {
    const long dr = static_cast<long>(entry & 0xFF) - red;
    const long dg = static_cast<long>((entry >> 8) & 0xFF) - green;
    const long db = static_cast<long>((entry >> 16) & 0xFF) - blue;
    return dr * dr + dg * dg + db * db;
  };
  int best = 0;
  long bestDistance = distance(palette[0]);
  for (int i = 1; i < size; ++i) {
    const long d = distance(palette[i]);
    if (d < bestDistance) {
      best = i;
      bestDistance = d;
    }
  }
  return best;
}

namespace {

// Three whole numbers 0..255 separated by commas; false otherwise.
bool ParseRgb(const std::string& text, int (&rgb)[3]) {
  std::vector<std::string> pieces;
  SplitAny(pieces, text, ",");
  if (pieces.size() != 3) return false;
  for (int i = 0; i < 3; ++i) {
    char* end = nullptr;
    const long value = std::strtol(pieces[i].c_str(), &end, 10);
    if (end == pieces[i].c_str() || value < 0 || value > 255) return false;
    rgb[i] = static_cast<int>(value);
  }
  return true;
}

}  // namespace

int WatermarkColorIndex(int colorIndex, const std::string& rgbText, const uint32_t* palette, int size) {
  if (rgbText.empty()) return colorIndex >= 1 && colorIndex <= 255 ? colorIndex : 7;
  int rgb[3] = {0, 0, 0};
  if (!ParseRgb(rgbText, rgb)) {
    PrintMessageOnce("Error in wm_rgb", rgbText.c_str());
    return 7;
  }
  return NearestPaletteIndex(palette, size, rgb[0], rgb[1], rgb[2]);
}

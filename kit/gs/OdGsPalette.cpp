#include "kit/gs/OdGsPalette.h"

#include <array>
#include <cstddef>

namespace {

using Palette = std::array<ODCOLORREF, 256>;

// Indices 10..249 run round the hue circle in 24 steps of 15 degrees. Each step has five
// brightness levels, each in a full and a pale variant. Channels are counted in eighths of a
// unit so that the table's truncated values come out exactly.
ODCOLORREF hueColor(int index) {
  int group = (index - 10) / 10;
  int variant = (index - 10) % 10;
  int sector = group / 4, k = group % 4;
  int quarters[3];
  switch (sector) {
    case 0: quarters[0] = 4; quarters[1] = k; quarters[2] = 0; break;
    case 1: quarters[0] = 4 - k; quarters[1] = 4; quarters[2] = 0; break;
    case 2: quarters[0] = 0; quarters[1] = 4; quarters[2] = k; break;
    case 3: quarters[0] = 0; quarters[1] = 4 - k; quarters[2] = 4; break;
    case 4: quarters[0] = k; quarters[1] = 0; quarters[2] = 4; break;
    default: quarters[0] = 4; quarters[1] = 0; quarters[2] = 4 - k; break;
  }
  static constexpr int kLevels[5] = {255, 204, 153, 127, 76};
  int level = kLevels[variant / 2];
  bool pale = (variant % 2) != 0;
  uint8_t channel[3];
  for (int c = 0; c < 3; ++c) {
    long eighths = pale ? 1020L + 255L * quarters[c] : 510L * quarters[c];
    channel[c] = uint8_t(eighths * level / (255L * 8));
  }
  return ODRGB(channel[0], channel[1], channel[2]);
}

Palette makePalette(bool dark) {
  Palette p{};
  for (int i = 1; i < 256; ++i) p[std::size_t(i)] = odcmAciColor(i);
  p[0] = dark ? ODRGB(0, 0, 0) : ODRGB(255, 255, 255);
  p[7] = dark ? ODRGB(255, 255, 255) : ODRGB(0, 0, 0);
  return p;
}

}  // namespace

ODCOLORREF odcmAciColor(int index) {
  static constexpr ODCOLORREF kFirst[10] = {
      ODRGB(0, 0, 0),     ODRGB(255, 0, 0),   ODRGB(255, 255, 0),   ODRGB(0, 255, 0),   ODRGB(0, 255, 255),
      ODRGB(0, 0, 255),   ODRGB(255, 0, 255), ODRGB(255, 255, 255), ODRGB(128, 128, 128), ODRGB(192, 192, 192)};
  static constexpr uint8_t kGreys[6] = {51, 91, 132, 173, 214, 255};
  if (index < 0 || index > 255) return ODRGB(255, 255, 255);
  if (index < 10) return kFirst[index];
  if (index >= 250) return ODRGB(kGreys[index - 250], kGreys[index - 250], kGreys[index - 250]);
  return hueColor(index);
}

const ODCOLORREF* odcmAcadLightPalette() {
  static const Palette palette = makePalette(false);
  return palette.data();
}

const ODCOLORREF* odcmAcadDarkPalette() {
  static const Palette palette = makePalette(true);
  return palette.data();
}

// Lineweights as DWG files store them: an index into AutoCAD's fixed list of weights, with the
// top indices standing for by layer, by block and the default weight.
#pragma once

#include <cstdint>

// Indices no weight has (24 to 28) are out of AutoCAD's list: `unknown` says what they mean where
// they are read. AutoCAD takes them as by layer on entities.
inline int16_t dwgLineweightFromIndex(int index, int16_t unknown = -3) {
  static constexpr int16_t kWeights[] = {0,  5,  9,  13, 15, 18,  20,  25,  30,  35,  40,  50,
                                         53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};
  if (index >= 0 && index < int(sizeof kWeights / sizeof kWeights[0])) return kWeights[index];
  if (index == 29) return -1;  // by layer
  if (index == 30) return -2;  // by block
  if (index == 31) return -3;  // the default weight
  return unknown;
}

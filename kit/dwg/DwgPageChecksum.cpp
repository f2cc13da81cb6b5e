#include "kit/dwg/DwgPageChecksum.h"

#include <algorithm>

uint32_t dwgPageChecksum(uint32_t seed, const uint8_t* data, size_t size) {
  uint32_t sum1 = seed & 0xFFFF;
  uint32_t sum2 = seed >> 16;
  while (size != 0) {
    size_t chunk = std::min<size_t>(0x15B0, size);
    size -= chunk;
    for (size_t i = 0; i < chunk; ++i) {
      sum1 += *data++;
      sum2 += sum1;
    }
    sum1 %= 0xFFF1;
    sum2 %= 0xFFF1;
  }
  return (sum2 << 16) | (sum1 & 0xFFFF);
}

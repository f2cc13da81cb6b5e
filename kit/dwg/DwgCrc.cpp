#include "kit/dwg/DwgCrc.h"

#include <array>

namespace {

template <class T>
constexpr std::array<T, 256> reflectedTable(T polynomial) {
  std::array<T, 256> table{};
  for (unsigned i = 0; i < 256; ++i) {
    T c = T(i);
    for (int k = 0; k < 8; ++k) c = (c & 1) ? T((c >> 1) ^ polynomial) : T(c >> 1);
    table[i] = c;
  }
  return table;
}

constexpr auto kTable16 = reflectedTable<uint16_t>(0xA001);

// For four bytes a step: table k holds the effect of a byte followed by k zero bytes.
constexpr std::array<std::array<uint16_t, 256>, 4> sliceTables16() {
  std::array<std::array<uint16_t, 256>, 4> t{};
  t[0] = kTable16;
  for (size_t k = 1; k < 4; ++k) {
    for (unsigned b = 0; b < 256; ++b) t[k][b] = uint16_t((t[k - 1][b] >> 8) ^ kTable16[t[k - 1][b] & 0xFF]);
  }
  return t;
}
constexpr auto kSlices16 = sliceTables16();
constexpr auto kTable32 = reflectedTable<uint32_t>(0xEDB88320u);

}  // namespace

uint16_t dwgCrc16(uint16_t seed, const uint8_t* data, size_t size) {
  uint16_t crc = seed;
  size_t i = 0;
  for (; i + 4 <= size; i += 4) {
    unsigned low = (crc ^ data[i]) & 0xFF, high = ((crc >> 8) ^ data[i + 1]) & 0xFF;
    crc = uint16_t(kSlices16[3][low] ^ kSlices16[2][high] ^ kSlices16[1][data[i + 2]] ^ kSlices16[0][data[i + 3]]);
  }
  for (; i < size; ++i) crc = uint16_t((crc >> 8) ^ kTable16[(crc ^ data[i]) & 0xFF]);
  return crc;
}

uint32_t dwgCrc32(uint32_t seed, const uint8_t* data, size_t size) {
  uint32_t crc = ~seed;
  for (size_t i = 0; i < size; ++i) crc = (crc >> 8) ^ kTable32[(crc ^ data[i]) & 0xFF];
  return ~crc;
}

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
constexpr auto kTable32 = reflectedTable<uint32_t>(0xEDB88320u);

}  // namespace

uint16_t dwgCrc16(uint16_t seed, const uint8_t* data, size_t size) {
  uint16_t crc = seed;
  for (size_t i = 0; i < size; ++i) crc = uint16_t((crc >> 8) ^ kTable16[(crc ^ data[i]) & 0xFF]);
  return crc;
}

uint32_t dwgCrc32(uint32_t seed, const uint8_t* data, size_t size) {
  uint32_t crc = ~seed;
  for (size_t i = 0; i < size; ++i) crc = (crc >> 8) ^ kTable32[(crc ^ data[i]) & 0xFF];
  return ~crc;
}

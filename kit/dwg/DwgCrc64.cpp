#include "kit/dwg/DwgCrc64.h"

#include <array>

namespace {

constexpr uint64_t kPolynomial = 0x42F0E1EBA9EA3693ull;  // ECMA-182
constexpr uint64_t kReflected = 0x95AC9329AC4BC9B5ull;   // 0xAD93D23594C935A9 with its bits reversed

constexpr std::array<uint64_t, 256> normalTable() {
  std::array<uint64_t, 256> table{};
  for (unsigned i = 0; i < 256; ++i) {
    uint64_t c = uint64_t(i) << 56;
    for (int k = 0; k < 8; ++k) c = (c >> 63) ? (c << 1) ^ kPolynomial : c << 1;
    table[i] = c;
  }
  return table;
}

constexpr std::array<uint64_t, 256> mirroredTable() {
  std::array<uint64_t, 256> table{};
  for (unsigned i = 0; i < 256; ++i) {
    uint64_t c = i;
    for (int k = 0; k < 8; ++k) c = (c & 1) ? (c >> 1) ^ kReflected : c >> 1;
    table[i] = c;
  }
  return table;
}

constexpr auto kNormal = normalTable();
constexpr auto kMirrored = mirroredTable();

// The writer takes the bytes in the order its word loads give: each group of 8 as the pairs at 6,
// 4, 2 and 0, and a shorter tail in the orders below (pairs first where it has 4 or more).
constexpr uint8_t kGroupOrder[8] = {6, 7, 4, 5, 2, 3, 0, 1};
constexpr uint8_t kTailOrder[8][7] = {
    {}, {0}, {0, 1}, {0, 1, 2}, {2, 3, 0, 1}, {2, 3, 0, 1, 4}, {2, 3, 0, 1, 4, 5}, {2, 3, 0, 1, 4, 5, 6},
};

template <class Step>
uint64_t crcInWriterOrder(uint64_t crc, const uint8_t* data, size_t size, Step step) {
  size_t i = 0;
  for (; size - i >= 8; i += 8) {
    for (uint8_t at : kGroupOrder) crc = step(crc, data[i + at]);
  }
  const size_t tail = size - i;
  for (size_t t = 0; t < tail; ++t) crc = step(crc, data[i + kTailOrder[tail][t]]);
  return crc;
}

}  // namespace

uint64_t dwgCrc64Normal(uint64_t seed, const uint8_t* data, size_t size) {
  return ~crcInWriterOrder(seed, data, size,
                           [](uint64_t crc, uint8_t b) { return kNormal[(b ^ (crc >> 56)) & 0xFF] ^ (crc << 8); });
}

uint64_t dwgCrc64Mirrored(uint64_t seed, const uint8_t* data, size_t size) {
  return crcInWriterOrder(seed, data, size, [](uint64_t crc, uint8_t b) { return kMirrored[(crc ^ b) & 0xFF] ^ (crc >> 8); });
}

uint64_t dwgCrc64Seed1(uint64_t seed, uint64_t length) {
  seed = (seed + length) * 0x343FDull + 0x269EC3ull;
  seed |= seed * (0x343FDull << 32) + (0x269EC3ull << 32);
  return ~seed;
}

uint64_t dwgCrc64Seed2(uint64_t seed, uint64_t length) {
  seed = (seed + length) * 0x343FDull + 0x269EC3ull;
  seed = seed * ((1ull << 32) + 0x343FDull) + (length + 0x269EC3ull);
  return ~seed;
}

uint64_t dwgCrc64StoredSeed(uint64_t stored) {
  // Bit k of the seed, from its highest (bit 9) down, sits at these places of the stored word.
  static constexpr uint8_t kPlaces[10] = {5, 11, 17, 23, 29, 35, 41, 47, 53, 59};
  uint64_t seed = 0;
  for (int k = 0; k < 10; ++k) {
    if ((stored >> kPlaces[k]) & 1) seed |= uint64_t(1) << (9 - k);
  }
  return seed;
}

// The check sum R2007 files keep for each data page, over its decompressed bytes: two running sums
// modulo 0xFFF1 like the R2004 one, seeded from the length and taking each 8 bytes in the pair
// order 6, 4, 2, 0.
#pragma once

#include <cstddef>
#include <cstdint>

uint32_t dwgR2007PageChecksum(uint64_t seed, const uint8_t* data, size_t size);

// The 64-bit CRCs of R2007 files, which the file header and the system pages carry. The normal one
// (ECMA-182 polynomial) shifts towards the high bit and inverts its result; the mirrored one shifts
// towards the low bit on another polynomial (0xAD93D23594C935A9) and does not invert. Both take
// the bytes of each group of 8 in the writer's order (6, 7, 4, 5, 2, 3, 0, 1).
#pragma once

#include <cstddef>
#include <cstdint>

uint64_t dwgCrc64Normal(uint64_t seed, const uint8_t* data, size_t size);
uint64_t dwgCrc64Mirrored(uint64_t seed, const uint8_t* data, size_t size);

// The seed rules: a linear congruential step of `seed` plus the data length, spread over both
// halves, then inverted.
uint64_t dwgCrc64Seed1(uint64_t seed, uint64_t length);
uint64_t dwgCrc64Seed2(uint64_t seed, uint64_t length);

// A seed as the file header stores it: 10 bits spread over a 64-bit word of random filler.
uint64_t dwgCrc64StoredSeed(uint64_t stored);

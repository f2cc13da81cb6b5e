// The check sum over the pages of R2004 and later files: two running sums modulo 0xFFF1, taken
// in chunks of 0x15B0 bytes so that they cannot overflow.
#pragma once

#include <cstddef>
#include <cstdint>

uint32_t dwgPageChecksum(uint32_t seed, const uint8_t* data, size_t size);

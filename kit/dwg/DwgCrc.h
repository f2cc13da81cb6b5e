// The check sums DWG files carry: a 16-bit CRC (reflected, polynomial 0xA001) over headers and
// objects, and from R2004 on the common 32-bit CRC over pages and sections.
#pragma once

#include <cstddef>
#include <cstdint>

uint16_t dwgCrc16(uint16_t seed, const uint8_t* data, size_t size);
uint32_t dwgCrc32(uint32_t seed, const uint8_t* data, size_t size);

// Little-endian fields of the DWG containers. Callers check the range before reading.
#pragma once

#include <cstdint>
#include <cstring>

inline uint16_t dwgLe16(const uint8_t* p) { return uint16_t(p[0] | (p[1] << 8)); }

inline uint32_t dwgLe32(const uint8_t* p) {
  return uint32_t(p[0]) | (uint32_t(p[1]) << 8) | (uint32_t(p[2]) << 16) | (uint32_t(p[3]) << 24);
}

inline uint64_t dwgLe64(const uint8_t* p) { return uint64_t(dwgLe32(p)) | (uint64_t(dwgLe32(p + 4)) << 32); }

inline void dwgPutLe32(uint8_t* p, uint32_t v) {
  for (int i = 0; i < 4; ++i) p[i] = uint8_t(v >> (8 * i));
}

inline void dwgPutLe64(uint8_t* p, uint64_t v) {
  dwgPutLe32(p, uint32_t(v));
  dwgPutLe32(p + 4, uint32_t(v >> 32));
}

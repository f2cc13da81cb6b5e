#include "kit/dwg/DwgR2007PageChecksum.h"

#include <algorithm>

namespace {

struct Sums {
  uint32_t a;
  uint32_t b;
  void add(const uint8_t* p, size_t n) {
    for (size_t i = 0; i < n; ++i) {
      a += p[i];
      b += a;
    }
  }
};

// The 1 to 7 bytes after the last full group of 8, in the order the writer sums them.
void addTail(Sums& s, const uint8_t* p, size_t n) {
  if (n >= 4) {
    s.add(p + 2, 2);
    s.add(p, 2);
    s.add(p + 4, n - 4);
  } else {
    s.add(p, n);
  }
}

}  // namespace

uint32_t dwgR2007PageChecksum(uint64_t seed, const uint8_t* data, size_t size) {
  seed = (seed + size) * 0x343FD + 0x269EC3;
  Sums s{uint32_t(seed & 0xFFFF), uint32_t((seed >> 16) & 0xFFFF)};
  while (size != 0) {
    size_t chunk = std::min<size_t>(0x15B0, size);
    size -= chunk;
    for (size_t groups = chunk >> 3; groups > 0; --groups, data += 8) {
      for (int pair = 6; pair >= 0; pair -= 2) s.add(data + pair, 2);
    }
    addTail(s, data, chunk & 7);
    data += chunk & 7;
    s.a %= 0xFFF1;
    s.b %= 0xFFF1;
  }
  return (s.b << 16) | (s.a & 0xFFFF);
}

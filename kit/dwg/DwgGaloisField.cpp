#include "kit/dwg/DwgGaloisField.h"

DwgGaloisField::DwgGaloisField(unsigned polynomial) {
  unsigned x = 1;
  for (unsigned i = 0; i < 255; ++i) {
    exp_[i] = exp_[i + 255] = uint8_t(x);
    log_[x] = uint16_t(i);
    x <<= 1;
    if (x & 0x100) x ^= polynomial;
  }
}

// Arithmetic in GF(256) built on one primitive polynomial, as the Reed-Solomon codes of R2007
// files need it: products and quotients through logarithm tables.
#pragma once

#include <array>
#include <cstdint>

class DwgGaloisField {
 public:
  // `polynomial` holds x^8 and the lower terms, e.g. 0x11D for x^8 + x^4 + x^3 + x^2 + 1.
  explicit DwgGaloisField(unsigned polynomial);

  uint8_t mul(uint8_t a, uint8_t b) const { return a && b ? exp_[log_[a] + log_[b]] : 0; }
  // b must not be zero.
  uint8_t div(uint8_t a, uint8_t b) const { return a ? exp_[log_[a] + 255 - log_[b]] : 0; }
  // alpha^n for any n >= 0.
  uint8_t power(unsigned n) const { return exp_[n % 255]; }
  // The exponent of a non-zero element.
  unsigned logOf(uint8_t a) const { return log_[a]; }

 private:
  std::array<uint8_t, 510> exp_{};  // doubled so a sum of two logarithms needs no reduction
  std::array<uint16_t, 256> log_{};
};

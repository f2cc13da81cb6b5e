// A Reed-Solomon code of 255-byte code words over GF(256), as R2007 files use them: the first k
// bytes carry data, the remaining 255 - k parity; byte i is the coefficient of x^i and the
// generator's roots are alpha^1 .. alpha^(255 - k). Up to (255 - k) / 2 wrong bytes a code word
// are found and corrected (Berlekamp-Massey, Chien search, Forney).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "kit/dwg/DwgGaloisField.h"

class DwgRsCode {
 public:
  DwgRsCode(unsigned polynomial, size_t dataBytes);

  size_t dataBytes() const { return k_; }
  size_t parityBytes() const { return roots_; }

  // True when `word` (255 bytes) is a code word: the normal case, checked quickly.
  bool isCodeword(const uint8_t* word) const;
  // Corrects `word` in place. Returns the number of bytes changed, or -1 when it holds more
  // errors than the code can correct; then it is left as it was.
  int correct(uint8_t* word) const;
  // Fills the parity bytes of `word` from its data bytes.
  void encode(uint8_t* word) const;

 private:
  using Syndromes = std::array<uint8_t, 16>;
  static constexpr size_t kMaxRoots = 16;

  Syndromes syndromes(const uint8_t* word) const;
  bool dividesBy4(const uint8_t* word) const;
  bool dividesBy16(const uint8_t* word) const;
  std::vector<uint8_t> errorLocator(const Syndromes& s) const;
  std::vector<unsigned> errorPositions(const std::vector<uint8_t>& locator) const;
  bool repair(uint8_t* word, const Syndromes& s, const std::vector<uint8_t>& locator,
              const std::vector<unsigned>& positions) const;

  DwgGaloisField field_;
  size_t k_;
  size_t roots_;
  // timesRoot_[j][b] = b * alpha^(j + 1): one step of Horner's rule for syndrome j.
  std::vector<std::array<uint8_t, 256>> timesRoot_;
  // f * (generator - x^roots), packed lowest coefficient in the lowest byte, for the remainder
  // register that checks a code word a byte a step (up to 16 parity bytes).
  std::vector<std::array<uint64_t, 2>> reduce_;
  std::vector<uint8_t> generator_;  // monic, lowest coefficient first
};

// The two codes of R2007 files.
const DwgRsCode& dwgRsSystemCode();  // (255, 239), x^8 + x^6 + x^5 + x^3 + 1
const DwgRsCode& dwgRsPageCode();    // (255, 251), x^8 + x^4 + x^3 + x^2 + 1

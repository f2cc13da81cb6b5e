#include "kit/dwg/DwgRsCode.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr size_t kN = 255;

}  // namespace

DwgRsCode::DwgRsCode(unsigned polynomial, size_t dataBytes)
    : field_(polynomial), k_(dataBytes), roots_(kN - dataBytes), timesRoot_(roots_), generator_{1} {
  for (size_t j = 0; j < roots_; ++j) {
    uint8_t root = field_.power(unsigned(j + 1));
    for (unsigned b = 0; b < 256; ++b) timesRoot_[j][b] = field_.mul(uint8_t(b), root);
    // generator *= (x + root)
    std::vector<uint8_t> next(generator_.size() + 1, 0);
    for (size_t i = 0; i < generator_.size(); ++i) {
      next[i + 1] ^= generator_[i];
      next[i] ^= field_.mul(generator_[i], root);
    }
    generator_ = std::move(next);
  }
  reduce_.resize(256);
  for (unsigned f = 0; f < 256; ++f) {
    for (size_t t = 0; t < roots_ && t < 16; ++t) {
      reduce_[f][t / 8] |= uint64_t(field_.mul(uint8_t(f), generator_[t])) << (8 * (t % 8));
    }
  }
}

DwgRsCode::Syndromes DwgRsCode::syndromes(const uint8_t* word) const {
  // Horner's rule from the highest power down; the syndromes are independent chains.
  Syndromes s{};
  for (size_t i = kN; i-- > 0;) {
    for (size_t j = 0; j < roots_; ++j) s[j] = uint8_t(timesRoot_[j][s[j]] ^ word[i]);
  }
  return s;
}

// A code word is a multiple of the generator: dividing it from the highest power down must leave
// no remainder. The register holds the remainder's coefficients; the top one is fed back.
bool DwgRsCode::dividesBy4(const uint8_t* word) const {
  uint32_t rest = 0;
  for (size_t i = kN; i-- > 0;) rest = ((rest << 8) | word[i]) ^ uint32_t(reduce_[rest >> 24][0]);
  return rest == 0;
}

bool DwgRsCode::dividesBy16(const uint8_t* word) const {
  uint64_t low = 0, high = 0;
  for (size_t i = kN; i-- > 0;) {
    const std::array<uint64_t, 2>& r = reduce_[high >> 56];
    high = ((high << 8) | (low >> 56)) ^ r[1];
    low = ((low << 8) | word[i]) ^ r[0];
  }
  return (low | high) == 0;
}

bool DwgRsCode::isCodeword(const uint8_t* word) const {
  if (roots_ == 4) return dividesBy4(word);
  if (roots_ == 16) return dividesBy16(word);
  Syndromes s = syndromes(word);
  uint8_t any = 0;
  for (size_t j = 0; j < roots_; ++j) any |= s[j];
  return any == 0;
}

// Berlekamp-Massey: the shortest recurrence the syndromes satisfy, lowest coefficient first.
std::vector<uint8_t> DwgRsCode::errorLocator(const Syndromes& s) const {
  std::vector<uint8_t> c(roots_ + 1, 0), b(roots_ + 1, 0);
  c[0] = b[0] = 1;
  size_t length = 0, shift = 1;
  uint8_t lastDiscrepancy = 1;
  for (size_t n = 0; n < roots_; ++n) {
    uint8_t d = s[n];
    for (size_t i = 1; i <= length; ++i) d ^= field_.mul(c[i], s[n - i]);
    if (d == 0) {
      ++shift;
      continue;
    }
    std::vector<uint8_t> before = c;
    uint8_t scale = field_.div(d, lastDiscrepancy);
    for (size_t i = 0; i + shift <= roots_; ++i) c[i + shift] ^= field_.mul(scale, b[i]);
    if (2 * length <= n) {
      length = n + 1 - length;
      b = std::move(before);
      lastDiscrepancy = d;
      shift = 1;
    } else {
      ++shift;
    }
  }
  c.resize(length + 1);
  return c;
}

// Chien search: the positions p where the locator vanishes at alpha^-p.
std::vector<unsigned> DwgRsCode::errorPositions(const std::vector<uint8_t>& locator) const {
  std::vector<unsigned> positions;
  for (unsigned p = 0; p < kN; ++p) {
    unsigned inverse = (kN - p) % kN;
    uint8_t sum = 0;
    for (size_t i = 0; i < locator.size(); ++i) sum ^= field_.mul(locator[i], field_.power(unsigned(inverse * i)));
    if (sum == 0) positions.push_back(p);
  }
  return positions;
}

// Forney: each error's value from the evaluator S(x) * locator(x) mod x^roots and the locator's
// derivative, both at the inverse of the error's locator.
bool DwgRsCode::repair(uint8_t* word, const Syndromes& s, const std::vector<uint8_t>& locator,
                       const std::vector<unsigned>& positions) const {
  std::vector<uint8_t> evaluator(roots_, 0);
  for (size_t i = 0; i < roots_; ++i) {
    for (size_t j = 0; j < locator.size() && j <= i; ++j) evaluator[i] ^= field_.mul(s[i - j], locator[j]);
  }
  for (unsigned p : positions) {
    unsigned inverse = (kN - p) % kN;
    uint8_t value = 0, slope = 0;
    for (size_t i = 0; i < roots_; ++i) value ^= field_.mul(evaluator[i], field_.power(unsigned(inverse * i)));
    for (size_t i = 1; i < locator.size(); i += 2) slope ^= field_.mul(locator[i], field_.power(unsigned(inverse * (i - 1))));
    if (slope == 0) return false;
    word[p] ^= field_.div(value, slope);
  }
  return true;
}

int DwgRsCode::correct(uint8_t* word) const {
  Syndromes s = syndromes(word);
  if (std::all_of(s.begin(), s.begin() + long(roots_), [](uint8_t v) { return v == 0; })) return 0;
  std::vector<uint8_t> locator = errorLocator(s);
  size_t errors = locator.size() - 1;
  if (errors == 0 || errors > roots_ / 2) return -1;
  std::vector<unsigned> positions = errorPositions(locator);
  if (positions.size() != errors) return -1;
  uint8_t kept[kN];
  std::memcpy(kept, word, kN);
  // More errors than the code corrects may look like fewer; the result must be a code word.
  if (!repair(word, s, locator, positions) || !isCodeword(word)) {
    std::memcpy(word, kept, kN);
    return -1;
  }
  return int(errors);
}

void DwgRsCode::encode(uint8_t* word) const {
  // The remainder of x^roots * data(x) modulo the generator is the parity of the code word that
  // holds the data in its top bytes; rotating that word by k bytes gives this layout.
  std::vector<uint8_t> rest(roots_, 0);
  for (size_t j = k_; j-- > 0;) {
    uint8_t feedback = uint8_t(word[j] ^ rest[roots_ - 1]);
    for (size_t i = roots_ - 1; i > 0; --i) rest[i] = uint8_t(rest[i - 1] ^ field_.mul(generator_[i], feedback));
    rest[0] = field_.mul(generator_[0], feedback);
  }
  std::copy(rest.begin(), rest.end(), word + k_);
}

const DwgRsCode& dwgRsSystemCode() {
  static const DwgRsCode code(0x169, 239);
  return code;
}

const DwgRsCode& dwgRsPageCode() {
  static const DwgRsCode code(0x11D, 251);
  return code;
}

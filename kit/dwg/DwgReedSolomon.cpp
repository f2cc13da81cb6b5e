#include "kit/dwg/DwgReedSolomon.h"

#include <algorithm>

#include "kit/base/OdError.h"
#include "kit/dwg/DwgFileSections.h"

namespace {

void gather(const uint8_t* in, size_t blocks, size_t block, size_t k, bool interleaved, uint8_t* word) {
  if (interleaved) {
    for (size_t j = 0; j < kDwgRsCodeword; ++j) word[j] = in[j * blocks + block];
    return;
  }
  const uint8_t* data = in + block * k;
  const uint8_t* parity = in + blocks * k + block * (kDwgRsCodeword - k);
  std::copy(data, data + k, word);
  std::copy(parity, parity + (kDwgRsCodeword - k), word + k);
}

}  // namespace

std::vector<uint8_t> dwgRsData(const uint8_t* in, size_t size, size_t blocks, const DwgRsCode& code,
                               bool interleaved, DwgRsDamage& damage) {
  if (blocks > size / kDwgRsCodeword) throw DwgFormatError{eEndOfFile, "a Reed-Solomon coded page is cut off"};
  const size_t k = code.dataBytes();
  std::vector<uint8_t> out(blocks * k);
  uint8_t word[kDwgRsCodeword];
  for (size_t i = 0; i < blocks; ++i) {
    gather(in, blocks, i, k, interleaved, word);
    if (!code.isCodeword(word)) {
      int fixed = code.correct(word);
      if (fixed < 0) ++damage.badCodewords;
      else damage.correctedBytes += size_t(fixed);
    }
    std::copy(word, word + k, out.begin() + long(i * k));
  }
  return out;
}

void reportDwgRsDamage(const DwgRsDamage& damage, const std::string& what, std::vector<std::string>& messages) {
  if (damage.badCodewords == 0) return;
  messages.push_back(what + ": " + std::to_string(damage.badCodewords) +
                     " Reed-Solomon code words have more errors than they can correct");
}

#include "kit/dwg/DwgReedSolomon.h"

#include "kit/base/OdError.h"
#include "kit/dwg/DwgFileSections.h"

std::vector<uint8_t> dwgRsData(const uint8_t* in, size_t size, size_t blocks, size_t k, bool interleaved) {
  if (k == 0 || k > kDwgRsCodeword || blocks > size / kDwgRsCodeword) {
    throw DwgFormatError{eEndOfFile, "a Reed-Solomon coded page is cut off"};
  }
  std::vector<uint8_t> out(blocks * k);
  if (!interleaved) {
    // The data blocks come first, the parity blocks after them.
    std::copy(in, in + out.size(), out.begin());
    return out;
  }
  for (size_t i = 0; i < blocks; ++i) {
    for (size_t j = 0; j < k; ++j) out[i * k + j] = in[j * blocks + i];
  }
  return out;
}

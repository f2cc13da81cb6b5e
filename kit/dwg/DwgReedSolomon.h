// The Reed-Solomon framing of R2007 pages: code words of 255 bytes, k data bytes then parity,
// either one after another (all data blocks, then all parity blocks) or interleaved byte by byte.
// Damaged code words are corrected where the parity allows it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "kit/dwg/DwgRsCode.h"

constexpr size_t kDwgRsCodeword = 255;
constexpr size_t kDwgRsSystemData = 239;  // system pages and the file header
constexpr size_t kDwgRsPageData = 251;    // data pages

// What decoding found: bytes put right, and code words too damaged to correct (taken as read).
struct DwgRsDamage {
  size_t correctedBytes = 0;
  size_t badCodewords = 0;
};

// The data bytes of `blocks` code words of `code`. Interleaved, byte j of block i lies at
// j * blocks + i. `size` must hold blocks * 255 bytes; otherwise DwgFormatError.
std::vector<uint8_t> dwgRsData(const uint8_t* in, size_t size, size_t blocks, const DwgRsCode& code,
                               bool interleaved, DwgRsDamage& damage);

// One line for `what` when some code words could not be corrected; nothing otherwise.
void reportDwgRsDamage(const DwgRsDamage& damage, const std::string& what, std::vector<std::string>& messages);

// How many code words `dataSize` bytes need, each carrying `k` of them.
inline size_t dwgRsBlocks(size_t dataSize, size_t k) { return (dataSize + k - 1) / k; }

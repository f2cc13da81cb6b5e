// The Reed-Solomon framing of R2007 pages: code words of 255 bytes, k data bytes then parity,
// either one after another or interleaved byte by byte. The data is taken as stored; the parity is
// not used to correct it (the page check sums still catch damage).
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

constexpr size_t kDwgRsCodeword = 255;
constexpr size_t kDwgRsSystemData = 239;  // system pages and the file header
constexpr size_t kDwgRsPageData = 251;    // data pages

// The data bytes of `blocks` code words of `k` data bytes each. Interleaved, byte j of block i lies
// at j * blocks + i. `size` must hold blocks * 255 bytes; otherwise DwgFormatError.
std::vector<uint8_t> dwgRsData(const uint8_t* in, size_t size, size_t blocks, size_t k, bool interleaved);

// How many code words `dataSize` bytes need, each carrying `k` of them.
inline size_t dwgRsBlocks(size_t dataSize, size_t k) { return (dataSize + k - 1) / k; }

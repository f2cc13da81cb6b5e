// The LZ77 variant of R2007 files: literal runs, stored with their bytes in a shuffled order,
// alternating with back-references into the output.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// Decompresses `size` bytes at `in` into exactly `outputSize` bytes. A stream that reads past its
// end, writes past `outputSize` or refers before the start of the output throws DwgFormatError.
std::vector<uint8_t> decompressDwgR21(const uint8_t* in, size_t size, size_t outputSize);

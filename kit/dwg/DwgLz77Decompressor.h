// The LZ77 variant that compresses the pages of R2004, R2010, R2013 and R2018 files: literal runs
// alternating with back-references into the output, ended by opcode 0x11.
#pragma once

#include <cstddef>
#include <cstdint>

// Decompresses `size` bytes at `in` into `out`, which holds `capacity` bytes, and returns how many
// were written. A stream that reads past its end, writes past `capacity` or refers to bytes before
// the start of the output throws DwgFormatError; `out` is never written outside its range.
size_t decompressDwgLz77(const uint8_t* in, size_t size, uint8_t* out, size_t capacity);

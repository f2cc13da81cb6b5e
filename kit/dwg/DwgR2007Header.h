// The file header of R2007 files: 0x400 bytes at 0x80, Reed-Solomon coded in three interleaved
// code words, holding a compressed block that locates the page map and the section map.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Where a system page is and how it is stored; `repeats` copies of its data fill the code words.
struct DwgR2007SystemPage {
  uint64_t offset = 0;  // from the end of the file header (0x480)
  uint64_t compressedSize = 0;
  uint64_t size = 0;
  uint64_t repeats = 1;
  // CRCs of the stored and of the decompressed bytes, and the seed both start from, as stored.
  uint64_t storedCrc = 0;
  uint64_t dataCrc = 0;
  uint64_t crcSeed = 0;
};

struct DwgR2007FileHeader {
  DwgR2007SystemPage pageMap;
  DwgR2007SystemPage sectionMap;  // its offset comes from the page map
  uint64_t sectionMapId = 0;
};

constexpr uint64_t kDwgR2007PagesAt = 0x480;

// Throws DwgFormatError when the header is cut off or does not decompress; damage it survives and
// failed check sums go to `messages`.
DwgR2007FileHeader readDwgR2007FileHeader(std::string_view file, std::vector<std::string>& messages);

// The page map and section map of R2007 files, and the system pages that hold them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "kit/dwg/DwgR2007Header.h"

struct DwgR2007Page {
  uint64_t dataOffset = 0;  // in the section
  uint64_t id = 0;          // into the page map
  uint64_t size = 0;        // decompressed
  uint64_t compressedSize = 0;
  uint64_t checksum = 0;  // over the decompressed bytes
};

struct DwgR2007Section {
  std::string name;  // ASCII names; other characters become '?'
  uint64_t size = 0;
  uint64_t maxPageSize = 0;
  uint64_t encrypted = 0;
  uint64_t encoding = 0;  // 1 plain, 4 interleaved code words
  std::vector<DwgR2007Page> pages;
};

// Page id to position in the file.
using DwgR2007PageIndex = std::unordered_map<uint64_t, uint64_t>;

// Reads a system page: code words of 239 data bytes, interleaved, then decompression. Damage it
// survives goes to `messages`.
std::vector<uint8_t> readDwgR2007SystemPage(std::string_view file, const DwgR2007SystemPage& page, const char* what,
                                            std::vector<std::string>& messages);

DwgR2007PageIndex parseDwgR2007PageMap(const std::vector<uint8_t>& map);

std::vector<DwgR2007Section> parseDwgR2007SectionMap(const std::vector<uint8_t>& map);

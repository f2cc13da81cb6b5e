// The two system pages of R2004 and later files (not R2007): the page map, which places every
// page of the file, and the section map, which names the sections and lists their pages.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

constexpr uint32_t kDwgPageMapType = 0x41630E3B;
constexpr uint32_t kDwgSectionMapType = 0x4163003B;

struct DwgPageLocation {
  int32_t number = 0;  // negative for a gap
  uint64_t address = 0;
  uint64_t size = 0;
};

struct DwgSectionPage {
  uint32_t number = 0;  // into the page map
  uint32_t dataSize = 0;
  uint64_t startOffset = 0;  // in the decompressed section
};

struct DwgSectionInfo {
  std::string name;
  uint64_t size = 0;
  uint32_t maxPageSize = 0;
  uint32_t compressed = 2;  // 1 no, 2 yes
  uint32_t id = 0;
  uint32_t encrypted = 0;
  std::vector<DwgSectionPage> pages;
};

// Reads and decompresses the system page at `address`, which must be of `type`. A wrong check sum
// goes to `messages`; anything that cannot be read throws DwgFormatError.
std::vector<uint8_t> readDwgSystemPage(std::string_view file, uint64_t address, uint32_t type,
                                       std::vector<std::string>& messages);

// The page map: numbers and sizes, the pages laid end to end from the first page's address.
std::vector<DwgPageLocation> parseDwgPageMap(const std::vector<uint8_t>& map);

std::vector<DwgSectionInfo> parseDwgSectionMap(const std::vector<uint8_t>& map);

// The file header of R2004 and later files (not R2007): 0x6C bytes at 0x80, hidden by XOR with a
// fixed pseudo-random sequence, that locate the page map and name the section map's page.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

struct DwgR2004FileHeader {
  uint32_t securityFlags = 0;  // at 0x18 of the file: bit 0 encrypted data, bit 1 encrypted properties
  uint32_t lastPageId = 0;
  uint64_t secondHeaderAddress = 0;
  uint32_t pageCount = 0;
  uint32_t pageMapId = 0;
  uint64_t pageMapAddress = 0;  // in the file, 0x100 added
  uint32_t sectionMapId = 0;
};

constexpr size_t kDwgR2004HeaderAt = 0x80;
constexpr size_t kDwgR2004HeaderSize = 0x6C;
// The first section page follows the file header.
constexpr size_t kDwgR2004FirstPageAt = 0x100;

// The pseudo-random sequence (seed 1) that hides the file header and fills the gaps between pages.
const std::vector<uint8_t>& dwgR2004MagicSequence();

// Decrypts and reads the file header; a wrong identification or check sum is reported in
// `messages`, and the copy that ends the file is used when it is sound. Throws DwgFormatError
// when the file is too short to hold the header.
DwgR2004FileHeader readDwgR2004FileHeader(std::string_view file, std::vector<std::string>& messages);

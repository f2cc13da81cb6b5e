// A data section of R2004 and later files (not R2007), put together from its pages: each page has
// an encrypted 32-byte header, then its compressed data, which decompresses to its place in the
// section. Pages of zeros are not stored; they stay zero here.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "kit/dwg/DwgSectionPages.h"

constexpr uint32_t kDwgDataPageType = 0x4163043B;

using DwgPageIndex = std::unordered_map<int32_t, DwgPageLocation>;

DwgPageIndex indexDwgPages(const std::vector<DwgPageLocation>& pages);

// Throws DwgFormatError when a page lies outside the file, its data does not fit the section, or
// the section is encrypted; wrong check sums go to `messages`.
std::vector<uint8_t> readDwgDataSection(std::string_view file, const DwgSectionInfo& section,
                                        const DwgPageIndex& pages, std::vector<std::string>& messages);

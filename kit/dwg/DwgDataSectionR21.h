// A data section of R2007 files, put together from its pages: each page is Reed-Solomon coded
// (251 data bytes a code word) and usually compressed. Pages of zeros are not stored.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kit/dwg/DwgR2007Maps.h"

// Throws DwgFormatError when a page lies outside the file or the section, the section is
// encrypted, or its sizes are impossible for the file; wrong check sums go to `messages`.
std::vector<uint8_t> readDwgR2007DataSection(std::string_view file, const DwgR2007Section& section,
                                             const DwgR2007PageIndex& pages, std::vector<std::string>& messages);

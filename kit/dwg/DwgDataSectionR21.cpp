#include "kit/dwg/DwgDataSectionR21.h"

#include <algorithm>

#include "kit/base/OdError.h"
#include "kit/dwg/DwgFileSections.h"
#include "kit/dwg/DwgR2007PageChecksum.h"
#include "kit/dwg/DwgR21Decompressor.h"
#include "kit/dwg/DwgReedSolomon.h"

namespace {

// Compression expands at most a few hundred times; sizes far beyond the file are damage.
constexpr uint64_t kMaxExpansion = 256;
constexpr uint64_t kMinSectionLimit = 0x100000;

[[noreturn]] void fail(int code, const std::string& what) { throw DwgFormatError{code, what}; }

// The pages together may decompress to no more than the limit, so repeated pages cannot
// multiply the work.
void checkSection(std::string_view file, const DwgR2007Section& section) {
  uint64_t limit = std::max<uint64_t>(kMinSectionLimit, uint64_t(file.size()) * kMaxExpansion);
  if (section.size > limit) fail(eInvalidDrawing, section.name + " claims " + std::to_string(section.size) + " bytes");
  if (section.encrypted == 1) fail(eUnsupportedFileFormat, section.name + " is encrypted");
  uint64_t total = 0;
  for (const DwgR2007Page& page : section.pages) {
    if (page.size > limit - total) fail(eInvalidDrawing, section.name + " has pages larger than the file allows");
    total += page.size;
  }
}

std::vector<uint8_t> pageData(std::string_view file, const DwgR2007Section& section, const DwgR2007Page& page,
                              uint64_t at, std::vector<std::string>& messages) {
  const std::string what = "page " + std::to_string(page.id) + " of " + section.name;
  if (at > file.size()) fail(eEndOfFile, what + " lies outside the file");
  uint64_t room = file.size() - at;
  if (page.compressedSize == 0 || page.compressedSize > room) fail(eEndOfFile, what + " is cut off");
  uint64_t aligned = (page.compressedSize + 7) & ~uint64_t(7);
  size_t blocks = dwgRsBlocks(aligned, kDwgRsPageData);
  const auto* raw = reinterpret_cast<const uint8_t*>(file.data()) + at;
  DwgRsDamage damage;
  std::vector<uint8_t> data = dwgRsData(raw, room, blocks, dwgRsPageCode(), section.encoding == 4, damage);
  reportDwgRsDamage(damage, what, messages);
  if (page.compressedSize < page.size) return decompressDwgR21(data.data(), page.compressedSize, page.size);
  data.resize(page.size);
  return data;
}

}  // namespace

std::vector<uint8_t> readDwgR2007DataSection(std::string_view file, const DwgR2007Section& section,
                                             const DwgR2007PageIndex& pages, std::vector<std::string>& messages) {
  checkSection(file, section);
  std::vector<uint8_t> out(section.size);
  for (const DwgR2007Page& page : section.pages) {
    auto found = pages.find(page.id);
    if (found == pages.end()) fail(eInvalidDrawing, section.name + " uses page " + std::to_string(page.id) + ", which the page map lacks");
    if (page.dataOffset > out.size()) fail(eInvalidDrawing, section.name + " has a page past its end");
    std::vector<uint8_t> data = pageData(file, section, page, found->second, messages);
    if (dwgR2007PageChecksum(0, data.data(), data.size()) != page.checksum) {
      messages.push_back("page " + std::to_string(page.id) + " of " + section.name + ": check sum mismatch");
    }
    size_t used = std::min<uint64_t>(data.size(), out.size() - page.dataOffset);
    std::copy(data.begin(), data.begin() + long(used), out.begin() + long(page.dataOffset));
  }
  return out;
}

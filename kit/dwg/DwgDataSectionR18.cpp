#include "kit/dwg/DwgDataSectionR18.h"

#include <algorithm>

#include "kit/base/OdError.h"
#include "kit/dwg/DwgFileSections.h"
#include "kit/dwg/DwgLittleEndian.h"
#include "kit/dwg/DwgLz77Decompressor.h"
#include "kit/dwg/DwgPageChecksum.h"

namespace {

constexpr size_t kPageHeaderSize = 0x20;
constexpr uint32_t kPageHeaderMask = 0x4164536B;
constexpr size_t kHeaderChecksumAt = 0x18;
// Compression expands at most about 255 times; a section far larger than the file is damage.
constexpr uint64_t kMaxExpansion = 256;
constexpr uint64_t kMinSectionLimit = 0x100000;
// Pages are normally 0x7400 bytes; the limit only keeps a damaged map from asking for gigabytes.
constexpr uint32_t kMaxPageSize = 0x1000000;

[[noreturn]] void fail(int code, const std::string& what) { throw DwgFormatError{code, what}; }

struct DataPageHeader {
  uint8_t bytes[kPageHeaderSize];
  uint32_t type() const { return dwgLe32(bytes); }
  uint32_t compressedSize() const { return dwgLe32(bytes + 0x08); }
  uint32_t headerChecksum() const { return dwgLe32(bytes + kHeaderChecksumAt); }
  uint32_t dataChecksum() const { return dwgLe32(bytes + 0x1C); }
};

DataPageHeader decryptPageHeader(const uint8_t* raw, uint64_t address) {
  DataPageHeader h;
  uint32_t mask = kPageHeaderMask ^ uint32_t(address);
  for (size_t i = 0; i < kPageHeaderSize; i += 4) dwgPutLe32(h.bytes + i, dwgLe32(raw + i) ^ mask);
  return h;
}

// The data is summed first; the header, its own sum zeroed, is summed on from there.
bool checksumsMatch(const DataPageHeader& header, const uint8_t* data) {
  uint32_t dataSum = dwgPageChecksum(0, data, header.compressedSize());
  if (dataSum != header.dataChecksum()) return false;
  DataPageHeader copy = header;
  dwgPutLe32(copy.bytes + kHeaderChecksumAt, 0);
  return dwgPageChecksum(dataSum, copy.bytes, kPageHeaderSize) == header.headerChecksum();
}

// Each page decompresses to up to maxPageSize bytes, so more pages than the size needs would
// only multiply the work.
void checkSection(std::string_view file, const DwgSectionInfo& section) {
  const std::string& name = section.name;
  uint64_t limit = std::max<uint64_t>(kMinSectionLimit, uint64_t(file.size()) * kMaxExpansion);
  if (section.size > limit) fail(eInvalidDrawing, name + " claims " + std::to_string(section.size) + " bytes");
  if (section.encrypted == 1) fail(eUnsupportedFileFormat, name + " is encrypted");
  if (section.compressed != 1 && section.compressed != 2) {
    fail(eInvalidDrawing, name + " has compression type " + std::to_string(section.compressed));
  }
  if (section.maxPageSize == 0 || section.maxPageSize > kMaxPageSize) {
    fail(eInvalidDrawing, name + " has pages of " + std::to_string(section.maxPageSize) + " bytes");
  }
  if (section.pages.size() > section.size / section.maxPageSize + 1) {
    fail(eInvalidDrawing, name + " lists more pages than its size needs");
  }
}

const DwgPageLocation& locate(std::string_view file, const DwgSectionInfo& section, const DwgSectionPage& page,
                              const DwgPageIndex& pages) {
  auto found = pages.find(int32_t(page.number));
  if (found == pages.end()) fail(eInvalidDrawing, section.name + " uses page " + std::to_string(page.number) + ", which the page map lacks");
  const DwgPageLocation& where = found->second;
  if (where.address > file.size() || file.size() - where.address < kPageHeaderSize) {
    fail(eEndOfFile, "page " + std::to_string(page.number) + " of " + section.name + " lies outside the file");
  }
  return where;
}

// Decompresses one page into `buffer` (maxPageSize bytes) and copies what fits the section.
void readPage(std::string_view file, const DwgSectionInfo& section, const DwgSectionPage& page,
              const DwgPageLocation& where, std::vector<uint8_t>& buffer, std::vector<uint8_t>& out,
              std::vector<std::string>& messages) {
  const auto* raw = reinterpret_cast<const uint8_t*>(file.data()) + where.address;
  DataPageHeader header = decryptPageHeader(raw, where.address);
  const std::string what = "page " + std::to_string(page.number) + " of " + section.name;
  if (header.type() != kDwgDataPageType) fail(eInvalidDrawing, what + " is not a data page");
  uint32_t size = header.compressedSize();
  if (size > file.size() - where.address - kPageHeaderSize) fail(eEndOfFile, what + " is cut off");
  if (page.startOffset > out.size()) fail(eInvalidDrawing, what + " starts past the end of the section");
  const uint8_t* data = raw + kPageHeaderSize;
  if (!checksumsMatch(header, data)) messages.push_back(what + ": check sum mismatch");

  size_t written = 0;
  if (section.compressed == 2) {
    written = decompressDwgLz77(data, size, buffer.data(), buffer.size());
  } else {
    written = std::min<size_t>(buffer.size(), size);
    std::copy(data, data + written, buffer.begin());
  }
  size_t used = std::min<uint64_t>(written, out.size() - page.startOffset);
  std::copy(buffer.begin(), buffer.begin() + long(used), out.begin() + long(page.startOffset));
}

}  // namespace

DwgPageIndex indexDwgPages(const std::vector<DwgPageLocation>& pages) {
  DwgPageIndex index;
  for (const DwgPageLocation& page : pages) {
    if (page.number > 0) index.emplace(page.number, page);
  }
  return index;
}

std::vector<uint8_t> readDwgDataSection(std::string_view file, const DwgSectionInfo& section,
                                        const DwgPageIndex& pages, std::vector<std::string>& messages) {
  checkSection(file, section);
  std::vector<uint8_t> out(section.size);
  std::vector<uint8_t> buffer(section.maxPageSize);
  for (const DwgSectionPage& page : section.pages) {
    readPage(file, section, page, locate(file, section, page, pages), buffer, out, messages);
  }
  return out;
}

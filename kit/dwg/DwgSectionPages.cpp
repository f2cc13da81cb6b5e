#include "kit/dwg/DwgSectionPages.h"

#include "kit/base/OdError.h"
#include "kit/dwg/DwgFileSections.h"
#include "kit/dwg/DwgLittleEndian.h"
#include "kit/dwg/DwgLz77Decompressor.h"
#include "kit/dwg/DwgPageChecksum.h"
#include "kit/dwg/DwgR2004Header.h"

namespace {

constexpr size_t kSystemHeaderSize = 0x14;
constexpr size_t kSectionMapHeaderSize = 0x14;
constexpr size_t kDescriptionSize = 0x60;
constexpr size_t kNameSize = 64;
constexpr size_t kPageEntrySize = 0x10;
// The maps are small; a larger claim is damage, not a drawing.
constexpr uint32_t kMaxSystemPageSize = 0x4000000;

[[noreturn]] void fail(int code, const std::string& what) { throw DwgFormatError{code, what}; }

std::string hex(uint64_t v) {
  static const char digits[] = "0123456789ABCDEF";
  std::string s;
  do {
    s.insert(s.begin(), digits[v & 0xF]);
    v >>= 4;
  } while (v != 0);
  return "0x" + s;
}

std::string mapName(uint32_t type) { return type == kDwgPageMapType ? "page map" : "section map"; }

void checkSystemChecksum(const uint8_t* header, const uint8_t* data, uint32_t size, const std::string& what,
                         std::vector<std::string>& messages) {
  uint8_t copy[kSystemHeaderSize];
  for (size_t i = 0; i < kSystemHeaderSize; ++i) copy[i] = header[i];
  dwgPutLe32(copy + 0x10, 0);
  uint32_t sum = dwgPageChecksum(dwgPageChecksum(0, copy, sizeof copy), data, size);
  if (sum != dwgLe32(header + 0x10)) messages.push_back(what + " check sum mismatch");
}

std::string sectionName(const uint8_t* p) {
  size_t n = 0;
  while (n < kNameSize && p[n] != 0) ++n;
  return std::string(reinterpret_cast<const char*>(p), n);
}

}  // namespace

std::vector<uint8_t> readDwgSystemPage(std::string_view file, uint64_t address, uint32_t type,
                                       std::vector<std::string>& messages) {
  const std::string what = mapName(type);
  if (address > file.size() || file.size() - address < kSystemHeaderSize) {
    fail(eEndOfFile, "the " + what + " lies outside the file (at " + hex(address) + ")");
  }
  const auto* header = reinterpret_cast<const uint8_t*>(file.data()) + address;
  if (dwgLe32(header) != type) fail(eInvalidDrawing, "the " + what + " page has type " + hex(dwgLe32(header)));
  uint32_t decompressedSize = dwgLe32(header + 4);
  uint32_t compressedSize = dwgLe32(header + 8);
  uint32_t compression = dwgLe32(header + 12);
  if (compressedSize > file.size() - address - kSystemHeaderSize) fail(eEndOfFile, "the " + what + " is cut off");
  if (decompressedSize > kMaxSystemPageSize) fail(eInvalidDrawing, "the " + what + " claims " + hex(decompressedSize) + " bytes");
  const uint8_t* data = header + kSystemHeaderSize;
  checkSystemChecksum(header, data, compressedSize, what, messages);

  std::vector<uint8_t> out(decompressedSize);
  if (compression == 2) {
    size_t written = decompressDwgLz77(data, compressedSize, out.data(), out.size());
    if (written != out.size()) fail(eInvalidDrawing, "the " + what + " decompresses to fewer bytes than it claims");
  } else if (compression == 1) {
    if (compressedSize < decompressedSize) fail(eInvalidDrawing, "the " + what + " is shorter than it claims");
    std::copy(data, data + decompressedSize, out.begin());
  } else {
    fail(eInvalidDrawing, "the " + what + " has compression type " + std::to_string(compression));
  }
  return out;
}

std::vector<DwgPageLocation> parseDwgPageMap(const std::vector<uint8_t>& map) {
  std::vector<DwgPageLocation> pages;
  uint64_t address = kDwgR2004FirstPageAt;
  size_t at = 0;
  while (map.size() - at >= 8) {
    DwgPageLocation page;
    page.number = int32_t(dwgLe32(map.data() + at));
    page.size = dwgLe32(map.data() + at + 4);
    page.address = address;
    at += 8;
    // A gap carries its place in the free-space tree (parent, left, right, zero).
    if (page.number < 0) at += std::min<size_t>(16, map.size() - at);
    address += page.size;
    pages.push_back(page);
  }
  return pages;
}

std::vector<DwgSectionInfo> parseDwgSectionMap(const std::vector<uint8_t>& map) {
  if (map.size() < kSectionMapHeaderSize) fail(eInvalidDrawing, "the section map is cut off");
  uint32_t count = dwgLe32(map.data());
  size_t at = kSectionMapHeaderSize;
  std::vector<DwgSectionInfo> sections;
  for (uint32_t i = 0; i < count; ++i) {
    if (map.size() - at < kDescriptionSize) fail(eInvalidDrawing, "the section map ends inside section " + std::to_string(i));
    const uint8_t* d = map.data() + at;
    DwgSectionInfo info;
    info.size = dwgLe64(d);
    uint32_t pageCount = dwgLe32(d + 0x08);
    info.maxPageSize = dwgLe32(d + 0x0C);
    info.compressed = dwgLe32(d + 0x14);
    info.id = dwgLe32(d + 0x18);
    info.encrypted = dwgLe32(d + 0x1C);
    info.name = sectionName(d + 0x20);
    at += kDescriptionSize;
    if ((map.size() - at) / kPageEntrySize < pageCount) {
      fail(eInvalidDrawing, "the section map ends inside the pages of " + info.name);
    }
    info.pages.resize(pageCount);
    for (DwgSectionPage& page : info.pages) {
      page.number = dwgLe32(map.data() + at);
      page.dataSize = dwgLe32(map.data() + at + 4);
      page.startOffset = dwgLe64(map.data() + at + 8);
      at += kPageEntrySize;
    }
    sections.push_back(std::move(info));
  }
  return sections;
}

#include "kit/dwg/DwgR2007Maps.h"

#include <algorithm>

#include "kit/base/OdError.h"
#include "kit/dwg/DwgFileSections.h"
#include "kit/dwg/DwgLittleEndian.h"
#include "kit/dwg/DwgR21Decompressor.h"
#include "kit/dwg/DwgR2007HeaderChecks.h"
#include "kit/dwg/DwgReedSolomon.h"

namespace {

constexpr uint64_t kMaxSystemPageSize = 0x4000000;
constexpr size_t kSectionFieldsSize = 0x40;
constexpr size_t kPageFieldsSize = 0x38;

[[noreturn]] void fail(int code, const std::string& what) { throw DwgFormatError{code, what}; }

std::string asciiName(const uint8_t* p, size_t bytes) {
  std::string name;
  for (size_t i = 0; i + 1 < bytes; i += 2) {
    uint16_t c = dwgLe16(p + i);
    if (c == 0) break;
    name += c < 0x80 ? char(c) : '?';
  }
  return name;
}

DwgR2007Page readPageFields(const uint8_t* p) {
  DwgR2007Page page;
  page.dataOffset = dwgLe64(p);
  page.id = dwgLe64(p + 0x10);
  page.size = dwgLe64(p + 0x18);
  page.compressedSize = dwgLe64(p + 0x20);
  page.checksum = dwgLe64(p + 0x28);
  return page;
}

}  // namespace

std::vector<uint8_t> readDwgR2007SystemPage(std::string_view file, const DwgR2007SystemPage& page, const char* what,
                                            std::vector<std::string>& messages) {
  const std::string name = what;
  uint64_t at = kDwgR2007PagesAt + page.offset;
  if (page.offset > file.size() || at > file.size()) fail(eEndOfFile, "the " + name + " lies outside the file");
  uint64_t room = file.size() - at;
  if (page.compressedSize == 0 || page.compressedSize > room || page.repeats == 0 || page.repeats > room) {
    fail(eInvalidDrawing, "the " + name + " has impossible sizes");
  }
  if (page.size > kMaxSystemPageSize) fail(eInvalidDrawing, "the " + name + " claims " + std::to_string(page.size) + " bytes");
  uint64_t aligned = (page.compressedSize + 7) & ~uint64_t(7);
  if (aligned > room / page.repeats) fail(eEndOfFile, "the " + name + " is cut off");
  size_t blocks = dwgRsBlocks(aligned * page.repeats, kDwgRsSystemData);
  const auto* raw = reinterpret_cast<const uint8_t*>(file.data()) + at;
  DwgRsDamage damage;
  std::vector<uint8_t> data = dwgRsData(raw, room, blocks, dwgRsSystemCode(), true, damage);
  reportDwgRsDamage(damage, "the " + name, messages);
  bool storedHolds = dwgR2007SystemPageCrc(page.crcSeed, data.data(), page.compressedSize) == page.storedCrc;
  if (page.compressedSize < page.size) data = decompressDwgR21(data.data(), page.compressedSize, page.size);
  data.resize(page.size);
  if (!storedHolds || dwgR2007SystemPageCrc(page.crcSeed, data.data(), data.size()) != page.dataCrc) {
    messages.push_back("the " + name + ": check sum mismatch");
  }
  return data;
}

DwgR2007PageIndex parseDwgR2007PageMap(const std::vector<uint8_t>& map) {
  DwgR2007PageIndex index;
  uint64_t offset = kDwgR2007PagesAt;
  for (size_t at = 0; map.size() - at >= 16; at += 16) {
    uint64_t size = dwgLe64(map.data() + at);
    int64_t id = int64_t(dwgLe64(map.data() + at + 8));
    // Negative ids mark free gaps.
    if (id > 0) index.emplace(uint64_t(id), offset);
    if (size > UINT64_MAX - offset) fail(eInvalidDrawing, "the page map's sizes overflow");
    offset += size;
  }
  return index;
}

std::vector<DwgR2007Section> parseDwgR2007SectionMap(const std::vector<uint8_t>& map) {
  std::vector<DwgR2007Section> sections;
  size_t at = 0;
  while (map.size() - at >= kSectionFieldsSize) {
    const uint8_t* f = map.data() + at;
    DwgR2007Section section;
    section.size = dwgLe64(f);
    section.maxPageSize = dwgLe64(f + 0x08);
    section.encrypted = dwgLe64(f + 0x10);
    uint64_t nameBytes = dwgLe64(f + 0x20);
    section.encoding = dwgLe64(f + 0x30);
    uint64_t pageCount = dwgLe64(f + 0x38);
    at += kSectionFieldsSize;
    if (nameBytes > map.size() - at) fail(eInvalidDrawing, "the section map ends inside a section name");
    section.name = asciiName(map.data() + at, size_t(nameBytes));
    at += size_t(nameBytes);
    if (pageCount > (map.size() - at) / kPageFieldsSize) fail(eInvalidDrawing, "the section map ends inside the pages of " + section.name);
    for (uint64_t i = 0; i < pageCount; ++i, at += kPageFieldsSize) section.pages.push_back(readPageFields(map.data() + at));
    sections.push_back(std::move(section));
  }
  return sections;
}

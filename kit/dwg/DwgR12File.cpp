#include "kit/dwg/DwgR12File.h"

#include <algorithm>
#include <string>

#include "kit/base/OdError.h"
#include "kit/dwg/DwgFileSections.h"
#include "kit/dwg/DwgR12Cursor.h"
#include "kit/dwg/DwgLittleEndian.h"

namespace {

const uint8_t* at(std::string_view bytes, size_t offset) { return reinterpret_cast<const uint8_t*>(bytes.data()) + offset; }

// The first five table descriptors follow the section addresses; the other five were added
// among the header variables as the tables were introduced.
constexpr size_t kTableDescriptor[] = {0x2c, 0x36, 0x40, 0x4a, 0x54, 0x3ef, 0x500, 0x512, 0x522, 0x69f};
constexpr const char* kTableName[] = {"block", "layer", "style", "linetype", "view",
                                      "UCS", "viewport", "application", "dimension style", "viewport entity"};
// The fields this reader takes from each record, with the word and check bytes of R11/R12.
constexpr uint16_t kMinimumRecordSize[] = {45, 41, 198, 191, 35, 35, 253, 37, 35, 35};
// The same fields in the earlier releases, without word and check bytes.
constexpr uint16_t kMinimumOldRecordSize[] = {37, 37, 194, 187, 33, 33, 249, 33, 33, 33};
constexpr uint16_t kStyleWithoutBigFont = 194 - 64;

// The earlier releases end their header where they stop adding variables; only R10 has
// the UCS and viewport tables, only R11/R12 the others. Before R11 a style record holds 64
// bytes after its font that are zero in all files seen; they are not taken as a big font.
constexpr DwgR12Release kReleases[] = {
    {"AC1009", 0x6a9, 0x6a9, 10, 2, 2, 2, true, true},
    {"AC1006", 0x512, 0x512, 7, 0, 0, 0, false, true},
    // MIRRTEXT's place holds 1, but R9 has no such variable: its DXF export leaves it out.
    {"AC1004", 0x3ef, 0x3ed, 5, 0, 0, 0, false, false},
    // R2.6 closes a table record with one byte, zero in all files seen.
    {"AC1003", 0x3d5, 0x3d5, 5, 0, 1, 0, false, false},
    {"AC2.10", 0x2e5, 0x2e5, 5, 0, 0, 0, false, false},
};

uint16_t minimumRecordSize(const DwgR12Release& release, size_t table) {
  if (release.r12()) return kMinimumRecordSize[table];
  if (table == size_t(R12Table::kStyle) && !release.bigFont) return kStyleWithoutBigFont + release.recordTail;
  return kMinimumOldRecordSize[table] + release.recordTail;
}

std::string_view section(std::string_view bytes, size_t headerSize, uint32_t start, uint32_t end, const char* name) {
  if (start < headerSize || end < start || end > bytes.size()) {
    throw DwgFormatError{end > bytes.size() ? eEndOfFile : eInvalidDrawing,
                         std::string("the ") + name + " section (" + dwgR12Offset(start) + " to " + dwgR12Offset(end) +
                             ") lies outside the file of " + std::to_string(bytes.size()) + " bytes"};
  }
  return bytes.substr(start, end - start);
}

}  // namespace

const DwgR12Release* dwgR12Release(std::string_view mark) {
  for (const DwgR12Release& r : kReleases) {
    if (mark.substr(0, 6) == r.mark) return &r;
  }
  return nullptr;
}

std::string_view DwgR12File::record(R12Table t, size_t index) const {
  const DwgR12TableLocation& loc = table(t);
  return bytes.substr(loc.start + index * loc.recordSize, loc.recordSize - release->recordTail);
}

DwgR12File readDwgR12File(std::string_view bytes) {
  DwgR12File file;
  file.release = dwgR12Release(bytes);
  if (!file.release) throw DwgFormatError{eUnsupportedFileFormat, "the file is not of a release from R2.10 to R12"};
  const size_t headerSize = file.release->headerSize;
  if (bytes.size() < headerSize) {
    throw DwgFormatError{eEndOfFile, "the file ends within its header (" + std::to_string(bytes.size()) + " bytes)"};
  }
  file.bytes = bytes;
  file.entities = section(bytes, headerSize, dwgLe32(at(bytes, 0x14)), dwgLe32(at(bytes, 0x18)), "entity");
  // The block section's size shares its word with flag bits above 24 bits.
  uint32_t blocksStart = dwgLe32(at(bytes, 0x1c));
  uint32_t blocksSize = dwgLe32(at(bytes, 0x20)) & 0x00ffffff;
  uint32_t blocksEnd = uint32_t(std::min<uint64_t>(uint64_t(blocksStart) + blocksSize, UINT32_MAX));
  file.blockEntities = section(bytes, headerSize, blocksStart, blocksEnd, "block entity");
  for (size_t t = 0; t < file.release->tables; ++t) {
    const uint8_t* d = at(bytes, kTableDescriptor[t]);
    DwgR12TableLocation loc{dwgLe16(d), dwgLe16(d + 2), dwgLe32(d + 6)};
    if (loc.count == 0) loc.start = 0;
    uint64_t end = uint64_t(loc.start) + uint64_t(loc.recordSize) * loc.count;
    if (loc.count > 0 && (loc.start < headerSize || end > bytes.size())) {
      throw DwgFormatError{end > bytes.size() ? eEndOfFile : eInvalidDrawing,
                           std::string("the ") + kTableName[t] + " table (" + std::to_string(loc.count) + " records at " +
                               dwgR12Offset(loc.start) + ") lies outside the file"};
    }
    if (loc.count > 0 && loc.recordSize < minimumRecordSize(*file.release, t)) {
      throw DwgFormatError{eInvalidDrawing, std::string("the ") + kTableName[t] + " table's records have " +
                                                std::to_string(loc.recordSize) + " bytes, too few for their fields"};
    }
    file.tables[t] = loc;
  }
  return file;
}

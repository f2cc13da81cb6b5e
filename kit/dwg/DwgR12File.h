// Where the parts of an R11/R12 DWG file (AC1009) lie: the entity section, the block entity
// section and the ten tables, each a run of fixed-size records, all located by the file header.
// Every range is checked against the file before it is handed out.
//
// R2.10, R2.6, R9 and R10 files share this layout with a shorter header (fewer variables and
// table descriptors) and leaner records; DwgR12Release says what each leaves out.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

enum class R12Table { kBlock, kLayer, kStyle, kLinetype, kView, kUcs, kVport, kAppid, kDimstyle, kVportEntity, kCount };

struct DwgR12TableLocation {
  uint16_t recordSize = 0;
  uint16_t count = 0;
  uint32_t start = 0;
};

struct DwgR12Release {
  const char* mark;       // "AC1009"
  size_t headerSize;      // the header variables and table descriptors end before this offset
  size_t variablesEnd;    // the header variables the release has end before this offset
  size_t tables;          // the tables with a descriptor: the first ones of R12Table
  uint16_t recordWord;    // bytes between a table record's name and its fields
  uint16_t recordTail;    // check bytes closing a table record
  uint16_t entityTail;    // check bytes closing an entity record
  bool bigFont;           // text style records name a big font
  uint16_t byLayer() const { return r12() ? 0x7fff : 256; }  // linetype indexes of BYLAYER
  uint16_t byBlock() const { return r12() ? 0x7ffe : 255; }  // and BYBLOCK
  // From R10 on, flag 4 says that a line, point or face has two-dimensional points; before,
  // their points are two-dimensional unless an option bit gives a point its z.
  bool flatByFlag;
  bool r12() const { return entityTail != 0; }
};

// The release of a file by its first six bytes, or null for marks this reader does not take.
const DwgR12Release* dwgR12Release(std::string_view mark);

struct DwgR12File {
  const DwgR12Release* release = nullptr;
  std::string_view bytes;  // the whole file; the header variables are read from it in place
  std::string_view entities;
  std::string_view blockEntities;
  std::array<DwgR12TableLocation, size_t(R12Table::kCount)> tables{};

  const DwgR12TableLocation& table(R12Table t) const { return tables[size_t(t)]; }
  // Record `index` of a table, without its check bytes.
  std::string_view record(R12Table t, size_t index) const;
};

// Throws DwgFormatError when the file is shorter than its release's header, a range lies outside
// the file or a table's records are too small.
DwgR12File readDwgR12File(std::string_view bytes);

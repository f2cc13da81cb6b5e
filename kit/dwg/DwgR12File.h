// Where the parts of an R11/R12 DWG file (AC1009) lie: the entity section, the block entity
// section and the ten tables, each a run of fixed-size records, all located by the file header.
// Every range is checked against the file before it is handed out.
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

struct DwgR12File {
  std::string_view bytes;  // the whole file; the header variables are read from it in place
  std::string_view entities;
  std::string_view blockEntities;
  std::array<DwgR12TableLocation, size_t(R12Table::kCount)> tables{};

  const DwgR12TableLocation& table(R12Table t) const { return tables[size_t(t)]; }
  // Record `index` of a table, without its check bytes.
  std::string_view record(R12Table t, size_t index) const;
};

// The header variables end before this offset; shorter files are not drawings.
constexpr size_t kDwgR12HeaderSize = 0x6a9;

// Throws DwgFormatError when a range lies outside the file or a table's records are too small.
DwgR12File readDwgR12File(std::string_view bytes);

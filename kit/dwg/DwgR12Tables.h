// The table records of an R11/R12 DWG file (AC1009): read from their fixed-size records and
// written as the TABLES section of the equivalent R12 DXF text. Entities name layers, linetypes,
// text styles, blocks and applications by their index in these tables; the lookups here turn
// an index into the name DXF uses, and reject an index the table does not have.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kit/dwg/DwgR12File.h"

class DxfTagWriter;

struct DwgR12Record {
  std::string name;
  uint8_t flags = 0;
  bool deleted() const { return flags & 0x80; }
};

struct DwgR12Layer : DwgR12Record {
  int16_t color = 7;  // negative when the layer is off
  uint16_t linetype = 0;
};

struct DwgR12Style : DwgR12Record {
  double height = 0, widthFactor = 1, oblique = 0, lastHeight = 0;
  uint8_t generation = 0;
  std::string font, bigFont;
};

struct DwgR12Linetype : DwgR12Record {
  std::string description;
  uint8_t alignment = 'A';
  double patternLength = 0;
  std::vector<double> dashes;
};

struct DwgR12Block : DwgR12Record {
  uint32_t offset = 0;  // of its BLOCK record in the block entity section
};

struct DwgR12Vport : DwgR12Record {
  double values[30] = {};  // the doubles of the record in file order
  int16_t modes[8] = {};   // groups 71 to 78
};

struct DwgR12Tables {
  std::vector<DwgR12Block> blocks;
  std::vector<DwgR12Layer> layers;
  std::vector<DwgR12Style> styles;
  std::vector<DwgR12Linetype> linetypes;
  std::vector<DwgR12Vport> vports;
  std::vector<DwgR12Record> appids;
  std::vector<DwgR12Record> dimstyles;
  uint16_t byLayer = 0x7fff, byBlock = 0x7ffe;  // linetype indexes

  const std::string& layerName(uint16_t index) const;
  // 0x7FFF is BYLAYER and 0x7FFE BYBLOCK (256 and 255 before R11).
  std::string linetypeName(uint16_t index) const;
  const std::string& styleName(uint16_t index) const;
  const std::string& appName(uint16_t index) const;
  // Anonymous blocks ("*D", "*X", ...) all carry the bare prefix in the file; DXF names them
  // apart by a number, here their index.
  std::string blockName(uint16_t index) const;
  // The block whose BLOCK record starts at `offset` in the block entity section, or -1.
  int blockAtOffset(uint32_t offset) const;
};

DwgR12Tables readDwgR12Tables(const DwgR12File& file);
void writeDwgR12Tables(const DwgR12Tables& tables, DxfTagWriter& out);

// The entity records of an R11/R12 DWG file (AC1009), written as the entities of the equivalent
// R12 DXF text.
//
// A record is: kind, flags, its length, the layer index, option bits, then the common fields the
// flags announce (extended data, colour, linetype, elevation, thickness, handle, viewport), then
// the fields of its kind, some present by option bits, and (R11/R12 only) two check bytes. Kinds with the top
// bit set are erased records, which are skipped.
#pragma once

#include <string_view>

#include "kit/dwg/DwgR12Tables.h"

class DxfTagWriter;

// The model and paper space entities of the entity section.
void writeDwgR12Entities(std::string_view section, const DwgR12Release& release, const DwgR12Tables& tables,
                         DxfTagWriter& out);
// The block entity section: each block runs from its BLOCK record to its ENDBLK record and is
// named by the block table record that points at its BLOCK record.
void writeDwgR12Blocks(std::string_view section, const DwgR12Release& release, const DwgR12Tables& tables,
                       DxfTagWriter& out);

// The header variables of an R11/R12 DWG file (AC1009) that the drawing database keeps, written
// as the HEADER section of the equivalent R12 DXF text.
#pragma once

#include "kit/dwg/DwgR12File.h"
#include "kit/dwg/DwgR12Tables.h"

class DxfTagWriter;

void writeDwgR12Header(const DwgR12File& file, const DwgR12Tables& tables, DxfTagWriter& out);

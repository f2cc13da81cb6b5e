// Extended data of R11/R12 DWG entities: a byte count, then items each opened by its group code
// less 1000 (0 text, 1 application, 2 brace, 10 point, 40 real, 70 integer, ...). Dimensions
// keep their style overrides and viewports their view here, so it is carried over to DXF.
#pragma once

#include <string_view>

#include "kit/dwg/DwgR12Tables.h"

class DxfTagWriter;

// Writes the groups of `data` (without its byte count). Data with an item of an unknown kind is
// left out whole, as its later items cannot be found.
void writeDwgR12ExtendedData(std::string_view data, const DwgR12Tables& tables, DxfTagWriter& out);

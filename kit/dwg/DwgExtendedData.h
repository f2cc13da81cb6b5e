// Extended data items of one application, decoded into the DXF form the database keeps
// (1000 strings, 1010 points as 1010/1020/1030, ...).
#pragma once

#include <string_view>
#include <vector>

#include "kit/db/DbObject.h"

class DxfTextDecoder;

// False when the bytes end inside an item or hold an unknown code; the items before are kept.
bool decodeDwgExtendedData(std::string_view bytes, int version, const DxfTextDecoder& decoder, TaggedValues& out);

// AutoCAD 1.4 drawings (mark "AC1.40"): a fixed header of a few settings and a table of layer
// colours, then one run of entity records without lengths, block definitions among them. They
// are read, like R2.10 to R12 files, by turning them into R12 DXF text.
//
// Each record is its kind (negative when erased), the layer number, then the fields of the kind
// in a fixed order. A kind this reader does not know ends the reading with an error, as the
// records after it cannot be found.
#pragma once

#include <string>
#include <string_view>

bool isDwgAc14(std::string_view bytes);

// The R12 DXF text of the file. Throws DwgFormatError when the file is damaged.
std::string dwgAc14ToDxf(std::string_view bytes);

// R11/R12 DWG files (AC1009) are a packed form of what an R12 DXF file says: the same header
// variables, tables, blocks and entities, in fixed-size table records and compact entity
// records. They are read by turning them into that DXF text and reading it with the DXF reader,
// so that both forms of a drawing load alike. R2.10, R2.6, R9 and R10 files (AC2.10, AC1003,
// AC1004, AC1006) take the same route; see DwgR12Release for what they lack. So do AutoCAD 1.4
// files (AC1.40), laid out differently: see DwgOldAc14.h.
#pragma once

#include <string>
#include <string_view>

#include "kit/db/OdDbDatabase.h"

// The R12 DXF text of the file. Throws DwgFormatError when the file is damaged.
std::string dwgR12ToDxf(std::string_view bytes);

// Loads the file through its DXF text; `recover` is handed to the DXF reader, `sourceName`
// names the file in messages. Throws DwgFormatError
// for a damaged DWG file and OdError when the DXF reader refuses the text.
OdDbDatabasePtr readDwgR12(std::string_view bytes, bool recover, const std::string& sourceName);

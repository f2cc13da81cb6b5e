// Reading DXF files (ASCII and binary, R12 to R2018) into a new drawing database.
//
// The strict calls throw OdError when the file cannot be read as a drawing: eFileNotFound or
// eCantOpenFile when it cannot be opened, eNotDrawingFile when it is not DXF at all (binary
// garbage, another format, an empty file), eEndOfFile when it is cut off, eBadDxfSequence when
// its group codes or values are broken. The description names the file and the place.
//
// With `recover` set, a damaged file yields the database read up to the damage (completed with
// the standard records, so that it can be converted) and the damage is listed in the database's
// load report; only a file that is not DXF at all, or that cannot be opened, still throws.
#pragma once

#include <string>
#include <string_view>

#include "kit/db/OdDbDatabase.h"

struct DxfReadOptions {
  bool recover = false;
};

OdDbDatabasePtr readDxfFile(const std::string& pathUtf8, const DxfReadOptions& options = {});
// Same as readDxfFile with recovery on.
OdDbDatabasePtr recoverDxfFile(const std::string& pathUtf8);
// Reads DXF held in memory; `sourceName` names it in messages.
OdDbDatabasePtr readDxfBuffer(std::string_view bytes, const DxfReadOptions& options = {},
                              const std::string& sourceName = "DXF data");
// True when the first bytes look like a DXF file (binary sentinel, or a first group code
// followed by SECTION or a comment), so that callers can tell DXF from other inputs.
bool looksLikeDxf(std::string_view firstBytes);

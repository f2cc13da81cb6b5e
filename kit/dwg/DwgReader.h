// Reading DWG files (AutoCAD 1.4, R2.10 to R12 and R13 to R2018: AC1.40, AC2.10, AC1003 to
// AC1009 and AC1012 to AC1032) into a new drawing database, the same database the DXF reader
// fills.
//
// The strict calls throw OdError when the file cannot be read as a drawing: eFileNotFound or
// eCantOpenFile when it cannot be opened, eNotDrawingFile when it is not DWG at all,
// eUnsupportedFileFormat for the other releases before R13, eEndOfFile when it is cut off and
// eInvalidDrawing or eDwgCRCError when its structure is broken. The description names the file
// and the problem.
//
// Objects that fail to decode are skipped with one line each in the database's load report; the
// rest still loads. With `recover` set, a file whose object map or header is damaged yields what
// could be read (completed with the standard records) instead of an error.
#pragma once

#include <string>
#include <string_view>

#include "kit/db/OdDbDatabase.h"

struct DwgReadOptions {
  bool recover = false;
};

OdDbDatabasePtr readDwgFile(const std::string& pathUtf8, const DwgReadOptions& options = {});
// Same as readDwgFile with recovery on.
OdDbDatabasePtr recoverDwgFile(const std::string& pathUtf8);
// Reads DWG held in memory; `sourceName` names it in messages.
OdDbDatabasePtr readDwgBuffer(std::string_view bytes, const DwgReadOptions& options = {},
                              const std::string& sourceName = "DWG data");
// True when the first bytes carry a DWG version mark ("AC1015", "AC1.40", ...), whether or not
// this reader supports that release.
bool looksLikeDwg(std::string_view firstBytes);

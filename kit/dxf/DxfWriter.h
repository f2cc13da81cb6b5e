// Writing a drawing database as an ASCII DXF file, R2000 (AC1015) or later.
//
// The file holds every section a CAD program expects (HEADER, CLASSES, TABLES, BLOCKS, ENTITIES,
// OBJECTS) with handles, owners and subclass markers, every entity kind and object the database
// holds, and what was kept whole when read (proxies, unmodelled objects, modeler data) as it was
// read. Text is encoded for the version: in $DWGCODEPAGE before R2007 (characters the code page
// lacks as "\U+XXXX"), UTF-8 from R2007 on. Reals are written so that reading them back gives the
// same values; values that are not numbers (NaN, infinities) are written as 0.
//
// A DXF file written from a database read from DXF reads back into the same database (see the
// round trip tests), except for what a version older than the drawing's cannot hold.
#pragma once

#include <string>

class OdDbDatabase;

struct DxfWriteOptions {
  // "AC1015" (R2000), "AC1018", "AC1021", "AC1024", "AC1027" or "AC1032" (R2018). Empty: the
  // drawing's own version when it is R2000 or later, else R2000.
  std::string version;
  // Significant digits of reals; 0 writes the shortest text that reads back exactly.
  int precision = 0;
};

// Writes the file through a temporary file in the same directory renamed over `pathUtf8` once
// complete, so that a failed write never leaves a partial drawing. Throws OdError (eInvalidInput
// for a version it cannot write, eCantOpenFile or eFileAccessErr when the file cannot be written)
// with a text naming the file.
void writeDxfFile(const OdDbDatabase& db, const std::string& pathUtf8, const DxfWriteOptions& options = {});

// The same DXF text, in memory.
std::string writeDxfString(const OdDbDatabase& db, const DxfWriteOptions& options = {});

// The version a write with these options produces ("AC1015" ...), or empty when the requested
// version cannot be written.
std::string dxfOutputVersion(const OdDbDatabase& db, const DxfWriteOptions& options);

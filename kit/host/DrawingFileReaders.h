// The one place where a drawing file meets its reader or writer. Files are told apart by their
// first bytes, not by their names: a DXF file named .dwg still loads.
#pragma once

#include <string>

#include "kit/db/OdDbDatabase.h"

// How a database is saved.
enum OdDbSaveType { kSaveDwg = 0, kSaveDxf = 1 };

// The kit's numbers for drawing versions, as callers pass them to the writers.
enum OdDbDwgVersion {
  kDwgVersionAC1015 = 23,  // R2000
  kDwgVersionAC1018 = 25,  // R2004
  kDwgVersionAC1021 = 27,  // R2007
  kDwgVersionAC1024 = 29,  // R2010
  kDwgVersionAC1027 = 31,  // R2013
  kDwgVersionAC1032 = 33,  // R2018
};

// "AC1024" for 29 ...; empty for a number the kit does not know.
std::string odDwgVersionName(int version);

// Reads a DWG or DXF file. Throws OdError: the readers' errors (eFileNotFound, eCantOpenFile,
// eNotDrawingFile, eUnsupportedFileFormat for DWG releases before R11, ...).
// With `recover`, a damaged file gives what could be read (the database's load report lists the
// damage) instead of an error.
OdDbDatabasePtr readDrawingFile(const std::string& pathUtf8, bool recover);

// Writes the database as DWG or DXF. `version` is one of OdDbDwgVersion, or 0 for the version the
// drawing was read in. Throws OdError: the writers' errors, eInvalidInput for a version number
// the kit does not know, eNotImplemented for DWG while no DWG writer is linked.
void writeDrawingFile(const OdDbDatabase& db, const std::string& pathUtf8, OdDbSaveType type,
                      int version);

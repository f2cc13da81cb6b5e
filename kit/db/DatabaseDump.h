// A stable text form of a database: header variables, tables, layouts, blocks and their entities
// with handles and key values, for tests and reviewers comparing two loads (the same file twice,
// or a DXF and a DWG of one drawing). The order follows the database (file order), numbers are
// printed with a fixed precision, angles in degrees.
#pragma once

#include <string>

class OdDbDatabase;

struct DumpOptions {
  bool entities = true;             // list every entity (else counts per block only)
  bool allHeaderVariables = false;  // also every header variable as read
  bool loadReport = true;           // the reader's messages and repairs
  int significantDigits = 12;
  size_t maxVerticesPerEntity = 64;  // longer vertex lists are cut with "..."
};

std::string dumpDatabase(const OdDbDatabase& db, const DumpOptions& options = {});

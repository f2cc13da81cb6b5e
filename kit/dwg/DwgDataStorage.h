// The data storage section of R2013 and later files (AcDb:AcDsPrototype_1b): a store of file
// segments found through a segment index, whose data segments hold records keyed by object
// handle. AutoCAD keeps the binary ACIS data of REGION, 3DSOLID, BODY and surfaces there.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

struct DwgStoredRecord {
  uint64_t handle = 0;
  std::string_view bytes;  // into the section
};

// The records whose bytes are binary ACIS data. Damage stops the reading with a message; the
// records read before it are kept.
std::vector<DwgStoredRecord> readDwgAcisRecords(std::string_view section, std::vector<std::string>& messages);

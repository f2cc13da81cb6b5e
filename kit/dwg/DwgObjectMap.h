// The object map (the handles section): where each object lies in the objects section, by
// handle. Stored as chunks of at most 2032 bytes, each a big-endian size, pairs of modular chars
// (handle and offset, both relative to the previous pair of the chunk) and a big-endian check sum.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

struct DwgMapEntry {
  uint64_t handle;
  uint64_t offset;
};

// Reads the map into `entries` (sorted by handle, duplicates dropped: the later entry wins).
// Problems (bad check sums, a cut-off map) are appended to `messages`.
void readDwgObjectMap(std::string_view section, std::vector<DwgMapEntry>& entries, std::vector<std::string>& messages);

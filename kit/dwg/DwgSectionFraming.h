// The frame of the header and classes sections: a 16-byte sentinel, the size of the data, the
// data, a check sum over size and data, and a closing sentinel. From R2007 the data holds a
// string stream at its end, found the way objects find theirs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

class DwgStreams;

extern const uint8_t kDwgHeaderSentinel[16];
extern const uint8_t kDwgClassesSentinel[16];

struct DwgSectionFrame {
  bool ok = false;
  bool crcOk = false;
  size_t endBit = 0;  // end of the values, in bits of the data stream
  std::string problem;
};

// Points `s` at the section's data. `maintenanceVersion` decides whether R2010 and R2013 files
// carry a second size field.
DwgSectionFrame openDwgSection(std::string_view section, const uint8_t* sentinel, DwgStreams& s, int maintenanceVersion);

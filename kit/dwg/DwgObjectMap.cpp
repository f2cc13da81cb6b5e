#include "kit/dwg/DwgObjectMap.h"

#include <algorithm>

#include "kit/dwg/DwgBitReader.h"
#include "kit/dwg/DwgCrc.h"

void readDwgObjectMap(std::string_view section, std::vector<DwgMapEntry>& entries, std::vector<std::string>& messages) {
  const auto* bytes = reinterpret_cast<const uint8_t*>(section.data());
  size_t size = section.size();
  size_t pos = 0;
  uint64_t handle = 0;
  int64_t offset = 0;
  size_t badChunks = 0;
  bool sorted = true;
  for (;;) {
    if (pos + 2 > size) {
      messages.push_back("the object map ends without its closing chunk");
      break;
    }
    size_t chunk = (size_t(bytes[pos]) << 8) | bytes[pos + 1];
    if (chunk <= 2) break;  // the closing chunk holds only its check sum
    if (pos + chunk + 2 > size) {
      messages.push_back("the object map is cut off");
      chunk = size - pos >= 2 ? size - pos - 2 : 0;
      if (chunk <= 2) break;
    } else {
      uint16_t stored = uint16_t((bytes[pos + chunk] << 8) | bytes[pos + chunk + 1]);
      if (dwgCrc16(0xC0C1, bytes + pos, chunk) != stored) ++badChunks;
    }
    // Each chunk counts its handles and offsets afresh.
    handle = 0;
    offset = 0;
    DwgBitReader r(bytes + pos + 2, chunk - 2);
    while (r.bitsLeft() >= 16 && !r.overrun()) {
      uint64_t handleStep = r.UMC();
      int64_t offsetStep = r.MC();
      if (r.overrun()) break;
      handle += handleStep;
      if (!entries.empty() && handle <= entries.back().handle) sorted = false;
      // An offset that leaves the range of the file is damage; the next pair starts over.
      if (__builtin_add_overflow(offset, offsetStep, &offset)) offset = 0;
      if (offset >= 0) entries.push_back({handle, uint64_t(offset)});
    }
    pos += chunk + 2;
  }
  if (badChunks) messages.push_back(std::to_string(badChunks) + " object map chunks fail their check sum");
  if (!sorted) {
    std::stable_sort(entries.begin(), entries.end(), [](const DwgMapEntry& a, const DwgMapEntry& b) { return a.handle < b.handle; });
  }
  // Keep the last entry of each handle.
  size_t kept = 0;
  for (size_t i = 0; i < entries.size(); ++i) {
    if (kept > 0 && entries[kept - 1].handle == entries[i].handle) entries[kept - 1] = entries[i];
    else entries[kept++] = entries[i];
  }
  entries.resize(kept);
  entries.shrink_to_fit();  // the map lives through the whole load
}

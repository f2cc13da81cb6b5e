#include "kit/dwg/DwgSectionFraming.h"

#include <cstring>

#include "kit/dwg/DwgCrc.h"
#include "kit/dwg/DwgObjectFrame.h"
#include "kit/dwg/DwgStreams.h"

const uint8_t kDwgHeaderSentinel[16] = {0xCF, 0x7B, 0x1F, 0x23, 0xFD, 0xDE, 0x38, 0xA9,
                                        0x5F, 0x7C, 0x68, 0xB8, 0x4E, 0x6D, 0x33, 0x5F};
const uint8_t kDwgClassesSentinel[16] = {0x8D, 0xA1, 0xC4, 0xB8, 0xC4, 0xA9, 0xF8, 0xC5,
                                         0xC0, 0xDC, 0xF4, 0x5F, 0xE7, 0xCF, 0xB6, 0x8A};

namespace {

uint32_t u32(const uint8_t* p) {
  uint32_t v;
  std::memcpy(&v, p, 4);
  return v;
}

}  // namespace

DwgSectionFrame openDwgSection(std::string_view section, const uint8_t* sentinel, DwgStreams& s, int maintenanceVersion) {
  DwgSectionFrame frame;
  const auto* bytes = reinterpret_cast<const uint8_t*>(section.data());
  size_t dataAt = 20;
  bool secondSize = s.atLeast(1032) || (s.atLeast(1024) && maintenanceVersion > 3);
  if (secondSize) dataAt += 4;
  if (section.size() < dataAt + 2) {
    frame.problem = "it is cut off";
    return frame;
  }
  if (std::memcmp(bytes, sentinel, 16) != 0) {
    frame.problem = "its sentinel is missing";
    return frame;
  }
  uint32_t size = u32(bytes + 16);
  if (size > section.size() - dataAt) {
    frame.problem = "it claims " + std::to_string(size) + " bytes";
    return frame;
  }
  const uint8_t* data = bytes + dataAt;
  if (dataAt + size + 2 <= section.size()) {
    uint16_t stored = uint16_t(data[size] | (data[size + 1] << 8));
    frame.crcOk = dwgCrc16(0xC0C1, bytes + 16, dataAt - 16 + size) == stored;
  }
  s.data = DwgBitReader(data, size);
  frame.endBit = size_t(size) * 8;
  if (s.atLeast(kDwgR2007)) {
    // The data begins with its size in bits: handles follow the values there, and the strings
    // end the values.
    uint64_t bits = uint32_t(s.data.RL());
    splitDwgStreams(s, data, size, bits > frame.endBit ? frame.endBit : size_t(bits));
    frame.endBit = s.data.endBit();
  }
  frame.ok = true;
  return frame;
}

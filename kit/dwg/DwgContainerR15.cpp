// R13, R14 and R2000 files: a file header with section locators, then the sections in place.
#include <cstring>

#include "kit/base/OdError.h"
#include "kit/dwg/DwgCrc.h"
#include "kit/dwg/DwgFileSections.h"

namespace {

constexpr size_t kLocatorCountAt = 0x15;
constexpr size_t kLocatorsAt = 0x19;
constexpr size_t kLocatorSize = 9;
constexpr uint8_t kEndOfLocatorsSentinel[16] = {0x95, 0xA0, 0x4E, 0x28, 0x99, 0x82, 0x1A, 0xE5,
                                                0x5E, 0x41, 0xE0, 0x5F, 0x9D, 0x3A, 0x4D, 0x00};

uint32_t readU32(std::string_view bytes, size_t at) {
  uint32_t v;
  std::memcpy(&v, bytes.data() + at, 4);
  return v;
}

uint16_t readU16(std::string_view bytes, size_t at) {
  uint16_t v;
  std::memcpy(&v, bytes.data() + at, 2);
  return v;
}

[[noreturn]] void fail(int code, const std::string& message) { throw DwgFormatError{code, message}; }

std::string_view sectionAt(std::string_view bytes, uint32_t seeker, uint32_t size, const char* what) {
  if (seeker > bytes.size() || size > bytes.size() - seeker) {
    fail(eEndOfFile, std::string("the ") + what + " section lies outside the file (offset " + std::to_string(seeker) +
                         ", " + std::to_string(size) + " bytes)");
  }
  return bytes.substr(seeker, size);
}

}  // namespace

void readDwgContainerR15(std::string_view bytes, DwgFileSections& sections) {
  if (bytes.size() < kLocatorsAt) fail(eEndOfFile, "the file header is cut off");
  sections.maintenanceVersion = uint8_t(bytes[0x0B]);
  sections.codePage = readU16(bytes, 0x13);
  uint32_t count = readU32(bytes, kLocatorCountAt);
  if (count < 3 || count > 16) fail(eInvalidDrawing, "the file header lists " + std::to_string(count) + " sections");
  size_t crcAt = kLocatorsAt + size_t(count) * kLocatorSize;
  if (crcAt + 2 + sizeof kEndOfLocatorsSentinel > bytes.size()) fail(eEndOfFile, "the file header is cut off");

  const auto* raw = reinterpret_cast<const uint8_t*>(bytes.data());
  uint16_t stored = readU16(bytes, crcAt);
  if (dwgCrc16(0xC0C1, raw, crcAt) != stored) sections.messages.push_back("file header check sum mismatch");
  if (std::memcmp(raw + crcAt + 2, kEndOfLocatorsSentinel, sizeof kEndOfLocatorsSentinel) != 0) {
    sections.messages.push_back("file header sentinel missing");
  }

  bool seen[3] = {false, false, false};
  for (uint32_t i = 0; i < count; ++i) {
    size_t at = kLocatorsAt + size_t(i) * kLocatorSize;
    uint8_t record = uint8_t(bytes[at]);
    uint32_t seeker = readU32(bytes, at + 1);
    uint32_t size = readU32(bytes, at + 5);
    switch (record) {
      case 0: sections.header = sectionAt(bytes, seeker, size, "header"); break;
      case 1: sections.classes = sectionAt(bytes, seeker, size, "classes"); break;
      case 2: sections.handles = sectionAt(bytes, seeker, size, "object map"); break;
      case 4:
        if (seeker <= bytes.size() && size <= bytes.size() - seeker) sections.templateSection = bytes.substr(seeker, size);
        continue;
      default: continue;
    }
    seen[record] = true;
  }
  if (!seen[0] || !seen[1] || !seen[2]) fail(eInvalidDrawing, "the file header lacks the header, classes or object map section");
  sections.objects = bytes;
}

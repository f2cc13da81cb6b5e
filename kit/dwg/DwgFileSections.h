// What the container of a DWG file yields, whatever its release: the sections the object reader
// needs as plain byte ranges, and the file's identity. R13 to R2000 files hold their sections
// in place (views into the file); R2004 and later files hold them in compressed pages, which are
// decompressed into buffers owned here.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct DwgFileSections {
  int version = 0;             // 1012, 1014, 1015, 1018, 1021, 1024, 1027, 1032
  int maintenanceVersion = 0;  // the byte at 0x0B
  int codePage = 30;           // the raw code page number at 0x13
  std::string versionText;     // "AC1015"

  // Each starts with the section's 16-byte sentinel.
  std::string_view header;
  std::string_view classes;
  // The object map: handle and offset pairs in chunks.
  std::string_view handles;
  // Objects, addressed by the offsets of the object map (the whole file before R2004).
  std::string_view objects;
  // R2007 and later store the template section (MEASUREMENT) on its own; empty when absent.
  std::string_view templateSection;
  // R2013 and later: the data storage (AcDb:AcDsPrototype_1b), where ACIS data lives; empty when absent.
  std::string_view dataStorage;

  // Problems found in the container that did not stop reading (bad check sums, ...).
  std::vector<std::string> messages;

  // Owns the decompressed sections the views above point into.
  std::vector<std::unique_ptr<std::vector<uint8_t>>> storage;

  std::string_view keep(std::vector<uint8_t> bytes) {
    storage.push_back(std::make_unique<std::vector<uint8_t>>(std::move(bytes)));
    const std::vector<uint8_t>& b = *storage.back();
    return {reinterpret_cast<const char*>(b.data()), b.size()};
  }
};

// Thrown by the readers of the container and the sections when the file cannot be read on.
struct DwgFormatError {
  int code;  // OdResult
  std::string message;
};

// The container readers, one per family of releases. `bytes` is the whole file.
void readDwgContainerR15(std::string_view bytes, DwgFileSections& sections);
void readDwgContainerR18(std::string_view bytes, DwgFileSections& sections);
void readDwgContainerR21(std::string_view bytes, DwgFileSections& sections);

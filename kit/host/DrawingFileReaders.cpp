#include "kit/host/DrawingFileReaders.h"

#include <fstream>
#include <string_view>

#include "kit/base/OdError.h"
#include "kit/dwg/DwgReader.h"
#include "kit/dxf/DxfReader.h"
#include "kit/dxf/DxfWriter.h"

namespace {

// Enough for the DXF sentinel or comment line and the DWG release code.
constexpr std::size_t kProbeSize = 64;

std::string firstBytesOf(const std::string& pathUtf8) {
  std::ifstream file(pathUtf8, std::ios::binary);
  std::string bytes(kProbeSize, '\0');
  if (!file) return {};
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  return bytes;
}

OdString wide(const std::string& utf8) { return toOdString(utf8); }

OdDbDatabasePtr readDwgContent(const std::string& pathUtf8, bool recover) {
  DwgReadOptions options;
  options.recover = recover;
  return readDwgFile(pathUtf8, options);
}

void writeDwgContent(const OdDbDatabase& /*db*/, const std::string& pathUtf8, int /*version*/) {
  throw OdError(eNotImplemented, L"DWG files cannot be written yet: " + wide(pathUtf8));
}

}  // namespace

std::string odDwgVersionName(int version) {
  switch (version) {
    case kDwgVersionAC1015: return "AC1015";
    case kDwgVersionAC1018: return "AC1018";
    case kDwgVersionAC1021: return "AC1021";
    case kDwgVersionAC1024: return "AC1024";
    case kDwgVersionAC1027: return "AC1027";
    case kDwgVersionAC1032: return "AC1032";
    default: return {};
  }
}

OdDbDatabasePtr readDrawingFile(const std::string& pathUtf8, bool recover) {
  const std::string firstBytes = firstBytesOf(pathUtf8);
  if (!looksLikeDxf(firstBytes) && looksLikeDwg(firstBytes)) return readDwgContent(pathUtf8, recover);
  // Everything else, unreadable and empty files included, goes to the DXF reader, whose errors
  // say what is wrong with the file.
  DxfReadOptions options;
  options.recover = recover;
  return readDxfFile(pathUtf8, options);
}

void writeDrawingFile(const OdDbDatabase& db, const std::string& pathUtf8, OdDbSaveType type,
                      int version) {
  if (version != 0 && odDwgVersionName(version).empty()) {
    OdString text;
    text.format(L"Unknown drawing version %d", version);
    throw OdError(eInvalidInput, text);
  }
  if (type == kSaveDwg) {
    writeDwgContent(db, pathUtf8, version);
    return;
  }
  DxfWriteOptions options;
  options.version = version == 0 ? std::string() : odDwgVersionName(version);
  writeDxfFile(db, pathUtf8, options);
}

#include "kit/dwg/DwgReader.h"

#include <new>
#include <stdexcept>

#include "kit/base/MappedFile.h"
#include "kit/base/OdError.h"
#include "kit/dwg/DwgLoader.h"
#include "kit/dwg/DwgOldAc14.h"
#include "kit/dwg/DwgR12File.h"
#include "kit/dwg/DwgR12ToDxf.h"

namespace {

OdString toOd(const std::string& s) { return OdString(odDecodeUtf8(s.data(), s.size())); }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// "AC1015" and the older marks ("AC1.40", "AC2.10", "MC0.0").
bool hasVersionMark(std::string_view b) {
  if (b.size() < 6) return false;
  if (b.substr(0, 2) == "MC") return b.substr(0, 5) == "MC0.0";
  if (b.substr(0, 2) != "AC") return false;
  if (isDigit(b[2]) && isDigit(b[3]) && isDigit(b[4]) && isDigit(b[5])) return true;
  return isDigit(b[2]) && b[3] == '.' && isDigit(b[4]) && (isDigit(b[5]) || b[5] == '\0');
}

OdDbDatabasePtr load(std::string_view bytes, const DwgReadOptions& options, const std::string& name) {
  if (!looksLikeDwg(bytes)) throw OdError(eNotDrawingFile, toOd(name + ": not a DWG file"));
  std::string version(bytes.substr(0, 6));
  // AutoCAD 1.4 and R2.10 to R12 load through R12 DXF text.
  const bool r12 = dwgR12Release(bytes) != nullptr || isDwgAc14(bytes);
  if (!r12 && (version < "AC1012" || version.substr(0, 3) != "AC1" || version[3] == '.')) {
    throw OdError(eUnsupportedFileFormat, toOd(name + ": DWG release " + version + " (before R13) is not supported"));
  }
  try {
    if (r12) {
      OdDbDatabasePtr db = readDwgR12(bytes, options.recover, name);
      db->setFileName(name);
      db->loadReport().decodedBytes = bytes.size();  // nothing is compressed before R13
      return db;
    }
    auto db = std::make_shared<OdDbDatabase>();
    db->setFileName(name);
    DwgLoader loader(bytes, *db, options, name);
    loader.load();
    return db;
  } catch (const DwgFormatError& e) {
    throw OdError(OdResult(e.code), toOd(name + ": " + e.message));
  } catch (const std::bad_alloc&) {
    throw OdError(eOutOfMemory, toOd(name + ": not enough memory to load the drawing"));
  } catch (const std::length_error&) {
    throw OdError(eOutOfMemory, toOd(name + ": not enough memory to load the drawing"));
  } catch (const OdError&) {
    throw;
  } catch (const std::exception& e) {
    // Whatever else a damaged file provokes still reaches the caller as the kit's error.
    throw OdError(eInvalidDrawing, toOd(name + ": the drawing cannot be read (" + e.what() + ")"));
  }
}

}  // namespace

bool looksLikeDwg(std::string_view firstBytes) { return hasVersionMark(firstBytes); }

OdDbDatabasePtr readDwgBuffer(std::string_view bytes, const DwgReadOptions& options, const std::string& sourceName) {
  return load(bytes, options, sourceName);
}

OdDbDatabasePtr readDwgFile(const std::string& pathUtf8, const DwgReadOptions& options) {
  MappedFile file;
  file.open(pathUtf8);
  return load(file.bytes(), options, pathUtf8);
}

OdDbDatabasePtr recoverDwgFile(const std::string& pathUtf8) {
  DwgReadOptions options;
  options.recover = true;
  return readDwgFile(pathUtf8, options);
}

#include "kit/dxf/DxfReader.h"

#include <new>
#include <stdexcept>

#include "kit/base/MappedFile.h"
#include "kit/base/OdError.h"
#include "kit/dxf/DxfLoader.h"

namespace {

OdString toOd(const std::string& s) { return OdString(odDecodeUtf8(s.data(), s.size())); }

// The first tag of a DXF file: an optional comment, then "0 SECTION" (or "0 EOF" for an empty
// drawing).
bool startsLikeAsciiDxf(std::string_view bytes) {
  DxfTagReader reader(bytes);
  DxfTag tag;
  for (int i = 0; i < 64 && reader.next(tag); ++i) {
    if (tag.code == 999) continue;  // not returned by the reader, but harmless
    return tag.code == 0 && (tag.trimmed() == "SECTION" || tag.trimmed() == "EOF");
  }
  return false;
}

OdDbDatabasePtr load(std::string_view bytes, const DxfReadOptions& options, const std::string& name,
                     MappedFile* file) {
  if (!looksLikeDxf(bytes)) {
    throw OdError(eNotDrawingFile, toOd(name + ": not a DXF file"));
  }
  try {
    auto db = std::make_shared<OdDbDatabase>();
    db->setFileName(name);
    DxfLoader loader(bytes, *db, options, name);
    loader.setMappedFile(file);
    loader.load();
    return db;
  } catch (const std::bad_alloc&) {
    throw OdError(eOutOfMemory, toOd(name + ": not enough memory to load the drawing"));
  } catch (const std::length_error&) {
    throw OdError(eOutOfMemory, toOd(name + ": not enough memory to load the drawing"));
  }
}

}  // namespace

bool looksLikeDxf(std::string_view firstBytes) {
  if (firstBytes.substr(0, DxfTagReader::kBinarySentinel.size()) == DxfTagReader::kBinarySentinel) return true;
  // Look at the beginning only: the first tags decide.
  return startsLikeAsciiDxf(firstBytes.substr(0, 4096));
}

OdDbDatabasePtr readDxfBuffer(std::string_view bytes, const DxfReadOptions& options, const std::string& sourceName) {
  return load(bytes, options, sourceName, nullptr);
}

OdDbDatabasePtr readDxfFile(const std::string& pathUtf8, const DxfReadOptions& options) {
  MappedFile file;
  file.open(pathUtf8);
  return load(file.bytes(), options, pathUtf8, &file);
}

OdDbDatabasePtr recoverDxfFile(const std::string& pathUtf8) {
  DxfReadOptions options;
  options.recover = true;
  return readDxfFile(pathUtf8, options);
}

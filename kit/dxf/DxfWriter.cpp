#include "kit/dxf/DxfWriter.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <random>

#include "kit/base/OdError.h"
#include "kit/dxf/DxfWriterSections.h"

namespace {

constexpr int kWritableVersions[] = {1015, 1018, 1021, 1024, 1027, 1032};

bool isWritable(int version) {
  for (int v : kWritableVersions) {
    if (v == version) return true;
  }
  return false;
}

int versionNumber(std::string_view text) {
  DatabaseHeader h;
  h.acadVer = std::string(text);
  return h.versionNumber();
}

// The version to write, or 0 when the options ask for one this writer cannot produce.
int outputVersion(const OdDbDatabase& db, const DxfWriteOptions& options) {
  if (!options.version.empty()) {
    int requested = versionNumber(options.version);
    return isWritable(requested) ? requested : 0;
  }
  int own = db.header().versionNumber();
  if (isWritable(own)) return own;
  // Versions between the ones files use (AC1016, ...) round down; older ones go up to R2000.
  int chosen = 1015;
  for (int v : kWritableVersions) {
    if (v <= own) chosen = v;
  }
  return chosen;
}

void writeSections(const OdDbDatabase& db, DxfTagWriter& tags, int version) {
  DxfWriterContext context(db, tags, version);
  tags.encoder().setCodePage(db.header().dwgCodePage);
  tags.encoder().setUtf8(version >= 1021);
  writeHeaderSection(context);
  writeClassesSection(context);
  writeTablesSection(context);
  writeBlocksSection(context);
  writeEntitiesSection(context);
  writeObjectsSection(context);
  tags.raw(0, "EOF");
}

OdString toOd(const std::string& s) { return OdString(odDecodeUtf8(s.data(), s.size())); }

int checkedVersion(const OdDbDatabase& db, const DxfWriteOptions& options) {
  int version = outputVersion(db, options);
  if (version == 0) {
    throw OdError(eInvalidInput, toOd("cannot write DXF version \"" + options.version +
                                      "\": R2000 (AC1015) to R2018 (AC1032) only"));
  }
  return version;
}

std::string temporaryNameFor(const std::string& path) {
  std::random_device random;
  char suffix[32];
  std::snprintf(suffix, sizeof suffix, ".%08x.tmp", unsigned(random()));
  return path + suffix;
}

}  // namespace

std::string dxfOutputVersion(const OdDbDatabase& db, const DxfWriteOptions& options) {
  int version = outputVersion(db, options);
  return version ? "AC" + std::to_string(version) : std::string();
}

std::string writeDxfString(const OdDbDatabase& db, const DxfWriteOptions& options) {
  int version = checkedVersion(db, options);
  DxfTagWriter tags(nullptr);
  tags.setPrecision(options.precision);
  writeSections(db, tags, version);
  return tags.takeBuffer();
}

void writeDxfFile(const OdDbDatabase& db, const std::string& path, const DxfWriteOptions& options) {
  int version = checkedVersion(db, options);
  std::error_code ignored;
  if (path.empty() || path.back() == '/' || std::filesystem::is_directory(path, ignored)) {
    throw OdError(eCantOpenFile, toOd((path.empty() ? std::string("\"\"") : path) + ": not a file name"));
  }
  std::string temporary = temporaryNameFor(path);
  std::FILE* file = std::fopen(temporary.c_str(), "wb");
  if (!file) {
    throw OdError(eCantOpenFile, toOd(path + ": cannot create the file (" + std::strerror(errno) + ")"));
  }
  bool written = false;
  try {
    DxfTagWriter tags(file);
    tags.setPrecision(options.precision);
    writeSections(db, tags, version);
    written = tags.flush();
  } catch (...) {
    std::fclose(file);
    std::remove(temporary.c_str());
    throw;
  }
  int error = errno;
  if (std::fclose(file) != 0 && written) {
    written = false;
    error = errno;
  }
  if (!written) {
    std::remove(temporary.c_str());
    throw OdError(eFileAccessErr, toOd(path + ": writing the file failed (" + std::strerror(error) + ")"));
  }
  std::error_code ec;
  std::filesystem::rename(temporary, path, ec);
  if (ec) {
    std::remove(temporary.c_str());
    throw OdError(eFileAccessErr, toOd(path + ": cannot replace the file (" + ec.message() + ")"));
  }
}

#include "kit/host/ExternalReferenceLoading.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "kit/base/OdError.h"
#include "kit/db/ExternalReference.h"
#include "kit/host/DrawingFileReaders.h"
#include "kit/host/OdDbHostAppServices.h"

namespace {

// One file's result, kept so that a file named by several references is read (or fails) once.
struct LoadedFile {
  OdDbDatabasePtr drawing;
  std::string failure;  // why it could not be read; empty when read
};

// A path that names a file one way only, so that two spellings of one file are recognised.
std::string identityOf(const std::string& path) {
  std::error_code error;
  const std::filesystem::path canonical = std::filesystem::weakly_canonical(path, error);
  return error ? path : canonical.string();
}

std::string quoted(const std::string& name) { return "\"" + name + "\""; }

// The name a reference looks for: its saved path, or the block's name as a drawing for
// references saved without one.
std::string savedPathOf(const BlockRecord& block) {
  return block.xrefPath.empty() ? block.name + ".dwg" : block.xrefPath;
}

class XrefLoadSession {
public:
  XrefLoadSession(OdDbHostAppServices& services, const OdDbDatabase& root) : services_(services) {
    if (!root.fileName().empty()) chain_.push_back(identityOf(root.fileName()));
  }

  // Resolves every xref block of `db`; `nested` for a drawing that is itself referenced.
  void resolveAll(OdDbDatabase& db, bool nested) {
    for (BlockRecord* block : db.blocks()) {
      if (block->isFromExternalReference()) resolve(db, *block, nested);
    }
  }

private:
  void resolve(OdDbDatabase& db, const BlockRecord& block, bool nested) {
    ExternalReference& xref = db.externalReferenceFor(&block);
    if (nested && (block.blockFlags & BlockRecord::kOverlay) != 0) {
      xref.status = XrefStatus::kNestedOverlay;
      return;
    }
    const std::string saved = savedPathOf(block);
    const OdString found = services_.findFile(toOdString(saved), &db, OdDbHostAppServices::kDefault);
    if (found.isEmpty()) {
      fail(xref, XrefStatus::kFileNotFound, block, "not found: " + saved);
      return;
    }
    const std::string path = odEncodeUtf8(found.str());
    xref.foundPath = path;
    const std::string identity = identityOf(path);
    if (std::find(chain_.begin(), chain_.end(), identity) != chain_.end()) {
      fail(xref, XrefStatus::kCircular, block, "refers back to a drawing that refers to it: " + path);
      return;
    }
    if (chain_.size() > static_cast<size_t>(kMaxXrefNesting)) {
      fail(xref, XrefStatus::kTooDeep, block, "nested too deep: " + path);
      return;
    }
    const LoadedFile& file = load(path, identity);
    if (!file.drawing) {
      fail(xref, XrefStatus::kUnreadable, block, "could not be read: " + path + ": " + file.failure);
      return;
    }
    bindExternalReference(db, block, file.drawing, path);
  }

  const LoadedFile& load(const std::string& path, const std::string& identity) {
    auto known = files_.find(identity);
    if (known != files_.end()) return known->second;
    LoadedFile file = read(path);
    if (file.drawing) {
      chain_.push_back(identity);
      resolveAll(*file.drawing, true);
      chain_.pop_back();
    }
    return files_.emplace(identity, std::move(file)).first->second;
  }

  // A strict read first; a damaged drawing gives what can be read of it.
  static LoadedFile read(const std::string& path) {
    LoadedFile file;
    try {
      try {
        file.drawing = readDrawingFile(path, false);
      } catch (const OdError&) {
        file.drawing = readDrawingFile(path, true);
      }
    } catch (const OdError& error) {
      file.failure = odEncodeUtf8(error.description().str());
    } catch (const std::exception& error) {
      file.failure = error.what();
    }
    return file;
  }

  void fail(ExternalReference& xref, XrefStatus status, const BlockRecord& block, const std::string& why) {
    xref.status = status;
    xref.drawing.reset();
    services_.warning(toOdString("External reference " + quoted(block.name) + " " + why));
  }

  OdDbHostAppServices& services_;
  std::vector<std::string> chain_;  // identities of the drawings being loaded, outermost first
  std::map<std::string, LoadedFile> files_;
};

}  // namespace

void loadExternalReferences(OdDbDatabase& db, OdDbHostAppServices& services) {
  XrefLoadSession session(services, db);
  session.resolveAll(db, false);
}

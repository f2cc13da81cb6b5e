// The host application's services as the kit sees them: where files a drawing names are found,
// how drawing files are read and recovered into databases, and the progress meter the kit drives
// while it loads. The application derives from this class and overrides findFile to say where
// fonts, external references and plot styles live.
#pragma once

#include <cstddef>
#include <string>

#include "kit/base/OdString.h"
#include "kit/db/OdDbDatabase.h"

class OdDbHostAppProgressMeter;

// What a recovery found and did.
struct OdDbAuditInfo {
  bool fixErrors = false;
  std::size_t numErrors = 0;  // problems the reader met
  std::size_t numFixes = 0;   // of those, the ones repaired (all of them with fixErrors)
};

class OdDbHostAppServices {
public:
  // What the kit is looking for.
  enum FindFileHint { kDefault = 0, kFontFile = 1, kCompiledShapeFile = 2, kTrueTypeFontFile = 3 };

  virtual ~OdDbHostAppServices() = default;

  // The kit's own search: the name as given, absolute or relative to the current directory; a
  // relative name is first looked for beside the database's drawing, when a database is given
  // (a drawing names the files it uses relative to its own folder). When no file has that exact
  // name, the one file of the same directory whose name differs only in the case of ASCII letters
  // counts (drawings made on other systems name their files loosely). "\\" separators count as
  // "/". Returns the path found, else an empty string.
  virtual OdString findFile(const OdString& fileName, OdDbDatabase* database = nullptr,
                            int hint = kDefault);

  // Reads a DWG or DXF file into a new database, with the drawings its external references name
  // (kit/host/ExternalReferenceLoading.h). Every load reads the whole file, so a partial load is
  // a whole one. Throws OdError when the file cannot be read as it is.
  virtual OdDbDatabasePtr readFile(const OdString& path, bool partialLoad = false);
  // Reads a damaged file as far as it can be read. The audit record, when given, receives the
  // number of problems found and fixed. Throws OdError only when nothing of a drawing can be read.
  virtual OdDbDatabasePtr recoverFile(const OdString& path, OdDbAuditInfo* auditInfo = nullptr);
  // A new database holding the standard records, for importers to fill.
  virtual OdDbDatabasePtr createDatabase();

  // What the kit tells the application about a load or a drawing that went on without something:
  // an external reference whose drawing could not be found or read, a font file missing or
  // unreadable. Nothing by default.
  virtual void warning(const OdString& /*message*/) {}

  // The meter that loads report to, or null for none.
  virtual OdDbHostAppProgressMeter* progressMeter() { return nullptr; }
};

// Importers that build a drawing database from another format (DWF, PDF, DGN). Each lives in a
// module known by name ("TD_Dwf7Import", "TD_PdfImport", "TD_DgnImport"); a module registers a
// factory when it is linked in, and the application asks for an importer by module name. A module
// that is not linked yields no importer, which the application reports in its own words.
//
// An importer is driven through named properties (the source path, the target database, options)
// and one import() call.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "kit/base/OdError.h"
#include "kit/base/OdString.h"
#include "kit/db/OdDbDatabase.h"

class OdDbHostAppServices;

// A property value. The 8-bit unsigned integer is a separate kind: some importers read their modes as
// such and refuse a plain int.
using OdRxVariant = std::variant<std::monostate, bool, std::uint8_t, int, double, OdString,
                                 std::vector<OdString>, OdDbDatabasePtr, OdDbHostAppServices*>;

class OdImportProperties {
public:
  // Sets the value; a name set again keeps its first place and takes the new value.
  void putAt(const std::string& name, OdRxVariant value);
  // The value under the name (compared exactly), or null.
  const OdRxVariant* getAt(const std::string& name) const;
  // Names and values in the order the names were first set.
  const std::vector<std::pair<std::string, OdRxVariant>>& entries() const { return entries_; }

  template <class T>
  const T* getAs(const std::string& name) const {
    const OdRxVariant* value = getAt(name);
    return value ? std::get_if<T>(value) : nullptr;
  }

private:
  std::vector<std::pair<std::string, OdRxVariant>> entries_;
};

// Results of open() and import().
enum OdImportResult {
  kImportOk = 0,
  kImportBadPassword = 1,
  kImportCantOpenFile = 2,
  kImportInvalidFile = 3,
  kImportDecryptionError = 4,
  kImportFailed = 5,
};

// The kit error that stands for a failed import.
OdError odImportError(int result);

class OdDbImporter {
public:
  virtual ~OdDbImporter() = default;

  OdImportProperties& properties() { return properties_; }
  const OdImportProperties& properties() const { return properties_; }

  // Opens the source the path property names, for importers that must look into it before
  // importing (the page count of a PDF file).
  virtual int open() { return kImportOk; }
  virtual int pageCount() const { return 1; }
  // Fills the database named by the "Database" property, or creates one and sets that property.
  virtual int import() = 0;

private:
  OdImportProperties properties_;
};

using OdImporterFactory = std::function<std::unique_ptr<OdDbImporter>()>;

// Makes the module's importer available; a second registration replaces the first.
void odRegisterImportModule(const std::string& moduleName, OdImporterFactory factory);
void odUnregisterImportModule(const std::string& moduleName);
// A new importer of the module, or null when the module is not linked in or its factory gives none.
std::unique_ptr<OdDbImporter> odLoadImporter(const std::string& moduleName);

#include "kit/host/OdImportModules.h"

#include <map>

namespace {

std::map<std::string, OdImporterFactory>& importModules() {
  static std::map<std::string, OdImporterFactory> modules;
  return modules;
}

}  // namespace

void OdImportProperties::putAt(const std::string& name, OdRxVariant value) {
  for (auto& entry : entries_) {
    if (entry.first != name) continue;
    entry.second = std::move(value);
    return;
  }
  entries_.emplace_back(name, std::move(value));
}

const OdRxVariant* OdImportProperties::getAt(const std::string& name) const {
  for (const auto& entry : entries_) {
    if (entry.first == name) return &entry.second;
  }
  return nullptr;
}

OdError odImportError(int result) {
  switch (result) {
    case kImportOk: return OdError(eOk);
    case kImportBadPassword: return OdError(eInvalidInput, L"Invalid password");
    case kImportCantOpenFile: return OdError(eCantOpenFile);
    case kImportInvalidFile: return OdError(eNotDrawingFile);
    case kImportDecryptionError: return OdError(eInvalidInput, L"Decryption error");
    default: break;
  }
  OdString text;
  text.format(L"Import failed (result %d)", result);
  return OdError(eInvalidDrawing, text);
}

void odRegisterImportModule(const std::string& moduleName, OdImporterFactory factory) {
  importModules()[moduleName] = std::move(factory);
}

void odUnregisterImportModule(const std::string& moduleName) { importModules().erase(moduleName); }

std::unique_ptr<OdDbImporter> odLoadImporter(const std::string& moduleName) {
  const auto found = importModules().find(moduleName);
  if (found == importModules().end() || !found->second) return nullptr;
  return found->second();
}

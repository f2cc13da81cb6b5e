// The host services of DGN imports: symbol resources and material files come from the DGN
// importer's own search; other names (reference files) are looked for along an external-reference
// list of their own, filled per import.
#pragma once

#include <vector>

#include "kit/host/OdDbHostAppServices.h"
#include "services/ProgressMeter.h"
#include "services/SearchPathList.h"

class MyDgnServices : public OdDbHostAppServices {
public:
  void AddToXPath(const OdString& path) { xrefPaths.Add(path); }
  void SetFontPath(const OdString& path) { fontPath = path; }
  const OdString& GetFontPath() const { return fontPath; }
  // Symbol resource files for the import (none unless a caller lists some).
  std::vector<OdString>& SymbolResources() { return symbolResources; }
  const std::vector<OdString>& GetXrefPaths() const { return xrefPaths.Directories(); }

  OdString findFile(const OdString& fileName, OdDbDatabase* database = nullptr,
                    int hint = kDefault) override;
  OdDbHostAppProgressMeter* progressMeter() override { return &meter; }

private:
  OdString FindReference(const OdString& bareName, bool hasDgnExtension);

  SearchPathList xrefPaths{"Add to XPath"};
  OdString fontPath;
  std::vector<OdString> symbolResources;
  OdExDgnHostAppProgressMeter meter;
};

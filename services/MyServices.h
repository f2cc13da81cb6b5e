// The program's host services for DWG, DXF, DWF and PDF work: where the kit finds the fonts,
// external references and other files a drawing names. Two ordered search lists (drawings,
// fonts) are walked after the kit's own search; every step is traced.
#pragma once

#include <vector>

#include "kit/host/OdDbHostAppServices.h"
#include "services/ProgressMeter.h"
#include "services/SearchPathList.h"

class MyServices : public OdDbHostAppServices {
public:
  void AddToXPath(const OdString& path) { xrefPaths.Add(path); }
  void AddToFontPath(const OdString& path) { fontPaths.Add(path); }
  void SetXrefPaths(const OdString& list) { xrefPaths.Replace(list); }
  void SetFontPaths(const OdString& list) { fontPaths.Replace(list); }
  void SetInputDirectory(const OdString& directory) { inputDirectory = directory; }
  const OdString& GetInputDirectory() const { return inputDirectory; }
  void SetRepoMode(bool flag);
  // Adds the directory part of each path to the external-reference list.
  void AddStandardDirectories(const OdString& cwd, const OdString& inputPath,
                              const OdString& programPath);
  // The ";"-separated directories of the ACAD and ACADFONT environment variables, as font paths.
  void AddEnvironmentPaths();

  OdString findFile(const OdString& fileName, OdDbDatabase* database = nullptr,
                    int hint = kDefault) override;
  // Traced: what the kit worked around is one line of the log, the rest of the drawing goes on.
  void warning(const OdString& message) override;
  OdDbHostAppProgressMeter* progressMeter() override { return &meter; }
  HostAppProgressMeter& GetProgressMeter() { return meter; }

  const std::vector<OdString>& GetXrefPaths() const { return xrefPaths.Directories(); }
  const std::vector<OdString>& GetFontPaths() const { return fontPaths.Directories(); }

private:
  OdString FindDrawing(const OdString& bareName, bool hasDrawingExtension);
  OdString FindFont(const OdString& bareName, bool hasFontExtension);
  // The kit's own search; a database given lets it look beside that drawing first.
  OdString KitSearch(const OdString& path, OdDbDatabase* database = nullptr);

  SearchPathList xrefPaths{"Add to XPath"};
  SearchPathList fontPaths{"Add to fontPath"};
  OdString inputDirectory;
  HostAppProgressMeter meter;
};

// The process-wide services object the kit calls back.
MyServices& TheServices();
// The repository flag (REPO), process-wide.
extern bool g_RepoMode;
// The last path any lookup found, kept between lookups.
extern OdString g_LastFoundFile;

// Extension tests shared by the lookups: a name has an extension when its fourth character from
// the end is "." (so "a.b.c" has one); the result is that extension in lower case, or empty.
OdString LowerExtensionOf(const OdString& name);

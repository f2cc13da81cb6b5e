// The program's host services: where the kit finds the fonts, external references and other files a
// drawing names. Two ordered search lists (drawings, fonts), each directory ending in a separator.
#pragma once

#include <vector>

#include "kit/host/OdDbHostAppServices.h"

class MyServices : public OdDbHostAppServices {
public:
  void AddToXPath(const OdString& path);
  void AddToFontPath(const OdString& path);
  void SetXrefPaths(const OdString& list);
  void SetFontPaths(const OdString& list);
  void SetInputDirectory(const OdString& directory) { inputDirectory = directory; }
  void SetRepoMode(bool flag);
  void AddStandardDirectories(const OdString& cwd, const OdString& inputPath,
                              const OdString& programPath);
  void AddEnvironmentPaths();

  OdString findFile(const OdString& fileName, OdDbDatabase* database = nullptr,
                    int hint = kDefault) override;

  const std::vector<OdString>& GetXrefPaths() const { return xrefPaths; }
  const std::vector<OdString>& GetFontPaths() const { return fontPaths; }

private:
  OdString FindDrawing(const OdString& bareName, bool hasDrawingExtension);
  OdString FindFont(const OdString& bareName, bool hasFontExtension);

  std::vector<OdString> xrefPaths;
  std::vector<OdString> fontPaths;
  OdString inputDirectory;
};

// The process-wide services object the kit calls back.
MyServices& TheServices();
extern bool g_RepoMode;

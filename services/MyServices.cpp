#include "services/MyServices.h"

#include <cstdlib>
#include <cwctype>
#include <initializer_list>
#include <string>

#include "services/Trace.h"

bool g_RepoMode = false;
OdString g_LastFoundFile;

namespace {

bool isOneOf(const OdString& extension, std::initializer_list<const wchar_t*> candidates) {
  for (const wchar_t* candidate : candidates) {
    if (extension == candidate) return true;
  }
  return false;
}

bool isDrawingExtension(const OdString& extension) { return isOneOf(extension, {L".dwg", L".dxf", L".dgn"}); }
bool isFontExtension(const OdString& extension) { return isOneOf(extension, {L".shx", L".ttf"}); }

OdString environmentValue(const char* name) {
  const char* value = std::getenv(name);
  return value ? toOdString(value) : OdString();
}

}  // namespace

OdString LowerExtensionOf(const OdString& name) {
  const std::wstring& text = name.str();
  if (text.size() < 4 || text[text.size() - 4] != L'.') return OdString();
  std::wstring extension = text.substr(text.size() - 4);
  for (auto& c : extension) c = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
  return OdString(extension);
}

MyServices& TheServices() {
  static MyServices services;
  return services;
}

void MyServices::SetRepoMode(bool flag) {
  g_RepoMode = flag;
  TraceMessage("REPO Mode", flag ? 1 : 0);
}

void MyServices::AddStandardDirectories(const OdString& cwd, const OdString& inputPath,
                                        const OdString& programPath) {
  for (const OdString* path : {&cwd, &inputPath, &programPath}) AddToXPath(DirectoryPart(*path));
}

void MyServices::AddEnvironmentPaths() {
  for (const char* variable : {"ACAD", "ACADFONT"}) {
    const OdString value = environmentValue(variable);
    TraceMessage((std::string(variable) + " path").c_str(), value);
    fontPaths.AddAll(value);
  }
}

void MyServices::warning(const OdString& message) { TraceMessage("Warning", message); }

OdString MyServices::KitSearch(const OdString& path, OdDbDatabase* database) {
  const OdString found = OdDbHostAppServices::findFile(path, database);
  if (!found.isEmpty()) g_LastFoundFile = found;
  return found;
}

OdString MyServices::findFile(const OdString& fileName, OdDbDatabase* database, int hint) {
  if (fileName.isEmpty()) return fileName;
  OdString name = fileName;
  name.replace(L'\\', L'/');
  OdString found = KitSearch(name, database);
  if (!found.isEmpty()) return found;
  TraceMessage("-------------------------------------");

  OdString bare = BareFileName(name);
  if (LowerExtensionOf(bare).isEmpty()) {
    if (hint == kTrueTypeFontFile) bare += L".ttf";
    if (hint == kCompiledShapeFile) bare += L".shx";
  }
  TraceMessage("Checking File", bare);
  found = KitSearch(bare, database);
  if (!found.isEmpty()) return found;
  TraceMessage("File Not Found", bare);

  const OdString extension = LowerExtensionOf(bare);
  bool isDrawing = isDrawingExtension(extension);
  bool isFont = isFontExtension(extension);
  const bool hasDrawingExtension = isDrawing;
  const bool hasFontExtension = isFont;
  if (!isDrawing && !isFont) {
    TraceMessage("*** No extension found");
    isDrawing = isFont = true;
  }
  if (isDrawing) found = FindDrawing(bare, hasDrawingExtension);
  if (found.isEmpty() && isFont) found = FindFont(bare, hasFontExtension);
  TraceMessage(found.isEmpty() ? "File Not Found" : "File Found");
  return found;
}

// Names are looked up in one encoding on this system; the traces of the three forms a name can
// take elsewhere are kept, so that logs read the same wherever the program ran.
OdString MyServices::FindDrawing(const OdString& bareName, bool hasDrawingExtension) {
  for (const OdString& directory : xrefPaths.Directories()) {
    const OdString joined = directory + bareName;
    TraceMessage("Checking newPath", joined);
    OdString found = KitSearch(joined);
    if (found.isEmpty()) {
      TraceMessage("Checking nPath as UTF8", joined);
      TraceMessage("Checking nPath as Unicode", joined);
    }
    if (found.isEmpty() && !hasDrawingExtension) {
      for (const wchar_t* extension : {L".dwg", L".dxf", L".dgn"}) {
        found = KitSearch(joined + extension);
        if (!found.isEmpty()) break;
      }
    }
    if (found.isEmpty()) continue;
    TraceMessage("Found XRef", found);
    return found;
  }
  return OdString();
}

OdString MyServices::FindFont(const OdString& bareName, bool hasFontExtension) {
  TraceMessage("Font Path Count", fontPaths.Count());
  for (int i = 0; i < fontPaths.Count(); ++i) {
    const OdString& directory = fontPaths.Directories()[static_cast<std::size_t>(i)];
    TraceMessage("Check Font Path Item #", i);
    TraceMessage("   Path", directory);
    const OdString joined = directory + bareName;
    TraceMessage("Checking", joined);
    OdString found = KitSearch(joined);
    if (!found.isEmpty()) {
      TraceMessage("Found Font", found);
      return found;
    }
    if (hasFontExtension) continue;
    found = KitSearch(joined + L".shx");
    if (!found.isEmpty()) {
      TraceMessage("Found Font", found);
      return found;
    }
    found = KitSearch(joined + L".ttf");
    if (!found.isEmpty()) {
      TraceMessage("Found TTF Font", found);
      return found;
    }
  }
  // Fonts shipped beside the drawing.
  if (inputDirectory.isEmpty()) return OdString();
  const OdString beside = inputDirectory + bareName;
  TraceMessage("Checking drawing folder", beside);
  OdString found = KitSearch(beside);
  if (found.isEmpty() && !hasFontExtension) found = KitSearch(beside + L".shx");
  if (!found.isEmpty()) TraceMessage("Found Font", found);
  return found;
}

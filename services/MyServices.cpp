#include "services/MyServices.h"

#include <algorithm>
#include <cstdlib>
#include <cwctype>
#include <string>

#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

bool g_RepoMode = false;

namespace {

std::wstring Wide(const OdString& text) { return std::wstring(text.c_str()); }

bool EndsWithSeparator(const std::wstring& path) {
  return !path.empty() && (path.back() == L'/' || path.back() == L'\\');
}

// Adds the directory once, with a trailing separator; `label` names the list in the trace.
void AddDirectory(std::vector<OdString>& list, const OdString& path, const char* label) {
  std::wstring directory = Wide(path);
  if (directory.empty()) return;
  if (!EndsWithSeparator(directory)) directory += L'/';
  const OdString entry(directory);
  if (std::find(list.begin(), list.end(), entry) != list.end()) return;
  TraceMessage(label, entry);
  list.push_back(entry);
}

std::wstring LowerExtension(const std::wstring& name) {
  if (name.size() < 4 || name[name.size() - 4] != L'.') return L"";
  std::wstring ext = name.substr(name.size() - 4);
  for (auto& c : ext) c = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
  return ext;
}

std::wstring BareName(const std::wstring& path) {
  const auto separator = path.find_last_of(L"/\\");
  return separator == std::wstring::npos ? path : path.substr(separator + 1);
}

std::wstring DirectoryOf(const std::wstring& path) {
  const auto separator = path.find_last_of(L"/\\");
  return separator == std::wstring::npos ? std::wstring() : path.substr(0, separator + 1);
}

}  // namespace

MyServices& TheServices() {
  static MyServices services;
  return services;
}

void MyServices::AddToXPath(const OdString& path) { AddDirectory(xrefPaths, path, "Add to XPath"); }

void MyServices::AddToFontPath(const OdString& path) {
  AddDirectory(fontPaths, path, "Add to fontPath");
}

void MyServices::SetXrefPaths(const OdString& list) {
  xrefPaths.clear();
  std::vector<std::string> pieces;
  std::string utf8;
  SplitAny(pieces, OdStringToUtf8(utf8, list), ";");
  for (const auto& piece : pieces) AddToXPath(OdString(odDecodeUtf8(piece.data(), piece.size())));
}

void MyServices::SetFontPaths(const OdString& list) {
  fontPaths.clear();
  std::vector<std::string> pieces;
  std::string utf8;
  SplitAny(pieces, OdStringToUtf8(utf8, list), ";");
  for (const auto& piece : pieces) AddToFontPath(OdString(odDecodeUtf8(piece.data(), piece.size())));
}

void MyServices::SetRepoMode(bool flag) {
  g_RepoMode = flag;
  TraceMessage("REPO Mode", flag ? 1 : 0);
}

void MyServices::AddStandardDirectories(const OdString& cwd, const OdString& inputPath,
                                        const OdString& programPath) {
  for (const OdString* path : {&cwd, &inputPath, &programPath}) {
    const std::wstring directory = DirectoryOf(Wide(*path));
    if (!directory.empty()) AddToXPath(OdString(directory));
  }
}

void MyServices::AddEnvironmentPaths() {
  for (const char* variable : {"ACAD", "ACADFONT"}) {
    const char* value = std::getenv(variable);
    const std::string text = value ? value : "";
    TraceMessage(std::string(variable).append(" path").c_str(), text);
    std::vector<std::string> pieces;
    SplitAny(pieces, text, ";");
    for (const auto& piece : pieces) AddToFontPath(OdString(odDecodeUtf8(piece.data(), piece.size())));
  }
}

OdString MyServices::findFile(const OdString& fileName, OdDbDatabase* database, int hint) {
  if (fileName.isEmpty()) return fileName;
  std::wstring name = Wide(fileName);
  std::replace(name.begin(), name.end(), L'\\', L'/');
  OdString found = OdDbHostAppServices::findFile(OdString(name), database, hint);
  if (!found.isEmpty()) return found;
  TraceMessage("-------------------------------------");
  std::wstring bare = BareName(name);
  if (LowerExtension(bare).empty()) {
    if (hint == kTrueTypeFontFile) bare += L".ttf";
    if (hint == kCompiledShapeFile) bare += L".shx";
  }
  TraceMessage("Checking File", OdString(bare));
  found = OdDbHostAppServices::findFile(OdString(bare), database, hint);
  if (!found.isEmpty()) return found;
  TraceMessage("File Not Found", OdString(bare));
  const std::wstring ext = LowerExtension(bare);
  const bool isDrawing = ext == L".dwg" || ext == L".dxf" || ext == L".dgn";
  const bool isFont = ext == L".shx" || ext == L".ttf";
  if (!isDrawing && !isFont) TraceMessage("*** No extension found");
  if (isDrawing || !isFont) found = FindDrawing(OdString(bare), isDrawing);
  if (found.isEmpty() && (isFont || !isDrawing)) found = FindFont(OdString(bare), isFont);
  TraceMessage(found.isEmpty() ? "File Not Found" : "File Found");
  return found;
}

OdString MyServices::FindDrawing(const OdString& bareName, bool hasDrawingExtension) {
  for (const OdString& directory : xrefPaths) {
    const std::wstring joined = Wide(directory) + Wide(bareName);
    TraceMessage("Checking newPath", OdString(joined));
    std::vector<std::wstring> candidates{joined};
    if (!hasDrawingExtension) {
      for (const wchar_t* ext : {L".dwg", L".dxf", L".dgn"}) candidates.push_back(joined + ext);
    }
    for (const auto& candidate : candidates) {
      const OdString found = OdDbHostAppServices::findFile(OdString(candidate));
      if (found.isEmpty()) continue;
      TraceMessage("Found XRef", found);
      return found;
    }
  }
  return OdString();
}

OdString MyServices::FindFont(const OdString& bareName, bool hasFontExtension) {
  TraceMessage("Font Path Count", static_cast<int>(fontPaths.size()));
  for (size_t i = 0; i < fontPaths.size(); ++i) {
    TraceMessage("Check Font Path Item #", static_cast<int>(i));
    TraceMessage("   Path", fontPaths[i]);
    const std::wstring joined = Wide(fontPaths[i]) + Wide(bareName);
    TraceMessage("Checking", OdString(joined));
    std::vector<std::wstring> candidates{joined};
    if (!hasFontExtension) {
      candidates.push_back(joined + L".shx");
      candidates.push_back(joined + L".ttf");
    }
    for (const auto& candidate : candidates) {
      const OdString found = OdDbHostAppServices::findFile(OdString(candidate));
      if (found.isEmpty()) continue;
      TraceMessage("Found Font", found);
      return found;
    }
  }
  return OdString();
}

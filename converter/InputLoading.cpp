// Loading the input: the input kind by extension, the drawing read (with recovery) and the tables
// collected at load time for the view selection and layer switching.
#include <iostream>
#include <cwctype>
#include <filesystem>
#include <string>

#include "converter/CDm2017.h"
#include "kit/base/OdError.h"
#include "kit/dxf/DxfReader.h"
#include "projects/common/CommonRoutines.h"
#include "projects/common/ProgramInfo.h"
#include "services/MyServices.h"
#include "services/Trace.h"

namespace {

// The last four characters in lower case; a kind matches when they begin with its text.
std::wstring InputExtension(const OdString& path) {
  std::wstring text(path.c_str());
  if (text.size() <= 4) return L"";
  std::wstring ext = text.substr(text.size() - 4);
  for (auto& c : ext) c = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
  return ext;
}

bool StartsWith(const std::wstring& text, const wchar_t* prefix) { return text.rfind(prefix, 0) == 0; }

bool EqualNoCase(const std::string& a, const OdString& b) {
  return OdString(odDecodeUtf8(a.data(), a.size())).iCompare(b) == 0;
}

// Through std::cout, not printf, so that a log file given with LOG catches it too.
void PrintKitError(const OdError& e) {
  std::string text;
  std::cout << "Teigha Error: " << OdStringToUtf8(text, e.description()) << "\n\n" << std::flush;
}

}  // namespace

// The search lists the kit's callbacks will walk: external-reference paths, the input's own
// directory, the current and program directories, and the font paths.
void CDm2017::PrepareFileLookup(const OdString& input) {
  MyServices& services = TheServices();
  if (!xrefPath.isEmpty()) services.SetXrefPaths(xrefPath);
  if (!fontPath.isEmpty()) services.SetFontPaths(fontPath);
  services.AddEnvironmentPaths();
  const std::wstring path(input.c_str());
  const auto separator = path.find_last_of(L"/\\");
  if (separator != std::wstring::npos) services.SetInputDirectory(OdString(path.substr(0, separator + 1)));
  services.SetRepoMode(repository);
  std::error_code ignored;
  const OdString cwd(std::filesystem::current_path(ignored).string() + "/");
  services.AddStandardDirectories(cwd, input, OdString(g_ProgramDirectory));
}

int CDm2017::ReadInputFile(const OdString& input) {
  PrepareFileLookup(input);
  std::string output, directory, base, extension;
  SplitPath(OdStringToUtf8(output, outputName), directory, base, extension);
  Utf8ToOdString(baseOutputName, OdAnsiString(directory + base));
  TraceMessage("Input file", input);
  const std::wstring ext = InputExtension(input);
  if (StartsWith(ext, L".dwf") || treatAs == 1000 || StartsWith(ext, L".pdf") ||
      StartsWith(ext, L".dgn") || treatAs == 1018) {
    PrintMessage("Input format is not available in this build", input);
    return -1;
  }
  if (StartsWith(ext, L".dwg")) {
    inputKind = 1013;
  } else if (StartsWith(ext, L".dxf")) {
    inputKind = 1014;
  } else {
    return -1001;
  }
  try {
    TraceMessage("Read input DWG/DXF file");
    OpenDrawing(input);
  } catch (const OdError& e) {
    PrintKitError(e);
  }
  PrintMessage("Input File Name", input);
  SetInputFile(input);
  if (!g_pDb) return 0;
  return CollectDrawingTables();
}

// Strict read first; a kit error sends the file through recovery, anything else leaves no drawing.
void CDm2017::OpenDrawing(const OdString& path) {
  if (g_pDb) return;
  std::string utf8;
  OdStringToUtf8(utf8, path);
  try {
    g_pDb = readDxfFile(utf8);
    TraceMessage("AutoCAD file succesfully opened");
    return;
  } catch (const OdError&) {
  }
  try {
    TraceMessage("Recovering DWG file", path);
    g_pDb = recoverDxfFile(utf8);
    TraceMessage("AutoCAD file succesfully recovered and open");
  } catch (const OdError& e) {
    TraceMessage("Error reading DWG file", path);
    throw;
  }
}

int CDm2017::CollectDrawingTables() {
  TraceMessage("Get Layer Table");
  std::string text;
  if (!roomLayers.isEmpty()) std::cout << "Room Layer: " << OdStringToUtf8(text, roomLayers) << "\n";
  if (!textLayers.isEmpty()) std::cout << "Text Layer: " << OdStringToUtf8(text, textLayers) << "\n";
  std::cout.flush();
  for (LayerRecord* layer : g_pDb->layers()) {
    const bool labelLayer = (!roomLayers.isEmpty() && EqualNoCase(layer->name, roomLayers)) ||
                            (!textLayers.isEmpty() && EqualNoCase(layer->name, textLayers));
    if (labelLayer) {
      layer->off = false;
      layer->flags &= static_cast<int16_t>(~LayerRecord::kFrozen);
      layer->hidden = false;
    }
    layerVisibility.emplace_back(layer->getName(), !layer->isOff());
  }
  TraceMessage("Get View Table");
  for (ViewRecord* view : g_pDb->views()) viewNames.insert(view->getName());
  TraceMessage("Get Layout Table");
  for (Layout* layout : g_pDb->layouts()) {
    OdString name(odDecodeUtf8(layout->name.data(), layout->name.size()));
    layoutNames.insert(name.makeUpper());
  }
  return 0;
}

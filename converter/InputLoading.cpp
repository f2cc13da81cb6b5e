// Loading the input: the search lists set up for the kit, the loader chosen by the input's
// extension, and the tables collected at load time for the view selection and layer switching.
#include <iostream>
#include <string>

#include "converter/CDm2017.h"
#include "converter/InputRoute.h"
#include "converter/LoadingSupport.h"
#include "kit/base/OdError.h"
#include "projects/common/CommonRoutines.h"
#include "projects/common/ProgramInfo.h"
#include "services/MyServices.h"
#include "services/Trace.h"

namespace {

constexpr int kUnknownExtension = -1001;
constexpr int kInputKindDwg = 1013;
constexpr int kInputKindDxf = 1014;

OdString WithoutExtension(const OdString& path) {
  std::string utf8, directory, baseName, extension;
  SplitPath(OdStringToUtf8(utf8, path), directory, baseName, extension);
  OdString out;
  return Utf8ToOdString(out, OdAnsiString(directory + baseName));
}

// Through std::cout, not printf, so that a log file given with LOG catches it too.
void PrintKitError(const OdError& error) {
  std::string text;
  std::cout << "Teigha Error: " << OdStringToUtf8(text, error.description()) << "\n\n" << std::flush;
}

// Room and text layers must show whatever state the drawing left them in.
void ForceLayerVisible(LayerRecord& layer) {
  layer.setIsOff(false);
  layer.setIsFrozen(false);
  layer.setIsHidden(false);
  layer.setIsFrozenInNewViewports(false);
}

bool NameEquals(const LayerRecord& layer, const OdString& name) {
  return !name.isEmpty() && layer.getName().iCompare(name) == 0;
}

}  // namespace

void CDm2017::PrepareFileLookup(const OdString& input) {
  MyServices& services = TheServices();
  if (!xrefPath.isEmpty()) services.SetXrefPaths(xrefPath);
  if (!fontPath.isEmpty()) services.SetFontPaths(fontPath);
  services.AddEnvironmentPaths();
  baseOutputName = WithoutExtension(outputName);
  const OdString inputDirectory = DirectoryPart(input);
  if (!inputDirectory.isEmpty()) services.SetInputDirectory(inputDirectory);
  services.SetRepoMode(repository);
  services.AddStandardDirectories(CurrentDirectory(), input, toOdString(g_ProgramDirectory));
}

int CDm2017::ReadInputFile(const OdString& input) {
  PrepareFileLookup(input);
  TraceMessage("Input file", input);
  const OdString extension = InputExtension(input);
  g_DwfImported = false;
  try {
    const int routed = LoadByRoute(input, extension);
    if (routed != 0) return routed;
  } catch (const OdError& error) {
    PrintKitError(error);
  } catch (...) {
    std::cout << "Unknown Error.\n\n" << std::flush;
    return -1;
  }
  PrintMessage("Input File Name", input.c_str());
  SetInputFile(input);
  if (!g_pDb) return 0;
  return CollectDrawingTables();
}

// 0 when the post-load steps follow; any other value is ReadInputFile's result as it stands.
int CDm2017::LoadByRoute(const OdString& input, const OdString& extension) {
  switch (ChooseInputRoute(extension, treatAs)) {
    case InputRoute::kDwf:
      ImportDwf(input);
      return 0;
    case InputRoute::kPdf:
      ImportPdf(input);
      return 0;
    case InputRoute::kDgn:
      return ImportDgn(input);
    case InputRoute::kRaster:
      return ConvertRasterInput(input) ? 0 : 1;
    case InputRoute::kDwg:
      inputKind = kInputKindDwg;
      break;
    case InputRoute::kDxf:
      inputKind = kInputKindDxf;
      break;
    case InputRoute::kUnknown:
      return kUnknownExtension;
  }
  TraceMessage("Read input DWG/DXF file");
  OpenDrawing(input);
  return 0;
}

int CDm2017::CollectDrawingTables() {
  TraceMessage("Get Layer Table");
  std::string text;
  if (!roomLayers.isEmpty()) std::cout << "Room Layer: " << OdStringToUtf8(text, roomLayers) << "\n";
  if (!textLayers.isEmpty()) std::cout << "Text Layer: " << OdStringToUtf8(text, textLayers) << "\n";
  std::cout.flush();
  for (LayerRecord* layer : g_pDb->layers()) {
    if (NameEquals(*layer, roomLayers) || NameEquals(*layer, textLayers)) ForceLayerVisible(*layer);
    layerVisibility[layer->getName()] = !layer->isOff();
  }
  TraceMessage("Get View Table");
  for (ViewRecord* view : g_pDb->views()) viewNames.insert(view->getName());
  TraceMessage("Get Layout Table");
  for (Layout* layout : g_pDb->layouts()) layoutNames.insert(toOdString(layout->name).makeUpper());
  if (listViews) ReportUsedFonts();
  return 0;
}

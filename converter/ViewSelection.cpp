// Convert(): which spaces, layouts and named views of the drawing become output files, under which
// names, and in which order. Each chosen item is converted by ConvertView.
#include <string>
#include <utility>
#include <vector>

#include "converter/CDm2017.h"
#include "converter/OutputNaming.h"
#include "drivers/TRANS_BASE2.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

bool g_MultiView = false;

namespace {

constexpr int kInputDwf = 1000;

std::vector<OdDbLayout*> DrawingLayouts() {
  return g_pDb ? g_pDb->layouts() : std::vector<OdDbLayout*>();
}

bool IsModelName(const OdString& name) { return NameIs(name, L"Model") || NameIs(name, L"ModelSpace"); }

// Named views of paper space, the model's own and the embedded-object views get no file.
bool NamedViewGetsFile(const OdDbViewTableRecord& view, bool dwfInput) {
  if (view.isPaperspaceView()) return false;
  const OdString name = view.getName();
  if (NameStartsWith(OdString(name).makeUpper(), L"MODEL")) return false;
  return !(NameStartsWith(name, L"OLE") || (dwfInput && NameIs(name, L"INITIAL")));
}

bool LayoutNameGetsFile(const OdString& name) { return !(IsModelName(name) || NameStartsWith(name, L"OLE")); }

}  // namespace

// The work flags of one run.
struct CDm2017::ConvertFlags {
  bool lastSavedView = false;
  bool model = false;
  bool paper = false;
  bool views = false;
  bool layouts = false;
  bool specific = false;
  bool modelOnly = false;
  bool firstLayoutName = false;
  bool firstLayoutSearch = false;
  bool basicZoom = false;
  bool first = false;  // the next output takes the user's name
};

void CDm2017::UseOutputDriver(TRANS_BASE2* driver) {
  if (driver != outputDriver) delete outputDriver;
  outputDriver = driver;
}

// Settles the view mode and sets the work flags; 0, or -670 for "*ALLMODEL*" on DWF input.
int CDm2017::ChooseWorkFlags(ConvertFlags& f) {
  if (viewMode == 11) {
    viewMode = 1;
    f.modelOnly = true;
  } else if (viewMode == 0) {
    f.specific = true;
    if (g_pDb->getTILEMODE()) {
      viewMode = 1;
      layoutName.empty();
    } else {
      viewMode = 2;
      const OdDbLayout* active = g_pDb->activeLayout();
      layoutName = active ? active->getLayoutName() : OdString();
    }
  }
  if (IsModelName(layoutName)) {
    viewMode = 1;
    f.modelOnly = true;
    layoutName.empty();
  }
  if (viewMode >= 3 && viewMode <= 9) g_MultiView = true;
  switch (viewMode) {
    case 3: f.lastSavedView = f.model = f.views = f.paper = f.layouts = true; break;
    case 8: f.model = f.views = f.paper = f.layouts = true; break;
    case 4: f.paper = f.layouts = true; break;
    case 5:
      if (inputKind == kInputDwf) {
        PrintMessage("AllModel is not allowed with DWF files - Only Layouts are present, use LayoutOnly");
        return -670;
      }
      f.model = f.views = true;
      break;
    case 6: f.layouts = true; break;
    case 9: f.model = f.layouts = f.basicZoom = true; break;
    case 7: f.views = true; break;
    case 10:
      if (!layoutName.isEmpty()) PrintMessage("Use of -first overrides Layout Name set using -layout");
      if (NameStartsWith(viewName, L"*FIRST")) viewName.empty();
      if (!viewName.isEmpty()) PrintMessage("Use of -first overrides View Name set using -view");
      f.firstLayoutName = f.firstLayoutSearch = f.specific = true;
      break;
    case 1:
      f.specific = true;
      if (IsModelSpaceEmpty()) viewMode = 0;
      break;
    default: f.specific = true; break;
  }
  if (IsModelSpaceEmpty()) f.model = false;
  if (IsPaperSpaceEmpty()) f.paper = false;
  return 0;
}

// Fills the driver's table from space and layout names to output names.
void CDm2017::RegisterOutputNames(ConvertFlags& f, const OdString& extension) {
  const bool dwfInput = inputKind == kInputDwf;
  const OdString modelSpace(L"ModelSpace");
  if (!dwfInput) {
    if ((!f.model && viewMode != 1) || (!f.first && !f.specific)) {
      outputDriver->AddOutputNameMapping(modelSpace, ModelSpaceOutputName(baseOutputName));
    } else {
      outputDriver->AddOutputNameMapping(modelSpace, StripExtension(outputName, extension));
      f.first = false;
    }
  }
  if (viewMode == 1 && f.modelOnly) return;
  int counter = 0;
  for (OdDbLayout* layout : DrawingLayouts()) {
    const OdString name = layout->getLayoutName();
    const bool taken = dwfInput ? !IsLayoutEmpty(name) : !(NameIs(name, L"Model") || NameIs(name, L"OLE"));
    if (!taken) continue;
    OdString output;
    if (f.first || (f.specific && name.iCompare(layoutName.c_str()) == 0)) {
      output = baseOutputName;
      f.first = false;
    } else {
      output = LayoutOutputName(baseOutputName, ++counter);
    }
    if (f.firstLayoutName) {
      layoutName = name;
      f.firstLayoutName = false;
    }
    outputDriver->AddOutputNameMapping(name, output);
    PrintMessage("Layout Name", name.c_str());
  }
}

bool CDm2017::LayoutGetsFile(const OdString& name) const {
  if (!LayoutNameGetsFile(name)) return false;
  return !IsLayoutEmpty(name) || (noUninit && inputKind != kInputDwf);
}

// The same order and the same choices as the conversion loop of Convert; the first file keeps the
// base name and each later one takes its view's suffix.
void CDm2017::RegisterPages(const ConvertFlags& f, const OdString& extension) {
  std::vector<std::pair<OdString, int>> planned;
  if (f.lastSavedView) planned.emplace_back(OdString(L"Last Saved View"), kViewLastSaved);
  if (f.model && !IsModelSpaceEmpty()) planned.emplace_back(OdString(L"ModelSpace"), kViewModelSpace);
  if (f.paper) planned.emplace_back(OdString(L"PaperSpace"), kViewPaperSpace);
  if (f.views) {
    for (OdDbViewTableRecord* view : g_pDb->views()) {
      if (NamedViewGetsFile(*view, inputKind == kInputDwf)) planned.emplace_back(view->getName(), kViewNamed);
    }
  }
  if (f.layouts) {
    for (OdDbLayout* layout : DrawingLayouts()) {
      const OdString name = layout->getLayoutName();
      if (LayoutGetsFile(name)) planned.emplace_back(name, kViewLayout);
    }
  }
  if (planned.size() < 2) return;
  const OdString base = StripExtension(outputName, extension);
  int layoutCounter = 0, viewCounter = 0;
  for (size_t i = 0; i < planned.size(); ++i) {
    const auto& [name, kind] = planned[i];
    const OdString stem = i == 0 ? base : base + ViewFileSuffix(kind, layoutCounter, viewCounter);
    outputDriver->AddPage(name, stem + extension);
  }
}

bool CDm2017::AcceptEmptyLayout(OdDbLayout* layout) {
  const OdString name = layout->getLayoutName();
  if (noUninit && inputKind != kInputDwf) {
    PrintMessage("Empty Layout, Creating Modelspace Viewport", name.c_str());
    CreateModelSpaceViewport(layout);
    return true;
  }
  TraceMessage("Empty Layout", name);
  return false;
}

// The one layout or view of the specific modes. Returns the ConvertView result, 0 when nothing
// was converted, or -672 when "*FIRSTLAYOUT*" found no layout.
int CDm2017::ConvertSpecific(bool firstLayoutSearch, const OdString& strippedName) {
  if (outputDriver->GetOutputNameMap().empty()) {
    outputDriver->AddOutputNameMapping(OdString(L"Default View"), strippedName);
  }
  if (layoutName.isEmpty() && !firstLayoutSearch) {
    if (!viewName.isEmpty()) {
      viewMode = 1;
      return ConvertView(viewName, 1, true);
    }
    switch (viewMode) {
      case 0: return ConvertView(OdString(L"Last Saved View"), 0, true);
      case 1: return ConvertView(OdString(L"ModelSpace"), 1, true);
      case 2: return ConvertView(OdString(L"PaperSpace"), 2, true);
      default: return 0;
    }
  }
  if (firstLayoutSearch) {
    bool found = false;
    for (OdDbLayout* layout : DrawingLayouts()) {
      if (layout->isModelLayout()) continue;
      const OdString name = layout->getLayoutName();
      if (IsLayoutEmpty(name)) {
        PrintMessage("Skipping Empty Layout", name.c_str());
        continue;
      }
      PrintMessage("Processing First Layout", name.c_str());
      layoutName = name;
      found = true;
      break;
    }
    if (!found) {
      PrintMessage("No Layouts Defined in file");
      return -672;
    }
  }
  std::string utf8;
  OdDbLayout* layout = g_pDb->findLayout(OdStringToUtf8(utf8, layoutName));
  if (!layout) {
    PrintMessage("Layout Name Not Found", layoutName.c_str());
    return 0;
  }
  if (IsLayoutEmpty(layoutName) && !AcceptEmptyLayout(layout)) return 0;
  viewMode = 2;
  SetOutputFile(strippedName);
  return ConvertView(layoutName, 2, true);
}

int CDm2017::Convert() {
  TraceMessage("Convert", viewMode);
  if (!g_pDb || !outputDriver) return -1;
  ConvertFlags f;
  if (const int refused = ChooseWorkFlags(f); refused != 0) return refused;

  const bool savedZoom = zoomExtents;
  const bool unitsWereZero = units == 0;
  const int64_t savedHeight = height, savedWidth = width;
  const int savedDpi = dpi, savedDpiAlt = dpiAlt;
  viewActive = false;

  const OdString extension = OutputExtension(outputFormat);
  f.first = true;
  outputDriver->SetOutputFileName(outputName);
  RegisterOutputNames(f, extension);
  if (!f.specific) RegisterPages(f, extension);
  if (!f.specific) {
    layoutName.empty();
    viewName.empty();
  }
  f.first = true;

  int result = 0;
  // Converts one view; false when the run must stop.
  auto convertOne = [&](const OdString& name, int kind) {
    result = ConvertView(name, kind, f.first);
    f.first = false;
    if (result < 0) TraceMessage("ERROR:  code ", result);
    return result >= 0;
  };
  auto restoreSize = [&] {
    height = savedHeight;
    width = savedWidth;
  };

  if (f.lastSavedView) {
    viewActive = false;
    SetOutputFile(outputName);
    viewMode = 0;
    if (g_pDb->getTILEMODE()) SetDPI(savedDpiAlt);
    if (!convertOne(OdString(L"Last Saved View"), 0)) return result;
  }
  if (f.model && !IsModelSpaceEmpty()) {
    restoreSize();
    viewActive = false;
    viewMode = 1;
    if (f.basicZoom) zoomExtents = true;
    if (!convertOne(OdString(L"ModelSpace"), 1)) return result;
  }
  if (f.paper) {
    SetOutputFile(outputName);
    restoreSize();
    viewActive = false;
    viewMode = 2;
    zoomExtents = savedZoom;
    if (unitsWereZero) SetUnits(0);
    if (!convertOne(OdString(L"PaperSpace"), 2)) return result;
    zoomExtents = false;
    g_MultiView = false;
  }
  if (f.views) {
    viewMode = 1;
    if (savedDpiAlt != 0) SetDPI(savedDpiAlt);
    for (OdDbViewTableRecord* view : g_pDb->views()) {
      if (view->isPaperspaceView()) continue;
      const OdString name = view->getName();
      if (NameStartsWith(OdString(name).makeUpper(), L"MODEL")) continue;
      SetViewName(name);
      restoreSize();
      zoomExtents = false;
      if (!NamedViewGetsFile(*view, inputKind == kInputDwf)) continue;
      if (unitsWereZero) SetUnits(0);
      TraceMessage("Converting View", name);
      if (!convertOne(name, 4)) return result;
    }
    SetDPI(savedDpi);
  }
  if (f.layouts) {
    for (OdDbLayout* layout : DrawingLayouts()) {
      const OdString name = layout->getLayoutName();
      if (!LayoutNameGetsFile(name)) continue;
      if (IsLayoutEmpty(name) && !AcceptEmptyLayout(layout)) continue;
      viewActive = false;
      viewMode = 2;
      SetLayoutName(name);
      restoreSize();
      zoomExtents = false;
      if (unitsWereZero) SetUnits(0);
      TraceMessage("Converting Layout", name);
      if (!convertOne(name, 3)) return result;
    }
    viewActive = false;
    zoomExtents = savedZoom;
  }
  if (f.specific) {
    result = ConvertSpecific(f.firstLayoutSearch, StripExtension(outputName, extension));
    if (result < 0) TraceMessage("ERROR:  code ", result);
  }
  TraceMessage(" Exit Convert", result);
  return result;
}

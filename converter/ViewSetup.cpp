// Setting up the kit for one view: the drawing context and device of the run, the background and
// palette, the device size, and the vectorization itself.
#include <algorithm>
#include <exception>
#include <fstream>
#include <string>

#include "converter/CDm2017.h"
#include "converter/LoadingSupport.h"
#include "converter/VectorizationObjects.h"
#include "converter/ViewBackground.h"
#include "drivers/TRANS_BASE2.h"
#include "kit/base/OdError.h"
#include "kit/gs/OdGsPalette.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

OdGiContextForDbDatabasePtr g_pContext;
OdGsDevicePtr g_pDevice;
OdGsLayoutHelperPtr g_pLayoutHelper;

namespace {

constexpr int kInputDwf = 1000;

void PrintKitError(const char* label, const OdError& error) {
  std::string text;
  PrintMessage(label, OdStringToUtf8(text, error.description()).c_str());
}

}  // namespace

int CDm2017::StartVectorization() {
  TraceMessage("Create Context Object");
  g_pContext = OdGiContextForDbDatabase::createObject();
  std::ifstream plotStyles;
  if (!ctbFileName.isEmpty()) {
    const OdString found = HostServices().findFile(ctbFileName, g_pDb.get());
    std::string path;
    if (!found.isEmpty()) plotStyles.open(OdStringToUtf8(path, found), std::ios::binary);
    if (plotStyles.is_open()) {
      TraceMessage("CTB File", ctbFileName);
      g_pContext->setPlotStyleMode(1);
    }
  }
  // The device hands its palette to the driver once, when it is made: give the driver the variant
  // the views will show, so that colour 7 is black on the default white page.
  const bool modelActiveOrDwf = g_pDb->getTILEMODE() || inputKind == kInputDwf;
  if (outputDriver) outputDriver->SetWhiteBackground(ChooseViewBackground(background, modelActiveOrDwf).lightPalette);
  g_pDevice = CreateVectorizationDevice();
  if (!g_pDevice) {
    PrintMessage("ERROR: Problem creating the vectorization device");
    return -1;
  }
  TraceMessage("Set Database");
  g_pContext->setDatabase(g_pDb.get(), true);
  if (plotStyles.is_open()) {
    TraceMessage("Load Plot Style Table");
    g_pContext->loadPlotStyleTable(plotStyles);
  }
  return 0;
}

void CDm2017::EndVectorization() {
  g_pLayoutHelper.release();
  g_pDevice.release();
  g_pContext.release();
  palette = nullptr;
  paletteSize = 0;
}

int CDm2017::ConvertToVectorByView(const OdString& name) {
  if (!g_pDevice || !g_pContext) return -1;
  TraceMessage("Set View");
  try {
    SetView();
  } catch (const OdError& error) {
    PrintKitError("ERROR creating LayoutHelper", error);
    return error.code();
  } catch (...) {
    PrintMessage("ERROR: Problem creating LayoutHelper");
    return -2002;
  }
  if (!g_pLayoutHelper) return 0;
  OdGsDevice& device = *g_pLayoutHelper;

  TraceMessage("Set Background");
  const bool modelActiveOrDwf = g_pDb->getTILEMODE() || inputKind == kInputDwf;
  const ViewBackground choice = ChooseViewBackground(background, modelActiveOrDwf);
  device.setLogicalPalette(choice.lightPalette ? odcmAcadLightPalette() : odcmAcadDarkPalette(), 256);
  device.setBackgroundColor(choice.device);
  g_pContext->setPaletteBackground(choice.paper);
  outputDriver->SetWhiteBackground(choice.lightPalette);
  palette = device.getLogicalPalette(paletteSize);
  ProcessWatermark(name, g_pDb.get());

  TraceMessage("Scale Drawing");
  outputDriver->SetDrawingWidth(width);
  outputDriver->SetDrawingHeight(height);
  const long right = static_cast<long>(10 * width - 2 * margin);
  const long bottom = static_cast<long>(10 * height - 2 * margin);
  device.onSize(OdGsDCRect(margin, std::max<long>(right, margin + 1), margin, std::max<long>(bottom, margin + 1)));
  if (OdGsView* view = g_pLayoutHelper->activeView()) {
    view->setViewport(OdGePoint2d(0.0, 0.0), OdGePoint2d(1.0, 1.0));
  }

  TraceMessage("Generate Drawing");
  // What was drawn before a kit failure is still written.
  try {
    device.update();
  } catch (const OdError& error) {
    PrintKitError("ERROR", error);
  } catch (const std::exception& error) {
    PrintMessage("ERROR", error.what());
  }

  TraceMessage("Release Layout Helper");
  g_pLayoutHelper.release();
  TraceMessage("Release Dwg Context");
  TraceMessage("Release Device");
  TraceMessage("CheckExistingPoints");
  TraceMessage("Exit ConvertToVectorByView");
  return 0;
}

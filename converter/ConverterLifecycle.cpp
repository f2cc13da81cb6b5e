// The converter's life: the kit started in the constructor and stopped in the destructor, and the
// dispatch of one conversion between them.
#include <FreeImage.h>

#include <iostream>

#include "converter/CDm2017.h"
#include "drivers/TRANS_BASE2.h"
#include "kit/host/OdKit.h"
#include "services/MyServices.h"
#include "services/Trace.h"

OdDbDatabasePtr g_pDb;
bool g_AllLayersOn = false;
bool g_DwfImported = false;
bool g_PartialLoad = false;

namespace {

// The kit's modules that are part of this program rather than files loaded at run time.
const char* const kStaticModules[] = {
    "AECIIB",         "TD_Dwf7Import", "ModelerGeometry",   "RasterProcessor", "RxRasterServices",
    "WinBitmap.txv",  "RecomputeDimBlock", "TD_DgnImport", "TG_Db",           "TG_Dgn7IO",
    "AcDgnLS",        "TD_PdfImport",  "PDFiumModule",      "OdOleSsItemHandler",
};

// A failed kit assertion is reported and the run goes on.
void ReportKitAssertion(const char* expression, const char* fileName, int line) {
  std::cout << "\nAssertion Failed: " << expression << "\nfile: " << fileName << "\nline: " << line
            << "\n"
            << std::flush;
}

}  // namespace

CDm2017::CDm2017() {
  SetDefaultFont(OdString(L"ARIAL"));
  SetDefaultItalicFont(OdString(L"ARIALI"));
  odSetAssertFunc(ReportKitAssertion);
  odInitialize(&TheServices());
  // Loads print no progress lines unless someone asks for them.
  TheServices().GetProgressMeter().setDisableOutput(true);
  odgsInitialize();
  for (const char* module : kStaticModules) odRegisterStaticModule(module);
  FreeImage_Initialise(TRUE);
  g_pDb.reset();
}

CDm2017::~CDm2017() {
  delete outputDriver;
  outputDriver = nullptr;
  workspaceBlocks.clear();
  layerVisibility.clear();
  TraceMessage("Release Database Pointer");
  g_pDb.reset();
  importedDgnDb.reset();
  importedPdfDb.reset();
  FreeImage_DeInitialise();
  TraceMessage("Close GS Library");
  odgsUninitialize();
  TraceMessage("Close TG Library");
  odUninitialize();
  RestoreStandardOutput();
}

int CDm2017::StartConversion() {
  TraceMessage("Start Conversion");
  if (!ready) return -666;
  if (skipConversion) return 0;
  if (!g_pDb) {
    PrintMessage("No valid Input File");
    return -667;
  }
  PreprocessFile();
  switch (outputFormat) {
    case 2001:
    case 2002:
    case 2000:
      return ConvertToRaster(outputFormat);
    case 1016:
    case 1020:
    case 1007:
      return ConvertToVector(outputFormat);
    case 1013:
      return WriteDrawingFile(0, version);
    case 1014:
      return WriteDrawingFile(1, version);
    default:
      PrintMessage("Unsupported Output Format");
      return -1000;
  }
}

// The output driver stays until the destructor: its file names and pages may still be asked for.
int CDm2017::EndConversion() {
  if (outputDriver) TraceMessage("Delete Output Pointer");
  if (g_pDb) {
    TraceMessage("Release Database Pointer");
    g_pDb.reset();
  }
  RestoreStandardOutput();
  return 0;
}

// The converter's life: kit start and stop around the run, and the dispatch of one conversion.
#include <FreeImage.h>

#include <iostream>

#include "converter/CDm2017.h"
#include "drivers/TRANS_BASE2.h"
#include "services/Trace.h"

OdDbDatabasePtr g_pDb;
bool g_AllLayersOn = false;

CDm2017::CDm2017() {
  SetDefaultFont(OdString(L"ARIAL"));
  SetDefaultItalicFont(OdString(L"ARIALI"));
  FreeImage_Initialise(TRUE);
  g_pDb.reset();
}

CDm2017::~CDm2017() {
  delete outputDriver;
  outputDriver = nullptr;
  workspaceBlocks.clear();
  TraceMessage("Release Database Pointer");
  g_pDb.reset();
  FreeImage_DeInitialise();
  TraceMessage("Close GS Library");
  TraceMessage("Close TG Library");
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
    case 1014:
      return WriteDrawingFile();
    default:
      PrintMessage("Unsupported Output Format");
      return -1000;
  }
}

int CDm2017::EndConversion() {
  if (outputDriver) TraceMessage("Delete Output Pointer");
  if (g_pDb) {
    TraceMessage("Release Database Pointer");
    g_pDb.reset();
  }
  RestoreStandardOutput();
  return 0;
}

// The output routes reached from StartConversion and the raster input route of ReadInputFile.
// Raster output and raster inputs need the bitmap device, which this build does not have yet:
// those routes say so and fail with the converter's codes. DWG and DXF writing goes through the kit's writers.
#include <exception>
#include <iostream>
#include <string>

#include "converter/CDm2017.h"
#include "kit/base/OdError.h"
#include "kit/host/DrawingFileReaders.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

namespace {

constexpr int kFormatPdf = 1007;
constexpr int kFormatSvg = 1016;
constexpr int kInputKindDwg = 1013;
constexpr int kInputKindDxf = 1014;

}  // namespace

int CDm2017::ConvertToRaster(int /*format*/) {
  PrintMessage("Raster output is not available in this build");
  return -1000;
}

bool CDm2017::ConvertRasterInput(const OdString& /*inputPath*/) {
  if (outputFormat != kFormatSvg && outputFormat != kFormatPdf) {
    PrintMessage("Output Format Not Supported for Direct Raster Conversion");
    return false;
  }
  PrintMessage("Raster input is not available in this build");
  return false;
}

// kind 0 DWG, 1 DXF; fileVersion 0 keeps the version the drawing was read in.
int CDm2017::WriteDrawingFile(int kind, int fileVersion) {
  if ((kind == 0 && inputKind == kInputKindDwg) || (kind == 1 && inputKind == kInputKindDxf)) {
    PrintMessage("Input and Output Formats must differ");
    return -1002;
  }
  std::wstring name = outputName.str();
  const auto dot = name.rfind(L'.');
  if (dot != std::wstring::npos) name.resize(dot);
  name += kind == 0 ? L".dwg" : L".dxf";
  const OdString fixedName(name);
  TraceMessage("    Fixed Output Name", fixedName);
  TraceMessage("    Write AutoCAD File");
  try {
    std::string path;
    writeDrawingFile(*g_pDb, OdStringToUtf8(path, fixedName), kind == 0 ? kSaveDwg : kSaveDxf,
                     fileVersion);
    return 0;
  } catch (const OdError& error) {
    PrintMessageOnce("Error  ", error.description().c_str());
    return -1;
  } catch (const std::exception&) {
    PrintMessage("Unexpected error saving dwg file");
    return -1;
  }
}

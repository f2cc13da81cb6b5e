// The output routes reached from StartConversion. Vector and raster output through the
// vectorizer are not wired yet: they say so and fail with the converter's codes.
#include <filesystem>

#include "converter/CDm2017.h"
#include "kit/base/OdError.h"
#include "kit/dxf/DxfWriter.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

void CDm2017::PreprocessFile() {}

int CDm2017::ConvertToVector(int format) {
  if (format != 1016 && format != 1007) {
    PrintMessage("Unsupported Output Format");
    return -1000;
  }
  PrintMessage("Vector output is not available in this build");
  return -1000;
}

int CDm2017::ConvertToRaster(int /*format*/) {
  PrintMessage("Raster output is not available in this build");
  return -1000;
}

int CDm2017::WriteDrawingFile() {
  if (outputFormat != 1014) {
    PrintMessage("DWG output is not available in this build");
    return -1000;
  }
  try {
    std::string path;
    writeDxfFile(*g_pDb, OdStringToUtf8(path, outputName));
    TraceMessage("DXF file written", outputName);
    return 0;
  } catch (const OdError& e) {
    PrintMessage("Error writing DXF file", e.description().c_str());
    return -1;
  }
}

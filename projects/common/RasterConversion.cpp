#include <FreeImage.h>

#include <cstdlib>
#include <sstream>

#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

namespace {

// Single-quoted for the shell; a quote inside the name closes, escapes and reopens the quoting.
std::string shellQuoted(const std::string& text) {
  std::string quoted = "'";
  for (char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

void reportImageLibraryError(FREE_IMAGE_FORMAT format, const char* /*message*/) {
  const char* name = format == FIF_UNKNOWN ? nullptr : FreeImage_GetFormatFromFIF(format);
  PrintMessage("Error in Raster File, Format", name ? name : "UNKNOWN");
}

// Brightness 0..100 with 50 as unchanged, onto the image library's -100..100 percent.
bool adjustBrightness(FIBITMAP* image, double brightness) {
  std::ostringstream value;
  value << brightness;
  PrintMessage("Adjusting brightness", value.str().c_str());
  if (FreeImage_AdjustBrightness(image, (brightness - 50.0) * 2.0)) return true;
  PrintMessage("Error adjusting brightness");
  return false;
}

bool reloadAndAdjust(const std::string& targetName, double brightness) {
  FreeImage_SetOutputMessage(reportImageLibraryError);
  FREE_IMAGE_FORMAT format = FreeImage_GetFileType(targetName.c_str(), 0);
  FIBITMAP* image = format == FIF_UNKNOWN ? nullptr : FreeImage_Load(format, targetName.c_str(), 0);
  bool ok = image != nullptr;
  if (ok && brightness != 50.0 && adjustBrightness(image, brightness))
    ok = FreeImage_Save(FIF_PNG, image, targetName.c_str(), 0) != 0;
  if (image) FreeImage_Unload(image);
  if (!ok) PrintMessage("Error loading or converter raster file");
  return ok;
}

}  // namespace

bool ConvertToPNG(const std::string& inputName, const std::string& targetName, double brightness) {
  TraceMessage("ConvertToPNG", inputName);
  std::string found;
  if (!FindFileNoCase(inputName, found)) {
    TraceMessage("Input Raster File Not Found", inputName);
    return false;
  }
  // Only the first frame or page of the input is converted.
  std::string command = "convert " + shellQuoted(found + "[0]") + " " + shellQuoted(targetName);
  // A failed command leaves no readable result, which the reload reports.
  int status = std::system(command.c_str());
  (void)status;
  return reloadAndAdjust(targetName, brightness);
}

// Raster images given by file: the source is looked up beside the drawing and as PNG, converted to
// a PNG file next to the output, and that file is placed in the image's frame.
#include <string>
#include <vector>

#include "drivers/TRANS_BASE2.h"
#include "kit/db/Objects.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"
#include "vectorizer/EntityDrawState.h"
#include "vectorizer/EntityRules.h"
#include "vectorizer/OutputDriverPointer.h"
#include "vectorizer/RasterFiles.h"

namespace {

// Brightness 50 leaves the picture as it is.
constexpr double kNeutralBrightness = 50.0;

std::string Directory(const std::string& path) {
  size_t slash = path.find_last_of("/\\");
  return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

std::string BaseName(const std::string& path) {
  size_t slash = path.find_last_of("/\\");
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string WithPngExtension(const std::string& path) {
  size_t dot = path.rfind('.');
  size_t slash = path.find_last_of("/\\");
  bool hasExtension = dot != std::string::npos && (slash == std::string::npos || dot > slash);
  return (hasExtension ? path.substr(0, dot) : path) + ".png";
}

bool Exists(const std::string& path, std::string& found) {
  return !path.empty() && FindFileNoCase(path, found) && IsRegularFile(found);
}

// The places an image file is looked for, in order; empty when none holds it.
std::string FindImageFile(const std::string& imageFile, const std::string& inputFile) {
  std::string name = ReplaceChar(imageFile, '\\', '/');
  std::string found;
  TraceMessage("     iBase1", name);
  if (Exists(name, found)) return found;
  TraceMessage("Raster Image File Not Found1", name);
  std::string besideInput = Directory(inputFile) + BaseName(name);
  TraceMessage("     iBase2", besideInput);
  if (Exists(besideInput, found)) return found;
  TraceMessage("Raster Image File Not Found2", besideInput);
  std::string relative = Directory(inputFile) + name;
  TraceMessage("     iBase2b", relative);
  if (Exists(relative, found)) return found;
  TraceMessage("Raster Image File Not Found3", relative);
  std::string asPng = WithPngExtension(besideInput);
  TraceMessage("     iBase2c", asPng);
  if (Exists(asPng, found)) return found;
  std::string nameAsPng = WithPngExtension(name);
  TraceMessage("     iBase2d", nameAsPng);
  if (Exists(nameAsPng, found)) return found;
  TraceMessage("Raster Image File Not Found4", nameAsPng);
  return std::string();
}

}  // namespace

void ApplyRasterRules(const EntityRuleInput& input, const Entity& entity) {
  const auto* image = dbCast<RasterImageEntity>(&entity);
  TRANS_BASE2* driver = g_pOutputDriver;
  if (!image || !input.database || !driver) return;
  // A hidden image draws nothing: its file is not wanted.
  if (!(image->displayFlags & RasterImageData::kShow)) return;
  const auto* definition = input.database->findAs<RasterImageDefObject>(image->imageDefinition);
  if (!definition || definition->fileName.empty()) return;
  TraceMessage("imageFileName", definition->fileName);
  TraceMessage("     inputFileName", input.inputFileName);
  std::string source = FindImageFile(definition->fileName, input.inputFileName);
  if (source.empty()) {
    TraceMessage("Raster File Not found", definition->fileName);
    return;
  }
  TraceMessage("Source File Name", source);
  OdString png = NextImageFileName(driver->GetOutputFileName());
  std::string target;
  OdStringToUtf8(target, png);
  bool isPng = ToLowerCopy(source).ends_with(".png");
  if (isPng ? !copyFile(source, target) : !ConvertToPNG(source, target, kNeutralBrightness)) {
    TraceMessage("Error loading Raster File", source);
    return;
  }
  EntityDrawState& s = g_EntityDrawState;
  s.rasterFileName = png;
  s.rasterWidth = int64_t(image->imageSize.x);
  s.rasterHeight = int64_t(image->imageSize.y);
}

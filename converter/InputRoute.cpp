#include "converter/InputRoute.h"

#include <cwctype>
#include <string>

namespace {

// Raster inputs in the order they are tested.
const wchar_t* const kRasterExtensions[] = {
    L".tif", L".png", L".gif", L".bmp", L".cut", L".dds", L".exr", L".g3",   L".hdr",
    L".ico", L".iff", L".jng", L".mng", L".pcx", L".pbm", L".pfm", L".pgm",  L".ppm",
    L".pict", L".psd", L".raw", L".ras", L".sgi", L".targa", L".wbmp", L".webp", L".xbm",
    L".xpm", L".jpx", L".j2c", L".jxr", L".jif", L".jpg", L".jpeg",
};

bool StartsWith(const OdString& text, const wchar_t* prefix) { return text.str().rfind(prefix, 0) == 0; }

bool IsRasterExtension(const OdString& extension) {
  for (const wchar_t* raster : kRasterExtensions) {
    if (StartsWith(extension, raster)) return true;
  }
  return false;
}

}  // namespace

OdString InputExtension(const OdString& path) {
  const std::wstring& text = path.str();
  if (text.size() <= 4) return OdString();
  std::wstring extension = text.substr(text.size() - 4);
  for (auto& c : extension) c = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
  return OdString(extension);
}

InputRoute ChooseInputRoute(const OdString& extension, int treatAs) {
  if (StartsWith(extension, L".dwf") || treatAs == kTreatAsDwf) return InputRoute::kDwf;
  if (StartsWith(extension, L".pdf")) return InputRoute::kPdf;
  if (StartsWith(extension, L".dgn") || treatAs == kTreatAsDgn) return InputRoute::kDgn;
  if (IsRasterExtension(extension)) return InputRoute::kRaster;
  if (StartsWith(extension, L".dwg")) return InputRoute::kDwg;
  if (StartsWith(extension, L".dxf")) return InputRoute::kDxf;
  return InputRoute::kUnknown;
}

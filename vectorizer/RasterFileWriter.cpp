// The kit's image pixels as PNG files: palette images (also 1-bit rows), 8-bit images and true
// colour, each copied into an image of its own depth and saved through FreeImage.
#include <FreeImage.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "kit/gi/OdGiConveyorGeometry.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"
#include "vectorizer/RasterFiles.h"

int32_t g_ImageCounter = 0;

namespace {

struct PixelSource {
  const OdGiRasterImage& image;
  uint32_t width;
  uint32_t height;
  uint32_t scanLine;
};

// Rows of both the kit and FreeImage run bottom-up: row i goes to scan line i.
void CopyRows(const PixelSource& source, FIBITMAP* bitmap, uint32_t bytesPerRow) {
  const uint8_t* rows = source.image.scanLines();
  uint32_t pitch = FreeImage_GetPitch(bitmap);
  uint32_t count = std::min({bytesPerRow, source.scanLine, pitch});
  for (uint32_t y = 0; y < source.height; ++y) {
    std::memcpy(FreeImage_GetScanLine(bitmap, int(y)), rows + size_t(y) * source.scanLine, count);
  }
}

void CopyPalette(const PixelSource& source, FIBITMAP* bitmap, uint32_t entries) {
  RGBQUAD* palette = FreeImage_GetPalette(bitmap);
  if (!palette) return;
  const uint8_t* data = source.image.paletteData();
  uint32_t given = data ? source.image.paletteDataSize() / 4 : 0;
  for (uint32_t i = 0; i < entries; ++i) {
    if (i < given) {
      palette[i] = {data[4 * i], data[4 * i + 1], data[4 * i + 2], 0};
    } else {
      // Without a palette: a grey ramp (black to white for two colours).
      BYTE grey = BYTE(entries > 1 ? i * 255 / (entries - 1) : 0);
      palette[i] = {grey, grey, grey, 0};
    }
  }
}

FIBITMAP* MakeBitmap(const PixelSource& source, int bitsPerPixel) {
  FIBITMAP* bitmap = FreeImage_Allocate(int(source.width), int(source.height), bitsPerPixel);
  if (!bitmap) return nullptr;
  uint32_t bytesPerRow = (source.width * uint32_t(bitsPerPixel) + 7) / 8;
  if (bitsPerPixel <= 8) CopyPalette(source, bitmap, 1u << bitsPerPixel);
  if (source.image.scanLines()) CopyRows(source, bitmap, bytesPerRow);
  return bitmap;
}

// Saved under a temporary name first: a failed save must not leave a broken file behind.
bool SavePng(FIBITMAP* bitmap, const OdString& fileName) {
  std::string path;
  OdStringToUtf8(path, fileName);
  TraceMessage("Output File Name", fileName);
  std::string temporary = path + ".part";
  bool saved = FreeImage_Save(FIF_PNG, bitmap, temporary.c_str(), PNG_DEFAULT) &&
               std::rename(temporary.c_str(), path.c_str()) == 0;
  FreeImage_Unload(bitmap);
  if (!saved) {
    std::remove(temporary.c_str());
    TraceMessage("Error saving bitmap", fileName);
  }
  return saved;
}

bool Near(uint32_t a, uint32_t b, uint32_t within) { return (a > b ? a - b : b - a) <= within; }

// Bits per pixel of the image to write, or 0 for an unknown format.
int OutputDepth(const PixelSource& source, uint32_t depth) {
  if (depth < 9) {
    if (depth == 8) return 8;
    if (depth == 1 || depth == 4) return int(depth);
    return 0;
  }
  if (Near(source.scanLine, source.width / 8, 4)) return 1;
  if (Near(source.scanLine, source.width, 3)) return 8;
  return depth >= 32 ? 32 : 24;
}

}  // namespace

OdString NextImageFileName(const OdString& outputPath) {
  int dot = outputPath.reverseFind(L'.');
  OdString base = dot < 0 ? outputPath : outputPath.left(dot);
  return base + OdString().format(L"__%d.png", ++g_ImageCounter);
}

bool CreateRasterFile(const OdGiRasterImage& image, const OdString& fileName, int64_t& widthOut,
                      int64_t& heightOut, int, double) {
  TraceMessage("Create Raster File", fileName);
  PixelSource source{image, image.pixelWidth(), image.pixelHeight(), image.scanLineSize()};
  widthOut = source.width;
  heightOut = source.height;
  if (source.width == 0 || source.height == 0) return false;
  int depth = OutputDepth(source, image.colorDepth());
  if (depth == 0) {
    TraceMessage("Unknown Raster Format");
    return false;
  }
  FIBITMAP* bitmap = MakeBitmap(source, depth);
  return bitmap && SavePng(bitmap, fileName);
}

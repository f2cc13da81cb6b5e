// Raster images embedded as PNG data addresses, with the clip path of a clipped image.
#include <FreeImage.h>

#include <cmath>
#include <string_view>

#include "drivers/svg/DRAWSVG.h"
#include "drivers/svg/SvgBase64.h"
#include "drivers/svg/SvgNumberText.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

namespace {

// Images smaller than this (SVG units) are reported; they may not show.
constexpr double kSmallestImageSide = 0.1;

bool IsPng(const std::string& bytes) { return bytes.size() > 8 && bytes.compare(0, 8, "\x89PNG\r\n\x1a\n") == 0; }

// Any other raster format FreeImage reads becomes PNG in memory.
std::string ConvertToPngBytes(const std::string& path) {
  FREE_IMAGE_FORMAT format = FreeImage_GetFileType(path.c_str(), 0);
  if (format == FIF_UNKNOWN) format = FreeImage_GetFIFFromFilename(path.c_str());
  if (format == FIF_UNKNOWN || !FreeImage_FIFSupportsReading(format)) return "";
  FIBITMAP* bitmap = FreeImage_Load(format, path.c_str(), 0);
  if (bitmap == nullptr) return "";
  std::string png;
  FIMEMORY* memory = FreeImage_OpenMemory();
  if (memory != nullptr && FreeImage_SaveToMemory(FIF_PNG, bitmap, memory, 0)) {
    BYTE* data = nullptr;
    DWORD size = 0;
    if (FreeImage_AcquireMemory(memory, &data, &size)) png.assign(reinterpret_cast<const char*>(data), size);
  }
  if (memory != nullptr) FreeImage_CloseMemory(memory);
  FreeImage_Unload(bitmap);
  return png;
}

std::string Utf8(const OdString& text) {
  std::string out;
  return OdStringToUtf8(out, text);
}

}  // namespace

void DRAWSVG::WriteImages(const std::vector<DrvImage>& images) {
  TraceMessage("OutputEmbeddedImages", static_cast<int>(images.size()));
  SvgCoordinates page = PageCoordinates();
  for (const DrvImage& image : images) {
    double width = image.maxX - image.minX;
    double height = image.maxY - image.minY;
    bool finite = IsFinitePoint(image.minX, image.minY) && IsFinitePoint(image.maxX, image.maxY) &&
                  std::isfinite(image.rotation);
    if (!finite || width < kSmallestImageSide || height < kSmallestImageSide) {
      TraceMessage("Check Boundary Size");
      if (!finite || width <= 0 || height <= 0) continue;
    }
    std::string data;
    TraceMessage("Process Embed Image", image.fileName);
    std::string path = Utf8(image.fileName);
    std::string bytes;
    ReadWholeFile(path, bytes);
    if (!IsPng(bytes)) bytes = ConvertToPngBytes(path);
    if (bytes.empty()) {
      TraceMessage("qwsDrawEmbeddedImage: no image data in", path);
      continue;
    }
    TraceMessage("base64_encode");
    AppendBase64(data, bytes);
    ++m_imageCount;

    bool clipped = !image.clipPoints.empty() && image.rotation == 0;
    if (clipped) {
      ++m_clipCounter;
      const std::vector<OdGePoint2d>& clip = image.clipPoints;
      m_out += "<clipPath id=\"Clip_" + std::to_string(m_clipCounter) + "\">\n   <path d=\"";
      page.MoveTo(m_out, clip[0].x, clip[0].y);
      if (clip.size() == 2) {
        // A rectangle from two corners: round it with horizontal and vertical steps (y flipped).
        double dx = clip[1].x - clip[0].x;
        double dy = clip[0].y - clip[1].y;
        m_out += 'h' + DoubleText(dx) + 'v' + DoubleText(dy) + 'h' + DoubleText(-dx) + 'v' + DoubleText(-dy);
      } else {
        for (std::size_t i = 1; i < clip.size(); ++i) {
          if (!IsFinitePoint(clip[i].x, clip[i].y)) continue;
          m_out += 'L';
          page.AppendPair(m_out, clip[i].x, clip[i].y);
        }
      }
      m_out += "\" />\n</clipPath>\n";
    }
    std::string x = page.XText(image.minX);
    std::string y = page.YText(image.maxY);
    m_out += "<image x=\"" + x + "\" y=\"" + y + "\" width=\"" + CoordinateText(width, m_precision) + "\" height=\"" +
             CoordinateText(height, m_precision) + "\"";
    if (image.rotation != 0) {
      long degrees = static_cast<long>(std::fmod(image.rotation, 360.0));
      m_out += " transform=\"rotate(" + std::to_string(-degrees) + " " + x + " " + page.YText(image.minY) + ")\"";
    }
    m_out += " xlink:href=\"data:image/png;base64,";
    m_out += data;
    m_out += "\" ";
    m_out += clipped ? "clip-path=\"url(#Clip_" + std::to_string(m_clipCounter) + ")\" />\n" : std::string("/>\n");
    FlushIfLarge();
  }
}

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

// The placement of a turned or mirrored image: drawing coordinates to the image's own, where the
// picture lies unturned with its lower left corner at the origin.
struct ImagePlacement {
  double originX, originY;
  double angle;  // radians, counter-clockwise
  bool mirrored;
  OdGePoint2d ToImage(const OdGePoint2d& p) const {
    double dx = p.x - originX, dy = p.y - originY;
    double c = std::cos(angle), s = std::sin(angle);
    double x = c * dx + s * dy, y = -s * dx + c * dy;
    return {originX + x, originY + (mirrored ? -y : y)};
  }
};

bool IsStretched(const DrvImage& image, double width, double height) {
  constexpr double kSameProportion = 1e-3;
  if (image.pixelWidth <= 0 || image.pixelHeight <= 0) return false;
  double pixels = double(image.pixelWidth) / double(image.pixelHeight);
  return std::fabs(width / height - pixels) > kSameProportion * pixels;
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

    // A turned or mirrored image is placed by its own size and turned by its transform; its clip
    // outline is written in the image's own (untransformed) coordinates, which the transform
    // carries along with the picture.
    long degrees = std::lround(std::fmod(image.rotation, 360.0));
    bool transformed = degrees != 0 || image.mirrored;
    ImagePlacement placement{image.minX, image.minY, degrees * kPi / 180.0, image.mirrored};
    std::vector<OdGePoint2d> clip;
    for (const OdGePoint2d& p : image.clipPoints) {
      if (IsFinitePoint(p.x, p.y)) clip.push_back(transformed ? placement.ToImage(p) : p);
    }
    bool clipped = clip.size() >= 2;
    if (clipped) {
      ++m_clipCounter;
      m_out += "<clipPath id=\"Clip_" + std::to_string(m_clipCounter) + "\">\n   <path d=\"";
      page.MoveTo(m_out, clip[0].x, clip[0].y);
      if (image.clipPoints.size() == 2 && clip.size() == 2) {
        // A rectangle from two corners: round it with horizontal and vertical steps (y flipped).
        double dx = clip[1].x - clip[0].x;
        double dy = clip[0].y - clip[1].y;
        m_out += 'h' + DoubleText(dx) + 'v' + DoubleText(dy) + 'h' + DoubleText(-dx) + 'v' + DoubleText(-dy);
      } else {
        for (std::size_t i = 1; i < clip.size(); ++i) {
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
    if (transformed) {
      std::string bottom = page.YText(image.minY);
      m_out += " transform=\"";
      if (degrees != 0) m_out += "rotate(" + std::to_string(-degrees) + " " + x + " " + bottom + ")";
      // Flipped across the bottom edge: y becomes 2 * bottom - y on the page.
      if (image.mirrored) {
        m_out += std::string(degrees != 0 ? " " : "") + "matrix(1 0 0 -1 0 " +
                 CoordinateText(2 * page.ShiftY(image.minY), m_precision) + ")";
      }
      m_out += "\"";
    }
    // A picture stretched out of its own proportions (a reference scaled unevenly) fills its
    // frame instead of being fitted into it.
    if (IsStretched(image, width, height)) m_out += " preserveAspectRatio=\"none\"";
    m_out += " xlink:href=\"data:image/png;base64,";
    m_out += data;
    m_out += "\" ";
    m_out += clipped ? "clip-path=\"url(#Clip_" + std::to_string(m_clipCounter) + ")\" />\n" : std::string("/>\n");
    FlushIfLarge();
  }
}

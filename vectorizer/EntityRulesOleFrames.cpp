// OLE frames: the picture embedded in the object's data (a BMP inside the compound document) is
// written as a PNG file and placed in the frame's outline.
#include <FreeImage.h>

#include <algorithm>
#include <array>
#include <fstream>

#include "drivers/TRANS_BASE2.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"
#include "vectorizer/EntityDrawState.h"
#include "vectorizer/EntityRules.h"
#include "vectorizer/OutputDriverPointer.h"
#include "vectorizer/RasterFiles.h"

namespace {

constexpr std::array<uint8_t, 8> kCompoundDocumentMagic = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
// A BMP file header is 14 bytes, its info header at least 12.
constexpr size_t kMinBmpSize = 26;

std::string PointText(const OdGePoint3d& p) {
  return std::to_string(p.x) + ", " + std::to_string(p.y) + ", " + std::to_string(p.z);
}

void TraceFrame(const Ole2FrameEntity& frame) {
  TraceMessage("------------ OdDbOle2Frame ------------");
  TraceMessage("himetric size");
  TraceMessage("   Width", frame.lowerRight.x - frame.upperLeft.x);
  TraceMessage("   Height", frame.upperLeft.y - frame.lowerRight.y);
  TraceMessage("   position:");
  TraceMessage("      upLeft", PointText(frame.upperLeft));
  TraceMessage("      upRight", PointText({frame.lowerRight.x, frame.upperLeft.y, frame.upperLeft.z}));
  TraceMessage("      lowRight", PointText(frame.lowerRight));
  TraceMessage("      lowLeft", PointText({frame.upperLeft.x, frame.lowerRight.y, frame.lowerRight.z}));
  TraceMessage("   OLE Type", int(frame.oleType));
  TraceMessage("   Quality", 0);
}

// The offset of an embedded BMP picture ("BM" followed by its plausible size), or npos.
size_t FindBmp(const std::vector<uint8_t>& data) {
  for (size_t i = 0; i + kMinBmpSize <= data.size(); ++i) {
    if (data[i] != 0x42 || data[i + 1] != 0x4D) continue;
    uint32_t size = data[i + 2] | data[i + 3] << 8 | data[i + 4] << 16 | uint32_t(data[i + 5]) << 24;
    if (size >= kMinBmpSize && size <= data.size() - i) return i;
  }
  return std::string::npos;
}

bool WriteBytes(const std::string& path, const uint8_t* bytes, size_t count) {
  std::ofstream out(path, std::ios::binary);
  out.write(reinterpret_cast<const char*>(bytes), std::streamsize(count));
  return bool(out);
}

// The BMP written beside the PNG and converted; the PNG's pixel size on success.
bool BmpToPng(const uint8_t* bmp, size_t size, const OdString& png, int64_t& width, int64_t& height) {
  std::string target;
  OdStringToUtf8(target, png);
  std::string bmpPath = target.substr(0, target.size() - 4) + ".bmp";
  WriteBytes(bmpPath, bmp, size);
  FIBITMAP* bitmap = FreeImage_Load(FIF_BMP, bmpPath.c_str(), 0);
  bool saved = bitmap && FreeImage_Save(FIF_PNG, bitmap, target.c_str(), PNG_DEFAULT);
  if (bitmap) {
    width = FreeImage_GetWidth(bitmap);
    height = FreeImage_GetHeight(bitmap);
    FreeImage_Unload(bitmap);
  }
  return saved;
}

}  // namespace

void ApplyOleFrameRules(const Entity& entity) {
  const auto* frame = dbCast<Ole2FrameEntity>(&entity);
  TRANS_BASE2* driver = g_pOutputDriver;
  if (!frame || !driver) return;
  TraceFrame(*frame);
  const std::vector<uint8_t>& data = frame->data;
  TraceMessage("Got Bitmap", int(data.size()));
  TraceMessage("LinkName", frame->programName);
  TraceMessage("LinkPath", std::string());
  if (data.size() < kCompoundDocumentMagic.size() ||
      !std::equal(kCompoundDocumentMagic.begin(), kCompoundDocumentMagic.end(), data.begin())) {
    TraceMessage("OLE2Frame: Failed Magic Test");
  }
  size_t offset = FindBmp(data);
  if (offset == std::string::npos) {
    TraceMessage("OLE2Frame: Could Not find BMP File");
    return;
  }
  uint32_t size = data[offset + 2] | data[offset + 3] << 8 | data[offset + 4] << 16 | uint32_t(data[offset + 5]) << 24;
  OdString png = NextImageFileName(driver->GetOutputFileName());
  int64_t width = 0, height = 0;
  if (!BmpToPng(data.data() + offset, size, png, width, height)) {
    TraceMessage("Error loading or converter raster file");
    return;
  }
  EntityDrawState& s = g_EntityDrawState;
  s.rasterFileName = png;
  s.rasterWidth = width;
  s.rasterHeight = height;
}

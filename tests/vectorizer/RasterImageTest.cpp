// Image pixels written as PNG files beside the output and placed into the drawing.
#include <FreeImage.h>

#include <filesystem>
#include <memory>
#include <vector>

#include "RecordingDriver.h"
#include "kit/gi/OdGiConveyorGeometry.h"
#include "vectorizer/OdGiConveyorGeometryDumper.h"
#include "vectorizer/OdGiDumperImpl.h"
#include "vectorizer/RasterFiles.h"

namespace vectest {
namespace {

class FakeImage : public OdGiRasterImage {
public:
  FakeImage(uint32_t width, uint32_t height, uint32_t depth, uint32_t scanLine)
      : width_(width), height_(height), depth_(depth), scanLine_(scanLine), rows_(size_t(scanLine) * height, 0x5A) {}
  uint32_t pixelWidth() const override { return width_; }
  uint32_t pixelHeight() const override { return height_; }
  uint32_t colorDepth() const override { return depth_; }
  uint32_t scanLineSize() const override { return scanLine_; }
  uint32_t paletteDataSize() const override { return 0; }
  const uint8_t* paletteData() const override { return nullptr; }
  const uint8_t* scanLines() const override { return rows_.data(); }

private:
  uint32_t width_, height_, depth_, scanLine_;
  std::vector<uint8_t> rows_;
};

unsigned SavedBitsPerPixel(const std::filesystem::path& path) {
  FIBITMAP* bitmap = FreeImage_Load(FIF_PNG, path.string().c_str(), 0);
  if (!bitmap) return 0;
  unsigned bpp = FreeImage_GetBPP(bitmap);
  FreeImage_Unload(bitmap);
  return bpp;
}

class RasterImageTest : public VectorizerTest {
protected:
  RasterImageTest() { g_ImageCounter = 0; }
  OdString Path(const char* name) const { return OdString((Scratch() / name).string()); }
};

TEST_F(RasterImageTest, ImagesAreNumberedAfterTheOutputBase) {
  EXPECT_EQ(NextImageFileName(OdString(L"/data/out.svg")), OdString(L"/data/out__1.png"));
  EXPECT_EQ(NextImageFileName(OdString(L"/data/out.svg")), OdString(L"/data/out__2.png"));
  EXPECT_EQ(NextImageFileName(OdString(L"/data/out")), OdString(L"/data/out__3.png"));
}

struct DepthCase {
  const char* name;
  uint32_t width;
  uint32_t depth;
  uint32_t scanLine;
  unsigned savedBits;  // 0: not written
};

TEST_F(RasterImageTest, PixelRowsAreWrittenAtTheirOwnDepth) {
  const DepthCase cases[] = {
      {"1-bit rows of a deep image", 64, 24, 64 / 8 + 2, 1},
      {"8-bit rows", 64, 24, 64, 8},
      {"true colour", 64, 24, 64 * 3, 24},
      {"8-bit image", 64, 8, 64, 8},
      {"unknown small depth", 64, 2, 16, 0},
  };
  for (const DepthCase& c : cases) {
    SCOPED_TRACE(c.name);
    FakeImage image(c.width, 16, c.depth, c.scanLine);
    OdString file = Path(c.name);
    int64_t width = 0, height = 0;
    bool written = CreateRasterFile(image, file, width, height, int(c.depth), 1.0);
    EXPECT_EQ(written, c.savedBits != 0);
    EXPECT_EQ(std::filesystem::exists(std::string(OdAnsiString(file).c_str())), written);
    if (written) {
      EXPECT_EQ(SavedBitsPerPixel(std::string(OdAnsiString(file).c_str())), c.savedBits);
    }
  }
}

TEST_F(RasterImageTest, KitImagesArePlacedInTheirFrame) {
  RecordingDriver& driver = UseDriver();
  driver.SetOutputFileName(Path("drawing.svg"));
  OdGiConveyorGeometryDumper sink(std::make_shared<OdGiDumperImpl>());
  FakeImage image(40, 20, 24, 120);
  sink.rasterImageProc(OdGePoint3d(5, 5, 0), OdGeVector3d(0.5, 0, 0), OdGeVector3d(0, 0.5, 0), &image, nullptr, 0);
  sink.rasterImageProc(OdGePoint3d(5, 5, 0), OdGeVector3d(0, 0.5, 0), OdGeVector3d(-0.5, 0, 0), &image, nullptr, 0);
  ASSERT_EQ(driver.Images().size(), 2u);
  const DrvImage flat = driver.Images()[0];
  EXPECT_EQ(flat.fileName, Path("drawing__1.png"));
  EXPECT_EQ(flat.pixelWidth, 40);
  EXPECT_EQ(flat.maxX, 25);
  EXPECT_EQ(flat.maxY, 15);
  EXPECT_EQ(flat.rotation, 0.0);
  EXPECT_NEAR(driver.Images()[1].rotation, 90.0, 1e-9);
  EXPECT_TRUE(std::filesystem::exists(Scratch() / "drawing__2.png"));
}

}  // namespace
}  // namespace vectest

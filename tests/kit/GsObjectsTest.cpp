// Counted references, the two standard palettes, the device's palette and background, and plot
// style tables read into the drawing context.
#include <gtest/gtest.h>
#include <zlib.h>

#include <cstring>
#include <fstream>
#include <sstream>

#include "kit/gs/OdGiContextForDbDatabase.h"
#include "kit/gs/OdGsBaseVectorizeDevice.h"

namespace {

struct Tracked : OdRxObject {
  static int alive;
  Tracked() { ++alive; }
  ~Tracked() override { --alive; }
};
int Tracked::alive = 0;
struct Other : OdRxObject {};

TEST(GsObjects, ReferencesKeepAnObjectUntilTheLastIsGivenUp) {
  {
    OdSmartPtr<OdRxObject> base;
    {
      OdSmartPtr<Tracked> first = OdRxObjectImpl<Tracked>::createObject();
      EXPECT_EQ(first->numRefs(), 1);
      base = first;
      EXPECT_EQ(first->numRefs(), 2);
      OdSmartPtr<Tracked> moved = std::move(first);
      EXPECT_FALSE(first);
      EXPECT_EQ(moved->numRefs(), 2);
      EXPECT_EQ(OdSmartPtr<Tracked>::cast(base.get()), moved);
      EXPECT_TRUE(OdSmartPtr<Other>::cast(base.get()).isNull());
    }
    EXPECT_EQ(Tracked::alive, 1);
    base.release();
    EXPECT_TRUE(base.isNull());
    EXPECT_EQ(Tracked::alive, 0);
    base.release();  // nothing left to give up
  }
  OdSmartPtr<Tracked> self = OdRxObjectImpl<Tracked>::createObject();
  self = self.get();  // assigning an object to its own reference keeps it
  EXPECT_EQ(Tracked::alive, 1);
  self = nullptr;
  EXPECT_EQ(Tracked::alive, 0);
}

struct PaletteCase {
  int index;
  uint8_t r, g, b;
};

TEST(GsPalettes, StandardColoursAndTheBackgroundDependentEntries) {
  const PaletteCase common[] = {{1, 255, 0, 0},    {5, 0, 0, 255},      {8, 128, 128, 128}, {10, 255, 0, 0},
                                {11, 255, 127, 127}, {22, 204, 51, 0},  {23, 204, 127, 102}, {26, 127, 31, 0},
                                {41, 255, 223, 127}, {44, 153, 114, 0}, {130, 0, 255, 255}, {249, 76, 38, 47},
                                {250, 51, 51, 51},   {255, 255, 255, 255}};
  for (const ODCOLORREF* palette : {odcmAcadLightPalette(), odcmAcadDarkPalette()}) {
    for (const PaletteCase& c : common) {
      SCOPED_TRACE(c.index);
      EXPECT_EQ(palette[c.index], ODRGB(c.r, c.g, c.b));
    }
  }
  EXPECT_EQ(odcmAcadLightPalette()[0], ODRGB(255, 255, 255));
  EXPECT_EQ(odcmAcadLightPalette()[7], ODRGB(0, 0, 0));
  EXPECT_EQ(odcmAcadDarkPalette()[0], ODRGB(0, 0, 0));
  EXPECT_EQ(odcmAcadDarkPalette()[7], ODRGB(255, 255, 255));
  ODCOLORREF packed = ODRGB(1, 2, 3);
  EXPECT_EQ(packed, 0x030201u);
  EXPECT_EQ(ODGETRED(packed), 1);
  EXPECT_EQ(ODGETGREEN(packed), 2);
  EXPECT_EQ(ODGETBLUE(packed), 3);
}

TEST(GsPalettes, DeviceKeepsACopyOfAtMost256Colours) {
  OdSmartPtr<OdGsBaseVectorizeDevice> device = OdRxObjectImpl<OdGsBaseVectorizeDevice>::createObject();
  int n = 0;
  EXPECT_EQ(device->getLogicalPalette(n)[7], ODRGB(0, 0, 0));  // light by default
  EXPECT_EQ(n, 256);
  std::vector<ODCOLORREF> big(300, ODRGB(9, 9, 9));
  device->setLogicalPalette(big.data(), int(big.size()));
  big[0] = 0;
  EXPECT_EQ(device->getLogicalPalette(n)[0], ODRGB(9, 9, 9));
  EXPECT_EQ(n, 256);
  device->setLogicalPalette(nullptr, 5);  // ignored
  device->setLogicalPalette(odcmAcadDarkPalette(), 256);
  EXPECT_EQ(device->getLogicalPalette(n)[7], ODRGB(255, 255, 255));
  EXPECT_TRUE(device->setBackgroundColor(0xA8A8A8));
  EXPECT_EQ(device->getBackgroundColor(), 0xA8A8A8u);
}

// A .ctb file: the signature line, three words, then the compressed text.
std::vector<uint8_t> ctbFile(const std::string& text) {
  std::string header = "PIAFILEVERSION_2.0,CTBVER1,compress\r\npmzlibcodec";
  std::vector<uint8_t> bytes(header.begin(), header.end());
  uLongf size = compressBound(uLong(text.size()));
  std::vector<uint8_t> packed(size);
  EXPECT_EQ(compress(packed.data(), &size, reinterpret_cast<const Bytef*>(text.data()), uLong(text.size())), Z_OK);
  bytes.resize(bytes.size() + 12, 0);
  bytes.insert(bytes.end(), packed.begin(), packed.begin() + long(size));
  return bytes;
}

const char* kTableText =
    "description=\"Test table\"\n"
    "aci_table_available=TRUE\n"
    "scale_factor=2.5\n"
    "apply_factor=TRUE\n"
    "plot_style{\n"
    " 0{\n  name=\"Color_1\n  color=-1006632961\n  screen=100\n  lineweight=255\n }\n"
    " 1{\n  name=\"Color_2\n  color=-1023442944\n  screen=50\n  lineweight=2\n }\n"
    " 2{\n  name=\"Color_3\n  color=-1023410171\n  lineweight=0\n }\n"
    " 3{\n  color=-1006665984\n  mode_color=-1024751852\n }\n"
    "}\n"
    "custom_lineweight_table{\n 0=0.0\n 1=0.05\n 2=0.09\n}\n";

TEST(GsPlotStyles, ColourDependentTableGivesColourScreenAndLineweightPerIndex) {
  OdGiContextForDbDatabasePtr context = OdGiContextForDbDatabase::createObject();
  std::vector<uint8_t> bytes = ctbFile(kTableText);
  std::istringstream stream(std::string(bytes.begin(), bytes.end()));
  ASSERT_TRUE(context->loadPlotStyleTable(stream));
  const PlotStyleTable& table = context->plotStyleTable();
  EXPECT_EQ(table.description(), "Test table");
  EXPECT_DOUBLE_EQ(table.scaleFactor(), 2.5);
  EXPECT_TRUE(table.applyFactor());
  EXPECT_EQ(table.text(), kTableText);

  const PlotStyle* own = table.styleForColorIndex(1);
  ASSERT_NE(own, nullptr);
  EXPECT_EQ(own->name, "Color_1");
  EXPECT_FALSE(own->overridesColor);
  EXPECT_LT(own->lineweight, 0.0);
  const PlotStyle* orange = table.styleForColorIndex(2);
  ASSERT_NE(orange, nullptr);
  EXPECT_TRUE(orange->overridesColor);
  EXPECT_EQ(orange->color, ODRGB(255, 128, 0));
  EXPECT_EQ(orange->screen, 50);
  EXPECT_DOUBLE_EQ(orange->lineweight, 0.09);
  const PlotStyle* blue = table.styleForColorIndex(3);
  ASSERT_NE(blue, nullptr);
  EXPECT_EQ(blue->color, ODRGB(0, 0, 255));
  EXPECT_LT(blue->lineweight, 0.0);  // entry 0 of the lineweights: the object's own
  const PlotStyle* mode = table.styleForColorIndex(4);
  ASSERT_NE(mode, nullptr);
  EXPECT_EQ(mode->color, ODRGB(0xEB, 0x87, 0x14));  // the colour proper is the mode colour
  EXPECT_EQ(table.styleForColorIndex(5), nullptr);
  EXPECT_EQ(table.styleForColorIndex(0), nullptr);
}

TEST(GsPlotStyles, CorpusTableLoads) {
  std::ifstream file(std::string(DM_CORPUS_DIR) + "/plotstyles/ctbtest.ctb", std::ios::binary);
  if (!file) GTEST_SKIP() << "no corpus plot style table";
  PlotStyleTable table;
  ASSERT_TRUE(table.load(file));
  EXPECT_EQ(table.description(), "Comment");
  EXPECT_DOUBLE_EQ(table.scaleFactor(), 2.0);
  const PlotStyle* first = table.styleForColorIndex(1);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->screen, 95);
  EXPECT_DOUBLE_EQ(first->lineweight, 0.8);
  EXPECT_EQ(first->color, ODRGB(0xEB, 0x87, 0x14));
  const PlotStyle* last = table.styleForColorIndex(255);
  ASSERT_NE(last, nullptr);
  EXPECT_FALSE(last->overridesColor);
  EXPECT_LT(last->lineweight, 0.0);
  // A named plot style table is not a colour-dependent one.
  std::ifstream named(std::string(DM_CORPUS_DIR) + "/plotstyles/stbtest.stb", std::ios::binary);
  EXPECT_FALSE(table.load(named));
}

TEST(GsPlotStyles, DataThatIsNotATableIsRefused) {
  PlotStyleTable table;
  std::vector<uint8_t> good = ctbFile(kTableText);
  std::vector<uint8_t> truncated(good.begin(), good.begin() + long(good.size() / 2));
  std::vector<uint8_t> noSignature = good;
  noSignature[0] = 'X';
  std::vector<uint8_t> garbage = good;
  std::memset(garbage.data() + 60, 0x55, garbage.size() - 60);
  for (const auto& bytes : {std::vector<uint8_t>(), truncated, noSignature, garbage}) {
    EXPECT_FALSE(table.load(bytes));
    EXPECT_FALSE(table.isLoaded());
  }
  EXPECT_FALSE(table.loadText("nothing to see"));
  EXPECT_TRUE(table.load(good));
}

}  // namespace

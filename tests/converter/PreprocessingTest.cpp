// Drawing preprocessing, the watermark and the layer switches, on the sample drawing.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "converter/CDm2017.h"
#include "converter/WatermarkColor.h"
#include "tests/converter/ConverterTestSupport.h"

namespace {

using namespace converter_test;

class LoadedSample : public ::testing::Test {
protected:
  void Load() {
    converter.SetOutputFile(Wide(scratch.file("plan.svg")));
    CapturedOutput quiet;
    ASSERT_EQ(converter.ReadInputFile(Wide(kSampleDxf)), 0);
    ASSERT_NE(g_pDb, nullptr);
  }

  std::vector<std::string> DoorNumbers() const {
    std::vector<std::string> texts;
    for (Entity* entity : g_pDb->modelSpace()->entities) {
      auto* reference = dbCast<BlockReferenceEntity>(entity);
      if (!reference || reference->block->name != "DOOR") continue;
      for (AttributeEntity* attribute : reference->attributes) texts.push_back(attribute->text);
    }
    return texts;
  }

  // Entities added to model space after `before`.
  std::vector<TextEntity*> TextsAfter(size_t before) const {
    std::vector<TextEntity*> texts;
    const auto& entities = g_pDb->modelSpace()->entities;
    for (size_t i = before; i < entities.size(); ++i) {
      if (auto* text = dbCast<TextEntity>(entities[i])) texts.push_back(text);
    }
    return texts;
  }

  Scratch scratch;
  CDm2017 converter;
};

TEST_F(LoadedSample, WorkspaceRecordsFillAttributesOfBlocksNamedInAnyCase) {
  converter.SetWorkspaceBlocks({{"door", "", {{"DOORNO", "X1"}, {"OTHER", "unused"}}},
                                {"Door", "A0", {{"doorno", "X2"}}}});
  Load();
  CapturedOutput out;
  converter.PreprocessFile();
  // The record naming handle A0 applies only to that reference, and wins there.
  EXPECT_EQ(DoorNumbers(), (std::vector<std::string>{"X1", "X1", "X2", "X1", "X1", "X1", "X1"}));
  EXPECT_TRUE(out.has("BlockName: DOOR\nAttribute Map Size: 2\n    Test DOORNO against DOORNO\n")) << out.text();
  EXPECT_TRUE(out.has("    Test DOORNO against OTHER\n"));
}

TEST_F(LoadedSample, ExternalReferenceIsRepointedToTheFileFoundInTheReferenceDirectory) {
  const std::string references = scratch.file("refs");
  fs::create_directories(references);
  const std::string found = scratch.write("refs/site.dwg", "not read");
  converter.SetXrefPath(Wide(references));
  Load();
  auto* block = g_pDb->newObject<OdDbBlockTableRecord>();
  block->name = "SITE";
  block->blockFlags = OdDbBlockTableRecord::kExternal;
  block->xrefPath = "C:\\projects\\old\\site.dwg";
  g_pDb->blocks().add(block);
  auto* missing = g_pDb->newObject<OdDbBlockTableRecord>();
  missing->name = "GONE";
  missing->blockFlags = OdDbBlockTableRecord::kOverlay;
  missing->xrefPath = "gone.dwg";
  g_pDb->blocks().add(missing);
  CapturedOutput quiet;
  converter.PreprocessFile();
  EXPECT_EQ(block->xrefPath, found);
  EXPECT_EQ(missing->xrefPath, "gone.dwg");
}

struct WatermarkCase {
  const char* title;
  std::string x, y, anchor, layer, view;
  bool created;
  std::string content;
  double px, py;
};

class Watermarks : public LoadedSample, public ::testing::WithParamInterface<WatermarkCase> {};

TEST_P(Watermarks, ArePlacedWhereTheSettingsSay) {
  const WatermarkCase& c = GetParam();
  Load();
  converter.SetWatermarkContent(OdString(L"DRAFT"));
  converter.SetWatermarkHeight(250);
  converter.SetWatermarkX(c.x);
  converter.SetWatermarkY(c.y);
  converter.SetWatermarkAnchor(c.anchor);
  converter.SetWatermarkLayer(c.layer);
  converter.SetWatermarkColor(3);
  const size_t before = g_pDb->modelSpace()->entities.size();
  EXPECT_EQ(converter.ProcessWatermark(toOdString(c.view), g_pDb.get()), 0);
  const std::vector<TextEntity*> texts = TextsAfter(before);
  ASSERT_EQ(texts.size(), c.created ? 1u : 0u);
  if (!c.created) return;
  EXPECT_EQ(texts[0]->text, c.content);
  EXPECT_EQ(texts[0]->position.x, c.px);
  EXPECT_EQ(texts[0]->position.y, c.py);
  EXPECT_EQ(texts[0]->height, 250.0);
  EXPECT_EQ(texts[0]->color.colorIndex(), 3);
}

INSTANTIATE_TEST_SUITE_P(
    Placement, Watermarks,
    ::testing::Values(
        WatermarkCase{"AtCoordinates", "100", "200", "", "", "ModelSpace", true, "DRAFT", 100, 200},
        WatermarkCase{"PercentMarksTheContent", "50%", "10", "", "", "ModelSpace", true, "%% USE PERCENT %%DRAFT", 50, 10},
        WatermarkCase{"OnlyModelSpaceWithoutLayer", "1", "2", "", "", "Layout1", false, "", 0, 0},
        WatermarkCase{"TheViewNamedByTheLayer", "1", "2", "", "layout1", "Layout1", true, "DRAFT", 1, 2},
        WatermarkCase{"AnchorOnAnUnknownHandle", "1", "2", "FFFFFF", "", "ModelSpace", false, "", 0, 0}),
    [](const ::testing::TestParamInfo<WatermarkCase>& info) { return std::string(info.param.title); });

TEST_F(LoadedSample, WatermarkAnchoredOnALineTakesItsLowerLeftCorner) {
  Load();
  LineEntity* line = nullptr;
  for (Entity* entity : g_pDb->modelSpace()->entities) {
    if ((line = dbCast<LineEntity>(entity)) != nullptr) break;
  }
  ASSERT_NE(line, nullptr);
  converter.SetWatermarkContent(OdString(L"DRAFT"));
  converter.SetWatermarkAnchor(line->handle.toHex());
  const size_t before = g_pDb->modelSpace()->entities.size();
  converter.ProcessWatermark(OdString(L"ModelSpace"), g_pDb.get());
  const std::vector<TextEntity*> texts = TextsAfter(before);
  ASSERT_EQ(texts.size(), 1u);
  EXPECT_EQ(texts[0]->position.x, std::min(line->start.x, line->end.x));
  EXPECT_EQ(texts[0]->position.y, std::min(line->start.y, line->end.y));
  EXPECT_EQ(texts[0]->color.colorIndex(), 7);
}

// 0x00BBGGRR entries: white, red, yellow, black, and red again.
const uint32_t kPalette[] = {0xFFFFFF, 0x0000FF, 0x00FFFF, 0x000000, 0x0000FF};

TEST(WatermarkColor, NearestEntryWithTheLowerIndexOnATie) {
  EXPECT_EQ(NearestPaletteIndex(kPalette, 5, 255, 0, 0), 1);
  EXPECT_EQ(NearestPaletteIndex(kPalette, 5, 240, 10, 10), 1);
  EXPECT_EQ(NearestPaletteIndex(kPalette, 5, 255, 200, 0), 2);
  EXPECT_EQ(NearestPaletteIndex(kPalette, 5, 20, 20, 20), 3);
  EXPECT_EQ(NearestPaletteIndex(nullptr, 0, 20, 20, 20), 0);
}

TEST(WatermarkColor, IndexOrRgbWithItsFallbacks) {
  CapturedOutput out;
  EXPECT_EQ(WatermarkColorIndex(5, "", kPalette, 5), 5);
  EXPECT_EQ(WatermarkColorIndex(0, "", kPalette, 5), 7);
  EXPECT_EQ(WatermarkColorIndex(256, "", kPalette, 5), 7);
  EXPECT_EQ(WatermarkColorIndex(5, "255,0,0", kPalette, 5), 1);
  EXPECT_EQ(WatermarkColorIndex(5, "300,0,0", kPalette, 5), 7);
  EXPECT_TRUE(out.has("Error in wm_rgb: 300,0,0\n"));
  EXPECT_EQ(WatermarkColorIndex(5, "1,2", kPalette, 5), 7);
}

TEST_F(LoadedSample, LayerSwitchesFindNamesIgnoringCase) {
  converter.SetLayersOff(OdString(L"walls;NoSuchLayer"));
  Load();
  CapturedOutput out;
  converter.SetLayersOff();
  EXPECT_TRUE(g_pDb->layers().find("WALLS")->isOff());
  converter.SwitchAllLayersOn();
  for (LayerRecord* layer : g_pDb->layers()) EXPECT_FALSE(layer->isOff()) << layer->name;
  converter.SetAllLayersOff();
  for (LayerRecord* layer : g_pDb->layers()) EXPECT_TRUE(layer->isOff()) << layer->name;
}

}  // namespace

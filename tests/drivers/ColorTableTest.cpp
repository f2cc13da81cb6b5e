// Colour names, the built-in palette, the SetColor rules and the lookup of true colours.
#include <gtest/gtest.h>

#include "tests/drivers/DriverTestSupport.h"

using drvtest::DriverTest;
using drvtest::TrueColorDriver;

namespace {

class ColorTableTest : public DriverTest {};

TEST_F(ColorTableTest, DefaultTableNamesEightColoursAndWritesOthersAsRgb) {
  struct Case {
    int index;
    const char* name;
  } cases[] = {{0, "black"},   {1, "white"},  {2, "red"},  {3, "green"},
               {4, "yellow"},  {5, "blue"},   {6, "magenta"}, {7, "cyan"},
               {8, "rgb(192,192,192)"}, {10, "rgb(128,0,128)"}, {15, "rgb(0,128,128)"},
               {16, "black"},  {-1, "black"}, {100000, "black"}};
  TRANS_BASE2 driver;
  EXPECT_EQ(driver.GetColorCount(), 16);
  for (const auto& c : cases) EXPECT_STREQ(driver.ColorName(c.index), c.name) << c.index;
}

TEST_F(ColorTableTest, BuiltInPaletteHasCubeGreyRampAndTail) {
  TRANS_BASE2 driver;
  driver.SetPalette(1000);
  ASSERT_TRUE(driver.IsPaletteLoaded());
  ASSERT_EQ(driver.GetColorCount(), 256);
  EXPECT_EQ(driver.GetPaletteWhiteIndex(), 225);
  EXPECT_EQ(driver.GetPaletteBlackIndex(), 0);
  EXPECT_EQ(driver.GetColorIndex(), 0);
  struct Case {
    int index;
    const char* name;
  } cases[] = {{9, "rgb(166,202,240)"}, {10 + 36 * 1 + 6 * 2 + 3, "rgb(51,102,153)"}, {225, "white"},
               {226, "black"}, {236, "rgb(134,134,134)"}, {245, "white"}, {246, "rgb(255,251,240)"},
               {249, "red"}, {255, "white"}};
  for (const auto& c : cases) EXPECT_STREQ(driver.ColorName(c.index), c.name) << c.index;
}

TEST_F(ColorTableTest, OtherPaletteValuesKeepTheDefaultTable) {
  TRANS_BASE2 driver;
  driver.SetPalette(999);
  EXPECT_FALSE(driver.IsPaletteLoaded());
  EXPECT_EQ(driver.GetColorCount(), 16);
}

// White is drawn black on the white page.
TEST_F(ColorTableTest, PaletteWhiteSelectsPaletteBlack) {
  TRANS_BASE2 driver;
  driver.SetPalette(1000);
  driver.SetColor(40);
  driver.SetColor(225);
  EXPECT_EQ(driver.GetColorIndex(), 0);
  EXPECT_EQ(driver.GetPreviousColorIndex(), 0);
}

TEST_F(ColorTableTest, IndicesAboveSevenEnterUsedColours) {
  TRANS_BASE2 driver;
  for (int index : {3, 30, 8, 30, 7}) driver.SetColor(index);
  EXPECT_EQ(driver.GetUsedColors().count(3), 0u);
  EXPECT_EQ(driver.GetUsedColors().count(7), 0u);
  EXPECT_EQ(driver.GetUsedColors().at(30), 2);
  EXPECT_EQ(driver.GetUsedColors().at(8), 1);
  EXPECT_EQ(driver.GetColorIndex(), 7);
}

TEST_F(ColorTableTest, Indices250To255BecomeGreysFromTheChosenRow) {
  const int rowOff[6] = {0, 45, 91, 137, 183, 179};
  const int rowOn[6] = {51, 91, 132, 173, 214, 255};
  for (bool greyRow : {false, true}) {
    for (int index = 250; index <= 255; ++index) {
      TRANS_BASE2 driver;
      driver.SetGreyRow(greyRow);
      driver.SetColor(index);
      int grey = (greyRow ? rowOn : rowOff)[index - 250];
      const DrvRgb& chosen = driver.GetColorTable().at(static_cast<std::size_t>(driver.GetColorIndex()));
      EXPECT_EQ(chosen, (DrvRgb{static_cast<std::uint16_t>(grey), static_cast<std::uint16_t>(grey),
                                static_cast<std::uint16_t>(grey)}))
          << index << (greyRow ? " row on" : " row off");
    }
  }
}

TEST_F(ColorTableTest, GreyAlreadyInTableIsReusedNotAppended) {
  TRANS_BASE2 driver;
  driver.SetColor(251);  // (45,45,45) appended at 16
  int first = driver.GetColorIndex();
  driver.SetColor(251);
  EXPECT_EQ(driver.GetColorIndex(), first);
  driver.SetColor(255);  // 179 grey, another entry
  EXPECT_EQ(driver.GetColorCount(), 18);
  driver.SetGreyRow(true);
  driver.SetColor(255);  // white is entry 1
  EXPECT_EQ(driver.GetColorIndex(), 1);
}

TEST_F(ColorTableTest, PendingColourSevenTurnsBlackEntryToWhiteOnce) {
  struct Case {
    DrvRgb entry7;
    const char* firstName;
  } cases[] = {{{0, 0, 0}, "white"}, {{255, 255, 255}, "black"}, {{0, 255, 255}, "cyan"}};
  for (const auto& c : cases) {
    TRANS_BASE2 driver;
    driver.DefineColor(7, c.entry7.red, c.entry7.green, c.entry7.blue);
    driver.SetFirstColor7Pending(true);
    driver.SetColor(7);
    EXPECT_STREQ(driver.ColorName(driver.GetColorIndex()), c.firstName);
    driver.SetColor(7);
    EXPECT_EQ(driver.GetColorIndex(), 7);
  }
}

TEST_F(ColorTableTest, DefineColorSetsEntriesUpTo255Only) {
  TRANS_BASE2 driver;
  driver.DefineColor(2, 1, 2, 3);
  driver.DefineColor(255, 300, -5, 10);
  driver.DefineColor(256, 9, 9, 9);
  driver.DefineColor(-1, 9, 9, 9);
  EXPECT_STREQ(driver.ColorName(2), "rgb(1,2,3)");
  EXPECT_EQ(driver.GetColorCount(), 256);
  EXPECT_STREQ(driver.ColorName(255), "rgb(255,0,10)");
}

TEST_F(ColorTableTest, RgbLookupWithoutTrueColoursTakesNearestEntry) {
  struct Case {
    int red, green, blue;
    int index;
  } cases[] = {
      {255, 0, 0, 2},      // exact
      {250, 10, 10, 2},    // nearest red
      {0, 0, 0, 0},        // the search from 1 misses black, the nearest pass starts at 0
      {130, 126, 128, 9},  // nearest grey
      {0, 0, 120, 14},     // navy
      {999, -4, 0, 2},     // components clamp
  };
  for (const auto& c : cases) {
    TRANS_BASE2 driver;
    EXPECT_EQ(driver.SetColorRGB(c.red, c.green, c.blue), c.index) << c.red << "," << c.green << "," << c.blue;
    EXPECT_EQ(driver.GetColorIndex(), c.index);
    EXPECT_EQ(driver.GetColorCount(), 16);
  }
}

TEST_F(ColorTableTest, RgbLookupWithTrueColoursAppendsOnceAndReuses) {
  TrueColorDriver driver;
  int added = driver.SetColorRGB(12, 34, 56);
  EXPECT_EQ(added, 16);
  EXPECT_EQ(driver.GetColorCount(), 17);
  EXPECT_STREQ(driver.ColorName(added), "rgb(12,34,56)");
  EXPECT_EQ(driver.SetColorRGB(12, 34, 56), added);
  EXPECT_EQ(driver.GetColorCount(), 17);
  EXPECT_EQ(driver.GetUsedColors().count(added), 1u);
  EXPECT_EQ(driver.SetColorRGB(0, 0, 255), 5);
}

TEST_F(ColorTableTest, EmptyTableGivesNoIndex) {
  TRANS_BASE2 driver;
  driver.LoadPalette({});
  EXPECT_EQ(driver.SetColorRGB(1, 2, 3), -1);
  EXPECT_STREQ(driver.ColorName(0), "black");
}

// A true colour is never found at an index that draws as another colour: the light palette's white
// at 255 (a grey of the grey row) and black at a pending colour 7 (turned white once).
TEST_F(ColorTableTest, TrueColoursAreNotFoundWhereAnIndexDrawsAnotherColour) {
  TrueColorDriver driver;
  for (int i = 0; i < 256; ++i) driver.DefineColor(i, 0, 0, i == 7 ? 0 : 100);
  driver.DefineColor(255, 255, 255, 255);
  driver.SetColor(1);  // colour 7 no longer pending: the grey rows apply
  int white = driver.SetColorRGB(255, 255, 255);
  EXPECT_NE(white, 255);
  EXPECT_STREQ(driver.ColorName(driver.GetColorIndex()), "white");

  TrueColorDriver fresh;
  fresh.DefineColor(7, 0, 0, 0);
  fresh.SetFirstColor7Pending(true);
  fresh.SetColorRGB(0, 0, 0);
  EXPECT_STREQ(fresh.ColorName(fresh.GetColorIndex()), "black");
}

}  // namespace

// Font map and unmapped-font files beside the program, and system font lookup through fontconfig.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/drivers/DriverTestSupport.h"

using drvtest::DriverTest;
using drvtest::ReadText;
using drvtest::WriteText;

namespace {

class FontMapTest : public DriverTest {};

TEST_F(FontMapTest, MapAndStrokeSectionsAreReadFromTheProgramDirectory) {
  WriteText(scratch_.file("dm_font_map.txt"),
            "  Romans ==> Arial  \n"
            "Simplex==>Helvetica\r\n"
            "Romans ==> Times\n"
            "a line without an arrow\n"
            "\n"
            "  [STROKE] fonts drawn as lines\n"
            "TXT\n"
            "  MonoTxt  \n"
            "Gothic ==> Arial\n"
            "[Map]\n"
            "Isocp ==> DejaVu Sans\n");
  TRANS_BASE2 driver;
  EXPECT_EQ(driver.GetFontMap(), (std::map<std::string, std::string>{
                                     {"Romans", "Arial"}, {"Simplex", "Helvetica"}, {"Isocp", "DejaVu Sans"}}));
  EXPECT_EQ(driver.GetStrokeFonts(), (std::set<std::string>{"txt", "monotxt", "gothic ==> arial"}));
  EXPECT_TRUE(driver.IsStrokeFont("txt"));
  EXPECT_FALSE(driver.IsStrokeFont("TXT"));
  EXPECT_FALSE(driver.IsStrokeFont("romans"));
  EXPECT_EQ(driver.MapFontName("Romans"), "Arial");
  EXPECT_EQ(driver.MapFontName("romans"), "");
}

TEST_F(FontMapTest, MissingFilesLeaveEverythingEmptyAndWriteNothing) {
  {
    TRANS_BASE2 driver;
    EXPECT_TRUE(driver.GetFontMap().empty());
    EXPECT_TRUE(driver.GetStrokeFonts().empty());
    EXPECT_TRUE(driver.GetUnmappedFonts().empty());
  }
  EXPECT_FALSE(std::filesystem::exists(scratch_.file("dm_unmapped_fonts.txt")));
}

TEST_F(FontMapTest, UnmappedFontsAreMergedAndWrittenBackInOrder) {
  WriteText(scratch_.file("dm_unmapped_fonts.txt"), "  Zeta  \nAlpha\n\nAlpha\n");
  {
    TRANS_BASE2 driver;
    EXPECT_EQ(driver.GetUnmappedFonts(), (std::set<std::string>{"Alpha", "Zeta"}));
    driver.AddUnmappedFont("Mid");
  }
  EXPECT_EQ(ReadText(scratch_.file("dm_unmapped_fonts.txt")), "Alpha\nMid\nZeta\n");
}

TEST_F(FontMapTest, EmptyUnmappedSetLeavesTheFileUntouched) {
  WriteText(scratch_.file("dm_unmapped_fonts.txt"), "   \n\n");
  { TRANS_BASE2 driver; }
  EXPECT_EQ(ReadText(scratch_.file("dm_unmapped_fonts.txt")), "   \n\n");
}

// A line buffer of 256 bytes reads a longer line as several lines.
TEST_F(FontMapTest, OverlongLinesArriveInPieces) {
  std::string longName(300, 'x');
  WriteText(scratch_.file("dm_unmapped_fonts.txt"), longName + "\n");
  TRANS_BASE2 driver;
  EXPECT_EQ(driver.GetUnmappedFonts(), (std::set<std::string>{std::string(255, 'x'), std::string(45, 'x')}));
}

TEST_F(FontMapTest, UnwritableProgramDirectoryIsSilent) {
  g_ProgramDirectory = "/nonexistent/dir/for/dm/";
  TRANS_BASE2 driver;
  driver.AddUnmappedFont("Anything");
}

bool dejaVuInstalled() {
  return std::filesystem::exists("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf");
}

// Full names are cut at their style words, so "DejaVu Sans Bold" answers for "DejaVu Sans".
TEST(SystemFontLookupTest, FindsFontByFamilyPartOfFullName) {
  if (!dejaVuInstalled()) GTEST_SKIP() << "fonts-dejavu-core is not installed";
  std::string file = TRANS_BASE2::LookupSystemFontFile("DejaVu Sans");
  EXPECT_NE(file.find("DejaVuSans"), std::string::npos) << file;
  EXPECT_NE(file.find(".ttf"), std::string::npos) << file;
  EXPECT_EQ(TRANS_BASE2::LookupSystemFontFile("DejaVu"), "");
  EXPECT_EQ(TRANS_BASE2::LookupSystemFontFile("Zz No Such Font"), "");
  EXPECT_EQ(TRANS_BASE2::LookupSystemFontFile(""), "");
}

TEST(SystemFontLookupTest, BestMatchAlwaysNamesSomeFileAndPrintsIt) {
  if (!dejaVuInstalled()) GTEST_SKIP() << "fonts-dejavu-core is not installed";
  testing::internal::CaptureStdout();
  std::string file = TRANS_BASE2::BestMatchFontFile("DejaVu Sans:bold");
  std::string out = testing::internal::GetCapturedStdout();
  EXPECT_NE(file.find("DejaVuSans-Bold"), std::string::npos) << file;
  EXPECT_EQ(out, "Filename: " + file + "\n");
}

}  // namespace

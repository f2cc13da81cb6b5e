// Text intake: content rewriting for the viewer, drop rules, font groups and unmapped fonts.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/drivers/DriverTestSupport.h"

using drvtest::DriverTest;
using drvtest::W;

namespace {

TEST(TextContentRewriteTest, KeepsKitEscapesAndDoublesOtherBackslashes) {
  struct Case {
    const wchar_t* in;
    const wchar_t* out;
  } cases[] = {
      {L"plan%2Edwg and site%2Edxf and map%2Edgn", L"plan.dwg and site.dxf and map.dgn"},
      {L"it\\'s", L"it's"},
      {L"say \\\"hi\\\"", L"say \"hi\""},
      {L"5''", L"5\""},
      {L"f\\(x\\)", L"f(x)"},
      {L"caf\\U+00E9 \\U+20AC", L"caf\\u00E9 \\u20AC"},
      {L"C:\\dir\\file", L"C:\\\\dir\\\\file"},
      {L"\\U+00E9\\x", L"\\u00E9\\\\x"},
      {L"Brand\\M+19900", L"Brand\\u2122"},
      {L"100% & <b>", L"100% & <b>"},
      {L"", L""},
  };
  for (const auto& c : cases) EXPECT_EQ(RewriteTextContent(OdString(c.in)).str(), std::wstring(c.out)) << OdAnsiString(OdString(c.in)).c_str();
}

class TextIntakeTest : public DriverTest {
protected:
  TextIntakeTest() {
    driver.ResetFile();
    driver.DefineView(W("ModelSpace"), kViewModelSpace);
    driver.SetLayer(W("TEXT"), 7);
  }
  int text(const wchar_t* content, double height = 2.5, const char* font = "Arial") {
    TextRecord record;
    record.fontName = font;
    record.text = OdString(content);
    record.height = height;
    record.position = {10, 20};
    return driver.DrawText(record);
  }
  DrvColorGroup& group(int color) { return *driver.GetCurrentView()->layers.at(W("TEXT")).findColorGroup(color); }
  TRANS_BASE2 driver;
};

TEST_F(TextIntakeTest, DropRules) {
  driver.SetTolerance(0.5);
  struct Case {
    const wchar_t* content;
    double height;
    int stored;
    const char* what;
  } cases[] = {
      {L"low", 0.4, 0, "lower than the tolerance"},
      {L"tall enough", 0.6, 1, "above the tolerance"},
      {L"see xref plan.dwg", 2.5, 0, "names a referenced drawing"},
      {L".dwg is an xref", 2.5, 1, "extension at the very start does not count"},
      {L"xref plan.DWG", 2.5, 1, "case matters"},
      {L"", 2.5, 0, "empty"},
      {L"\u00e9\u4e2d\U0001F600", 2.5, 1, "non-ASCII only, escaped form not empty"},
      {L"a\x01\x7f<&>\"'", 2.5, 1, "control characters and markup are kept for the writer to escape"},
  };
  for (const auto& c : cases) EXPECT_EQ(text(c.content, c.height), c.stored) << c.what;
  driver.SetUnitScale(0.1);
  EXPECT_EQ(text(L"scaled below", 4.0), 0);
  EXPECT_EQ(text(L"scaled above", 6.0), 1);
}

TEST_F(TextIntakeTest, NonFinitePositionIsDropped) {
  TextRecord record;
  record.text = OdString(L"x");
  record.height = 1;
  record.position = {std::numeric_limits<double>::quiet_NaN(), 0};
  EXPECT_EQ(driver.DrawText(record), 0);
}

TEST_F(TextIntakeTest, FontGroupsByNameAndHeightWithinColour) {
  driver.SetDefaultFontName("Liberation Sans");
  text(L"a", 2.5, "Arial");
  text(L"b", 2.5, "txt");
  text(L"c", 2.5, "Arial");
  text(L"d", 3.5, "Arial");
  text(L"e", 2.5, "TXT");
  driver.SetColor(1);
  text(L"f", 2.5, "Arial");
  const auto& fonts = group(7).fontGroups;
  ASSERT_EQ(fonts.size(), 3u);
  EXPECT_EQ(fonts[0].fontName, "Arial");
  EXPECT_EQ(fonts[0].texts.size(), 2u);
  EXPECT_EQ(fonts[1].fontName, "Liberation Sans");
  EXPECT_EQ(fonts[1].texts.size(), 2u);
  EXPECT_EQ(fonts[2].height, 3.5);
  ASSERT_EQ(group(1).fontGroups.size(), 1u);
  EXPECT_EQ(group(1).fontGroups[0].texts[0].text, W("f"));
}

TEST_F(TextIntakeTest, StoredTextCarriesScaledPositionAndEntityState) {
  driver.SetUnitScale(2.0);
  driver.SetCurrentHandle("3B");
  driver.SetColor(4);
  TextRecord record;
  record.text = OdString(L"R\\U+00E4um 101");
  record.height = 1.25;
  record.position = {1.5, -2};
  record.rotation = 90;
  record.widthFactor = 1.0;
  record.bold = true;
  record.decoration = 2;
  record.attributeTag = "1FL";
  record.invisible = true;
  ASSERT_EQ(driver.DrawText(record), 1);
  const DrvFontGroup& font = group(4).fontGroups.at(0);
  EXPECT_EQ(font.height, 2.5);
  const DrvText& t = font.texts.at(0);
  EXPECT_EQ(t.text, W("R\\u00E4um 101"));
  EXPECT_EQ(t.position, (OdGePoint2d{3, -4}));
  EXPECT_EQ(t.layerName, W("TEXT"));
  EXPECT_EQ(t.colorIndex, 4);
  EXPECT_EQ(t.handle, "3B");
  EXPECT_EQ(t.rotation, 90);
  EXPECT_EQ(t.widthFactor, 1.0);
  EXPECT_TRUE(t.bold);
  EXPECT_EQ(t.decoration, 2);
  EXPECT_EQ(t.attributeTag, "1FL");
  EXPECT_TRUE(t.invisible);
  EXPECT_EQ(driver.GetPageExtents().minY, -4);
}

TEST_F(TextIntakeTest, FontsNeitherMappedNorOnTheSystemAreReportedAsUnmapped) {
  drvtest::WriteText(scratch_.file("dm_font_map.txt"), "RomanS ==> Arial\n");
  {
    TRANS_BASE2 withMap;
    withMap.ResetFile();
    withMap.DefineView(W("V"), kViewModelSpace);
    TextRecord record;
    record.text = OdString(L"x");
    record.height = 1;
    for (const char* font : {"RomanS", "Zz No Such Font 1", "Zz No Such Font 2", "Zz No Such Font 1", ""}) {
      record.fontName = font;
      withMap.DrawText(record);
    }
    EXPECT_EQ(withMap.GetUnmappedFonts(), (std::set<std::string>{"Zz No Such Font 1", "Zz No Such Font 2"}));
  }
  EXPECT_EQ(drvtest::ReadText(scratch_.file("dm_unmapped_fonts.txt")), "Zz No Such Font 1\nZz No Such Font 2\n");
}

}  // namespace

namespace {

// The font map decides the font a text is written in: by its font name, else by its font file.
TEST_F(TextIntakeTest, FontMapChoosesTheWrittenFont) {
  drvtest::WriteText(scratch_.file("dm_font_map.txt"),
                     "RomanS ==> Times New Roman\ntxt ==> Courier\nisocp.shx ==> DejaVu Sans\nZz ==> Zapf\n");
  TRANS_BASE2 mapped;
  mapped.ResetFile();
  mapped.DefineView(W("V"), kViewModelSpace);
  mapped.SetLayer(W("TEXT"), 7);
  struct Case {
    const char* fontName;
    const char* fontFile;
    const char* written;
  };
  const Case cases[] = {
      {"RomanS", "", "Times New Roman"},
      {"romans", "", "Times New Roman"},
      {"Arial", "C:\\Fonts\\TXT.SHX", "Courier"},
      {"Arial", "isocp.shx", "DejaVu Sans"},
      {"Arial", "other.shx", "Arial"},
      {"Zz", "txt.shx", "Courier"},
  };
  double height = 1.0;
  for (const Case& c : cases) {
    TextRecord record;
    record.fontName = c.fontName;
    record.fontFile = c.fontFile;
    record.text = OdString(L"x");
    record.height = height++;  // a group of its own each
    ASSERT_EQ(mapped.DrawText(record), 1);
    const auto& fonts = mapped.GetCurrentView()->layers.at(W("TEXT")).findColorGroup(7)->fontGroups;
    EXPECT_EQ(fonts.back().fontName, c.written) << c.fontName << " " << c.fontFile;
  }
  EXPECT_EQ(mapped.GetUnmappedFonts().count("RomanS"), 0u);
}

}  // namespace

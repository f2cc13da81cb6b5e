// Texts: control codes, the choice between stroking and native text, room-label capture.
#include <memory>

#include "RecordingDriver.h"
#include "kit/gi/OdGiTextStyle.h"
#include "vectorizer/OdGiConveyorGeometryDumper.h"
#include "vectorizer/OdGiDumperImpl.h"
#include "vectorizer/VectorizerText.h"

namespace vectest {
namespace {

struct CleanCase {
  const wchar_t* input;
  const wchar_t* output;
  bool underline;
};

TEST(CleanTextCodes, ReplacesTheDrawingsControlCodes) {
  const CleanCase cases[] = {
      {L"%%c25", L"\u00D825", false},
      {L"%%C25", L"\u00D825", false},
      {L"10%%p0.1%%d", L"10\u00B10.1\u00B0", false},
      {L"a%%%b", L"a%%%%b", false},
      {L"%%Utitle%%u", L"title", true},
      {L"%%otitle", L"title", false},
      {L"%%065BC", L"ABC", false},
      {L"x%%06", L"x%%06", false},
      {L"%%000x", L"%%000x", false},
      {L",12;Room", L"Room", false},
      {L",1;,22;Room", L"Room", false},
      {L",A;Room", L",A;Room", false},
      {L"\\(1\\)", L"(1)", false},
      {L"|a|e", L"|>|>", false},
  };
  for (const CleanCase& c : cases) {
    SCOPED_TRACE(std::string(OdAnsiString(OdString(c.input)).c_str()));
    OdString text(c.input);
    bool underline = false;
    CleanTextCodes(text, underline);
    EXPECT_EQ(text, OdString(c.output));
    EXPECT_EQ(underline, c.underline);
  }
}

TEST(CleanTextCodes, DiameterEscapeBecomesTheSignWidenedByte) {
  OdString text(L"\\U+220550");
  bool underline = false;
  CleanTextCodes(text, underline);
  ASSERT_EQ(text.getLength(), 3);
  EXPECT_EQ(static_cast<uint32_t>(text[0]), 0xFFFFFFD8u);
}

class TextEntryTest : public VectorizerTest {
protected:
  void Draw(const wchar_t* text, const OdGiTextStyle& style, OdGeVector3d direction = {2.5, 0, 0},
            OdGeVector3d up = {0, 2.5, 0}) {
    OdString s(text);
    sink.textProc(OdGePoint3d(10, 20, 0), direction, up, s.c_str(), s.getLength(), false, &style);
  }
  static OdGiTextStyle Shx(const wchar_t* file) {
    OdGiTextStyle style;
    style.setFileName(OdString(file));
    return style;
  }
  static OdGiTextStyle TrueType(const wchar_t* face) {
    OdGiTextStyle style;
    style.setTypeface(OdString(face));
    style.setFileName(OdString(L"arial.ttf"));
    return style;
  }
  OdGiConveyorGeometryDumper sink{std::make_shared<OdGiDumperImpl>()};
};

struct StrokeCase {
  const char* name;
  int format;
  const wchar_t* text;
  OdGiTextStyle style;
  bool stroked;
};

TEST_F(TextEntryTest, StrokedOrWrittenAsText) {
  const StrokeCase cases[] = {
      {"romans.shx is always stroked", 1016, L"Hall", Shx(L"romans.shx"), true},
      {"an unnamed shx font is text", 1016, L"Hall", Shx(L"txt.shx"), false},
      {"simplex.shx", 1016, L"Hall", Shx(L"SIMPLEX.SHX"), true},
      {"right-to-left font", 1016, L"Hall", Shx(L"HEBREW.shx"), true},
      {"multibyte code", 1016, L"\\M+18140", TrueType(L"Arial"), true},
      {"cyrillic escape for pdf", 1007, L"\\U+0410", TrueType(L"Arial"), true},
      {"cyrillic escape for svg", 1016, L"\\U+0410", TrueType(L"Arial"), false},
      {"shx with a character beyond a byte", 1016, L"\u0410", Shx(L"txt.shx"), true},
      {"symbol font escape", 1016, L"a|ab", Shx(L"SYMBFE.shx"), true},
  };
  for (const StrokeCase& c : cases) {
    SCOPED_TRACE(c.name);
    RecordingDriver& driver = UseDriver(c.format);
    Draw(c.text, c.style);
    EXPECT_EQ(driver.Texts().size(), c.stroked ? 0u : 1u);
    if (c.stroked) {
      EXPECT_GT(driver.Polylines().size() + driver.Lines().size(), 0u);
    }
  }
}

TEST_F(TextEntryTest, StrokeFontsOfTheDriverAndStrokeAllAreStroked) {
  RecordingDriver& driver = UseDriver();
  driver.strokeAllText = true;
  Draw(L"Hall", TrueType(L"Arial"));
  EXPECT_TRUE(driver.Texts().empty());
}

TEST_F(TextEntryTest, NativeTextKeepsPositionHeightAndRotation) {
  RecordingDriver& driver = UseDriver();
  Draw(L"%%UHall", TrueType(L"Arial"), {0, 2.5, 0}, {2.5, 0, 0});
  ASSERT_EQ(driver.Texts().size(), 1u);
  const DrvText text = driver.Texts()[0];
  EXPECT_EQ(text.position, OdGePoint2d(10, 20));
  EXPECT_EQ(text.text, OdString(L"Hall"));
  // Device y runs down: a baseline pointing down the device reads as turned 90 degrees clockwise.
  EXPECT_NEAR(text.rotation, 270.0, 1e-9);
  EXPECT_EQ(text.decoration, 1);
  const DrvFontGroup& font = driver.Groups()[0]->fontGroups[0];
  EXPECT_EQ(font.fontName, "Arial");
  EXPECT_NEAR(font.height, 2.5 * 0.85, 1e-9);
  ASSERT_EQ(g_ViewportExtents.Count(), 1u);
  // An output whose y runs up keeps the angle as measured.
  g_EntityRuleState.outputYDown = 0;
  Draw(L"Hall", TrueType(L"Arial"), {0, 2.5, 0}, {-2.5, 0, 0});
  ASSERT_EQ(driver.Texts().size(), 2u);
  EXPECT_NEAR(driver.Texts()[1].rotation, 90.0, 1e-9);
}

TEST_F(TextEntryTest, TextsWithoutTypefaceUseTheDefaultFontsSlantedOnesItalic) {
  RecordingDriver& driver = UseDriver();
  OdGiTextStyle style = Shx(L"txt.shx");
  Draw(L"upright", style);
  Draw(L"slanted", style, {2.5, 0, 0}, {1.0, 2.5, 0});
  ASSERT_EQ(driver.Groups()[0]->fontGroups.size(), 2u);
  EXPECT_EQ(driver.Groups()[0]->fontGroups[0].fontName, "Arial");
  EXPECT_EQ(driver.Groups()[0]->fontGroups[1].fontName, "Arial Italic");
}

TEST_F(TextEntryTest, CapturedRoomLabelReplacesTheText) {
  RecordingDriver& driver = UseDriver();
  g_EntityRuleState.roomLabelCapture = 1;
  g_EntityRuleState.pendingRoomLabel = "101_Office_7";
  Draw(L"101", TrueType(L"Arial"));
  EXPECT_TRUE(driver.Texts().empty());
  ASSERT_EQ(driver.RoomLabels().size(), 1u);
  EXPECT_EQ(driver.RoomLabels()[0].text, "101_Office_7");
  EXPECT_EQ(driver.RoomLabels()[0].position, OdGePoint2d(10, 20));
}

TEST_F(TextEntryTest, IsocpSpecialCharactersAreStroked) {
  RecordingDriver& driver = UseDriver();
  Draw(L"\u00A9 2020", Shx(L"es_isocp.shx"));
  EXPECT_TRUE(driver.Texts().empty());
  Draw(L"2020", Shx(L"es_isocp.shx"));
  EXPECT_EQ(driver.Texts().size(), 1u);
}

// A mirrored text keeps the angle of its up vector and runs backward: a negative width factor.
TEST_F(TextEntryTest, MirroredTextsAreWrittenWithANegativeWidth) {
  RecordingDriver& driver = UseDriver();
  g_EntityRuleState.outputYDown = 0;
  struct Case {
    OdGeVector3d direction, up;
    double rotation;
    bool negative;
  };
  const Case cases[] = {
      {{2.5, 0, 0}, {0, 2.5, 0}, 0.0, false},     // plain
      {{-2.5, 0, 0}, {0, 2.5, 0}, 0.0, true},     // backward
      {{2.5, 0, 0}, {0, -2.5, 0}, 180.0, true},   // upside down
      {{-2.5, 0, 0}, {0, -2.5, 0}, 180.0, false}, // both: half a turn
      {{0, -2.5, 0}, {-2.5, 0, 0}, 90.0, true},   // backward, turned a quarter
  };
  for (const Case& c : cases) Draw(L"Hall", TrueType(L"Arial"), c.direction, c.up);
  std::vector<DrvText> texts = driver.Texts();
  ASSERT_EQ(texts.size(), std::size(cases));
  for (size_t i = 0; i < texts.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_NEAR(texts[i].rotation, cases[i].rotation, 1e-9);
    EXPECT_EQ(texts[i].widthFactor < 0.0, cases[i].negative);
    EXPECT_NEAR(std::fabs(texts[i].widthFactor), 1.0, 1e-9);
  }
  // Device y running down turns the sense of "clockwise" round as well.
  g_EntityRuleState.outputYDown = 1;
  Draw(L"Hall", TrueType(L"Arial"), {-2.5, 0, 0}, {0, -2.5, 0});
  EXPECT_NEAR(driver.Texts().back().rotation, 0.0, 1e-9);
  EXPECT_LT(driver.Texts().back().widthFactor, 0.0);
}

// The record carries the drawing's own width factor (the writer scales from its plain 0.9 itself).
TEST_F(TextEntryTest, TheRecordCarriesTheDrawingsWidthFactor) {
  RecordingDriver& driver = UseDriver();
  g_EntityRuleState.outputYDown = 0;
  for (double factor : {1.0, 0.9, 0.75, 1.5}) Draw(L"Hall", TrueType(L"Arial"), {2.0 * factor, 0, 0}, {0, 2.0, 0});
  std::vector<DrvText> texts = driver.Texts();
  ASSERT_EQ(texts.size(), 4u);
  EXPECT_NEAR(texts[0].widthFactor, 1.0, 1e-9);
  EXPECT_NEAR(texts[1].widthFactor, 0.9, 1e-9);
  EXPECT_NEAR(texts[2].widthFactor, 0.75, 1e-9);
  EXPECT_NEAR(texts[3].widthFactor, 1.5, 1e-9);
}

TEST_F(TextEntryTest, StruckThroughTextIsWrittenWithLineThrough) {
  RecordingDriver& driver = UseDriver();
  OdGiTextStyle style = TrueType(L"Arial");
  style.setStruckThrough(true);
  Draw(L"gone", style);
  ASSERT_EQ(driver.Texts().size(), 1u);
  EXPECT_EQ(driver.Texts()[0].decoration, 2);
}

}  // namespace
}  // namespace vectest

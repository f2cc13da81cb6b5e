// TrueType fonts: texts in Liberation Sans (the system's Arial) placed in every alignment meet
// their points with the advances, kerning and cap height FreeType reads independently; the same
// face is found by an Arial file name through fontconfig; a damaged file falls back to the stroke
// font with one warning.
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_TRUETYPE_TABLES_H
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <numbers>

#include "kit/gi/OdGiGeometrySimplifier.h"
#include "kit/gi/OdGiTextStyle.h"
#include "kit/gi/StrokeFont.h"
#include "kit/gi/TrueTypeFont.h"
#include "kit/gi/regen/TextPlacement.h"
#include "kit/host/OdDbHostAppServices.h"
#include "kit/host/OdKit.h"

namespace {

std::string liberationSansFile() {
  std::string file;
  if (FILE* pipe = popen("fc-match -f '%{file}' 'Liberation Sans' 2>/dev/null", "r")) {
    char buffer[512];
    while (fgets(buffer, sizeof buffer, pipe)) file += buffer;
    pclose(pipe);
  }
  return file.find("LiberationSans") != std::string::npos ? file : std::string();
}

OdString wide(const std::string& text) { return OdString(odDecodeUtf8(text.data(), text.size())); }

// The ink of a run as FreeType measures it, in font units from the first glyph's origin.
struct FreeTypeRun {
  double inkLeft = 0.0, inkRight = 0.0, capHeight = 0.0, descender = 0.0, lastTopRight = 0.0;
};

FreeTypeRun measureWithFreeType(const std::string& path, const std::u32string& text) {
  FreeTypeRun run;
  FT_Library library = nullptr;
  FT_Face face = nullptr;
  if (FT_Init_FreeType(&library) || FT_New_Face(library, path.c_str(), 0, &face)) return run;
  auto* os2 = static_cast<TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
  run.capHeight = os2 ? os2->sCapHeight : 0.0;
  run.descender = -double(face->descender);
  double pen = 0.0;
  for (size_t i = 0; i < text.size(); ++i) {
    FT_UInt index = FT_Get_Char_Index(face, text[i]);
    FT_Load_Glyph(face, index, FT_LOAD_NO_SCALE | FT_LOAD_NO_HINTING);
    const FT_Glyph_Metrics& m = face->glyph->metrics;
    if (i == 0) run.inkLeft = double(m.horiBearingX);
    run.inkRight = pen + double(m.horiBearingX + m.width);
    pen += double(m.horiAdvance);
    if (i + 1 < text.size()) {
      FT_Vector kern{0, 0};
      FT_Get_Kerning(face, index, FT_Get_Char_Index(face, text[i + 1]), FT_KERNING_UNSCALED, &kern);
      pen += double(kern.x);
    }
  }
  FT_Done_Face(face);
  FT_Done_FreeType(library);
  return run;
}

struct StrokeSink : OdGiGeometrySimplifier {
  OdGeExtents3d extents;
  std::vector<OdGePoint3d> points;
  void polylineOut(int32_t count, const OdGePoint3d* at) override {
    for (int32_t i = 0; i < count; ++i) extents.addPoint(at[i]);
    points.insert(points.end(), at, at + count);
  }
};

class RecordingServices : public OdDbHostAppServices {
public:
  std::vector<std::string> warnings;
  void warning(const OdString& message) override { warnings.push_back(odEncodeUtf8(message.str())); }
};

class TrueTypeFontTest : public ::testing::Test {
protected:
  void SetUp() override {
    path_ = liberationSansFile();
    if (path_.empty()) GTEST_SKIP() << "Liberation Sans is not installed";
    style_.setFileName(wide(path_));
    expected_ = measureWithFreeType(path_, kText);
    ASSERT_GT(expected_.capHeight, 0.0);
  }

  // The stroked extents of the text placed by its alignment.
  OdGeExtents3d stroke(const TextData& text, gi::TextRun* placed = nullptr,
                       std::vector<OdGePoint3d>* points = nullptr) {
    OdGiTextStyle style = style_;
    gi::TextRun run = gi::placeText(text, gi::measureText(style, kText), 1.0, 1.0, gi::textDescent(style));
    style.setTextSize(run.height);
    StrokeSink sink;
    sink.textProc(run.start, run.direction, run.up, L"HAVE", 4, false, &style);
    if (placed) *placed = run;
    if (points) *points = sink.points;
    return sink.extents;
  }

  static constexpr const char32_t* kText = U"HAVE";
  std::string path_;
  OdGiTextStyle style_;
  FreeTypeRun expected_;
};

TEST_F(TrueTypeFontTest, EveryAlignmentMeetsItsPointWithFreeTypesWidthAndCapHeight) {
  const double h = 2.5;
  const double scale = h / expected_.capHeight;
  const double inkWidth = (expected_.inkRight - expected_.inkLeft) * scale;
  const double inkLeft = expected_.inkLeft * scale, inkRight = expected_.inkRight * scale;
  const double descent = expected_.descender * scale;
  const OdGePoint3d first(10, 5, 0), second(80, 20, 0);
  using T = TextData;
  struct Case {
    int16_t horizontal, vertical;
  };
  for (Case c : {Case{T::kLeft, T::kBaseline}, Case{T::kCenter, T::kBaseline}, Case{T::kRight, T::kBaseline},
                 Case{T::kMiddle, T::kBaseline}, Case{T::kLeft, T::kTop}, Case{T::kCenter, T::kTop},
                 Case{T::kRight, T::kTop}, Case{T::kLeft, T::kMiddleV}, Case{T::kCenter, T::kMiddleV},
                 Case{T::kRight, T::kMiddleV}, Case{T::kLeft, T::kBottom}, Case{T::kCenter, T::kBottom},
                 Case{T::kRight, T::kBottom}}) {
    SCOPED_TRACE(std::to_string(c.horizontal) + "/" + std::to_string(c.vertical));
    TextData text;
    text.height = h;
    text.horizontalMode = c.horizontal;
    text.verticalMode = c.vertical;
    text.position = first;
    text.alignmentPoint = second;
    text.hasAlignmentPoint = !(c.horizontal == T::kLeft && c.vertical == T::kBaseline);
    OdGeExtents3d ink = stroke(text);
    ASSERT_TRUE(ink.isValidExtents());
    const OdGePoint3d& point = text.hasAlignmentPoint ? second : first;
    double baseline = ink.minPoint.y;  // H, A, V and E all stand on it
    double origin = ink.minPoint.x - inkLeft;
    EXPECT_NEAR(ink.maxPoint.y - baseline, h, 1e-6) << "cap height";
    EXPECT_NEAR(ink.maxPoint.x - ink.minPoint.x, inkWidth, 1e-6) << "FreeType's width";
    switch (c.horizontal) {
      case T::kLeft: EXPECT_NEAR(origin, point.x, 1e-6); break;
      case T::kRight: EXPECT_NEAR(ink.maxPoint.x, point.x, 1e-6); break;
      default: EXPECT_NEAR(origin + inkRight / 2, point.x, 1e-6); break;
    }
    if (c.horizontal == T::kMiddle || c.vertical == T::kMiddleV) EXPECT_NEAR(baseline + h / 2, point.y, 1e-6);
    else if (c.vertical == T::kTop) EXPECT_NEAR(ink.maxPoint.y, point.y, 1e-6);
    else if (c.vertical == T::kBottom) EXPECT_NEAR(baseline - descent, point.y, 1e-6);
    else EXPECT_NEAR(baseline, point.y, 1e-6);
  }
}

TEST_F(TrueTypeFontTest, AlignedAndFitSpanTheirTwoPoints) {
  const OdGePoint3d first(0, 0, 0), second(50, 0, 0);
  const double inkRight = expected_.inkRight / expected_.capHeight;  // in heights
  for (int16_t mode : {TextData::kAligned, TextData::kFit}) {
    SCOPED_TRACE(mode);
    TextData text;
    text.height = 4.0;
    text.horizontalMode = mode;
    text.position = first;
    text.alignmentPoint = second;
    text.hasAlignmentPoint = true;
    gi::TextRun run;
    OdGeExtents3d ink = stroke(text, &run);
    EXPECT_NEAR(run.start.x, 0.0, 1e-9);
    EXPECT_NEAR(ink.maxPoint.x, 50.0, 1e-6);
    if (mode == TextData::kAligned) {
      // The height follows the width; the cap height is that height.
      EXPECT_NEAR(run.height, 50.0 / inkRight, 1e-6);
      EXPECT_NEAR(ink.maxPoint.y, run.height, 1e-6);
    } else {
      EXPECT_NEAR(ink.maxPoint.y, 4.0, 1e-6);
      EXPECT_NEAR(run.widthFactor, 50.0 / (inkRight * 4.0), 1e-6);
    }
  }
}

TEST_F(TrueTypeFontTest, WidthFactorAndObliqueAngleShapeTheGlyphs) {
  const double h = 2.0, factor = 0.7, angle = 15.0 * std::numbers::pi / 180.0;
  const double scale = h / expected_.capHeight;
  TextData text;
  text.height = h;
  text.widthFactor = factor;
  text.horizontalMode = TextData::kRight;
  text.alignmentPoint = {100, 0, 0};
  text.hasAlignmentPoint = true;
  OdGeExtents3d ink = stroke(text);
  EXPECT_NEAR(ink.maxPoint.x, 100.0, 1e-6);
  EXPECT_NEAR(ink.maxPoint.x - ink.minPoint.x, (expected_.inkRight - expected_.inkLeft) * scale * factor, 1e-6);

  // Slanted: H's top left corner leans right by the cap height times the slope, its foot stays.
  text.widthFactor = 1.0;
  text.horizontalMode = TextData::kLeft;
  text.hasAlignmentPoint = false;
  text.position = {0, 0, 0};
  text.oblique = angle;
  std::vector<OdGePoint3d> points;
  OdGeExtents3d slanted = stroke(text, nullptr, &points);
  double topLeft = 1e9;
  for (const OdGePoint3d& p : points) {
    if (std::fabs(p.y - h) < 1e-9) topLeft = std::min(topLeft, p.x);
  }
  EXPECT_NEAR(topLeft, expected_.inkLeft * scale + h * std::tan(angle), 1e-6);
  EXPECT_NEAR(slanted.minPoint.x, expected_.inkLeft * scale, 1e-6);
  EXPECT_NEAR(slanted.maxPoint.y, h, 1e-6);
}

TEST_F(TrueTypeFontTest, KerningAndCurvesComeFromTheFont) {
  const gi::StrokeFont* font = gi::strokeFontFor(style_);
  ASSERT_TRUE(font);
  EXPECT_EQ(font, gi::strokeFontFor(style_)) << "read once";
  // Liberation Sans pulls A and V together (the widths above count it, as FreeType does).
  EXPECT_LT(font->kerning(U'A', U'V'), -0.05);
  EXPECT_EQ(font->kerning(U'H', U'H'), 0.0);
  // O is drawn as two closed contours of flattened curves, within the deviation of its outline:
  // every point lies inside the outline's box.
  const gi::Glyph* o = font->glyph(U'O');
  ASSERT_TRUE(o);
  ASSERT_EQ(o->strokes.size(), 2u);
  std::vector<OdGePoint2d> flat;
  gi::flattenStroke(o->strokes[0], 0.001, flat);
  EXPECT_GT(flat.size(), o->strokes[0].size());
  EXPECT_NEAR(flat.front().x, flat.back().x, 1e-12);
  EXPECT_NEAR(flat.front().y, flat.back().y, 1e-12);
  double top = 0.0;
  for (const OdGePoint2d& p : flat) top = std::max(top, p.y);
  EXPECT_GT(top, 1.0) << "O overshoots the cap height";
  EXPECT_LT(top, 1.05);
}

// Chords of quadratic and cubic segments stay within the deviation of the curve: the curve at
// the middle parameter of each step lies that close to its chord's midpoint.
TEST(GlyphFlattening, BezierChordsStayWithinTheDeviation) {
  auto on = [](double x, double y) { return gi::GlyphVertex{{x, y}, 0.0, false}; };
  auto off = [](double x, double y) { return gi::GlyphVertex{{x, y}, 0.0, true}; };
  auto quadratic = [](double t) {
    double u = 1 - t;
    return OdGePoint2d(2 * u * t * 1 + t * t * 2, 2 * u * t * 2);
  };
  auto cubic = [](double t) {
    double u = 1 - t;
    return OdGePoint2d(3 * u * u * t * 0 + 3 * u * t * t * 3 + t * t * t * 3, 3 * u * u * t * 3 + 3 * u * t * t * 3);
  };
  struct Case {
    std::vector<gi::GlyphVertex> stroke;
    std::function<OdGePoint2d(double)> curve;
  };
  for (double deviation : {0.1, 0.01, 0.0005}) {
    for (const Case& c : {Case{{on(0, 0), off(1, 2), on(2, 0)}, quadratic},
                          Case{{on(0, 0), off(0, 3), off(3, 3), on(3, 0)}, cubic}}) {
      std::vector<OdGePoint2d> flat;
      gi::flattenStroke(c.stroke, deviation, flat);
      ASSERT_GE(flat.size(), 3u);
      size_t steps = flat.size() - 1;
      double worst = 0.0;
      for (size_t i = 0; i < steps; ++i) {
        OdGePoint2d mid((flat[i].x + flat[i + 1].x) / 2, (flat[i].y + flat[i + 1].y) / 2);
        OdGePoint2d onCurve = c.curve((i + 0.5) / double(steps));
        worst = std::max(worst, std::hypot(mid.x - onCurve.x, mid.y - onCurve.y));
      }
      EXPECT_LE(worst, deviation * (1 + 1e-9));
      EXPECT_GT(worst, deviation / 8) << "not needlessly fine";
    }
  }
  // Lines and arcs between on-curve points are as before.
  std::vector<OdGePoint2d> flat;
  gi::flattenStroke({on(0, 0), on(1, 0), gi::GlyphVertex{{1, 1}, 1.0, false}}, 0.01, flat);
  EXPECT_EQ(flat[1], OdGePoint2d(1, 0));
  EXPECT_GT(flat.size(), 4u);
  EXPECT_EQ(flat.back(), OdGePoint2d(1, 1));
}

TEST_F(TrueTypeFontTest, ArialFileNameFindsTheSameFaceThroughFontconfig) {
  OdGiTextStyle arial;
  arial.setFileName(OdString(L"arial.ttf"));
  OdGiTextStyle byTypeface;
  byTypeface.setTypeface(OdString(L"Arial"));
  for (const OdGiTextStyle* style : {&arial, &byTypeface}) {
    EXPECT_NEAR(gi::measureText(*style, kText), gi::measureText(style_, kText), 1e-12);
    EXPECT_NEAR(gi::textDescent(*style), gi::textDescent(style_), 1e-12);
  }
}

TEST_F(TrueTypeFontTest, DamagedFileFallsBackToTheStrokeFontWithOneWarning) {
  std::string damaged = (std::filesystem::temp_directory_path() / "dm_damaged_arial.ttf").string();
  {
    std::ifstream in(path_, std::ios::binary);
    std::string head(2000, '\0');
    in.read(head.data(), std::streamsize(head.size()));
    std::ofstream(damaged, std::ios::binary) << head;
  }
  EXPECT_FALSE(gi::TrueTypeFont::fromFile(damaged));
  RecordingServices services;
  odInitialize(&services);
  OdGiTextStyle style;
  style.setFileName(wide(damaged));
  const gi::StrokeFont* font = gi::strokeFontFor(style);
  const gi::StrokeFont* trueType = gi::strokeFontFor(style_);
  EXPECT_NE(font, trueType);
  if (font) {
    EXPECT_TRUE(font->glyph(U'A'));
  }
  // Texts still measure and draw.
  EXPECT_GT(gi::measureText(style, kText), 0.0);
  StrokeSink sink;
  sink.textProc({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, L"HAVE", 4, false, &style);
  EXPECT_EQ(gi::strokeFontFor(style), font);
  odUninitialize();
  ASSERT_EQ(services.warnings.size(), 1u);
  EXPECT_NE(services.warnings[0].find("TrueType font unreadable"), std::string::npos) << services.warnings[0];
  std::filesystem::remove(damaged);
}

}  // namespace

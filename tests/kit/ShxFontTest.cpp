// SHX fonts: the corpus fonts decode shape by shape to the strokes of their SHP sources; every
// shape command on hand-made definitions; the three file layouts; damaged files; text placement
// with a real SHX font.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <numbers>

#include "kit/gi/OdGiGeometrySimplifier.h"
#include "kit/gi/OdGiTextStyle.h"
#include "kit/gi/ShxFont.h"
#include "kit/gi/StrokeFont.h"
#include "kit/gi/regen/GiRegenContext.h"
#include "kit/gi/regen/RegenEntities.h"
#include "kit/gi/regen/TextPlacement.h"
#include "tests/kit/GiRecordingSink.h"
#include "tests/kit/ShpSourceSupport.h"

namespace {

const std::string kFonts = std::string(DM_CORPUS_DIR) + "/fonts/";

void expectSameGlyph(const gi::Glyph& a, const gi::Glyph& b, const std::string& what) {
  ASSERT_EQ(a.strokes.size(), b.strokes.size()) << what;
  EXPECT_DOUBLE_EQ(a.advance, b.advance) << what;
  for (size_t i = 0; i < a.strokes.size(); ++i) {
    ASSERT_EQ(a.strokes[i].size(), b.strokes[i].size()) << what << " stroke " << i;
    for (size_t k = 0; k < a.strokes[i].size(); ++k) {
      EXPECT_NEAR(a.strokes[i][k].point.x, b.strokes[i][k].point.x, 1e-9) << what;
      EXPECT_NEAR(a.strokes[i][k].point.y, b.strokes[i][k].point.y, 1e-9) << what;
      EXPECT_NEAR(a.strokes[i][k].bulge, b.strokes[i][k].bulge, 1e-9) << what;
    }
  }
}

TEST(ShxFont, CorpusFontsDecodeToTheStrokesOfTheirSources) {
  for (const char* name : {"iso3098", "kst32b", "azomix", "azomix_i"}) {
    SCOPED_TRACE(name);
    std::string error;
    auto font = gi::ShxFont::fromFile(kFonts + name + ".shx", &error);
    ASSERT_TRUE(font) << error;
    EXPECT_EQ(font->kind(), gi::ShxKind::kUnifont);
    ShpSource source = parseShp(readWholeFile(kFonts + name + ".shp"));
    EXPECT_EQ(source.header, "UNIFONT");
    ASSERT_GE(source.infoBytes.size(), 2u);
    EXPECT_EQ(font->above(), uint8_t(source.infoBytes[0]));
    EXPECT_EQ(font->below(), uint8_t(source.infoBytes[1]));
    std::map<uint32_t, std::string_view> definitions(source.definitions.begin(), source.definitions.end());
    ASSERT_EQ(font->shapeCount(), source.definitions.size());
    size_t strokes = 0;
    for (const auto& [number, bytes] : source.definitions) {
      const gi::Glyph* decoded = font->shape(number);
      ASSERT_TRUE(decoded) << "shape " << number;
      gi::Glyph expected;
      ASSERT_TRUE(gi::decodeShxShape(gi::ShxKind::kUnifont, bytes, definitions, font->above(), expected));
      expectSameGlyph(*decoded, expected, "shape " + std::to_string(number));
      strokes += decoded->strokes.size();
    }
    EXPECT_GT(strokes, font->shapeCount()) << "most shapes draw something";
    EXPECT_EQ(font->brokenShapes(), 0u);
  }
}

// ---- Commands --------------------------------------------------------------------------------

gi::Glyph decoded(std::string bytes, gi::ShxKind kind = gi::ShxKind::kShapes,
                  const std::map<uint32_t, std::string_view>& others = {}) {
  gi::Glyph glyph;
  EXPECT_TRUE(gi::decodeShxShape(kind, bytes, others, 10.0, glyph));
  return glyph;
}

std::string b(std::initializer_list<int> values) {
  std::string out;
  for (int v : values) out += char(uint8_t(v & 0xFF));
  return out;
}

OdGePoint2d endOf(const gi::Glyph& g) { return g.strokes.back().back().point; }

TEST(ShxFont, VectorsScalesStackAndDisplacements) {
  // East 2, north-north-east 2 (major component 2), pen up, west 4, pen down, south 1.
  gi::Glyph g = decoded(b({0x20, 0x23, 2, 0x48, 1, 0x1C, 0}));
  ASSERT_EQ(g.strokes.size(), 2u);
  EXPECT_EQ(g.strokes[0].size(), 3u);
  EXPECT_EQ(g.strokes[0][2].point, OdGePoint2d(3, 2));
  EXPECT_EQ(g.strokes[1].front().point, OdGePoint2d(-1, 2));
  EXPECT_EQ(endOf(g), OdGePoint2d(-1, 1));
  EXPECT_DOUBLE_EQ(g.advance, -1.0);
  // Multiply by 6, divide by 2, then push, move and pop: the pen ends where it was pushed.
  g = decoded(b({4, 6, 3, 2, 0x10, 5, 0x14, 6, 0}));
  EXPECT_DOUBLE_EQ(g.advance, 3.0);
  ASSERT_EQ(g.strokes.size(), 1u);
  EXPECT_EQ(endOf(g), OdGePoint2d(3, 3));
  // Pen up, push, move, pop, pen down: the next line starts where the position was pushed.
  g = decoded(b({2, 0x10, 5, 0x14, 6, 1, 0x10, 0}));
  ASSERT_EQ(g.strokes.size(), 1u);
  EXPECT_EQ(g.strokes[0].front().point, OdGePoint2d(1, 0));
  // One displacement, then a list ended by (0,0).
  g = decoded(b({8, 5, -3, 9, 1, 1, -2, 0, 0, 0, 0}));
  ASSERT_EQ(g.strokes.size(), 1u);
  EXPECT_EQ(g.strokes[0].size(), 4u);
  EXPECT_EQ(endOf(g), OdGePoint2d(4, -2));
}

TEST(ShxFont, ArcsBecomeBulges) {
  // Octant arc radius 2 from octant 0 through 4 octants counter-clockwise: a half circle up to (-4,0).
  gi::Glyph g = decoded(b({10, 2, 0x04, 0}));
  ASSERT_EQ(g.strokes.size(), 1u);
  EXPECT_NEAR(endOf(g).x, -4.0, 1e-12);
  EXPECT_NEAR(endOf(g).y, 0.0, 1e-12);
  EXPECT_NEAR(g.strokes[0].back().bulge, 1.0, 1e-12);
  // A full clockwise circle (count 0) comes back to the start in two halves.
  g = decoded(b({10, 3, 0x80 | 0x20 /* -020: clockwise from octant 2 */, 0}));
  ASSERT_EQ(g.strokes[0].size(), 3u);
  EXPECT_NEAR(g.strokes[0][1].point.x, 0.0, 1e-12);
  EXPECT_NEAR(g.strokes[0][1].point.y, -6.0, 1e-12) << "the centre lies below a start at 90 degrees";
  EXPECT_NEAR(endOf(g).x, 0.0, 1e-12);
  EXPECT_NEAR(endOf(g).y, 0.0, 1e-12);
  EXPECT_NEAR(g.strokes[0][1].bulge, -1.0, 1e-12);
  // The documentation's example -032: clockwise from octant 3 over two octants, radius 1.
  g = decoded(b({10, 1, 0x80 | 0x32, 0}));
  EXPECT_NEAR(endOf(g).x, std::sqrt(2.0), 1e-12);
  EXPECT_NEAR(endOf(g).y, 0.0, 1e-12);
  // Clockwise fractional arc: offsets count backwards, from 35 degrees down to -5 through octants 1 and 0.
  g = decoded(b({11, 56, 28, 0, 3, 0x80 | 0x12, 0}));
  double cwFrom = (45 - 56 * 45 / 256.0) * std::numbers::pi / 180, cwTo = (0 - 28 * 45 / 256.0) * std::numbers::pi / 180;
  EXPECT_NEAR(endOf(g).x, 3 * (std::cos(cwTo) - std::cos(cwFrom)), 1e-12);
  EXPECT_NEAR(endOf(g).y, 3 * (std::sin(cwTo) - std::sin(cwFrom)), 1e-12);
  // Fractional arc of radius 3 from 55 to 95 degrees: offsets 56 and 28 in octants 1 and 2.
  g = decoded(b({11, 56, 28, 0, 3, 0x12, 0}));
  double from = (45 + 56 * 45 / 256.0) * std::numbers::pi / 180, to = (90 + 28 * 45 / 256.0) * std::numbers::pi / 180;
  EXPECT_NEAR(endOf(g).x, 3 * (std::cos(to) - std::cos(from)), 1e-12);
  EXPECT_NEAR(endOf(g).y, 3 * (std::sin(to) - std::sin(from)), 1e-12);
  EXPECT_NEAR(g.strokes[0].back().bulge, std::tan((to - from) / 4), 1e-12);
  // Bulge arcs: a half circle to (4,0) bulging clockwise, then a list of two ended by (0,0).
  g = decoded(b({12, 4, 0, -127, 13, 0, 4, 127, 2, 2, 0, 0, 0, 0}));
  ASSERT_EQ(g.strokes[0].size(), 4u);
  EXPECT_NEAR(g.strokes[0][1].bulge, -1.0, 1e-12);
  EXPECT_NEAR(g.strokes[0][2].bulge, 1.0, 1e-12);
  EXPECT_DOUBLE_EQ(g.strokes[0][3].bulge, 0.0);
  EXPECT_EQ(endOf(g), OdGePoint2d(6, 6));
}

TEST(ShxFont, VerticalOnlyCommandsAreSkippedWithTheirArguments) {
  // Each 14 skips one whole command: a displacement list, an arc, a subshape, a scale.
  gi::Glyph g = decoded(b({14, 9, 5, 5, 0, 0, 14, 11, 1, 2, 0, 3, 0x12, 14, 7, 40, 14, 3, 2, 0x10, 0}));
  ASSERT_EQ(g.strokes.size(), 1u);
  EXPECT_EQ(endOf(g), OdGePoint2d(1, 0));
}

TEST(ShxFont, SubshapesInEachKind) {
  std::string square = b({0x10, 0x14, 0});
  std::map<uint32_t, std::string_view> byte{{65, square}}, wide{{0x4E00, square}};
  gi::Glyph g = decoded(b({7, 65, 0x10, 0}), gi::ShxKind::kShapes, byte);
  EXPECT_EQ(endOf(g), OdGePoint2d(2, 1));
  g = decoded(b({7, 0x4E, 0x00, 0x10, 0}), gi::ShxKind::kUnifont, wide);
  EXPECT_EQ(endOf(g), OdGePoint2d(2, 1));
  // Big font, extended form: origin (2,1), cell 20 wide and 5 high for a font 10 high: half size;
  // the pen comes back to where the subshape started.
  g = decoded(b({7, 0, 0x4E, 0x00, 2, 1, 20, 5, 0x10, 0}), gi::ShxKind::kBigFont, wide);
  ASSERT_EQ(g.strokes.size(), 2u);
  EXPECT_EQ(g.strokes[0].front().point, OdGePoint2d(2, 1));
  EXPECT_EQ(g.strokes[0].back().point, OdGePoint2d(2.5, 1.5));
  EXPECT_EQ(endOf(g), OdGePoint2d(1, 0));
}

TEST(ShxFont, BrokenDefinitionsAreRefused) {
  std::string self = b({0x10, 7, 1, 0});
  std::map<uint32_t, std::string_view> selfCalling{{1, self}};
  const std::pair<const char*, std::string> cases[] = {
      {"no end", b({0x10, 0x14})},
      {"argument past the end", b({8, 1})},
      {"division by zero", b({3, 0, 0x10, 0})},
      {"pop without push", b({6, 0})},
      {"push overflow", std::string(40, char(5)) + b({0})},
      {"calls itself", self},
  };
  for (const auto& [what, bytes] : cases) {
    gi::Glyph glyph;
    EXPECT_FALSE(gi::decodeShxShape(gi::ShxKind::kShapes, bytes, selfCalling, 10, glyph)) << what;
  }
}

// ---- File layouts ----------------------------------------------------------------------------

std::string u16(uint32_t v) { return b({int(v & 0xFF), int(v >> 8)}); }

// A shape file with shape 0 (above 8, below 2) and shapes 65 "LETTER_A" and 66 calling 65.
std::string shapeFile(const std::string& signature = "AutoCAD-86 shapes 1.0\r\n\x1a") {
  std::string info = std::string("font", 5) + b({8, 2, 0, 0});
  std::string a = std::string("LETTER_A", 9) + b({0x80, 0x48, 0});
  std::string bb = std::string("\0", 1) + b({7, 65, 0x20, 0});
  return signature + u16(0) + u16(66) + u16(3) + u16(0) + u16(uint32_t(info.size())) + u16(65) +
         u16(uint32_t(a.size())) + u16(66) + u16(uint32_t(bb.size())) + info + a + bb;
}

// A big font 10 high: escape range 0x81-0x9F, shape 0 and one double-byte shape (east 1), indexed
// by file offset, with an unused index slot between them.
std::string bigFontFile(uint32_t code) {
  std::string head = "AutoCAD-86 bigfont 1.0\r\n\x1a";
  std::string info = std::string("big", 4) + b({10, 0, 0, 10, 0});
  std::string glyph = std::string("\0", 1) + b({0x10, 0});
  size_t dataAt = head.size() + 6 + 4 + 3 * 8;
  auto entry = [](uint32_t number, size_t size, size_t offset) {
    return u16(number) + u16(uint32_t(size)) + u16(uint32_t(offset)) + u16(0);
  };
  return head + u16(0) + u16(3) + u16(1) + u16(0x81) + u16(0x9F) + entry(0, info.size(), dataAt) + entry(0, 0, 0) +
         entry(code, glyph.size(), dataAt + info.size()) + info + glyph;
}

TEST(ShxFont, ShapeFilesAndBigFontsAreRead) {
  std::string error;
  auto font = gi::ShxFont::fromBytes(shapeFile(), &error);
  ASSERT_TRUE(font) << error;
  EXPECT_EQ(font->kind(), gi::ShxKind::kShapes);
  EXPECT_EQ(font->above(), 8.0);
  EXPECT_EQ(font->below(), 2.0);
  EXPECT_EQ(font->numberOf("letter_a"), 65u);
  EXPECT_EQ(font->numberOf("LETTER_B"), 0u);
  ASSERT_TRUE(font->shape(66));
  EXPECT_DOUBLE_EQ(font->shape(66)->advance, 6.0);

  font = gi::ShxFont::fromBytes(bigFontFile(0x8140), &error);
  ASSERT_TRUE(font) << error;
  EXPECT_EQ(font->kind(), gi::ShxKind::kBigFont);
  EXPECT_EQ(font->above(), 10.0);
  EXPECT_TRUE(font->isLeadByte(0x81));
  EXPECT_FALSE(font->isLeadByte(0x41));
  ASSERT_TRUE(font->shape(0x8140));
  EXPECT_DOUBLE_EQ(font->shape(0x8140)->advance, 1.0);
}

TEST(ShxFont, DamagedFilesAreRefusedWithAReason) {
  std::string iso = readWholeFile(kFonts + "iso3098.shx");
  ASSERT_GT(iso.size(), 1000u);
  std::string error;
  EXPECT_FALSE(gi::ShxFont::fromBytes("AutoCAD-87 shapes 1.0\r\n\x1a", &error));
  EXPECT_FALSE(gi::ShxFont::fromBytes("AutoCAD-86 glyphs 1.0\r\n\x1a" + iso.substr(25), &error));
  EXPECT_NE(error.find("unknown SHX kind"), std::string::npos) << error;
  // Cut anywhere: refused, never read past the end.
  for (size_t size = 0; size < iso.size(); size += 37) {
    EXPECT_FALSE(gi::ShxFont::fromBytes(iso.substr(0, size), &error)) << size;
  }
  // A huge shape count in a unifont header, a huge index in a shape file.
  std::string huge = iso;
  huge[25] = char(0xFF), huge[26] = char(0xFF), huge[27] = char(0xFF);
  EXPECT_FALSE(gi::ShxFont::fromBytes(huge, &error));
  std::string shapes = shapeFile();
  shapes[24 + 4] = char(0xFF), shapes[24 + 5] = char(0xFF);
  EXPECT_FALSE(gi::ShxFont::fromBytes(shapes, &error));
  EXPECT_FALSE(error.empty());
  // A definition that calls itself leaves that shape out and keeps the others.
  std::string looping = shapeFile();
  looping[looping.size() - 3] = char(66);
  auto font = gi::ShxFont::fromBytes(looping, &error);
  ASSERT_TRUE(font);
  EXPECT_TRUE(font->shape(65));
  EXPECT_FALSE(font->shape(66));
  EXPECT_FALSE(font->shape(66));
  EXPECT_EQ(font->brokenShapes(), 1u);
}

// ---- Text drawn with an SHX font ---------------------------------------------------------------

struct StrokeSink : OdGiGeometrySimplifier {
  OdGeExtents3d extents;
  void polylineOut(int32_t count, const OdGePoint3d* points) override {
    for (int32_t i = 0; i < count; ++i) extents.addPoint(points[i]);
  }
};

// Every alignment of a TEXT in iso3098: the capitals are one text height tall, the run's stroked
// ends meet its points, and bottom-aligned text hangs by the depth the font declares.
TEST(ShxFont, EveryAlignmentMeetsItsPointWithTheFontsHeight) {
  OdGiTextStyle style;
  style.setFileName(OdString(odDecodeUtf8(kFonts.data(), kFonts.size()) + L"iso3098.shx"));
  const gi::StrokeFont* font = gi::strokeFontFor(style);
  ASSERT_TRUE(font);
  ASSERT_TRUE(font->glyph(U'H'));
  ASSERT_EQ(font, gi::strokeFontFor(style)) << "read once";
  std::string error;
  auto shx = gi::ShxFont::fromFile(kFonts + "iso3098.shx", &error);
  ASSERT_TRUE(shx) << error;
  const double h = 2.5, depth = h * shx->below() / shx->above();
  // The font declares 32 units above the baseline; its capitals stand from 4 to 32, and H's stem
  // is 9 units right of its origin.
  const double stem = h * 9 / 32;
  const OdGePoint3d first(0, 0, 0), second(100, 20, 0);
  using T = TextData;
  struct Case {
    int horizontal, vertical;
    double baseline;  // where the run's baseline must lie
  };
  const Case cases[] = {
      {T::kLeft, T::kBaseline, first.y},      {T::kCenter, T::kBaseline, second.y},
      {T::kRight, T::kBaseline, second.y},    {T::kMiddle, T::kBaseline, second.y - h / 2},
      {T::kLeft, T::kTop, second.y - h},      {T::kCenter, T::kTop, second.y - h},
      {T::kRight, T::kTop, second.y - h},     {T::kLeft, T::kMiddleV, second.y - h / 2},
      {T::kCenter, T::kMiddleV, second.y - h / 2}, {T::kRight, T::kMiddleV, second.y - h / 2},
      {T::kLeft, T::kBottom, second.y + depth}, {T::kCenter, T::kBottom, second.y + depth},
      {T::kRight, T::kBottom, second.y + depth},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.horizontal) + "/" + std::to_string(c.vertical));
    TextData text;
    text.height = h;
    text.horizontalMode = int16_t(c.horizontal);
    text.verticalMode = int16_t(c.vertical);
    text.position = first;
    text.alignmentPoint = second;
    text.hasAlignmentPoint = !(c.horizontal == T::kLeft && c.vertical == T::kBaseline);
    gi::TextRun run = gi::placeText(text, gi::measureText(style, U"HEH"), h, 1.0, gi::textDescent(style));
    StrokeSink sink;
    sink.textProc(run.start, run.direction, run.up, L"HEH", 3, false, &style);
    ASSERT_TRUE(sink.extents.isValidExtents());
    EXPECT_NEAR(sink.extents.maxPoint.y, c.baseline + h, 1e-9) << "cap height";
    EXPECT_NEAR(sink.extents.minPoint.y, c.baseline + h * 4 / 32, 1e-9);
    const double left = sink.extents.minPoint.x, right = sink.extents.maxPoint.x;
    const double anchor = text.hasAlignmentPoint ? second.x : first.x;
    if (c.horizontal == T::kLeft) {
      EXPECT_NEAR(left, anchor + stem, 1e-9);
    } else if (c.horizontal == T::kRight) {
      EXPECT_NEAR(right, anchor, 1e-9);
    } else {
      EXPECT_NEAR((left + right) / 2, anchor, stem);
    }
  }
  // Aligned and fit texts run from the first point to the second.
  for (int mode : {T::kAligned, T::kFit}) {
    SCOPED_TRACE(mode);
    TextData text;
    text.height = h;
    text.horizontalMode = int16_t(mode);
    text.position = first;
    text.alignmentPoint = {60, 0, 0};
    text.hasAlignmentPoint = true;
    gi::TextRun run = gi::placeText(text, gi::measureText(style, U"HEH"), h, 1.0, gi::textDescent(style));
    StrokeSink sink;
    sink.textProc(run.start, run.direction, run.up, L"HEH", 3, false, &style);
    EXPECT_NEAR(sink.extents.maxPoint.x, 60.0, 1e-9);
    EXPECT_NEAR(sink.extents.maxPoint.y, mode == T::kFit ? h : run.height, 1e-9);
    if (mode == T::kAligned) {
      EXPECT_GT(run.height, h) << "a long span makes aligned text taller";
    }
  }
}

TEST(ShxFont, StylesCombineTheRegularFontWithTheBigFont) {
  auto temp = std::filesystem::temp_directory_path();
  std::string regular = (temp / "dm_regular.shx").string(), big = (temp / "dm_big.shx").string();
  std::ofstream(regular, std::ios::binary) << shapeFile();
  std::ofstream(big, std::ios::binary) << bigFontFile(0x82A0);  // Shift-JIS for HIRAGANA A
  OdGiTextStyle style;
  style.setFileName(OdString(odDecodeUtf8(regular.data(), regular.size())));
  style.setBigFontFileName(OdString(odDecodeUtf8(big.data(), big.size())));
  const gi::StrokeFont* font = gi::strokeFontFor(style);
  ASSERT_TRUE(font);
  // The shape font's 'A' (shape 65, 4 units of a font 8 high) and the big font's character (1 unit
  // of a font 10 high), each scaled by its own font's height.
  ASSERT_TRUE(font->glyph(U'A'));
  EXPECT_DOUBLE_EQ(font->glyph(U'A')->advance, 0.5);
  ASSERT_TRUE(font->glyph(U'\u3042'));
  EXPECT_DOUBLE_EQ(font->glyph(U'\u3042')->advance, 0.1);
  EXPECT_FALSE(font->glyph(U'Z'));
  std::filesystem::remove(regular);
  std::filesystem::remove(big);
}

TEST(ShxFont, MissingShxFontsFallBackToTheStandIn) {
  OdGiTextStyle style;
  style.setFileName(OdString(L"/nowhere/romans.shx"));
  const gi::StrokeFont* font = gi::strokeFontFor(style);
  if (!font) GTEST_SKIP() << "no stroke fonts on this machine";
  EXPECT_TRUE(font->glyph(U'A'));
  // An unreadable SHX file: the stand-in too, and the style's next texts use the same font.
  std::string broken = (std::filesystem::temp_directory_path() / "dm_broken_font.shx").string();
  std::ofstream(broken, std::ios::binary) << "AutoCAD-86 unifont 1.0\r\n\x1a\x05";
  OdGiTextStyle corrupt;
  corrupt.setFileName(OdString(odDecodeUtf8(broken.data(), broken.size())));
  const gi::StrokeFont* standIn = gi::strokeFontFor(corrupt);
  EXPECT_TRUE(standIn && standIn->glyph(U'A'));
  EXPECT_EQ(standIn, gi::strokeFontFor(corrupt));
  std::filesystem::remove(broken);
}

TEST(ShxFont, ShapeEntitiesDrawTheirShapeByNameOrNumber) {
  std::string path = (std::filesystem::temp_directory_path() / "dm_shapes.shx").string();
  std::ofstream(path, std::ios::binary) << shapeFile();
  auto db = std::make_shared<OdDbDatabase>();
  TextStyleRecord style;
  style.fontFile = path;
  style.flags = TextStyleRecord::kShapeFile;
  RecordingSink sink;
  GiRegenContext ctx(*db, sink);
  ShapeEntity shape;
  shape.style = &style;
  shape.position = {10, 5, 0};
  shape.size = 16;  // twice the file's declared height of 8
  shape.rotation = std::numbers::pi / 2;
  shape.name = "letter_a";  // DXF names the shape
  gi::regenShape(ctx, shape);
  ASSERT_EQ(sink.count("polyline"), 1u);
  std::vector<OdGePoint3d> points = sink.ofKind("polyline")[0].points;
  ASSERT_EQ(points.size(), 3u);
  EXPECT_NEAR(points[1].x, 10.0, 1e-9);
  EXPECT_NEAR(points[1].y, 5.0 + 16.0, 1e-9);
  EXPECT_NEAR(points[2].y, 5.0 + 8.0, 1e-9);
  // DWG gives the number; shape 66 draws shape 65 through a subshape and then a line of its own.
  shape.name.clear();
  shape.number = 66;
  shape.rotation = 0;
  gi::regenShape(ctx, shape);
  EXPECT_EQ(sink.count("polyline"), 2u) << "the subshape and the line after it join into one stroke";
  EXPECT_NEAR(sink.calls.back().points.back().x, 10.0 + 12.0, 1e-9);
  // Unknown shapes and missing files draw nothing.
  shape.number = 99;
  gi::regenShape(ctx, shape);
  style.fontFile = "/nowhere/shapes.shx";
  shape.number = 65;
  gi::regenShape(ctx, shape);
  EXPECT_EQ(sink.count("polyline"), 2u);
  std::filesystem::remove(path);
}

}  // namespace

// Multi-line text layout: each inline code's effect on the laid-out runs, paragraphs, tabs,
// stacked fractions and input that is broken or huge.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "kit/gi/regen/MTextLayout.h"

namespace {

using gi::MTextAlign;
using gi::MTextLayoutInput;
using gi::MTextLayoutResult;
using gi::MTextRun;
using gi::MTextStack;

// Every character advances 0.5 text heights, scaled like the drawn text.
double fixedMeasure(const std::u32string& text, const gi::MTextFormat& f) {
  return 0.5 * double(text.size()) * f.height * f.widthFactor * f.tracking;
}

MTextLayoutResult layout(const std::u32string& contents, double referenceWidth = 0.0,
                         MTextAlign align = MTextAlign::kLeft) {
  MTextLayoutInput input;
  input.contents = contents;
  input.height = 2.0;
  input.referenceWidth = referenceWidth;
  input.defaultAlign = align;
  return gi::layoutMText(input, fixedMeasure);
}

const MTextRun& runWith(const MTextLayoutResult& r, const std::u32string& text) {
  for (const auto& line : r.lines) {
    for (const auto& run : line.runs) {
      if (run.text == text) return run;
    }
  }
  static MTextRun none;
  ADD_FAILURE() << "no run with that text";
  return none;
}

TEST(MTextLayoutTest, FormatCodesTakeEffectOnTheirRuns) {
  auto r = layout(U"a{\\H3;b}{\\H2x;c}{\\W2;d{\\W0.5x;dd}}{\\Q15;e}{\\T2;f}{\\C1;g}{\\c255;h}{\\fArial|b1|i1;i}{\\Fromans.shx;j}"
                  U"{\\L\\O\\Kk}l");
  ASSERT_EQ(r.lines.size(), 1u);
  EXPECT_DOUBLE_EQ(runWith(r, U"a").format.height, 2.0);
  EXPECT_DOUBLE_EQ(runWith(r, U"b").format.height, 3.0);
  EXPECT_DOUBLE_EQ(runWith(r, U"c").format.height, 4.0);
  EXPECT_DOUBLE_EQ(runWith(r, U"d").format.widthFactor, 2.0);
  EXPECT_DOUBLE_EQ(runWith(r, U"dd").format.widthFactor, 1.0);
  EXPECT_NEAR(runWith(r, U"e").format.oblique, 15.0 * M_PI / 180.0, 1e-12);
  EXPECT_DOUBLE_EQ(runWith(r, U"f").format.tracking, 2.0);
  EXPECT_TRUE(runWith(r, U"g").format.hasColor);
  EXPECT_EQ(runWith(r, U"g").format.color, OdCmEntityColor::fromACI(1));
  EXPECT_EQ(runWith(r, U"h").format.color, OdCmEntityColor::fromPackedRGB(0xFF0000));  // red in the low byte
  EXPECT_EQ(runWith(r, U"i").format.font, "Arial");
  EXPECT_TRUE(runWith(r, U"i").format.bold && runWith(r, U"i").format.italic);
  EXPECT_EQ(runWith(r, U"j").format.font, "romans.shx");
  EXPECT_TRUE(runWith(r, U"j").format.shxFont);
  EXPECT_FALSE(runWith(r, U"i").format.shxFont);
  const MTextRun& k = runWith(r, U"k");
  EXPECT_TRUE(k.format.underline && k.format.overline && k.format.strike);
  const MTextRun& l = runWith(r, U"l");
  EXPECT_FALSE(l.format.strike || l.format.hasColor || l.format.height != 2.0);
  // Widths follow the format: 0.5 heights per character times width factor and tracking.
  EXPECT_DOUBLE_EQ(runWith(r, U"d").width, 2.0);
  EXPECT_DOUBLE_EQ(runWith(r, U"f").width, 2.0);
  EXPECT_DOUBLE_EQ(r.lines[0].height, 4.0);
  // Runs follow one another.
  EXPECT_DOUBLE_EQ(runWith(r, U"b").x, 1.0);
  EXPECT_DOUBLE_EQ(runWith(r, U"c").x, 2.5);
}

TEST(MTextLayoutTest, VerticalAlignmentPlacesSmallerRunsInTheLine) {
  auto r = layout(U"{\\H4;Big}{\\A1;mid}{\\A2;top}{\\A0;low}");
  EXPECT_DOUBLE_EQ(runWith(r, U"mid").y, 1.0);
  EXPECT_DOUBLE_EQ(runWith(r, U"top").y, 2.0);
  EXPECT_DOUBLE_EQ(runWith(r, U"low").y, 0.0);
}

TEST(MTextLayoutTest, ParagraphAlignmentAppliesPerParagraph) {
  // Block 20 wide; each line 4 characters (4 units).
  auto r = layout(U"\\pxqr;abcd\\P\\pxqc;efgh\\P\\pq*;ijkl\\Pmnop", 20.0, MTextAlign::kLeft);
  ASSERT_EQ(r.lines.size(), 4u);
  EXPECT_DOUBLE_EQ(r.lines[0].runs[0].x, 16.0);
  EXPECT_DOUBLE_EQ(r.lines[1].runs[0].x, 8.0);
  EXPECT_DOUBLE_EQ(r.lines[2].runs[0].x, 0.0);
  EXPECT_DOUBLE_EQ(r.lines[3].runs[0].x, 0.0);  // back to the attachment's alignment
  auto centred = layout(U"ab\\Pabcd", 0.0, MTextAlign::kCenter);
  EXPECT_DOUBLE_EQ(centred.lines[0].runs[0].x, 1.0);
}

TEST(MTextLayoutTest, JustifiedLinesFillTheWidthExceptTheLast) {
  // A character is one unit wide: "aa bb cc" (8) fits in 9, "dd" does not.
  auto r = layout(U"\\pxqj;aa bb cc dd ee", 9.0);
  ASSERT_EQ(r.lines.size(), 2u);
  const auto& first = r.lines[0].runs;
  ASSERT_EQ(first.size(), 3u);
  EXPECT_NEAR(first.back().x + first.back().width, 9.0, 1e-9);
  EXPECT_NEAR(first[1].x, 3.5, 1e-9);
  EXPECT_DOUBLE_EQ(r.lines[1].runs.front().x, 0.0);
  EXPECT_LT(r.lines[1].runs.back().x + r.lines[1].runs.back().width, 9.0);
}

TEST(MTextLayoutTest, IndentsAndTabStops) {
  auto r = layout(U"\\pxi-3,l4t4;ab cd ef", 8.0);
  ASSERT_EQ(r.lines.size(), 2u);
  EXPECT_DOUBLE_EQ(r.lines[0].runs[0].x, 1.0);  // first line: 4 - 3
  EXPECT_DOUBLE_EQ(r.lines[1].runs[0].x, 4.0);  // wrapped lines: the left indent
  r = layout(U"\\pxt9,12;\tx^Iy\tz");
  const MTextRun& x = runWith(r, U"x");
  const MTextRun& y = runWith(r, U"y");
  const MTextRun& z = runWith(r, U"z");
  EXPECT_DOUBLE_EQ(x.x, 9.0);
  EXPECT_DOUBLE_EQ(y.x, 12.0);
  EXPECT_DOUBLE_EQ(z.x, 16.0);  // past the last stop: every 4 heights of the text
  // Paragraph properties carry into the next paragraph until reset.
  auto carried = layout(U"\\pxi2;ab\\Pcd\\pi*;\\Pef");
  EXPECT_DOUBLE_EQ(carried.lines[1].runs[0].x, 0.0);
  EXPECT_DOUBLE_EQ(carried.lines[0].runs[0].x, 2.0);
}

TEST(MTextLayoutTest, StackedFractionsInTheirThreeForms) {
  auto r = layout(U"x\\S1/22;y\\S3#4;\\S+0.1^ -0.2;");
  ASSERT_EQ(r.lines.size(), 1u);
  std::vector<const MTextRun*> stacks;
  for (const auto& run : r.lines[0].runs) {
    if (run.stacked) stacks.push_back(&run);
  }
  ASSERT_EQ(stacks.size(), 3u);
  const auto& bar = *stacks[0];
  EXPECT_EQ(bar.stacked->stack.top, U"1");
  EXPECT_EQ(bar.stacked->stack.bottom, U"22");
  EXPECT_NEAR(bar.stacked->shape.height, 1.4, 1e-12);  // 70% of 2
  EXPECT_GT(bar.stacked->shape.topY, bar.stacked->shape.lineY0);
  EXPECT_LT(bar.stacked->shape.bottomY + bar.stacked->shape.height, bar.stacked->shape.lineY0);
  EXPECT_TRUE(bar.stacked->shape.hasLine);
  EXPECT_DOUBLE_EQ(bar.stacked->shape.lineY0, bar.stacked->shape.lineY1);  // horizontal
  EXPECT_GT(bar.stacked->shape.topX, bar.stacked->shape.bottomX);          // the shorter part centred
  EXPECT_GE(bar.width, 1.4);
  const auto& diagonal = *stacks[1];
  EXPECT_EQ(diagonal.stacked->stack.kind, MTextStack::kDiagonal);
  EXPECT_TRUE(diagonal.stacked->shape.hasLine);
  EXPECT_GT(diagonal.stacked->shape.lineX1, diagonal.stacked->shape.lineX0);
  EXPECT_GT(diagonal.stacked->shape.lineY1, diagonal.stacked->shape.lineY0);
  EXPECT_GT(diagonal.stacked->shape.bottomX, diagonal.stacked->shape.topX);
  EXPECT_GT(diagonal.stacked->shape.topY, diagonal.stacked->shape.bottomY);
  const auto& tolerance = *stacks[2];
  EXPECT_EQ(tolerance.stacked->stack.kind, MTextStack::kTolerance);
  EXPECT_EQ(tolerance.stacked->stack.top, U"+0.1");
  EXPECT_EQ(tolerance.stacked->stack.bottom, U"-0.2");
  EXPECT_FALSE(tolerance.stacked->shape.hasLine);
  EXPECT_DOUBLE_EQ(tolerance.stacked->shape.topX, tolerance.stacked->shape.bottomX);
  // The text after a stack follows it.
  EXPECT_NEAR(runWith(r, U"y").x, bar.x + bar.width, 1e-12);
}

TEST(MTextLayoutTest, BrokenInputIsDrawnAsWellAsPossible) {
  auto r = layout(U"}}a{{{\\H1e308;b\\H-5;c\\Hnan;d\\W1e9;e\\Z\\Q;f\\S;g\\C999;h\\");
  std::u32string all;
  for (const auto& line : r.lines) {
    for (const auto& run : line.runs) {
      all += run.text;
      EXPECT_TRUE(std::isfinite(run.x) && std::isfinite(run.width));
      EXPECT_LE(run.format.height, 2000.0);
      EXPECT_LE(run.format.widthFactor, 1000.0);
      EXPECT_FALSE(run.format.hasColor);
    }
  }
  EXPECT_EQ(all, U"abcdefgh\\");
  // Absurd reference widths wrap every word or none.
  EXPECT_EQ(layout(U"aa bb cc", 1e-300).lines.size(), 3u);
  EXPECT_EQ(layout(U"aa bb cc", 1e300).lines.size(), 1u);
  // A hard space holds its words together.
  EXPECT_EQ(layout(U"aa\\~bb cc", 1e-300).lines.size(), 2u);
}

TEST(MTextLayoutTest, HugeTextIsMeasuredInLinearTime) {
  // About 10 MB of words, now and then a paragraph or a colour change.
  std::u32string words;
  for (int i = 0; i < 2000000; ++i) words += i % 50 == 49 ? U"{\\C2;wo}\\Prd " : U"word ";
  size_t measuredChars = 0;
  auto counting = [&](const std::u32string& text, const gi::MTextFormat& f) {
    measuredChars += text.size();
    return fixedMeasure(text, f);
  };
  MTextLayoutInput input;
  input.contents = words;
  input.height = 1.0;
  input.referenceWidth = 40.0;
  auto r = gi::layoutMText(input, counting);
  EXPECT_GT(r.lines.size(), 1000u);
  EXPECT_LT(measuredChars, 3 * words.size());
  // Justified, words stand apart only up to a bound: the runs stay few enough to hold.
  MTextLayoutInput justified = input;
  justified.contents = U"\\pxqj;" + words;
  size_t runs = 0;
  for (const auto& line : gi::layoutMText(justified, fixedMeasure).lines) runs += line.runs.size();
  EXPECT_LT(runs, 500000u);
  MTextLayoutInput unwrapped = input;
  unwrapped.referenceWidth = 0.0;
  measuredChars = 0;
  gi::layoutMText(unwrapped, counting);
  EXPECT_LT(measuredChars, 3 * words.size());
}

TEST(MTextLayoutTest, ColumnsTakeTheLinesThatDoNotFit) {
  MTextLayoutInput input;
  input.height = 1.0;
  input.referenceWidth = 4.0;
  input.columns = true;
  input.columnGutter = 1.0;
  // Lines 1 high, 5/3 apart, a third below: three reach 4.67 down, within a column 5 high.
  input.contents = U"a\\Pb\\Pc\\Pd\\Pe\\Nf\\Pg";
  input.columnHeight = 5.0;
  auto r = gi::layoutMText(input, fixedMeasure);
  ASSERT_EQ(r.lines.size(), 7u);
  const int expected[] = {0, 0, 0, 1, 1, 2, 2};
  for (size_t i = 0; i < 7; ++i) EXPECT_EQ(r.lines[i].column, expected[i]) << i;
  EXPECT_DOUBLE_EQ(r.lines[3].baseline, -1.0);  // at the top of its column
  EXPECT_DOUBLE_EQ(r.lines[3].runs[0].x, 5.0);   // one column and a gutter along
  EXPECT_DOUBLE_EQ(r.lines[5].runs[0].x, 10.0);
  EXPECT_DOUBLE_EQ(r.width, 14.0);
  // Each column its own height; a height of 0 does not limit; a fixed count keeps the rest.
  input.contents = U"a\\Pb\\Pc\\Pd\\Pe";
  input.columnHeights = {1.5, 0.0};
  r = gi::layoutMText(input, fixedMeasure);
  EXPECT_EQ(r.lines[1].column, 1);
  EXPECT_EQ(r.lines[4].column, 1);
  input.columnHeights.clear();
  input.columnHeight = 1.5;
  input.columnCount = 2;
  r = gi::layoutMText(input, fixedMeasure);
  EXPECT_EQ(r.lines[4].column, 1);
}

}  // namespace

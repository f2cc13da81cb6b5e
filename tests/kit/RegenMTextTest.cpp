// MTEXT as drawn: stacked fractions as two small texts and their line, strike-through and
// lines carried to the conveyor, tracking spacing the glyphs out, paragraphs aligned.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "kit/gi/regen/GiRegenContext.h"
#include "kit/gi/regen/RegenEntities.h"
#include "tests/kit/GiRecordingSink.h"

namespace {

struct Drawn {
  std::shared_ptr<OdDbDatabase> db = std::make_shared<OdDbDatabase>();
  RecordingSink sink;
};

void draw(Drawn& d, const char* contents, double height = 2.0) {
  GiRegenContext ctx(*d.db, d.sink);
  MTextData text;
  text.text = contents;
  text.height = height;
  text.position = {100, 50, 0};
  gi::regenMText(ctx, text);
}

TEST(RegenMText, StackedFractionsDrawTwoSmallTextsAndTheirLine) {
  struct Case {
    const char* contents;
    bool line;
    bool horizontalLine;
  };
  for (const Case& c : {Case{"\\S1/2;", true, true}, Case{"\\S1#2;", true, false}, Case{"\\S1^ 2;", false, false}}) {
    SCOPED_TRACE(c.contents);
    Drawn d;
    draw(d, c.contents);
    auto texts = d.sink.ofKind("text");
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_EQ(texts[0].text, L"1");
    EXPECT_EQ(texts[1].text, L"2");
    EXPECT_NEAR(texts[0].up.length(), 1.4, 1e-9) << "70% of the text's height";
    EXPECT_GT(texts[0].points[0].y, texts[1].points[0].y) << "numerator above";
    auto lines = d.sink.ofKind("polyline");
    ASSERT_EQ(lines.size(), c.line ? 1u : 0u);
    if (!c.line) continue;
    const auto& p = lines[0].points;
    EXPECT_EQ(std::fabs(p[0].y - p[1].y) < 1e-9, c.horizontalLine);
    if (c.horizontalLine) {
      EXPECT_GT(p[0].y, texts[1].points[0].y + 1.4) << "the bar runs above the denominator";
      EXPECT_LT(p[0].y, texts[0].points[0].y) << "and below the numerator";
    }
  }
}

TEST(RegenMText, FormatsReachTheConveyor) {
  Drawn d;
  draw(d, "{\\K\\C1;cut}{\\T2;ab}{\\L\\O\\H0.5x;u}\\P\\pxqr;r");
  auto texts = d.sink.ofKind("text");
  ASSERT_EQ(texts.size(), 5u);
  EXPECT_TRUE(texts[0].style.isStruckThrough());
  // Tracking draws each glyph on its own, twice as far apart.
  EXPECT_EQ(texts[1].text, L"a");
  EXPECT_EQ(texts[2].text, L"b");
  EXPECT_GT(texts[2].points[0].x - texts[1].points[0].x, 1.5);
  EXPECT_FALSE(texts[1].style.isStruckThrough());
  EXPECT_TRUE(texts[3].style.isUnderlined() && texts[3].style.isOverlined());
  EXPECT_NEAR(texts[3].up.length(), 1.0, 1e-9);
  // The second paragraph, right-aligned, moves right of where it starts left-aligned.
  EXPECT_EQ(texts[4].text, L"r");
  Drawn left;
  draw(left, "{\\K\\C1;cut}{\\T2;ab}{\\L\\O\\H0.5x;u}\\Pr");
  EXPECT_GT(texts[4].points[0].x, left.sink.ofKind("text")[4].points[0].x + 4.0);
}

}  // namespace

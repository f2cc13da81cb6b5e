// Backward and upside-down texts as the strokes of their glyphs: backward mirrors the text along
// its direction, upside down across its baseline, both turn it half round.
#include <gtest/gtest.h>

#include <algorithm>

#include "kit/gi/StrokeFont.h"
#include "kit/gi/regen/TextPlacement.h"
#include "tests/kit/GiRecordingSink.h"

namespace {

struct StrokingSink : RecordingSink {
  void textProc(const OdGePoint3d& p, const OdGeVector3d& d, const OdGeVector3d& u, const OdChar* m, int32_t n,
                bool raw, const OdGiTextStyle* s, const OdGeVector3d* x = nullptr) override {
    OdGiGeometrySimplifier::textProc(p, d, u, m, n, raw, s, x);
  }
};

struct MirrorCase {
  int flags;
  double xSign;  // which side of the insertion point the glyph lies
  double ySign;
};

TEST(TextMirror, FirstGlyphLiesAndFacesAsTheFlagsSay) {
  OdGiTextStyle style;
  style.setFileName(OdString(L"romans.shx"));
  if (!gi::strokeFontFor(style)) GTEST_SKIP() << "no stroke fonts on this machine";
  const MirrorCase cases[] = {{0, 1, 1}, {TextData::kMirroredX, -1, 1}, {TextData::kMirroredY, 1, -1},
                              {TextData::kMirroredX | TextData::kMirroredY, -1, -1}};
  for (const MirrorCase& c : cases) {
    SCOPED_TRACE(c.flags);
    TextData text;
    text.position = OdGePoint3d(10, 20, 0);
    text.height = 2.0;
    text.generationFlags = int16_t(c.flags);
    gi::TextRun run = gi::placeText(text, 1.0, 2.0, 1.0);
    StrokingSink sink;
    sink.textProc(run.start, run.direction, run.up, L"L", -1, false, &style);
    ASSERT_GT(sink.count("polyline"), 0u);
    // "L": its stem's top is the highest point, its foot runs away from the stem.
    OdGePoint3d top(0, 0, 0), farthest = top;
    double topHeight = -1.0, reach = -1.0;
    for (const RecordedCall& call : sink.calls) {
      for (const OdGePoint3d& p : call.points) {
        double x = (p.x - 10) * c.xSign, y = (p.y - 20) * c.ySign;
        EXPECT_GE(x, -0.3) << "the glyph lies on the side its direction gives";
        EXPECT_GE(y, -0.3) << "the glyph rises the way its up vector gives";
        if (y > topHeight) topHeight = y, top = OdGePoint3d(x, y, 0);
        if (x > reach) reach = x, farthest = OdGePoint3d(x, y, 0);
      }
    }
    EXPECT_NEAR(topHeight, 2.0, 0.3);
    EXPECT_LT(top.x, reach - 0.5) << "the stem stands at the glyph's start";
    EXPECT_LT(farthest.y, 0.3) << "the foot runs along the baseline";
  }
}

}  // namespace

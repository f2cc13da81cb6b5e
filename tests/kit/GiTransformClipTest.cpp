// The transform and clip stages together on input that breaks the usual assumptions: matrices
// that collapse or carry NaN, clip outlines with too few points or crossing themselves; and
// pictures, which pass the clip stage by their whole frame and become their outline in a sink
// that cannot show them.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "kit/gi/GiClipStage.h"
#include "kit/gi/GiTransformStage.h"
#include "tests/kit/GiRecordingSink.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

class SizedPicture : public OdGiRasterImage {
public:
  uint32_t pixelWidth() const override { return 40; }
  uint32_t pixelHeight() const override { return 20; }
  uint32_t colorDepth() const override { return 0; }
  uint32_t scanLineSize() const override { return 0; }
  uint32_t paletteDataSize() const override { return 0; }
  const uint8_t* paletteData() const override { return nullptr; }
  const uint8_t* scanLines() const override { return nullptr; }
};

struct Chain {
  RecordingSink sink;
  GiClipStage clip{&sink};
  GiTransformStage xform{&clip};

  void drawCurves() {
    xform.circleProc({0, 0, 0}, 5, OdGeVector3d::kZAxis());
    xform.circularArcProc({0, 0, 0}, 5, OdGeVector3d::kZAxis(), {1, 0, 0}, kPi / 2);
    xform.circularArcProc({0, 0, 0}, 5, -OdGeVector3d::kZAxis(), {1, 0, 0}, -kPi);
    xform.ellipArcProc(OdGeEllipArc3d({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, 6, 3, 0.5, 4.0));
    xform.circleProc({0, 0, 0}, kNaN, OdGeVector3d::kZAxis());
    xform.circleProc({kNaN, 0, 0}, 1, OdGeVector3d::kZAxis());
  }
};

TEST(GiTransformClip, DegenerateMatricesAndClipOutlinesDrawWithoutFailing) {
  OdGeMatrix3d withNaN = OdGeMatrix3d::scaling(2, 1, 1);
  withNaN.entry[0][1] = kNaN;
  const OdGeMatrix3d matrices[] = {OdGeMatrix3d::scaling(2, 1, 1), OdGeMatrix3d::scaling(0, 1, 1),
                                   OdGeMatrix3d::scaling(0, 0, 0), OdGeMatrix3d::scaling(-1, 1, 1), withNaN};
  const std::vector<std::vector<OdGePoint2d>> outlines = {
      {},                                    // no clip
      {{-1, -1}, {1, 1}},                    // too few points: clips everything away
      {{-8, -6}, {8, 6}, {8, -6}, {-8, 6}},  // a bow tie crossing itself
  };
  for (const OdGeMatrix3d& m : matrices) {
    for (const auto& outline : outlines) {
      Chain chain;
      chain.xform.setMatrix(m);
      if (!outline.empty()) chain.clip.pushBoundary(outline);
      chain.drawCurves();
      for (const RecordedCall& call : chain.sink.calls) {
        for (const OdGePoint3d& p : call.points) {
          if (m.entry[0][1] == m.entry[0][1]) {
            EXPECT_TRUE(std::isfinite(p.x) && std::isfinite(p.y)) << call.kind;
          }
          // The bow tie keeps the two triangles left and right of the centre (even-odd rule).
          if (outline.size() == 4 && std::isfinite(p.x) && std::isfinite(p.y)) {
            EXPECT_LE(std::fabs(p.y), 0.75 * std::fabs(p.x) + 1e-9) << call.kind;
          }
        }
      }
    }
  }
}

TEST(GiTransformClip, ScaledCirclesBecomeEllipsesThatTheClipCuts) {
  Chain chain;
  chain.xform.setMatrix(OdGeMatrix3d::scaling(2, 1, 1));
  chain.clip.pushBoundary({{-6, -10}, {8, -10}, {8, 10}, {-6, 10}});
  chain.clip.setDefaultDeviation(0.001);
  chain.xform.circleProc({0, 0, 0}, 5, OdGeVector3d::kZAxis());
  EXPECT_EQ(chain.sink.count("circle"), 0u);
  std::vector<RecordedCall> pieces = chain.sink.ofKind("polyline");
  ASSERT_EQ(pieces.size(), 2u);  // the middle band, above and below the centre
  for (const RecordedCall& piece : pieces) {
    for (const OdGePoint3d& p : piece.points) {
      EXPECT_NEAR(std::hypot(p.x / 10, p.y / 5), 1.0, 1e-3);  // cut ends lie on chords
      EXPECT_GE(p.x, -6 - 1e-9);
      EXPECT_LE(p.x, 8 + 1e-9);
    }
  }
}

TEST(GiTransformClip, PicturesPassByTheirWholeFrameAndOtherwiseShowTheirOutline) {
  SizedPicture picture;
  // Forty pixels of one unit from x = -30: only the frame's right end lies in the clip.
  const OdGePoint2d triangle[3] = {{-0.5, -0.5}, {39.5, -0.5}, {19.5, 19.5}};
  Chain chain;
  chain.clip.pushBoundary({{0, 0}, {10, 0}, {10, 10}, {0, 10}});
  chain.xform.setMatrix(OdGeMatrix3d::translation({0, 0, 0}));
  chain.xform.rasterImageProc({-30, 0, 0}, {1, 0, 0}, {0, 1, 0}, &picture, triangle, 3);
  chain.xform.rasterImageProc({-300, 0, 0}, {1, 0, 0}, {0, 1, 0}, &picture, nullptr, 0);  // wholly outside
  // The recording sink cannot show pictures: it draws the clip outline, closed, in the frame.
  std::vector<RecordedCall> outlines = chain.sink.ofKind("polyline");
  ASSERT_EQ(outlines.size(), 1u);
  const std::vector<OdGePoint3d> expected = {{-30, 20, 0}, {10, 20, 0}, {-10, 0, 0}, {-30, 20, 0}};
  ASSERT_EQ(outlines[0].points.size(), expected.size());
  for (size_t i = 0; i < expected.size(); ++i) EXPECT_LT(outlines[0].points[i].distanceTo(expected[i]), 1e-12);
}

}  // namespace

// The output size of a view: the given size fitted to the view's aspect, or the view at a DPI, and
// the raster limit on both routes.
#include <gtest/gtest.h>

#include "converter/CDm2017.h"
#include "converter/DrawingUnits.h"

namespace {

struct SizeCase {
  const char* title;
  int64_t width, height;  // given
  int dpi;
  int units;
  double viewWidth, viewHeight;  // drawing units
  int64_t expectedWidth, expectedHeight;
};

class ViewSize : public ::testing::TestWithParam<SizeCase> {};

TEST_P(ViewSize, FitsTheViewWithinTheLimit) {
  const SizeCase& c = GetParam();
  CDm2017 converter;
  converter.SetWidth(c.width);
  converter.SetHeight(c.height);
  converter.SetDPI(c.dpi);
  converter.SetUnits(c.units);
  converter.ComputeViewSize(c.viewWidth, c.viewHeight);
  EXPECT_EQ(converter.GetWidth(), c.expectedWidth);
  EXPECT_EQ(converter.GetHeight(), c.expectedHeight);
  EXPECT_TRUE(converter.IsViewActive());
  EXPECT_NEAR(converter.GetViewWidth(), static_cast<double>(c.expectedWidth), 1e-6);
}

INSTANTIATE_TEST_SUITE_P(
    Sizes, ViewSize,
    ::testing::Values(
        SizeCase{"WideViewHalvesTheHeight", 3000, 3000, 0, 0, 200, 100, 3000, 1500},
        SizeCase{"TallViewNarrowsTheWidth", 3000, 3000, 0, 0, 100, 300, 1000, 3000},
        // ⌊0.999 + 3000 / 3⌋: no extra pixel for a whole quotient.
        SizeCase{"WholeQuotientIsNotRoundedUp", 3000, 3000, 0, 0, 300, 100, 3000, 1000},
        SizeCase{"UnequalSizesAreKept", 800, 600, 0, 0, 200, 100, 800, 600},
        SizeCase{"OversizeIsClampedFirst", 20000, 20000, 0, 0, 100, 200, 7500, 15000},
        SizeCase{"DpiInInches", 0, 0, 100, 1, 10, 5, 1000, 500},
        SizeCase{"DpiInMillimetres", 0, 0, 254, 5, 100, 50, 1000, 500},
        SizeCase{"DpiBeyondTheLimitWide", 0, 0, 300, 1, 100, 50, 15000, 7500},
        SizeCase{"DpiBeyondTheLimitTall", 0, 0, 300, 1, 50, 100, 7500, 15000}),
    [](const ::testing::TestParamInfo<SizeCase>& info) { return std::string(info.param.title); });

TEST(DrawingUnits, UnknownInsertUnitsFallBackOnMeasurement) {
  EXPECT_STREQ(DrawingUnitsName(0, 1), "mm");
  EXPECT_STREQ(DrawingUnitsName(0, 0), "in");
  EXPECT_STREQ(DrawingUnitsName(10, 1), "yd");
  EXPECT_EQ(UnitsFromDrawing(0, 1), 5);
  EXPECT_EQ(UnitsFromDrawing(14, 0), 1);
  EXPECT_EQ(UnitsFromDrawing(10, 0), 3);
  EXPECT_DOUBLE_EQ(MillimetreFactor(4), 1.0 / 25.4);
  EXPECT_DOUBLE_EQ(MillimetreFactor(2), 0.0032808398950131237);
}

}  // namespace

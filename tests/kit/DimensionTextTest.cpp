// Dimension texts as AutoCAD formats them: expected texts are those its documentation gives for
// each unit, precision and zero-suppression setting, and those it stored in the blocks of the
// corpus's dimensions.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "kit/gi/regen/DimensionText.h"

namespace {

struct LengthCase {
  double value;
  int unit, decimals, zeros;
  const char* expected;
};

TEST(DimensionText, LengthsByUnitPrecisionAndZeroSuppression) {
  const LengthCase cases[] = {
      {12.5, 2, 4, 0, "12.5000"},         {0.5, 2, 4, 4, ".5000"},          {12.5, 2, 4, 8, "12.5"},
      {12.0, 2, 2, 8, "12"},              {0.5, 2, 2, 12, ".5"},            {1234.5678, 2, 2, 0, "1234.57"},
      {-0.5, 2, 2, 4, "-.50"},            {-0.00001, 2, 2, 0, "0.00"},      {2.0, 2, 0, 0, "2"},
      {1234.5, 1, 2, 0, "1.23E+03"},      {15.5, 3, 2, 0, "1'-3.50\""},    {24.0, 3, 2, 0, "2'"},
      {15.5, 4, 4, 0, "1'-3 1/2\""},     {6.25, 4, 4, 0, "6 1/4\""},      {24.0, 4, 4, 0, "2'"},
      {24.0, 4, 4, 1, "2'-0\""},          {6.0, 4, 4, 1, "0'-6\""},         {6.0, 4, 4, 2, "0'-6\""},
      {24.0, 4, 4, 3, "2'-0\""},          {0.5, 4, 4, 0, "1/2\""},          {143.99, 4, 4, 0, "12'"},
      {2.375, 5, 3, 0, "2 3/8"},          {2.0, 5, 3, 0, "2"},              {0.25, 5, 4, 0, "1/4"},
      {47.75, 4, 2, 0, "3'-11 3/4\""},
  };
  for (const LengthCase& c : cases) {
    DimensionFormat f;
    f.linearUnit = c.unit;
    f.decimals = c.decimals;
    f.zeroSuppression = c.zeros;
    EXPECT_EQ(formatDimensionLength(c.value, f), c.expected)
        << c.value << " unit " << c.unit << " dec " << c.decimals << " zin " << c.zeros;
  }
}

TEST(DimensionText, RoundingScaleSeparatorAndPost) {
  DimensionFormat f;
  f.decimals = 2;
  f.roundTo = 0.25;
  EXPECT_EQ(formatDimensionLength(12.3, f), "12.25");
  f.roundTo = 0.0;
  f.linearFactor = -2.0;  // applies in paper space only; its size still counts there
  EXPECT_EQ(formatDimensionLength(5.0, f), "10.00");
  f.linearFactor = 1.0;
  f.decimalSeparator = ',';
  EXPECT_EQ(formatDimensionLength(12.5, f), "12,50");
  f.decimalSeparator = '.';
  f.post = "<> mm";
  EXPECT_EQ(composeDimensionText("", "12.50", f, false, 12.5), "12.50 mm");
  f.post = "mm";
  EXPECT_EQ(composeDimensionText("", "12.50", f, false, 12.5), "12.50mm");
  EXPECT_EQ(composeDimensionText("", "45%%d", f, true, 0.78), "45%%d");  // angles take no DIMPOST
  f.post.clear();
  EXPECT_EQ(composeDimensionText("<> TYP", "12.50", f, false, 12.5), "12.50 TYP");
  EXPECT_EQ(composeDimensionText(" ", "12.50", f, false, 12.5), "");
  EXPECT_EQ(composeDimensionText("CUT", "12.50", f, false, 12.5), "CUT");
}

TEST(DimensionText, TolerancesAndLimits) {
  DimensionFormat f;
  f.decimals = 2;
  f.toleranceDecimals = 2;
  f.tolerance = true;
  f.plus = f.minus = 0.1;
  EXPECT_EQ(composeDimensionText("", "10.00", f, false, 10.0), "10.00%%p0.10");
  f.minus = 0.2;
  EXPECT_EQ(composeDimensionText("", "10.00", f, false, 10.0), "10.00\\S+0.10^-0.20;");
  f.tolerance = false;
  f.limits = true;
  EXPECT_EQ(composeDimensionText("", "10.00", f, false, 10.0), "\\S10.10^9.80;");
}

TEST(DimensionText, AnglesByUnit) {
  DimensionFormat f;
  double angle = (45.0 + 30.0 / 60.0 + 15.0 / 3600.0) * std::numbers::pi / 180.0;
  EXPECT_EQ(formatDimensionAngle(std::numbers::pi / 4, f), "45%%d");
  f.angularDecimals = 2;
  EXPECT_EQ(formatDimensionAngle(angle, f), "45.50%%d");
  f.angularZeroSuppression = 2;
  EXPECT_EQ(formatDimensionAngle(std::numbers::pi / 2, f), "90%%d");
  f.angularZeroSuppression = 0;
  f.angularUnit = 1;
  f.angularDecimals = 4;
  EXPECT_EQ(formatDimensionAngle(angle, f), "45%%d30'15\"");
  f.angularDecimals = 2;
  EXPECT_EQ(formatDimensionAngle(angle, f), "45%%d30'");
  f.angularUnit = 2;
  f.angularDecimals = 0;
  EXPECT_EQ(formatDimensionAngle(std::numbers::pi / 2, f), "100g");
  f.angularUnit = 3;
  f.angularDecimals = 4;
  EXPECT_EQ(formatDimensionAngle(std::numbers::pi / 2, f), "1.5708r");
  f.angularDecimals = -1;  // DIMADEC -1 takes DIMDEC
  f.decimals = 1;
  EXPECT_EQ(formatDimensionAngle(std::numbers::pi / 2, f), "1.6r");
}

TEST(DimensionText, AbsurdValuesGiveTextOrNothingQuickly) {
  DimensionFormat f;
  f.decimals = 99;
  EXPECT_EQ(formatDimensionLength(std::numeric_limits<double>::quiet_NaN(), f), "");
  EXPECT_EQ(formatDimensionAngle(std::numeric_limits<double>::infinity(), f), "");
  EXPECT_EQ(formatDimensionLength(1.5, f), "1.50000000");  // precision stops at eight places
  for (int unit = 1; unit <= 6; ++unit) {
    f.linearUnit = unit;
    std::string huge = formatDimensionLength(1e300, f);
    EXPECT_FALSE(huge.empty()) << unit;
    EXPECT_LT(huge.size(), 400u) << unit;
    EXPECT_EQ(formatDimensionLength(std::numeric_limits<double>::max(), f).empty(), false) << unit;
  }
  f.linearUnit = 2;
  f.roundTo = 1e-300;
  f.linearFactor = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(formatDimensionLength(3.0, f), "3.00000000");
  f.angularUnit = 1;
  f.angularDecimals = 99;
  EXPECT_FALSE(formatDimensionAngle(1e300, f).empty());
}

}  // namespace

// Stroke widths from intake to attribute: line weights plotted at the page's scale, geometric
// widths at their size in output units, and widths that are not numbers, negative or huge.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>
#include <string>

#include "tests/drivers/SvgDriverFixture.h"

using svgtest::SvgDriverTest;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::set<std::string> WrittenWidths(const std::string& file) {
  std::set<std::string> widths;
  const std::string key = "stroke-width=\"";
  for (size_t at = file.find(key); at != std::string::npos; at = file.find(key, at + 1)) {
    widths.insert(file.substr(at + key.size(), file.find('"', at + key.size()) - at - key.size()));
  }
  return widths;
}

}  // namespace

class StrokeWidths : public SvgDriverTest {};

TEST_F(StrokeWidths, CollectedWidthsInHundredthsOfAnOutputUnit) {
  struct Case {
    const char* what;
    int geometric;
    double lineWidth;
    double width;
    int lineWeight;
  };
  // A window of 20000 by 25000 units fitted onto a 279.4 by 215.9 mm sheet: the short sides decide.
  const double perMillimetre = 20000 / 215.9;
  const Case cases[] = {
      {"0.25 mm", 0, 25, 25 * perMillimetre, 25},
      {"0.50 mm", 0, 50, 50 * perMillimetre, 50},
      {"default weight", 0, 0, 0, 0},
      {"negative weight", 0, -3, 0, 0},
      {"weight not a number", 0, kNaN, 0, 0},
      {"weight beyond the heaviest: 2.11 mm", 0, 1e12, 211 * perMillimetre, 211},
      {"2 units wide, unit scale 3", 1, 2, 600, 0},
      {"negative width", 1, -2, 0, 0},
      {"infinite width", 1, std::numeric_limits<double>::infinity(), 0, 0},
      {"wider than the page: the page", 1, 1e300, 25000 * 3 * 100, 0},
  };
  svg().SetDrawingWidth(2000);
  svg().SetDrawingHeight(2500);
  svg().SetUnitScale(3);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    // The page grows with the unit scale; line weights follow the page.
    const double pageScale = c.geometric ? 1 : 3;
    TRANS_BASE2::StrokeWidth w = svg().CollectedStrokeWidth(c.geometric, c.lineWidth);
    EXPECT_NEAR(w.width, c.width * pageScale, 1e-6 * (1 + c.width));
    EXPECT_EQ(w.lineWeight, c.lineWeight);
    EXPECT_FALSE(w.absolute);
  }
  // Without a page a millimetre is one unit.
  svg().SetDrawingWidth(0);
  svg().SetDrawingHeight(0);
  EXPECT_DOUBLE_EQ(svg().CollectedStrokeWidth(0, 35).width, 35);
}

TEST_F(StrokeWidths, OneWeightOneWidthOnEveryKind) {
  svg().SetDrawingWidth(2000);
  svg().SetDrawingHeight(2000);
  BeginView(L"Model", kViewModelSpace, 0, 0, 20000, 20000);
  Layer(L"Walls", 2);
  svg().DrawLine(L"CONTINUOUS", true, 0, 0, 0, 5000, 0, 1, 50);
  svg().DrawPolyline({{0, 100}, {50, 150}, {100, 100}}, false, 0, L"CONTINUOUS", true, 0, 1, 50);
  svg().DrawArc(L"CONTINUOUS", true, 0, 500, 500, 100, 0, 90, 1, 50);
  svg().DrawCircle(false, L"CONTINUOUS", true, 0, 900, 900, 100, 1, 50);
  svg().DrawEllipse(false, L"CONTINUOUS", true, 0, 1900, 900, 200, 100, 0, 1, 50);
  ASSERT_EQ(OutputView(), 1);
  const std::string file = Written("plan.svg");
  // 0.50 mm on a 20000-unit page fitted onto the sheet's short side of 215.9 mm.
  const std::set<std::string> widths = WrittenWidths(file);
  ASSERT_EQ(widths.size(), 1u) << file;
  EXPECT_NEAR(std::stod(*widths.begin()), 0.5 * 20000 / 215.9, 1e-3);
  EXPECT_EQ(file.find("ZW\""), std::string::npos) << file;
}

TEST_F(StrokeWidths, WidthsThatAreNoNumbersAreDrawnThin) {
  BeginView(L"Model", kViewModelSpace, 0, 0, 100, 100);
  Layer(L"Walls", 2);
  svg().DrawPolyline({{0, 0}, {10, 0}}, false, 0, L"CONTINUOUS", true, 1, 1, kNaN);
  svg().DrawPolyline({{0, 10}, {10, 10}}, false, 0, L"CONTINUOUS", true, 1, 1, -5);
  svg().DrawCircle(false, L"CONTINUOUS", true, 0, 50, 50, 10, 1, kNaN);
  ASSERT_EQ(OutputView(), 1);
  const std::string file = Written("plan.svg");
  EXPECT_TRUE(WrittenWidths(file).empty()) << file;
  // Both polylines are drawn (merged into one element), at the thinnest width.
  EXPECT_NE(file.find("ZW \" d=\"M0,100h10M0,90h10\""), std::string::npos) << file;
  EXPECT_NE(file.find("<circle id=\"cv_2\" class=\"ZW\" "), std::string::npos) << file;
}

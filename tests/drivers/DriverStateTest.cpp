// The driver's own state: coordinate texts, clamped setters, output names, views and page entries.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "tests/drivers/DriverTestSupport.h"

using drvtest::DriverTest;
using drvtest::W;

namespace {

struct CoordinateCase {
  int precision;
  double value;
  const char* text;
};

class CoordinateTextTest : public DriverTest {};

// The cut rule keeps the program's quirks: ".00" anywhere cuts three characters, a last "0" one.
TEST_F(CoordinateTextTest, FormatsWithPrecisionAndCutsTrailingZeros) {
  const CoordinateCase cases[] = {
      {2, 12.5, "12.5"},   {2, 12.0, "12"},       {2, 12.34, "12.34"}, {2, -0.004, "-0"},
      {2, 100.0, "100"},   {2, 100.5, "100.5"},   {2, 0.001, "0"},     {3, 12.005, "12"},
      {4, 1.0012, "1.0"},  {2, -250.25, "-250.25"}, {0, 120.0, "12"},  {0, 7.0, "7"},
      {3, 0.5, "0.50"},     {2, 1000000.0, "1000000"},
  };
  TRANS_BASE2 driver;
  for (const auto& c : cases) {
    driver.SetPrecision(c.precision);
    EXPECT_STREQ(driver.p2x(c.value), c.text) << "p2x(" << c.value << ") at precision " << c.precision;
    EXPECT_STREQ(driver.p2y(c.value), c.text) << "p2y(" << c.value << ") at precision " << c.precision;
  }
  EXPECT_EQ(driver.GetP2xCount(), static_cast<long>(std::size(cases)));
  EXPECT_EQ(driver.GetP2yCount(), static_cast<long>(std::size(cases)));
}

TEST_F(CoordinateTextTest, ExtremeValuesGiveSomeTextWithoutOverflow) {
  TRANS_BASE2 driver;
  driver.SetPrecision(2);
  for (double value : {1e300, -1e308, std::numeric_limits<double>::quiet_NaN(),
                       std::numeric_limits<double>::infinity()}) {
    std::string text = driver.p2x(value);
    EXPECT_FALSE(text.empty()) << value;
  }
  driver.SetPrecision(5000);
  EXPECT_FALSE(std::string(driver.p2y(1.5)).empty());
}

class DriverSettersTest : public DriverTest {};

TEST_F(DriverSettersTest, LineWidthScaleBelowBoundStoresTenthAndTracesTheValue) {
  struct Case {
    double given;
    double stored;
    bool traced;
  } cases[] = {{0.005, 0.1, true}, {0.01, 0.01, false}, {-3.0, 0.1, true}, {2.5, 2.5, false},
               {std::nan(""), 0.1, true}};
  SetTraceEnabled(true);
  for (const auto& c : cases) {
    TRANS_BASE2 driver;
    testing::internal::CaptureStdout();
    driver.SetLineWidthScale(c.given);
    std::string out = testing::internal::GetCapturedStdout();
    EXPECT_DOUBLE_EQ(driver.GetLineWidthScale(), c.stored) << c.given;
    EXPECT_EQ(out.find("LineWidthScale out of bounds. Limitted to 0.01. Was") != std::string::npos, c.traced)
        << c.given << " printed: " << out;
  }
  TRANS_BASE2 driver;
  testing::internal::CaptureStdout();
  driver.SetLineWidthScale(0.005);
  EXPECT_NE(testing::internal::GetCapturedStdout().find("Was: 0.005"), std::string::npos);
  SetTraceEnabled(false);
}

TEST_F(DriverSettersTest, OutputNameSetsStemOnlyWhileStemIsEmpty) {
  struct Case {
    const char* first;
    const char* second;
    const char* stem;
  } cases[] = {
      {"/out/plan.v1.svg", "/out/other.svg", "/out/plan.v1"},
      {"/out/plan", "/out/other.svg", "/out/plan"},
      {"", "/out/b.svg", "/out/b"},
  };
  for (const auto& c : cases) {
    TRANS_BASE2 driver;
    driver.SetOutputFileName(W(c.first));
    driver.SetOutputFileName(W(c.second));
    EXPECT_EQ(driver.GetOutputStem(), W(c.stem)) << c.first;
    EXPECT_EQ(driver.GetOutputFileName(), W(c.second));
  }
}

TEST_F(DriverSettersTest, LayerListsSplitAtSemicolonsWithoutEmptyNames) {
  TRANS_BASE2 driver;
  driver.SetRoomLayers("ROOMS;;A-ROOM;");
  driver.SetTextLayers(";");
  driver.SetLayersOff("Ä Layer;x");
  EXPECT_EQ(driver.GetRoomLayers(), (std::vector<std::string>{"ROOMS", "A-ROOM"}));
  EXPECT_TRUE(driver.GetTextLayers().empty());
  EXPECT_EQ(driver.GetLayersOff(), (std::vector<std::string>{"Ä Layer", "x"}));
}

TEST_F(DriverSettersTest, PageEntriesKeepFileNameAfterLastSeparator) {
  TRANS_BASE2 driver;
  driver.AddPage(W("Layout1"), W("/srv/out/plan__Layout01.svg"));
  driver.AddPage(W("Model"), W("C:\\out\\plan.svg"));
  driver.AddPage(W("Bare"), W("plan.svg"));
  ASSERT_EQ(driver.GetPages().size(), 3u);
  EXPECT_EQ(driver.GetPages()[0].fileName, W("plan__Layout01.svg"));
  EXPECT_EQ(driver.GetPages()[1].fileName, W("plan.svg"));
  EXPECT_EQ(driver.GetPages()[2].fileName, W("plan.svg"));
  EXPECT_EQ(driver.GetPages()[0].pageName, W("Layout1"));
}

// Point tolerance is coarse while collecting and fine for writing.
TEST_F(DriverSettersTest, ResetFileTightensPointToleranceAndRestoresBackground) {
  TRANS_BASE2 driver;
  EXPECT_DOUBLE_EQ(driver.GetPointTolerance(), 15.1);
  driver.SetBackgroundColor(0);
  EXPECT_TRUE(driver.BackgroundIsBlack());
  driver.p2x(1.0);
  driver.ResetFile();
  EXPECT_DOUBLE_EQ(driver.GetPointTolerance(), 0.001);
  EXPECT_EQ(driver.GetBackgroundColor(), 255);
  EXPECT_EQ(driver.GetP2xCount(), 0);
  EXPECT_EQ(driver.GetCurrentLayerName(), W("0"));
  // A black page chosen for the run survives the per-file reset.
  driver.SetPageBackground(0);
  driver.SetBackgroundColor(255);
  driver.ResetFile();
  EXPECT_TRUE(driver.BackgroundIsBlack());
}

class ViewListTest : public DriverTest {};

TEST_F(ViewListTest, SameNameDefinesOneEntryAndSwitchingBackKeepsItsPrimitives) {
  TRANS_BASE2 driver;
  driver.ResetFile();
  driver.DefineView(W("ModelSpace"), kViewModelSpace);
  driver.DefineView(W("ModelSpace"), kViewModelSpace);
  ASSERT_EQ(driver.GetViews().size(), 1u);
  driver.DrawLine(W("CONTINUOUS"), true, 0, 0, 0, 10, 10, 1.0, 0.0);
  driver.DefineView(W("Layout1"), kViewLayout);
  driver.DrawLine(W("CONTINUOUS"), true, 0, 0, 0, 20, 5, 1.0, 0.0);
  driver.DefineView(W("ModelSpace"), kViewModelSpace);
  driver.DrawLine(W("CONTINUOUS"), true, 0, 5, 5, 30, 0, 1.0, 0.0);

  ASSERT_EQ(driver.GetViews().size(), 2u);
  EXPECT_EQ(driver.GetViews()[1].kind, kViewLayout);
  auto linesOf = [](const DrvView& view) {
    std::size_t n = 0;
    for (const auto& [key, layer] : view.layers)
      for (const auto& group : layer.colorGroups) n += group.lines.size();
    return n;
  };
  EXPECT_EQ(linesOf(driver.GetViews()[0]), 2u);
  EXPECT_EQ(linesOf(driver.GetViews()[1]), 1u);
}

TEST_F(ViewListTest, OnlyAViewWithNothingDrawnIsEmpty) {
  TRANS_BASE2 driver;
  driver.ResetFile();
  driver.DefineView(W("Nothing"), kViewModelSpace);
  driver.StoreViewExtents();
  EXPECT_TRUE(driver.GetViews()[0].isEmpty());

  // A level line has no height: it still holds geometry, and its box gets a frame.
  driver.DefineView(W("Flat"), kViewModelSpace);
  driver.DrawLine(W("CONTINUOUS"), true, 0, 0, 0, 50, 0, 1.0, 0.0);
  driver.StoreViewExtents();
  const DrvView& flat = driver.GetViews()[1];
  EXPECT_FALSE(flat.isEmpty());
  EXPECT_GT(flat.pageExtents.height(), 0.0);
  EXPECT_DOUBLE_EQ(flat.pageExtents.width(), 50.0);

  // So does a lone point.
  driver.DefineView(W("Dot"), kViewModelSpace);
  driver.DrawDot(7, 7);
  driver.StoreViewExtents();
  const DrvView& dot = driver.GetViews()[2];
  EXPECT_FALSE(dot.isEmpty());
  EXPECT_GT(dot.pageExtents.width(), 0.0);
  EXPECT_GT(dot.pageExtents.height(), 0.0);

  driver.DefineView(W("Plan"), kViewModelSpace);
  driver.SetWorldExtents(-1, -2, 3, 4);
  driver.DrawLine(W("CONTINUOUS"), true, 0, 0, 0, 50, 20, 1.0, 0.0);
  EXPECT_EQ(driver.OutputView(true), 1);
  const DrvView& plan = driver.GetViews()[3];
  EXPECT_FALSE(plan.isEmpty());
  EXPECT_TRUE(plan.hasWorldExtents);
  EXPECT_EQ(plan.worldURy, 4);
  EXPECT_EQ(plan.pageExtents.maxX, 50);
  EXPECT_EQ(plan.svgExtents.maxY, 20);

  driver.ClearViewState();
  EXPECT_TRUE(driver.GetViews()[3].layers.empty());
  EXPECT_TRUE(driver.GetViews()[3].isEmpty());
}

TEST_F(ViewListTest, SelectViewLoadsItsExtents) {
  TRANS_BASE2 driver;
  driver.ResetFile();
  driver.DefineView(W("A"), kViewModelSpace);
  driver.DrawLine(W("CONTINUOUS"), true, 0, 1, 1, 9, 9, 1.0, 0.0);
  driver.StoreViewExtents();
  driver.DefineView(W("B"), kViewNamed);
  EXPECT_TRUE(driver.GetPageExtents().empty);
  driver.SelectView(driver.GetViews()[0]);
  EXPECT_EQ(driver.GetPageExtents().minX, 1);
  EXPECT_EQ(driver.GetSvgExtents().maxY, 9);
}

}  // namespace

// A DRAWSVG writing into a scratch folder, with helpers to draw a view and read what was written.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "drivers/svg/DRAWSVG.h"
#include "services/Trace.h"
#include "tests/drivers/SvgTestSupport.h"

namespace svgtest {

class SvgDriverTest : public ::testing::Test {
protected:
  void SetUp() override {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    dir_ = std::filesystem::temp_directory_path() /
           ("dm_svg_" + std::string(info->test_suite_name()) + "_" + info->name());
    std::filesystem::remove_all(dir_);
    std::filesystem::create_directories(dir_);
    driver_ = std::make_unique<DRAWSVG>();
    driver_->SetOutputFileName(OdString((dir_ / "plan.svg").string()));
    // Files are written at the output tolerance; the intake would drop short segments otherwise.
    driver_->SetPointTolerance(0.001);
  }
  void TearDown() override {
    driver_.reset();
    SetTraceEnabled(false);
    std::filesystem::remove_all(dir_);
  }

  DRAWSVG& svg() { return *driver_; }
  std::filesystem::path Path(const std::string& name) const { return dir_ / name; }

  // Starts a view whose page (E2) and view box (E1) are the given box.
  void BeginView(const wchar_t* name, int kind, double minX, double minY, double maxX, double maxY) {
    svg().DefineView(OdString(name), kind);
    box_ = DrvBox();
    box_.extend(minX, minY);
    box_.extend(maxX, maxY);
  }

  // The box set again last: drawing extends the extents, the tests fix them.
  int OutputView(bool keepFirstName = false) {
    svg().SetPageExtents(box_);
    svg().SetSvgExtents(box_);
    int result = svg().OutputView(keepFirstName);
    svg().ClearViewState();
    return result;
  }

  void Layer(const wchar_t* name, int colour = 7) {
    svg().SetLayer(OdString(name), colour);
    svg().SetColor(colour);
  }

  void Polyline(std::vector<OdGePoint2d> points, double width = 0, const wchar_t* lineType = L"CONTINUOUS") {
    svg().DrawPolyline(points, false, 0, OdString(lineType), true, 1, 1.0, width);
  }

  std::string Written(const std::string& name) const { return ReadFile(dir_ / name); }

  // The writers' buffered output, wrapped so that it can be parsed on its own.
  std::string WrappedPending() const {
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
           "xmlns:vtrl=\"urn:test\">\n" +
           svg_const().PendingOutput() + "</svg>\n";
  }
  const DRAWSVG& svg_const() const { return *driver_; }

  // Starts direct writer output on a page (0,0)-(100,100).
  void StartDirectOutput(int colour = 7) {
    ASSERT_TRUE(svg().OpenOutputFile((dir_ / "direct.svg").string()));
    DrvBox page;
    page.extend(0, 0);
    page.extend(100, 100);
    svg().SetPageExtents(page);
    svg().SelectColourGroup(colour);
  }

  std::filesystem::path dir_;
  std::unique_ptr<DRAWSVG> driver_;
  DrvBox box_;
};

}  // namespace svgtest

// Stroke widths as a plot shows them: line weights keep their proportions and are drawn at the
// page's scale on an A-size sheet, one weight gets one width whatever carries it, and a polyline's
// constant width is geometry drawn at its size.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <string_view>

#include "tests/app/RunProgram.h"

namespace fs = std::filesystem;

namespace {

struct Layer {
  std::set<double> widths;  // every stroke-width written on the layer
  int zeroWidth = 0;        // elements drawn at the thinnest width (class ZW)
  int elements = 0;
};

// The stroke widths of every layer group of the file.
std::map<std::string, Layer> LayerWidths(const std::string& svg) {
  std::map<std::string, Layer> layers;
  const std::string opener = "<g id=\"layer_";
  for (size_t at = svg.find(opener); at != std::string::npos;) {
    const size_t nameEnd = svg.find('"', at + opener.size());
    Layer& layer = layers[svg.substr(at + opener.size(), nameEnd - at - opener.size())];
    const size_t next = svg.find(opener, nameEnd);
    const std::string_view body =
        std::string_view(svg).substr(nameEnd, next == std::string::npos ? svg.size() - nameEnd : next - nameEnd);
    for (size_t e = body.find("<path"); e != std::string::npos; e = body.find("<path", e + 1)) ++layer.elements;
    for (size_t e = body.find("<circle"); e != std::string::npos; e = body.find("<circle", e + 1)) ++layer.elements;
    for (size_t w = body.find("stroke-width=\""); w != std::string::npos; w = body.find("stroke-width=\"", w + 1)) {
      layer.widths.insert(std::strtod(std::string(body.substr(w + 14, 32)).c_str(), nullptr));
    }
    for (size_t z = body.find(" ZW"); z != std::string::npos; z = body.find(" ZW", z + 1)) ++layer.zeroWidth;
    at = next;
  }
  return layers;
}

double ViewBoxNumber(const std::string& svg, int index) {
  const char* p = svg.c_str() + svg.find("viewBox=\"") + 9;
  double value = 0;
  for (int i = 0; i <= index; ++i) value = std::strtod(p, const_cast<char**>(&p));
  return value;
}

}  // namespace

TEST(StrokeWidthOutput, WeightsAndWidthsAsAPlotShowsThem) {
  ScratchDirectory dir;
  const fs::path drawing = fs::path(DM_SOURCE_DIR) / "tests" / "app" / "widths" / "weights.dxf";
  std::string arguments = drawing.string();
  arguments.insert(0, 1, '\'');
  arguments += "' weights.svg -SVG -B=-1";
  const ProgramRun run = RunDm2020(arguments, dir.path());
  ASSERT_EQ(run.status, 0) << run.out << run.err;
  const std::string svg = ReadWholeFile(dir.path() / "weights.svg");
  std::map<std::string, Layer> layers = LayerWidths(svg);
  // The 100 by 80 frame fills the view box.
  const double width = ViewBoxNumber(svg, 2), height = ViewBoxNumber(svg, 3);
  ASSERT_NEAR(width / height, 100.0 / 80.0, 1e-3);
  const double unitsPerDrawingUnit = width / 100.0;

  ASSERT_EQ(layers["QUARTER"].widths.size(), 1u) << svg;
  ASSERT_EQ(layers["HALF"].widths.size(), 1u) << svg;
  const double quarter = *layers["QUARTER"].widths.begin();
  const double half = *layers["HALF"].widths.begin();
  EXPECT_NEAR(half, 2 * quarter, 1e-3);

  // Line, polyline, circle and arcs (a dashed circle among them) of one layer weight: one width,
  // the same as the entity's own weight.
  const Layer& layerWeight = layers["W50"];
  EXPECT_GE(layerWeight.elements, 5);
  EXPECT_EQ(layerWeight.zeroWidth, 0);
  ASSERT_EQ(layerWeight.widths.size(), 1u) << svg;
  EXPECT_NEAR(*layerWeight.widths.begin(), half, 1e-3);

  // A 0.25 mm line on an A-size sheet (279.4 by 215.9 mm) that the page is fitted onto (the sheet
  // takes the device window, the page and its margins of a few percent).
  const double sheetScale = std::max(std::max(width, height) / 279.4, std::min(width, height) / 215.9);
  EXPECT_NEAR(quarter, 0.25 * sheetScale, 0.05 * quarter);
  EXPECT_GT(quarter / std::max(width, height), 0.0008);

  // The polyline 2 units wide, in units of the view.
  ASSERT_EQ(layers["GEOM"].widths.size(), 1u) << svg;
  EXPECT_NEAR(*layers["GEOM"].widths.begin(), 2 * unitsPerDrawingUnit, 0.01);

  // The default weight draws at the thinnest width, as does the weightless frame.
  EXPECT_TRUE(layers["DEFAULT"].widths.empty());
  EXPECT_EQ(layers["DEFAULT"].zeroWidth, 1);
  EXPECT_EQ(layers["FRAME"].zeroWidth, 1);
}

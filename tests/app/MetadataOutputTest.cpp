// The metadata texts that let the web viewer map SVG points back to drawing coordinates: the
// drawing box, the origin and the scale must be in drawing units, and every file of a run must list
// the run's pages.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "tests/app/RunProgram.h"

namespace fs = std::filesystem;

namespace {

double NumberAfter(const std::string& text, const std::string& pattern) {
  std::smatch match;
  const std::regex expression(pattern + R"(\s*(-?[0-9.]+(?:e[-+]?[0-9]+)?))");
  if (!std::regex_search(text, match, expression)) {
    ADD_FAILURE() << "no match for " << pattern;
    return 0;
  }
  return std::stod(match[1]);
}

}  // namespace

TEST(MetadataOutput, DrawingBoxOriginAndScaleAreInDrawingUnits) {
  ScratchDirectory dir;
  std::ofstream(dir.path() / "line.dxf") << "0\nSECTION\n2\nENTITIES\n"
                                            "0\nLINE\n8\n0\n10\n1000\n20\n2000\n30\n0\n11\n1100\n21\n2050\n31\n0\n"
                                            "0\nENDSEC\n0\nEOF\n";
  const ProgramRun run = RunDm2020("line.dxf line.svg -SVG -B=-1", dir.path());
  ASSERT_EQ(run.status, 0) << run.out << run.err;
  const std::string svg = ReadWholeFile(dir.path() / "line.svg");

  const std::string dwg = svg.substr(svg.find("\"DWG\""));
  EXPECT_NEAR(NumberAfter(dwg, R"("lowerLeft": \{ "x":)"), 1000, 1e-6);
  EXPECT_NEAR(NumberAfter(dwg, R"("lowerLeft": \{ "x": [-0-9.e+]+, "y" :)"), 2000, 1e-6);
  EXPECT_NEAR(NumberAfter(dwg, R"("upperRight": \{ "x":)"), 1100, 1e-6);
  EXPECT_NEAR(NumberAfter(dwg, R"("upperRight": \{ "x": [-0-9.e+]+, "y" :)"), 2050, 1e-6);

  // The origin is minus half the drawing's size.
  EXPECT_NEAR(NumberAfter(svg, R"("globalOrigin": \{ "x":)"), -50, 1e-6);
  EXPECT_NEAR(NumberAfter(svg, R"("globalOrigin": \{ "x": [-0-9.e+]+, "y" :)"), -25, 1e-6);

  // SVG units per drawing unit: the viewBox spans the drawn line.
  const double viewBoxWidth = NumberAfter(svg, R"(viewBox="0 0)");
  const double scale = NumberAfter(svg, R"("svgToWorldUnits":)");
  EXPECT_GT(viewBoxWidth, 100.0);
  EXPECT_NEAR(scale, viewBoxWidth / 100.0, 1e-3 * scale);
}

// Converting every space writes one file per space and layout; each file lists all of them, in
// the order written, and points at itself.
TEST(MetadataOutput, EveryFileOfARunListsTheRunsPages) {
  ScratchDirectory dir;
  const fs::path drawing = fs::path(DM_SOURCE_DIR) / "tests" / "app" / "metadata" / "layouts.dxf";
  std::string arguments = drawing.string();
  arguments.insert(0, 1, '\'').append("' layouts.svg -SVG -B=-1 -ALL");
  const ProgramRun run = RunDm2020(arguments, dir.path());
  ASSERT_EQ(run.status, 0) << run.out << run.err;

  const std::vector<std::pair<std::string, std::string>> expected = {
      {"layouts.svg", "Last Saved View"},      {"layouts__ModelSpace.svg", "ModelSpace"},
      {"layouts__PaperSpace.svg", "PaperSpace"}, {"layouts__Layout01.svg", "Plan"},
      {"layouts__Layout02.svg", "Section"}};
  std::string listed;
  for (const auto& [file, page] : expected) {
    listed.append("{ \"fileName\":\"").append(file).append("\", \"pageName\":\"").append(page).append("\"}");
  }
  for (size_t i = 0; i < expected.size(); ++i) {
    const fs::path file = dir.path() / expected[i].first;
    ASSERT_TRUE(fs::exists(file)) << file;
    const std::string svg = ReadWholeFile(file);
    EXPECT_NE(svg.find("\"multiPages\": 5,"), std::string::npos) << file;
    EXPECT_EQ(NumberAfter(svg, R"("currentPage":)"), double(i + 1)) << file;
    std::string pages = std::regex_replace(svg.substr(svg.find("\"pages\" : [")), std::regex(R"(\s*\n\s*|,\s*(?=\{))"), "");
    EXPECT_NE(pages.find(listed), std::string::npos) << file << "\n" << pages.substr(0, 400);
  }
}

// A layout whose viewport shows nothing gets no file: the files written before it learnt of it too
// late, and must still list only the files that exist.
TEST(MetadataOutput, PageListsNameOnlyTheFilesWritten) {
  ScratchDirectory dir;
  const fs::path drawing = fs::path(DM_CORPUS_DIR) / "dxf" / "acad_table_simple.dxf";
  std::string arguments = drawing.string();
  arguments.insert(0, 1, '\'').append("' out.svg -SVG -B=-1 -ALL");
  const ProgramRun run = RunDm2020(arguments, dir.path());
  ASSERT_EQ(run.status, 0) << run.out << run.err;

  std::vector<std::string> files;
  for (const auto& entry : fs::directory_iterator(dir.path())) files.push_back(entry.path().filename().string());
  std::sort(files.begin(), files.end());
  ASSERT_GE(files.size(), 2u);
  for (const std::string& name : files) {
    const std::string svg = ReadWholeFile(dir.path() / name);
    std::vector<std::string> listed;
    static const std::regex fileName(R"re("fileName":"([^"]*)")re");
    for (auto it = std::sregex_iterator(svg.begin(), svg.end(), fileName); it != std::sregex_iterator(); ++it) {
      listed.push_back((*it)[1]);
    }
    EXPECT_EQ(NumberAfter(svg, R"("multiPages":)"), double(listed.size())) << name;
    const double current = NumberAfter(svg, R"("currentPage":)");
    ASSERT_GE(current, 1.0);
    ASSERT_LE(current, double(listed.size()));
    EXPECT_EQ(listed[size_t(current) - 1], name);
    std::sort(listed.begin(), listed.end());
    EXPECT_EQ(listed, files) << name;
  }
}

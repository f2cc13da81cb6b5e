// Command-line parameters that shape the SVG file: each run converts a small drawing written by the
// test and looks for the parameter's mark in the output.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>

#include "tests/app/RunProgram.h"

namespace fs = std::filesystem;

namespace {

// A red line (colour 1), a line in colour 7 and a text on layer 0, no header: the program's defaults
// apply.
constexpr const char* kDrawing =
    "0\nSECTION\n2\nENTITIES\n"
    "0\nLINE\n8\n0\n62\n1\n10\n0\n20\n0\n30\n0\n11\n100.123456\n21\n50.654321\n31\n0\n"
    "0\nLINE\n8\n0\n62\n7\n10\n0\n20\n50\n30\n0\n11\n100\n21\n0\n31\n0\n"
    "0\nTEXT\n8\n0\n10\n10\n20\n10\n30\n0\n40\n5\n1\nLABEL\n"
    "0\nENDSEC\n0\nEOF\n";

// The SVG the program writes for the drawing with `parameters` added to its command line.
std::string ConvertWith(const std::string& parameters) {
  ScratchDirectory dir;
  std::ofstream(dir.path() / "two.dxf") << kDrawing;
  const ProgramRun run = RunDm2020("two.dxf two.svg -Q " + parameters, dir.path());
  EXPECT_EQ(run.status, 0) << parameters << "\n" << run.out << run.err;
  return ReadWholeFile(dir.path() / "two.svg");
}

bool Has(const std::string& svg, const std::string& what) { return svg.find(what) != std::string::npos; }

TEST(OutputParameter, VersionOneWritesSvgOneZero) {
  EXPECT_TRUE(Has(ConvertWith(""), "version=\"1.1\" xmlns="));
  EXPECT_TRUE(Has(ConvertWith("-VER=1"), "version=\"1.0\" xmlns="));
  EXPECT_TRUE(Has(ConvertWith("-VER=2"), "version=\"1.1\" xmlns="));
}

TEST(OutputParameter, BackgroundNamesThePageColour) {
  EXPECT_TRUE(Has(ConvertWith(""), "background - color: white;"));
  EXPECT_TRUE(Has(ConvertWith("-B=0"), "background - color: black;"));
  EXPECT_TRUE(Has(ConvertWith("-BLACK"), "background - color: black;"));
  EXPECT_TRUE(Has(ConvertWith("-B=WHITE"), "background - color: white;"));
  // Unset: a white page behind the light palette.
  EXPECT_TRUE(Has(ConvertWith("-B=-1"), "background - color: white;"));
}

// The decimals of every coordinate written in path data.
size_t MostDecimals(const std::string& svg) {
  size_t most = 0;
  for (size_t at = svg.find(" d=\""); at != std::string::npos; at = svg.find(" d=\"", at + 1)) {
    const std::string data = svg.substr(at + 4, svg.find('"', at + 4) - at - 4);
    size_t run = 0;
    bool afterPoint = false;
    for (char c : data) {
      if (c == '.') {
        afterPoint = true;
        run = 0;
      } else if (afterPoint && c >= '0' && c <= '9') {
        most = std::max(most, ++run);
      } else {
        afterPoint = false;
      }
    }
  }
  return most;
}

TEST(OutputParameter, PrecisionSetsTheDecimalsOfCoordinates) {
  const std::string plain = ConvertWith("");
  ASSERT_TRUE(Has(plain, " d=\""));
  EXPECT_EQ(MostDecimals(plain), 2u);
  for (const char* whole : {"-PREC=0", "-LOW", "-HP=0", "-PREC=LOW"}) EXPECT_EQ(MostDecimals(ConvertWith(whole)), 0u) << whole;
  EXPECT_EQ(MostDecimals(ConvertWith("-MEDIUM")), 1u);
  EXPECT_EQ(MostDecimals(ConvertWith("-HP=3")), 3u);
}

// Colour modes shape raster output only, the no-text-scale switch reaches the driver but changes
// nothing it writes, and LWMIN is listed in the help but read by nothing: the SVG stays as it is.
TEST(OutputParameter, ColourModesAndLwminLeaveSvgUnchanged) {
  const std::string plain = ConvertWith("");
  ASSERT_TRUE(Has(plain, ">LABEL<"));
  for (const char* parameter : {"-MONO", "-BW", "-GRAY", "-GS", "-LWMIN=2", "-NOTEXTSCALE", "-NOTS"}) {
    EXPECT_EQ(ConvertWith(parameter), plain) << parameter;
  }
}

}  // namespace

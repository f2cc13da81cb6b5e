// SVG output end to end: the program converts the sample drawing and the corpus drawings, with the
// default view and with every view ("-ALL"), into well-formed SVG files.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "tests/app/RunProgram.h"

namespace fs = std::filesystem;

namespace {

fs::path SampleDrawing() { return fs::path(DM_SOURCE_DIR) / "samples" / "office.dxf"; }

bool HaveXmllint() { return std::system("xmllint --version >/dev/null 2>&1") == 0; }

bool WellFormed(const fs::path& file) {
  const std::string command = "xmllint --noout '" + file.string() + "' >/dev/null 2>&1";
  return std::system(command.c_str()) == 0;
}

std::set<std::string> SvgFiles(const fs::path& directory) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(directory)) {
    if (entry.path().extension() == ".svg") names.insert(entry.path().filename().string());
  }
  return names;
}

size_t Count(const std::string& text, const std::string& what) {
  size_t count = 0;
  for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + what.size())) ++count;
  return count;
}

TEST(VectorOutput, SampleBecomesOneSvgWithItsLayersAndGeometry) {
  ScratchDirectory dir;
  fs::copy_file(SampleDrawing(), dir.path() / "office.dxf");
  const ProgramRun run = RunDm2020("office.dxf office.svg -Q", dir.path());
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(SvgFiles(dir.path()), (std::set<std::string>{"office.svg"}));
  const std::string svg = ReadWholeFile(dir.path() / "office.svg");
  ASSERT_EQ(svg.rfind("<?xml", 0), 0u);
  for (const char* layer : {"WALLS", "ROOMS", "DOORS", "DIMENSIONS", "GRID"}) {
    EXPECT_NE(svg.find("vtrl:layerName=\"" + std::string(layer) + "\""), std::string::npos) << layer;
  }
  EXPECT_GT(Count(svg, "<path"), 10u);
  EXPECT_GT(Count(svg, "<text"), 10u);
  // Model space only: the paper-space title block is not in it.
  EXPECT_EQ(svg.find("ROOM SCHEDULE"), std::string::npos);
  if (HaveXmllint()) {
    EXPECT_TRUE(WellFormed(dir.path() / "office.svg"));
  }
}

TEST(VectorOutput, AllWritesEverySpaceLayoutAndViewUnderItsOwnName) {
  ScratchDirectory dir;
  fs::copy_file(SampleDrawing(), dir.path() / "office.dxf");
  const ProgramRun run = RunDm2020("office.dxf office.svg -Q -ALL", dir.path());
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("Layout Name: Layout1\n"), std::string::npos) << run.out;
  const std::set<std::string> files = SvgFiles(dir.path());
  EXPECT_EQ(files, (std::set<std::string>{"office.svg", "office__ModelSpace.svg", "office__PaperSpace.svg",
                                          "office__Layout01.svg", "office__View01.svg"}));
  for (const char* name : {"office.svg", "office__Layout01.svg", "office__View01.svg"}) {
    EXPECT_TRUE(files.count(name)) << name;
    if (files.count(name) && HaveXmllint()) {
      EXPECT_TRUE(WellFormed(dir.path() / name)) << name;
    }
  }
  // The layout shows the paper sheet with its title block; the named view shows part of the model.
  EXPECT_NE(ReadWholeFile(dir.path() / "office__Layout01.svg").find("ROOM SCHEDULE"), std::string::npos);
  EXPECT_LT(ReadWholeFile(dir.path() / "office__View01.svg").size(), ReadWholeFile(dir.path() / "office__Layout01.svg").size());
}

TEST(VectorOutput, MissingLayoutWritesNothing) {
  ScratchDirectory dir;
  fs::copy_file(SampleDrawing(), dir.path() / "office.dxf");
  const ProgramRun run = RunDm2020("office.dxf office.svg -Q -LAYOUT=Nowhere", dir.path());
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("Layout Name Not Found: Nowhere\n"), std::string::npos) << run.out;
  EXPECT_TRUE(SvgFiles(dir.path()).empty());
}

// Every corpus drawing, with the default view and with every view: the program ends normally and
// each file it writes is well-formed XML.
TEST(VectorOutput, CorpusDrawingsConvertToWellFormedSvg) {
  const fs::path corpus = fs::path(DM_CORPUS_DIR) / "dxf";
  if (!fs::is_directory(corpus)) GTEST_SKIP() << "no corpus at " << corpus;
  if (!HaveXmllint()) GTEST_SKIP() << "xmllint is not installed";
  std::vector<fs::path> drawings;
  for (const auto& entry : fs::directory_iterator(corpus)) {
    if (entry.path().extension() == ".dxf") drawings.push_back(entry.path());
  }
  ASSERT_FALSE(drawings.empty());
  size_t written = 0;
  for (const fs::path& drawing : drawings) {
    for (const std::string views : {"", " -ALL"}) {
      ScratchDirectory dir;
      std::string arguments = "'";
      arguments.append(drawing.string()).append("' out.svg -Q").append(views);
      const ProgramRun run = RunDm2020(arguments, dir.path());
      const std::string what = drawing.filename().string() + views;
      EXPECT_EQ(run.status, 0) << what;
      EXPECT_EQ(run.err, "") << what;
      for (const std::string& name : SvgFiles(dir.path())) {
        ++written;
        EXPECT_TRUE(WellFormed(dir.path() / name)) << what << ": " << name;
      }
    }
  }
  EXPECT_GT(written, drawings.size());
}

void WriteFile(const fs::path& file, const std::string& text) { std::ofstream(file, std::ios::binary) << text; }

// Group code and value lines of a DXF file.
std::string Tags(std::initializer_list<std::pair<int, std::string>> pairs) {
  std::string text;
  for (const auto& [code, value] : pairs) text += std::to_string(code) + "\n" + value + "\n";
  return text;
}

// Degenerate geometry beside one sound line: zero and negative radii, NaN and infinite values,
// an insert of a block that inserts itself, an array of a million copies scaled by 1e300, a huge
// bulge. The conversion ends normally and the sound line is written.
TEST(VectorOutput, DegenerateGeometryLeavesTheRestOfTheDrawing) {
  ScratchDirectory dir;
  std::string dxf = Tags({{0, "SECTION"}, {2, "HEADER"}, {9, "$ACADVER"}, {1, "AC1009"}, {0, "ENDSEC"}});
  dxf += Tags({{0, "SECTION"}, {2, "BLOCKS"}, {0, "BLOCK"}, {8, "0"}, {2, "LOOP"}, {70, "0"}, {10, "0"}, {20, "0"},
               {30, "0"}, {0, "INSERT"}, {8, "0"}, {2, "LOOP"}, {10, "1"}, {20, "1"}, {30, "0"}, {0, "ENDBLK"},
               {8, "0"}, {0, "ENDSEC"}, {0, "SECTION"}, {2, "ENTITIES"}});
  dxf += Tags({{0, "CIRCLE"}, {8, "0"}, {10, "0"}, {20, "0"}, {30, "0"}, {40, "0"}});
  dxf += Tags({{0, "CIRCLE"}, {8, "0"}, {10, "5"}, {20, "5"}, {30, "0"}, {40, "-3"}});
  dxf += Tags({{0, "LINE"}, {8, "0"}, {10, "nan"}, {20, "0"}, {30, "0"}, {11, "10"}, {21, "10"}, {31, "0"}});
  dxf += Tags({{0, "ARC"}, {8, "0"}, {10, "1"}, {20, "1"}, {30, "0"}, {40, "inf"}, {50, "0"}, {51, "90"}});
  dxf += Tags({{0, "ELLIPSE"}, {8, "0"}, {10, "0"}, {20, "0"}, {30, "0"}, {11, "0"}, {21, "0"}, {31, "0"},
               {40, "0.5"}, {41, "0"}, {42, "6.283185307"}});
  dxf += Tags({{0, "INSERT"}, {8, "0"}, {2, "LOOP"}, {10, "0"}, {20, "0"}, {30, "0"}, {41, "1e300"},
               {42, "1e300"}, {70, "1000"}, {71, "1000"}, {44, "1"}, {45, "1"}});
  dxf += Tags({{0, "LWPOLYLINE"}, {8, "0"}, {90, "2"}, {70, "1"}, {10, "0"}, {20, "0"}, {42, "1e30"}, {10, "1"},
               {20, "1"}});
  dxf += Tags({{0, "LINE"}, {8, "WALLS"}, {10, "0"}, {20, "0"}, {30, "0"}, {11, "100"}, {21, "60"}, {31, "0"}});
  dxf += Tags({{0, "ENDSEC"}, {0, "EOF"}});
  WriteFile(dir.path() / "bad.dxf", dxf);
  for (const std::string views : {"", " -ALL", " -EXTENTS"}) {
    const ProgramRun run = RunDm2020("bad.dxf out.svg -Q" + views, dir.path());
    EXPECT_EQ(run.status, 0) << views;
    EXPECT_EQ(run.err, "") << views;
    ASSERT_TRUE(SvgFiles(dir.path()).count("out.svg")) << views << run.out;
    EXPECT_NE(ReadWholeFile(dir.path() / "out.svg").find("layer_WALLS"), std::string::npos) << views;
    if (HaveXmllint()) {
      EXPECT_TRUE(WellFormed(dir.path() / "out.svg")) << views;
    }
    fs::remove(dir.path() / "out.svg");
  }
}

// Drawings with something to see write a file: header extents that are one point, never set or not
// numbers are replaced by what the drawing draws, leaving out points no real drawing reaches; a
// drawing of one point is framed around it.
TEST(VectorOutput, DrawingsWithUnusableHeaderExtentsOrOnlyAPointWriteAFile) {
  const std::string line =
      Tags({{0, "LINE"}, {8, "WALLS"}, {10, "0"}, {20, "0"}, {30, "0"}, {11, "100"}, {21, "60"}, {31, "0"}});
  const std::string point = Tags({{0, "POINT"}, {8, "SURVEY"}, {10, "2600000"}, {20, "1200000"}, {30, "0"}});
  const std::string stray = Tags({{0, "POINT"}, {8, "STRAY"}, {10, "3e16"}, {20, "1e16"}, {30, "0"}});
  struct Case {
    const char* what;
    std::string extMin, extMax, entities, layer;
  };
  const Case cases[] = {
      {"one point", "5", "5", line, "layer_WALLS"},
      {"never set", "1e20", "-1e20", line, "layer_WALLS"},
      {"not numbers", "nan", "nan", line, "layer_WALLS"},
      {"only a point", "2600000", "2600000", point, "layer_SURVEY"},
      {"a stray point only damage makes", "1e20", "-1e20", line + stray, "layer_WALLS"},
  };
  for (const Case& c : cases) {
    ScratchDirectory dir;
    std::string dxf = Tags({{0, "SECTION"}, {2, "HEADER"}, {9, "$ACADVER"}, {1, "AC1009"}, {9, "$EXTMIN"},
                            {10, c.extMin}, {20, c.extMin}, {30, "0"}, {9, "$EXTMAX"}, {10, c.extMax},
                            {20, c.extMax}, {30, "0"}, {0, "ENDSEC"}, {0, "SECTION"}, {2, "ENTITIES"}});
    dxf += c.entities + Tags({{0, "ENDSEC"}, {0, "EOF"}});
    WriteFile(dir.path() / "in.dxf", dxf);
    const ProgramRun run = RunDm2020("in.dxf out.svg -Q -B=-1", dir.path());
    EXPECT_EQ(run.status, 0) << c.what;
    ASSERT_TRUE(SvgFiles(dir.path()).count("out.svg")) << c.what << run.out;
    const std::string svg = ReadWholeFile(dir.path() / "out.svg");
    EXPECT_NE(svg.find(c.layer), std::string::npos) << c.what;
    EXPECT_EQ(svg.find("viewBox=\"0 0 0 "), std::string::npos) << c.what;
    // The view is fitted to the drawing, not to what only damage puts far away.
    EXPECT_EQ(svg.find("layer_STRAY"), std::string::npos) << c.what;
  }
}

// An empty layout gets a viewport onto the model: its file shows the model's lines.
TEST(VectorOutput, AnEmptyLayoutShowsTheModel) {
  ScratchDirectory dir;
  const std::string make =
      "cd '" + dir.path().string() +
      "' && /usr/bin/python3 -c \"import ezdxf; d = ezdxf.new('R2010'); m = d.modelspace(); "
      "m.add_line((0, 0), (100, 50), dxfattribs={'layer': 'WALLS'}); d.layouts.new('Empty'); "
      "d.saveas('plan.dxf')\" 2>/dev/null";
  if (std::system(make.c_str()) != 0) GTEST_SKIP() << "python3-ezdxf is not installed";
  const ProgramRun run = RunDm2020("plan.dxf out.svg -Q -ALL", dir.path());
  EXPECT_EQ(run.status, 0);
  const std::set<std::string> files = SvgFiles(dir.path());
  ASSERT_TRUE(files.count("out__Layout02.svg")) << run.out;
  EXPECT_NE(ReadWholeFile(dir.path() / "out__Layout02.svg").find("layer_WALLS"), std::string::npos);
}

}  // namespace

// Side outputs and file names end to end: names in UTF-8 with blanks on every route, the CSV layer
// list, the HTML page asked for by the output name, and a JSON parameter file with entries of the
// wrong type.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>

#include "tests/app/RunProgram.h"

namespace fs = std::filesystem;

namespace {

fs::path SampleDrawing() { return fs::path(DM_SOURCE_DIR) / "samples" / "office.dxf"; }

// "Plän 1/Büro plan.dxf" and an output folder "Ausgabe é".
const std::string kInputFolder = "Pl\xC3\xA4n 1";
const std::string kInputName = kInputFolder + "/B\xC3\xBCro plan.dxf";
const std::string kOutputFolder = "Ausgabe \xC3\xA9";

class SideOutput : public testing::Test {
protected:
  void SetUp() override {
    fs::create_directories(dir_.path() / fs::u8path(kInputFolder));
    fs::create_directories(dir_.path() / fs::u8path(kOutputFolder));
    fs::copy_file(SampleDrawing(), dir_.path() / fs::u8path(kInputName));
  }
  bool Exists(const std::string& utf8) const { return fs::exists(dir_.path() / fs::u8path(utf8)); }
  std::string Read(const std::string& utf8) const { return ReadWholeFile(dir_.path() / fs::u8path(utf8)); }
  ProgramRun Run(const std::string& arguments) { return RunDm2020(arguments, dir_.path()); }

  ScratchDirectory dir_;
};

std::string PercentDecoded(const std::string& text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%' && i + 2 < text.size()) {
      out += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
      i += 2;
    } else {
      out += text[i];
    }
  }
  return out;
}

TEST_F(SideOutput, NonAsciiNamesWithBlanksAreFoundAndWritten) {
  const std::string out = kOutputFolder + "/\xC3\x9C" "bersicht 1";
  ProgramRun run = Run("'" + kInputName + "' '" + out + ".svg' -Q");
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_EQ(run.out.find("Does Not Exist"), std::string::npos) << run.out;
  EXPECT_TRUE(Exists(out + ".svg")) << run.out;

  // Every layout under its own name, beside the CSV list.
  run = Run("'" + kInputName + "' '" + out + ".svg' -ALL -CSV -Q");
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_TRUE(Exists(out + "__ModelSpace.svg")) << run.out;
  EXPECT_TRUE(Exists(out + "__Layout01.svg")) << run.out;
  EXPECT_TRUE(Exists(out + ".csv")) << run.out;

  // A missing input with such a name is still reported as missing, under its own name.
  run = Run("'" + kInputFolder + "/n\xC3\xB6pe.dxf' out.svg -Q");
  EXPECT_EQ(run.status, 102);
  EXPECT_EQ(run.out, "Input File Does Not Exist: " + kInputFolder + "/n\xC3\xB6pe.dxf\n");
}

TEST_F(SideOutput, DrawingFileAndLogFileTakeNonAsciiNames) {
  const fs::path drawing = fs::path(DM_CORPUS_DIR) / "dwg" / "2000" / "Arc.dwg";
  if (!fs::exists(drawing)) GTEST_SKIP() << "no corpus at " << DM_CORPUS_DIR;
  fs::copy_file(drawing, dir_.path() / fs::u8path(kInputFolder + "/B\xC3\xB6gen.dwg"));
  const std::string out = kOutputFolder + "/Ausgabe \xC3\xB1";
  const std::string log = kOutputFolder + "/Protokoll \xC3\xA9.txt";
  const ProgramRun run = Run("'" + kInputFolder + "/B\xC3\xB6gen.dwg' '" + out + "' -F=1014 -Q '-LOG=" + log + "'");
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_TRUE(Exists(out + ".dxf")) << run.out;
  EXPECT_NE(Read(log).find("Input File Name: " + kInputFolder + "/B\xC3\xB6gen.dwg"), std::string::npos);
}

TEST_F(SideOutput, CsvListBesideTheSvgOrUnderItsOwnName) {
  ProgramRun run = Run("'" + kInputName + "' '" + kOutputFolder + "/plan.svg' -CSV -Q");
  ASSERT_TRUE(Exists(kOutputFolder + "/plan.csv")) << run.out;
  const std::string list = Read(kOutputFolder + "/plan.csv");
  // The sample has 12 layers, each on a line of six fields, layer "0" first.
  const std::regex layerLine("L,[0-9]+,[^,]*,0,1,(visible|hidden)");
  std::istringstream lines(list);
  int layers = 0;
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind("L,", 0) != 0) continue;
    EXPECT_TRUE(std::regex_match(line, layerLine)) << line;
    ++layers;
  }
  EXPECT_EQ(layers, 12) << list;
  EXPECT_EQ(list.rfind("L,7,0,0,1,visible\n", 0), 0u) << list;

  const std::string named = kOutputFolder + "/Liste \xC3\xA9.csv";
  run = Run("'" + kInputName + "' '" + kOutputFolder + "/other.svg' '-CSV=" + named + "' -Q");
  EXPECT_TRUE(Exists(named)) << run.out;
  EXPECT_FALSE(Exists(kOutputFolder + "/other.csv"));
  EXPECT_EQ(Read(named), list);
}

// Every layer converted: the list still tells the layers the drawing had frozen or off.
TEST_F(SideOutput, CsvListKeepsTheDrawingsLayerStatesWhenEveryLayerIsConverted) {
  const std::string drawing =
      "0\nSECTION\n2\nTABLES\n0\nTABLE\n2\nLAYER\n"
      "0\nLAYER\n2\nFrozen\n70\n1\n62\n1\n0\nLAYER\n2\nOff\n70\n0\n62\n-2\n"
      "0\nENDTAB\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n"
      "0\nLINE\n8\nFrozen\n10\n0\n20\n0\n11\n5\n21\n5\n0\nLINE\n8\nOff\n10\n0\n20\n5\n11\n5\n21\n0\n"
      "0\nENDSEC\n0\nEOF\n";
  std::ofstream(dir_.path() / "states.dxf", std::ios::binary) << drawing;
  const ProgramRun run = Run("states.dxf states.svg -CSV -ALLLAYERS -Q");
  const std::string list = Read("states.csv");
  EXPECT_NE(list.find("L,1,Frozen,0,1,hidden\n"), std::string::npos) << list << run.out;
  EXPECT_NE(list.find("L,2,Off,0,1,hidden\n"), std::string::npos) << list;
  // Both were drawn all the same.
  EXPECT_NE(Read("states.svg").find("id=\"layer_Frozen\""), std::string::npos);
}

TEST_F(SideOutput, AnHtmlOutputNameWritesThePageBesideTheSvg) {
  const std::string stem = kOutputFolder + "/Plan \xC3\xA9 #1";
  ProgramRun run = Run("'" + kInputName + "' '" + stem + ".html' -Q");
  EXPECT_EQ(run.status, 0) << run.out;
  ASSERT_TRUE(Exists(stem + ".svg")) << run.out;
  ASSERT_TRUE(Exists(stem + ".html")) << run.out;
  EXPECT_FALSE(Exists(stem + ".html.svg"));
  const std::string page = Read(stem + ".html");
  std::smatch data;
  ASSERT_TRUE(std::regex_search(page, data, std::regex("data=\"([^\"]*)\""))) << page;
  EXPECT_TRUE(Exists(kOutputFolder + "/" + PercentDecoded(data[1].str()))) << data[1];
  EXPECT_NE(page.find("<title>Plan \xC3\xA9 #1</title>"), std::string::npos);
  EXPECT_NE(page.find("type=\"checkbox\">layer_"), std::string::npos);

  run = Run("'" + kInputName + "' '" + kOutputFolder + "/short.HTM' -Q");
  EXPECT_TRUE(Exists(kOutputFolder + "/short.svg")) << run.out;
  EXPECT_TRUE(Exists(kOutputFolder + "/short.HTM")) << run.out;
  // With every view converted the page shows the file under the output name, the first.
  run = Run("'" + kInputName + "' '" + kOutputFolder + "/all.html' -ALL -Q");
  EXPECT_TRUE(Exists(kOutputFolder + "/all__ModelSpace.svg")) << run.out;
  EXPECT_NE(Read(kOutputFolder + "/all.html").find("data=\"all.svg\""), std::string::npos);
  // An SVG name asks for no page.
  run = Run("'" + kInputName + "' '" + kOutputFolder + "/plain.svg' -Q");
  EXPECT_FALSE(Exists(kOutputFolder + "/plain.htm"));
}

TEST_F(SideOutput, JsonEntryOfTheWrongTypeIsNamedAndTheRunGoesOn) {
  ProgramRun run = Run("'" + kInputName + "' out.svg '-JSON={\"Blocks\": [\"Door\", {\"Blockname\": \"W\"}]}' -Q");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_NE(run.out.find("JSON Parameter Ignored: Blocks[0] is not an object\n"), std::string::npos) << run.out;
  EXPECT_TRUE(Exists("out.svg")) << run.out;
}

}  // namespace

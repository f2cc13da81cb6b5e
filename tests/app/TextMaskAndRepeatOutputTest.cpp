// Details a user sees in the written SVG: the backgrounds behind multi-line texts, the width factor
// of single-line texts, and a line that two entities draw alike.
#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <string>

#include "tests/app/RunProgram.h"

namespace {

std::string Entity(const std::string& groups) { return "0\n" + groups; }

std::string MText(const char* text, double y, const char* background) {
  return Entity("MTEXT\n8\n0\n62\n5\n10\n0\n20\n" + std::to_string(y) + "\n30\n0\n40\n2.5\n1\n" + text + "\n" +
                background + "45\n1.5\n");
}

std::string Text(const char* text, double y, const char* widthFactor) {
  return Entity("TEXT\n8\n0\n10\n0\n20\n" + std::to_string(y) + "\n30\n0\n40\n2.5\n1\n" + text + "\n41\n" +
                widthFactor + "\n");
}

std::string Line(double y) {
  std::string at = std::to_string(y);
  return Entity("LINE\n8\n0\n10\n0\n20\n" + at + "\n30\n0\n11\n30\n21\n" + at + "\n31\n0\n");
}

std::string Drawing() {
  return "0\nSECTION\n2\nENTITIES\n" + MText("MASKED", 10, "90\n1\n63\n1\n") + MText("CANVAS", 0, "90\n3\n63\n256\n") +
         Text("WIDE", -10, "1.0") + Text("NARROW", -20, "0.9") + Line(-30) + Line(-30) + "0\nENDSEC\n0\nEOF\n";
}

class TextMaskAndRepeatOutput : public ::testing::Test {
protected:
  void SetUp() override {
    std::ofstream(dir.path() / "d.dxf", std::ios::binary) << Drawing();
    const ProgramRun run = RunDm2020("d.dxf d.svg -SVG -B=-1", dir.path());
    ASSERT_EQ(run.status, 0) << run.out;
    svg = ReadWholeFile(dir.path() / "d.svg");
  }
  // The opening tag of the element that holds `marker`, empty when none does.
  std::string Element(const std::string& marker) const {
    size_t at = svg.find(marker);
    if (at == std::string::npos) return {};
    size_t start = svg.rfind('<', at);
    return svg.substr(start, svg.find('>', at) - start);
  }
  ScratchDirectory dir;
  std::string svg;
};

TEST_F(TextMaskAndRepeatOutput, BackgroundsTakeTheirFillOrThePageColourNotTheTextColour) {
  EXPECT_NE(Element("handle='6'").find("fClr_red"), std::string::npos) << Element("handle='6'");
  EXPECT_NE(Element("handle='7'").find("fClr_white"), std::string::npos) << Element("handle='7'");
}

TEST_F(TextMaskAndRepeatOutput, WidthFactorsAreScaledFromTheDrawingsFactor) {
  // The writer draws plain text at 0.9 of its width: a factor of 1.0 widens it, 0.9 leaves it.
  EXPECT_NE(Element(">WIDE").find("scale(1.11111 1)"), std::string::npos) << Element(">WIDE");
  EXPECT_EQ(Element(">NARROW").find("scale("), std::string::npos) << Element(">NARROW");
}

TEST_F(TextMaskAndRepeatOutput, ALineDrawnByTwoEntitiesIsWrittenOnce) {
  const std::regex stroke("class=\"sClr_black  ZW\" d=\"([^\"]*)\"");
  std::smatch found;
  ASSERT_TRUE(std::regex_search(svg, found, stroke));
  const std::string data = found[1];
  EXPECT_EQ(data.find('M'), data.rfind('M')) << data;
}

}  // namespace

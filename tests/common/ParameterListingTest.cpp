// The three texts of the command line, checked byte for byte: excerpts written out here, and a
// fingerprint of the whole text so that a single changed character anywhere is caught.
#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "projects/common/ParameterListing.h"

namespace {

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  std::string line;
  while (std::getline(in, line)) lines.push_back(line);
  return lines;
}

std::uint64_t fingerprint(const std::string& text) {
  std::uint64_t h = 0xcbf29ce484222325ULL;
  for (unsigned char c : text) h = (h ^ c) * 0x100000001b3ULL;
  return h;
}

std::string listing() {
  std::ostringstream out;
  WriteParameterListing(out);
  return out.str();
}

std::string history() {
  std::ostringstream out;
  WriteProgramHistory(out);
  return out.str();
}

std::string rowText(const ParameterHelpRow& row) {
  std::ostringstream out;
  WriteParameterRow(out, row);
  return out.str();
}

const std::string kTitleIndent(24, ' ');

TEST(ParameterListing, BeginsWithHeadingRuleAndFirstSection) {
  std::vector<std::string> lines = linesOf(listing());
  ASSERT_GE(lines.size(), 8u);
  std::vector<std::string> expected = {
      "                        Parameters",
      std::string(75, '='),
      "",
      kTitleIndent + "Input/Output Parameters",
      kTitleIndent + "-----------------------",
      std::string("I").append(23, ' ').append("Input File"),
      std::string("O").append(23, ' ').append("Output File"),
      std::string("ID").append(22, ' ').append("Input Directory"),
  };
  for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(lines[i], expected[i]) << "line " << i;
}

TEST(ParameterListing, EndsAfterTheResetRowWithTwoEmptyLines) {
  std::string text = listing();
  const std::string tail =
      std::string("HIS[TORY]").append(15, ' ').append("Program History\n").append("Z").append(23, ' ').append(
          "Reset All Parameters\n\n\n");
  ASSERT_GE(text.size(), tail.size());
  EXPECT_EQ(text.substr(text.size() - tail.size()), tail);
}

TEST(ParameterListing, RowsInTheMiddleKeepMarkerColumnAndUpperCaseKeywords) {
  std::vector<std::string> lines = linesOf(listing());
  const std::vector<std::string> mustAppear = {
      "JPG                *R   Alias for JPEG Output (-F=JPG)",
      "AU[TOTRIM]         *R   Trim Whitespace from Raster Image",
      "DENY=ED                 Prevent PDF Editing",
      "VN=*LAYOUTSONLY*        Only convert all layouts (no paperspace view)",
      "                        For raster output, margin value is pixel width",
      "                                    2:Paperspace)",
      "BW                      Force to Black & White ",
      "DENY                    Prevent PDF actions (Can be seperated by commas)",
      kTitleIndent + "Raster Output Parameters",
      kTitleIndent + "------------------------",
  };
  for (const std::string& line : mustAppear)
    EXPECT_NE(std::find(lines.begin(), lines.end(), line), lines.end()) << "missing: [" << line << "]";
}

TEST(ParameterListing, WholeTextIsByteExact) {
  std::string text = listing();
  EXPECT_EQ(linesOf(text).size(), 267u);
  EXPECT_EQ(text.size(), 12983u);
  EXPECT_EQ(fingerprint(text), 0x138dd347828f429cULL);
}

TEST(ParameterListing, KeywordColumnIsNineteenWideUnlessTheKeywordFillsIt) {
  struct Case {
    std::string keyword;
    std::string expected;
  };
  const std::vector<Case> cases = {
      {"ab", "AB                 *R   text\n"},
      {std::string(18, 'k'), std::string(18, 'K') + " *R   text\n"},
      {std::string(19, 'k'), std::string(19, 'K') + "  *R   text\n"},
      {"a_very_long_keyword_name=value", "A_VERY_LONG_KEYWORD_NAME=VALUE  *R   text\n"},
  };
  for (const Case& c : cases) EXPECT_EQ(rowText({c.keyword, "*R ", "text"}), c.expected) << c.keyword;
}

TEST(ParameterListing, SectionTitleIsUnderlinedToItsOwnLength) {
  EXPECT_EQ(rowText({"", "   ", "Unit Parameters"}),
            "\n" + kTitleIndent + "Unit Parameters\n" + kTitleIndent + "---------------\n");
  EXPECT_EQ(rowText({"", "   ", "X"}), "\n" + kTitleIndent + "X\n" + kTitleIndent + "-\n");
}

TEST(ParameterListing, TableHasOneResetRowAndItIsLast) {
  ASSERT_GT(g_ParameterHelpRowCount, 0u);
  EXPECT_EQ(g_ParameterHelpRows[g_ParameterHelpRowCount - 1].keyword, "Z");
  for (std::size_t i = 0; i < g_ParameterHelpRowCount; ++i) {
    const std::string& marker = g_ParameterHelpRows[i].marker;
    EXPECT_TRUE(marker == "   " || marker == "*R ") << "row " << i;
  }
}

TEST(OutputFormatList, NamesOnlyPdf) {
  std::ostringstream out;
  WriteOutputFormatList(out);
  EXPECT_EQ(out.str(), "\n<<< Output Format List >>>\nAcrobat PDF\n<<< End of Output Format List >>>\n\n");
}

TEST(ProgramHistory, HeadingThen204LinesNewestFirst) {
  std::string text = history();
  std::vector<std::string> lines = linesOf(text);
  ASSERT_EQ(lines.size(), 205u);
  EXPECT_EQ(lines[0], "                         Program History");
  EXPECT_EQ(lines[1], "1.08      Fixed vectorization bug introduced by undocumented");
  EXPECT_EQ(lines[2], "9/7/11    change in toolkit");
  EXPECT_EQ(lines[204], "3/23/05  ");
  EXPECT_EQ(lines[203], "2.03      Various minor fixes");
  EXPECT_NE(std::find(lines.begin(), lines.end(), "2.46      Added Inivisible Text \"Behind\" DWF Stroked Text"),
            lines.end());
  EXPECT_EQ(text.size(), 6298u);
  EXPECT_EQ(fingerprint(text), 0x433afb07b2b3064cULL);
}

TEST(ParameterTexts, PrintedToStandardOutput) {
  testing::internal::CaptureStdout();
  ListParameters();
  ListOutputFormats();
  ListProgramHistory();
  std::string printed = testing::internal::GetCapturedStdout();
  std::ostringstream formats;
  WriteOutputFormatList(formats);
  EXPECT_EQ(printed, listing() + formats.str() + history());
}

}  // namespace

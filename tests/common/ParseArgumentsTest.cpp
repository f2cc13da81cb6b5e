// From process arguments to the parameter set: positional names, joined values, dash kinds,
// escapes, the keys handled before the keyword table, derived names and the per-parse reset.
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/common/ParameterTestSupport.h"

using parameter_test::Parse;
using parameter_test::ParseCapturing;
using parameter_test::Utf8;

namespace {

struct NamesCase {
  std::vector<std::string> arguments;
  std::string input;
  std::string output;
};

class ArgumentNames : public testing::TestWithParam<NamesCase> {};

TEST_P(ArgumentNames, InputAndOutput) {
  CParseCommandLine p;
  ParseCapturing(p, GetParam().arguments);
  EXPECT_EQ(Utf8(p.GetInputFile()), GetParam().input);
  EXPECT_EQ(Utf8(p.GetOutputFile()), GetParam().output);
}

INSTANTIATE_TEST_SUITE_P(
    Positional, ArgumentNames,
    testing::Values(
        NamesCase{{"a.dwg"}, "a.dwg", "a.svg"},
        NamesCase{{"a.dwg", "-F=PNG"}, "a.dwg", "a.png"},
        NamesCase{{"a.dwg", "-PDF"}, "a.dwg", "a.pdf"},
        NamesCase{{"a.dwg", "-F=BMP"}, "a.dwg", "a"},  // a code without an extension
        NamesCase{{"dir.v2/plan", "-F=DXF"}, "dir.v2/plan", "dir.dxf"},
        NamesCase{{"a.dwg", "out.svg"}, "a.dwg", "out.svg"},
        // A third positional argument is a value of the second.
        NamesCase{{"a.dwg", "out.svg", "svg"}, "a.dwg", "out.svg=svg"},
        // The output is positional only when the input is.
        NamesCase{{"-Q", "a.dwg"}, "", ""},
        NamesCase{{"-I=x.dwg", "-O=y.pdf"}, "x.dwg", "y.pdf"},
        NamesCase{{"-i", "x.dwg"}, "x.dwg", "x.svg"},
        // "-I" followed by a dashed argument takes it as the name.
        NamesCase{{"-I", "-odd.dwg", "-Q"}, "-odd.dwg", "-odd.svg"},
        NamesCase{{"C:\\plans\\a.dwg"}, "C:/plans/a.dwg", "C:/plans/a.svg"},
        NamesCase{{"my%20plan.dwg"}, "my plan.dwg", "my plan.svg"},
        NamesCase{{"%28a%29%2C.dwg"}, "(a)%2C.dwg", "(a)%2C.svg"},
        NamesCase{{"a%2520b.dwg"}, "a b.dwg", "a b.svg"},
        NamesCase{{"dir/sub/a.dwg", "-SUB"}, "a.dwg", "a.svg"},
        NamesCase{{"dir/sub/a.dwg", "-SUB", "-OD=out"}, "a.dwg", "a.svg"},
        NamesCase{{"-OD=out", "-I=in/a.dwg"}, "in/a.dwg", "out/a.svg"}));

TEST(ParseArguments, ValuesAfterABlankAreJoinedToTheirKeyword) {
  CParseCommandLine p;
  ParseCapturing(p, {"a.dwg", "out", "-LOG", "run.log", "-LAYERS_OFF", "A", "B", "-Q"});
  EXPECT_EQ(Utf8(p.GetLogFileName()), "run.log");
  EXPECT_EQ(Utf8(p.GetLayersOff()), "A=B");
  EXPECT_EQ(p.GetQuiet(), 1);
  EXPECT_EQ(Utf8(p.GetOutputFile()), "out");
}

TEST(ParseArguments, OtherDashKindsIntroduceParameters) {
  for (const char* dash : {"\xE2\x80\x93", "\xE2\x80\x94"}) {  // en dash, em dash
    CParseCommandLine p;
    ParseCapturing(p, {"a.dwg", std::string(dash) + "Q", std::string(dash) + "RWD=640"});
    EXPECT_EQ(p.GetQuiet(), 1) << dash;
    EXPECT_EQ(p.GetWidth(), 640) << dash;
  }
  // A slash cannot start a parameter after a positional name: it is read as a value.
  CParseCommandLine p;
  ParseCapturing(p, {"a.dwg", "out.svg", "/Q"});
  EXPECT_EQ(p.GetQuiet(), 0);
  EXPECT_EQ(Utf8(p.GetOutputFile()), "out.svg=/Q");
}

TEST(ParseArguments, BackslashesAndEscapesInValues) {
  CParseCommandLine p;
  ParseCapturing(p, {"a.dwg", "-LOG=C:\\logs\\my%20run.log", "-XPATH=C:\\xref", "-TITLE=%22Plan%22%21"});
  EXPECT_EQ(Utf8(p.GetLogFileName()), "C:/logs/my run.log");
  EXPECT_EQ(Utf8(p.GetXrefPath()), "C:/xref/");
  EXPECT_EQ(std::string(p.GetTitle().c_str()), "\"Plan\"!");
}

TEST(ParseArguments, StampAndZAreHandledBeforeTheKeywordTable) {
  CParseCommandLine p;
  ParseCapturing(p, {"a.dwg", "-STAMP=logo.png", "-F=PNG", "-RWD=800", "-MONO", "-Z", "-VER=9"});
  EXPECT_EQ(Utf8(p.GetStampName()), "logo.png");
  EXPECT_EQ(p.GetOutputFormat(), 1000);
  EXPECT_EQ(p.GetWidth(), 1000);
  EXPECT_EQ(p.GetHeight(), 1000);
  EXPECT_EQ(p.GetColorMode(), 0);
  EXPECT_EQ(p.GetEncoding(), 2);
  EXPECT_EQ(p.GetVersion(), 9);  // after Z, which sets 4
  EXPECT_EQ(Utf8(p.GetOutputFile()), "a.dwf");
}

TEST(ParseArguments, SubDirectoriesSplitNamesFromDirectories) {
  CParseCommandLine p;
  ParseCapturing(p, {"dir/sub/a.dwg", "-SUB", "-OD=out/x"});
  EXPECT_EQ(Utf8(p.GetInputDirectory()), "dir/sub/");
  EXPECT_EQ(Utf8(p.GetOutputDirectory()), "out/x/");

  CParseCommandLine q;
  ParseCapturing(q, {"a.dwg", "-SUB"});
  EXPECT_EQ(Utf8(q.GetInputDirectory()), "");
  EXPECT_EQ(Utf8(q.GetInputFile()), "a.dwg");
}

TEST(ParseArguments, PlotStyleFileComesFromTheEnvironmentUnlessGiven) {
  setenv("CTBFILE", "/etc/plot.ctb", 1);
  CParseCommandLine p;
  ParseCapturing(p, {"a.dwg"});
  EXPECT_EQ(Utf8(p.GetCTBFileName()), "/etc/plot.ctb");
  CParseCommandLine q;
  ParseCapturing(q, {"a.dwg", "-CTB=mine.ctb"});
  EXPECT_EQ(Utf8(q.GetCTBFileName()), "mine.ctb");
  unsetenv("CTBFILE");
  CParseCommandLine r;
  ParseCapturing(r, {"a.dwg"});
  EXPECT_TRUE(r.IsCTBFileNameEmpty());
}

TEST(ParseArguments, EachParseStartsFromThePerParseDefaults) {
  CParseCommandLine p;
  ParseCapturing(p, {"a.dwg", "out.pdf", "-LAYERS_OFF=A", "-MODEL", "-LAYOUT=S1", "-DF=COURIER", "-AUTHOR=me",
                     "-RWD=800", "-F=PDF"});
  EXPECT_EQ(p.GetViewMode(), 12);
  ParseCapturing(p, {"b.dwg"});
  EXPECT_TRUE(p.IsLayersOffEmpty());
  EXPECT_TRUE(p.IsLayoutNameEmpty());
  EXPECT_EQ(p.GetViewMode(), 0);
  EXPECT_EQ(Utf8(p.GetDefaultFont()), "ARIAL");
  EXPECT_EQ(std::string(p.GetAuthor().c_str()), "");
  EXPECT_EQ(Utf8(p.GetFormatExt()), "dwf");
  EXPECT_EQ(Utf8(p.GetOutputFile()), "b.pdf");  // the format itself is kept
  EXPECT_EQ(p.GetWidth(), 800);
}

TEST(ParseArguments, DefaultsBeforeAndAfterParsing) {
  CParseCommandLine p;
  EXPECT_EQ(p.GetOutputFormat(), 1016);
  EXPECT_TRUE(p.IsFormatExtEmpty());
  EXPECT_EQ(p.GetWidth(), 2500);
  EXPECT_EQ(p.GetHeight(), 2500);
  EXPECT_FALSE(p.GetDecimalComma());
  EXPECT_EQ(p.GetOrientation(), -1);
  EXPECT_EQ(p.GetBackground(), 255);
  EXPECT_EQ(p.GetColorQuantization(), 3);
  EXPECT_DOUBLE_EQ(p.GetDashScale(), 0.02);
  EXPECT_DOUBLE_EQ(p.GetMinLineWidth(), 0.1);
  EXPECT_DOUBLE_EQ(p.GetMaxDash(), -1.0);
  EXPECT_TRUE(p.GetProcessBlocks());
  EXPECT_TRUE(p.GetNoUninit());
  EXPECT_TRUE(p.GetStrictHyperlink());
  EXPECT_EQ(p.GetWatermarkColor(), 7);
  EXPECT_EQ(Utf8(p.GetDefaultItalicFont()), "ARIALI");
  ParseCapturing(p, {"a.dwg"});
  EXPECT_EQ(Utf8(p.GetFormatExt()), "dwf");
  EXPECT_EQ(p.GetOutputFormat(), 1016);
  EXPECT_EQ(Utf8(p.GetOutputFile()), "a.svg");
}

TEST(ParseArguments, RequestedTextsArePrintedAndParsingGoesOn) {
  CParseCommandLine p;
  std::string out = ParseCapturing(p, {"a.dwg", "-F=?", "-RWD=640"});
  EXPECT_NE(out.find("<<< Output Format List >>>"), std::string::npos);
  EXPECT_EQ(p.GetOutputFormat(), -1);
  EXPECT_EQ(p.GetWidth(), 640);

  EXPECT_GT(ParseCapturing(p, {"-?"}).size(), 1000u);
  EXPECT_GT(ParseCapturing(p, {"-HIS"}).size(), 1000u);
  EXPECT_GT(ParseCapturing(p, {"-history"}).size(), 1000u);
}

TEST(ParseArguments, TracedStringGettersNameThemselves) {
  CParseCommandLine p;
  ParseCapturing(p, {"a.dwg", "-LOG=run.log"});
  testing::internal::CaptureStdout();
  p.GetLogFileName();
  SetTraceEnabled(true);
  p.GetLogFileName();
  SetTraceEnabled(false);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "GetLogFileName: run.log\n");
}

TEST(ParseArguments, VerboseSwitchesTracingOn) {
  CParseCommandLine p;
  ParseCapturing(p, {"a.dwg", "-VERBOSE"});
  EXPECT_TRUE(IsTraceEnabled());
  SetTraceEnabled(false);
  ParseCapturing(p, {"a.dwg", "-trace"});
  EXPECT_TRUE(IsTraceEnabled());
  SetTraceEnabled(false);
}

TEST(ParseArguments, OddAndOverlongArgumentsAreHarmless) {
  const std::string longValue(100000, 'x');
  CParseCommandLine p;
  std::string out = ParseCapturing(p, {"a.dwg", "-LOG=" + longValue, "-F=" + longValue,
                                       "-\xFF\xFE=\x80", "", "-", "-=", "-I"});
  EXPECT_EQ(Utf8(p.GetLogFileName()), longValue);
  EXPECT_EQ(p.GetOutputFormat(), 1016);
  EXPECT_TRUE(out.empty());
  // "-I" at the end takes the end marker.
  EXPECT_EQ(Utf8(p.GetInputFile()), " ");
}

}  // namespace

// The program entry as the shell sees it: exit codes, the banner, the file checks and the closing
// lines, by running the built program.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "tests/app/RunProgram.h"

namespace fs = std::filesystem;

namespace {

const char kUsage[] = "usage: dm2020 <input file> <output file> <format> <parameters>\n\n";
const char kBannerFirstLine[] = "                 Draftmill 2020 V20.04.02a\n";

void WriteFile(const fs::path& file, const std::string& text) {
  std::ofstream out(file, std::ios::binary);
  out << text;
}

fs::path SampleDrawing() { return fs::path(DM_SOURCE_DIR) / "samples" / "office.dxf"; }

TEST(Entry, NoArgumentsPrintsOnlyTheUsageAndReturnsOne) {
  ScratchDirectory dir;
  const ProgramRun run = RunDm2020("", dir.path());
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, kUsage);
  EXPECT_EQ(run.err, "");
}

TEST(Entry, MissingInputPrintsBannerThenMessageAndShellSees102) {
  ScratchDirectory dir;
  const ProgramRun run = RunDm2020("nothere.dwg", dir.path());
  EXPECT_EQ(run.status, 102);
  ASSERT_EQ(run.out.rfind(kBannerFirstLine, 0), 0u) << run.out;
  EXPECT_NE(run.out.find("\n" + std::string(60, '=') + "\n"), std::string::npos);
  EXPECT_NE(run.out.find("Input File Does Not Exist: nothere.dwg\n"), std::string::npos);
  // Nothing after the check: no conversion, no elapsed time.
  EXPECT_EQ(run.out.find("Elapsed Time"), std::string::npos);
}

TEST(Entry, BannerHasSixLines) {
  ScratchDirectory dir;
  const ProgramRun run = RunDm2020("nothere.dwg", dir.path());
  const auto message = run.out.find("Input File Does Not Exist");
  ASSERT_NE(message, std::string::npos);
  const std::string banner = run.out.substr(0, message);
  EXPECT_EQ(std::count(banner.begin(), banner.end(), '\n'), 6) << banner;
}

TEST(Entry, QuietDropsTheBannerButNotTheMessages) {
  ScratchDirectory dir;
  const ProgramRun run = RunDm2020("nothere.dwg out.svg -Q", dir.path());
  EXPECT_EQ(run.status, 102);
  EXPECT_EQ(run.out, "Input File Does Not Exist: nothere.dwg\n");
}

TEST(Entry, MissingOutputDirectoryIsReportedWithItsSeparator) {
  ScratchDirectory dir;
  fs::copy_file(SampleDrawing(), dir.path() / "in.dxf");
  const ProgramRun run = RunDm2020("in.dxf nodir/out.svg -Q", dir.path());
  EXPECT_EQ(run.status, 102);
  EXPECT_EQ(run.out, "Output Directory Does Not Exist: nodir/\n");
  EXPECT_FALSE(fs::exists(dir.path() / "nodir"));
}

TEST(Entry, RunThatReachesTheConverterEndsWithElapsedTimeAndZero) {
  ScratchDirectory dir;
  // Not a drawing at all: the converter reports it, the exit code stays 0 by design.
  WriteFile(dir.path() / "junk.dwg", "this is not a drawing");
  const ProgramRun run = RunDm2020("junk.dwg junk.svg -Q", dir.path());
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("\nElapsed Time: "), std::string::npos) << run.out;
  EXPECT_NE(run.out.find(" seconds\n"), std::string::npos);
  EXPECT_EQ(run.out.find("Done."), std::string::npos);
  EXPECT_EQ(run.err, "");
}

TEST(Entry, DoneIsPrintedOnlyWhenTracing) {
  ScratchDirectory dir;
  WriteFile(dir.path() / "junk.dxf", "0\nEOF\n");
  for (const char* flag : {"-VERBOSE", "-TRACE"}) {
    const ProgramRun run = RunDm2020(std::string("junk.dxf junk.svg -Q ") + flag, dir.path());
    EXPECT_EQ(run.status, 0) << flag;
    EXPECT_NE(run.out.find("\nDone.\n"), std::string::npos) << flag << "\n" << run.out;
  }
}

TEST(Entry, OutputWithoutDirectoryPartSkipsTheDirectoryCheck) {
  ScratchDirectory dir;
  fs::copy_file(SampleDrawing(), dir.path() / "in.dxf");
  const ProgramRun run = RunDm2020("in.dxf out.svg -Q", dir.path());
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out.find("Does Not Exist"), std::string::npos) << run.out;
}

TEST(Entry, LogFileTakesTheConverterLinesUntilTheConversionEnds) {
  ScratchDirectory dir;
  // DXF content under a DWG name: a DWG input as far as the formats go, so DXF output is allowed.
  fs::copy_file(SampleDrawing(), dir.path() / "in.dwg");
  const ProgramRun run = RunDm2020("in.dwg out.dxf -F=DXF -Q -LOG run.log", dir.path());
  EXPECT_EQ(run.status, 0);
  const std::string log = ReadWholeFile(dir.path() / "run.log");
  EXPECT_NE(log.find("Input File Name: in.dwg\n"), std::string::npos) << log;
  EXPECT_EQ(run.out.find("Input File Name"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("Elapsed Time: "), std::string::npos) << run.out;
  EXPECT_TRUE(fs::exists(dir.path() / "out.dxf"));
}

TEST(Entry, ListingsAreTextsThatDoNotEndTheRun) {
  ScratchDirectory dir;
  const ProgramRun formats = RunDm2020("-F=? -Q", dir.path());
  EXPECT_EQ(formats.out.rfind("\n<<< Output Format List >>>\nAcrobat PDF\n<<< End of Output Format List >>>\n\n", 0), 0u)
      << formats.out;
  const ProgramRun history = RunDm2020("-HIS -Q", dir.path());
  EXPECT_EQ(history.out.rfind("                         Program History\n", 0), 0u);
  const ProgramRun listing = RunDm2020("-? -Q", dir.path());
  EXPECT_EQ(listing.out.rfind("                        Parameters\n" + std::string(75, '=') + "\n", 0), 0u);
  // The run goes on after each text: with no input named, the input check speaks last.
  for (const ProgramRun* run : {&formats, &history, &listing}) {
    EXPECT_NE(run->out.find("Input File Does Not Exist"), std::string::npos);
  }
}

}  // namespace

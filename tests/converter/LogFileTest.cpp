// LOG: the log file takes every line of the run until EndConversion gives standard output back.
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdlib>
#include <string>

#include "converter/CDm2017.h"
#include "services/Trace.h"
#include "tests/converter/ConverterTestSupport.h"

namespace {

using namespace converter_test;

// The log stream is opened once per process, so one test covers the in-process story.
TEST(LogFile, ReplacesStandardOutputUntilEndConversion) {
  Scratch scratch;
  const std::string log = scratch.file("run.log");
  CapturedOutput terminal;
  {
    CDm2017 converter;
    converter.ready = true;
    SetTraceEnabled(true);
    converter.SetLogFileName(Wide(log));
    SetTraceEnabled(false);
    std::cout << "during the run\n";
    converter.SetOutputFormat(2003);
    ASSERT_EQ(converter.ReadInputFile(Wide(kSampleDxf)), 0);
    converter.StartConversion();
    EXPECT_TRUE(converter.HasLogFile());
    converter.EndConversion();
    std::cout << "after the run\n";
  }
  EXPECT_EQ(terminal.text(), "Log File Name: " + log + "\nafter the run\n");
  EXPECT_EQ(Slurp(log),
            "during the run\nInput File Name: " + kSampleDxf + "\nUnsupported Output Format\n");
}

int RunProgram(const std::string& arguments, const Scratch& scratch, std::string& out) {
  const std::string outFile = scratch.file("stdout.txt");
  const std::string command = "cd '" + scratch.path().string() + "' && '" DM2020_EXE "' " + arguments +
                              " >'" + outFile + "' 2>/dev/null";
  const int raw = std::system(command.c_str());
  out = Slurp(outFile);
  return WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
}

TEST(LogFile, TheProgramsClosingLinesReachTheTerminal) {
  Scratch scratch;
  std::string out;
  const std::string input = scratch.copy(kSampleDxf, "office.dxf");
  ASSERT_EQ(RunProgram("office.dxf out.tif -TIFF -LOG=run.log", scratch, out), 0);
  const std::string log = Slurp(scratch.file("run.log"));
  EXPECT_NE(log.find("Input File Name: office.dxf\n"), std::string::npos) << log;
  EXPECT_NE(log.find("Unsupported Output Format\n"), std::string::npos) << log;
  EXPECT_EQ(log.find("Elapsed Time"), std::string::npos);
  EXPECT_EQ(out.find("Input File Name"), std::string::npos) << out;
  EXPECT_NE(out.find("Elapsed Time: "), std::string::npos) << out;
}

TEST(LogFile, AnInputThatIsNotLoadedKeepsTheLogToTheEnd) {
  // Without a load there is no EndConversion: the closing lines go to the log as well.
  Scratch scratch;
  std::string out;
  scratch.write("plan.xyz", "whatever");
  ASSERT_EQ(RunProgram("plan.xyz out.svg -LOG=run.log -Q", scratch, out), 0);
  const std::string log = Slurp(scratch.file("run.log"));
  EXPECT_NE(log.find("Elapsed Time: "), std::string::npos) << log;
  EXPECT_EQ(out, "");
}

}  // namespace

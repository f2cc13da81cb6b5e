// The diagnostic line printers: what each kind prints, when, and how often.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "services/Trace.h"

namespace {

std::string captured(const std::function<void()>& print) {
  testing::internal::CaptureStdout();
  print();
  return testing::internal::GetCapturedStdout();
}

class TraceTest : public testing::Test {
protected:
  void SetUp() override { ResetPrintedMessages(); }
  void TearDown() override {
    SetTraceEnabled(false);
    ResetPrintedMessages();
  }
};

TEST_F(TraceTest, TracedLinesNeedTheSwitchPlainLinesDoNot) {
  const OdString name(L"plan.dwg");
  struct Case {
    const char* what;
    std::function<void()> print;
    std::string line;
  };
  const std::vector<Case> traced = {
      {"label", [] { TraceMessage("Convert"); }, "Convert\n"},
      {"narrow", [] { TraceMessage("Input File Name", "plan.dwg"); }, "Input File Name: plan.dwg\n"},
      {"wide", [] { TraceMessage("Font", L"r\xF6mans"); }, "Font: r\xC3\xB6mans\n"},
      {"kit string", [&] { TraceMessage("Input File Name", name); }, "Input File Name: plan.dwg\n"},
      {"std::string", [] { TraceMessage("Path", std::string("/tmp/x")); }, "Path: /tmp/x\n"},
      {"double", [] { TraceMessage("Scale", 0.25); }, "Scale: 0.25\n"},
      {"int64", [] { TraceMessage("Handle", std::int64_t{1} << 40); }, "Handle: 1099511627776\n"},
      {"int", [] { TraceMessage("Count", -3); }, "Count: -3\n"},
      {"wide label", [] { TraceMessage(L"Wide", L"\x20AC"); }, "Wide: \xE2\x82\xAC\n"},
  };
  for (const Case& c : traced) {
    SetTraceEnabled(false);
    EXPECT_EQ(captured(c.print), "") << c.what;
    SetTraceEnabled(true);
    EXPECT_EQ(captured(c.print), c.line) << c.what;
  }
  SetTraceEnabled(false);
  EXPECT_EQ(captured([] { PrintMessage("Input File Name", "plan.dwg"); }), "Input File Name: plan.dwg\n");
  EXPECT_EQ(captured([] { PrintMessage("Input File Name", L"pl\xE4n.dwg"); }), "Input File Name: pl\xC3\xA4n.dwg\n");
  EXPECT_EQ(captured([] { PrintMessage("No valid Input File"); }), "No valid Input File\n");
}

TEST_F(TraceTest, WideLabelThatLooksLikeAFormatIsPrintedLiterally) {
  EXPECT_EQ(captured([] { PrintMessage(L"Teigha Error: %ls\n\n", L"File not found"); }),
            "Teigha Error: %ls\n\n: File not found\n");
}

TEST_F(TraceTest, OnceLinesPrintOnlyTheFirstTimeTheWholeLineOccurs) {
  std::string printed = captured([] {
    for (int view = 0; view < 3; ++view) {
      PrintMessageOnce("Unsupported Output Format");
      PrintMessageOnce("Layer Name Not Found", "Walls");
      PrintMessageOnce("Layer Name Not Found", "Doors");
      PrintMessageOnce("Scale", 1.5);
      PrintMessageOnce("Count", 7);
      PrintMessageOnce("Count", std::int64_t{7});
      PrintMessageOnce("Font", L"\x20AC");
    }
  });
  EXPECT_EQ(printed,
            "Unsupported Output Format\n"
            "Layer Name Not Found: Walls\n"
            "Layer Name Not Found: Doors\n"
            "Scale: 1.5\n"
            "Count: 7\n"
            "Font: \xE2\x82\xAC\n");
}

TEST_F(TraceTest, WideOnceLinesKeepTheirOwnList) {
  std::string printed = captured([] {
    PrintMessageOnce("Missing");
    PrintMessageOnce(L"Missing");
    PrintMessageOnce(L"Missing");
    PrintMessageOnce(L"Missing", L"x");
  });
  EXPECT_EQ(printed, "Missing\nMissing\nMissing: x\n");
}

TEST_F(TraceTest, OncePrintsEvenWhenTracingIsOff) {
  SetTraceEnabled(false);
  EXPECT_EQ(captured([] { PrintMessageOnce("Could not create dwf importer"); }), "Could not create dwf importer\n");
  EXPECT_EQ(captured([] { PrintMessageOnce("Could not create dwf importer"); }), "");
}

}  // namespace

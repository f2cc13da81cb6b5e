// The progress meters' lines and their silencing.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "kit/base/OdError.h"
#include "services/KitMessages.h"
#include "services/ProgressMeter.h"

namespace {

template <typename Meter>
class ProgressMeterTest : public testing::Test {};

using MeterKinds = testing::Types<HostAppProgressMeter, OdExDgnHostAppProgressMeter>;
TYPED_TEST_SUITE(ProgressMeterTest, MeterKinds);

// Runs the kit's calls on a meter and returns what it printed.
template <typename Meter>
std::string printedBy(Meter& meter, int limit, int steps) {
  testing::internal::CaptureStdout();
  meter.start(OdString(L"Loading plan.dwg"));
  meter.setLimit(limit);
  for (int i = 0; i < steps; ++i) meter.meterProgress();
  meter.stop();
  return testing::internal::GetCapturedStdout();
}

TYPED_TEST(ProgressMeterTest, PrintsALineForEachWholePointOfProgress) {
  TypeParam meter;
  meter.setPrefix(OdString(L"[dm] "));
  std::string printed = printedBy(meter, 4, 4);
  EXPECT_EQ(printed,
            "[dm] ------- Started Loading plan.dwg\n"
            "[dm] Meter Limit: 4\n"
            "[dm] Progress: 25.00%\n"
            "[dm] Progress: 50.00%\n"
            "[dm] Progress: 75.00%\n"
            "[dm] Progress: 100.00%\n"
            "[dm] ------- Stopped\n");
  EXPECT_EQ(meter.current(), 4);
  EXPECT_EQ(meter.lastReported(), 4);
}

TYPED_TEST(ProgressMeterTest, StepsBelowAWholePointAccumulate) {
  TypeParam meter;
  std::string printed = printedBy(meter, 300, 7);
  // 1/3 % per step: the first line comes at the third step (1.00 %), the next at the sixth.
  EXPECT_EQ(printed,
            "------- Started Loading plan.dwg\n"
            "Meter Limit: 300\n"
            "Progress: 1.00%\n"
            "Progress: 2.00%\n"
            "------- Stopped\n");
  EXPECT_EQ(meter.lastReported(), 6);
}

TYPED_TEST(ProgressMeterTest, ZeroOrNegativeLimitPrintsNoProgress) {
  for (int limit : {0, -5}) {
    TypeParam meter;
    std::string printed = printedBy(meter, limit, 3);
    EXPECT_EQ(printed, "------- Started Loading plan.dwg\nMeter Limit: " + std::to_string(limit) +
                           "\n------- Stopped\n");
    EXPECT_EQ(meter.current(), 3);
  }
}

TYPED_TEST(ProgressMeterTest, DisabledOutputStillCountsButPrintsNothing) {
  TypeParam meter;
  meter.setDisableOutput(true);
  EXPECT_EQ(printedBy(meter, 2, 5), "");
  EXPECT_EQ(meter.limit(), 2);
  EXPECT_EQ(meter.current(), 5);
  EXPECT_EQ(meter.lastReported(), 0);
}

TYPED_TEST(ProgressMeterTest, SetLimitRestartsTheCount) {
  TypeParam meter;
  meter.setDisableOutput(true);
  meter.setLimit(10);
  for (int i = 0; i < 5; ++i) meter.meterProgress();
  meter.setDisableOutput(false);
  testing::internal::CaptureStdout();
  meter.setLimit(2);
  meter.meterProgress();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Meter Limit: 2\nProgress: 50.00%\n");
}

TEST(ProgressMeter, NonAsciiPrefixAndTitleAreWrittenAsUtf8) {
  HostAppProgressMeter meter;
  meter.setPrefix(OdString(L"\xBB "));
  testing::internal::CaptureStdout();
  meter.start(OdString(L"Z\xFCrich \x20AC"));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "\xC2\xBB ------- Started Z\xC3\xBCrich \xE2\x82\xAC\n");
}

TEST(ProgressMeter, UsableThroughTheKitInterface) {
  std::unique_ptr<OdDbHostAppProgressMeter> meter = std::make_unique<OdExDgnHostAppProgressMeter>();
  testing::internal::CaptureStdout();
  meter->start();
  meter->stop();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "------- Started \n------- Stopped\n");
}

TEST(KitMessages, KnownNumbersHaveTheKitTextOthersAreUnknown) {
  EXPECT_EQ(FormatKitMessage(eFileNotFound).str(), L"File not found");
  EXPECT_EQ(FormatKitMessage(0).str(), L"No error");
  EXPECT_EQ(FormatKitMessage(895).str(), L"Unknown message (code: 895)");
  EXPECT_EQ(FormatKitMessage(894).str(), L"Unknown message (code: 894)");
  EXPECT_EQ(FormatKitMessage(-1).str(), L"Unknown message (code: -1)");
}

}  // namespace

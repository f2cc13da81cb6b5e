// Layer name standardization: the names that become element ids and class names.
#include <gtest/gtest.h>

#include "tests/drivers/DriverTestSupport.h"

using drvtest::DriverTest;
using drvtest::W;

namespace {

TEST(LayerNameRuleTest, ReplacementsInTheirFixedOrder) {
  struct Case {
    const wchar_t* in;
    const wchar_t* out;
  } cases[] = {
      {L"Walls", L"Walls"},
      {L"A-1", L"A_and_#x2d;1"},
      {L"R&D", L"R_and_D"},
      {L"", L""},
      {L"  ", L"_and_#x20;_and_#x20;"},
      {L"A.B C", L"A_and_#x2e;B_and_#x20;C"},
      {L"X(1)[2]{3}", L"X_and_#x28;1_and_#x29;_and_#x5b;2_and_#x5d;_and_#x7b;3_and_#x7d;"},
      {L"$|?@!%^*", L"_and_#x24;_and_#x7c;_and_#x3f;_and_#x40;_and_#x21;_and_#x25;_and_#x5e;_and_#x2a;"},
      {L"Caf\\U+00E9", L"Caf\\u00E9"},
      {L"a__b", L"a_b"},
      {L"a___b", L"a__b"},
      {L"\u00c6\u00df\u00e6\u00d8\u00f8", L"AESSaeOEoe"},
      {L"\u00e9\u00c5\u4e2d\U0001F600", L"\u00e9\u00c5\u4e2d\U0001F600"},
      {L"#", L"_and_#x20;_and_#x28;_and_#x29;_and_#x2d;_and_#x2e;_and_#x24;_and_#x5b;_and_#x5d;_and_#x7c;"
             L"_and_#x3f;_and_#x40;_and_#x21;_and_#x25;_and_#x5e;_and_#x2a;_and_#x7b;_and_#x7d;"},
      // "#" is replaced before the escapes are made, so a ready-made escape is taken apart.
      {L"&#x20;", L"_and__and_#x20;_and_#x28;_and_#x29;_and_#x2d;_and_#x2e;_and_#x24;_and_#x5b;_and_#x5d;"
                  L"_and_#x7c;_and_#x3f;_and_#x40;_and_#x21;_and_#x25;_and_#x5e;_and_#x2a;_and_#x7b;_and_#x7d;x20;"},
      {L"tab\there;\"q\"", L"tab\there;\"q\""},
  };
  for (const auto& c : cases)
    EXPECT_EQ(TRANS_BASE2::StandardizeLayerName(OdString(c.in)).str(), std::wstring(c.out))
        << OdAnsiString(OdString(c.in)).c_str();
}

class LayerNamesPassTest : public DriverTest {};

TEST_F(LayerNamesPassTest, RewritesViewAndNodeGroupLayersAndTracesBothNames) {
  TRANS_BASE2 driver;
  driver.ResetFile();
  driver.DefineView(W("V1"), kViewModelSpace);
  driver.SetLayer(W("A-1"), 7);
  driver.DrawDot(1, 1);
  driver.BeginGroup(W("DOOR"));
  driver.SetLayer(W("R&D"), 7);
  driver.DrawDot(2, 2);
  driver.EndGroup(W("DOOR"));
  driver.DefineView(W("V2"), kViewLayout);
  driver.SetLayer(W("Walls"), 7);
  driver.DrawDot(3, 3);

  SetTraceEnabled(true);
  testing::internal::CaptureStdout();
  EXPECT_EQ(driver.StandardizeLayerNames(), 0);
  std::string out = testing::internal::GetCapturedStdout();
  SetTraceEnabled(false);

  const auto& views = driver.GetViews();
  EXPECT_EQ(views[0].layers.at(W("A-1")).name, W("A_and_#x2d;1"));
  EXPECT_EQ(views[0].layers.at(W("A-1")).originalName, W("A-1"));
  EXPECT_EQ(views[0].nodeGroups[0].layers.at(W("R&D")).name, W("R_and_D"));
  EXPECT_EQ(views[1].layers.at(W("Walls")).name, W("Walls"));
  EXPECT_EQ(driver.GetStandardizedNames().count(W("R_and_D")), 1u);
  EXPECT_NE(out.find("Standardize Layer Names"), std::string::npos);
  EXPECT_NE(out.find("Original Layer Name: A-1\nModified Layer Name: A_and_#x2d;1\n"), std::string::npos) << out;
}

}  // namespace

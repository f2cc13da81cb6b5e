// Output file names: extensions per format, extension stripping and the numbered suffixes.
#include <gtest/gtest.h>

#include "converter/OutputNaming.h"

namespace {

TEST(OutputNaming, ExtensionIsStrippedOnlyWhenTheNameEndsInIt) {
  struct Case {
    const wchar_t* name;
    const wchar_t* extension;
    const wchar_t* expected;
  };
  const Case cases[] = {
      {L"out/plan.svg", L".svg", L"out/plan"},
      {L"out/plan.SVG", L".svg", L"out/plan"},  // case does not matter
      {L"out/plan.svg.pdf", L".svg", L"out/plan.svg.pdf"},
      {L"plan", L".svg", L"plan"},
      {L"vg", L".svg", L"vg"},  // shorter than the extension
      {L".svg", L".svg", L""},
      {L"plan.svg", L"", L"plan.svg"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(StripExtension(OdString(c.name), OdString(c.extension)).str(), std::wstring(c.expected)) << c.name;
  }
}

TEST(OutputNaming, ExtensionPerFormatWithPngForTheRest) {
  EXPECT_EQ(OutputExtension(1016).str(), L".svg");
  EXPECT_EQ(OutputExtension(1007).str(), L".pdf");
  EXPECT_EQ(OutputExtension(1020).str(), L".js");
  EXPECT_EQ(OutputExtension(2102).str(), L".tif");
  EXPECT_EQ(OutputExtension(2001).str(), L".png");
  EXPECT_EQ(OutputExtension(4711).str(), L".png");
}

TEST(OutputNaming, LayoutNumbersHaveAtLeastTwoDigits) {
  EXPECT_EQ(LayoutOutputName(OdString(L"plan"), 1).str(), L"plan__Layout01");
  EXPECT_EQ(LayoutOutputName(OdString(L"plan"), 12).str(), L"plan__Layout12");
  EXPECT_EQ(LayoutOutputName(OdString(L"plan"), 123).str(), L"plan__Layout123");
  EXPECT_EQ(ModelSpaceOutputName(OdString(L"plan")).str(), L"plan__ModelSpace");
}

TEST(OutputNaming, AnHtmlNameAsksForThePageBesideTheSvgFile) {
  EXPECT_EQ(SvgNameForPage(OdString(L"out/plan.html")).str(), L"out/plan.svg");
  EXPECT_EQ(SvgNameForPage(OdString(L"out/Plan \u00e9.HTM")).str(), L"out/Plan \u00e9.svg");
  EXPECT_EQ(SvgNameForPage(OdString(L"a.b.htm")).str(), L"a.b.svg");
  EXPECT_TRUE(SvgNameForPage(OdString(L"out/plan.svg")).isEmpty());
  EXPECT_TRUE(SvgNameForPage(OdString(L"out/plan.html.svg")).isEmpty());
  EXPECT_TRUE(SvgNameForPage(OdString(L"plan")).isEmpty());
}

}  // namespace

#include <gtest/gtest.h>

#include "kit/base/OdString.h"

TEST(OdString, HoldsCodePointsOutsideTheBasicPlane) {
  OdString s(L"a\U0001F600b");
  EXPECT_EQ(s.getLength(), 3);
  EXPECT_EQ(s.getAt(1), static_cast<OdChar>(0x1F600));
}

TEST(OdString, SearchesAndCutsWithoutRunningOffTheEnds) {
  OdString s(L"plan.dwg");
  EXPECT_EQ(s.reverseFind(L'.'), 4);
  EXPECT_EQ(s.find(L'x'), -1);
  EXPECT_EQ(s.find(L'p', 99), -1);
  EXPECT_EQ(s.left(99), s);
  EXPECT_EQ(s.right(3), OdString(L"dwg"));
  EXPECT_EQ(s.mid(20), OdString());
  EXPECT_EQ(s.mid(2, 2), OdString(L"an"));
}

TEST(OdString, ReplaceDoesNotRescanTheReplacement) {
  OdString s(L"aaa");
  EXPECT_EQ(s.replace(L"a", L"aa"), 3);
  EXPECT_EQ(s, OdString(L"aaaaaa"));
}

TEST(OdString, FormatGrowsForLongResults) {
  std::wstring longText(5000, L'x');
  OdString s;
  s.format(L"%ls-%d", longText.c_str(), 7);
  EXPECT_EQ(s.getLength(), 5002);
}

TEST(OdAnsiString, ProcessCodePageIsLatin1) {
  OdAnsiString a(OdString(L"Z\u00FCrich \u20AC"));
  EXPECT_EQ(a.str(), std::string("Z\xFCrich ?"));
  EXPECT_EQ(OdString(a).getAt(1), static_cast<OdChar>(0xFC));
}

TEST(Utf8Decoder, ReplacesMalformedBytes) {
  EXPECT_EQ(odDecodeUtf8("\xC3\xA9", 2), std::wstring(L"\u00E9"));
  EXPECT_EQ(odDecodeUtf8("\xC3", 1), std::wstring(L"\uFFFD"));
  EXPECT_EQ(odDecodeUtf8("a\xFF" "b", 3), std::wstring(L"a\uFFFDb"));
  EXPECT_EQ(odDecodeUtf8("\xF0\x9F\x98\x80", 4), std::wstring(L"\U0001F600"));
}

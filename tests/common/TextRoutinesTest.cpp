// Case, splitting, replacing, trimming and number tests of the common routines.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "projects/common/CommonRoutines.h"

namespace {

using Pieces = std::vector<std::string>;

TEST(TextCase, ComparisonAndConversionWorkOnBytesAboveAscii) {
  EXPECT_TRUE(EqualsNoCase("Layer-0", "LAYER-0"));
  EXPECT_FALSE(EqualsNoCase("abc", "abcd"));
  EXPECT_FALSE(EqualsNoCase("abc", "abd"));
  EXPECT_TRUE(EqualsNoCase("", ""));
  // Bytes above 127 must not be sign-extended into the classification tables.
  EXPECT_TRUE(EqualsNoCase("\xE9t\xE9", "\xE9T\xE9"));

  std::string upper = "mixed Case \xFC";
  MakeUpperInPlace(upper);
  EXPECT_EQ(upper, "MIXED CASE \xFC");
  EXPECT_EQ(ToLowerCopy(std::string("ABC def")), "abc def");
  EXPECT_EQ(ToLowerCopy(std::wstring(L"ABC def")), L"abc def");

  char buffer[] = "Plan.Dwg";
  EXPECT_EQ(UpperCString(buffer), buffer);
  EXPECT_STREQ(buffer, "PLAN.DWG");
  EXPECT_STREQ(LowerCString(buffer), "plan.dwg");
  EXPECT_EQ(UpperCString(nullptr), nullptr);
}

TEST(TextCase, LettersAreAsciiOnly) {
  struct Case {
    int c;
    bool letter, upper, lower;
  };
  const std::vector<Case> cases = {
      {'A', true, true, false}, {'Z', true, true, false}, {'a', true, false, true}, {'z', true, false, true},
      {'@', false, false, false}, {'[', false, false, false}, {'`', false, false, false},
      {'{', false, false, false}, {0xE9, false, false, false}, {-1, false, false, false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(IsLetter(c.c), c.letter) << c.c;
    EXPECT_EQ(IsUpperLetter(c.c), c.upper) << c.c;
    EXPECT_EQ(IsLowerLetter(c.c), c.lower) << c.c;
  }
}

TEST(Substrings, LeftAndRightClampTheirCount) {
  struct Case {
    std::string text;
    int count;
    std::string left, right;
  };
  const std::vector<Case> cases = {
      {"abcdef", 2, "ab", "ef"}, {"abcdef", 6, "abcdef", "abcdef"}, {"abcdef", 60, "abcdef", "abcdef"},
      {"abcdef", 0, "", ""},     {"abcdef", -3, "", ""},            {"", 4, "", ""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(LeftChars(c.text, c.count), c.left) << c.text << " " << c.count;
    EXPECT_EQ(RightChars(c.text, c.count), c.right) << c.text << " " << c.count;
  }
}

TEST(Replacing, ReplacementsAreNeverRescanned) {
  struct Case {
    std::string text, search, replacement, expected;
  };
  const std::vector<Case> cases = {
      {"aaa", "a", "aa", "aaaaaa"},
      {"a;b;;c", ";", ", ", "a, b, , c"},
      {"abc", "", "x", "abc"},
      {"abcabc", "abc", "", ""},
      {"\\U+00E9x", "\\U+", "UUU", "UUU00E9x"},
      {"no match", "zz", "y", "no match"},
  };
  for (const Case& c : cases) {
    std::string text = c.text;
    ReplaceAll(text, c.search, c.replacement);
    EXPECT_EQ(text, c.expected) << c.text;
    std::wstring wide(c.text.begin(), c.text.end());
    std::wstring expectedWide(c.expected.begin(), c.expected.end());
    EXPECT_EQ(ReplaceAll(wide, std::wstring(c.search.begin(), c.search.end()),
                         std::wstring(c.replacement.begin(), c.replacement.end())),
              expectedWide);
  }
  EXPECT_EQ(ReplaceChar("a\\b\\c", '\\', '/'), "a/b/c");
}

TEST(Replacing, ManyOccurrencesReplaceInLinearTime) {
  std::string text(1000000, 'a');
  ReplaceAll(text, "a", "bc");
  EXPECT_EQ(text.size(), 2000000u);
  EXPECT_EQ(text.find('a'), std::string::npos);
}

TEST(Splitting, SplitAnyKeepsEmptyPieces) {
  struct Case {
    std::string text, delimiters;
    Pieces expected;
  };
  const std::vector<Case> cases = {
      {"a;b,c", ";,", {"a", "b", "c"}},
      {"a;;b;", ";", {"a", "", "b", ""}},
      {"abc", ";", {"abc"}},
      {"", ";", {""}},
      {"a;b", "", {"a;b"}},
  };
  for (const Case& c : cases) {
    Pieces pieces = {"left over"};
    EXPECT_EQ(SplitAny(pieces, c.text, c.delimiters), static_cast<int>(c.expected.size())) << c.text;
    EXPECT_EQ(pieces, c.expected) << c.text;
  }
}

TEST(Splitting, SplitQuotedRejoinsQuotedFields) {
  struct Case {
    std::string text, delimiter;
    Pieces expected;
  };
  const std::vector<Case> cases = {
      {"a,b,,c", ",", {"a", "b", "c"}},
      {"x,\"one,two\",y", ",", {"x", "\"one,two\"", "y"}},
      {"\"whole\",next", ",", {"\"whole\"", "next"}},
      // A lone quote opens a field; it does not close itself.
      {"\",a,b\",c", ",", {"\",a,b\"", "c"}},
      {"\"never,closed", ",", {"\"never,closed"}},
      {"a::b::::c", "::", {"a", "b", "c"}},
      {"", ",", {}},
      {"abc", "", {"abc"}},
  };
  for (const Case& c : cases) {
    Pieces fields = {"left over"};
    EXPECT_EQ(SplitQuoted(fields, c.text, c.delimiter), static_cast<int>(c.expected.size())) << c.text;
    EXPECT_EQ(fields, c.expected) << c.text;
  }
}

TEST(Splitting, SplitCommaListReadsItemsLikeGetline) {
  Pieces items;
  EXPECT_TRUE(SplitCommaList("a,,b,", items));
  EXPECT_EQ(items, (Pieces{"a", "", "b"}));
  EXPECT_FALSE(SplitCommaList("", items));
  EXPECT_TRUE(items.empty());
}

TEST(Trimming, RemovesWhiteSpaceAtTheEndsOnly) {
  struct Case {
    std::string text, both, left, right;
  };
  const std::vector<Case> cases = {
      {"  a b \t\r\n", "a b", "a b \t\r\n", "  a b"},
      {"", "", "", ""},
      {" \t ", "", "", ""},
      {"\xA0x\xA0", "\xA0x\xA0", "\xA0x\xA0", "\xA0x\xA0"},
  };
  for (const Case& c : cases) {
    std::string both = c.text, left = c.text, right = c.text;
    Trim(both);
    TrimLeft(left);
    TrimRight(right);
    EXPECT_EQ(both, c.both);
    EXPECT_EQ(left, c.left);
    EXPECT_EQ(right, c.right);
  }
}

TEST(Numbers, IsNumberAndIsDigitsAcceptOnlyTheirCharacters) {
  struct Case {
    std::string text;
    bool number, digits;
  };
  const std::vector<Case> cases = {
      {"-1.5", true, false}, {"1e5", false, false}, {"", false, false}, {"0042", true, true},
      {"1 2", false, false}, {"--.", true, false},  {"+1", false, false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(IsNumber(c.text), c.number) << c.text;
    EXPECT_EQ(IsDigits(c.text), c.digits) << c.text;
  }
  EXPECT_EQ(IntToString(-2147483647 - 1), "-2147483648");
  EXPECT_EQ(IntToString(0), "0");
}

TEST(Numbers, HexEncodeUsesUpperCaseDigitsHighNibbleFirst) {
  EXPECT_EQ(HexEncode(std::string("\x00\x0F\xA5\xFF", 4)), "000FA5FF");
  EXPECT_EQ(HexEncode("Az"), "417A");
  EXPECT_EQ(HexEncode(""), "");
}

TEST(SmallHelpers, RgbToCmyk) {
  struct Case {
    int r, g, b;
    double c, m, y, k;
  };
  const std::vector<Case> cases = {
      {0, 0, 0, 0, 0, 0, 1},         {255, 255, 255, 0, 0, 0, 0}, {255, 0, 0, 0, 1, 1, 0},
      {0, 128, 255, 1, 127.0 / 255, 0, 0}, {51, 51, 102, 0.5, 0.5, 0, 0.6},
  };
  for (const Case& c : cases) {
    double cc = -1, m = -1, y = -1, k = -1;
    EXPECT_TRUE(RgbToCmyk(c.r, c.g, c.b, cc, m, y, k));
    EXPECT_NEAR(cc, c.c, 1e-9) << c.r << "," << c.g << "," << c.b;
    EXPECT_NEAR(m, c.m, 1e-9);
    EXPECT_NEAR(y, c.y, 1e-9);
    EXPECT_NEAR(k, c.k, 1e-9);
  }
}

TEST(SmallHelpers, PolarPointUsesTheRoundedDegreeFactor) {
  double x = 0, y = 0;
  PolarPoint(10, 20, 90, 2, x, y);
  EXPECT_NEAR(x, 10 + 2 * std::cos(90 * 0.017453), 1e-12);
  EXPECT_NEAR(y, 22, 1e-6);
  // The rounded factor is not exactly pi/180: 90 degrees is not exactly a quarter turn.
  EXPECT_GT(std::abs(x - 10), 1e-6);
}

TEST(SmallHelpers, WhitespaceOutsideQuotesFollowsBothQuoteKinds) {
  ResetWhitespaceQuoteState();
  const std::string text = "a 'b c' \"d 'e\" f\t\"g\n";
  std::string marks;
  for (char c : text) marks += IsWhitespaceOutsideQuotes(c) ? '1' : '0';
  // The apostrophe inside the double quotes flips the single-quote toggle too, so the blank after
  // the closing double quote still counts as quoted.
  EXPECT_EQ(marks, "01000001000000001001");
  ResetWhitespaceQuoteState();
  EXPECT_TRUE(IsWhitespaceOutsideQuotes(' '));
}

TEST(SmallHelpers, TimestampHasItsFixedShape) {
  std::string stamp = MakeTimestamp();
  ASSERT_EQ(stamp.size(), 17u) << stamp;
  for (std::size_t i : {4u, 7u, 10u}) EXPECT_EQ(stamp[i], '-') << stamp;
  std::string digits = stamp;
  digits.erase(std::remove(digits.begin(), digits.end(), '-'), digits.end());
  EXPECT_TRUE(IsDigits(digits)) << stamp;
}

struct Point {
  double x, y;
};

TEST(PointInPolygon, EvenOddRuleWithBoundingBoxShortcut) {
  const std::vector<Point> square = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};
  // A "U" shape: the notch between the arms is outside although inside the bounding box.
  const std::vector<Point> ushape = {{0, 0}, {9, 0}, {9, 9}, {6, 9}, {6, 3}, {3, 3}, {3, 9}, {0, 9}};
  struct Case {
    const std::vector<Point>* polygon;
    double x, y;
    bool inside;
  };
  const std::vector<Case> cases = {
      {&square, 5, 5, true},    {&square, 11, 5, false}, {&square, -0.1, 5, false}, {&square, 5, 10.5, false},
      {&ushape, 1.5, 8, true},  {&ushape, 4.5, 8, false}, {&ushape, 4.5, 1, true},  {&ushape, 7.5, 5, true},
  };
  for (const Case& c : cases) EXPECT_EQ(PointInPolygon(*c.polygon, c.x, c.y), c.inside) << c.x << "," << c.y;
  EXPECT_FALSE(PointInPolygon(std::vector<Point>{}, 0, 0));
  EXPECT_FALSE(PointInPolygon(std::vector<Point>{{1, 1}}, 1, 1));
}

}  // namespace

// Conversions between the kit's wide and 8-bit strings and UTF-8, and the escapes that carry
// non-ASCII characters through texts.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "projects/common/CommonRoutines.h"

namespace {

std::string utf8Of(const std::wstring& text) {
  std::string out;
  return WideToUtf8(out, text);
}

std::wstring fromUtf8(const std::string& bytes) {
  OdString out;
  return Utf8ToOdString(out, OdAnsiString(bytes)).str();
}

TEST(Utf8Conversion, EncodesEveryLengthClassAndRejectsBeyondUnicode) {
  struct Case {
    std::wstring text;
    std::string utf8;
  };
  const std::vector<Case> cases = {
      {L"", ""},
      {L"A\x7F", "A\x7F"},
      {L"\x80", "\xC2\x80"},
      {L"\xE9", "\xC3\xA9"},
      {L"\x7FF", "\xDF\xBF"},
      {L"\x800", "\xE0\xA0\x80"},
      {L"\x20AC", "\xE2\x82\xAC"},
      {L"\xFFFF", "\xEF\xBF\xBF"},
      {L"\x10000", "\xF0\x90\x80\x80"},
      {L"\x1F600", "\xF0\x9F\x98\x80"},
      {L"\x10FFFF", "\xF4\x8F\xBF\xBF"},
      {std::wstring(1, static_cast<wchar_t>(0x110000)), "?"},
      {std::wstring(1, static_cast<wchar_t>(0x7FFFFFFF)) + L"x", "?x"},
  };
  for (const Case& c : cases) EXPECT_EQ(utf8Of(c.text), c.utf8) << c.utf8;
}

TEST(Utf8Conversion, OdStringRoundTripsThroughUtf8) {
  const std::vector<std::wstring> texts = {L"", L"plain", L"Z\xFCrich \x20AC 10", L"\x1F600 \x4E2D\x6587",
                                           L"C:\\fonts\\\xE9"};
  for (const std::wstring& text : texts) {
    std::string utf8;
    OdStringToUtf8(utf8, OdString(text));
    EXPECT_EQ(fromUtf8(utf8), text);
  }
}

TEST(Utf8Conversion, DecodingKeepsMalformedBytesVisibleAndDropsZeros) {
  EXPECT_EQ(fromUtf8("a\xFF" "b"), L"a\xFFFD" L"b");
  EXPECT_EQ(fromUtf8(std::string("a\0b", 3)), L"ab");
  OdString appended(L"x");
  EXPECT_EQ(Utf8ToOdString(appended, OdAnsiString("y")).str(), L"xy");
}

TEST(NarrowConversion, OdStringToNarrowUsesTheLatin1CodePage) {
  std::string out;
  EXPECT_EQ(OdStringToNarrow(out, OdString(L"Z\xFCrich")), "Z\xFCrich");
  EXPECT_EQ(OdStringToNarrow(out, OdString(L"\x20AC\x1F600")), "??");
}

TEST(NarrowConversion, Utf8ToLatin1KeepsOnlyTheLatin1Range) {
  struct Case {
    std::string utf8, latin1;
  };
  const std::vector<Case> cases = {
      {"plain", "plain"},
      {"Z\xC3\xBCrich", "Z\xFCrich"},
      {"\xC2\xB0" "C", "\xB0" "C"},
      {"\xE2\x82\xAC" "5", "5"},              // the euro sign has no Latin-1 form
      {"\xF0\x9F\x98\x80!", "!"},             // nor has anything outside the BMP
      {"\xC3", ""},                           // a truncated sequence
      {"\xC3" "A", "A"},                      // a lead byte without its continuation
      {"\xC2\xC3\xA9", "\xE9"},
  };
  for (const Case& c : cases) {
    std::string out = "old";
    EXPECT_EQ(Utf8ToLatin1(out, c.utf8), c.latin1) << c.utf8;
  }
}

TEST(Environment, GetEnvironmentValueTellsUnsetFromEmpty) {
  setenv("DM_TEST_VARIABLE", "", 1);
  std::string value = "untouched";
  EXPECT_TRUE(GetEnvironmentValue("DM_TEST_VARIABLE", value));
  EXPECT_EQ(value, "");
  unsetenv("DM_TEST_VARIABLE");
  value = "untouched";
  EXPECT_FALSE(GetEnvironmentValue("DM_TEST_VARIABLE", value));
  EXPECT_EQ(value, "untouched");
}

TEST(EscapeNonAscii, EscapesAboveTheLimitWithPrefixAndSuffix) {
  struct Case {
    std::wstring text, prefix, suffix;
    bool allowLatin1;
    std::string expected;
  };
  const std::vector<Case> cases = {
      {L"Z\xFCrich", L"&#x", L";", false, "Z&#x00FC;rich"},
      {L"Z\xFCrich", L"&#x", L";", true, "Z\xFCrich"},
      {L"\x7F\x80", L"\\U+", L"", false, "\x7F\\U+0080"},
      {L"\x100", L"\\U+", L"", true, "\\U+0100"},
      {L"\x20AC", L"&#x", L";", false, "&#x20AC;"},
      {L"\xFFFF", L"<", L">", false, "<FFFF>"},
      // Only four digits fit: characters past the BMP keep their first four.
      {L"\x1F600", L"\\U+", L"", false, "\\U+1F60"},
      {L"", L"&#x", L";", false, ""},
      // A non-ASCII prefix is itself narrowed to the code page.
      {L"\x4E2D", L"\x20AC", L"", false, "?4E2D"},
  };
  for (const Case& c : cases) {
    std::string out = "old";
    EscapeNonAscii(out, OdString(c.text), OdString(c.prefix), OdString(c.suffix), c.allowLatin1);
    EXPECT_EQ(out, c.expected);
  }
}

TEST(DecodeUnicodeEscapes, ReplacesEachEscapeByItsCharacter) {
  struct Case {
    std::wstring text, expected;
  };
  const std::vector<Case> cases = {
      {L"A\\u00e9B", L"A\xE9" L"B"},
      {L"no escapes here", L"no escapes here"},
      {L"", L""},
      {L"\\u0041\\u0042", L"AB"},
      {L"\\u20AC", L"\x20AC"},
      // A decoded backslash starts a new escape with the text after it.
      {L"\\u005Cu0041", L"A"},
      // A backslash before a decoded "u" does so too.
      {L"\\\\u0075" L"0042", L"B"},
      {L"\\U+00E9", L"\\U+00E9"},  // upper-case escapes of drawing texts are not this kind
      {L"\\u12G4z", L"\x12z"},     // digits stop at the first non-hexadecimal character
      {L"x\\uZZZZy", L"xy"},       // no digits at all decodes to nothing
      {L"end\\u4", L"end\x4"},     // fewer than four characters left
      {L"end\\u", L"end"},
  };
  for (const Case& c : cases) {
    OdString out(L"old");
    DecodeUnicodeEscapes(out, OdString(c.text));
    EXPECT_EQ(out.str(), c.expected);
  }
}

TEST(DecodeUnicodeEscapes, ManyEscapesDecodeInLinearTime) {
  std::wstring text;
  for (int i = 0; i < 200000; ++i) text += L"\\u0041";
  OdString out;
  DecodeUnicodeEscapes(out, OdString(text));
  EXPECT_EQ(out.str(), std::wstring(200000, L'A'));
}

TEST(EscapeRoundTrip, JsonStyleEscapesOfTheBmpComeBack) {
  const std::wstring text = L"Stra\xDF" L"e \x20AC \x4E2D\x6587 \xFB01";
  std::string escaped;
  EscapeNonAscii(escaped, OdString(text), OdString(L"\\u"), OdString(), false);
  OdString decoded;
  DecodeUnicodeEscapes(decoded, OdString(escaped));
  EXPECT_EQ(decoded.str(), text);
}

// One character per byte, as the kit hands UTF-8 text over.
OdString bytesAsChars(const std::string& bytes) {
  std::wstring out;
  for (unsigned char b : bytes) out += static_cast<wchar_t>(b);
  return OdString(out);
}

TEST(TransliterateUtf8Latin, FoldsAccentedLettersOfTheC3Block) {
  struct Case {
    std::string bytes, expected;
    bool changed;
  };
  const std::vector<Case> cases = {
      {"Z\xC3\xBCrich", "Zurich", true},
      {"\xC3\x86gir \xC3\xA6", "AEgir ae", true},
      {"\xC3\x80\xC3\x85\xC3\x87\xC3\x8F\xC3\x90\xC3\x91\xC3\x98\xC3\x9D\xC3\x9E", "AACIDNOYP", true},
      {"\xC3\xA0\xC3\xA7\xC3\xAB\xC3\xB0\xC3\xB1\xC3\xB8\xC3\xBD\xC3\xBE\xC3\xBF", "acednoypy", true},
      // Multiplication sign, sharp s and division sign have no folding.
      {"\xC3\x97\xC3\x9F\xC3\xB7", "\xC3\x97\xC3\x9F\xC3\xB7", false},
      {"plain", "plain", false},
      {"end\xC3", "end\xC3", false},
      {"\xC3\xC3\xA9", "\xC3" "e", true},
      {"\xC2\xA9", "\xC2\xA9", false},
  };
  for (const Case& c : cases) {
    OdString text = bytesAsChars(c.bytes);
    EXPECT_EQ(TransliterateUtf8Latin(text), c.changed) << c.expected;
    EXPECT_EQ(text.str(), bytesAsChars(c.expected).str()) << c.expected;
  }
}

TEST(FoldLatin1, FoldsEveryLetterAndEnds) {
  std::string all;
  for (int b = 0xC0; b <= 0xFF; ++b) all += static_cast<char>(b);
  FoldLatin1(all);
  EXPECT_EQ(all,
            "AAAAAAAECEEEEIIII" "DNOOOOO\xD7OUUUUYPss"
            "aaaaaaaeceeeeiiii" "dnooooo\xF7ouuuuypy");
  std::string plain = "nothing to fold";
  EXPECT_EQ(FoldLatin1(plain), "nothing to fold");
}

}  // namespace

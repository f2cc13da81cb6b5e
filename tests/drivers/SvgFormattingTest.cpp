// Number texts, path step commands, XML escaping and line-type names of the SVG writer.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "drivers/svg/SvgBase64.h"
#include "drivers/svg/SvgLineTypes.h"
#include "drivers/svg/SvgNumberText.h"
#include "drivers/svg/SvgPathData.h"
#include "drivers/svg/SvgXmlText.h"
#include "tests/drivers/SvgTestSupport.h"

namespace {

struct CoordinateCase {
  double value;
  int precision;
  const char* expected;
};

TEST(SvgNumberText, CoordinatesAreTrimmedTheWayTheViewerExpects) {
  const CoordinateCase cases[] = {
      {12.5, 2, "12.5"},   {12, 2, "12"},        {12.34, 2, "12.34"}, {-0.004, 2, "-0"},
      {100, 2, "100"},     {100.5, 2, "100.5"},  {0.001, 2, "0"},     {12.005, 3, "12"},
      {1.0012, 4, "1.0"},  {12.0, 1, "12"},      {7, 0, "7"},         {10, 0, "1"},
      {-3.25, 2, "-3.25"}, {99.999, 2, "100"},   {0.1, 2, "0.1"},     {1e300, 2, nullptr},
  };
  for (const CoordinateCase& c : cases) {
    std::string text = CoordinateText(c.value, c.precision);
    if (c.expected != nullptr) {
      EXPECT_EQ(text, c.expected) << c.value << " at " << c.precision;
    } else {
      EXPECT_EQ(text.size(), 301u) << "a huge value is written in full, not cut off";
    }
  }
}

TEST(SvgNumberText, DefaultAndFixedForms) {
  const std::pair<double, const char*> general[] = {
      {841.89, "841.89"}, {1234567.0, "1.23457e+06"}, {2.25, "2.25"}, {0.5, "0.5"}, {100, "100"}, {1.0 / 0.9, "1.11111"}};
  for (const auto& [value, expected] : general) EXPECT_EQ(DoubleText(value), expected);
  std::string fixed;
  AppendFixed6(fixed, 0.4);
  EXPECT_EQ(fixed, "0.400000");
  std::string tenDigits;
  AppendDouble10(tenDigits, 18.123456789012);
  EXPECT_EQ(tenDigits, "18.12345679");
}

struct StepCase {
  double px, py, x, y;
  const char* expected;  // "" when the point is skipped
};

TEST(SvgPathData, StepCommandsChooseRelativeOrAbsolute) {
  // Page E2 = (0,0)-(1000,1000): absolute y is 1000 - y.
  SvgCoordinates page(0, 1000, 2, 0.001);
  const StepCase cases[] = {
      {0, 0, 50, 0, "h50"},
      {0, 0, -50, 0, "h-50"},
      {0, 0, 99.99, 0, "h99.99"},
      {0, 0, 150, 0, "H150"},
      {0, 0, 0, 30, "v-30"},
      {0, 0, 0, -30, "v30"},
      {0, 0, 0, 100, "V900"},
      {0, 0, 10, 20, "l10,-20"},
      {0, 0, 10, 200, "L10,800"},
      {0, 0, 0.0005, 0.0005, ""},
      {0, 0, 0.0005, 40, "v-40"},
      {0, 0, std::nan(""), 1, ""},
      {0, 0, 1, std::numeric_limits<double>::infinity(), ""},
  };
  for (const StepCase& c : cases) {
    std::string out;
    double px = c.px, py = c.py;
    bool written = page.StepTo(out, px, py, c.x, c.y);
    EXPECT_EQ(out, c.expected) << c.x << "," << c.y;
    EXPECT_EQ(written, !std::string(c.expected).empty());
  }
}

TEST(SvgPathData, PolylineFromTheCornerOfThePage) {
  SvgCoordinates page(0, 100, 2, 0.001);
  std::string d;
  page.MoveTo(d, 0, 0);
  double px = 0, py = 0;
  page.StepTo(d, px, py, 50, 0);
  page.StepTo(d, px, py, 50, 30);
  EXPECT_EQ(d, "M0,100h50v-30");
  SvgCoordinates shifted(-10, 90, 2, 0.001);
  EXPECT_EQ(shifted.XText(0), "10");
  EXPECT_EQ(shifted.YText(0), "90");
}

TEST(SvgPathData, ShallowStepsStayWithinTheToleranceOfTheCurve) {
  // A line rising 0.4 per step, under the tolerance of 1: written level, the pen keeps its
  // height, and once the rise passes the tolerance a step climbs back to the line.
  SvgCoordinates page(0, 0, 2, 1.0);
  std::string d;
  double px = 0, py = 0;
  page.MoveTo(d, 0, 0);
  for (int i = 1; i <= 3; ++i) page.StepTo(d, px, py, 10.0 * i, 0.4 * i);
  EXPECT_EQ(d, "M0,0h10h10l10,-1.2");
  EXPECT_DOUBLE_EQ(py, 1.2);
}

struct Pt {
  double x, y;
};

TEST(SvgPathData, LongRunsAreSplitWithTheJoinPointInBoth) {
  SvgCoordinates page(0, 0, 2, 0.001);
  struct Case {
    int points;
    int elements;
  };
  for (const Case& c : {Case{2, 1}, Case{200, 1}, Case{201, 2}, Case{399, 2}, Case{400, 3}, Case{450, 3}}) {
    std::vector<Pt> run;
    for (int i = 0; i < c.points; ++i) run.push_back({double(i), double(i % 2)});
    std::string out = "<p d=\"";
    int inElement = 0;
    int elements = 1;
    AppendPointRun(out, page, run, inElement, [&] {
      out += "\"/>\n<p d=\"";
      ++elements;
    });
    EXPECT_EQ(elements, c.elements) << c.points;
    // Every element starts with M, and the element after a split starts where the last one ended.
    EXPECT_EQ(svgtest::CountOf(out, "M"), c.elements);
    if (c.points == 450) {
      EXPECT_NE(out.find("\"/>\n<p d=\"M199,-1l"), std::string::npos) << out.substr(0, 60);
      EXPECT_NE(out.find("\"/>\n<p d=\"M398,0l"), std::string::npos);
    }
  }
}

TEST(SvgPathData, RunsSkipPointsThatAreNotNumbers) {
  SvgCoordinates page(0, 0, 2, 0.001);
  std::vector<Pt> run = {{std::nan(""), 0}, {1, 1}, {std::numeric_limits<double>::infinity(), 2}, {2, 1}};
  std::string out;
  int inElement = 0;
  EXPECT_TRUE(AppendPointRun(out, page, run, inElement, [] {}));
  EXPECT_EQ(out, "M1,-1h1");
  std::vector<Pt> none = {{std::nan(""), 0}};
  out.clear();
  EXPECT_FALSE(AppendPointRun(out, page, none, inElement, [] {}));
  EXPECT_EQ(out, "");
}

struct EscapeCase {
  std::wstring input;
  XmlEscapeMode mode;
  bool references;
  const char* expected;
};

TEST(SvgXmlText, EscapingPerPlace) {
  const EscapeCase cases[] = {
      {L"a<b>c", XmlEscapeMode::kContent, false, "a&lt;b>c"},
      {L"R&D 'x' \"y\"", XmlEscapeMode::kContent, false, "R&amp;D &apos;x&apos; &quot;y&quot;"},
      {L"a]]>b", XmlEscapeMode::kContent, false, "a]]&gt;b"},
      {L"&amp;", XmlEscapeMode::kContent, false, "&amp;amp;"},
      {L"&amp;", XmlEscapeMode::kAttribute, false, "&amp;"},
      {L"a&b<c\"d'e>f", XmlEscapeMode::kAttribute, false, "a&amp;b&lt;c&quot;d&apos;e>f"},
      {L"caf\\U+00E9", XmlEscapeMode::kContent, true, "caf&#x00E9;"},
      {L"caf\\U+00E9", XmlEscapeMode::kContent, false, "caf\\U+00E9"},
      {L"bad \\U+00ZZ", XmlEscapeMode::kContent, true, "bad \\U+00ZZ"},
      {L"short \\U+00", XmlEscapeMode::kContent, true, "short \\U+00"},
      {L"ctl\\U+0001x", XmlEscapeMode::kContent, true, "ctlx"},
      {L"sur\\U+D800x", XmlEscapeMode::kContent, true, "surx"},
      {std::wstring(L"a\x01\x08\x1f" L"b\tc\nd"), XmlEscapeMode::kContent, false, "ab\tc\nd"},
      {std::wstring(L"x") + wchar_t(0xFFFE) + wchar_t(0xD800) + wchar_t(0x110000) + L"y", XmlEscapeMode::kContent,
       false, "xy"},
      {std::wstring(L"\u00e9\u20ac") + wchar_t(0x1F600), XmlEscapeMode::kContent, false,
       "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"},
  };
  for (const EscapeCase& c : cases) {
    EXPECT_EQ(XmlText(c.input, c.mode, c.references), c.expected);
  }
}

TEST(SvgXmlText, NarrowTextIsUtf8WithLatin1Fallback) {
  EXPECT_EQ(XmlText(std::string("caf\xC3\xA9"), XmlEscapeMode::kContent), "caf\xC3\xA9");
  // A lone Latin-1 byte is not valid UTF-8: it is taken as the Latin-1 letter.
  EXPECT_EQ(XmlText(std::string("caf\xE9"), XmlEscapeMode::kContent), "caf\xC3\xA9");
  // Overlong and truncated sequences.
  EXPECT_EQ(XmlText(std::string("\xC0\xAF"), XmlEscapeMode::kContent), "\xC3\x80\xC2\xAF");
  EXPECT_EQ(XmlText(std::string("\xE2\x82"), XmlEscapeMode::kContent), "\xC3\xA2\xC2\x82");
  EXPECT_EQ(XmlText(std::string("\xF0\x9F\x98\x80<"), XmlEscapeMode::kContent), "\xF0\x9F\x98\x80&lt;");
}

TEST(SvgXmlText, EveryCodePointGivesAWellFormedDocument) {
  // Every code point of the BMP and a sample beyond, as text content and as attribute value.
  std::wstring all;
  for (wchar_t c = 0; c < 0x10000; ++c) all += c;
  for (wchar_t c = 0x10000; c < 0x110000; c += 0x1001) all += c;
  all += L"\\U+0000\\U+FFFF\\U+0041]]>";
  std::string document = "<r a=\"" + XmlText(all, XmlEscapeMode::kAttribute, true) + "\" b='" +
                         XmlText(all, XmlEscapeMode::kAttribute) + "'>" + XmlText(all, XmlEscapeMode::kContent, true) +
                         "</r>\n";
  EXPECT_EQ(svgtest::XmlTextProblems(document, "dm_svg_all_code_points.xml"), "");
  std::string bytes;
  for (int b = 1; b < 256; ++b) bytes += static_cast<char>(b);
  std::string narrow = "<r a=\"" + XmlText(bytes, XmlEscapeMode::kAttribute) + "\">" +
                       XmlText(bytes, XmlEscapeMode::kContent) + "</r>\n";
  EXPECT_EQ(svgtest::XmlTextProblems(narrow, "dm_svg_all_bytes.xml"), "");
}

TEST(SvgLineTypes, NamesAreCleanedForClasses) {
  const std::pair<std::wstring, const char*> cases[] = {
      {L"My Type.1", "MY_TYPE_1"},
      {L"dashed", "DASHED"},
      {L"a(b)c-d$e[f]g|h?i@j!k%l^m*n{o}p'q\"r", "A_B_C_D_E_F_G_H_I_J_K_L_M_N_O_P_Q_R"},
      {L"x<y>&z", "X_Y__Z"},
      {std::wstring(L"t\x01\x02") + wchar_t(0xFFFF), "T"},
      {L"\u00e9t\u00e9", "\xC3\xA9T\xC3\xA9"},
      {L"", ""},
  };
  for (const auto& [name, expected] : cases) EXPECT_EQ(CleanSvgName(name), expected);
}

TEST(SvgLineTypes, DashArrays) {
  struct Case {
    std::vector<double> dashes;
    double scale;
    double minLineWidth;
    const char* expected;
  };
  const Case cases[] = {
      {{0.5, -0.25}, 1.0, 0.01, "8.000000 4.000000"},
      {{0.5, -0.25, 0, -0.25}, 2.0, 0.01, "16.000000 8.000000 0.400000 8.000000"},
      {{0}, 1.0, 0.7, "0.700000"},
      {{0}, 1.0, 0.4, "0.400000"},
      {{1}, std::nan(""), 0.01, "0.000000"},
      {{}, 1.0, 0.01, ""},
  };
  for (const Case& c : cases) EXPECT_EQ(DashArrayText(c.dashes, c.scale, c.minLineWidth), c.expected);
}

TEST(SvgBase64, StandardAlphabetAndPadding) {
  const std::pair<std::string, const char*> cases[] = {
      {"", ""},         {"f", "Zg=="},         {"fo", "Zm8="},
      {"foo", "Zm9v"},  {"foobar", "Zm9vYmFy"}, {std::string("\x00\xff\xfe\x3e\x3f", 5), "AP/+Pj8="},
  };
  for (const auto& [bytes, expected] : cases) {
    std::string out = "data,";
    AppendBase64(out, bytes);
    EXPECT_EQ(out, std::string("data,") + expected);
  }
}

}  // namespace

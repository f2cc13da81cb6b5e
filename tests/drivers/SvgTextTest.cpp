// Text elements: font family and size groups, rotation and width factor, decorations, block
// attributes and the escaping of their content.
#include "tests/drivers/SvgDriverFixture.h"

namespace {

using svgtest::CountOf;
using svgtest::SvgDriverTest;

class SvgText : public SvgDriverTest {
protected:
  DrvText Text(const wchar_t* content, double x = 10, double y = 20) {
    DrvText t;
    t.text = content;
    t.position = {x, y};
    return t;
  }
  std::string Write(std::deque<DrvFontGroup> groups, int colour = 2) {
    StartDirectOutput(colour);
    svg().WriteFontGroups(groups);
    std::string text = WrappedPending();
    EXPECT_EQ(svgtest::XmlTextProblems(text, "dm_svg_text.svg"), "") << text;
    return text;
  }
  std::string WriteOne(const DrvText& text, const std::string& font = "Arial", double height = 2.5) {
    return Write({DrvFontGroup{font, height, false, {text}}});
  }
};

TEST_F(SvgText, FontFamilies) {
  svg().SetDefaultFontName("Arial");
  const std::pair<std::string, const char*> cases[] = {
      {"romans", "romans, Times, serif"},
      {"simplex", " arial, Helvetica, sans-serif"},
      {"Arial Narrow", "'Arial Narrow', Helvetica, sans-serif"},
      {"\xC3\x84rial", "Arial, Helvetica, sans-serif"},
      {"", "Arial, Helvetica, sans-serif"},
      {"a\"b", "Arial, Helvetica, sans-serif"},
      {"Times New Roman", "'Times New Roman', Helvetica, sans-serif"},
  };
  for (const auto& [font, family] : cases) {
    std::string text = WriteOne(Text(L"x"), font);
    EXPECT_NE(text.find(std::string("<g style=\"font-family:") + family + "; stroke:none; fill:red;\" >\n"),
              std::string::npos)
        << font << "\n" << text;
    TearDown();
    SetUp();
  }
}

TEST_F(SvgText, GroupsBySizeAndFamily) {
  std::string text = Write({DrvFontGroup{"Arial", 2.5, false, {Text(L"a"), Text(L"b")}},
                            DrvFontGroup{"Arial", 5, false, {Text(L"c")}},
                            DrvFontGroup{"romans", 5, false, {Text(L"d")}}});
  EXPECT_EQ(CountOf(text, "<g style="), 2);
  EXPECT_NE(text.find("<g font-size=\"2.25\" >\n<text id=\"cv_1\" x=\"10\" y=\"80\" >a</text>\n"
                      "<text id=\"cv_2\" x=\"10\" y=\"80\" >b</text>\n</g>\n<g font-size=\"4.5\" >"),
            std::string::npos)
      << text;
  EXPECT_EQ(CountOf(text, "</g>"), 5);
}

TEST_F(SvgText, WhiteAndBlackTextIsFilledBlack) {
  for (int colour : {0, 1}) {
    std::deque<DrvFontGroup> groups{DrvFontGroup{"Arial", 1, false, {Text(L"w")}}};
    std::string text = Write(groups, colour);
    EXPECT_NE(text.find("; stroke:none; fill:black ;\" >"), std::string::npos) << colour;
    TearDown();
    SetUp();
  }
}

TEST_F(SvgText, TransformsAndDecorations) {
  struct Case {
    const char* what;
    void (*change)(DrvText&);
    const char* expected;  // the attributes between y and ">"
  };
  const Case cases[] = {
      {"plain", [](DrvText&) {}, "y=\"80\" >"},
      {"rotated 90", [](DrvText& t) { t.rotation = 90; }, "y=\"80\" transform=\"rotate(270 10 80) \" >"},
      {"rotated -45.5", [](DrvText& t) { t.rotation = -45.5; }, "transform=\"rotate(405 10 80) \" >"},
      {"barely rotated", [](DrvText& t) { t.rotation = 0.005; }, "y=\"80\" transform=\"\" >"},
      {"width 1.0", [](DrvText& t) { t.widthFactor = 1.0; },
       "transform=\"translate(10 -80) scale(1.11111 1) translate(-10 80) \" >"},
      {"backward", [](DrvText& t) { t.widthFactor = -0.9; },
       "transform=\"translate(10 -80) scale(-1 1) translate(-10 80) \" >"},
      {"width 0.9", [](DrvText& t) { t.widthFactor = 0.9; }, "y=\"80\" >"},
      {"underline", [](DrvText& t) { t.decoration = 1; }, "y=\"80\" text-decoration=\"underline\" >"},
      {"line-through", [](DrvText& t) { t.decoration = 2; }, "text-decoration=\"line-through\" >"},
      {"overline", [](DrvText& t) { t.decoration = 3; }, "text-decoration=\"overline\" >"},
      {"bold italic", [](DrvText& t) { t.bold = t.italic = true; }, "font-style=\"italic\" font-weight=\"bold\" >"},
      {"attribute",
       [](DrvText& t) {
         t.attributeTag = "ROOM'NO";
         t.blockHandle = "3F";
         t.invisible = true;
       },
       "vtrl:tag='ROOM&apos;NO' vtrl:blockhandle='3F' style=\"visibility: hidden;\" >"},
  };
  for (const Case& c : cases) {
    DrvText t = Text(L"x");
    c.change(t);
    std::string text = WriteOne(t);
    EXPECT_NE(text.find(c.expected), std::string::npos) << c.what << "\n" << text;
    TearDown();
    SetUp();
  }
}

TEST_F(SvgText, ContentEscaping) {
  const std::pair<std::wstring, const char*> cases[] = {
      {L"a<b>c", ">a&lt;b>c</text>"},
      {L"Tom & 'Jerry' \"x\"", ">Tom &amp; &apos;Jerry&apos; &quot;x&quot;</text>"},
      {L"caf\\U+00E9 \\u00E9", ">caf&#x00E9; \\u00E9</text>"},
      {L"\u20ac\U0001F600", ">\xE2\x82\xAC\xF0\x9F\x98\x80</text>"},
      {std::wstring(L"bell\x07tab\t"), ">belltab\t</text>"},
      {L"x]]>y", ">x]]&gt;y</text>"},
  };
  for (const auto& [content, expected] : cases) {
    std::string text = WriteOne(Text(content.c_str()));
    EXPECT_NE(text.find(expected), std::string::npos) << expected << "\n" << text;
    TearDown();
    SetUp();
  }
}

TEST_F(SvgText, TooltipsAndHandlesThroughTheDriver) {
  svg().SetDoTooltips();
  svg().AddHandleLayer(L"Labels");
  BeginView(L"Model", kViewModelSpace, 0, 0, 100, 100);
  Layer(L"Labels", 2);
  svg().SetCurrentHandle("1A");
  TextRecord record;
  record.text = L"Room 101";
  record.position = {10, 20};
  record.height = 2.5;
  record.rotation = 90;
  record.fontName = "romans";
  ASSERT_EQ(svg().DrawText(record), 1);
  ASSERT_EQ(OutputView(), 1);
  std::string file = Written("plan.svg");
  EXPECT_NE(file.find("class=\"vtrl_handles\" vtrl:handle='1A' x=\"10\" y=\"80\" transform=\"rotate(270 10 80) \" "
                      ">Room 101<title>Room 101</title></text>"),
            std::string::npos)
      << file;
  EXPECT_NE(file.find("<g font-size=\"2.25\" >"), std::string::npos);
  EXPECT_EQ(svgtest::XmlProblems(Path("plan.svg")), "");
}

}  // namespace

// Whole SVG files: names per view kind, header values, layer groups and their status, skipped
// layers, break-by-layer files, bad output places and empty views.
#include <filesystem>

#include "tests/drivers/SvgDriverFixture.h"

namespace {

using svgtest::CountOf;
using svgtest::SvgDriverTest;

class SvgDocument : public SvgDriverTest {
protected:
  // One view with one short polyline on the named layer.
  void DrawView(const wchar_t* name, int kind, const wchar_t* layer = L"Walls", double size = 100) {
    BeginView(name, kind, 0, 0, size, size);
    Layer(layer);
    Polyline({{1, 1}, {20, 1}});
  }
  bool Exists(const std::string& name) const { return std::filesystem::exists(Path(name)); }
};

TEST_F(SvgDocument, FileNamesPerViewKind) {
  OdString name = L"out/plan";
  EXPECT_EQ(svg().FixOutputName(name), 1);
  EXPECT_EQ(name, OdString(L"out/plan.svg"));

  struct Case {
    const wchar_t* view;
    int kind;
    const char* file;
  };
  // One view after the other, as the converter drives them, without keeping the first name: only
  // the first file takes the bare name, so no view overwrites another.
  const Case cases[] = {
      {L"Model", kViewModelSpace, "plan.svg"},          {L"Paper", kViewPaperSpace, "plan__PaperSpace.svg"},
      {L"Layout1", kViewLayout, "plan__Layout01.svg"},  {L"Layout2", kViewLayout, "plan__Layout02.svg"},
      {L"North", kViewNamed, "plan__View01.svg"},       {L"Last", kViewLastSaved, "plan__LastSavedView.svg"},
  };
  for (const Case& c : cases) {
    std::filesystem::remove(Path(c.file));
    DrawView(c.view, c.kind);
    ASSERT_EQ(OutputView(), 1);
    EXPECT_TRUE(Exists(c.file)) << c.file;
    EXPECT_EQ(svgtest::XmlProblems(Path(c.file)), "") << c.file;
  }
}

TEST_F(SvgDocument, KeepingTheFirstNameInOneOutput) {
  // Three layouts written by one OutputDrawing: the first keeps the bare name.
  for (const wchar_t* layout : {L"A", L"B", L"C"}) {
    svg().DefineView(OdString(layout), kViewLayout);
    Layer(L"Walls");
    Polyline({{1, 1}, {20, 9}});
    svg().StoreViewExtents();
  }
  ASSERT_EQ(svg().OutputDrawing(true), 1);
  EXPECT_TRUE(Exists("plan.svg"));
  EXPECT_TRUE(Exists("plan__Layout01.svg"));
  EXPECT_TRUE(Exists("plan__Layout02.svg"));
  EXPECT_FALSE(Exists("plan__Layout03.svg"));
}

TEST_F(SvgDocument, EmptyViewsWriteNothing) {
  SetTraceEnabled(true);
  testing::internal::CaptureStdout();
  svg().DefineView(OdString(L"Model"), kViewModelSpace);  // nothing drawn
  Layer(L"Walls");
  EXPECT_EQ(svg().OutputView(false), 1);
  std::string said = testing::internal::GetCapturedStdout();
  EXPECT_NE(said.find("Empty View: ModelSpace"), std::string::npos) << said;
  EXPECT_FALSE(Exists("plan.svg"));
}

TEST_F(SvgDocument, AnOutputPlaceThatCannotBeOpened) {
  // A missing folder, and a folder where the file should be.
  std::filesystem::create_directories(Path("taken.svg"));
  const std::string places[] = {"no/such/folder/plan", "taken"};
  for (const std::string& place : places) {
    svg().SetBaseDrawingName(OdString((dir_ / place).string()));
    DrawView(L"Model", kViewModelSpace);
    testing::internal::CaptureStdout();
    EXPECT_EQ(OutputView(), 0) << place;
    std::string said = testing::internal::GetCapturedStdout();
    EXPECT_NE(said.find("Output File Open Error\nFile May Be In Use By Another Program\n"), std::string::npos) << said;
  }
}

TEST_F(SvgDocument, HeaderFromTheView) {
  svg().SetBuildingName("HQ & Annex");
  svg().SetFloorName("2");
  svg().SetUnitsName("Millimeters");
  DrawView(L"Model", kViewModelSpace);
  svg().SetWorldExtents(0, 0, 1000, 500);
  svg().SetDrawingHeight(500);
  ASSERT_EQ(OutputView(), 1);
  std::string file = Written("plan.svg");
  EXPECT_NE(file.find("width=\"100\" height=\"100\" viewBox=\"0 0 100 100\" "), std::string::npos);
  // The smaller of 100/1000 and 100/500.
  EXPECT_NE(file.find("\"svgToWorldUnits\": 0.1}"), std::string::npos) << file;
  EXPECT_NE(file.find("{ \"globalOrigin\": { \"x\": -500, \"y\" : -250}, "), std::string::npos);
  EXPECT_NE(file.find("\"units\": \"Millimeters\","), std::string::npos);
  EXPECT_NE(file.find("<text id=\"vistrel_vqBuilding\">HQ &amp; Annex</text>"), std::string::npos);
  EXPECT_NE(file.find(" \"Drawing Height\": 500}"), std::string::npos);
  EXPECT_NE(file.find("version=\"1.1\""), std::string::npos);
  EXPECT_DOUBLE_EQ(svg().GetSvgScale(), 10);
  EXPECT_EQ(svgtest::XmlProblems(Path("plan.svg")), "");
}

TEST_F(SvgDocument, WithoutWorldExtentsAndWithVersionOne) {
  svg().SetOutputVersion(1);
  DrawView(L"Model", kViewModelSpace);
  ASSERT_EQ(OutputView(), 1);
  std::string file = Written("plan.svg");
  EXPECT_EQ(file.find("vistrel_worldUnits"), std::string::npos);
  EXPECT_EQ(file.find("vistrel_drawingCoordinates"), std::string::npos);
  EXPECT_NE(file.find("version=\"1.0\""), std::string::npos);
  EXPECT_DOUBLE_EQ(svg().GetSvgScale(), 1);
}

TEST_F(SvgDocument, SmallPagesShortenDashesForTheRestOfTheRun) {
  DrawView(L"Model", kViewModelSpace, L"Walls", 1250);
  ASSERT_EQ(OutputView(), 1);
  EXPECT_DOUBLE_EQ(svg().GetDashScale(), 0.5);
  DrawView(L"L1", kViewLayout, L"Walls", 1250);
  ASSERT_EQ(OutputView(), 1);
  EXPECT_DOUBLE_EQ(svg().GetDashScale(), 0.25);
  DrawView(L"L2", kViewLayout, L"Walls", 5000);
  ASSERT_EQ(OutputView(), 1);
  EXPECT_DOUBLE_EQ(svg().GetDashScale(), 0.25);
}

TEST_F(SvgDocument, PostfixMarksEveryIdOfAFile) {
  svg().SetPostfix(true);
  DrawView(L"Model", kViewModelSpace);
  Layer(L"Doors");
  Polyline({{5, 5}, {9, 9}});
  ASSERT_EQ(OutputView(), 1);
  std::string file = Written("plan.svg");
  std::string postfix = svg().GetIdPostfix();
  ASSERT_EQ(postfix.size(), 4u);
  EXPECT_EQ(postfix[3], '_');
  std::string three = postfix.substr(0, 3);
  EXPECT_NE(file.find("--qwsPostFix: \"" + three + "\";"), std::string::npos);
  EXPECT_NE(file.find("<g id=\"layer_" + postfix + "Walls\" class=\"layer_" + postfix + "Walls\""), std::string::npos);
  EXPECT_NE(file.find("<g id=\"layer_" + postfix + "Doors\" class=\"layer_" + postfix + "Doors\""), std::string::npos);
  EXPECT_NE(file.find("<text id=\"vistrel_vqFloor_" + three + "\">"), std::string::npos);
  EXPECT_EQ(CountOf(file, "id=\"cv_" + postfix), 2);
}

TEST_F(SvgDocument, LayerGroupsStatusAndSkipping) {
  svg().AddOffLayer("Hidden");
  svg().AddFrozenLayer("Frozen");
  svg().SetLayersOff("Dropped");
  BeginView(L"Model", kViewModelSpace, 0, 0, 100, 100);
  for (const wchar_t* layer : {L"Walls", L"Hidden", L"Frozen", L"Dropped", L"A-1 \u00e9"}) {
    Layer(layer);
    Polyline({{1, 1}, {20, 1}});
  }
  ASSERT_EQ(OutputView(), 1);
  std::string file = Written("plan.svg");
  EXPECT_NE(file.find("<g id=\"layer_Walls\" class=\"layer_Walls\"  vtrl:layerName=\"Walls\" vtrl:status=\"ON\" "
                      "visibility=\"visible\">"),
            std::string::npos);
  EXPECT_NE(file.find("vtrl:layerName=\"Hidden\" vtrl:status=\"OFF\" visibility=\"hidden\">"), std::string::npos);
  EXPECT_NE(file.find("vtrl:layerName=\"Frozen\" vtrl:status=\"FROZEN\" visibility=\"hidden\">"), std::string::npos);
  EXPECT_EQ(file.find("Dropped"), std::string::npos);
  EXPECT_NE(file.find("<g id=\"layer_A_and_#x2d;1_and_#x20;\xC3\xA9\""), std::string::npos) << file;
  EXPECT_EQ(svgtest::XmlProblems(Path("plan.svg")), "");

  // Only the layers-on list.
  svg().SetLayersOn("Frozen;Walls");
  DrawView(L"L1", kViewLayout);
  Layer(L"Other");
  Polyline({{1, 1}, {20, 1}});
  ASSERT_EQ(OutputView(), 1);
  std::string second = Written("plan__Layout01.svg");
  EXPECT_NE(second.find("layer_Walls"), std::string::npos);
  EXPECT_EQ(second.find("layer_Other"), std::string::npos);
}

TEST_F(SvgDocument, ColourClassesForUsedColours) {
  BeginView(L"Model", kViewModelSpace, 0, 0, 100, 100);
  Layer(L"Walls", 3);
  Polyline({{1, 1}, {20, 1}});
  svg().SetColor(30);
  Polyline({{1, 5}, {20, 5}});
  ASSERT_EQ(OutputView(), 1);
  std::string file = Written("plan.svg");
  EXPECT_EQ(file.find(".sClr_3 {"), std::string::npos);
  EXPECT_NE(file.find(".sClr_30 {"), std::string::npos);
  EXPECT_NE(file.find(".greyscale.sClr_30 {"), std::string::npos);
  EXPECT_NE(file.find(".fClr_30 {"), std::string::npos);
  EXPECT_NE(file.find("class=\"sClr_green ZW \""), std::string::npos);
}

TEST_F(SvgDocument, HostileLayerNamesAndTextsStayWellFormed) {
  const std::wstring names[] = {
      L"a\"b<c>&d'e", std::wstring(L"ctl\x01\x02\x1b"), L"\\U+0041\\U+D800\\U+0001", std::wstring(1, wchar_t(0x1F600)),
      L"", L"    ", L"#", L"]]>", std::wstring(L"nul") + wchar_t(0) + L"x"};
  BeginView(L"Model", kViewModelSpace, 0, 0, 100, 100);
  for (const std::wstring& name : names) {
    Layer(name.c_str());
    Polyline({{1, 1}, {20, 1}});
    TextRecord text;
    text.text = OdString(name + L" \\U+00E9 \x07 ]]> 'q' \"d\" &amp;");
    text.height = 2.5;
    svg().DrawText(text);
  }
  svg().SetBuildingName("\x01<b>&");
  svg().SetUnitsName("\"\x02");
  ASSERT_EQ(OutputView(), 1);
  EXPECT_EQ(svgtest::XmlProblems(Path("plan.svg")), "") << Written("plan.svg");
}

TEST_F(SvgDocument, BreakByLayerWritesOneFilePerLayer) {
  svg().SetBreakByLayer(true);
  BeginView(L"Model", kViewModelSpace, 0, 0, 100, 100);
  for (const wchar_t* layer : {L"Walls", L"Doors", L"a/b"}) {
    Layer(layer);
    Polyline({{1, 1}, {20, 1}});
  }
  ASSERT_EQ(OutputView(), 1);
  EXPECT_FALSE(Exists("plan.svg"));
  for (const char* name : {"plan__Walls.svg", "plan__Doors.svg", "plan__a_b.svg"}) {
    ASSERT_TRUE(Exists(name)) << name;
    std::string file = Written(name);
    // No trailer: the file ends with its layer group.
    EXPECT_EQ(file.substr(file.size() - 5), "</g>\n") << name;
    EXPECT_EQ(CountOf(file, "<g id=\"layer_"), 1) << name;
    EXPECT_EQ(svgtest::XmlTextProblems(file + "</svg>\n", "dm_svg_bl.svg"), "") << name;
  }
}

TEST_F(SvgDocument, BreakByLayerStopsAtAFileThatCannotBeOpened) {
  svg().SetBreakByLayer(true);
  svg().SetBaseDrawingName(OdString((dir_ / "missing" / "plan").string()));
  BeginView(L"Model", kViewModelSpace, 0, 0, 100, 100);
  Layer(L"Walls");
  Polyline({{1, 1}, {20, 1}});
  testing::internal::CaptureStdout();
  EXPECT_EQ(OutputView(), 0);
  std::string said = testing::internal::GetCapturedStdout();
  EXPECT_EQ(CountOf(said, "Output File Open Error"), 1) << said;
}

TEST_F(SvgDocument, PagesMetadataNamesTheCurrentPage) {
  svg().AddPage(L"Ground & floor", OdString((dir_ / "plan.svg").string()));
  svg().AddPage(L"First", OdString((dir_ / "plan__Layout01.svg").string()));
  DrawView(L"Model", kViewModelSpace);
  ASSERT_EQ(OutputView(), 1);
  DrawView(L"L1", kViewLayout);
  ASSERT_EQ(OutputView(), 1);
  std::string first = Written("plan.svg");
  std::string second = Written("plan__Layout01.svg");
  EXPECT_NE(first.find("{ \"multiPages\": 2, \n                   \"currentPage\":1,"), std::string::npos) << first;
  EXPECT_NE(second.find("\"currentPage\":2,"), std::string::npos);
  EXPECT_NE(first.find("{ \"fileName\":\"plan.svg\", \"pageName\":\"Ground &amp; floor\"},"), std::string::npos);
}

TEST_F(SvgDocument, RoomOutlinesCarryTheTextInside) {
  svg().SetRoomLayers("Rooms");
  svg().SetTextLayers("Labels");
  BeginView(L"Model", kViewModelSpace, 0, 0, 100, 100);
  Layer(L"Rooms", 2);
  svg().SetCurrentHandle("2A4");
  Polyline({{10, 10}, {40, 10}, {40, 40}, {10, 40}, {10, 10}});
  Polyline({{60, 60}, {90, 60}, {90, 90}, {60, 90}, {60, 60}});
  Layer(L"Labels", 2);
  TextRecord label;
  label.text = L"101";
  label.position = {20, 20};
  label.height = 2;
  svg().DrawText(label);
  ASSERT_EQ(OutputView(), 1);
  std::string file = Written("plan.svg");
  EXPECT_NE(file.find("class=\"sClr_red  ZW vtrl_nodes\" vtrl:node='NODE_1' vtrl:roomId='101' fill=\"transparent\" "),
            std::string::npos)
      << file;
  EXPECT_EQ(CountOf(file, "vtrl:roomId="), 1);
  EXPECT_TRUE(Exists("plan.rl"));
  EXPECT_EQ(svgtest::XmlProblems(Path("plan.svg")), "");
}

TEST_F(SvgDocument, PageFilesOfAMultiPageRun) {
  svg().SetBaseDrawingName(OdString(Path("plan").string()));
  testing::internal::CaptureStdout();
  for (const wchar_t* view : {L"Layout__", L"Layout__", L"View__", L"North"}) {
    svg().DefineView(OdString(view), kViewLayout);
    EXPECT_EQ(svg().StartPageFile(), 1);
    svg().CloseOutputFile();
  }
  std::string said = testing::internal::GetCapturedStdout();
  for (const char* name : {"plan__Layout01.svg", "plan__Layout02.svg", "plan__View01.svg", "plan__North.svg"}) {
    EXPECT_TRUE(Exists(name)) << name;
  }
  EXPECT_NE(said.find("Page #1  File: " + Path("plan__Layout01.svg").string()), std::string::npos) << said;
  EXPECT_NE(said.find("Page #4  File: "), std::string::npos);
  EXPECT_EQ(svg().GetOutputStem(), OdString(L"plan__North"));
}

}  // namespace

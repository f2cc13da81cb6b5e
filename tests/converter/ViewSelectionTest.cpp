// The view selection: which spaces, layouts and views each view mode converts, in which order,
// with which first-output mark, and the names it registers for the output files.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "converter/CDm2017.h"
#include "drivers/TRANS_BASE2.h"
#include "services/Trace.h"
#include "tests/converter/ConverterTestSupport.h"

namespace {

using namespace converter_test;

struct ViewCall {
  std::wstring name;
  int kind;
  bool first;
  bool operator==(const ViewCall&) const = default;
};

std::ostream& operator<<(std::ostream& out, const ViewCall& call) {
  std::string name;
  for (wchar_t c : call.name) name += static_cast<char>(c);
  return out << "{" << name << ", " << call.kind << ", " << call.first << "}";
}

// A converter whose ConvertView records its calls instead of writing files.
class RecordingConverter : public CDm2017 {
public:
  using CDm2017::Convert;
  using CDm2017::UseOutputDriver;

  int ConvertView(const OdString& name, int kind, bool first) override {
    calls.push_back({name.str(), kind, first});
    layoutsSeen.push_back(GetLayoutName().str());
    return name.str() == failOn ? -5 : 0;
  }

  std::vector<ViewCall> calls;
  std::vector<std::wstring> layoutsSeen;
  std::wstring failOn;
};

class ViewSelection : public ::testing::Test {
protected:
  void SetUp() override {
    converter.SetOutputFile(Wide(scratch.file("plan.svg")));
    converter.SetOutputFormat(1016);
    CapturedOutput quiet;
    ASSERT_EQ(converter.ReadInputFile(Wide(kSampleDxf)), 0);
    ASSERT_NE(g_pDb, nullptr);
    driver = new TRANS_BASE2();
    converter.UseOutputDriver(driver);
  }

  // A second paper-space layout with one entity (or none).
  OdDbLayout* AddLayout(const std::string& name, bool withEntity = true) {
    OdDbDatabase& db = *g_pDb;
    auto* block = db.newObject<OdDbBlockTableRecord>();
    block->name = "*Paper_Space" + std::to_string(++blockCounter);
    db.blocks().add(block);
    db.adoptHandle(block);
    if (withEntity) {
      auto* line = db.newObject<OdDbLine>();
      line->layer = db.layerZero();
      line->linetype = db.linetypeByLayer();
      line->end = OdGePoint3d(10, 10, 0);
      block->entities.push_back(line);
    }
    auto* layout = db.newObject<OdDbLayout>();
    layout->name = name;
    layout->tabOrder = static_cast<int16_t>(10 + blockCounter);
    layout->block = block;
    layout->paperWidth = 420;
    layout->paperHeight = 297;
    db.addObject(layout);
    return layout;
  }

  void AddView(const std::string& name, bool paper = false) {
    auto* view = g_pDb->newObject<OdDbViewTableRecord>();
    view->name = name;
    if (paper) view->flags = OdDbViewTableRecord::kPaperSpace;
    g_pDb->views().add(view);
  }

  std::wstring Mapped(const std::wstring& space) const {
    const auto& map = driver->GetOutputNameMap();
    auto it = map.find(OdString(space));
    return it == map.end() ? L"<none>" : it->second.str();
  }

  std::wstring Base() const { return Wide(scratch.file("plan")).str(); }

  Scratch scratch;
  RecordingConverter converter;
  TRANS_BASE2* driver = nullptr;
  int blockCounter = 0;
};

TEST_F(ViewSelection, AllConvertsEveryKindOnceInOrderAndNamesTheLayouts) {
  AddLayout("Layout2");
  AddView("North");
  AddView("Model_North");
  AddView("OLE1");
  AddView("Sheet", true);
  converter.SetViewMode(3);
  CapturedOutput out;
  EXPECT_EQ(converter.Convert(), 0);
  const std::vector<ViewCall> expected = {
      {L"Last Saved View", 0, true}, {L"ModelSpace", 1, false}, {L"PaperSpace", 2, false},
      {L"MEETING_ROOM", 4, false}, {L"North", 4, false},          {L"Layout1", 3, false},    {L"Layout2", 3, false},
  };
  EXPECT_EQ(converter.calls, expected);
  // Model space took the plain name, so the layouts count from 01.
  EXPECT_EQ(Mapped(L"ModelSpace"), Base());
  EXPECT_EQ(Mapped(L"Layout1"), Base() + L"__Layout01");
  EXPECT_EQ(Mapped(L"Layout2"), Base() + L"__Layout02");
  EXPECT_TRUE(out.has("Layout Name: Layout1\nLayout Name: Layout2\n"));
  EXPECT_EQ(converter.layoutsSeen.back(), L"Layout2");
}

struct ModeCase {
  const char* title;
  int mode;
  std::wstring layout;
  std::wstring view;
  std::vector<ViewCall> calls;
  int result;
  std::vector<std::string> messages;
};

class ViewModes : public ViewSelection, public ::testing::WithParamInterface<ModeCase> {};

TEST_P(ViewModes, ConvertTheirItems) {
  const ModeCase& c = GetParam();
  AddLayout("Layout2");
  AddLayout("model");  // never converted by the layout loop
  AddView("North");
  converter.SetViewMode(c.mode);
  converter.SetLayoutName(OdString(c.layout));
  converter.SetViewName(OdString(c.view));
  CapturedOutput out;
  EXPECT_EQ(converter.Convert(), c.result);
  EXPECT_EQ(converter.calls, c.calls);
  for (const std::string& message : c.messages) EXPECT_TRUE(out.has(message)) << message << "\n" << out.text();
}

INSTANTIATE_TEST_SUITE_P(
    Modes, ViewModes,
    ::testing::Values(
        ModeCase{"LastWithTileMode", 0, L"", L"", {{L"ModelSpace", 1, true}}, 0, {}},
        ModeCase{"Model", 1, L"", L"", {{L"ModelSpace", 1, true}}, 0, {}},
        ModeCase{"ModelByLayoutName", 12, L"MODEL", L"", {{L"ModelSpace", 1, true}}, 0, {}},
        ModeCase{"Paper", 2, L"", L"", {{L"PaperSpace", 2, true}}, 0, {}},
        ModeCase{"AllPaper", 4, L"", L"", {{L"PaperSpace", 2, true}, {L"Layout1", 3, false}, {L"Layout2", 3, false}}, 0, {}},
        ModeCase{"AllModel", 5, L"", L"", {{L"ModelSpace", 1, true}, {L"MEETING_ROOM", 4, false}, {L"North", 4, false}}, 0, {}},
        ModeCase{"LayoutsOnly", 6, L"", L"", {{L"Layout1", 3, true}, {L"Layout2", 3, false}}, 0, {}},
        ModeCase{"ViewsOnly", 7, L"", L"", {{L"MEETING_ROOM", 4, true}, {L"North", 4, false}}, 0, {}},
        ModeCase{"NoLast", 8, L"", L"",
                 {{L"ModelSpace", 1, true}, {L"PaperSpace", 2, false}, {L"MEETING_ROOM", 4, false}, {L"North", 4, false},
                  {L"Layout1", 3, false}, {L"Layout2", 3, false}}, 0, {}},
        ModeCase{"Basic", 9, L"", L"", {{L"ModelSpace", 1, true}, {L"Layout1", 3, false}, {L"Layout2", 3, false}}, 0, {}},
        ModeCase{"ModelOnly", 11, L"", L"", {{L"ModelSpace", 1, true}}, 0, {}},
        ModeCase{"NamedLayout", 12, L"layout2", L"", {{L"layout2", 2, true}}, 0, {}},
        ModeCase{"MissingLayout", 12, L"Nowhere", L"", {}, 0, {"Layout Name Not Found: Nowhere\n"}},
        ModeCase{"NamedView", 13, L"", L"North", {{L"North", 1, true}}, 0, {}},
        ModeCase{"FirstLayoutOverridesNames", 10, L"Layout2", L"North", {{L"Layout1", 2, true}}, 0,
                 {"Use of -first overrides Layout Name set using -layout\n",
                  "Use of -first overrides View Name set using -view\n", "Processing First Layout: Layout1\n"}}),
    [](const ::testing::TestParamInfo<ModeCase>& info) { return std::string(info.param.title); });

TEST_F(ViewSelection, FirstLayoutSkipsEmptyLayoutsAndFailsWhenNoneIsLeft) {
  g_pDb->paperSpace()->entities.clear();
  AddLayout("Empty", false);
  converter.SetViewMode(10);
  {
    CapturedOutput out;
    EXPECT_EQ(converter.Convert(), -672);
    EXPECT_TRUE(out.has("Skipping Empty Layout: Layout1\nSkipping Empty Layout: Empty\n")) << out.text();
    EXPECT_TRUE(out.has("No Layouts Defined in file\n"));
  }
  EXPECT_TRUE(converter.calls.empty());
}

TEST_F(ViewSelection, AFailedViewStopsTheRun) {
  converter.failOn = L"PaperSpace";
  converter.SetViewMode(8);
  CapturedOutput out;
  EXPECT_EQ(converter.Convert(), -5);
  ASSERT_EQ(converter.calls.size(), 2u);
  EXPECT_EQ(converter.calls.back().name, L"PaperSpace");
}

TEST_F(ViewSelection, EmptyLayoutGetsAViewportOrIsSkipped) {
  OdDbLayout* empty = AddLayout("Empty", false);
  converter.SetViewMode(6);
  {
    CapturedOutput out;
    converter.Convert();
    EXPECT_TRUE(out.has("Empty Layout, Creating Modelspace Viewport: Empty\n"));
  }
  ASSERT_EQ(empty->block->entities.size(), 1u);
  const auto* viewport = dbCast<ViewportEntity>(empty->block->entities.front());
  ASSERT_NE(viewport, nullptr);
  EXPECT_EQ(viewport->width, 396.0);   // 420 / 1.058, truncated
  EXPECT_EQ(viewport->height, 280.0);  // 297 / 1.058, truncated
  EXPECT_TRUE(viewport->isOn());
  EXPECT_EQ(converter.calls.back(), (ViewCall{L"Empty", 3, false}));

  AddLayout("Bare", false);
  converter.calls.clear();
  converter.SetNoUninit(false);
  converter.SetViewMode(6);
  CapturedOutput out;
  converter.Convert();
  for (const ViewCall& call : converter.calls) EXPECT_NE(call.name, L"Bare");
}

TEST_F(ViewSelection, LastSavedViewOfAPaperDrawingIsItsActiveLayout) {
  g_pDb->header().tileMode = false;
  converter.SetViewMode(0);
  CapturedOutput out;
  converter.Convert();
  EXPECT_EQ(converter.calls, (std::vector<ViewCall>{{L"Layout1", 2, true}}));
}

}  // namespace

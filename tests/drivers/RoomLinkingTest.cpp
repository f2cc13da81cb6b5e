// Room outlines linked to labels and texts, and the ".rl" report.
#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>

#include "projects/common/CommonRoutines.h"
#include "tests/drivers/DriverTestSupport.h"

using drvtest::DriverTest;
using drvtest::ReadText;
using drvtest::W;

namespace {

class RoomLinkingTest : public DriverTest {
protected:
  RoomLinkingTest() {
    driver.ResetFile();
    driver.DefineView(W("ModelSpace"), kViewModelSpace);
    driver.SetOutputFileName(OdString(reportBase() + ".svg"));
  }
  std::string reportBase() const { return (scratch_.path() / "plan").string(); }
  std::string report() const { return ReadText(reportBase() + ".rl"); }
  bool reportWritten() const { return std::filesystem::exists(reportBase() + ".rl"); }

  void room(const char* layer, const char* handle, double x0, double y0, double x1, double y1) {
    driver.SetLayer(W(layer), 7);
    driver.SetCurrentHandle(handle);
    driver.DrawPolyline({{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}, {x0, y0}}, false, 0, W("CONTINUOUS"), true, 0,
                        1.0, 0.0);
  }
  void text(const char* layer, const wchar_t* content, double x, double y) {
    driver.SetLayer(W(layer), 7);
    TextRecord record;
    record.text = OdString(content);
    record.height = 1.0;
    record.position = {x, y};
    ASSERT_EQ(driver.DrawText(record), 1);
  }
  DrvPolyline& outline(const char* layer, std::size_t i) {
    return driver.GetCurrentView()->layers.at(W(layer)).colorGroups.at(0).polylines.at(i);
  }
  TRANS_BASE2 driver;
};

TEST_F(RoomLinkingTest, ReportListsLinkedOutlinesAndLeftoverTexts) {
  driver.SetRoomLayers("ROOMS");
  driver.SetTextLayers("TEXT");
  room("ROOMS", "2A4", 0, 0, 5, 3.7);
  room("ROOMS", "2A5", 10, 0, 15, 4);
  text("TEXT", L"101", 2, 2);
  text("TEXT", L"LOBBY", 30, 30);
  text("OTHER", L"not a room text", 12, 2);
  driver.LinkRoomsAndTexts();
  EXPECT_EQ(report(), reportBase() + ".svg\n[LINKED]\n101,2A4,18.5\n[UNLINKED]\nLOBBY\n");
  EXPECT_EQ(outline("ROOMS", 0).roomId, "101");
  EXPECT_EQ(outline("ROOMS", 1).roomId, "");
  EXPECT_TRUE(driver.GetCurrentView()->layers.at(W("ROOMS")).roomLayer);
  EXPECT_FALSE(driver.GetCurrentView()->layers.at(W("TEXT")).roomLayer);
}

TEST_F(RoomLinkingTest, BothListsAreNeeded) {
  struct Case {
    const char* rooms;
    const char* texts;
  } cases[] = {{"ROOMS", ""}, {"", "TEXT"}, {";", "TEXT"}};
  room("ROOMS", "1", 0, 0, 5, 5);
  text("TEXT", L"101", 2, 2);
  for (const auto& c : cases) {
    driver.SetRoomLayers(c.rooms);
    driver.SetTextLayers(c.texts);
    driver.LinkRoomsAndTexts();
    EXPECT_FALSE(reportWritten()) << c.rooms << " / " << c.texts;
    EXPECT_EQ(outline("ROOMS", 0).roomId, "");
  }
}

TEST_F(RoomLinkingTest, NothingInsideAnyOutlineGivesEmptyLinkedSection) {
  driver.SetRoomLayers("ROOMS");
  driver.SetTextLayers("TEXT");
  room("ROOMS", "1", 0, 0, 5, 5);
  driver.LinkRoomsAndTexts();
  EXPECT_EQ(report(), reportBase() + ".svg\n[LINKED]\n** empty **\n[UNLINKED]\n** empty **\n");
  text("TEXT", L"far away", 50, 50);
  driver.LinkRoomsAndTexts();
  EXPECT_EQ(report(), reportBase() + ".svg\n[LINKED]\n** empty **\n[UNLINKED]\nfar away\n");
}

TEST_F(RoomLinkingTest, LabelsComeBeforeTextsAndTheFirstOneInsideWins) {
  driver.SetRoomLayers("ROOMS");
  driver.SetTextLayers("TEXT");
  room("ROOMS", "A", 0, 0, 10, 10);
  room("ROOMS", "B", 20, 0, 30, 10);
  text("TEXT", L"T1", 5, 5);
  text("TEXT", L"T2", 25, 5);
  text("TEXT", L"T3", 26, 6);
  driver.AddRoomLabel("1_A_101", 6, 6);
  driver.AddRoomLabel("1_A_102", 4, 4);
  driver.LinkRoomsAndTexts();
  EXPECT_EQ(outline("ROOMS", 0).roomId, "1_A_101");
  EXPECT_EQ(outline("ROOMS", 1).roomId, "T2");
  EXPECT_EQ(report(), reportBase() + ".svg\n[LINKED]\n1_A_101,A,100\nT2,B,100\n[UNLINKED]\nT1\nT3\n");
}

TEST_F(RoomLinkingTest, LinkedTextLeavesUnlinkedListOnceAndNamesMatchWithoutCase) {
  driver.SetRoomLayers("rooms;A-ROOM");
  driver.SetTextLayers("Text");
  room("ROOMS", "1", 0, 0, 10, 10);
  room("A-ROOM", "2", 20, 0, 30, 10);
  text("TEXT", L"101", 5, 5);
  text("TEXT", L"101", 50, 50);
  text("TEXT", L"R\\U+00E4um", 25, 5);
  driver.StandardizeLayerNames();  // the writer standardizes before linking
  driver.LinkRoomsAndTexts();
  EXPECT_EQ(outline("ROOMS", 0).roomId, "101");
  EXPECT_EQ(outline("A-ROOM", 0).roomId, "R\\u00E4um");
  EXPECT_EQ(report(), reportBase() + ".svg\n[LINKED]\nR\\u00E4um,2,100\n101,1,100\n[UNLINKED]\n101\n");
}

TEST_F(RoomLinkingTest, OutlinesAndTextsInsideNodeGroupsTakePart) {
  driver.SetRoomLayers("ROOMS");
  driver.SetTextLayers("TEXT");
  driver.BeginGroup(W("ROOMBLOCK"));
  room("ROOMS", "9", 0, 0, 10, 10);
  text("TEXT", L"B1", 5, 5);
  driver.EndGroup(W("ROOMBLOCK"));
  driver.LinkRoomsAndTexts();
  const DrvNodeGroup& group = driver.GetCurrentView()->nodeGroups.at(0);
  EXPECT_EQ(group.layers.at(W("ROOMS")).colorGroups.at(0).polylines.at(0).roomId, "B1");
  EXPECT_EQ(report(), reportBase() + ".svg\n[LINKED]\nB1,9,100\n[UNLINKED]\n** empty **\n");
}

TEST_F(RoomLinkingTest, RoomLabelPassLinksLabelsWithoutReport) {
  driver.SetRoomLayers("ROOMS");
  room("ROOMS", "1", 0, 0, 10, 10);
  text("TEXT", L"ignored", 5, 5);
  driver.AddRoomLabel("L1", 5, 5);
  driver.LinkRoomLabels();
  EXPECT_EQ(outline("ROOMS", 0).roomId, "L1");
  EXPECT_FALSE(reportWritten());
}

TEST_F(RoomLinkingTest, UnopenableReportStillLinks) {
  driver.SetRoomLayers("ROOMS");
  driver.SetTextLayers("TEXT");
  TRANS_BASE2 other;
  other.SetOutputFileName(W("/nonexistent/dir/plan.svg"));
  other.SetRoomLayers("ROOMS");
  other.SetTextLayers("TEXT");
  other.ResetFile();
  other.DefineView(W("V"), kViewModelSpace);
  other.SetLayer(W("ROOMS"), 7);
  other.DrawPolyline({{0, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 0}}, false, 0, W("C"), true, 0, 1.0, 0.0);
  other.SetLayer(W("TEXT"), 7);
  TextRecord record;
  record.text = OdString(L"7");
  record.height = 1;
  record.position = {1, 1};
  other.DrawText(record);
  other.LinkRoomsAndTexts();
  EXPECT_EQ(other.GetCurrentView()->layers.at(W("ROOMS")).colorGroups[0].polylines[0].roomId, "7");
}

// The spatial index must find exactly what a scan of every text for every outline finds,
// including overlapping rooms, texts on edges and degenerate outlines.
TEST_F(RoomLinkingTest, GridAgreesWithExhaustiveScan) {
  driver.SetRoomLayers("ROOMS");
  driver.SetTextLayers("TEXT");
  std::mt19937 random(1234);
  std::uniform_real_distribution<double> coordinate(0.0, 1000.0), size(0.0, 60.0);
  std::vector<std::vector<OdGePoint2d>> outlines;
  for (int i = 0; i < 400; ++i) {
    double x = coordinate(random), y = coordinate(random), w = size(random), h = i % 50 == 0 ? 0.0 : size(random);
    std::vector<OdGePoint2d> triangle{{x, y}, {x + w, y}, {x + w / 2, y + h}, {x, y}};
    driver.SetLayer(W("ROOMS"), 7);
    driver.DrawPolyline(triangle, false, 0, W("C"), true, 0, 1.0, 0.0);
    outlines.push_back(triangle);
  }
  std::vector<std::pair<OdGePoint2d, std::wstring>> texts;
  for (int i = 0; i < 3000; ++i) {
    OdGePoint2d p{std::round(coordinate(random)), std::round(coordinate(random))};
    std::wstring content = L"T" + std::to_wstring(i);
    text("TEXT", content.c_str(), p.x, p.y);
    texts.push_back({p, content});
  }
  driver.LinkRoomsAndTexts();
  const auto& stored = driver.GetCurrentView()->layers.at(W("ROOMS")).colorGroups.at(0).polylines;
  int linked = 0;
  for (std::size_t r = 0; r < stored.size(); ++r) {
    std::string expected;
    for (const auto& [p, content] : texts) {
      if (PointInPolygon(stored[r].points, p.x, p.y)) {
        expected = OdAnsiString(OdString(content)).c_str();
        break;
      }
    }
    EXPECT_EQ(stored[r].roomId, expected) << "outline " << r;
    linked += !expected.empty();
  }
  EXPECT_GT(linked, 50);
}

}  // namespace

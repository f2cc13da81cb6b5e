// MPOLYGON read from DXF (as a Python DXF library writes it) and from DWG, drawn as its fill in
// its fill colour plus its boundary in the entity's colour, and written back to DXF.
#include <gtest/gtest.h>

#include <filesystem>

#include "kit/dxf/DxfWriter.h"
#include "tests/kit/DwgTestSupport.h"
#include "tests/kit/GsTestSupport.h"

namespace {

// A 10 x 10 square with a triangular hole, solid in colour 3, drawn in colour 2; then a triangle
// hatched with ANSI31.
const std::vector<std::string> kMPolygons = {
    "0 MPOLYGON", "5 2F", "100 AcDbEntity", "8 0", "62 2", "100 AcDbMPolygon", "70 1", "10 0.0", "20 0.0",
    "30 0.0", "210 0.0", "220 0.0", "230 1.0", "2 SOLID", "71 1", "91 2", "92 3", "73 1", "72 0", "93 4",
    "10 0", "20 0", "10 10", "20 0", "10 10", "20 10", "10 0", "20 10", "92 3", "73 1", "72 0", "93 3",
    "10 3", "20 3", "10 6", "20 3", "10 6", "20 6", "76 1", "63 3", "11 0.0", "21 0.0", "99 0", "450 0",
    "451 0", "460 0.0", "461 0.0", "452 0", "462 0.0", "453 0", "470 ",
    "0 MPOLYGON", "5 30", "100 AcDbEntity", "8 0", "62 1", "100 AcDbMPolygon", "70 1", "10 0.0", "20 0.0",
    "30 0.0", "210 0.0", "220 0.0", "230 1.0", "2 ANSI31", "71 0", "91 1", "92 3", "73 1", "72 0", "93 3",
    "10 20", "20 0", "10 30", "20 0", "10 25", "20 8", "76 1", "52 0.0", "41 0.5", "77 0", "78 1", "53 45.0",
    "43 0.0", "44 0.0", "45 -0.88", "46 0.88", "79 0", "11 0.0", "21 0.0", "99 0"};

std::vector<MPolygonEntity*> mpolygonsOf(const OdDbDatabase& db) {
  std::vector<MPolygonEntity*> found;
  for (Entity* e : db.modelSpace()->entities) {
    if (auto* m = dbCast<MPolygonEntity>(e)) found.push_back(m);
  }
  return found;
}

TEST(MPolygon, DxfGroupsGiveLoopsFillAndPattern) {
  OdDbDatabasePtr db = readDxfText(dxfWithEntities(kMPolygons));
  std::vector<MPolygonEntity*> m = mpolygonsOf(*db);
  ASSERT_EQ(m.size(), 2u);
  EXPECT_TRUE(m[0]->solidFill);  // 71, not the version in 70
  ASSERT_EQ(m[0]->loops.size(), 2u);
  EXPECT_EQ(m[0]->loops[0].points.size(), 4u);
  EXPECT_EQ(m[0]->loops[1].points.size(), 3u);
  EXPECT_TRUE(m[0]->hasFillColor);
  EXPECT_EQ(m[0]->fillColor.colorIndex(), 3);
  EXPECT_FALSE(m[1]->solidFill);
  EXPECT_EQ(m[1]->patternLines.size(), 1u);
  EXPECT_FALSE(m[1]->hasFillColor);

  // Written and read back: the same polygons.
  std::string text = writeDxfString(*db);
  OdDbDatabasePtr again = readDxfText(text);
  std::vector<MPolygonEntity*> back = mpolygonsOf(*again);
  ASSERT_EQ(back.size(), 2u);
  EXPECT_TRUE(back[0]->solidFill);
  EXPECT_EQ(back[0]->loops.size(), 2u);
  EXPECT_EQ(back[0]->fillColor.colorIndex(), 3);
  EXPECT_EQ(back[1]->patternLines.size(), 1u);
}

TEST(MPolygon, DrawnAsFillInItsFillColourAndBoundaryInItsOwn) {
  GsRig rig(readDxfText(dxfWithEntities(kMPolygons)));
  OdGsViewPtr view = rig.device->createView();
  rig.device->addView(view.get());
  view->setSceneBlock(rig.db->modelSpace());
  view->zoomExtents({0, 0, 0}, {30, 10, 0});
  rig.device->onSize(OdGsDCRect(0, 300, 100, 0));
  rig.device->update();
  std::vector<RecordedCall> fills = rig.sink.ofKind("shell");
  ASSERT_EQ(fills.size(), 1u);
  EXPECT_EQ(fills[0].points.size(), 7u);  // the square and its hole
  EXPECT_EQ(fills[0].traits.trueColor.colorIndex(), 3);
  int boundaries = 0, patternLines = 0;
  for (const RecordedCall& c : rig.sink.ofKind("polyline")) {
    if (c.points.size() >= 4 && c.points.front() == c.points.back()) {
      ++boundaries;
      EXPECT_NE(c.traits.trueColor.colorIndex(), 3);
    } else {
      ++patternLines;
    }
  }
  EXPECT_EQ(boundaries, 3);
  EXPECT_GT(patternLines, 3);
}

TEST(MPolygon, DwgReadAsPolygonNotProxy) {
  std::string path = corpusPath("real/librecad/mpolygon_solid.dwg");
  if (!std::filesystem::exists(path)) GTEST_SKIP() << "no " << path;
  OdDbDatabasePtr db = readDwgFile(path);
  std::vector<MPolygonEntity*> m = mpolygonsOf(*db);
  ASSERT_EQ(m.size(), 1u);
  EXPECT_TRUE(m[0]->solidFill);
  ASSERT_EQ(m[0]->loops.size(), 1u);
  EXPECT_EQ(m[0]->loops[0].points.size(), 4u);
  for (const OdGePoint2d& p : m[0]->loops[0].points) EXPECT_TRUE(std::isfinite(p.x) && std::isfinite(p.y));
  EXPECT_EQ(m[0]->fillColor.colorIndex(), 3);
}

}  // namespace

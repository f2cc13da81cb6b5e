// Regeneration of modeler geometry: the edges of a body reach the device as curves, and edges on
// curves that cannot be read are drawn as chords with one line in the load report.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/kit/GsTestSupport.h"

namespace {

// A wire body in plain SAT text: a line from (0,0,0) to (10,0,0) and the upper half circle about
// (5,0,0) back to the origin, its curve record named `arcCurve`.
std::vector<std::string> wireBody(const std::string& arcCurve) {
  return {"700 0 1 0",
          "@9 unit test @4 ACIS @0 ",
          "1 9.9999999999999995e-07 1e-10",
          "body $-1 -1 $-1 $-1 $1 $-1 #",
          "wire $-1 -1 $-1 $-1 $2 $0 $-1 #",
          "coedge $-1 -1 $-1 $3 $3 $-1 $4 forward $1 $-1 #",
          "coedge $-1 -1 $-1 $2 $2 $-1 $5 forward $1 $-1 #",
          "edge $-1 -1 $-1 $6 0 $7 10 $2 $8 forward @7 unknown #",
          "edge $-1 -1 $-1 $7 0 $6 3.14159265358979 $3 $9 forward @7 unknown #",
          "vertex $-1 -1 $-1 $4 $10 #",
          "vertex $-1 -1 $-1 $4 $11 #",
          "straight-curve $-1 -1 $-1 0 0 0 1 0 0 I I #",
          arcCurve + " $-1 -1 $-1 5 0 0 0 0 1 5 0 0 1 I I #",
          "point $-1 -1 $-1 0 0 0 #",
          "point $-1 -1 $-1 10 0 0 #",
          "End-of-ACIS-data"};
}

ModelerGeometryEntity* addBody(OdDbDatabase& db, const std::vector<std::string>& sat) {
  auto* e = addEntity<ModelerGeometryEntity>(db, *db.modelSpace());
  e->dxfName = "BODY";
  e->data.push_back(TaggedValue::ofString(100, "AcDbModelerGeometry"));
  e->data.push_back(TaggedValue::ofInteger(70, 1));
  for (const std::string& line : sat) e->data.push_back(TaggedValue::ofString(1, line));
  return e;
}

void draw(GsRig& rig) {
  OdGsLayoutHelperPtr helper = rig.setup();
  rig.device->onSize(OdGsDCRect(0, 200, 200, 0));
  rig.device->update();
}

// The load report's lines added since `before` lines were there.
std::vector<std::string> newMessages(const OdDbDatabase& db, size_t before) {
  const std::vector<std::string>& all = db.loadReport().messages;
  return {all.begin() + std::ptrdiff_t(std::min(before, all.size())), all.end()};
}

size_t inkCalls(const RecordingSink& sink) { return sink.count("polyline") + sink.count("arc") + sink.count("circle"); }

}  // namespace

TEST(RegenModelerGeometry, EdgesAreDrawnAndUnreadableCurvesReportedOnce) {
  GsRig rig(emptyDrawing());
  size_t before = rig.db->loadReport().messages.size();
  addBody(*rig.db, wireBody("ellipse-curve"));
  draw(rig);
  EXPECT_GE(rig.sink.count("polyline"), 1u);  // the straight edge
  EXPECT_EQ(inkCalls(rig.sink), 2u);
  EXPECT_TRUE(newMessages(*rig.db, before).empty());

  GsRig chords(emptyDrawing());
  before = chords.db->loadReport().messages.size();
  addBody(*chords.db, wireBody("mystery-curve"));
  draw(chords);
  draw(chords);
  EXPECT_EQ(chords.sink.count("polyline"), 4u);  // twice the line and the chord
  std::vector<std::string> messages = newMessages(*chords.db, before);
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_NE(messages[0].find("1 edges on curves drawn as chords: mystery-curve"), std::string::npos) << messages[0];
}

TEST(RegenModelerGeometry, EntitiesWithoutAcisDataDrawNothing) {
  GsRig rig(emptyDrawing());
  size_t before = rig.db->loadReport().messages.size();
  addBody(*rig.db, {});
  addBody(*rig.db, {"garbage"});
  draw(rig);
  EXPECT_EQ(inkCalls(rig.sink), 0u);
  std::vector<std::string> messages = newMessages(*rig.db, before);
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_NE(messages[0].find("damaged"), std::string::npos) << messages[0];
}

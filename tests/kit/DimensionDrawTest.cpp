// Dimensions written without a block (as several programs do) are drawn whole: lines, arrowheads
// and the measured text rather than a stray "-1"; absurd values draw finite geometry or nothing.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/kit/GsTestSupport.h"

namespace {

std::vector<std::string> rotatedDimension(const std::string& x2, const std::string& measurement,
                                          const std::vector<std::string>& overrides = {}) {
  std::vector<std::string> groups = {"0 DIMENSION", "5 A1", "100 AcDbEntity", "8 0", "100 AcDbDimension",
                                     "10 " + x2, "20 5", "30 0", "11 5", "21 5.3", "31 0", "70 32", "42 " + measurement,
                                     "3 Standard", "100 AcDbAlignedDimension", "13 0", "23 0", "33 0", "14 " + x2,
                                     "24 0", "34 0", "100 AcDbRotatedDimension"};
  if (!overrides.empty()) {
    groups.insert(groups.end(), {"1001 ACAD", "1000 DSTYLE", "1002 {"});
    groups.insert(groups.end(), overrides.begin(), overrides.end());
    groups.push_back("1002 }");
  }
  return groups;
}

std::vector<RecordedCall> draw(const std::vector<std::string>& entity) {
  GsRig rig(readDxfText(dxfWithEntities(entity)));
  OdGsViewPtr view = rig.device->createView();
  rig.device->addView(view.get());
  view->setSceneBlock(rig.db->modelSpace());
  view->zoomExtents({-1, -1, 0}, {11, 7, 0});
  rig.device->onSize(OdGsDCRect(0, 1200, 700, 0));
  rig.device->update();
  return rig.sink.calls;
}

TEST(DimensionDraw, WithoutABlockLinesArrowsAndMeasuredText) {
  std::vector<RecordedCall> calls = draw(rotatedDimension("10", "-1"));
  int lines = 0, fills = 0;
  std::wstring text;
  for (const RecordedCall& c : calls) {
    if (c.kind == "polyline") ++lines;
    if (c.kind == "polygon" || c.kind == "shell") ++fills;
    if (c.kind == "text") text += c.text;
  }
  EXPECT_GE(lines, 3);  // two extension lines and the dimension line
  EXPECT_EQ(fills, 2);  // closed filled arrowheads
  EXPECT_EQ(text, L"10.0000");  // measured, not the stored -1
}

TEST(DimensionDraw, OverridesChangeTheTextAndTheArrowheads) {
  // DIMDEC 2, DIMZIN 8, DIMPOST "<> mm", ticks (DIMTSZ) instead of arrows.
  std::vector<RecordedCall> calls = draw(rotatedDimension(
      "10", "10", {"1070 271", "1070 2", "1070 78", "1070 8", "1070 3", "1000 <> mm", "1070 142", "1040 0.2"}));
  std::wstring text;
  int fills = 0;
  for (const RecordedCall& c : calls) {
    if (c.kind == "text") text += c.text;
    if (c.kind == "polygon" || c.kind == "shell") ++fills;
  }
  EXPECT_EQ(text, L"10 mm");
  EXPECT_EQ(fills, 0);
}

TEST(DimensionDraw, AbsurdValuesDrawFiniteGeometryOrNothing) {
  const std::vector<std::vector<std::string>> cases = {
      rotatedDimension("nan", "0"), rotatedDimension("1e300", "0"), rotatedDimension("0", "0"),
      rotatedDimension("10", "0", {"1070 271", "1070 99", "1070 41", "1040 1e300", "1070 40", "1040 nan"}),
      rotatedDimension("10", "0", {"1070 277", "1070 4", "1070 271", "1070 -5", "1070 45", "1040 1e-300"}),
  };
  for (const auto& entity : cases) {
    for (const RecordedCall& c : draw(entity)) {
      for (const OdGePoint3d& p : c.points) {
        EXPECT_TRUE(std::isfinite(p.x) && std::isfinite(p.y)) << c.kind;
      }
      EXPECT_LT(c.text.size(), 400u);
    }
  }
}

}  // namespace

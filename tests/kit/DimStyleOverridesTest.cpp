// An entity's own dimension variable overrides, read from its DSTYLE extended data.
#include <gtest/gtest.h>

#include "kit/db/DimStyleOverrides.h"
#include "kit/db/Entities.h"
#include "kit/db/OdDbDatabase.h"

namespace {

TaggedValue handleValue(const char* hex) { return TaggedValue{1005, GroupValueKind::kHandle, 0.0, 0, hex}; }

struct Fixture {
  OdDbDatabase db;
  LeaderEntity* leader = db.newObject<LeaderEntity>();
  DimStyleRecord* style = db.newObject<DimStyleRecord>();

  Fixture() {
    style->values = {TaggedValue::ofReal(40, 2.0), TaggedValue::ofReal(41, 0.5), TaggedValue::ofReal(147, 0.3)};
    // A handle-valued override (341) sits between the real ones, as AutoCAD writes them.
    XDataGroup acad{"ACAD",
                    {TaggedValue::ofString(1000, "DSTYLE"), TaggedValue::ofString(1002, "{"), TaggedValue::ofInteger(1070, 41),
                     TaggedValue::ofReal(1040, 0.24), TaggedValue::ofInteger(1070, 341), handleValue("77A"),
                     TaggedValue::ofInteger(1070, 147), TaggedValue::ofReal(1040, 0.09), TaggedValue::ofString(1002, "}"),
                     TaggedValue::ofInteger(1070, 40), TaggedValue::ofReal(1040, 9.0)}};
    db.extrasOf(*leader).xdata.push_back(acad);
  }
};

TEST(DimStyleOverrides, EntityOverridesWinOverTheStyleWhichWinsOverDefaults) {
  Fixture f;
  EXPECT_DOUBLE_EQ(dimensionVariable(*f.leader, f.style, 41, 0.18), 0.24);
  EXPECT_DOUBLE_EQ(dimensionVariable(*f.leader, f.style, 147, 0.09), 0.09);
  // The 1070 40 after the closing brace is not a dimension override.
  EXPECT_DOUBLE_EQ(dimensionVariable(*f.leader, f.style, 40, 1.0), 2.0);
  EXPECT_DOUBLE_EQ(dimensionVariable(*f.leader, nullptr, 40, 1.0), 1.0);
  EXPECT_DOUBLE_EQ(dimensionArrowSize(*f.leader, f.style), 0.48);
}

TEST(DimStyleOverrides, ArrowSizeFallsBackOnNonsense) {
  OdDbDatabase db;
  LeaderEntity* leader = db.newObject<LeaderEntity>();
  DimStyleRecord* style = db.newObject<DimStyleRecord>();
  EXPECT_DOUBLE_EQ(dimensionArrowSize(*leader, nullptr), 0.18);
  style->values = {TaggedValue::ofReal(41, -1.0)};
  EXPECT_DOUBLE_EQ(dimensionArrowSize(*leader, style), 0.18);
  style->values = {TaggedValue::ofReal(40, 0.0), TaggedValue::ofReal(41, 0.25)};  // annotative styles say 0
  EXPECT_DOUBLE_EQ(dimensionArrowSize(*leader, style), 0.25);
}

}  // namespace

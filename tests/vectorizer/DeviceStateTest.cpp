// Colour, fill and line-type state kept between entities.
#include <vector>

#include "RecordingDriver.h"
#include "vectorizer/DeviceColorState.h"

namespace vectest {
namespace {

using DeviceStateTest = VectorizerTest;

TEST_F(DeviceStateTest, AnUnchangedColourIsNotSentAgainUnlessMarkedDirty) {
  RecordingDriver& driver = UseDriver();
  SetDeviceColorIndex(3);
  EXPECT_EQ(driver.GetColorIndex(), 3);
  // Changed behind the device's back: an unchanged colour is not resent...
  driver.SetColor(5);
  SetDeviceColorIndex(3);
  EXPECT_EQ(driver.GetColorIndex(), 5);
  // ...until the entity rules mark it dirty.
  g_EntityDrawState.colorDirty = 1;
  SetDeviceColorIndex(3);
  EXPECT_EQ(driver.GetColorIndex(), 3);
  EXPECT_EQ(g_EntityDrawState.colorDirty, 0);
}

TEST_F(DeviceStateTest, ATrueColourIsResentAfterAnIndexColour) {
  RecordingDriver& driver = UseDriver();
  SetDeviceTrueColor(PackTrueColor(10, 20, 30));
  int trueIndex = driver.GetColorIndex();
  EXPECT_EQ(driver.GetColorTable()[size_t(trueIndex)], (DrvRgb{10, 20, 30}));
  driver.SetColor(5);
  SetDeviceTrueColor(PackTrueColor(10, 20, 30));
  EXPECT_EQ(driver.GetColorIndex(), 5);
  SetDeviceColorIndex(5);
  SetDeviceTrueColor(PackTrueColor(10, 20, 30));
  EXPECT_EQ(driver.GetColorIndex(), trueIndex);
  EXPECT_EQ(g_EntityDrawState.colorIsTrue, 1);
}

struct FillCase {
  const char* name;
  uint8_t forceFill;
  uint8_t suppressOnce;
  int fillType;
  uint8_t fillOn;
  uint8_t suppressAfter;
};

TEST_F(DeviceStateTest, FillModeFollowsTheTraitsUnlessForcedOrSuppressed) {
  const FillCase cases[] = {
      {"always", 0, 0, 1, 1, 0},
      {"never", 0, 0, 2, 0, 0},
      {"always but suppressed once", 0, 1, 1, 0, 0},
      {"forced wins over never", 1, 0, 2, 1, 0},
      {"forced keeps the one-shot", 1, 1, 2, 1, 1},
  };
  for (const FillCase& c : cases) {
    SCOPED_TRACE(c.name);
    g_EntityDrawState = EntityDrawState();
    g_EntityDrawState.forceFill = c.forceFill;
    g_EntityDrawState.suppressFillOnce = c.suppressOnce;
    SetDeviceFillMode(c.fillType);
    EXPECT_EQ(g_EntityDrawState.fillOn, c.fillOn);
    EXPECT_EQ(g_EntityDrawState.suppressFillOnce, c.suppressAfter);
  }
}

struct LineTypeCase {
  const char* name;
  const wchar_t* lineType;
  int result;
  const wchar_t* nameAfter;
  uint8_t known;
  uint8_t continuous;
};

TEST_F(DeviceStateTest, LineTypesAreNamedForTheDriverButNeverDashedFromItsTable) {
  const LineTypeCase cases[] = {
      {"always accepted", L"continuous", 0, L"continuous", 1, 0},
      {"unknown keeps its name", L"MYDASH", 0, L"MYDASH", 0, 0},
      {"known without dashes", L"SOLIDISH", 1, L"SOLIDISH", 0, 0},
      {"known with dashes becomes continuous", L"DASHED", 0, L"CONTINUOUS", 0, 1},
  };
  RecordingDriver& driver = UseDriver();
  driver.DefineLineType(L"SOLIDISH", {});
  driver.DefineLineType(L"DASHED", {0.5, -0.25});
  for (const LineTypeCase& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(SetLineType(c.lineType, 2.0), c.result);
    EXPECT_EQ(g_EntityDrawState.lineTypeName, OdString(c.nameAfter));
    EXPECT_EQ(g_EntityDrawState.lineTypeKnown, c.known);
    EXPECT_EQ(g_EntityDrawState.isContinuous, c.continuous);
  }
  ResetLineType();
  EXPECT_EQ(g_EntityDrawState.lineTypeName, OdString(L"CONTINUOUS"));
  EXPECT_EQ(g_EntityDrawState.lineTypeScale, 1.0);
}

TEST_F(DeviceStateTest, ViewportExtentsGrowTheCurrentViewportOnly) {
  ViewportExtents extents;
  extents.AddPoint({1, 2, 0});
  extents.AddPoint({-1, 5, 0});
  ASSERT_EQ(extents.Count(), 1u);
  EXPECT_EQ(extents.boxes[0].minPoint, OdGePoint3d(-1, 2, 0));
  extents.SelectViewport(2);
  ASSERT_EQ(extents.Count(), 3u);
  EXPECT_FALSE(extents.valid[1]);
  extents.AddPoint({7, 7, 0});
  EXPECT_TRUE(extents.valid[2]);
  EXPECT_EQ(extents.boxes[2].minPoint, extents.boxes[2].maxPoint);
  // An index past the end is clamped to the last entry.
  extents.currentIndex = 9;
  extents.AddPoint({8, 8, 0});
  EXPECT_EQ(extents.boxes[2].maxPoint, OdGePoint3d(8, 8, 0));
  EXPECT_EQ(extents.boxes[0].maxPoint, OdGePoint3d(1, 5, 0));
}

}  // namespace
}  // namespace vectest

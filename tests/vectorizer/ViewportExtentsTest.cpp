// The drawn box of a viewport, measured in device units, mapped back into the drawing through the
// viewport's own world-to-device mapping.
#include <gtest/gtest.h>

#include "vectorizer/ViewportExtents.h"

namespace {

// Device units point down: 10 device units per drawing unit, y flipped, shifted.
OdGeMatrix3d FlippingDevice(double shiftX, double shiftY) {
  return OdGeMatrix3d::translation({shiftX, shiftY, 0}) * OdGeMatrix3d::scaling(10, -10, 1);
}

}  // namespace

TEST(ViewportExtentsWorldBox, MapsTheDrawnBoxBackThroughEachViewportsOwnMapping) {
  ViewportExtents extents;
  extents.SetWorldToDevice(0, FlippingDevice(-10000, 30000));
  const OdGeMatrix3d toDevice = FlippingDevice(-10000, 30000);
  extents.AddPoint(toDevice.transform(OdGePoint3d(1000, 2000, 0)));
  extents.AddPoint(toDevice.transform(OdGePoint3d(1100, 2050, 0)));
  extents.SelectViewport(1);
  extents.SetWorldToDevice(1, OdGeMatrix3d::scaling(2, 2, 1));
  extents.AddBox({20, 40, 0}, {60, 80, 0});

  OdGeExtents3d world;
  ASSERT_TRUE(extents.WorldBox(0, world));
  EXPECT_NEAR(world.minPoint.x, 1000, 1e-9);
  EXPECT_NEAR(world.minPoint.y, 2000, 1e-9);
  EXPECT_NEAR(world.maxPoint.x, 1100, 1e-9);
  EXPECT_NEAR(world.maxPoint.y, 2050, 1e-9);
  ASSERT_TRUE(extents.WorldBox(1, world));
  EXPECT_EQ(world.minPoint, OdGePoint3d(10, 20, 0));
  EXPECT_EQ(world.maxPoint, OdGePoint3d(30, 40, 0));
}

TEST(ViewportExtentsWorldBox, NoBoxWithoutDrawingOrWithoutAMapping) {
  ViewportExtents extents;
  OdGeExtents3d world;
  EXPECT_FALSE(extents.WorldBox(0, world));
  extents.AddBox({0, 0, 0}, {5, 5, 0});
  EXPECT_FALSE(extents.WorldBox(0, world));  // no mapping known
  extents.SetWorldToDevice(0, OdGeMatrix3d::scaling(0, 0, 0));
  EXPECT_FALSE(extents.WorldBox(0, world));  // singular
  extents.SelectViewport(2);
  extents.SetWorldToDevice(2, OdGeMatrix3d());
  EXPECT_FALSE(extents.WorldBox(2, world));  // selected but nothing drawn
  extents.Clear();
  EXPECT_FALSE(extents.WorldBox(0, world));
}

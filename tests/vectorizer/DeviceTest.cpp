// The vectorization device end to end: palette, views, and a real drawing through the kit into
// the driver.
#include "RecordingDriver.h"
#include "kit/dxf/DxfReader.h"
#include "kit/gs/OdGsLayoutHelper.h"
#include "vectorizer/ExGsSimpleDevice.h"
#include "vectorizer/ExSimpleView.h"

namespace vectest {
namespace {

using DeviceTest = VectorizerTest;

TEST_F(DeviceTest, PaletteFollowsTheDriversBackground) {
  for (bool white : {true, false}) {
    SCOPED_TRACE(white);
    RecordingDriver& driver = UseDriver();
    driver.SetWhiteBackground(white);
    OdSmartPtr<OdGsDevice> device = ExGsSimpleDevice::createObject(1);
    const std::vector<DrvRgb>& table = driver.GetColorTable();
    ASSERT_GE(table.size(), 256u);
    EXPECT_EQ(table[7], white ? (DrvRgb{0, 0, 0}) : (DrvRgb{255, 255, 255}));
    EXPECT_EQ(table[0], white ? (DrvRgb{255, 255, 255}) : (DrvRgb{0, 0, 0}));
    EXPECT_EQ(table[1], (DrvRgb{255, 0, 0}));
    EXPECT_EQ(static_cast<ExGsSimpleDevice*>(device.get())->deviceType, 1);
  }
}

TEST_F(DeviceTest, ViewsAreTheSystemsAndAddedToTheDevice) {
  RecordingDriver& driver = UseDriver();
  driver.SetNoBlocks(true);
  OdSmartPtr<OdGsDevice> device = ExGsSimpleDevice::createObject(1);
  OdGsViewPtr view = device->createView();
  auto* simple = dynamic_cast<ExSimpleView*>(view.get());
  ASSERT_NE(simple, nullptr);
  EXPECT_EQ(simple->driverFlag, 0);
  EXPECT_EQ(device->numViews(), 1);
}

TEST_F(DeviceTest, OfficeModelSpaceReachesTheDriver) {
  RecordingDriver& driver = UseDriver();
  driver.SetWhiteBackground(true);
  driver.SetRoomLayers("ROOM_NUMBERS");
  OdDbDatabasePtr db = readDxfFile(std::string(DM_SOURCE_DIR) + "/samples/office.dxf");
  ASSERT_TRUE(db);
  db->setCurrentLayout(OdString(L"Model"));
  OdGiContextForDbDatabasePtr context = OdGiContextForDbDatabase::createObject();
  context->setDatabase(db.get());
  OdSmartPtr<OdGsDevice> device = ExGsSimpleDevice::createObject(1);
  device->setUserGiContext(context.get());
  OdGsLayoutHelperPtr helper = OdDbGsManager::setupActiveLayoutViews(device.get(), context.get());
  ASSERT_TRUE(helper);
  helper->onSize(OdGsDCRect(0, 1000, 0, 800));
  const DatabaseHeader& header = db->header();
  helper->activeView()->zoomExtents(header.extMin, header.extMax);
  helper->update();
  EXPECT_GT(driver.Polylines().size() + driver.Lines().size() + driver.All(&DrvColorGroup::fills).size(), 10u);
  EXPECT_FALSE(driver.Texts().empty());
  // The room-label block on a room layer becomes a label; its first attribute is not drawn.
  ASSERT_EQ(driver.RoomLabels().size(), 1u);
  EXPECT_EQ(driver.RoomLabels()[0].text, "104_Office_2");
  size_t texts104 = 0;
  for (const DrvText& text : driver.Texts()) texts104 += text.text == OdString(L"104");
  EXPECT_EQ(texts104, 1u);
  ASSERT_GE(g_ViewportExtents.Count(), 1u);
  EXPECT_TRUE(g_ViewportExtents.valid[0]);
  // Everything drawn lies on the device.
  const OdGeExtents3d& box = g_ViewportExtents.boxes[0];
  EXPECT_GT(box.maxPoint.x - box.minPoint.x, 100.0);
  EXPECT_LT(box.maxPoint.x - box.minPoint.x, 1100.0);
}

}  // namespace
}  // namespace vectest

// Every drawing of the corpus vectorizes in model space without failing, and drawings with
// geometry put some of it into the driver.
#include <algorithm>
#include <filesystem>

#include "RecordingDriver.h"
#include "kit/dxf/DxfReader.h"
#include "kit/gs/OdGsLayoutHelper.h"
#include "vectorizer/ExGsSimpleDevice.h"

namespace vectest {
namespace {

using CorpusVectorizeTest = VectorizerTest;

std::vector<std::filesystem::path> CorpusDxfFiles() {
  std::vector<std::filesystem::path> files;
  for (const char* folder : {"dxf", "dwg"}) {
    std::filesystem::path dir = std::filesystem::path(DM_CORPUS_DIR) / folder;
    if (!std::filesystem::is_directory(dir)) continue;
    for (const auto& entry : std::filesystem::directory_iterator(dir)) {
      if (entry.is_regular_file() && entry.path().extension() == ".dxf") files.push_back(entry.path());
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

TEST_F(CorpusVectorizeTest, ModelSpaceOfEveryCorpusDrawing) {
  std::vector<std::filesystem::path> files = CorpusDxfFiles();
  if (files.empty()) GTEST_SKIP() << "no corpus";
  size_t withOutput = 0;
  for (const auto& file : files) {
    SCOPED_TRACE(file.string());
    RecordingDriver& driver = UseDriver();
    g_ViewportExtents.Clear();
    g_EntityRuleState = EntityRuleState();
    OdDbDatabasePtr db = readDxfFile(file.string());
    if (!db) continue;
    db->setCurrentLayout(OdString(L"Model"));
    OdGiContextForDbDatabasePtr context = OdGiContextForDbDatabase::createObject();
    context->setDatabase(db.get());
    OdSmartPtr<OdGsDevice> device = ExGsSimpleDevice::createObject(1);
    device->setUserGiContext(context.get());
    OdGsLayoutHelperPtr helper = OdDbGsManager::setupActiveLayoutViews(device.get(), context.get());
    ASSERT_TRUE(helper);
    helper->onSize(OdGsDCRect(0, 3000, 0, 2000));
    const DatabaseHeader& header = db->header();
    if (header.extMin.x < header.extMax.x) helper->activeView()->zoomExtents(header.extMin, header.extMax);
    helper->update();
    if (driver.PrimitiveCount() > 0) ++withOutput;
  }
  EXPECT_GT(withOutput, files.size() / 2);
}

}  // namespace
}  // namespace vectest

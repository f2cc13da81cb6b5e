// The data storage section of R2013 and later DWG files: the ACIS records found by handle, and
// damaged sections that give fewer records, never a crash.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "kit/dwg/DwgDataStorage.h"
#include "kit/dwg/DwgFileSections.h"
#include "kit/gi/acis/AcisRecords.h"
#include "tests/kit/DwgTestSupport.h"
#include "tests/kit/DxfTestSupport.h"

namespace {

std::string dataStorageOf(const std::string& file, std::string& bytes) {
  bytes = readBytes(corpusPath(file));
  DwgFileSections sections;
  readDwgContainerR18(bytes, sections);
  return std::string(sections.dataStorage);
}

}  // namespace

TEST(DwgDataStorage, SolidsAndRegionsOfR2013AndR2018ByHandle) {
  for (const char* file : {"dwg/example_2013.dwg", "dwg/example_2018.dwg"}) {
    SCOPED_TRACE(file);
    std::string bytes;
    std::string section = dataStorageOf(file, bytes);
    ASSERT_FALSE(section.empty());
    std::vector<std::string> messages;
    std::vector<DwgStoredRecord> records = readDwgAcisRecords(section, messages);
    EXPECT_TRUE(messages.empty());
    std::set<uint64_t> handles;
    for (const DwgStoredRecord& r : records) {
      handles.insert(r.handle);
      AcisModel model = readAcisBinary(r.bytes);
      EXPECT_TRUE(model.complete) << model.problem;
    }
    // The two regions and the solid, as the DXF twin's ACDSDATA names them.
    EXPECT_EQ(handles, (std::set<uint64_t>{0x176, 0x2E1, 0x37D}));
  }
}

TEST(DwgDataStorage, DamagedSectionsGiveFewerRecords) {
  std::string bytes;
  std::string section = dataStorageOf("dwg/example_2013.dwg", bytes);
  ASSERT_FALSE(section.empty());
  std::vector<std::string> messages;
  for (size_t n = 0; n < section.size(); n += 61) {
    EXPECT_LE(readDwgAcisRecords(std::string_view(section).substr(0, n), messages).size(), 3u) << n;
  }
  for (size_t at = 0; at < 1024 && at < section.size(); at += 4) {
    std::string damaged = section;
    damaged[at] = static_cast<char>(0xFF);
    damaged[at + 1] = static_cast<char>(0xFF);
    damaged[at + 3] = static_cast<char>(0x7F);
    EXPECT_LE(readDwgAcisRecords(damaged, messages).size(), 3u) << at;
  }
}

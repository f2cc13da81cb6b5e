// The dump is what reviewers diff: one line per record with handles and key values, angles in
// degrees, text quoted with control characters escaped.
#include <gtest/gtest.h>

#include "kit/db/DatabaseDump.h"
#include "tests/kit/DxfTestSupport.h"

TEST(DatabaseDump, PrintsEntitiesWithHandlesAndKeyValues) {
  OdDbDatabasePtr db = readDxfText(dxfWithEntities(
      {"0 ARC", "5 1A", "8 Walls", "62 1", "10 1", "20 2", "30 0", "40 3", "50 90", "51 180", "0 TEXT", "5 1B",
       "10 0", "20 0", "40 2.5", "1 say \"hi\"\\P", "0 INSERT", "5 1C", "2 DOOR", "10 5", "20 5", "66 1", "0 ATTRIB",
       "5 1D", "2 TAG", "1 v", "0 SEQEND"}));
  std::string dump = dumpDatabase(*db);
  EXPECT_NE(dump.find("ARC 1A layer=\"Walls\" color=1 center=(1,2,0) radius=3 start=90 end=180"), std::string::npos)
      << dump;
  EXPECT_NE(dump.find("TEXT 1B layer=\"0\" position=(0,0,0) height=2.5 rotation=0 style=\"Standard\" h=0 v=0 "
                      "text=\"say \\\"hi\\\"\\\\P\""),
            std::string::npos)
      << dump;
  EXPECT_NE(dump.find("INSERT 1C layer=\"0\" block=\"DOOR\" position=(5,5,0)"), std::string::npos) << dump;
  EXPECT_NE(dump.find("      ATTRIB 1D"), std::string::npos) << dump;
  EXPECT_NE(dump.find("LAYOUTS 2"), std::string::npos);
  DumpOptions summary;
  summary.entities = false;
  EXPECT_EQ(dumpDatabase(*db, summary).find("ARC 1A"), std::string::npos);
}

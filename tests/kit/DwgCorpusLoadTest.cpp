// Every DWG of the corpus loads with the entity counts recorded in DwgCorpusCounts.inc, or fails
// with the recorded message; a loaded drawing comes out whole (standard records, entities linked
// to their layers, unique block names) and loads the same way twice.
//
// The table was generated (DM_PRINT_CORPUS_COUNTS=1 prints the current values) and checked by
// eye against the DXF twins where the corpus has one; kinds still read as proxies are named
// PROXY(kind) there, so a new reader shows up as a change of the table.
#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

#include "kit/db/DatabaseDump.h"
#include "tests/kit/DwgTestSupport.h"

namespace {

struct CorpusFile {
  const char* path;
  const char* counts;  // entityCountsByKind, or "error: <message end>"
};

const CorpusFile kCorpus[] = {
#include "tests/kit/DwgCorpusCounts.inc"
};

std::string loadOutcome(const std::string& relative, OdDbDatabasePtr& db) {
  try {
    db = readDwgFile(corpusPath(relative));
    return entityCountsByKind(*db);
  } catch (const OdError& e) {
    return "error: " + errorTail(e);
  }
}

void expectWhole(const OdDbDatabase& db, const std::string& file) {
  SCOPED_TRACE(file);
  ASSERT_TRUE(db.modelSpace());
  ASSERT_TRUE(db.paperSpace());
  ASSERT_TRUE(db.layerZero());
  std::set<std::string> names;
  for (const BlockRecord* block : db.blocks()) {
    EXPECT_TRUE(names.insert(block->name).second) << "two blocks named " << block->name;
    EXPECT_EQ(db.find(block->handle), block) << block->name;
    for (const Entity* e : block->entities) {
      EXPECT_EQ(db.find(e->handle), e) << e->handle.toHex();
      EXPECT_TRUE(e->layer && e->linetype) << e->handle.toHex();
      if (auto* ref = dbCast<BlockReferenceEntity>(e)) {
        EXPECT_TRUE(ref->block) << e->handle.toHex();
      }
      if (auto* text = dbCast<TextEntity>(e)) {
        EXPECT_TRUE(text->style) << e->handle.toHex();
      }
    }
  }
  for (const Layout* layout : db.layouts()) EXPECT_TRUE(layout->block) << layout->name;
}

}  // namespace

TEST(DwgCorpus, TableListsEveryCorpusFile) {
  std::set<std::string> listed;
  for (const CorpusFile& f : kCorpus) listed.insert(f.path);
  std::vector<std::string> files = corpusDwgFiles();
  for (const std::string& f : files) EXPECT_TRUE(listed.count(f)) << f << " is not in the table";
  EXPECT_EQ(files.size(), listed.size());
}

TEST(DwgCorpus, EveryFileLoadsWithTheRecordedCounts) {
  bool print = std::getenv("DM_PRINT_CORPUS_COUNTS") != nullptr;
  for (const std::string& file : corpusDwgFiles()) {
    OdDbDatabasePtr db;
    std::string outcome = loadOutcome(file, db);
    if (print) std::printf("    {\"%s\",\n     \"%s\"},\n", file.c_str(), outcome.c_str());
    for (const CorpusFile& f : kCorpus) {
      if (file == f.path) {
        EXPECT_EQ(outcome, f.counts) << file;
      }
    }
    if (db) expectWhole(*db, file);
  }
}

TEST(DwgCorpus, LoadingTwiceGivesTheSameDump) {
  for (const char* file : {"dwg/example_r14.dwg", "dwg/example_2000.dwg", "dwg/2000/TS1.dwg"}) {
    std::string first = dumpDatabase(*readDwgFile(corpusPath(file)));
    std::string second = dumpDatabase(*readDwgFile(corpusPath(file)));
    EXPECT_EQ(first, second) << file;
  }
}

TEST(DwgCorpus, MemoryAndFileReadsAgree) {
  const std::string path = corpusPath("dwg/2000/entities-2d.dwg");
  std::string fromFile = dumpDatabase(*readDwgFile(path), {.loadReport = false});
  std::string fromBuffer = dumpDatabase(*readDwgBuffer(readBytes(path)), {.loadReport = false});
  EXPECT_EQ(fromFile, fromBuffer);
}

// Entities coloured from a colour book refer to a DBCOLOR object for their RGB (the number in
// the entity is only the nearest index); the three stay in place with the references after it.
TEST(DwgCorpus, ColourBookEntitiesTakeTheBookColour) {
  OdDbDatabasePtr db = readDwgFile(corpusPath("real/librecad/dynblock_r2018.dwg"));
  const auto* polyline = dbCast<LwPolylineEntity>(db->find(OdDbHandle(0x153)));
  ASSERT_TRUE(polyline);
  EXPECT_TRUE(polyline->color.isByColor());
  EXPECT_EQ(polyline->color.red(), 0xE2);
  EXPECT_EQ(polyline->color.green(), 0xB0);
  EXPECT_EQ(polyline->color.blue(), 0x07);
  EXPECT_EQ(polyline->layer->name, "MAKEDWG-postR13objects");
  const auto* insert = dbCast<BlockReferenceEntity>(db->find(OdDbHandle(0x677)));
  ASSERT_TRUE(insert);
  ASSERT_TRUE(insert->block);
  EXPECT_EQ(insert->block->name, "*U7");
}

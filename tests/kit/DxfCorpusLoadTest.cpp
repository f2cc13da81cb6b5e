// Every DXF of the corpus loads (or fails with one clear message), keeps the entity counts
// recorded below, and comes out whole: standard records present, every entity linked to its
// layer and linetype, layouts and blocks linked both ways, handles unique.
//
// The table was generated once (run the test with DM_PRINT_CORPUS_COUNTS=1 to print the current
// values) and reviewed against the files; any change in a count is a change in the reader.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>

#include "kit/base/OdError.h"
#include "kit/db/DatabaseDump.h"
#include "tests/kit/DxfTestSupport.h"

namespace {

struct CorpusFile {
  const char* path;    // relative to the corpus
  const char* counts;  // entityCountsByKind, or "error: <message end>" for unreadable files
};

const CorpusFile kCorpus[] = {
#include "tests/kit/DxfCorpusCounts.inc"
};

std::vector<std::string> corpusDxfFiles() {
  std::vector<std::string> files;
  std::filesystem::path root(DM_CORPUS_DIR);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    if (!entry.is_regular_file()) continue;
    std::string ext = entry.path().extension().string();
    std::transform(ext.begin(), ext.end(), ext.begin(), ::tolower);
    if (ext == ".dxf" || ext == ".dxfb") files.push_back(std::filesystem::relative(entry.path(), root).string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::string narrow(const OdString& s) {
  std::string out;
  for (OdChar c : s.str()) out += c < 0x80 ? char(c) : '?';
  return out;
}

// What a load gives, in the table's terms.
std::string loadOutcome(const std::string& relative, OdDbDatabasePtr& db) {
  try {
    db = readDxfFile(corpusPath(relative));
    return entityCountsByKind(*db);
  } catch (const OdError& e) {
    std::string text = narrow(e.description());
    size_t colon = text.rfind(": ");
    return "error: " + (colon == std::string::npos ? text : text.substr(colon + 2));
  }
}

void expectWhole(const OdDbDatabase& db, const std::string& file) {
  SCOPED_TRACE(file);
  ASSERT_TRUE(db.modelSpace());
  ASSERT_TRUE(db.paperSpace());
  ASSERT_TRUE(db.layerZero());
  ASSERT_TRUE(db.linetypeByLayer());
  ASSERT_TRUE(db.linetypeByBlock());
  ASSERT_TRUE(db.textStyles().find("Standard"));
  std::set<const BlockRecord*> layoutBlocks;
  for (const Layout* layout : db.layouts()) {
    ASSERT_TRUE(layout->block) << layout->name;
    EXPECT_EQ(layout->block->layout, layout->handle) << layout->name;
    EXPECT_TRUE(layoutBlocks.insert(layout->block).second) << "two layouts share " << layout->block->name;
  }
  EXPECT_TRUE(db.layoutOfBlock(db.modelSpace()));
  EXPECT_TRUE(db.layoutOfBlock(db.paperSpace()));
  auto expectFound = [&db](const DbObject* o) {
    ASSERT_FALSE(o->handle.isNull()) << dbTypeName(o->type);
    EXPECT_EQ(db.find(o->handle), o) << dbTypeName(o->type) << " " << o->handle.toHex();
  };
  for (const LayerRecord* r : db.layers()) {
    expectFound(r);
    EXPECT_TRUE(r->linetype) << r->name;
  }
  for (const BlockRecord* block : db.blocks()) {
    expectFound(block);
    for (const Entity* e : block->entities) {
      expectFound(e);
      EXPECT_TRUE(e->layer && e->linetype) << e->handle.toHex();
      if (auto* ref = dbCast<BlockReferenceEntity>(e)) {
        EXPECT_TRUE(ref->block) << e->handle.toHex();
        for (const AttributeEntity* a : ref->attributes) EXPECT_TRUE(a->layer && a->style);
      }
      if (auto* text = dbCast<TextEntity>(e)) {
        EXPECT_TRUE(text->style);
      }
      if (auto* mtext = dbCast<MTextEntity>(e)) {
        EXPECT_TRUE(mtext->style);
      }
    }
  }
  for (const DbObject* o : db.objects()) expectFound(o);
}

}  // namespace

TEST(DxfCorpus, TableListsEveryCorpusFile) {
  std::vector<std::string> files = corpusDxfFiles();
  std::set<std::string> listed;
  for (const CorpusFile& f : kCorpus) listed.insert(f.path);
  for (const std::string& f : files) EXPECT_TRUE(listed.count(f)) << f << " is not in the table";
  EXPECT_EQ(files.size(), listed.size());
}

TEST(DxfCorpus, EveryFileLoadsWithTheRecordedCounts) {
  bool print = std::getenv("DM_PRINT_CORPUS_COUNTS") != nullptr;
  for (const std::string& file : corpusDxfFiles()) {
    OdDbDatabasePtr db;
    std::string outcome = loadOutcome(file, db);
    if (print) std::printf("    {\"%s\",\n     \"%s\"},\n", file.c_str(), outcome.c_str());
    const CorpusFile* row = nullptr;
    for (const CorpusFile& f : kCorpus) {
      if (file == f.path) row = &f;
    }
    if (row) {
      EXPECT_EQ(outcome, row->counts) << file;
    }
    if (db) expectWhole(*db, file);
  }
}

TEST(DxfCorpus, LoadingTwiceGivesTheSameDump) {
  for (const char* file : {"dwg/example_2018.dxf", "dwg/example_r12.dxf", "dxf/integration/duplicate_handles.dxf",
                           "dwg/example_2000.dxfb", "dxf/hatches_2.dxf"}) {
    std::string first = dumpDatabase(*readDxfFile(corpusPath(file)));
    std::string second = dumpDatabase(*readDxfFile(corpusPath(file)));
    EXPECT_EQ(first, second) << file;
  }
}

TEST(DxfCorpus, BinaryAndAsciiFilesOfOneDrawingAgree) {
  // example_2000.dxfb and example_2018.dxfb were written from the same drawings as the ASCII
  // files beside them.
  for (const char* base : {"dwg/example_2000"}) {
    OdDbDatabasePtr ascii = readDxfFile(corpusPath(std::string(base) + ".dxf"));
    OdDbDatabasePtr binary = readDxfFile(corpusPath(std::string(base) + ".dxfb"));
    EXPECT_EQ(entityCountsByKind(*ascii), entityCountsByKind(*binary)) << base;
    EXPECT_EQ(ascii->layers().size(), binary->layers().size()) << base;
  }
}

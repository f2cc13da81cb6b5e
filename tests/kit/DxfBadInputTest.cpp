// Bad input ends in one clear error, or (recovering) in the drawing read up to the damage, never
// in a crash, a hang or memory that grows with what a file claims rather than with what it holds.
#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <sstream>

#include "kit/base/OdError.h"
#include "kit/dxf/DxfTagReader.h"
#include "tests/kit/DxfTestSupport.h"

namespace {

std::string fileBytes(const std::string& relative) {
  std::ifstream in(corpusPath(relative), std::ios::binary);
  std::ostringstream out;
  out << in.rdbuf();
  return out.str();
}

std::string narrow(const OdString& s) {
  std::string out;
  for (OdChar c : s.str()) out += c < 0x80 ? char(c) : '?';
  return out;
}

// The result code and message of a strict read, or eOk when it succeeds.
OdResult strictResult(const std::string& bytes, std::string* message = nullptr) {
  try {
    readDxfText(bytes);
    return eOk;
  } catch (const OdError& e) {
    if (message) *message = narrow(e.description());
    return e.code();
  }
}

}  // namespace

TEST(DxfBadInput, RejectsWhatIsNotDxf) {
  const std::string cases[] = {
      "",
      "\n\n\n",
      std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16),
      "AC1015\0\0\0\0\0\0\x01\x02",
      "EXTENTS,1\n0.000000,8.000000,0.000000,8.000000\n",  // the R1.4 interchange format
      "<?xml version=\"1.0\"?><svg/>",
      "0\nLINE\n8\n0\n",  // entities without any section
      std::string("AutoCAD Binary DXF", 18),  // a sentinel cut short
  };
  for (const std::string& bytes : cases) {
    std::string message;
    EXPECT_EQ(strictResult(bytes, &message), eNotDrawingFile) << bytes.substr(0, 12);
    EXPECT_NE(message.find("not a DXF file"), std::string::npos) << message;
    // Recovery cannot make a drawing out of them either.
    EXPECT_THROW(readDxfText(bytes, true), OdError);
  }
}

TEST(DxfBadInput, ReportsMissingAndUnreadableFiles) {
  try {
    readDxfFile("/nonexistent/plan.dxf");
    FAIL();
  } catch (const OdError& e) {
    EXPECT_EQ(e.code(), eFileNotFound);
    EXPECT_NE(narrow(e.description()).find("/nonexistent/plan.dxf"), std::string::npos);
  }
  try {
    readDxfFile(DM_CORPUS_DIR);
    FAIL();
  } catch (const OdError& e) {
    EXPECT_EQ(e.code(), eCantOpenFile);
  }
}

TEST(DxfBadInput, TruncatedFilesFailStrictlyAndRecoverPartially) {
  for (const char* file : {"dwg/2007/Arc.dxf", "dxf/integration/bin_dxf_r2000.dxf", "dwg/example_r12.dxf"}) {
    std::string bytes = fileBytes(file);
    size_t entitiesAt = bytes.find("ENTITIES");
    ASSERT_NE(entitiesAt, std::string::npos);
    for (int i = 1; i < 60; ++i) {
      size_t cut = bytes.size() * size_t(i) / 60;
      std::string head = bytes.substr(0, cut);
      std::string message;
      OdResult result = strictResult(head, &message);
      EXPECT_TRUE(result == eEndOfFile || result == eBadDxfSequence) << file << " cut at " << cut << ": " << message;
      EXPECT_NE(message.find("test.dxf: "), std::string::npos) << message;
      OdDbDatabasePtr db = readDxfText(head, true);
      ASSERT_TRUE(db);
      EXPECT_TRUE(db->loadReport().recovered) << file << " cut at " << cut;
      EXPECT_TRUE(db->modelSpace() && db->layerZero() && !db->layouts().empty());
    }
    // Past the entities, what was read is kept.
    OdDbDatabasePtr db = readDxfText(bytes.substr(0, bytes.size() - 40), true);
    EXPECT_FALSE(db->modelSpace()->entities.empty()) << file;
  }
}

TEST(DxfBadInput, BrokenGroupCodesStopStrictReadsWithTheirLine) {
  std::string text = dxfWithEntities({"0 LINE", "10 1", "20 1", "0 CIRCLE", "40 2", "0 ARC"});
  size_t at = text.find("40\n2");
  text.replace(at, 2, "4O");  // a letter O for a zero
  std::string message;
  EXPECT_EQ(strictResult(text, &message), eBadDxfSequence);
  EXPECT_NE(message.find("line 23"), std::string::npos) << message;
  // Recovery keeps what came before the damage; the damaged circle itself is dropped.
  OdDbDatabasePtr db = readDxfText(text, true);
  ASSERT_EQ(db->modelSpace()->entities.size(), 1u);
  EXPECT_EQ(db->modelSpace()->entities[0]->type, DbType::kLine);
  bool reported = false;
  for (const std::string& m : db->loadReport().messages) reported |= m.find("line 23") != std::string::npos;
  EXPECT_TRUE(reported);
}

TEST(DxfBadInput, ValuesOfTheWrongTypeBecomeDefaultsWithAMessage) {
  OdDbDatabasePtr db = readDxfText(dxfWithEntities(
      {"0 CIRCLE", "5 ZZ", "10 one", "20 2", "40 1e999", "62 red", "0 LWPOLYLINE", "90 many", "10 1", "20 1"}));
  const auto& e = db->modelSpace()->entities;
  ASSERT_EQ(e.size(), 2u);
  auto* circle = dbCast<CircleEntity>(e[0]);
  ASSERT_TRUE(circle);
  EXPECT_EQ(circle->center, OdGePoint3d(0, 2, 0));
  EXPECT_EQ(circle->radius, 0.0);
  EXPECT_FALSE(circle->handle.isNull());  // "ZZ" is no handle: a fresh one was given
  const auto& messages = db->loadReport().messages;
  EXPECT_GE(messages.size(), 3u);
  EXPECT_NE(messages[0].find("\"one\""), std::string::npos) << messages[0];
  EXPECT_EQ(dbCast<LwPolylineEntity>(e[1])->points.size(), 1u);
}

TEST(DxfBadInput, AbsurdCountsDoNotAllocateWhatTheyClaim) {
  // Each claims about a billion records and holds one or two.
  OdDbDatabasePtr db = readDxfText(dxfWithEntities(
      {"0 LWPOLYLINE", "90 1000000000", "10 0", "20 0", "10 1", "20 1", "0 SPLINE", "72 2000000000",
       "73 2000000000", "74 2000000000", "40 0", "10 0", "20 0", "0 POLYLINE", "66 1", "70 16", "71 32000",
       "72 32000", "0 VERTEX", "10 0", "20 0", "0 SEQEND", "0 HATCH", "91 1000000000", "92 2", "93 1000000000",
       "10 0", "20 0", "0 OLE2FRAME", "90 2000000000", "310 00", "0 LEADER", "76 1000000000", "10 0", "20 0"}));
  const auto& e = db->modelSpace()->entities;
  ASSERT_EQ(e.size(), 6u);
  EXPECT_EQ(dbCast<LwPolylineEntity>(e[0])->points.size(), 2u);
  EXPECT_LT(dbCast<LwPolylineEntity>(e[0])->points.capacity(), 1000u);
  EXPECT_LT(dbCast<SplineEntity>(e[1])->knots.capacity(), 1000u);
  EXPECT_EQ(dbCast<PolylineEntity>(e[2])->vertices.size(), 1u);
  EXPECT_EQ(dbCast<HatchEntity>(e[3])->loops.size(), 1u);
  EXPECT_LT(dbCast<Ole2FrameEntity>(e[4])->data.capacity(), 1000u);
}

TEST(DxfBadInput, GarbageAfterADxfStartFailsCleanly) {
  std::mt19937 random(1234);
  for (int round = 0; round < 50; ++round) {
    std::string bytes = round % 2 ? std::string(DxfTagReader::kBinarySentinel) : "0\nSECTION\n2\nENTITIES\n";
    for (int i = 0; i < 2000; ++i) bytes += char(random() & 0xFF);
    OdResult result = strictResult(bytes);
    EXPECT_TRUE(result == eOk || result == eEndOfFile || result == eBadDxfSequence) << round;
    EXPECT_TRUE(readDxfText(bytes, true));
  }
}

TEST(DxfBadInput, DamagedCorpusFilesNeverCrashTheReader) {
  // Random byte changes in real files: every outcome is a database or an OdError.
  std::mt19937 random(42);
  for (const char* file : {"dwg/2007/Helix.dxf", "dxf/hatches_2.dxf", "dwg/example_2000.dxfb", "dxf/xclip.dxf"}) {
    const std::string original = fileBytes(file);
    for (int round = 0; round < 40; ++round) {
      std::string bytes = original;
      for (int k = 0; k < 8; ++k) {
        size_t at = random() % bytes.size();
        bytes[at] = char(random() % 3 == 0 ? '\n' : random() & 0xFF);
      }
      try {
        readDxfText(bytes);
      } catch (const OdError&) {
      }
      EXPECT_NO_THROW(readDxfText(bytes, true)) << file << " round " << round;
    }
  }
}

TEST(DxfBadInput, AwkwardCorpusFilesLoadWithoutRecovery) {
  // Trash after EOF, duplicate and empty handles, broken layout links, nameless blocks: all read
  // strictly, with the repairs listed in the load report.
  struct Case {
    const char* file;
    const char* message;  // part of one report line, or "" when none is expected
  } cases[] = {
      {"dxf/integration/R12_with_trash_beyond_EOF.dxf", ""},
      {"dxf/integration/duplicate_handles.dxf", ""},
      {"dxf/integration/empty_handles.dxf", ""},
      {"dxf/integration/layout_broken_links_2.dxf", "had no block"},
      {"dxf/integration/r12_blocks_with_no_names.dxf", "block without a name"},
      {"dxf/integration/recover01.dxf", "outside any section"},
      {"dxf/integration/recover02.dxf", "without a TABLE header"},
  };
  for (const Case& c : cases) {
    OdDbDatabasePtr db = readDxfFile(corpusPath(c.file));
    EXPECT_FALSE(db->loadReport().recovered) << c.file;
    if (*c.message) {
      bool found = false;
      for (const std::string& m : db->loadReport().messages) found |= m.find(c.message) != std::string::npos;
      EXPECT_TRUE(found) << c.file << " lacks \"" << c.message << "\"";
    }
  }
  EXPECT_EQ(readDxfFile(corpusPath("dxf/integration/duplicate_handles.dxf"))->loadReport().reassignedHandles > 0, true);
}

TEST(DxfBadInput, OutOfRangeNumbersAreClampedNotOverflowed) {
  // A header variable given as a huge real where an integer belongs (found by fuzzing).
  OdDbDatabasePtr db = readDxfText(dxfText({"0 SECTION", "2 HEADER", "9 $ACADVER", "1 AC1015", "9 $PDMODE",
                                            "40 1.8e35", "9 $LUNITS", "40 -1e300", "0 ENDSEC", "0 EOF"}));
  EXPECT_EQ(db->header().pdMode, INT16_MAX);
  EXPECT_EQ(db->header().lunits, INT16_MIN);
  TaggedValue huge = TaggedValue::ofReal(40, 1e300);
  EXPECT_EQ(huge.asInteger(), INT64_MAX);
  EXPECT_EQ(TaggedValue::ofReal(40, -1e300).asInteger(), INT64_MIN);
}

// Our DWG reader against an outside one: LibreDWG (compiled to WebAssembly, run by node from
// tests/tools/libredwg) counts the entities of every corpus DWG by kind, and our loaded
// database must hold the same numbers. The differences left are listed below with their reason;
// a new one, or a listed one that went away, fails the test.
//
// Both sides count entities of model space, paper space and every block: block definitions
// (LibreDWG's BLOCK records, our block records), attributes (ATTRIB) and polyline vertices
// (VERTEX, faces of polyface meshes included) count as entities; END markers (ENDBLK, SEQEND) do
// not. LibreDWG's kinds are folded onto ours: POLYLINE_*, DIMENSION_* and *_DIMENSION, VERTEX_*
// and *UNDERLAY are one kind each, MINSERT is an INSERT, 3DLINE a LINE, and our proxies count
// under their class name.
#include <gtest/gtest.h>

#include <rapidjson/document.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>

#include "kit/db/ProxyClass.h"
#include "tests/kit/DwgTestSupport.h"

namespace {

using KindCounts = std::map<std::string, long>;

struct KnownDifference {
  const char* file;
  const char* difference;  // differenceText(): "KIND ours/theirs ..."
  const char* reason;
};

// clang-format off
const KnownDifference kKnownDifferences[] = {
#include "tests/kit/DwgOutsideReaderDifferences.inc"
};
// clang-format on

const char* const kToolDir = DM_SOURCE_DIR "/tests/tools/libredwg";

bool startsWith(const std::string& s, std::string_view prefix) { return s.compare(0, prefix.size(), prefix) == 0; }
bool endsWith(const std::string& s, std::string_view suffix) {
  return s.size() >= suffix.size() && s.compare(s.size() - suffix.size(), suffix.size(), suffix) == 0;
}

// LibreDWG's type name as our kind, or "" for records we do not count: end markers, and the
// control records of releases before R13 (JUMP, LOAD), which draw nothing and we do not keep.
std::string foldTheirKind(const std::string& name) {
  for (const char* skipped : {"ENDBLK", "SEQEND", "JUMP", "LOAD"}) {
    if (name == skipped) return "";
  }
  if (startsWith(name, "POLYLINE_")) return "POLYLINE";
  if (startsWith(name, "VERTEX_")) return "VERTEX";
  if (startsWith(name, "DIMENSION_") || endsWith(name, "_DIMENSION")) return "DIMENSION";
  if (endsWith(name, "UNDERLAY")) return "UNDERLAY";
  if (name == "MINSERT") return "INSERT";
  if (name == "3DLINE") return "LINE";  // a LINE with a z, as old releases wrote it
  return name;
}

std::string ourKind(const OdDbDatabase& db, const Entity& e) {
  if (auto* proxy = dbCast<ProxyEntity>(&e)) {
    const DatabaseClass* cls = proxyClass(db, *proxy);
    return cls ? cls->dxfName : proxy->dxfName;
  }
  if (auto* modeler = dbCast<ModelerGeometryEntity>(&e)) return modeler->dxfName;
  return dbTypeName(e.type);
}

// Files before R13 have no paper space block: ours is made on loading.
KindCounts ourCounts(const OdDbDatabase& db, bool beforeR13) {
  KindCounts counts;
  for (const BlockRecord* block : db.blocks()) {
    if (!(beforeR13 && block == db.paperSpace())) ++counts["BLOCK"];
    for (const Entity* e : block->entities) {
      ++counts[ourKind(db, *e)];
      if (auto* ref = dbCast<BlockReferenceEntity>(e)) counts["ATTRIB"] += long(ref->attributes.size());
      if (auto* polyline = dbCast<PolylineEntity>(e)) counts["VERTEX"] += long(polyline->vertices.size());
    }
  }
  return counts;
}

struct TheirReading {
  int error = 0;
  KindCounts counts;
};

// One node run over all files: starting the WebAssembly module once per file would cost more
// than the reading.
std::map<std::string, TheirReading> readAllWithLibreDwg(const std::vector<std::string>& files) {
  std::string command = "node '" + std::string(kToolDir) + "/entity_counts.mjs'";
  for (const std::string& f : files) command += " '" + corpusPath(f) + "'";
  command += " 2>/dev/null";
  std::map<std::string, TheirReading> out;
  FILE* pipe = popen(command.c_str(), "r");
  if (!pipe) return out;
  std::string line;
  for (int c; (c = std::fgetc(pipe)) != EOF;) {
    if (c != '\n') {
      line += char(c);
      continue;
    }
    rapidjson::Document doc;
    doc.Parse(line.c_str());
    line.clear();
    if (doc.HasParseError() || !doc.IsObject()) continue;
    TheirReading reading;
    reading.error = doc["error"].GetInt();
    for (const auto& member : doc["counts"].GetObject()) {
      std::string kind = foldTheirKind(member.name.GetString());
      if (!kind.empty()) reading.counts[kind] += member.value.GetInt();
    }
    std::string file = doc["file"].GetString();
    out[file.substr(std::string(DM_CORPUS_DIR).size() + 1)] = reading;
  }
  pclose(pipe);
  return out;
}

// "CIRCLE 0/1 INSERT 3/4": each kind whose counts differ, ours before theirs; "" when equal.
std::string differenceText(const KindCounts& ours, const KindCounts& theirs) {
  std::set<std::string> kinds;
  for (const auto& [k, n] : ours) kinds.insert(k);
  for (const auto& [k, n] : theirs) kinds.insert(k);
  std::string text;
  for (const std::string& kind : kinds) {
    long a = ours.count(kind) ? ours.at(kind) : 0;
    long b = theirs.count(kind) ? theirs.at(kind) : 0;
    if (a == b) continue;
    if (!text.empty()) text += ' ';
    text += kind + " " + std::to_string(a) + "/" + std::to_string(b);
  }
  return text;
}

// What comparing one file gives: its count differences, or why there is nothing to compare.
std::string compareFile(const std::string& file, const std::map<std::string, TheirReading>& theirs) {
  auto it = theirs.find(file);
  if (it == theirs.end()) return "LibreDWG printed nothing";
  if (it->second.error >= 128) return "LibreDWG fails: error " + std::to_string(it->second.error);
  try {
    const std::string mark = dwgVersionMark(file);  // AC1012 (R13) on; older ones: AC1.40, AC2.10, AC1009
    bool beforeR13 = !(startsWith(mark, "AC10") && mark >= "AC1012");
    return differenceText(ourCounts(*readDwgFile(corpusPath(file)), beforeR13), it->second.counts);
  } catch (const OdError& e) {
    return "ours fails: " + errorTail(e);
  }
}

bool toolAvailable(std::string& why) {
  if (std::system("command -v node >/dev/null 2>&1") != 0) {
    why = "node is not installed";
    return false;
  }
  if (!std::filesystem::exists(std::string(kToolDir) + "/node_modules/@mlightcad/libredwg-web/wasm")) {
    why = std::string("LibreDWG's module is missing: run npm ci in ") + kToolDir;
    return false;
  }
  return true;
}

}  // namespace

TEST(DwgOutsideReader, CountDifferencesAreTheListedOnes) {
  std::string why;
  if (!toolAvailable(why)) GTEST_SKIP() << why;
  const std::vector<std::string> files = corpusDwgFiles();
  const std::map<std::string, TheirReading> theirs = readAllWithLibreDwg(files);
  ASSERT_FALSE(theirs.empty()) << "node printed nothing for the corpus";
  std::map<std::string, const KnownDifference*> known;
  for (const KnownDifference& k : kKnownDifferences) {
    EXPECT_TRUE(known.emplace(k.file, &k).second) << k.file << " is listed twice";
    EXPECT_NE(std::string(k.reason), "") << k.file;
  }
  bool print = std::getenv("DM_PRINT_OUTSIDE_DIFFERENCES") != nullptr;
  for (const std::string& file : files) {
    std::string difference = compareFile(file, theirs);
    auto listed = known.find(file);
    if (print && !difference.empty()) std::printf("    {\"%s\",\n     \"%s\",\n     \"\"},\n", file.c_str(), difference.c_str());
    if (listed == known.end()) {
      EXPECT_EQ(difference, "") << file << ": a difference from LibreDWG that is not listed";
    } else {
      EXPECT_EQ(difference, listed->second->difference) << file << ": listed as (" << listed->second->reason << ")";
    }
  }
}

TEST(DwgOutsideReader, KindsFoldOntoOurs) {
  EXPECT_EQ(foldTheirKind("POLYLINE_PFACE"), "POLYLINE");
  EXPECT_EQ(foldTheirKind("VERTEX_PFACE_FACE"), "VERTEX");
  EXPECT_EQ(foldTheirKind("DIMENSION_ANG2LN"), "DIMENSION");
  EXPECT_EQ(foldTheirKind("PDFUNDERLAY"), "UNDERLAY");
  EXPECT_EQ(foldTheirKind("MINSERT"), "INSERT");
  EXPECT_EQ(foldTheirKind("SEQEND"), "");
  EXPECT_EQ(foldTheirKind("JUMP"), "");
  EXPECT_EQ(foldTheirKind("ARC_DIMENSION"), "DIMENSION");
  EXPECT_EQ(foldTheirKind("3DLINE"), "LINE");
  EXPECT_EQ(foldTheirKind("3DFACE"), "3DFACE");
  EXPECT_EQ(differenceText({{"LINE", 2}, {"ARC", 1}}, {{"LINE", 2}, {"CIRCLE", 1}}), "ARC 1/0 CIRCLE 0/1");
}

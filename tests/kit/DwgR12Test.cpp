// AutoCAD 1.4 and R2.10 to R12 DWG files (AC1.40, AC2.10, AC1003, AC1004, AC1006, AC1009) load
// through the R12 DXF text they are turned into.
//
// entities-2d, entities-3d and the R2.10 to R10 drawings load as their DXF twins do: the same
// layers, blocks and entities in the same order with the same values. The twins' entities have no handles (HANDLING is off),
// so entities are paired by their place in their block, not by handle. What differs because of
// the DXF export is allowed below and said why.
//
// Damaged files (cut off, bytes overwritten) end in an OdError or a database, never a crash.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <map>
#include <random>
#include <set>
#include <sstream>

#include "kit/db/DatabaseDump.h"
#include "kit/dwg/DwgR12ToDxf.h"
#include "tests/kit/DwgTestSupport.h"

namespace {

struct DumpedEntity {
  std::string kind;
  std::map<std::string, std::string> fields;
};

struct Dumped {
  std::map<std::string, std::string> header;            // variable -> value
  std::map<std::string, std::string> layers;            // name -> colour and state
  std::map<std::string, std::string> records;           // "SECTION name" -> the rest but the handle
  std::map<std::string, std::vector<DumpedEntity>> blocks;  // block name -> entities in order
};


// Table records compared by name, all their dumped fields but the handle.
const std::set<std::string> kComparedTables = {"LINETYPES", "STYLES", "DIMSTYLES", "VPORTS", "APPIDS", "BLOCKS"};

Dumped parse(const OdDbDatabase& db) {
  Dumped d;
  std::string text = dumpDatabase(db, {.loadReport = false, .maxVerticesPerEntity = 100000});
  std::string section, block;
  for (size_t start = 0, end; start < text.size(); start = end + 1) {
    end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    std::vector<std::string> t = dumpFields(text.substr(start, end - start));
    if (t.empty()) continue;
    if (text[start] != ' ') {
      section = t[0];
      block = t.size() > 1 ? t[1] : "";
      continue;
    }
    if (section == "HEADER") {
      for (size_t i = 0; i + 1 < t.size(); i += 2) d.header[t[i]] = t[i + 1];
    } else if (section == "LAYERS" && t.size() > 2) {
      std::string state;
      for (size_t i = 2; i < t.size(); ++i) {
        if (t[i].rfind("color=", 0) == 0 || t[i] == "on" || t[i] == "off" || t[i] == "frozen" || t[i] == "locked")
          state += " " + t[i];
      }
      d.layers[t[0]] = state;
    } else if (kComparedTables.count(section) && t.size() > 1) {
      std::string rest;
      for (size_t i = 2; i < t.size(); ++i) {
        if (t[i].rfind("layout=", 0) != 0) rest += " " + t[i];  // the layout's handle
      }
      d.records[section + " " + t[0]] = rest;
    } else if (section == "BLOCK" && t.size() > 1) {
      DumpedEntity e{t[0], {}};
      for (size_t i = 2; i < t.size(); ++i) {  // t[1] is the handle
        size_t eq = t[i].find('=');
        e.fields[t[i].substr(0, eq)] = eq == std::string::npos ? "" : t[i].substr(eq + 1);
      }
      d.blocks[block].push_back(e);
    }
  }
  return d;
}

// The twins were written with six decimals: numbers agree within 1e-6, or 1e-9 relative.
bool sameValue(const std::string& a, const std::string& b) {
  if (a == b) return true;
  const char* pa = a.c_str();
  const char* pb = b.c_str();
  while (*pa && *pb) {
    char* ea = nullptr;
    char* eb = nullptr;
    bool numberA = std::isdigit(static_cast<unsigned char>(*pa)) || *pa == '-' || *pa == '.';
    bool numberB = std::isdigit(static_cast<unsigned char>(*pb)) || *pb == '-' || *pb == '.';
    if (numberA && numberB) {
      double x = std::strtod(pa, &ea);
      double y = std::strtod(pb, &eb);
      if (ea != pa && eb != pb) {
        if (std::fabs(x - y) > std::max(1e-6, 1e-9 * std::max(std::fabs(x), std::fabs(y)))) return false;
        pa = ea;
        pb = eb;
        continue;
      }
    }
    if (*pa++ != *pb++) return false;
  }
  return *pa == *pb;
}

// A field that differs for a reason of the DXF export. Returns the reason, or null.
const char* exportDifference(const DumpedEntity& dwg, const std::string& key, const std::string& dwgValue,
                             const std::string& dxfValue) {
  if (dwg.kind == "SHAPE" && key == "name" && dwgValue == "\"\"") {
    return "DWG files name a shape by its number in its shape file (es.shx, not at hand), DXF files by its name";
  }
  if (dwg.kind == "DIMENSION" && key == "text" && dwgValue == "\" \"" && dxfValue == "\"\"") {
    return "the export writes the one-blank text that hides the measurement (the block has no text) as empty";
  }
  return nullptr;
}

// Exports before R11 write the drawing extents without z; the DXF reader then keeps the z of an
// empty drawing (1e+20, -1e+20). x and y must still agree.
bool twoDimensionalExtents(const std::string& variable, const std::string& dwgValue, const std::string& dxfValue) {
  if (variable != "EXTMIN" && variable != "EXTMAX") return false;
  size_t dxfZ = dxfValue.rfind(',');
  size_t dwgZ = dwgValue.rfind(',');
  if (dxfZ == std::string::npos || dwgZ == std::string::npos) return false;
  if (dxfValue.find("e+20", dxfZ) == std::string::npos) return false;
  return sameValue(dwgValue.substr(0, dwgZ), dxfValue.substr(0, dxfZ));
}

void comparePair(const std::string& file, size_t expectedModelEntities) {
  SCOPED_TRACE(file);
  Dumped dwg = parse(*readDwgFile(corpusPath(file)));
  Dumped dxf = parse(*readDxfFile(corpusPath(file.substr(0, file.size() - 4) + ".dxf")));

  EXPECT_EQ(dwg.layers, dxf.layers);
  ASSERT_EQ(dwg.records.size(), dxf.records.size());
  for (const auto& [record, fields] : dxf.records) {
    EXPECT_TRUE(sameValue(dwg.records[record], fields)) << record << ":" << dwg.records[record] << " vs" << fields;
  }
  // Not DIMSTYLE: the export names a style "*UNNAMED" that its own table does not hold. Not
  // PSLTSCALE: the export leaves it out, and where the DWG header keeps it is not known.
  for (const char* variable : {"INSBASE", "EXTMIN", "EXTMAX", "LIMMIN", "LIMMAX", "PLIMMIN", "PLIMMAX", "TILEMODE",
                               "LTSCALE", "LUNITS", "LUPREC", "CLAYER", "TEXTSTYLE", "CELTYPE", "PDMODE", "PDSIZE",
                               "FILLMODE", "MIRRTEXT", "TEXTSIZE", "DIMSCALE"}) {
    if (twoDimensionalExtents(variable, dwg.header[variable], dxf.header[variable])) continue;
    EXPECT_TRUE(sameValue(dwg.header[variable], dxf.header[variable]))
        << variable << ": " << dwg.header[variable] << " vs " << dxf.header[variable];
  }
  ASSERT_EQ(dwg.blocks.size(), dxf.blocks.size());
  ASSERT_EQ(dwg.blocks["\"*Model_Space\""].size(), expectedModelEntities);
  for (const auto& [block, dxfEntities] : dxf.blocks) {
    SCOPED_TRACE(block);
    ASSERT_TRUE(dwg.blocks.count(block));
    const std::vector<DumpedEntity>& dwgEntities = dwg.blocks[block];
    ASSERT_EQ(dwgEntities.size(), dxfEntities.size());
    for (size_t i = 0; i < dxfEntities.size(); ++i) {
      const DumpedEntity& w = dwgEntities[i];
      const DumpedEntity& x = dxfEntities[i];
      ASSERT_EQ(w.kind, x.kind) << "entity " << i;
      std::map<std::string, std::string> keys = w.fields;
      keys.insert(x.fields.begin(), x.fields.end());
      for (const auto& [key, unused] : keys) {
        auto a = w.fields.find(key);
        auto b = x.fields.find(key);
        std::string va = a == w.fields.end() ? "-" : a->second;
        std::string vb = b == x.fields.end() ? "-" : b->second;
        if (sameValue(va, vb) || exportDifference(w, key, va, vb)) continue;
        ADD_FAILURE() << w.kind << " " << i << " " << key << ": " << va << " vs " << vb;
      }
    }
  }
}

// Loads damaged bytes: a database or an OdError are both fine; anything else fails the test.
void loadDamaged(const std::string& bytes, const std::string& what) {
  try {
    readDwgBuffer(bytes, {}, what);
  } catch (const OdError&) {
  }
}

std::string entities2d() { return readBytes(corpusPath("dwg/r11/entities-2d.dwg")); }

void put16(std::string& bytes, size_t at, uint16_t v) {
  bytes[at] = char(v & 0xff);
  bytes[at + 1] = char(v >> 8);
}

}  // namespace

TEST(DwgR12Pairs, EntitiesAgreeWithTheDxfTwins) {
  comparePair("dwg/r11/entities-2d.dwg", 14);
  comparePair("dwg/r11/entities-3d.dwg", 15);
}

// Paper space entities, extended data and handles: ACEB10 has no twin, but its one viewport
// keeps its view in extended data, which must agree with the view the header records.
TEST(DwgR12Files, PaperSpaceViewportTakesItsViewFromExtendedData) {
  OdDbDatabasePtr db = readDwgFile(corpusPath("dwg/r11/ACEB10.dwg"));
  EXPECT_TRUE(db->modelSpace()->entities.empty());
  ASSERT_EQ(db->paperSpace()->entities.size(), 414u);
  auto* viewport = dbCast<ViewportEntity>(db->paperSpace()->entities.front());
  ASSERT_NE(viewport, nullptr);
  EXPECT_EQ(viewport->number, 1);
  EXPECT_NEAR(viewport->viewHeight, 34.0, 1e-12);
  EXPECT_NEAR(viewport->viewCenter.x, 28.566071428571429, 1e-12);
  EXPECT_NEAR(viewport->viewCenter.y, 17.0, 1e-12);
  // Entity handles come from the file, not from the reader.
  EXPECT_EQ(db->paperSpace()->entities.back()->handle.toHex(), "7E420");
}

// The twins hold six decimals only; the DXF text in between must not lose any: the trace's
// corners (x = 1 - sqrt(1/2) and the like) arrive as the very doubles of the file.
TEST(DwgR12Files, DoublesArriveUnchanged) {
  const std::string bytes = entities2d();
  constexpr size_t kTraceCorners = 0x7cf + 8 + 8;  // after the record header and the elevation
  OdDbDatabasePtr db = readDwgBuffer(bytes);
  const TraceEntity* trace = nullptr;
  for (const Entity* e : db->modelSpace()->entities) {
    if (!trace) trace = dbCast<TraceEntity>(e);
  }
  ASSERT_NE(trace, nullptr);
  for (int i = 0; i < 4; ++i) {
    double x, y;
    std::memcpy(&x, bytes.data() + kTraceCorners + 16 * i, 8);
    std::memcpy(&y, bytes.data() + kTraceCorners + 16 * i + 8, 8);
    EXPECT_EQ(trace->corners[i].x, x) << i;
    EXPECT_EQ(trace->corners[i].y, y) << i;
    EXPECT_EQ(trace->corners[i].z, 2.0) << i;
  }
}

// Records marked erased (the line and attribute definition that went into BLOCK1 and BLOCK2)
// stay out; the twins do not have them either, which the pair test checks. Here the DXF text
// itself: each kind as many times as the drawing holds it.
TEST(DwgR12Files, ErasedRecordsAreLeftOut) {
  std::string dxf = dwgR12ToDxf(entities2d());
  auto count = [&](const std::string& kind) {
    size_t n = 0;
    for (size_t at = dxf.find("\n" + kind + "\n"); at != std::string::npos; at = dxf.find("\n" + kind + "\n", at + 1)) ++n;
    return n;
  };
  EXPECT_EQ(count("LINE"), 5u);    // one drawn (its twin was erased into BLOCK1), one in BLOCK1, three in *D2
  EXPECT_EQ(count("ATTDEF"), 2u);  // one drawn (its twin was erased into BLOCK2), one in BLOCK2
}

// Each release's layout checks its own offsets: a bad index, end, size or kind is named in one
// line that names the file.
TEST(DwgR12Damage, BadIndexesAndRangesAreNamed) {
  struct Case {
    const char* file;
    size_t at;
    uint16_t value;
    OdResult code;
    const char* message;
  };
  const char* r12 = "dwg/r11/entities-2d.dwg";
  const Case cases[] = {
      {r12, 0x6cf + 4, 99, eInvalidDrawing, "names layer 99 of 2"},            // first entity's layer
      {r12, 0x6cf + 2, 3, eInvalidDrawing, "impossible length 3"},             // its record length
      {r12, 0x6cf + 2, 0x4000, eInvalidDrawing, "impossible length 16384"},    // past the section
      {r12, 0x36 + 2, 0x7000, eEndOfFile, "layer table"},                      // layer table count
      {r12, 0x40, 20, eInvalidDrawing, "too few for their fields"},            // style record size
      {r12, 0x18 + 2, 0x7fff, eEndOfFile, "entity section"},                   // entity section end
      {"dwg/r10/entities.dwg", 0x512 + 4, 99, eInvalidDrawing, "names layer 99 of 2"},
      {"dwg/r10/entities.dwg", 0x3ef + 2, 0x7000, eEndOfFile, "UCS table"},
      {"dwg/r2.6/entities.dwg", 0x40, 100, eInvalidDrawing, "too few for their fields"},
      {"dwg/r1.4/entities.dwg", 0x202, 99, eInvalidDrawing, "kind 99 is not known"},
      {"dwg/r1.4/entities.dwg", 0x24, 0x7fff, eEndOfFile, "lie outside the file"},
      {"dwg/r1.4/entities.dwg", 0x28, 0x7fff, eInvalidDrawing, "run past its end"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.file) + " at " + std::to_string(c.at));
    std::string bytes = readBytes(corpusPath(c.file));
    put16(bytes, c.at, c.value);
    try {
      readDwgBuffer(bytes, {}, "damaged.dwg");
      ADD_FAILURE() << "loaded";
    } catch (const OdError& e) {
      EXPECT_EQ(e.code(), c.code);
      std::string text = narrowText(e.description());
      EXPECT_EQ(text.rfind("damaged.dwg: ", 0), 0u) << text;
      EXPECT_NE(text.find(c.message), std::string::npos) << text;
    }
  }
}

// One file of each release read through R12 DXF text.
const char* const kDamageSeeds[] = {"dwg/r11/entities-2d.dwg", "dwg/r10/entities.dwg", "dwg/r9/entities.dwg",
                                     "dwg/r2.6/dim.dwg", "dwg/r2.10/entities.dwg", "dwg/r1.4/entities.dwg"};

TEST(DwgR12Damage, EveryTruncationFailsCleanly) {
  for (const char* seed : kDamageSeeds) {
    SCOPED_TRACE(seed);
    const std::string bytes = readBytes(corpusPath(seed));
    for (size_t size = 0; size < bytes.size(); ++size) {
      loadDamaged(bytes.substr(0, size), "cut at " + std::to_string(size));
    }
  }
}

TEST(DwgR12Damage, RandomByteDamageFailsCleanly) {
  for (const char* seed : kDamageSeeds) {
    SCOPED_TRACE(seed);
    const std::string original = readBytes(corpusPath(seed));
    std::mt19937 random(20261123);
    for (int copy = 0; copy < 400; ++copy) {
      std::string bytes = original;
      int changes = 1 + int(random() % 8);
      for (int i = 0; i < changes; ++i) bytes[random() % bytes.size()] = char(random());
      loadDamaged(bytes, "copy " + std::to_string(copy));
    }
  }
}

TEST(DwgOldPairs, R10EntitiesAgreeWithTheDxfTwins) {
  comparePair("dwg/r10/entities.dwg", 17);
  comparePair("dwg/r10/tmp_line.dwg", 1);
}

// R9 gives a 3D line's second point its z by an option bit, and its dimension has no z.
TEST(DwgOldPairs, R9EntitiesAgreeWithTheDxfTwin) { comparePair("dwg/r9/entities.dwg", 17); }

// R2.6 closes each table record with one check byte; dim.dwg has the five kinds of dimension.
TEST(DwgOldPairs, R26EntitiesAgreeWithTheDxfTwins) {
  comparePair("dwg/r2.6/entities.dwg", 16);
  comparePair("dwg/r2.6/dim.dwg", 9);
}

// R2.10 style records have no big font; block.dwg names a block with all 31 characters.
TEST(DwgOldPairs, R210EntitiesAgreeWithTheDxfTwins) {
  comparePair("dwg/r2.10/entities.dwg", 16);
  comparePair("dwg/r2.10/block.dwg", 0);
}

// R2.10 files keep repeat blocks ("endrep 3 2 1 1"); they reach the DXF text as the export writes
// them: REPEAT, the repeated entities, then ENDREP with the columns, rows and spacing.
TEST(DwgOldFiles, RepeatBlocksKeepTheirArray) {
  std::string dxf = dwgR12ToDxf(readBytes(corpusPath("dwg/r2.10/entities.dwg")));
  size_t repeat = dxf.find("\nREPEAT\n");
  size_t end = dxf.find("\nENDREP\n");
  ASSERT_NE(repeat, std::string::npos);
  ASSERT_NE(end, std::string::npos);
  EXPECT_NE(dxf.substr(repeat, end - repeat).find("\nPOINT\n"), std::string::npos);
  std::istringstream in(dxf.substr(end + 8));
  std::map<int, std::string> groups;
  int code;
  std::string value;
  while (in >> code >> value && code != 0) groups[code] = value;
  EXPECT_EQ(groups[70], "3");
  EXPECT_EQ(groups[71], "2");
  EXPECT_TRUE(sameValue(groups[40], "1")) << groups[40];
  EXPECT_TRUE(sameValue(groups[41], "1")) << groups[41];
}

namespace {

std::string number(double v) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6f", v);
  return text;
}

std::string quoted(const std::string& text) {
  std::string out(1, '"');
  out += text;
  out += '"';
  return out;
}

std::string point2(const std::vector<double>& v, size_t at) {
  std::string out(1, '(');
  out += number(v[at]);
  out += ',';
  out += number(v[at + 1]);
  out += ",0)";
  return out;
}

// The entities of an AutoCAD 1.4 interchange file ("LINE,1" then lines of comma-separated
// values), as the dump shows them; blocks by name, the drawing's own entities under "".
std::map<std::string, std::vector<DumpedEntity>> readAc14Interchange(const std::string& text) {
  std::map<std::string, std::vector<DumpedEntity>> blocks;
  std::vector<std::pair<std::string, std::vector<std::string>>> items;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    bool kind = line.size() > 2 && line.compare(line.size() - 2, 2, ",1") == 0 &&
                line.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ") == line.size() - 2;
    if (kind) items.push_back({line.substr(0, line.size() - 2), {}});
    else if (!items.empty()) items.back().second.push_back(line);
  }
  std::string block;
  for (const auto& [kind, lines] : items) {
    std::vector<double> v;
    for (const std::string& line : lines) {
      std::istringstream values(line);
      for (std::string cell; std::getline(values, cell, ',');) v.push_back(std::strtod(cell.c_str(), nullptr));
    }
    auto need = [&](size_t n) { return v.size() >= n; };
    DumpedEntity e{kind, {}};
    if (kind == "POINT" && need(2)) {
      e.fields["position"] = point2(v, 0);
    } else if (kind == "LINE" && need(4)) {
      e.fields["start"] = point2(v, 0);
      e.fields["end"] = point2(v, 2);
    } else if ((kind == "CIRCLE" && need(3)) || (kind == "ARC" && need(5))) {
      e.fields["center"] = point2(v, 0);
      e.fields["radius"] = number(v[2]);
      if (kind == "ARC") {
        e.fields["start"] = number(v[3]);
        e.fields["end"] = number(v[4]);
      }
    } else if (kind == "TEXT" && need(4) && lines.size() > 1) {
      e.fields = {{"position", point2(v, 0)}, {"height", number(v[2])}, {"rotation", number(v[3])},
                  {"text", quoted(lines[1])}};
    } else if ((kind == "TRACE" || kind == "SOLID") && need(8)) {
      e.fields["corners"] = point2(v, 0) + point2(v, 2) + point2(v, 4) + point2(v, 6);
    } else if (kind == "INSERT" && need(5) && lines.size() > 1) {
      e.fields = {{"block", quoted(lines[1])}, {"position", point2(v, 0)},
                  {"scale", "(" + number(v[2]) + "," + number(v[3]) + ",1)"}, {"rotation", number(v[4])}};
    } else if (kind == "SHAPE" && need(3)) {
      e.fields = {{"position", point2(v, 0)}, {"size", number(v[2])}};
    } else if (kind == "REPEAT" || kind == "ENDREP") {
      e = {"PROXY_ENTITY", {{"name", kind}}};
    } else if (kind == "BLOCK" && lines.size() > 1) {
      block = quoted(lines[1]);
      continue;
    } else if (kind == "ENDBLK") {
      block.clear();
      continue;
    } else {
      continue;  // LOAD and the settings draw nothing
    }
    blocks[block].push_back(e);
  }
  return blocks;
}

}  // namespace

// The AutoCAD 1.4 twin is an interchange file of that release, which the DXF reader does not
// take; its entities are read here and must agree with what the DWG file loads. The erased line
// (moved into BLOCK1) is in neither. Layers are numbers; the twin says layer 1 is current.
TEST(DwgOldPairs, Ac14EntitiesAgreeWithTheInterchangeTwin) {
  Dumped dwg = parse(*readDwgFile(corpusPath("dwg/r1.4/entities.dwg")));
  auto twin = readAc14Interchange(readBytes(corpusPath("dwg/r1.4/entities.dxf")));
  ASSERT_EQ(twin[""].size(), 12u);
  ASSERT_EQ(twin["\"BLOCK1\""].size(), 1u);
  for (const auto& [name, expected] : twin) {
    const std::vector<DumpedEntity>& loaded = dwg.blocks[name.empty() ? "\"*Model_Space\"" : name];
    SCOPED_TRACE(name);
    ASSERT_EQ(loaded.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
      ASSERT_EQ(loaded[i].kind, expected[i].kind) << i;
      EXPECT_EQ(loaded[i].fields.at("layer"), "\"1\"") << i;
      for (const auto& [key, value] : expected[i].fields) {
        auto found = loaded[i].fields.find(key);
        ASSERT_NE(found, loaded[i].fields.end()) << i << " " << key;
        EXPECT_TRUE(sameValue(found->second, value)) << i << " " << key << ": " << found->second << " vs " << value;
      }
    }
  }
  EXPECT_TRUE(sameValue(dwg.header["EXTMAX"], "(8,8,0)")) << dwg.header["EXTMAX"];
  EXPECT_TRUE(sameValue(dwg.header["LIMMAX"], "(12,9)")) << dwg.header["LIMMAX"];
  EXPECT_TRUE(sameValue(dwg.header["TEXTSIZE"], "0.75")) << dwg.header["TEXTSIZE"];
}


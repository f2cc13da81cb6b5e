// A DWG and the DXF of the same drawing, written by the same program, give the same database:
// the same layers, block records, layouts and entities by handle, with the same kinds and the
// same values. Values are compared through the database dump, numbers within 1e-9 relative.
//
// What differs because of the DXF export, not the readers, is allowed below and said why.
// Kinds the DWG reader does not read yet come back as proxies; they are counted and skipped.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <map>
#include <set>
#include <tuple>

#include "kit/db/DatabaseDump.h"
#include "kit/dxf/DxfTextDecoder.h"
#include "tests/kit/DwgTestSupport.h"

namespace {

// Entity kinds the DWG reader still keeps as proxies.
const std::set<std::string> kNotReadYet = {
    "LIGHT", "SECTIONOBJECT",
    "EXTRUDEDSURFACE", "LOFTEDSURFACE", "PLANESURFACE", "REVOLVEDSURFACE", "SWEPTSURFACE"};

// Fields of read kinds the DWG reader leaves out so far, as "KIND key".
const std::set<std::string> kFieldsNotReadYet = {};

struct DumpedEntity {
  std::string kind;
  std::string proxyName;
  std::map<std::string, std::string> fields;  // key=value, and bare words with an empty value
};

struct Dumped {
  std::map<std::string, std::string> layers, blocks, layouts;  // handle -> name
  std::map<std::string, DumpedEntity> entities;                // handle -> entity
};


Dumped parse(const OdDbDatabase& db) {
  Dumped d;
  std::string text = dumpDatabase(db, {.loadReport = false, .maxVerticesPerEntity = 100000});
  std::string section;
  size_t start = 0;
  while (start < text.size()) {
    size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(start, end - start);
    start = end + 1;
    if (line.empty()) continue;
    std::vector<std::string> t = dumpFields(line);
    if (line[0] != ' ') {
      section = t[0];
      continue;
    }
    if (t.size() < 2) continue;
    if (section == "LAYERS") {
      // The name with the layer's colour and state: a layer read as off hides all it holds.
      std::string layer = t[0];
      for (size_t i = 2; i < t.size(); ++i) {
        if (t[i].rfind("color=", 0) == 0 || t[i] == "on" || t[i] == "off" || t[i] == "frozen" || t[i] == "locked")
          layer += " " + t[i];
      }
      d.layers[t[1]] = layer;
    }
    if (section == "BLOCKS") d.blocks[t[1]] = t[0];
    if (section == "LAYOUTS" && t[0] != "active") d.layouts[t[1]] = t[0];
    if (section != "BLOCK") continue;
    DumpedEntity e;
    e.kind = t[0];
    for (size_t i = 2; i < t.size(); ++i) {
      size_t eq = t[i].find('=');
      if (eq == std::string::npos) e.fields[t[i]] = "";
      else e.fields[t[i].substr(0, eq)] = t[i].substr(eq + 1);
    }
    // A proxy of an application class goes by its class.
    if (auto it = e.fields.find("name"); it != e.fields.end() && e.kind == "PROXY_ENTITY") e.proxyName = it->second;
    if (auto it = e.fields.find("class"); it != e.fields.end() && e.kind == "PROXY_ENTITY") e.proxyName = it->second;
    d.entities[t[1]] = e;
  }
  return d;
}

// The numbers of a value, and the rest with the numbers cut out.
void splitNumbers(const std::string& value, std::vector<double>& numbers, std::string& skeleton) {
  for (size_t i = 0; i < value.size();) {
    char c = value[i];
    bool startsNumber = (c >= '0' && c <= '9') || ((c == '-' || c == '.') && i + 1 < value.size() &&
                                                   ((value[i + 1] >= '0' && value[i + 1] <= '9') || value[i + 1] == '.'));
    size_t used = 0;
    if (startsNumber && (i == 0 || !std::isalpha(static_cast<unsigned char>(value[i - 1])))) {
      const char* begin = value.c_str() + i;
      char* end = nullptr;
      double number = std::strtod(begin, &end);
      used = size_t(end - begin);
      if (used > 0) numbers.push_back(number);
    }
    if (used > 0) {
      skeleton += '#';
      i += used;
    } else {
      skeleton += c;
      ++i;
    }
  }
}

bool sameValue(const std::string& a, const std::string& b, double absolute = 0.0) {
  if (a == b) return true;
  std::vector<double> na, nb;
  std::string sa, sb;
  splitNumbers(a, na, sa);
  splitNumbers(b, nb, sb);
  if (sa != sb || na.size() != nb.size()) return false;
  for (size_t i = 0; i < na.size(); ++i) {
    double scale = std::max({1.0, std::fabs(na[i]), std::fabs(nb[i])});
    if (std::fabs(na[i] - nb[i]) > std::max(1e-9 * scale, absolute)) return false;
  }
  return true;
}

// Anonymous block numbers are given by each writer and reader on its own: "*D3" and "*D1" are
// both "*D".
std::string blockNameBase(const std::string& quoted) {
  std::string n = quoted;
  if (n.size() > 2 && n[1] == '*') {
    while (n.size() > 3 && std::isdigit(static_cast<unsigned char>(n[n.size() - 2]))) n.erase(n.size() - 2, 1);
  }
  return n;
}

// "\U+00B0" escapes (doubled backslash in the dump) as the characters they stand for.
std::string withoutUnicodeEscapes(const std::string& value) {
  std::string out;
  for (size_t i = 0; i < value.size(); ++i) {
    if (value.compare(i, 4, "\\\\U+") == 0 && i + 8 <= value.size()) {
      appendUtf8(out, uint32_t(std::stoul(value.substr(i + 4, 4), nullptr, 16)));
      i += 7;
    } else {
      out += value[i];
    }
  }
  return out;
}

// A line feed (escaped "\\n" in the dump) as DXF writes it: "^J".
std::string caretNotation(const std::string& value) {
  std::string out;
  for (size_t i = 0; i < value.size(); ++i) {
    if (value.compare(i, 2, "\\n") == 0) {
      out += "^J";
      ++i;
    } else {
      out += value[i];
    }
  }
  return out;
}

// A field that may differ for a reason of the DXF export. Returns the reason, or null.
const char* exportDifference(const DumpedEntity& dwg, const DumpedEntity& dxf, const std::string& key, bool oldDxf) {
  auto has = [](const DumpedEntity& e, const char* k) { return e.fields.count(k) != 0; };
  auto get = [](const DumpedEntity& e, const char* k) {
    auto it = e.fields.find(k);
    return it == e.fields.end() ? std::string() : it->second;
  };
  if (key == "xdata" && std::stoi(get(dwg, "xdata").empty() ? "0" : get(dwg, "xdata")) >
                            std::stoi(get(dxf, "xdata").empty() ? "0" : get(dxf, "xdata"))) {
    return "the DXF export leaves out the ACAD application's own extended data";
  }
  if (key == "xdata" && dwg.kind == "DIMENSION" && oldDxf && !has(dwg, "xdata")) {
    return "R13 dimension styles have no DIMAZIN and DIMADEC; the export writes them as overrides in extended data";
  }
  if (key == "text" && dwg.kind == "DIMENSION" && get(dwg, "text") == "\" \"" && get(dxf, "text") == "\"\"") {
    return "the export of entities-2d and entities-3d writes the one-blank text that hides a measurement as empty";
  }
  if (key == "align" && !has(dwg, "align") && get(dxf, "align") == "(0,0,0)") {
    return "the export of R2010 attribute definitions writes a zero alignment point for left-aligned text";
  }
  if ((key == "groups" || key == "xdata") && dwg.kind == "MODELER_GEOMETRY" && oldDxf) {
    return "the export converts solids and regions down to the ACIS version of R13 or R14";
  }
  if (dwg.kind == "SPLINE" && (key == "knots" || key == "control") && get(dwg, "knots") == "0" && has(dwg, "fit")) {
    return "a spline drawn through fit points keeps only those in DWG; the export adds the control points it computes";
  }
  auto ends = [](const std::string& list) {
    size_t firstEnd = list.find(')'), lastStart = list.rfind('(');
    return firstEnd == std::string::npos || lastStart == std::string::npos
               ? std::string()
               : list.substr(0, firstEnd + 1) + list.substr(lastStart);
  };
  if (dwg.kind == "HELIX" && (key == "knots" || key == "control") &&
      ends(get(dwg, "control")) == ends(get(dxf, "control")) && !ends(get(dwg, "control")).empty()) {
    // 2007/Helix.dwg reads the same 52 control points as 2000/Helix.dwg of the same drawing.
    return "the export fits the helix's spline again with fewer control points between the same ends";
  }
  if (key == "text" && caretNotation(get(dwg, "text")) == get(dxf, "text")) {
    return "DXF files write control characters in caret notation (^J for a line feed)";
  }
  if (key == "text" && withoutUnicodeEscapes(get(dwg, "text")) == withoutUnicodeEscapes(get(dxf, "text"))) {
    return "one side writes a character as a \\U+ escape that the other writes as it is";
  }
  if (dwg.kind == "SHAPE" && (key == "name" || key == "number" || key == "style") && has(dwg, "number")) {
    return "DWG files give a shape's number in its shape file, DXF files its name";
  }
  if (key == "block" && blockNameBase(get(dwg, "block")) == blockNameBase(get(dxf, "block"))) {
    return "anonymous block numbers are the writer's own";
  }
  return nullptr;
}

struct PairOutcome {
  size_t compared = 0;
  size_t notReadYet = 0;
  size_t dxfOnly = 0;
  size_t dwgOnly = 0;
};

// HANDSEED as the file gave it: loading raises the header's own copy above the handles it gives.
OdDbHandle savedHandleSeed(const OdDbDatabase& db) {
  for (const HeaderVariable& v : db.header().variables) {
    if (v.name == "HANDSEED" && !v.values.empty()) return OdDbHandle::fromHex(v.values.front().text);
  }
  return OdDbHandle(~uint64_t(0));
}

PairOutcome comparePair(const std::string& file, std::vector<std::string>& problems) {
  const std::string dxfFile = file.substr(0, file.size() - 4) + ".dxf";
  OdDbDatabasePtr dwgDb = readDwgFile(corpusPath(file));
  OdDbDatabasePtr dxfDb = readDxfFile(corpusPath(dxfFile));
  Dumped dwg = parse(*dwgDb), dxf = parse(*dxfDb);
  // R14 and older DXF files hold no layouts or block records: the DXF reader makes them.
  const bool dxfHasLayouts = dxfDb->header().acadVer >= "AC1015";
  PairOutcome outcome;

  auto compareNames = [&](const char* what, const auto& a, const auto& b, bool anonymousAllowed) {
    for (const auto& [handle, name] : b) {
      auto it = a.find(handle);
      if (it == a.end()) problems.push_back(std::string(what) + " " + handle + " " + name + " missing in DWG");
      else if (it->second != name && !(anonymousAllowed && blockNameBase(it->second) == blockNameBase(name)))
        problems.push_back(std::string(what) + " " + handle + ": " + it->second + " vs " + name);
    }
    for (const auto& [handle, name] : a) {
      if (!b.count(handle)) problems.push_back(std::string(what) + " " + handle + " " + name + " missing in DXF");
    }
  };
  // Layers under handles past the DWG's handle seed did not exist when the DWG was saved: the
  // export made them (the "0 @ 1" layer on which it puts annotative objects decomposed for
  // older readers) and moved entities onto them.
  std::set<std::string> layersMadeByExport;
  for (auto it = dxf.layers.begin(); it != dxf.layers.end();) {
    if (OdDbHandle::fromHex(it->first) >= savedHandleSeed(*dwgDb) && !dwg.layers.count(it->first)) {
      layersMadeByExport.insert(dumpFields(it->second).front());
      it = dxf.layers.erase(it);
    } else {
      ++it;
    }
  }
  compareNames("layer", dwg.layers, dxf.layers, false);
  // Likewise applications the export registered: it tags texts with the code page their
  // characters came from ("AcadStringInfo").
  std::set<std::string> appsMadeByExport;
  for (const RegAppRecord* app : dxfDb->regApps()) {
    if (app->handle >= savedHandleSeed(*dwgDb)) appsMadeByExport.insert(app->name);
  }
  auto xdataBeforeExport = [&](const std::string& handle) {
    const DbObject* object = dxfDb->find(OdDbHandle::fromHex(handle));
    size_t count = 0;
    if (object && object->extras) {
      for (const XDataGroup& g : object->extras->xdata) count += appsMadeByExport.count(g.appName) ? 0 : 1;
    }
    return count ? std::to_string(count) : std::string();
  };
  if (dxfHasLayouts) {
    compareNames("block", dwg.blocks, dxf.blocks, true);
    compareNames("layout", dwg.layouts, dxf.layouts, false);
  }

  for (const auto& [handle, x] : dxf.entities) {
    auto it = dwg.entities.find(handle);
    if (it == dwg.entities.end()) {
      ++outcome.dxfOnly;
      continue;
    }
    const DumpedEntity& w = it->second;
    if (w.kind == "PROXY_ENTITY" && kNotReadYet.count(w.proxyName)) {
      ++outcome.notReadYet;
      continue;
    }
    ++outcome.compared;
    // R13 and R14 DXF files cannot hold arc length dimensions or tables: the export writes a
    // block reference instead.
    bool writtenAsInsert = !dxfHasLayouts && x.kind == "INSERT" &&
                           ((w.kind == "DIMENSION" && w.fields.at("kind") == "7") || w.kind == "ACAD_TABLE");
    if (writtenAsInsert) continue;
    // Kinds newer than R14 that R13 and R14 DXF files cannot hold otherwise become proxies there.
    if (!dxfHasLayouts && x.kind == "PROXY_ENTITY" && w.kind == "MULTILEADER") continue;
    if (w.kind != x.kind) {
      problems.push_back(handle + ": " + w.kind + " vs " + x.kind);
      continue;
    }
    std::set<std::string> keys;
    for (const auto& f : w.fields) keys.insert(f.first);
    for (const auto& f : x.fields) keys.insert(f.first);
    for (const std::string& key : keys) {
      auto a = w.fields.find(key), b = x.fields.find(key);
      // The export of PolyLine2D writes viewport sizes and views with six decimals, and numbers
      // the viewports of every layout where AutoCAD numbers those of the active one only.
      const bool polyline2d = w.kind == "VIEWPORT" && file == "dwg/2000/PolyLine2D.dwg";
      if (polyline2d && key == "id") continue;
      double absolute = polyline2d ? 5e-7 : 0.0;
      bool same = a != w.fields.end() && b != x.fields.end() && sameValue(a->second, b->second, absolute);
      if (same || exportDifference(w, x, key, !dxfHasLayouts) || kFieldsNotReadYet.count(w.kind + " " + key)) continue;
      if (key == "layer" && b != x.fields.end() && layersMadeByExport.count(b->second)) continue;
      if (key == "xdata" && (a == w.fields.end() ? std::string() : a->second) == xdataBeforeExport(handle)) continue;
      problems.push_back(handle + " " + w.kind + " " + key + ": " + (a == w.fields.end() ? "-" : a->second) + " vs " +
                         (b == x.fields.end() ? "-" : b->second));
    }
  }
  for (const auto& [handle, w] : dwg.entities) {
    if (!dxf.entities.count(handle) && !(w.kind == "PROXY_ENTITY" && kNotReadYet.count(w.proxyName))) ++outcome.dwgOnly;
  }
  return outcome;
}

std::vector<std::string> pairedDwgFiles() {
  std::vector<std::string> pairs;
  for (const std::string& f : corpusDwgFiles()) {
    std::string mark = dwgVersionMark(f);
    if (mark < "AC1012" || mark[3] == '.') continue;
    if (std::filesystem::exists(corpusPath(f.substr(0, f.size() - 4) + ".dxf"))) pairs.push_back(f);
  }
  return pairs;
}

bool readable(const std::string& dwgFile) {
  try {
    readDwgFile(corpusPath(dwgFile));
    return true;
  } catch (const OdError&) {
    return false;
  }
}

// Entities under handles only one side has, because the export wrote some entities again under
// fresh handles: R13 and R14 DXF files cannot hold tables, arc length dimensions and multileaders,
// so the export writes them as blocks of simple entities; R13 has no hatch entity either, and the
// export wrote the lines of the anonymous blocks that stand for hatches again. Their DXF files
// also hold only the active layout's paper space, so the other layout's viewport is left out.
// What the DWG reader does not get right yet, per file, as the start of the reported
// difference (after the handle) and why. Each line here is work left, not an export difference.
struct KnownGap {
  const char* file;  // "" for every file
  const char* difference;
  const char* why;
};
const KnownGap kKnownGaps[] = {
    {"dwg/example_2013.dwg", "MODELER_GEOMETRY groups",
     "R2013 and later files keep the ACIS data in their data storage section, beside the entity's groups"},
    {"dwg/example_2018.dwg", "MODELER_GEOMETRY groups",
     "R2013 and later files keep the ACIS data in their data storage section, beside the entity's groups"},
    {"dwg/2004/Surface.dwg", "MODELER_GEOMETRY groups",
     "surfaces keep binary ACIS data whose text form has records the conversion does not know, and the "
     "groups of how they were made are not read"},
};

bool knownGap(const std::string& file, const std::string& problem) {
  for (const KnownGap& gap : kKnownGaps) {
    if (*gap.file && file != gap.file) continue;
    if (problem.find(gap.difference) != std::string::npos) return true;
  }
  return false;
}

struct Renumbered {
  size_t dxfOnly;
  size_t dwgOnly;
};
const std::map<std::string, Renumbered> kRenumberedByExport = {
    {"dwg/example_r13.dwg", {1308, 1298}},
    {"dwg/example_r14.dwg", {11, 1}},
};

}  // namespace

TEST(DwgDxfPairs, EveryPairOfOneDrawingAgrees) {
  size_t pairs = 0, compared = 0;
  for (const std::string& file : pairedDwgFiles()) {
    if (!readable(file)) continue;  // releases whose container is not read yet
    ++pairs;
    std::vector<std::string> problems;
    PairOutcome outcome = comparePair(file, problems);
    compared += outcome.compared;
    auto renumbered = kRenumberedByExport.find(file);
    Renumbered allowed = renumbered == kRenumberedByExport.end() ? Renumbered{0, 0} : renumbered->second;
    EXPECT_EQ(outcome.dxfOnly, allowed.dxfOnly) << file;
    EXPECT_EQ(outcome.dwgOnly, allowed.dwgOnly) << file;
    std::erase_if(problems, [&](const std::string& p) { return knownGap(file, p); });
    std::string all;
    for (size_t i = 0; i < problems.size() && i < 30; ++i) all += "\n  " + problems[i];
    EXPECT_TRUE(problems.empty()) << file << ": " << problems.size() << " differences" << all;
  }
  EXPECT_GE(pairs, 10u);
  EXPECT_GE(compared, 500u);
}

TEST(DwgDxfPairs, ValueComparisonToleratesOnlyRounding) {
  EXPECT_TRUE(sameValue("(1,2.5,0)", "(1,2.5000000000001,0)"));
  EXPECT_FALSE(sameValue("(1,2.5,0)", "(1,2.5001,0)"));
  EXPECT_FALSE(sameValue("(1,2.5)", "(1,2.5,0)"));
  EXPECT_TRUE(sameValue("1e+20", "1.0000000000000001e+20"));
  EXPECT_FALSE(sameValue("\"ABC\"", "\"ABD\""));
  EXPECT_EQ(blockNameBase("\"*D12\""), "\"*D\"");
  EXPECT_EQ(withoutUnicodeEscapes("\"108\\\\U+00B0C\""), "\"108\u00B0C\"");
  EXPECT_EQ(blockNameBase("\"BLOCK2\""), "\"BLOCK2\"");
}

namespace {

bool near(double a, double b) { return std::fabs(a - b) <= 1e-9 * std::max({1.0, std::fabs(a), std::fabs(b)}); }
bool near(const OdGePoint2d& a, const OdGePoint2d& b) { return near(a.x, b.x) && near(a.y, b.y); }
bool near(const OdGeVector2d& a, const OdGeVector2d& b) { return near(a.x, b.x) && near(a.y, b.y); }

// Everything of two hatches the dump leaves out: loops point by point and edge by edge, the
// pattern lines, the seed points.
void compareHatches(const HatchEntity& w, const HatchEntity& x, std::vector<std::string>& problems) {
  const std::string id = w.handle.toHex() + " ";
  auto expect = [&](bool same, const std::string& what) {
    if (!same) problems.push_back(id + what);
  };
  expect(near(w.patternAngle, x.patternAngle) && near(w.patternScale, x.patternScale), "pattern angle or scale");
  expect(w.style == x.style && w.patternType == x.patternType && w.solidFill == x.solidFill, "style or kind");
  expect(near(w.elevationPoint.z, x.elevationPoint.z), "elevation");
  expect(w.loops.size() == x.loops.size(), "loop count");
  for (size_t i = 0; i < std::min(w.loops.size(), x.loops.size()); ++i) {
    const HatchLoop &a = w.loops[i], &b = x.loops[i];
    expect(a.flags == b.flags && a.points.size() == b.points.size() && a.edges.size() == b.edges.size() &&
               a.bulges.size() == b.bulges.size() && a.sourceObjects == b.sourceObjects,
           "loop " + std::to_string(i) + " shape");
    for (size_t k = 0; k < std::min(a.points.size(), b.points.size()); ++k) expect(near(a.points[k], b.points[k]), "loop point");
    for (size_t k = 0; k < std::min(a.bulges.size(), b.bulges.size()); ++k) expect(near(a.bulges[k], b.bulges[k]), "bulge");
    for (size_t k = 0; k < std::min(a.edges.size(), b.edges.size()); ++k) {
      const HatchEdge &p = a.edges[k], &q = b.edges[k];
      expect(p.type == q.type && near(p.start, q.start) && near(p.end, q.end) && near(p.radius, q.radius) &&
                 near(p.startAngle, q.startAngle) && near(p.endAngle, q.endAngle) && p.counterClockwise == q.counterClockwise,
             "edge " + std::to_string(k));
    }
  }
  expect(w.patternLines.size() == x.patternLines.size(), "pattern line count");
  for (size_t i = 0; i < std::min(w.patternLines.size(), x.patternLines.size()); ++i) {
    const HatchPatternLine &a = w.patternLines[i], &b = x.patternLines[i];
    bool same = near(a.angle, b.angle) && near(a.basePoint, b.basePoint) && near(a.offset, b.offset) &&
                a.dashes.size() == b.dashes.size();
    for (size_t k = 0; same && k < a.dashes.size(); ++k) same = near(a.dashes[k], b.dashes[k]);
    expect(same, "pattern line " + std::to_string(i));
  }
  expect(w.seedPoints.size() == x.seedPoints.size(), "seed points");
}

}  // namespace

TEST(DwgDxfPairs, HatchesAgreeInDetail) {
  size_t hatches = 0;
  std::vector<std::string> problems;
  for (const std::string& file : pairedDwgFiles()) {
    if (!readable(file)) continue;
    OdDbDatabasePtr dwg = readDwgFile(corpusPath(file));
    OdDbDatabasePtr dxf = readDxfFile(corpusPath(file.substr(0, file.size() - 4) + ".dxf"));
    for (const BlockRecord* block : dwg->blocks()) {
      for (const Entity* e : block->entities) {
        auto* w = dbCast<HatchEntity>(e);
        auto* x = w ? dxf->findAs<HatchEntity>(w->handle) : nullptr;
        if (!x) continue;
        ++hatches;
        std::vector<std::string> found;
        compareHatches(*w, *x, found);
        for (const std::string& f : found) problems.push_back(file + " " + f);
      }
    }
  }
  std::string all;
  for (size_t i = 0; i < problems.size() && i < 30; ++i) all += "\n  " + problems[i];
  EXPECT_TRUE(problems.empty()) << all;
  EXPECT_GE(hatches, 3u);
}

// The entities of kind T of a corpus DWG, each with its twin in the DXF beside it.
template <class T>
std::vector<std::pair<const T*, const T*>> twinsOfKind(const std::string& file) {
  static std::map<std::string, std::pair<OdDbDatabasePtr, OdDbDatabasePtr>> loaded;
  auto& [dwg, dxf] = loaded[file];
  if (!dwg) {
    dwg = readDwgFile(corpusPath(file));
    dxf = readDxfFile(corpusPath(file.substr(0, file.size() - 4) + ".dxf"));
  }
  std::vector<std::pair<const T*, const T*>> twins;
  for (const Entity* e : dwg->modelSpace()->entities) {
    auto* w = dbCast<T>(e);
    if (auto* x = w ? dxf->findAs<T>(w->handle) : nullptr) twins.push_back({w, x});
  }
  return twins;
}

bool near(const OdGePoint3d& a, const OdGePoint3d& b) { return a.distanceTo(b) <= 1e-9 * (1 + b.asVector().length()); }

// Meshes, underlays and shapes keep every field their DXF twins hold, beyond what the dumps
// compare.
TEST(DwgDxfPairs, MeshesUnderlaysAndShapesAgreeInEveryField) {
  auto meshes = twinsOfKind<MeshEntity>("dwg/2004/Surface.dwg");
  EXPECT_EQ(meshes.size(), 2u);
  for (auto [w, x] : meshes) {
    SCOPED_TRACE(w->handle.toHex());
    EXPECT_EQ(std::tie(w->version, w->blendCrease, w->subdivisionLevel), std::tie(x->version, x->blendCrease, x->subdivisionLevel));
    ASSERT_EQ(w->vertices.size(), x->vertices.size());
    for (size_t i = 0; i < w->vertices.size(); ++i) EXPECT_TRUE(near(w->vertices[i], x->vertices[i])) << i;
    EXPECT_EQ(w->faceList, x->faceList);
    EXPECT_EQ(w->edges, x->edges);
    EXPECT_EQ(w->edgeCreases, x->edgeCreases);
  }
  auto underlays = twinsOfKind<UnderlayEntity>("dwg/2004/Underlay.dwg");
  EXPECT_EQ(underlays.size(), 3u);
  for (auto [w, x] : underlays) {
    SCOPED_TRACE(w->handle.toHex());
    EXPECT_EQ(std::tie(w->format, w->flags, w->contrast, w->fade), std::tie(x->format, x->flags, x->contrast, x->fade));
    EXPECT_NEAR(w->rotation, x->rotation, 1e-12);
    EXPECT_TRUE(near(OdGePoint3d() + w->normal, OdGePoint3d() + x->normal));
    ASSERT_EQ(w->clipBoundary.size(), x->clipBoundary.size());
    for (size_t i = 0; i < w->clipBoundary.size(); ++i) {
      EXPECT_NEAR(w->clipBoundary[i].x, x->clipBoundary[i].x, 1e-12) << i;
      EXPECT_NEAR(w->clipBoundary[i].y, x->clipBoundary[i].y, 1e-12) << i;
    }
  }
  for (const char* file : {"dwg/2000/entities-2d.dwg", "dwg/2000/entities-3d.dwg"}) {
    auto shapes = twinsOfKind<ShapeEntity>(file);
    EXPECT_EQ(shapes.size(), 1u) << file;
    for (auto [w, x] : shapes) {
      EXPECT_TRUE(near(w->position, x->position));
      EXPECT_TRUE(near(OdGePoint3d() + w->normal, OdGePoint3d() + x->normal));
      for (auto [a, b] : {std::pair{w->size, x->size}, {w->rotation, x->rotation}, {w->widthFactor, x->widthFactor},
                          {w->oblique, x->oblique}, {w->thickness, x->thickness}}) {
        EXPECT_NEAR(a, b, 1e-12) << file;
      }
      // The shape file that names shape 131 (es.shx) is not at hand.
      ASSERT_NE(w->style, nullptr);
      EXPECT_EQ(w->style->fontFile, "es.shx");
      EXPECT_EQ(w->number, 131);
      EXPECT_EQ(x->name, "DIODE");
    }
  }
}

// Multi-line texts lay out as their twins do: column settings and defined height come from the
// entity in R2018 files and from extended data before.
TEST(DwgDxfPairs, MTextLayoutSettingsAgree) {
  size_t texts = 0, withColumns = 0;
  for (const std::string& file : pairedDwgFiles()) {
    if (!readable(file)) continue;
    for (auto [w, x] : twinsOfKind<MTextEntity>(file)) {
      SCOPED_TRACE(file + " " + w->handle.toHex());
      ++texts;
      withColumns += x->columnType != 0;
      EXPECT_EQ(std::tie(w->columnType, w->columnCount, w->columnAutoHeight, w->columnFlowReversed),
                std::tie(x->columnType, x->columnCount, x->columnAutoHeight, x->columnFlowReversed));
      EXPECT_NEAR(w->columnWidth, x->columnWidth, 1e-9 * (1 + std::abs(x->columnWidth)));
      EXPECT_NEAR(w->columnGutter, x->columnGutter, 1e-9 * (1 + std::abs(x->columnGutter)));
      EXPECT_NEAR(w->definedHeight, x->definedHeight, 1e-9 * (1 + std::abs(x->definedHeight)));
      EXPECT_EQ(w->lineSpacingStyle, x->lineSpacingStyle);
      EXPECT_NEAR(w->lineSpacingFactor, x->lineSpacingFactor, 1e-12);
    }
  }
  EXPECT_GE(texts, 20u);
  EXPECT_GE(withColumns, 1u);  // 2007/Text
}

// The ACIS text of regions and solids comes out group for group as the DXF twin holds it, where
// the export kept the drawing's ACIS version (TS1 and the R14 example were written with another):
// the SAT text of R13 to R2000 files, and that made of the binary data of later ones. DXF writes
// "^" as "^ " (caret notation), and the export writes the ACIS header line of SAT text anew.
TEST(DwgDxfPairs, ModelerDataAgreesGroupForGroup) {
  constexpr size_t kHeaderLine = 3;  // after the subclass marker, the version and the first line
  auto withoutCaretBlank = [](std::string text) {
    for (size_t at = text.find("^ "); at != std::string::npos; at = text.find("^ ", at + 1)) text.erase(at + 1, 1);
    return text;
  };
  size_t bodies = 0;
  for (const char* file : {"dwg/example_2000.dwg", "dwg/example_r13.dwg", "dwg/example_2004.dwg", "dwg/example_2007.dwg",
                           "dwg/example_2010.dwg"}) {
    const bool satInFile = std::strcmp(file, "dwg/example_2004.dwg") < 0 || std::strcmp(file, "dwg/example_r") > 0;
    OdDbDatabasePtr dwg = readDwgFile(corpusPath(file));
    OdDbDatabasePtr dxf = readDxfFile(corpusPath(std::string(file).substr(0, std::strlen(file) - 4) + ".dxf"));
    for (const BlockRecord* block : dwg->blocks()) {
      for (const Entity* e : block->entities) {
        auto* w = dbCast<ModelerGeometryEntity>(e);
        auto* x = w ? dxf->findAs<ModelerGeometryEntity>(w->handle) : nullptr;
        if (!x) continue;
        ++bodies;
        ASSERT_EQ(w->data.size(), x->data.size()) << file << " " << w->handle.toHex();
        for (size_t i = 0; i < w->data.size(); ++i) {
          if (i == kHeaderLine && satInFile) continue;
          EXPECT_EQ(w->data[i].code, x->data[i].code) << file << " " << w->handle.toHex() << " group " << i;
          EXPECT_EQ(w->data[i].asText(), withoutCaretBlank(x->data[i].asText()))
              << file << " " << w->handle.toHex() << " group " << i;
        }
      }
    }
  }
  EXPECT_EQ(bodies, 15u);
}

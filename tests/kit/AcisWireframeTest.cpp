// ACIS models as wireframes: SAT text and binary data read into records, the edges found through
// the topology and cut from their curves; corpus solids, regions and surfaces against counts taken
// from an independent ACIS parser, DXF and DWG twins against each other, and damaged data.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "kit/gi/acis/AcisEntityData.h"
#include "kit/gi/acis/AcisWireframe.h"
#include "tests/kit/DwgTestSupport.h"
#include "tests/kit/DxfTestSupport.h"

namespace {

// A wire body: a straight edge from (0,0,0) to (10,0,0), then back along the upper half of the
// circle about (5,0,0) of radius 5.
const std::string kWireBody =
    "700 0 1 0\n"
    "@9 unit test @4 ACIS @0 \n"
    "1 9.9999999999999995e-07 1e-10\n"
    "body $-1 -1 $-1 $-1 $1 $-1 #\n"
    "wire $-1 -1 $-1 $-1 $2 $0 $-1 #\n"
    "coedge $-1 -1 $-1 $3 $3 $-1 $4 forward $1 $-1 #\n"
    "coedge $-1 -1 $-1 $2 $2 $-1 $5 forward $1 $-1 #\n"
    "edge $-1 -1 $-1 $6 0 $7 10 $2 $8 forward @7 unknown #\n"
    "edge $-1 -1 $-1 $7 0 $6 3.14159265358979 $3 $9 forward @7 unknown #\n"
    "vertex $-1 -1 $-1 $4 $10 #\n"
    "vertex $-1 -1 $-1 $4 $11 #\n"
    "straight-curve $-1 -1 $-1 0 0 0 1 0 0 I I #\n"
    "ellipse-curve $-1 -1 $-1 5 0 0 0 0 1 5 0 0 1 I I #\n"
    "point $-1 -1 $-1 0 0 0 #\n"
    "point $-1 -1 $-1 10 0 0 #\n"
    "End-of-ACIS-data\n";

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  if (at != std::string::npos) text.replace(at, from.size(), to);
  return text;
}

bool near(const OdGePoint3d& a, const OdGePoint3d& b, double tolerance = 1e-6) {
  return a.distanceTo(b) <= tolerance;
}

void endsOf(const AcisEdgeShape& s, OdGePoint3d& a, OdGePoint3d& b) {
  switch (s.kind) {
    case AcisEdgeShape::Kind::kArc: a = s.arc.startPoint(); b = s.arc.endPoint(); break;
    case AcisEdgeShape::Kind::kSpline:
      a = s.spline.evalPoint(s.spline.startParam());
      b = s.spline.evalPoint(s.spline.endParam());
      break;
    default: a = s.points.front(); b = s.points.back(); break;
  }
}

// Edge ends rounded and ordered, for comparing wireframes read from different files.
std::multiset<std::string> edgeSignature(const AcisWireframe& w) {
  std::multiset<std::string> out;
  auto text = [](const OdGePoint3d& p) {
    char buffer[96];
    std::snprintf(buffer, sizeof buffer, "%.3f,%.3f,%.3f", p.x + 0.0, p.y + 0.0, p.z + 0.0);
    return std::string(buffer);
  };
  for (const AcisEdgeShape& s : w.edges) {
    OdGePoint3d a, b;
    endsOf(s, a, b);
    std::string ta = text(a), tb = text(b);
    out.insert(std::to_string(int(s.kind)) + " " + std::min(ta, tb) + " " + std::max(ta, tb));
  }
  return out;
}

std::vector<const ModelerGeometryEntity*> modelerEntities(const OdDbDatabase& db) {
  std::vector<const ModelerGeometryEntity*> out;
  for (const BlockRecord* block : db.blocks()) {
    for (const Entity* e : block->entities) {
      if (auto* m = dbCast<ModelerGeometryEntity>(e)) out.push_back(m);
    }
  }
  std::sort(out.begin(), out.end(), [](auto* a, auto* b) { return a->handle.value() < b->handle.value(); });
  return out;
}

std::vector<AcisWireframe> wireframesOf(const OdDbDatabase& db) {
  std::vector<AcisWireframe> out;
  for (const ModelerGeometryEntity* e : modelerEntities(db)) out.push_back(acisWireframe(acisModelOf(*e)));
  return out;
}

std::set<std::string> cornerSet(const AcisWireframe& w) {
  std::set<std::string> corners;
  for (const AcisEdgeShape& s : w.edges) {
    for (const OdGePoint3d& p : s.points) {
      char buffer[96];
      std::snprintf(buffer, sizeof buffer, "%.4f,%.4f,%.4f", p.x + 0.0, p.y + 0.0, p.z + 0.0);
      corners.insert(buffer);
    }
  }
  return corners;
}

// A box: 12 straight edges on 8 corners, three edges at each corner, in three groups of four
// parallel edges of equal length.
void expectBox(const AcisWireframe& w) {
  ASSERT_EQ(w.edges.size(), 12u);
  std::map<std::string, int> degree;
  std::vector<double> lengths;
  for (const AcisEdgeShape& s : w.edges) {
    ASSERT_EQ(s.kind, AcisEdgeShape::Kind::kLine);
    lengths.push_back(s.points.front().distanceTo(s.points.back()));
    for (const OdGePoint3d& p : s.points) {
      char key[96];
      std::snprintf(key, sizeof key, "%.4f,%.4f,%.4f", p.x + 0.0, p.y + 0.0, p.z + 0.0);
      ++degree[key];
    }
  }
  ASSERT_EQ(degree.size(), 8u);
  for (const auto& [corner, edges] : degree) EXPECT_EQ(edges, 3) << corner;
  std::sort(lengths.begin(), lengths.end());
  for (size_t group = 0; group < 3; ++group) {
    EXPECT_NEAR(lengths[group * 4], lengths[group * 4 + 3], 1e-9 * (1 + lengths.back())) << group;
  }
}

}  // namespace

// ---- SAT text ------------------------------------------------------------------------------

TEST(AcisText, WireBodyGivesItsLineAndTheArcInTheEdgeSense) {
  AcisModel model = readAcisText(kWireBody);
  EXPECT_TRUE(model.complete) << model.problem;
  EXPECT_EQ(model.version, 700);
  ASSERT_EQ(model.records.size(), 12u);
  AcisWireframe w = acisWireframe(model);
  ASSERT_EQ(w.edges.size(), 2u);
  EXPECT_EQ(w.exactEdges, 2u);
  EXPECT_EQ(w.edges[0].kind, AcisEdgeShape::Kind::kLine);
  EXPECT_TRUE(near(w.edges[0].points[0], {0, 0, 0}));
  EXPECT_TRUE(near(w.edges[0].points[1], {10, 0, 0}));
  ASSERT_EQ(w.edges[1].kind, AcisEdgeShape::Kind::kArc);
  const OdGeEllipArc3d& arc = w.edges[1].arc;
  EXPECT_NEAR(arc.endAng() - arc.startAng(), kPi, 1e-9);
  EXPECT_TRUE(near(arc.evalPoint((arc.startAng() + arc.endAng()) / 2), {5, 5, 0}));

  // Reversed, the edge runs from (10,0,0) to the origin against the circle: the lower half.
  std::string reversed = replaced(kWireBody, "3.14159265358979 $3 $9 forward", "3.14159265358979 $3 $9 reversed");
  AcisWireframe r = acisWireframe(readAcisText(reversed));
  ASSERT_EQ(r.edges.size(), 2u);
  const OdGeEllipArc3d& lower = r.edges[1].arc;
  EXPECT_TRUE(near(lower.evalPoint((lower.startAng() + lower.endAng()) / 2), {5, -5, 0}));
}

TEST(AcisText, EncipheredLinesWithCaretsReadAsPlainText) {
  // Drawings keep the text enciphered (159 - c for printable characters but the blank) and DXF
  // files write the caret this makes of 'A' as "^ ".
  std::vector<std::string> lines;
  size_t start = 0;
  const std::string& text = kWireBody;
  while (start < text.size()) {
    size_t end = text.find('\n', start);
    std::string line = text.substr(start, end - start);
    std::string coded;
    for (char c : line) {
      auto u = static_cast<unsigned char>(c);
      char x = (u > 32 && u < 127) ? static_cast<char>(159 - u) : c;
      coded += x;
      if (x == '^') coded += ' ';
    }
    lines.push_back(coded);
    start = end + 1;
  }
  std::vector<std::string_view> views(lines.begin(), lines.end());
  AcisModel model = readAcisText(views, true);
  EXPECT_TRUE(model.complete) << model.problem;
  EXPECT_EQ(edgeSignature(acisWireframe(model)), edgeSignature(acisWireframe(readAcisText(kWireBody))));
}

TEST(AcisText, OldReleasesWithoutIdentifiersOrEdgeRanges) {
  const std::string old =
      "400 0 1 0\n"
      "9 unit test 4 ACIS 0\n"
      "1 9.9999999999999995e-07 1e-10\n"
      "body $-1 $-1 $1 $-1 #\n"
      "wire $-1 $-1 $2 $0 #\n"
      "coedge $-1 $-1 $-1 $-1 $3 forward $1 $-1 #\n"
      "edge $-1 $4 $5 $2 $6 forward #\n"
      "vertex $-1 $3 $7 #\n"
      "vertex $-1 $3 $8 #\n"
      "ellipse-curve $-1 0 0 0 0 0 1 2 0 0 0.5 I I #\n"
      "point $-1 2 0 0 #\n"
      "point $-1 0 1 0 #\n";
  AcisModel model = readAcisText(old);
  EXPECT_TRUE(model.complete);
  AcisWireframe w = acisWireframe(model);
  ASSERT_EQ(w.edges.size(), 1u);
  ASSERT_EQ(w.edges[0].kind, AcisEdgeShape::Kind::kArc);
  // A quarter of the ellipse with radii 2 and 1.
  EXPECT_NEAR(w.edges[0].arc.endAng() - w.edges[0].arc.startAng(), kPi / 2, 1e-9);
  EXPECT_NEAR(w.edges[0].arc.majorRadius(), 2.0, 1e-12);
  EXPECT_NEAR(w.edges[0].arc.minorRadius(), 1.0, 1e-12);
}

TEST(AcisText, ExactSplinesWholeCutAndReferenced) {
  // A cubic Bezier (0,0,0) (1,2,0) (2,2,0) (3,0,0) as bs3 data: two knots of multiplicity 3.
  const std::string spline = "{ exactcur full nubs 3 open 2 0 3 1 3 0 0 0 1 2 0 2 2 0 3 0 0 0 null_surface } I I";
  std::string text =
      replaced(kWireBody, "straight-curve $-1 -1 $-1 0 0 0 1 0 0 I I", "intcurve-curve $-1 -1 $-1 forward " + spline);
  text = replaced(text, "$6 0 $7 10 $2", "$6 0 $7 1 $2");
  text = replaced(text, "point $-1 -1 $-1 10 0 0", "point $-1 -1 $-1 3 0 0");
  text = replaced(text, "ellipse-curve $-1 -1 $-1 5 0 0 0 0 1 5 0 0 1 I I",
                  "intcurve-curve $-1 -1 $-1 forward { ref 0 } I I");
  text = replaced(text, "$7 0 $6 3.14159265358979", "$7 0 $6 1");
  AcisWireframe whole = acisWireframe(readAcisText(text));
  ASSERT_EQ(whole.edges.size(), 2u);
  EXPECT_EQ(whole.exactEdges, 2u);
  for (const AcisEdgeShape& s : whole.edges) {
    ASSERT_EQ(s.kind, AcisEdgeShape::Kind::kSpline);
    EXPECT_TRUE(near(s.spline.evalPoint(0.5), {1.5, 1.5, 0}));
  }

  // Half the range, ending at the curve's midpoint: points along the first half.
  std::string half = replaced(text, "point $-1 -1 $-1 3 0 0", "point $-1 -1 $-1 1.5 1.5 0");
  half = replaced(half, "$6 0 $7 1 $2", "$6 0 $7 0.5 $2");
  AcisWireframe cut = acisWireframe(readAcisText(half));
  ASSERT_EQ(cut.edges.size(), 2u);
  ASSERT_EQ(cut.edges[0].kind, AcisEdgeShape::Kind::kPolyline);
  EXPECT_TRUE(near(cut.edges[0].points.front(), {0, 0, 0}));
  EXPECT_TRUE(near(cut.edges[0].points.back(), {1.5, 1.5, 0}));
  // A stored range that misses the vertices: the parameters nearest to them instead.
  AcisWireframe projected = acisWireframe(readAcisText(replaced(half, "$6 0 $7 0.5 $2", "$6 0 $7 0.9 $2")));
  ASSERT_EQ(projected.edges.size(), 2u);
  ASSERT_EQ(projected.edges[0].kind, AcisEdgeShape::Kind::kPolyline);
  EXPECT_TRUE(near(projected.edges[0].points.back(), {1.5, 1.5, 0}, 1e-2));

  // Unreadable spline data: the chord, and the curve's kind named.
  std::string broken = replaced(text, "nubs 3 open 2", "nubs 3 open 99999999");
  broken = replaced(broken, "{ ref 0 }", "{ ref 7 }");
  AcisWireframe chords = acisWireframe(readAcisText(broken));
  ASSERT_EQ(chords.edges.size(), 2u);
  EXPECT_EQ(chords.chordEdges, 2u);
  EXPECT_EQ(chords.unknownCurves, std::set<std::string>{"intcurve-curve"});
  EXPECT_TRUE(near(chords.edges[0].points.back(), {3, 0, 0}));
}

TEST(AcisText, UnknownCurvesBecomeChordsAndLoneVerticesPoints) {
  std::string text = replaced(kWireBody, "ellipse-curve", "helix-curve");
  text = replaced(text, "edge $-1 -1 $-1 $6 0 $7 10 $2 $8", "edge $-1 -1 $-1 $6 0 $6 0 $2 $-1");
  AcisWireframe w = acisWireframe(readAcisText(text));
  ASSERT_EQ(w.edges.size(), 2u);
  EXPECT_EQ(w.edges[0].kind, AcisEdgeShape::Kind::kPoint);
  EXPECT_EQ(w.edges[1].kind, AcisEdgeShape::Kind::kLine);
  EXPECT_EQ(w.chordEdges, 1u);
  EXPECT_EQ(w.unknownCurves, std::set<std::string>{"helix-curve"});
}

TEST(AcisText, DamagedTextNeverHangsOrReadsOutside) {
  // Cut anywhere.
  for (size_t n = 0; n < kWireBody.size(); ++n) {
    AcisWireframe w = acisWireframe(readAcisText(std::string_view(kWireBody).substr(0, n)));
    EXPECT_LE(w.edges.size(), 2u);
  }
  // Pointers out of range, negative, to records of the wrong kind, to themselves; counts far too
  // large; numbers that are not finite.
  const std::pair<const char*, const char*> damage[] = {
      {"$-1 $1 $-1 #", "$-1 $99999999999 $-1 #"},
      {"$3 $3 $-1 $4", "$2 $2 $-1 $4"},
      {"$3 $3 $-1 $4", "$-7 $3 $-1 $1"},
      {"$6 0 $7 10", "$4 0 $7 10"},
      {"$4 $10 #", "$6 $6 #"},
      {"@7 unknown", "@99999 unknown"},
      {"@7 unknown", "@-7 unknown"},
      {"5 0 0 0 0 1 5 0 0 1", "5 0 0 0 0 1 0 0 0 1"},
      {"5 0 0 0 0 1 5 0 0 1", "5 0 0 0 0 1 nan 0 0 1"},
      {"point $-1 -1 $-1 10 0 0", "point $-1 -1 $-1 inf 0 0"},
  };
  for (const auto& [from, to] : damage) {
    AcisWireframe w = acisWireframe(readAcisText(replaced(kWireBody, from, to)));
    EXPECT_LE(w.edges.size(), 2u) << to;
    for (const AcisEdgeShape& s : w.edges) {
      for (const OdGePoint3d& p : s.points) EXPECT_TRUE(std::isfinite(p.x)) << to;
    }
  }
  EXPECT_FALSE(readAcisText("garbage").problem.empty());
  EXPECT_TRUE(acisWireframe(readAcisText("")).edges.empty());
}

TEST(AcisBinary, DamagedBinaryDataNeverCrashes) {
  OdDbDatabasePtr db = readDxfFile(corpusPath("real/netdxf/sampleOneSolid3D.dxf"));
  std::string bytes;
  for (const ModelerGeometryEntity* e : modelerEntities(*db)) {
    if (e->acisBinary.size() > bytes.size()) bytes = e->acisBinary;
  }
  ASSERT_GT(bytes.size(), 1000u);
  for (size_t n = 0; n < bytes.size(); n += 7) {
    AcisModel model = readAcisBinary(std::string_view(bytes).substr(0, n));
    EXPECT_FALSE(model.complete && n + 40 < bytes.size()) << n;
    EXPECT_LE(acisWireframe(model).edges.size(), 12u);
  }
  std::string flipped = bytes;
  for (size_t at = 100; at < flipped.size(); at += 97) flipped[at] = static_cast<char>(flipped[at] ^ 0x5A);
  EXPECT_LE(acisWireframe(readAcisBinary(flipped)).edges.size(), 12u);
}

// ---- Corpus ----------------------------------------------------------------------------------

TEST(AcisCorpus, BinaryDataOfTheDataStorageSectionGivesBoxes) {
  // Both files keep their solids only in ACDSDATA: one box each, placed by a body transform.
  OdDbDatabasePtr netDxf = readDxfFile(corpusPath("real/netdxf/sampleOneSolid3D.dxf"));
  std::vector<AcisWireframe> solids = wireframesOf(*netDxf);
  ASSERT_EQ(solids.size(), 2u);  // an empty BODY and the box
  EXPECT_TRUE(solids[0].edges.empty());
  expectBox(solids[1]);
  // The transform scales by 1000: the box's edges are 60, 2797 and 40 long.
  double longest = 0.0;
  for (const AcisEdgeShape& s : solids[1].edges) longest = std::max(longest, s.points[0].distanceTo(s.points[1]));
  EXPECT_NEAR(longest, 2797.0, 1e-6);

  OdDbDatabasePtr uncommon = readDxfFile(corpusPath("dxf/uncommon.dxf"));
  std::vector<AcisWireframe> boxes = wireframesOf(*uncommon);
  ASSERT_EQ(boxes.size(), 2u);
  for (const AcisWireframe& w : boxes) {
    expectBox(w);
    // Inside the drawing's extents ($EXTMIN 0,0,0 .. $EXTMAX 138.07,80.31,1.63) once moved.
    for (const AcisEdgeShape& s : w.edges) {
      for (const OdGePoint3d& p : s.points) {
        EXPECT_TRUE(p.x > -1e-6 && p.x < 138.07 && p.y > -1e-6 && p.y < 80.31 && p.z > -1e-6 && p.z < 1.64)
            << p.x << " " << p.y << " " << p.z;
      }
    }
  }
}

TEST(AcisCorpus, EdgeCountsOfSolidsRegionsAndSurfaces) {
  // Per entity in handle order: edges and vertices as an independent ACIS parser counts them.
  struct Case {
    const char* file;
    std::vector<size_t> edges;
    std::vector<size_t> corners;  // distinct line ends (0: not all edges are lines)
  };
  const Case cases[] = {
      {"dwg/example_r13.dxf", {4, 18, 4}, {4, 12, 4}},
      {"dwg/example_2000.dxf", {4, 18, 4}, {4, 12, 4}},
      {"dwg/example_2010.dxf", {4, 18, 4}, {4, 12, 4}},
      {"dwg/example_2018.dxf", {4, 18, 4}, {4, 12, 4}},
      {"dwg/2000/TS1.dxf", {12, 4}, {8, 4}},
      {"dwg/2018/TS1.dxf", {12, 4}, {8, 4}},
      // Extruded, lofted, revolved, swept and plane surfaces.
      {"dwg/2004/Surface.dxf", {3, 12, 12, 13, 1}, {0, 8, 0, 0, 0}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    OdDbDatabasePtr db = readDxfFile(corpusPath(c.file));
    std::vector<AcisWireframe> all = wireframesOf(*db);
    ASSERT_EQ(all.size(), c.edges.size());
    for (size_t i = 0; i < all.size(); ++i) {
      EXPECT_EQ(all[i].edges.size(), c.edges[i]) << i;
      EXPECT_EQ(all[i].chordEdges, 0u) << i;
      EXPECT_TRUE(all[i].problem.empty()) << all[i].problem;
      if (c.corners[i] > 0) {
        EXPECT_EQ(cornerSet(all[i]).size(), c.corners[i]) << i;
      }
    }
  }
}

TEST(AcisCorpus, ClosedEllipseOfThePlaneSurface) {
  OdDbDatabasePtr db = readDxfFile(corpusPath("dwg/2004/Surface.dxf"));
  std::vector<AcisWireframe> all = wireframesOf(*db);
  ASSERT_EQ(all.size(), 5u);
  ASSERT_EQ(all[4].edges.size(), 1u);
  const AcisEdgeShape& e = all[4].edges[0];
  ASSERT_EQ(e.kind, AcisEdgeShape::Kind::kArc);
  EXPECT_TRUE(e.arc.isClosed());
  EXPECT_NEAR(e.arc.majorRadius(), std::hypot(75.81463721353520668, 4.840263654308956554), 1e-9);
  EXPECT_NEAR(e.arc.minorRadius() / e.arc.majorRadius(), 0.6679748718317671807, 1e-12);
}

// R13 to R2000 keep SAT text, R2004 to R2010 binary data in the entity, R2013 on binary data in the
// data storage section; their DXF twins keep text up to R2010 and binary data in ACDSDATA after.
TEST(AcisCorpus, DwgAndDxfTwinsGiveTheSameEdges) {
  for (const char* twin : {"example_r13", "example_r14", "example_2000", "example_2004", "example_2007", "example_2010",
                           "example_2013", "example_2018", "2004/Surface", "2000/TS1"}) {
    SCOPED_TRACE(twin);
    std::string base = std::string("dwg/") + twin;
    std::vector<AcisWireframe> dwg = wireframesOf(*readDwgFile(corpusPath(base + ".dwg")));
    std::vector<AcisWireframe> dxf = wireframesOf(*readDxfFile(corpusPath(base + ".dxf")));
    ASSERT_EQ(dwg.size(), dxf.size());
    for (size_t i = 0; i < dwg.size(); ++i) {
      EXPECT_FALSE(dwg[i].edges.empty()) << i;
      EXPECT_EQ(edgeSignature(dwg[i]), edgeSignature(dxf[i])) << i;
    }
  }
}

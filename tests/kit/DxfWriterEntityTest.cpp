// Values the corpus rarely holds, written and read back: each case is a drawing in DXF text and
// the values to keep, printed from the first load; the second load must print the same, and
// what the first load printed must be what the text says (so the case tests something).
#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include "kit/dxf/DxfWriter.h"
#include "tests/kit/DxfTestSupport.h"

namespace {

using Values = std::function<std::string(const OdDbDatabase&)>;

struct Case {
  const char* name;
  std::vector<std::string> entities;
  const char* version;
  Values values;
  const char* expected;
};

template <class E>
const E& first(const OdDbDatabase& db) {
  const E* e = firstModelEntity<E>(db);
  if (!e) throw std::runtime_error("no entity of the expected kind");
  return *e;
}

std::string join(std::initializer_list<double> values) {
  std::ostringstream out;
  for (double v : values) out << v << ' ';
  return out.str();
}

const Case kCases[] = {
    {"hatch spline edge with weights and fit points",
     {"0 HATCH", "8 0", "100 AcDbHatch", "10 0", "20 0", "30 0", "2 SOLID", "70 1", "71 0", "91 1", "92 1", "93 1",
      "72 4", "94 3", "73 1", "74 0", "95 4", "96 2", "40 0", "40 0", "40 1", "40 1", "10 0", "20 0", "42 0.5",
      "10 5", "20 5", "42 2", "97 2", "11 0", "21 0", "11 5", "21 5", "12 1", "22 0", "13 0", "23 1", "97 0",
      "75 0", "76 1", "98 0"},
     "AC1027",
     [](const OdDbDatabase& db) {
       const HatchSplineEdge& s = *first<HatchEntity>(db).loops.at(0).edges.at(0).spline;
       return join({double(s.degree), double(s.rational), s.weights.at(0), s.weights.at(1), s.fitPoints.at(1).x,
                    s.startTangent.x, s.endTangent.y});
     },
     "3 1 0.5 2 5 1 1 "},
    {"arc length dimension",
     {"0 ARC_DIMENSION", "8 0", "100 AcDbDimension", "10 1", "20 2", "11 3", "21 4", "70 37", "3 Standard",
      "100 AcDbArcDimension", "13 5", "23 6", "14 7", "24 8", "15 9", "25 10", "70 1", "40 0.25", "41 1.5",
      "71 1", "16 11", "26 12", "17 13", "27 14"},
     "AC1024",
     [](const OdDbDatabase& db) {
       const DimensionEntity& d = first<DimensionEntity>(db);
       return join({double(d.kind), d.defPoint4.x, d.arcStartParam, d.arcEndParam, double(d.arcPartial),
                    double(d.arcHasLeader), d.arcPoint.y, d.leaderEnd.x, double(d.dimensionFlags)});
     },
     "7 9 0.25 1.5 1 1 12 13 32 "},
    {"mtext columns and background",
     {"0 MTEXT", "8 0", "100 AcDbMText", "10 1", "20 2", "40 2.5", "41 40", "71 5", "1 A\\Pcolumn text",
      "50 30", "90 1", "63 3", "45 1.25", "441 0", "75 1", "76 2", "48 18", "49 4", "50 10", "50 12"},
     "AC1032",
     [](const OdDbDatabase& db) {
       const MTextEntity& m = first<MTextEntity>(db);
       return join({m.rotation * 180 / kPi, double(m.backgroundFlags), double(m.backgroundColor.colorIndex()),
                    m.backgroundScale, double(m.columnType), double(m.columnCount), m.columnWidth,
                    m.columnHeights.at(1)});
     },
     "30 1 3 1.25 1 2 18 12 "},
    {"multiline block with per-vertex element parameters",
     {"0 MLINE", "8 0", "100 AcDbMline", "2 STANDARD", "340 0", "40 2", "70 1", "71 3", "72 2", "73 2", "10 0",
      "20 0", "30 0", "11 0", "21 0", "31 0", "12 1", "22 0", "32 0", "13 0", "23 1", "33 0", "74 2", "41 0",
      "41 3.5", "75 0", "74 1", "41 -1", "75 1", "42 7", "11 10", "21 0", "31 0", "12 1", "22 0", "32 0", "13 0",
      "23 1", "33 0", "74 0", "75 0", "74 0", "75 0"},
     "AC1015",
     [](const OdDbDatabase& db) {
       const MLineEntity& m = first<MLineEntity>(db);
       const MLineVertex& v = m.vertices.at(0);
       return join({m.scale, double(m.vertices.size()), v.elementParams.at(0).at(1), v.elementParams.at(1).at(0),
                    v.elementFillParams.at(1).at(0), m.vertices.at(1).position.x});
     },
     "2 2 3.5 -1 7 10 "},
    {"polyface mesh with coloured faces",
     {"0 POLYLINE", "8 0", "66 1", "10 0", "20 0", "30 0", "70 64", "71 3", "72 1", "0 VERTEX", "8 0", "10 0",
      "20 0", "30 0", "70 192", "0 VERTEX", "8 0", "10 1", "20 0", "30 0", "70 192", "0 VERTEX", "8 0", "10 0",
      "20 1", "30 2", "70 192", "0 VERTEX", "8 0", "62 5", "10 0", "20 0", "30 0", "70 128", "71 1", "72 -2",
      "73 3", "0 SEQEND", "8 0"},
     "AC1018",
     [](const OdDbDatabase& db) {
       const PolylineEntity& p = first<PolylineEntity>(db);
       const PolylineVertex& face = p.vertices.at(3);
       return join({double(p.vertices.size()), p.vertices.at(2).position.z, double(face.flags),
                    double(face.faceIndices[1]), double(face.color.colorIndex())});
     },
     "4 2 128 -2 5 "},
    {"helix",
     {"0 HELIX", "8 0", "100 AcDbSpline", "70 0", "71 3", "72 0", "73 0", "74 0", "100 AcDbHelix", "90 29",
      "91 63", "10 1", "20 2", "30 3", "11 4", "21 5", "31 6", "12 0", "22 0", "32 1", "40 2.5", "41 3", "42 0.75",
      "290 0", "280 1"},
     "AC1021",
     [](const OdDbDatabase& db) {
       const HelixEntity& h = first<HelixEntity>(db);
       return join({h.axisBasePoint.z, h.startPoint.x, h.radius, h.turns, h.turnHeight, double(h.rightHanded),
                    double(h.constraint)});
     },
     "3 4 2.5 3 0.75 0 1 "},
};

}  // namespace

TEST(DxfWriterEntities, ValuesSurviveAWriteAndARead) {
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    OdDbDatabasePtr db = readDxfText(dxfWithEntities(c.entities, c.version));
    ASSERT_EQ(c.values(*db), c.expected) << "the case's drawing does not say what it should";
    std::string written = writeDxfString(*db);
    OdDbDatabasePtr again = readDxfText(written);
    EXPECT_EQ(c.values(*again), c.expected);
    EXPECT_TRUE(again->loadReport().messages.empty()) << again->loadReport().messages.front();
    EXPECT_EQ(writeDxfString(*again), written);
  }
}

// SPATIAL_FILTER keeps the back clip distance in its own group after the front one.
TEST(DxfWriterEntities, ClipOfABlockReferenceSurvives) {
  std::string text = dxfText({"0 SECTION", "2 HEADER", "9 $ACADVER", "1 AC1015", "0 ENDSEC", "0 SECTION",
                              "2 OBJECTS", "0 DICTIONARY", "5 C", "330 0", "100 AcDbDictionary", "3 F",
                              "350 20", "0 SPATIAL_FILTER", "5 20", "330 C", "100 AcDbFilter",
                              "100 AcDbSpatialFilter", "70 2", "10 -1", "20 -2", "10 3", "20 4", "210 0",
                              "220 0", "230 1", "11 0", "21 0", "31 0", "71 1", "72 1", "40 0.5", "73 1",
                              "41 -0.25", "40 1", "40 0", "40 0", "40 9", "40 0", "40 1", "40 0", "40 0", "40 0",
                              "40 0", "40 1", "40 0", "40 1", "40 0", "40 0", "40 0", "40 0", "40 1", "40 0",
                              "40 0", "40 0", "40 0", "40 1", "40 7", "0 ENDSEC", "0 EOF"});
  auto clip = [](const OdDbDatabase& db) {
    const auto* f = db.findAs<SpatialFilterObject>(OdDbHandle(0x20));
    if (!f) return std::string("none");
    return join({f->boundary.at(1).y, double(f->displayBoundary), f->frontClip, f->backClip,
                 f->inverseInsertTransform.entry[0][3], f->clipTransform.entry[2][3]});
  };
  OdDbDatabasePtr db = readDxfText(text);
  ASSERT_EQ(clip(*db), "4 1 0.5 -0.25 9 7 ");
  EXPECT_EQ(clip(*readDxfText(writeDxfString(*db))), clip(*db));
}

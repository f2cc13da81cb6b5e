// Entity readers: the common data every entity carries, and each kind's own groups, including
// the codes that mean different things in different parts of one entity.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/kit/DxfTestSupport.h"

namespace {

constexpr double kDeg = kPi / 180.0;

template <class E>
const E& onlyEntity(const OdDbDatabasePtr& db) {
  const E* e = firstModelEntity<E>(*db);
  if (!e) throw std::runtime_error("no entity of the expected kind");
  return *e;
}

}  // namespace

TEST(DxfEntityReader, ReadsTheCommonEntityData) {
  OdDbDatabasePtr db = readDxfText(dxfWithEntities({
      "0 LINE", "5 2A", "330 1F", "100 AcDbEntity", "8 Walls", "6 DASHED", "62 1", "420 16711935", "370 35",
      "48 2.5", "60 1", "440 33554559", "430 RAL$RAL 3000", "102 {ACAD_XDICTIONARY", "360 2B", "102 }",
      "100 AcDbLine", "10 1", "20 2", "30 3", "11 4", "21 5", "31 6",
      "1001 PE_URL", "1000 https://example.com/plan", "1002 {", "1000 The plan", "1000 #sheet2", "1002 }"}));
  const LineEntity& line = onlyEntity<LineEntity>(db);
  EXPECT_EQ(line.handle, OdDbHandle(0x2A));
  EXPECT_EQ(line.ownerHandle, OdDbHandle(0x1F));
  EXPECT_EQ(line.layer->name, "Walls");
  EXPECT_EQ(line.linetype->name, "DASHED");
  EXPECT_TRUE(line.color.isByColor());  // the true colour wins over the palette index
  EXPECT_EQ(line.color.rgb(), 0xFF00FFu);
  EXPECT_EQ(line.lineweight, 35);
  EXPECT_EQ(line.linetypeScale, 2.5);
  EXPECT_FALSE(line.isVisible());
  EXPECT_EQ(line.transparency.alpha(), 127);
  ASSERT_TRUE(line.extras);
  EXPECT_EQ(line.extras->colorBookName, "RAL$RAL 3000");
  EXPECT_EQ(line.extensionDictionary(), OdDbHandle(0x2B));
  ASSERT_EQ(line.extras->hyperlinks.size(), 1u);
  EXPECT_EQ(line.extras->hyperlinks[0].url, "https://example.com/plan");
  EXPECT_EQ(line.extras->hyperlinks[0].description, "The plan");
  EXPECT_EQ(line.extras->hyperlinks[0].subLocation, "#sheet2");
  EXPECT_EQ(line.start, OdGePoint3d(1, 2, 3));
  EXPECT_EQ(line.end, OdGePoint3d(4, 5, 6));
  // The layer and linetype the entity named exist now, made on the fly.
  EXPECT_TRUE(db->layers().find("WALLS")->implicitlyCreated);
}

TEST(DxfEntityReader, ReadsColourAndSpaceVariants) {
  struct Case {
    std::vector<std::string> groups;
    OdCmEntityColor color;
    bool paperSpace;
  } cases[] = {
      {{"0 CIRCLE", "8 0"}, OdCmEntityColor::byLayer(), false},
      {{"0 CIRCLE", "62 0"}, OdCmEntityColor::byBlock(), false},
      {{"0 CIRCLE", "62 256"}, OdCmEntityColor::byLayer(), false},
      {{"0 CIRCLE", "62 5", "67 1"}, OdCmEntityColor::fromACI(5), true},
      {{"0 CIRCLE", "420 255", "62 3"}, OdCmEntityColor::fromRGB(0, 0, 255), false},
  };
  for (const Case& c : cases) {
    OdDbDatabasePtr db = readDxfText(dxfWithEntities(c.groups));
    const BlockRecord* space = c.paperSpace ? db->paperSpace() : db->modelSpace();
    ASSERT_EQ(space->entities.size(), 1u);
    EXPECT_EQ(space->entities[0]->color, c.color);
  }
}

TEST(DxfEntityReader, ReadsR12EntitiesWithoutSubclassMarkers) {
  OdDbDatabasePtr db = readDxfText(dxfWithEntities(
      {"0 ARC", "8 PARTS", "62 3", "10 1", "20 2", "30 0", "40 5", "50 90", "51 180", "210 0", "220 0", "230 -1"}, "AC1009"));
  const ArcEntity& arc = onlyEntity<ArcEntity>(db);
  EXPECT_EQ(arc.layer->name, "PARTS");
  EXPECT_EQ(arc.color.colorIndex(), 3);
  EXPECT_DOUBLE_EQ(arc.startAngle, 90 * kDeg);
  EXPECT_DOUBLE_EQ(arc.endAngle, kPi);
  EXPECT_EQ(arc.normal, OdGeVector3d(0, 0, -1));
  EXPECT_FALSE(arc.handle.isNull());  // given on load
}

TEST(DxfEntityReader, ReadsLightweightPolylinesWithBulgesAndWidths) {
  OdDbDatabasePtr db = readDxfText(dxfWithEntities({"0 LWPOLYLINE", "100 AcDbEntity", "100 AcDbPolyline", "90 3", "70 1",
                                                    "38 4", "10 0", "20 0", "10 10", "20 0", "42 1", "40 0.5", "41 1",
                                                    "10 10", "20 10"}));
  const LwPolylineEntity& p = onlyEntity<LwPolylineEntity>(db);
  ASSERT_EQ(p.points.size(), 3u);
  EXPECT_TRUE(p.isClosed());
  EXPECT_EQ(p.elevation, 4.0);
  EXPECT_EQ(p.points[2], OdGePoint2d(10, 10));
  ASSERT_EQ(p.bulges.size(), 3u);
  EXPECT_EQ(p.bulgeAt(0), 0.0);
  EXPECT_EQ(p.bulgeAt(1), 1.0);
  ASSERT_EQ(p.widths.size(), 3u);
  EXPECT_EQ(p.widths[1], OdGePoint2d(0.5, 1));
}

TEST(DxfEntityReader, ReadsPolylinesWithTheirVerticesAndSequenceEnd) {
  OdDbDatabasePtr db = readDxfText(dxfWithEntities(
      {"0 POLYLINE", "5 30", "8 0", "66 1", "10 0", "20 0", "30 2.5", "70 1", "0 VERTEX", "5 31", "8 0", "10 1", "20 2",
       "42 0.5", "0 VERTEX", "5 32", "8 0", "10 3", "20 4", "0 SEQEND", "5 33", "8 0", "0 LINE", "10 0", "11 1"}));
  const PolylineEntity& p = onlyEntity<PolylineEntity>(db);
  EXPECT_EQ(p.kind(), PolylineEntity::Kind::k2d);
  EXPECT_EQ(p.elevation, 2.5);
  ASSERT_EQ(p.vertices.size(), 2u);
  EXPECT_EQ(p.vertices[0].position, OdGePoint3d(1, 2, 0));
  EXPECT_EQ(p.vertices[0].bulge, 0.5);
  EXPECT_EQ(p.vertices[1].handle, OdDbHandle(0x32));
  EXPECT_EQ(p.seqendHandle, OdDbHandle(0x33));
  EXPECT_EQ(db->modelSpace()->entities.size(), 2u);  // the LINE after SEQEND is its own entity
}

TEST(DxfEntityReader, ReadsPolyfaceMeshFaces) {
  OdDbDatabasePtr db = readDxfText(dxfWithEntities(
      {"0 POLYLINE", "66 1", "70 64", "71 3", "72 1", "0 VERTEX", "10 0", "20 0", "70 192", "0 VERTEX", "10 1", "20 0",
       "70 192", "0 VERTEX", "10 0", "20 1", "70 192", "0 VERTEX", "62 4", "70 128", "71 1", "72 2", "73 -3", "0 SEQEND"}));
  const PolylineEntity& p = onlyEntity<PolylineEntity>(db);
  EXPECT_EQ(p.kind(), PolylineEntity::Kind::kPolyfaceMesh);
  ASSERT_EQ(p.vertices.size(), 4u);
  const PolylineVertex& face = p.vertices[3];
  EXPECT_EQ(face.flags, PolylineVertex::kPolyfaceFace);
  EXPECT_EQ(face.faceIndices[2], -3);  // negative: the edge from vertex 3 is invisible
  EXPECT_EQ(face.color.colorIndex(), 4);
}

TEST(DxfEntityReader, KeepsSplineAndHelixCodesApart) {
  // HELIX repeats codes 10, 11, 40, 41, 42 of its spline part with other meanings.
  OdDbDatabasePtr db = readDxfText(dxfWithEntities(
      {"0 HELIX", "100 AcDbEntity", "100 AcDbSpline", "70 0", "71 3", "72 4", "73 2", "40 0", "40 0", "40 1", "40 1",
       "10 1", "20 0", "30 0", "10 2", "20 1", "30 0.5", "100 AcDbHelix", "90 29", "91 63", "10 5", "20 6", "30 0",
       "11 6", "21 6", "31 0", "12 0", "22 0", "32 1", "40 2", "41 3", "42 0.25", "290 0", "280 1"}));
  const HelixEntity& h = onlyEntity<HelixEntity>(db);
  EXPECT_EQ(h.degree, 3);
  EXPECT_EQ(h.knots.size(), 4u);
  ASSERT_EQ(h.controlPoints.size(), 2u);
  EXPECT_EQ(h.controlPoints[1], OdGePoint3d(2, 1, 0.5));
  EXPECT_EQ(h.axisBasePoint, OdGePoint3d(5, 6, 0));
  EXPECT_EQ(h.startPoint, OdGePoint3d(6, 6, 0));
  EXPECT_EQ(h.radius, 2.0);
  EXPECT_EQ(h.turns, 3.0);
  EXPECT_EQ(h.turnHeight, 0.25);
  EXPECT_FALSE(h.rightHanded);
  EXPECT_EQ(h.constraint, 1);
}

TEST(DxfEntityReader, ReadsTextAlignmentAndStyle) {
  OdDbDatabasePtr db = readDxfText(dxfWithEntities({"0 TEXT", "100 AcDbEntity", "100 AcDbText", "10 1", "20 2", "40 2.5",
                                                    "1 Hello", "50 30", "41 0.8", "51 15", "7 ROMANS", "72 1", "11 5",
                                                    "21 2", "100 AcDbText", "73 2"}));
  const TextEntity& t = onlyEntity<TextEntity>(db);
  EXPECT_EQ(t.text, "Hello");
  EXPECT_EQ(t.height, 2.5);
  EXPECT_DOUBLE_EQ(t.rotation, 30 * kDeg);
  EXPECT_DOUBLE_EQ(t.oblique, 15 * kDeg);
  EXPECT_EQ(t.widthFactor, 0.8);
  EXPECT_EQ(t.style->name, "ROMANS");
  EXPECT_EQ(t.horizontalMode, TextData::kCenter);
  EXPECT_EQ(t.verticalMode, TextData::kMiddleV);
  EXPECT_TRUE(t.hasAlignmentPoint);
  EXPECT_EQ(t.alignmentPoint, OdGePoint3d(5, 2, 0));
  // Text without a style uses Standard.
  db = readDxfText(dxfWithEntities({"0 TEXT", "1 x"}));
  EXPECT_EQ(onlyEntity<TextEntity>(db).style->name, "Standard");
}

TEST(DxfEntityReader, JoinsMTextChunksAndReadsColumns) {
  OdDbDatabasePtr db = readDxfText(dxfWithEntities({"0 MTEXT", "100 AcDbEntity", "100 AcDbMText", "10 1", "20 1",
                                                    "40 3", "41 50", "71 5", "3 first part ", "3 second part ",
                                                    "1 {\\fArial;end}\\P", "50 45", "73 2", "44 1.5", "90 1", "63 2",
                                                    "45 1.2", "75 1", "76 3", "48 15", "49 2", "50 10", "50 12", "50 8"}));
  const MTextEntity& m = onlyEntity<MTextEntity>(db);
  EXPECT_EQ(m.text, "first part second part {\\fArial;end}\\P");
  EXPECT_EQ(m.attachment, MTextData::kMiddleCenter);
  EXPECT_DOUBLE_EQ(m.rotation, 45 * kDeg);  // 50 before the columns is the rotation
  EXPECT_EQ(m.lineSpacingStyle, 2);
  EXPECT_EQ(m.backgroundFlags, 1);
  EXPECT_EQ(m.backgroundColor.colorIndex(), 2);
  EXPECT_EQ(m.columnCount, 3);
  EXPECT_EQ(m.columnHeights, (std::vector<double>{10, 12, 8}));
}

TEST(DxfEntityReader, ReadsBlockReferencesWithAttributes) {
  OdDbDatabasePtr db = readDxfText(dxfWithEntities(
      {"0 INSERT", "5 40", "100 AcDbEntity", "8 0", "100 AcDbBlockReference", "66 1", "2 DOOR", "10 1", "20 2",
       "41 2", "42 3", "50 90", "70 2", "71 3", "44 5", "45 6", "0 ATTRIB", "5 41", "100 AcDbEntity", "8 TAGS",
       "100 AcDbText", "10 1", "20 2", "40 1", "1 D-101", "100 AcDbAttribute", "280 0", "2 NUMBER", "70 1", "74 3",
       "280 1", "0 SEQEND", "5 42"}));
  const BlockReferenceEntity& r = onlyEntity<BlockReferenceEntity>(db);
  ASSERT_TRUE(r.block);
  EXPECT_EQ(r.block->name, "DOOR");
  EXPECT_FALSE(r.block->hasDefinition);  // referenced, never defined
  EXPECT_EQ(r.scale, OdGeVector3d(2, 3, 1));
  EXPECT_DOUBLE_EQ(r.rotation, kPi / 2);
  EXPECT_TRUE(r.isArray());
  EXPECT_EQ(r.columnSpacing, 5.0);
  ASSERT_EQ(r.attributes.size(), 1u);
  const AttributeEntity& a = *r.attributes[0];
  EXPECT_EQ(a.tag, "NUMBER");
  EXPECT_EQ(a.text, "D-101");
  EXPECT_TRUE(a.isInvisible());
  EXPECT_EQ(a.verticalMode, TextData::kTop);
  EXPECT_TRUE(a.lockPosition);
  EXPECT_EQ(a.layer->name, "TAGS");
  EXPECT_EQ(a.ownerHandle, r.handle);
  EXPECT_EQ(r.seqendHandle, OdDbHandle(0x42));
}

TEST(DxfEntityReader, ReadsMultilineAttributesOfR2018) {
  OdDbDatabasePtr db = readDxfText(dxfWithEntities(
      {"0 ATTDEF", "100 AcDbEntity", "100 AcDbText", "10 0", "20 0", "40 1", "1 default", "100 AcDbAttributeDefinition",
       "280 0", "3 Prompt?", "2 NOTE", "70 0", "280 0", "100 AcDbXrecord", "280 1", "70 2", "10 9", "20 9", "40 1",
       "2 NOTE", "101 Embedded Object", "10 3", "20 4", "40 2", "41 20", "71 1", "1 line 1\\Pline 2", "7 Standard"},
      "AC1032"));
  const AttributeDefinitionEntity& a = onlyEntity<AttributeDefinitionEntity>(db);
  EXPECT_EQ(a.tag, "NOTE");
  EXPECT_EQ(a.prompt, "Prompt?");
  EXPECT_EQ(a.position, OdGePoint3d(0, 0, 0));  // the xrecord part does not overwrite it
  ASSERT_TRUE(a.multiline);
  EXPECT_EQ(a.multiline->text, "line 1\\Pline 2");
  EXPECT_EQ(a.multiline->position, OdGePoint3d(3, 4, 0));
  EXPECT_EQ(a.multiline->referenceWidth, 20.0);
}

TEST(DxfEntityReader, ReadsEachDimensionKind) {
  struct Case {
    std::string name;
    int typeCode;
    DimensionEntity::Kind kind;
  } cases[] = {
      {"DIMENSION", 32, DimensionEntity::Kind::kRotated},       {"DIMENSION", 33, DimensionEntity::Kind::kAligned},
      {"DIMENSION", 34, DimensionEntity::Kind::kAngular2Line},  {"DIMENSION", 163, DimensionEntity::Kind::kDiameter},
      {"DIMENSION", 36, DimensionEntity::Kind::kRadius},        {"DIMENSION", 37, DimensionEntity::Kind::kAngular3Point},
      {"DIMENSION", 102, DimensionEntity::Kind::kOrdinate},     {"ARC_DIMENSION", 37, DimensionEntity::Kind::kArcLength},
      {"LARGE_RADIAL_DIMENSION", 41, DimensionEntity::Kind::kRadialLarge},
  };
  for (const Case& c : cases) {
    OdDbDatabasePtr db = readDxfText(dxfWithEntities(
        {"0 " + c.name, "100 AcDbEntity", "100 AcDbDimension", "2 *D7", "10 1", "20 2", "11 3", "21 4", "70 " +
         std::to_string(c.typeCode), "1 <> mm", "3 ISO-25", "42 12.5", "100 AcDbAlignedDimension", "13 5", "23 6",
         "14 7", "24 8", "50 30"}));
    const DimensionEntity& d = onlyEntity<DimensionEntity>(db);
    EXPECT_EQ(d.kind, c.kind) << c.name << " " << c.typeCode;
    EXPECT_EQ(d.block->name, "*D7");
    EXPECT_EQ(d.style->name, "ISO-25");
    EXPECT_EQ(d.text, "<> mm");
    EXPECT_TRUE(d.hasActualMeasurement);
    EXPECT_EQ(d.actualMeasurement, 12.5);
    EXPECT_EQ(d.defPoint2, OdGePoint3d(5, 6, 0));
    EXPECT_EQ(d.defPoint3, OdGePoint3d(7, 8, 0));
    EXPECT_DOUBLE_EQ(d.rotation, 30 * kDeg);
  }
  // Arc length dimensions reuse 40, 41, 70 and 71 in their own subclass.
  OdDbDatabasePtr db = readDxfText(dxfWithEntities(
      {"0 ARC_DIMENSION", "100 AcDbEntity", "100 AcDbDimension", "70 37", "71 5", "41 1", "100 AcDbArcDimension",
       "40 0.5", "41 2.5", "70 1", "71 1", "16 1", "26 1", "17 2", "27 2"}));
  const DimensionEntity& arc = onlyEntity<DimensionEntity>(db);
  EXPECT_EQ(arc.attachment, 5);
  EXPECT_EQ(arc.arcStartParam, 0.5);
  EXPECT_EQ(arc.arcEndParam, 2.5);
  EXPECT_TRUE(arc.arcPartial);
  EXPECT_TRUE(arc.arcHasLeader);
  EXPECT_EQ(arc.leaderEnd, OdGePoint3d(2, 2, 0));
}

TEST(DxfEntityReader, ReadsMultiLeaderContextLeadersAndLines) {
  OdDbDatabasePtr db = readDxfText(dxfWithEntities(
      {"0 MULTILEADER", "100 AcDbEntity", "100 AcDbMLeader", "300 CONTEXT_DATA{", "40 1", "10 1", "20 1", "41 0.18",
       "290 1", "304 NOTE", "340 11", "12 5", "22 6", "90 -1056964608", "302 LEADER{", "290 1", "291 1", "10 4",
       "20 5", "11 -1", "21 0", "40 0.36", "304 LEADER_LINE{", "10 0", "20 0", "10 2", "20 3", "91 0", "305 }",
       "303 }", "296 0", "301 }", "340 D8", "170 1", "91 -1073741824", "172 2", "92 -1023410171", "10 1", "20 1",
       "30 1"}));
  const MLeaderEntity& m = onlyEntity<MLeaderEntity>(db);
  EXPECT_TRUE(m.hasMText);
  EXPECT_EQ(m.text, "NOTE");
  EXPECT_EQ(m.textLocation, OdGePoint3d(5, 6, 0));
  EXPECT_TRUE(m.contextTextColor.isByBlock());
  ASSERT_EQ(m.branches.size(), 1u);
  EXPECT_EQ(m.branches[0].lastLeaderLinePoint, OdGePoint3d(4, 5, 0));
  ASSERT_EQ(m.branches[0].lines.size(), 1u);
  EXPECT_EQ(m.branches[0].lines[0].vertices.size(), 2u);
  EXPECT_EQ(m.style, OdDbHandle(0xD8));
  EXPECT_TRUE(m.leaderColor.isByLayer());
  EXPECT_TRUE(m.textColor.isByACI());
  EXPECT_EQ(m.textColor.colorIndex(), 5);
  EXPECT_EQ(m.contentType, MLeaderEntity::kMTextContent);
}

TEST(DxfEntityReader, ReadsEveryHatchBoundaryKind) {
  OdDbDatabasePtr db = readDxfText(dxfWithEntities(
      {"0 HATCH", "100 AcDbEntity", "100 AcDbHatch", "10 0", "20 0", "30 1.5", "210 0", "220 0", "230 1", "2 ANSI31",
       "70 0", "71 1", "91 2",
       // A polyline loop with one bulge.
       "92 7", "72 1", "73 1", "93 3", "10 0", "20 0", "42 0", "10 4", "20 0", "42 1", "10 4", "20 4", "42 0", "97 1",
       "330 AB",
       // An edge loop: line, arc, elliptic arc, spline.
       "92 1", "93 4", "72 1", "10 0", "20 0", "11 1", "21 0", "72 2", "10 1", "20 1", "40 1", "50 0", "51 90",
       "73 0", "72 3", "10 2", "20 2", "11 3", "21 0", "40 0.5", "50 0", "51 180", "73 1", "72 4", "94 3", "73 0",
       "74 0", "95 8", "96 4", "40 0", "40 0", "40 0", "40 0", "40 1", "40 1", "40 1", "40 1", "10 0", "20 0",
       "10 1", "20 1", "10 2", "20 1", "10 3", "20 0", "97 0",
       // Style, pattern lines, seeds, gradient.
       "75 1", "76 1", "52 45", "41 2", "77 0", "78 1", "53 45", "43 0", "44 0", "45 -0.0883883", "46 0.0883883",
       "79 2", "49 0.125", "49 -0.0625", "98 1", "10 2", "20 2", "450 1", "451 0", "452 0", "453 2", "460 0.5",
       "461 0", "462 1", "463 0", "63 5", "421 255", "463 1", "63 2", "421 16776960", "470 LINEAR"}));
  const HatchEntity& h = onlyEntity<HatchEntity>(db);
  EXPECT_EQ(h.patternName, "ANSI31");
  EXPECT_TRUE(h.associative);
  EXPECT_EQ(h.elevationPoint.z, 1.5);
  ASSERT_EQ(h.loops.size(), 2u);
  const HatchLoop& poly = h.loops[0];
  EXPECT_TRUE(poly.isPolyline());
  EXPECT_EQ(poly.points.size(), 3u);
  EXPECT_EQ(poly.bulges, (std::vector<double>{0, 1, 0}));
  EXPECT_EQ(poly.sourceObjects, std::vector<OdDbHandle>{OdDbHandle(0xAB)});
  const HatchLoop& edges = h.loops[1];
  ASSERT_EQ(edges.edges.size(), 4u);
  EXPECT_EQ(edges.edges[0].type, HatchEdge::kLine);
  EXPECT_EQ(edges.edges[0].end, OdGePoint2d(1, 0));
  EXPECT_EQ(edges.edges[1].type, HatchEdge::kCircularArc);
  EXPECT_FALSE(edges.edges[1].counterClockwise);
  EXPECT_DOUBLE_EQ(edges.edges[1].endAngle, kPi / 2);
  EXPECT_EQ(edges.edges[2].type, HatchEdge::kEllipticArc);
  EXPECT_EQ(edges.edges[2].radius, 0.5);
  ASSERT_EQ(edges.edges[3].type, HatchEdge::kSpline);
  EXPECT_EQ(edges.edges[3].spline->knots.size(), 8u);
  EXPECT_EQ(edges.edges[3].spline->controlPoints.size(), 4u);
  EXPECT_DOUBLE_EQ(h.patternAngle, kPi / 4);
  EXPECT_EQ(h.patternScale, 2.0);
  ASSERT_EQ(h.patternLines.size(), 1u);
  EXPECT_EQ(h.patternLines[0].dashes, (std::vector<double>{0.125, -0.0625}));
  EXPECT_EQ(h.seedPoints, std::vector<OdGePoint2d>{OdGePoint2d(2, 2)});
  EXPECT_TRUE(h.gradient.enabled);
  EXPECT_EQ(h.gradient.name, "LINEAR");
  ASSERT_EQ(h.gradient.colors.size(), 2u);
  EXPECT_EQ(h.gradient.colors[1].first, 1.0);
  EXPECT_EQ(h.gradient.colors[1].second.rgb(), 0xFFFF00u);
}

TEST(DxfEntityReader, ReadsFacesImagesAndViewports) {
  OdDbDatabasePtr db = readDxfText(dxfWithEntities(
      {"0 SOLID", "10 0", "20 0", "11 1", "21 0", "12 0", "22 1", "13 1", "23 1", "0 3DFACE", "10 0", "20 0", "30 1",
       "11 1", "21 0", "31 1", "12 1", "22 1", "32 1", "13 0", "23 1", "33 1", "70 5", "0 IMAGE", "100 AcDbEntity",
       "100 AcDbRasterImage", "90 0", "10 1", "20 2", "11 0.01", "21 0", "12 0", "22 0.01", "13 640", "23 480",
       "340 9A", "70 7", "280 1", "281 60", "71 2", "91 3", "14 0", "24 0", "14 640", "24 0", "14 0", "24 480",
       "0 VIEWPORT", "100 AcDbEntity", "67 1", "100 AcDbViewport", "10 5", "20 5", "40 100", "41 50", "68 2", "69 2",
       "12 30", "22 40", "45 250", "341 10", "90 32800"}));
  const auto& entities = db->modelSpace()->entities;
  ASSERT_EQ(entities.size(), 3u);
  auto* solid = dbCast<SolidEntity>(entities[0]);
  ASSERT_TRUE(solid);
  EXPECT_EQ(solid->corners[3], OdGePoint3d(1, 1, 0));
  auto* face = dbCast<FaceEntity>(entities[1]);
  ASSERT_TRUE(face);
  EXPECT_EQ(face->invisibleEdges, 5);
  auto* image = dbCast<RasterImageEntity>(entities[2]);
  ASSERT_TRUE(image);
  EXPECT_EQ(image->imageSize, OdGePoint2d(640, 480));
  EXPECT_EQ(image->imageDefinition, OdDbHandle(0x9A));
  EXPECT_EQ(image->brightness, 60);
  EXPECT_EQ(image->clipBoundary.size(), 3u);
  ASSERT_EQ(db->paperSpace()->entities.size(), 1u);
  auto* viewport = dbCast<ViewportEntity>(db->paperSpace()->entities[0]);
  ASSERT_TRUE(viewport);
  EXPECT_EQ(viewport->viewCenter, OdGePoint2d(30, 40));
  EXPECT_EQ(viewport->viewHeight, 250.0);
  EXPECT_TRUE(viewport->isOn());
  ASSERT_EQ(viewport->frozenLayerHandles.size(), 1u);
  EXPECT_TRUE(viewport->frozenLayers.empty());  // no layer has that handle
}

TEST(DxfEntityReader, KeepsUnknownAndModelerEntitiesWhole) {
  OdDbDatabasePtr db = readDxfText(dxfWithEntities(
      {"0 ACME_WIDGET", "5 50", "100 AcDbEntity", "8 W", "100 AcmeWidget", "10 1", "20 2", "1 payload", "0 3DSOLID",
       "5 51", "100 AcDbEntity", "8 0", "100 AcDbModelerGeometry", "70 1", "1 ACIS line one", "3 continued"}));
  const auto& entities = db->modelSpace()->entities;
  ASSERT_EQ(entities.size(), 2u);
  auto* proxy = dbCast<ProxyEntity>(entities[0]);
  ASSERT_TRUE(proxy);
  EXPECT_EQ(proxy->dxfName, "ACME_WIDGET");
  EXPECT_EQ(proxy->layer->name, "W");
  ASSERT_EQ(proxy->data.size(), 4u);  // the subclass marker and its three groups
  EXPECT_EQ(proxy->data[3].text, "payload");
  EXPECT_EQ(db->loadReport().proxyEntities, 1u);
  auto* solid = dbCast<ModelerGeometryEntity>(entities[1]);
  ASSERT_TRUE(solid);
  EXPECT_EQ(solid->dxfName, "3DSOLID");
  EXPECT_EQ(solid->modelerVersion, 1);
  EXPECT_EQ(solid->data.back().text, "continued");
}

TEST(DxfEntityReader, ReadsRemainingKinds) {
  OdDbDatabasePtr db = readDxfText(dxfWithEntities(
      {"0 XLINE", "100 AcDbXline", "10 1", "20 1", "11 0", "21 1", "0 RAY", "100 AcDbRay", "10 2", "20 2", "11 1",
       "21 0", "0 ELLIPSE", "100 AcDbEllipse", "10 0", "20 0", "11 4", "21 0", "40 0.5", "41 0", "42 3.14",
       "0 LEADER", "100 AcDbLeader", "3 Standard", "71 1", "72 1", "76 2", "10 0", "20 0", "10 5", "20 5",
       "0 MLINE", "100 AcDbMline", "2 STANDARD", "40 2", "70 1", "71 3", "72 2", "73 2", "10 0", "20 0", "11 0",
       "21 0", "12 1", "22 0", "13 0", "23 1", "74 2", "41 0", "41 0", "75 0", "74 1", "41 0", "75 0", "11 5",
       "21 0", "12 1", "22 0", "13 0", "23 1", "74 1", "41 0", "75 0", "74 1", "41 0", "75 0",
       "0 OLE2FRAME", "100 AcDbOle2Frame", "70 2", "3 Paintbrush", "10 0", "20 5", "11 5", "21 0", "71 2", "90 4",
       "310 DEADBEEF", "1 OLE", "0 TOLERANCE", "100 AcDbFcf", "3 Standard", "10 1", "20 1", "1 {\\Fgdt;j}%%v0.1",
       "0 SHAPE", "100 AcDbShape", "10 1", "20 1", "40 2", "2 BOX", "0 PDFUNDERLAY", "100 AcDbUnderlayReference",
       "340 77", "10 1", "20 1", "41 2", "42 2", "43 1", "280 2", "11 0", "21 0", "11 9", "21 9"}));
  const auto& e = db->modelSpace()->entities;
  ASSERT_EQ(e.size(), 9u);
  EXPECT_EQ(dbCast<XLineEntity>(e[0])->direction, OdGeVector3d(0, 1, 0));
  EXPECT_EQ(dbCast<RayEntity>(e[1])->basePoint, OdGePoint3d(2, 2, 0));
  EXPECT_EQ(dbCast<EllipseEntity>(e[2])->endParam, 3.14);
  EXPECT_EQ(dbCast<LeaderEntity>(e[3])->vertices.size(), 2u);
  auto* mline = dbCast<MLineEntity>(e[4]);
  ASSERT_TRUE(mline);
  ASSERT_EQ(mline->vertices.size(), 2u);
  EXPECT_EQ(mline->vertices[0].elementParams.size(), 2u);
  EXPECT_EQ(mline->vertices[0].elementParams[0].size(), 2u);
  EXPECT_EQ(mline->vertices[1].position, OdGePoint3d(5, 0, 0));
  EXPECT_EQ(dbCast<Ole2FrameEntity>(e[5])->data, (std::vector<uint8_t>{0xDE, 0xAD, 0xBE, 0xEF}));
  EXPECT_EQ(dbCast<ToleranceEntity>(e[6])->text, "{\\Fgdt;j}%%v0.1");
  EXPECT_EQ(dbCast<ShapeEntity>(e[7])->name, "BOX");
  auto* underlay = dbCast<UnderlayEntity>(e[8]);
  ASSERT_TRUE(underlay);
  EXPECT_EQ(underlay->definition, OdDbHandle(0x77));
  EXPECT_EQ(underlay->clipBoundary.size(), 2u);
}

TEST(DxfEntityReader, ReadsSubdivisionMeshLists) {
  // Code 90 means face list items, edge ends or override data depending on the count before it.
  OdDbDatabasePtr db = readDxfText(dxfWithEntities(
      {"0 MESH", "100 AcDbEntity", "100 AcDbSubDMesh", "71 2", "72 0", "91 1", "92 3", "10 0", "20 0", "30 0",
       "10 1", "20 0", "30 0", "10 0", "20 1", "30 0", "93 4", "90 3", "90 0", "90 1", "90 2", "94 1", "90 0",
       "90 1", "95 1", "140 0.5", "90 7"}));
  const MeshEntity& m = onlyEntity<MeshEntity>(db);
  EXPECT_EQ(m.subdivisionLevel, 1);
  EXPECT_EQ(m.vertices.size(), 3u);
  EXPECT_EQ(m.faceList, (std::vector<int32_t>{3, 0, 1, 2}));
  ASSERT_EQ(m.edges.size(), 1u);
  EXPECT_EQ(m.edges[0], std::make_pair(0, 1));
  EXPECT_EQ(m.edgeCreases, std::vector<double>{0.5});
}

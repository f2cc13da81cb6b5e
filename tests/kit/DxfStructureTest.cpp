// Sections around the entities: header variables, symbol tables, block definitions, objects,
// and what loading completes or repairs (standard records, handles, layouts, circular blocks).
#include <gtest/gtest.h>

#include "tests/kit/DxfTestSupport.h"

namespace {

const std::vector<std::string> kHeader = {
    "0 SECTION", "2 HEADER", "9 $ACADVER", "1 AC1015", "9 $INSUNITS", "70 4", "9 $EXTMIN", "10 -1", "20 -2", "30 0",
    "9 $EXTMAX", "10 100", "20 50", "30 0", "9 $LTSCALE", "40 2.5", "9 $TILEMODE", "70 0", "9 $PDMODE", "70 35",
    "9 $CLAYER", "8 WALLS", "9 $HANDSEED", "5 FFF", "9 $CUSTOMVAR", "1 kept", "0 ENDSEC"};

const std::vector<std::string> kTables = {
    "0 SECTION", "2 TABLES",
    "0 TABLE", "2 LTYPE", "5 5", "70 2",
    "0 LTYPE", "5 14", "2 ByBlock", "70 0",
    "0 LTYPE", "5 20", "2 BORDER", "70 0", "3 Border", "72 65", "73 3", "40 1.5", "49 1", "74 0", "49 -0.25",
    "74 2", "75 0", "340 11", "46 0.1", "50 0", "44 -0.1", "45 -0.05", "9 X", "49 -0.25", "74 0",
    "0 ENDTAB",
    "0 TABLE", "2 LAYER", "5 2", "70 3",
    "0 LAYER", "5 10", "2 0", "70 0", "62 7", "6 Continuous",
    "0 LAYER", "5 21", "2 WALLS", "70 5", "62 -1", "6 BORDER", "370 50", "290 0",
    "1001 AcCmTransparency", "1071 33554483",
    "0 LAYER", "5 22", "2 NOTES", "70 2", "62 3", "420 65280", "6 Continuous",
    "0 ENDTAB",
    "0 TABLE", "2 STYLE", "5 3", "70 2",
    "0 STYLE", "5 11", "2 Standard", "70 0", "40 0", "41 1", "50 0", "71 0", "42 2.5", "3 txt", "4 bigfont.shx",
    "0 STYLE", "5 23", "2 ", "70 1", "3 ltypeshp.shx",
    "0 STYLE", "5 24", "2 Arial", "70 0", "3 arial.ttf", "1001 ACAD", "1000 Arial", "1071 34",
    "0 ENDTAB",
    "0 TABLE", "2 VIEW", "5 6", "70 1",
    "0 VIEW", "5 25", "2 FRONT", "70 0", "40 20", "10 5", "20 6", "41 30",
    "0 VIEW", "5 26", "2 SHEET", "70 1", "40 200", "41 300",
    "0 ENDTAB",
    "0 TABLE", "2 BLOCK_RECORD", "5 1", "70 3",
    "0 BLOCK_RECORD", "5 1F", "2 *Model_Space", "340 22",
    "0 BLOCK_RECORD", "5 1B", "2 *Paper_Space", "340 1E",
    "0 BLOCK_RECORD", "5 30", "2 DOOR", "70 4",
    "0 ENDTAB",
    "0 ENDSEC"};

std::vector<std::string> join(std::initializer_list<std::vector<std::string>> parts) {
  std::vector<std::string> all;
  for (const auto& p : parts) all.insert(all.end(), p.begin(), p.end());
  return all;
}

const std::vector<std::string> kEnd = {"0 EOF"};

}  // namespace

TEST(DxfStructure, ReadsTypedAndGenericHeaderVariables) {
  OdDbDatabasePtr db = readDxfText(dxfText(join({kHeader, kEnd})));
  const DatabaseHeader& h = db->header();
  EXPECT_EQ(h.acadVer, "AC1015");
  EXPECT_EQ(h.insUnits, 4);
  EXPECT_EQ(h.extMin, OdGePoint3d(-1, -2, 0));
  EXPECT_EQ(h.extMax, OdGePoint3d(100, 50, 0));
  EXPECT_EQ(h.ltScale, 2.5);
  EXPECT_FALSE(h.tileMode);
  EXPECT_FALSE(db->getTILEMODE());
  EXPECT_EQ(h.pdMode, 35);
  EXPECT_EQ(h.cLayer, "WALLS");
  const HeaderVariable* custom = h.find("$CUSTOMVAR");
  ASSERT_TRUE(custom);
  ASSERT_EQ(custom->values.size(), 1u);
  EXPECT_EQ(custom->values[0].text, "kept");
  // New handles start above HANDSEED and every handle in use.
  EXPECT_GE(h.handSeed.value(), 0xFFFu);
}

TEST(DxfStructure, ReadsSymbolTables) {
  OdDbDatabasePtr db = readDxfText(dxfText(join({kHeader, kTables, kEnd})));
  const LayerRecord* walls = db->layers().find("walls");
  ASSERT_TRUE(walls);
  EXPECT_EQ(walls->handle, OdDbHandle(0x21));
  EXPECT_TRUE(walls->isOff());     // negative colour
  EXPECT_TRUE(walls->isFrozen());  // flag 1
  EXPECT_TRUE(walls->isLocked());  // flag 4
  EXPECT_FALSE(walls->isPlottable());
  EXPECT_EQ(walls->color.colorIndex(), 1);
  EXPECT_EQ(walls->lineweight, 50);
  EXPECT_EQ(walls->transparency.alpha(), 51);
  ASSERT_TRUE(walls->linetype);
  EXPECT_EQ(walls->linetype->name, "BORDER");
  const LayerRecord* notes = db->layers().find("NOTES");
  ASSERT_TRUE(notes);
  EXPECT_FALSE(notes->isOff());
  EXPECT_TRUE(notes->isFrozenInNewViewports());
  EXPECT_EQ(notes->color.rgb(), 0x00FF00u);

  const LinetypeRecord* border = db->linetypes().find("BORDER");
  ASSERT_TRUE(border);
  ASSERT_EQ(border->dashes.size(), 3u);
  EXPECT_EQ(border->patternLength, 1.5);
  const LinetypeDash& text = border->dashes[1];
  EXPECT_EQ(text.length, -0.25);
  EXPECT_EQ(text.shapeFlags, LinetypeDash::kText);
  EXPECT_EQ(text.text, "X");
  EXPECT_EQ(text.styleHandle, OdDbHandle(0x11));
  EXPECT_EQ(text.scale, 0.1);
  EXPECT_EQ(text.offsetY, -0.05);

  const TextStyleRecord* standard = db->textStyles().find("STANDARD");
  ASSERT_TRUE(standard);
  EXPECT_EQ(standard->getFileName(), "txt");
  EXPECT_EQ(standard->getBigFontFileName(), "bigfont.shx");
  EXPECT_EQ(standard->lastHeight, 2.5);
  EXPECT_EQ(db->textStyles().find("Arial")->trueTypeFace, "Arial");
  // The nameless shape file record is kept: linetypes reach it by handle.
  EXPECT_TRUE(db->findAs<TextStyleRecord>(OdDbHandle(0x23)));

  ASSERT_EQ(db->views().size(), 2u);
  EXPECT_FALSE(db->views()[0]->isPaperspaceView());
  EXPECT_TRUE(db->views()[1]->isPaperspaceView());
  EXPECT_EQ(db->views()[0]->center, OdGePoint2d(5, 6));

  // Standard records a file left out are there all the same.
  EXPECT_TRUE(db->linetypeByLayer());
  EXPECT_TRUE(db->dimStyles().find("Standard"));
  EXPECT_TRUE(db->regApps().find("ACAD"));
}

TEST(DxfStructure, ReadsBlockDefinitionsIntoTheirRecords) {
  std::vector<std::string> blocks = {
      "0 SECTION", "2 BLOCKS",
      "0 BLOCK", "5 31", "330 30", "100 AcDbEntity", "8 0", "100 AcDbBlockBegin", "2 DOOR", "70 2", "10 1", "20 1",
      "30 0", "3 DOOR", "1 ", "0 LINE", "5 32", "8 0", "10 0", "20 0", "11 1", "21 1", "0 ATTDEF", "5 33", "8 0",
      "10 0", "20 0", "40 1", "1 ?", "3 Number?", "2 NUM", "70 0", "0 ENDBLK", "5 34", "8 0",
      // The owner says which record this nameless block belongs to.
      "0 BLOCK", "5 35", "330 1B", "100 AcDbEntity", "8 0", "100 AcDbBlockBegin", "70 0", "10 0", "20 0",
      "0 CIRCLE", "5 36", "10 0", "20 0", "40 1", "0 ENDBLK", "5 37",
      "0 ENDSEC"};
  OdDbDatabasePtr db = readDxfText(dxfText(join({kHeader, kTables, blocks, kEnd})));
  const BlockRecord* door = db->blocks().find("DOOR");
  ASSERT_TRUE(door);
  EXPECT_EQ(door->handle, OdDbHandle(0x30));
  EXPECT_EQ(door->insertUnits, 4);
  EXPECT_TRUE(door->hasDefinition);
  EXPECT_EQ(door->beginHandle, OdDbHandle(0x31));
  EXPECT_EQ(door->endHandle, OdDbHandle(0x34));
  EXPECT_EQ(door->basePoint, OdGePoint3d(1, 1, 0));
  EXPECT_EQ(door->blockFlags, BlockRecord::kHasAttributes);
  ASSERT_EQ(door->entities.size(), 2u);
  EXPECT_EQ(door->entities[1]->type, DbType::kAttributeDefinition);
  EXPECT_EQ(db->paperSpace()->entities.size(), 1u);
}

TEST(DxfStructure, GivesHandlesToObjectsWithoutOrWithTakenHandles) {
  OdDbDatabasePtr db = readDxfText(dxfWithEntities({"0 LINE", "5 10", "0 LINE", "5 10", "0 LINE", "0 LINE", "5 "}));
  const auto& entities = db->modelSpace()->entities;
  ASSERT_EQ(entities.size(), 4u);
  std::set<uint64_t> handles;
  for (const Entity* e : entities) {
    EXPECT_EQ(db->find(e->handle), e);
    handles.insert(e->handle.value());
  }
  EXPECT_EQ(handles.size(), 4u);
  EXPECT_EQ(entities[0]->handle, OdDbHandle(0x10));  // the first keeps its handle
  EXPECT_TRUE(entities[1]->objectFlags & DbObject::kHandleReassigned);
  EXPECT_GE(db->loadReport().reassignedHandles, 3u);
}

TEST(DxfStructure, AddsLayoutsToFilesWithoutThem) {
  OdDbDatabasePtr db = readDxfText(dxfWithEntities({"0 LINE", "67 1", "0 CIRCLE"}, "AC1009"));
  std::vector<Layout*> layouts = db->layouts();
  ASSERT_EQ(layouts.size(), 2u);
  EXPECT_EQ(layouts[0]->name, "Model");
  EXPECT_EQ(layouts[0]->block, db->modelSpace());
  EXPECT_EQ(layouts[1]->name, "Layout1");
  EXPECT_EQ(layouts[1]->block, db->paperSpace());
  EXPECT_EQ(db->paperSpace()->entities.size(), 1u);
  EXPECT_EQ(db->activeLayout(), layouts[0]);
  // The named objects dictionary lists them.
  Dictionary* layoutDictionary = dbCast<Dictionary>(db->findInDictionaries({"ACAD_LAYOUT"}));
  ASSERT_TRUE(layoutDictionary);
  EXPECT_EQ(layoutDictionary->entries.size(), 2u);
}

TEST(DxfStructure, ReadsLayoutsAndRepairsTheirLinks) {
  std::vector<std::string> objects = {
      "0 SECTION", "2 OBJECTS",
      "0 DICTIONARY", "5 C", "330 0", "100 AcDbDictionary", "3 ACAD_LAYOUT", "350 1A",
      "0 DICTIONARY", "5 1A", "330 C", "100 AcDbDictionary", "3 Model", "350 22", "3 Sheet B", "350 1E", "3 Sheet A",
      "350 40",
      "0 LAYOUT", "5 22", "330 1A", "100 AcDbPlotSettings", "1 ", "70 1024", "100 AcDbLayout", "1 Model", "70 1",
      "71 0", "330 1F",
      "0 LAYOUT", "5 1E", "330 1A", "100 AcDbPlotSettings", "1 setup", "2 printer.pc3", "44 420", "45 297",
      "100 AcDbLayout", "1 Sheet B", "70 1", "71 2", "10 0", "20 0", "11 420", "21 297", "330 1B",
      // Its block record does not exist.
      "0 LAYOUT", "5 40", "330 1A", "100 AcDbPlotSettings", "100 AcDbLayout", "1 Sheet A", "71 1", "330 99",
      "0 ENDSEC"};
  OdDbDatabasePtr db = readDxfText(dxfText(join({kHeader, kTables, objects, kEnd})));
  std::vector<Layout*> layouts = db->layouts();
  ASSERT_EQ(layouts.size(), 3u);
  EXPECT_EQ(layouts[0]->name, "Model");
  EXPECT_EQ(layouts[1]->name, "Sheet A");  // tab order, not file order
  EXPECT_EQ(layouts[2]->name, "Sheet B");
  EXPECT_EQ(layouts[2]->paperWidth, 420.0);
  EXPECT_EQ(layouts[2]->pageSetupName, "setup");
  EXPECT_EQ(layouts[2]->limMax, OdGePoint2d(420, 297));
  EXPECT_EQ(layouts[2]->block, db->paperSpace());
  ASSERT_TRUE(layouts[1]->block);  // a block was added for it
  EXPECT_TRUE(layouts[1]->block->isPaperSpace());
  EXPECT_EQ(layouts[1]->block->layout, layouts[1]->handle);
  // TILEMODE 0 makes the layout of *Paper_Space the active one.
  EXPECT_EQ(db->activeLayout(), layouts[2]);
  EXPECT_EQ(db->findLayout("sheet b"), layouts[2]);
}

TEST(DxfStructure, ReadsObjectsRenderersNeed) {
  std::vector<std::string> entities = {
      "0 SECTION", "2 ENTITIES", "0 INSERT", "5 50", "102 {ACAD_XDICTIONARY", "360 51", "102 }", "100 AcDbEntity",
      "8 0", "100 AcDbBlockReference", "2 DOOR", "10 0", "20 0", "0 ENDSEC"};
  std::vector<std::string> objects = {
      "0 SECTION", "2 OBJECTS", "0 DICTIONARY", "5 C", "330 0", "100 AcDbDictionary",
      "0 DICTIONARY", "5 51", "330 50", "100 AcDbDictionary", "280 1", "3 ACAD_FILTER", "360 52",
      "0 DICTIONARY", "5 52", "330 51", "100 AcDbDictionary", "3 SPATIAL", "360 53",
      "0 SPATIAL_FILTER", "5 53", "330 52", "100 AcDbFilter", "100 AcDbSpatialFilter", "70 2", "10 0", "20 0",
      "10 5", "20 4", "210 0", "220 0", "230 1", "11 0", "21 0", "31 0", "71 1", "72 1", "40 3", "73 0", "40 1",
      "40 0", "40 0", "40 -7", "40 0", "40 1", "40 0", "40 0", "40 0", "40 0", "40 1", "40 0", "40 1", "40 0",
      "40 0", "40 0", "40 0", "40 1", "40 0", "40 0", "40 0", "40 0", "40 1", "40 2",
      "0 IMAGEDEF", "5 60", "330 C", "100 AcDbRasterImageDef", "90 0", "1 ..\\img\\photo.png", "10 640", "20 480",
      "11 0.5", "21 0.5", "280 1", "281 5",
      "0 GROUP", "5 61", "330 C", "100 AcDbGroup", "300 doors", "70 0", "71 1", "340 50",
      "0 XRECORD", "5 62", "330 C", "100 AcDbXrecord", "280 1", "1 anything", "5 not a handle here", "40 2.5",
      "0 SORTENTSTABLE", "5 63", "330 C", "100 AcDbSortentsTable", "330 1F", "331 50", "5 70",
      "0 ACAD_PROXY_OBJECT", "5 64", "330 C", "100 AcDbProxyObject", "90 499",
      "0 ENDSEC"};
  OdDbDatabasePtr db = readDxfText(dxfText(join({kHeader, kTables, entities, objects, kEnd})));
  const auto* insert = firstModelEntity<BlockReferenceEntity>(*db);
  ASSERT_TRUE(insert);
  const SpatialFilterObject* clip = db->spatialFilterOf(*insert);
  ASSERT_TRUE(clip);
  EXPECT_EQ(clip->boundary.size(), 2u);
  EXPECT_TRUE(clip->frontClipEnabled);
  EXPECT_EQ(clip->frontClip, 3.0);
  EXPECT_EQ(clip->inverseInsertTransform.entry[0][3], -7.0);
  EXPECT_EQ(clip->clipTransform.entry[2][3], 2.0);
  auto* image = db->findAs<RasterImageDefObject>(OdDbHandle(0x60));
  ASSERT_TRUE(image);
  EXPECT_EQ(image->fileName, "..\\img\\photo.png");
  EXPECT_EQ(image->imageSize, OdGePoint2d(640, 480));
  auto* group = db->findAs<GroupObject>(OdDbHandle(0x61));
  ASSERT_TRUE(group);
  EXPECT_EQ(group->entities, std::vector<OdDbHandle>{OdDbHandle(0x50)});
  auto* xrecord = db->findAs<XRecordObject>(OdDbHandle(0x62));
  ASSERT_TRUE(xrecord);
  ASSERT_EQ(xrecord->values.size(), 3u);  // after the marker any group is data, 5 included
  EXPECT_EQ(xrecord->values[1].code, 5);
  auto* sort = db->findAs<SortEntsTableObject>(OdDbHandle(0x63));
  ASSERT_TRUE(sort);
  ASSERT_EQ(sort->entries.size(), 1u);
  EXPECT_EQ(sort->entries[0].second, OdDbHandle(0x70));
  EXPECT_EQ(db->loadReport().proxyObjects, 1u);
  EXPECT_EQ(db->namedObjectsDictionary()->handle, OdDbHandle(0xC));
}

TEST(DxfStructure, CutsCircularBlockReferences) {
  std::vector<std::string> blocks = {
      "0 SECTION", "2 BLOCKS",
      "0 BLOCK", "2 A", "70 0", "10 0", "20 0", "0 INSERT", "2 B", "10 0", "20 0", "0 LINE", "0 ENDBLK",
      "0 BLOCK", "2 B", "70 0", "10 0", "20 0", "0 INSERT", "2 A", "10 0", "20 0", "0 ENDBLK",
      "0 BLOCK", "2 SELF", "70 0", "10 0", "20 0", "0 INSERT", "2 SELF", "10 0", "20 0", "0 ENDBLK",
      "0 ENDSEC"};
  std::vector<std::string> entities = {"0 SECTION", "2 ENTITIES", "0 INSERT", "2 A", "0 INSERT", "2 SELF", "0 ENDSEC"};
  OdDbDatabasePtr db = readDxfText(dxfText(join({blocks, entities, kEnd})));
  // Whatever is kept, no block reaches itself any more.
  for (const char* name : {"A", "B", "SELF"}) {
    const BlockRecord* start = db->blocks().find(name);
    ASSERT_TRUE(start);
    std::vector<const BlockRecord*> stack{start};
    std::set<const BlockRecord*> seen;
    while (!stack.empty()) {
      const BlockRecord* b = stack.back();
      stack.pop_back();
      for (const Entity* e : b->entities) {
        if (auto* ref = dbCast<BlockReferenceEntity>(e)) {
          EXPECT_NE(ref->block, start) << name;
          if (seen.insert(ref->block).second) stack.push_back(ref->block);
        }
      }
    }
  }
  EXPECT_EQ(db->blocks().find("A")->entities.size(), 2u);  // A keeps its reference to B and the line
  EXPECT_EQ(db->modelSpace()->entities.size(), 2u);
}

TEST(DxfStructure, GivesHandlesWhenAFileUsedTheLargestOne) {
  // Fresh handles then come from below; many of them must not take quadratic time.
  std::vector<std::string> groups = {"0 LINE", "5 FFFFFFFFFFFFFFFF", "0 LINE", "5 1"};
  for (int i = 0; i < 20000; ++i) groups.push_back("0 POINT");
  OdDbDatabasePtr db = readDxfText(dxfWithEntities(groups, "AC1009"));
  const auto& e = db->modelSpace()->entities;
  ASSERT_EQ(e.size(), 20002u);
  std::set<uint64_t> handles;
  for (const Entity* entity : e) handles.insert(entity->handle.value());
  EXPECT_EQ(handles.size(), e.size());
  EXPECT_TRUE(handles.count(~uint64_t(0)));
}

// The entity rules applied before the kit draws an entity, on entities made by hand.
#include <ctime>

#include "RecordingDriver.h"
#include "kit/db/SymbolTables.h"
#include "vectorizer/EntityRules.h"
#include "vectorizer/FieldTexts.h"

namespace vectest {
namespace {

class EntityRulesTest : public VectorizerTest {
protected:
  EntityRulesTest() {
    roomLayer.name = "ROOMS";
    otherLayer.name = "WALLS";
    otherLayer.color = OdCmEntityColor::fromACI(3);
    otherLayer.lineweight = 35;
  }
  // Runs the rules; the entity the kit would draw is kept.
  bool Draw(const Entity& entity) {
    drawn = nullptr;
    return DrawWithEntityRules(input, entity, [this](const Entity& e) {
      drawn = &e;
      if (auto* text = dbCast<TextEntity>(&e)) drawnText = text->text, drawnPosition = text->position;
      if (auto* mtext = dbCast<MTextEntity>(&e)) drawnText = mtext->text, drawnPosition = mtext->position;
      inGroupWhileDrawn = g_pOutputDriver && static_cast<TRANS_BASE2*>(g_pOutputDriver)->IsInGroup();
    });
  }
  BlockReferenceEntity Reference(BlockRecord& block, LayerRecord& layer) {
    BlockReferenceEntity reference;
    reference.block = &block;
    reference.layer = &layer;
    return reference;
  }
  static AttributeEntity Attribute(const char* tag, const char* text) {
    AttributeEntity attribute;
    attribute.tag = tag;
    attribute.text = text;
    return attribute;
  }

  EntityRuleInput input;
  LayerRecord roomLayer, otherLayer;
  const Entity* drawn = nullptr;
  std::string drawnText;
  OdGePoint3d drawnPosition;
  bool inGroupWhileDrawn = false;
};

TEST_F(EntityRulesTest, RoomLabelBlockMakesTheLabelFromItsAttributes) {
  RecordingDriver& driver = UseDriver();
  driver.SetRoomLayers("ROOMS");
  BlockRecord block;
  block.name = "tads_mark_roomlabel";
  AttributeEntity floor = Attribute("1FL", "101"), use = Attribute("2SR", "Office"), number = Attribute("3NO", "7");
  BlockReferenceEntity reference = Reference(block, roomLayer);
  reference.attributes = {&floor, &use, &number};
  Draw(reference);
  EXPECT_EQ(g_EntityRuleState.pendingRoomLabel, "101_Office_7");
  reference.attributes = {&floor, &number};
  Draw(reference);
  EXPECT_EQ(g_EntityRuleState.pendingRoomLabel, "101__7");
  // The "1FL" attribute, drawn later, is captured; any other is not.
  Draw(use);
  EXPECT_EQ(g_EntityRuleState.roomLabelCapture, 0);
  Draw(floor);
  EXPECT_EQ(g_EntityRuleState.roomLabelCapture, 1);
  // On a layer without room labels no label is made.
  BlockReferenceEntity elsewhere = Reference(block, otherLayer);
  elsewhere.attributes = {&floor, &use, &number};
  Draw(elsewhere);
  EXPECT_EQ(g_EntityRuleState.pendingRoomLabel, "");
}

TEST_F(EntityRulesTest, ViewportBlocksSwallowTheirFrameAndCellsAreGroups) {
  RecordingDriver& driver = UseDriver();
  BlockRecord viewport, cell;
  viewport.name = "*Viewport7";
  cell.name = "AnonymusCell_3";
  Draw(Reference(viewport, otherLayer));
  EXPECT_EQ(g_EntityDrawState.skipNextFrame, 1);
  input.driverFlag = 1;
  Draw(Reference(cell, otherLayer));
  EXPECT_TRUE(inGroupWhileDrawn);
  EXPECT_FALSE(driver.IsInGroup());
  input.driverFlag = 0;
  Draw(Reference(cell, otherLayer));
  EXPECT_FALSE(inGroupWhileDrawn);
}

TEST_F(EntityRulesTest, LayerChangesReachTheDriverAndMarkTheColourDirty) {
  RecordingDriver& driver = UseDriver();
  LineEntity line;
  line.layer = &otherLayer;
  input.layer = &otherLayer;
  Draw(line);
  EXPECT_EQ(driver.GetCurrentLayerName(), OdString(L"WALLS"));
  EXPECT_EQ(g_EntityDrawState.colorDirty, 1);
  EXPECT_EQ(g_EntityDrawState.lineWidth, 35.0);
  EXPECT_EQ(g_EntityDrawState.widthIsGeometric, 0);
  // The same layer again: nothing is sent, the colour stays clean.
  line.lineweight = kLnWtByLwDefault;
  Draw(line);
  EXPECT_EQ(g_EntityDrawState.colorDirty, 0);
  EXPECT_EQ(g_EntityDrawState.lineWidth, 0.0);
}

TEST_F(EntityRulesTest, EntityKindsSetFillCircleAndWidth) {
  UseDriver();
  CircleEntity circle;
  circle.radius = 4.0;
  Draw(circle);
  EXPECT_EQ(g_EntityDrawState.circleCandidate, 1);
  EXPECT_EQ(g_EntityDrawState.circleRadius, 4.0);

  EllipseEntity ellipse;
  ellipse.majorAxis = {0, 3, 0};
  ellipse.radiusRatio = 0.5;
  Draw(ellipse);
  EXPECT_EQ(g_EntityDrawState.circleCandidate, 0);
  ellipse.radiusRatio = 1.0;
  Draw(ellipse);
  EXPECT_EQ(g_EntityDrawState.circleRadius, 3.0);

  LwPolylineEntity wide;
  wide.constantWidth = 0.5;
  Draw(wide);
  EXPECT_EQ(g_EntityDrawState.lineWidth, 0.5);
  EXPECT_EQ(g_EntityDrawState.widthIsGeometric, 1);
  // The width reaches the sink in output units, as the points do: here 40 units per drawing unit,
  // and a block scaled 2 by 8 draws it at their mean.
  input.blockToOutput = OdGeMatrix3d::scaling(40, 40, 1);
  Draw(wide);
  EXPECT_DOUBLE_EQ(g_EntityDrawState.lineWidth, 20.0);
  input.blockToOutput = OdGeMatrix3d::scaling(2, 8, 1);
  Draw(wide);
  EXPECT_DOUBLE_EQ(g_EntityDrawState.lineWidth, 2.0);
  input.blockToOutput = OdGeMatrix3d();

  // Per-vertex widths that agree on every segment are a constant width; varying ones are not.
  struct WidthCase {
    const char* what;
    std::vector<OdGePoint2d> widths;
    uint16_t flags;
    double width;
  };
  const WidthCase widthCases[] = {
      {"equal on both segments", {{0.4, 0.4}, {0.4, 0.4}, {0.9, 0.1}}, 0, 0.4},
      {"the closing segment differs", {{0.4, 0.4}, {0.4, 0.4}, {0.9, 0.1}}, LwPolylineEntity::kClosed, 0},
      {"tapering", {{0.4, 0.2}, {0.2, 0.0}, {0, 0}}, 0, 0},
  };
  for (const WidthCase& c : widthCases) {
    SCOPED_TRACE(c.what);
    LwPolylineEntity tapered;
    tapered.points = {{0, 0}, {5, 0}, {5, 5}};
    tapered.widths = c.widths;
    tapered.flags = c.flags;
    Draw(tapered);
    EXPECT_DOUBLE_EQ(g_EntityDrawState.lineWidth, c.width);
    EXPECT_EQ(g_EntityDrawState.widthIsGeometric, c.width > 0 ? 1 : 0);
  }
  PolylineEntity heavy;
  heavy.defaultStartWidth = heavy.defaultEndWidth = 0.3;
  heavy.vertices.resize(3);
  heavy.vertices[1].startWidth = heavy.vertices[1].endWidth = 0.3;
  Draw(heavy);
  EXPECT_DOUBLE_EQ(g_EntityDrawState.lineWidth, 0.3);
  heavy.vertices[0].endWidth = 1.0;
  Draw(heavy);
  EXPECT_EQ(g_EntityDrawState.widthIsGeometric, 0);

  HatchEntity hatch;
  hatch.solidFill = true;
  Draw(hatch);
  EXPECT_EQ(g_EntityDrawState.forceFill, 1);
  EXPECT_EQ(g_EntityDrawState.fillOn, 1);
  Draw(circle);
  EXPECT_EQ(g_EntityDrawState.forceFill, 0);
  EXPECT_EQ(g_EntityDrawState.fillOn, 0);

  MTextEntity mtext;
  mtext.text = "note";
  Draw(mtext);
  EXPECT_EQ(g_EntityDrawState.isBackgroundMask, 1);
  Draw(circle);
  EXPECT_EQ(g_EntityDrawState.isBackgroundMask, 0);
}

TEST_F(EntityRulesTest, PercentWatermarkIsPlacedInTheViewportsExtents) {
  UseDriver();
  g_EntityRuleState.currentViewportIndex = 0;
  g_ViewportExtents.AddBox({100, 50, 0}, {300, 150, 0});
  TextEntity text;
  text.text = std::string(kPercentMarker) + "DRAFT";
  text.position = {50, 25, 0};
  Draw(text);
  EXPECT_NE(drawn, &text);
  EXPECT_EQ(drawnText, "DRAFT");
  EXPECT_EQ(drawnPosition, OdGePoint3d(200, 75, 0));
}

TEST_F(EntityRulesTest, UnchangedTextsAreDrawnAsStored) {
  UseDriver();
  TextEntity text;
  text.text = "$$$a$$$";
  Draw(text);
  EXPECT_EQ(drawn, &text);
}

TEST_F(EntityRulesTest, AttributesWithParagraphBreaksAreDrawnAsMultiLineText) {
  UseDriver();
  AttributeEntity attribute = Attribute("NOTE", "first\\Psecond");
  attribute.height = 2.0;
  Draw(attribute);
  ASSERT_NE(drawn, nullptr);
  EXPECT_EQ(drawn->type, DbType::kMText);
  EXPECT_EQ(drawnText, "first\\Psecond");
}

TEST_F(EntityRulesTest, TopLevelEntitiesNameTheirHandleAndHyperlink) {
  RecordingDriver& driver = UseDriver();
  ObjectExtras extras;
  extras.hyperlinks.push_back({"http://plans/a.dwg", "Plan A", ""});
  LineEntity linked, plain;
  linked.handle = OdDbHandle(0x1BD);
  linked.extras = &extras;
  plain.handle = OdDbHandle(0x2A);
  Draw(linked);
  EXPECT_EQ(driver.GetCurrentHandle(), "1BD");
  EXPECT_EQ(driver.GetHyperlinkText(), OdString(L"http://plans/a.dwg"));
  // Inside a block the reference's handle and link stay.
  input.blockDepth = 1;
  Draw(plain);
  EXPECT_EQ(driver.GetCurrentHandle(), "1BD");
  input.blockDepth = 0;
  Draw(plain);
  EXPECT_EQ(driver.GetCurrentHandle(), "2A");
  EXPECT_TRUE(driver.GetHyperlinkText().isEmpty());
}

struct FieldCase {
  const char* name;
  const char* text;
  bool multiLine;
  const char* result;
};

TEST(FieldTexts, FieldsAreFilledFromClockNameAndVariables) {
  std::tm when{};
  when.tm_year = 120;
  when.tm_mon = 3;
  when.tm_mday = 2;
  when.tm_hour = 13;
  when.tm_min = 4;
  when.tm_sec = 5;
  g_WorkspaceVariables = {{"project", "Tower B"}, {"sytime", "%H.%M"}};
  const FieldCase cases[] = {
      {"date in a text", "$$$sysdate$$$", false, "02-Apr-2020"},
      {"date in a multi-line text keeps $b", "$$$sysdate$$$", true, "02-$b-2020"},
      {"time by variable", "%%%sytime%%%", false, "13.04"},
      {"time by default", "$$$systime$$$", true, "02-$h-2020  13:04:05"},
      {"user without variable", "%%%username%%%", false, "Vistrel"},
      {"drawing name", "$$$dwgspec$$$", false, "plan.dwg"},
      {"variable", "$$$project%%%", false, "Tower B"},
      {"no such variable", "$$$a$$$", false, "$$$a$$$"},
      {"six signs are no field", "$$$$$$", false, "$$$$$$"},
      {"not framed", "$$$sysdate", false, "$$$sysdate"},
  };
  for (const FieldCase& c : cases) {
    SCOPED_TRACE(c.name);
    std::string text = c.text;
    RewriteFieldText(text, c.multiLine, "plan.dwg", when);
    EXPECT_EQ(text, c.result);
  }
  g_WorkspaceVariables.clear();
  EXPECT_EQ(OriginHyperlinkDescription("a.b.dwg"), "This drawing is originated from drawing a%2Eb%2Edwg");
}

}  // namespace
}  // namespace vectest

// Text entities: TEXT, ATTRIB, ATTDEF and MTEXT (also the multi-line text of R2018 attributes),
// and SHAPE, a character of a shape file.
#include "kit/db/MTextExtendedData.h"
#include "kit/dwg/DwgEntityReaders.h"
#include "kit/dwg/DwgLoader.h"

namespace {

void readTextData(DwgObjectContext& c, TextData& t) {
  DwgBitReader& d = c.d;
  if (c.before(kDwgR2000)) {
    double elevation = d.BD();
    OdGePoint2d insertion = d.point2RD();
    OdGePoint2d alignment = d.point2RD();
    t.position = {insertion.x, insertion.y, elevation};
    t.alignmentPoint = {alignment.x, alignment.y, elevation};
    t.normal = d.vector3BD();
    t.thickness = d.BD();
    t.oblique = d.BD();
    t.rotation = d.BD();
    t.height = d.BD();
    t.widthFactor = d.BD();
    t.text = c.s.text();
    t.generationFlags = d.BS();
    t.horizontalMode = d.BS();
    t.verticalMode = d.BS();
    t.hasAlignmentPoint = t.horizontalMode != 0 || t.verticalMode != 0;
    return;
  }
  uint8_t flags = d.RC();
  double elevation = (flags & 0x01) ? 0.0 : d.RD();
  OdGePoint2d insertion = d.point2RD();
  t.position = {insertion.x, insertion.y, elevation};
  if (!(flags & 0x02)) {
    OdGePoint2d alignment = d.point2DD(insertion);
    t.alignmentPoint = {alignment.x, alignment.y, elevation};
  }
  t.normal = c.s.extrusion();
  t.thickness = c.s.thickness();
  if (!(flags & 0x04)) t.oblique = d.RD();
  if (!(flags & 0x08)) t.rotation = d.RD();
  t.height = d.RD();
  if (!(flags & 0x10)) t.widthFactor = d.RD();
  t.text = c.s.text();
  if (!(flags & 0x20)) t.generationFlags = d.BS();
  if (!(flags & 0x40)) t.horizontalMode = d.BS();
  if (!(flags & 0x80)) t.verticalMode = d.BS();
  // Writers keep an alignment point for left-aligned text too; it means nothing there.
  t.hasAlignmentPoint = !(flags & 0x02) && (t.horizontalMode != 0 || t.verticalMode != 0);
}

void readMTextData(DwgObjectContext& c, MTextData& m, OdDbHandle* styleHandle);

// What ATTRIB and ATTDEF add: R2018 multi-line attributes carry a whole MTEXT.
void readAttributeData(DwgObjectContext& c, AttributeData& a, TextData& t) {
  DwgBitReader& d = c.d;
  if (c.atLeast(kDwgR2010)) d.RC();  // version
  int kind = 1;
  if (c.atLeast(kDwgR2018)) kind = d.RC();
  if (kind == 2 || kind == 4) {
    a.multiline = std::make_unique<MTextData>();
    skipDwgEmbeddedEntityCommon(c.s);
    OdDbHandle style;
    readMTextData(c, *a.multiline, &style);
    int annotationBytes = d.BS();
    if (annotationBytes > 0) {
      d.skip(size_t(annotationBytes) * 8);
      c.s.handle();
      d.BS();
    }
    a.tag = c.s.text();
    d.BS();
    a.attributeFlags = d.RC();
    a.lockPosition = d.B();
    t.text = a.multiline->text;
    return;
  }
  a.tag = c.s.text();
  a.fieldLength = d.BS();
  a.attributeFlags = d.RC();
  if (c.atLeast(kDwgR2007)) a.lockPosition = d.B();
}

void readMTextData(DwgObjectContext& c, MTextData& m, OdDbHandle* styleHandle) {
  DwgBitReader& d = c.d;
  m.position = d.point3BD();
  m.normal = d.vector3BD();
  m.xDirection = d.vector3BD();
  m.referenceWidth = d.BD();
  if (c.atLeast(kDwgR2007)) m.definedHeight = d.BD();
  m.height = d.BD();
  m.attachment = d.BS();
  m.flowDirection = d.BS();
  d.BD();  // extents height
  d.BD();  // extents width
  m.text = c.s.text();
  if (styleHandle) *styleHandle = c.s.handle();
  if (c.atLeast(kDwgR2000)) {
    m.lineSpacingStyle = d.BS();
    m.lineSpacingFactor = d.BD();
    d.B();
  }
  if (c.atLeast(kDwgR2004)) {
    m.backgroundFlags = d.BL();
    bool background = (m.backgroundFlags & 1) || (c.atLeast(kDwgR2018) && (m.backgroundFlags & 0x10));
    if (background) {
      m.backgroundScale = d.BD();
      m.backgroundColor = c.s.color().color;
      m.backgroundTransparency = OdCmTransparency::fromRaw(uint32_t(d.BL()));
    }
  }
  // R2018: a set bit says the text is not annotative and its own values follow (columns).
  if (c.atLeast(kDwgR2018) && d.B()) {
    d.BS();  // version
    d.B();   // default flag
    c.s.handle();
    d.BL();  // attachment
    d.vector3BD();
    d.point3BD();
    d.BD();
    d.BD();
    d.BD();
    d.BD();
    m.columnType = d.BS();
    if (m.columnType != 0) {
      int32_t count = d.BL();
      m.columnCount = int16_t(count);
      m.columnWidth = d.BD();
      m.columnGutter = d.BD();
      m.columnAutoHeight = d.B();
      m.columnFlowReversed = d.B();
      if (!m.columnAutoHeight && m.columnType == 2) {
        uint32_t n = c.boundedCount(count, 2);
        for (uint32_t i = 0; i < n; ++i) m.columnHeights.push_back(d.BD());
      }
    }
  }
}

}  // namespace

void readDwgText(DwgObjectContext& c) {
  auto* e = c.newEntity<TextEntity>();
  readTextData(c, *e);
  e->style = c.textStyle(c.s.handle());
}

void readDwgAttribute(DwgObjectContext& c) {
  auto* e = c.newEntity<AttributeEntity>();
  readTextData(c, *e);
  readAttributeData(c, *e, *e);
  e->style = c.textStyle(c.s.handle());
}

void readDwgAttributeDefinition(DwgObjectContext& c) {
  auto* e = c.newEntity<AttributeDefinitionEntity>();
  readTextData(c, *e);
  readAttributeData(c, *e, *e);
  if (c.atLeast(kDwgR2010)) c.d.RC();  // version
  e->prompt = c.s.text();
  e->style = c.textStyle(c.s.handle());
}

void readDwgMText(DwgObjectContext& c) {
  auto* e = c.newEntity<MTextEntity>();
  OdDbHandle style;
  readMTextData(c, *e, &style);
  e->style = c.textStyle(style);
  applyMTextExtendedData(*e, *e);
}

void readDwgShape(DwgObjectContext& c) {
  auto* e = c.newEntity<ShapeEntity>();
  DwgBitReader& d = c.d;
  e->position = d.point3BD();
  e->size = d.BD();
  e->rotation = d.BD();
  e->widthFactor = d.BD();
  e->oblique = d.BD();
  e->thickness = d.BD();
  e->number = int16_t(d.BS());
  e->normal = d.vector3BD();
  e->style = c.textStyle(c.s.handle());
}

// Text entities: TEXT, MTEXT, ATTRIB, ATTDEF (with the embedded multi-line text of R2018
// attributes), SHAPE, TOLERANCE.
#include "kit/dxf/DxfWriterEntities.h"

namespace {

// The AcDbText groups; vertical alignment is left to the callers (73 for TEXT, 74 for
// attributes).
void writeTextGroups(DxfWriterContext& c, const TextData& t) {
  c.out.raw(100, "AcDbText");
  writeThickness(c, t.thickness);
  c.out.point(10, t.position);
  c.out.real(40, t.height);
  c.out.text(1, t.text);
  if (t.rotation != 0.0) c.out.angle(50, t.rotation);
  if (t.widthFactor != 1.0) c.out.real(41, t.widthFactor);
  if (t.oblique != 0.0) c.out.angle(51, t.oblique);
  c.out.text(7, recordName(t.style, "Standard"));
  if (t.generationFlags != 0) c.out.integer(71, t.generationFlags);
  if (t.horizontalMode != 0) c.out.integer(72, t.horizontalMode);
  if (t.hasAlignmentPoint) c.out.point(11, t.alignmentPoint);
  writeNormal(c, t.normal);
}

// MTEXT text in pieces of at most 250 bytes (3 groups, then the last piece as 1), cut between
// characters.
void writeMTextContents(DxfWriterContext& c, const std::string& text) {
  constexpr size_t kPiece = 250;
  size_t start = 0;
  while (text.size() - start > kPiece) {
    size_t end = start + kPiece;
    while (end > start && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
    if (end == start) end = start + kPiece;
    c.out.text(3, std::string_view(text).substr(start, end - start));
    start = end;
  }
  c.out.text(1, std::string_view(text).substr(start));
}

bool hasColumnExtendedData(const DbObject& object) {
  const XDataGroup* acad = object.xdata("ACAD");
  if (!acad) return false;
  for (const TaggedValue& v : acad->values) {
    if (v.code == 1000 && v.text == "ACAD_MTEXT_COLUMN_INFO_BEGIN") return true;
  }
  return false;
}

void writeMTextGroups(DxfWriterContext& c, const MTextData& m, bool columnsInExtendedData) {
  c.out.point(10, m.position);
  c.out.real(40, m.height);
  c.out.real(41, m.referenceWidth);
  if (m.definedHeight != 0.0) c.out.real(46, m.definedHeight);
  c.out.integer(71, m.attachment);
  c.out.integer(72, m.flowDirection);
  writeMTextContents(c, m.text);
  c.out.text(7, recordName(m.style, "Standard"));
  writeNormal(c, m.normal);
  if (!m.xDirection.isZeroLength(0.0)) c.out.point(11, m.xDirection);
  // A rotation must come before any column group: after one, 50 is a column height.
  if (m.rotation != 0.0) c.out.angle(50, m.rotation);
  c.out.integer(73, m.lineSpacingStyle);
  c.out.real(44, m.lineSpacingFactor);
  if (m.backgroundFlags != 0) {
    c.out.integer(90, m.backgroundFlags);
    if (m.backgroundColor.isByACI()) c.out.integer(63, m.backgroundColor.colorIndex());
    if (m.backgroundColor.isByColor()) c.out.integer(421, int64_t(m.backgroundColor.rgb()));
    c.out.real(45, m.backgroundScale);
    c.out.integer(441, int64_t(m.backgroundTransparency.raw()));
  }
  if (m.columnType != 0 && !columnsInExtendedData) {
    c.out.integer(75, m.columnType);
    c.out.integer(76, m.columnCount);
    c.out.boolean(78, m.columnFlowReversed);
    c.out.boolean(79, m.columnAutoHeight);
    c.out.real(48, m.columnWidth);
    c.out.real(49, m.columnGutter);
    for (double h : m.columnHeights) c.out.real(50, h);
  }
}

// The AcDbAttribute / AcDbAttributeDefinition part after the text groups.
template <class A>
void writeAttributeGroups(DxfWriterContext& c, const A& a, const char* subclass) {
  c.out.raw(100, subclass);
  if (c.atLeast(1024)) c.out.integer(280, 0);  // the attribute's format version
  if constexpr (requires { a.prompt; }) c.out.text(3, a.prompt);
  c.out.text(2, a.tag);
  c.out.integer(70, a.attributeFlags);
  if (a.fieldLength != 0) c.out.integer(73, a.fieldLength);
  if (a.verticalMode != 0) c.out.integer(74, a.verticalMode);
  if (c.atLeast(1024) && a.lockPosition) c.out.integer(280, 1);
  // Multi-line attributes exist from R2018 on; earlier files keep their single-line text.
  if (a.multiline && c.atLeast(1032)) {
    c.out.raw(101, "Embedded Object");
    writeMTextGroups(c, *a.multiline, false);
  }
}

}  // namespace

void writeText(DxfWriterContext& c, const TextEntity& e) {
  c.entityStart("TEXT", e);
  writeTextGroups(c, e);
  c.out.raw(100, "AcDbText");
  if (e.verticalMode != 0) c.out.integer(73, e.verticalMode);
  c.entityEnd(e);
}

void writeMText(DxfWriterContext& c, const MTextEntity& e) {
  c.entityStart("MTEXT", e);
  c.out.raw(100, "AcDbMText");
  writeMTextGroups(c, e, hasColumnExtendedData(e));
  c.entityEnd(e);
}

void writeAttribute(DxfWriterContext& c, const AttributeEntity& e) {
  c.entityStart("ATTRIB", e);
  writeTextGroups(c, e);
  writeAttributeGroups(c, e, "AcDbAttribute");
  c.entityEnd(e);
}

void writeAttributeDefinition(DxfWriterContext& c, const AttributeDefinitionEntity& e) {
  c.entityStart("ATTDEF", e);
  writeTextGroups(c, e);
  writeAttributeGroups(c, e, "AcDbAttributeDefinition");
  c.entityEnd(e);
}

void writeShape(DxfWriterContext& c, const ShapeEntity& e) {
  c.entityStart("SHAPE", e);
  c.out.raw(100, "AcDbShape");
  writeThickness(c, e.thickness);
  c.out.point(10, e.position);
  c.out.real(40, e.size);
  c.out.text(2, e.name);
  if (e.rotation != 0.0) c.out.angle(50, e.rotation);
  if (e.widthFactor != 1.0) c.out.real(41, e.widthFactor);
  if (e.oblique != 0.0) c.out.angle(51, e.oblique);
  writeNormal(c, e.normal);
  c.entityEnd(e);
}

void writeTolerance(DxfWriterContext& c, const ToleranceEntity& e) {
  c.entityStart("TOLERANCE", e);
  c.out.raw(100, "AcDbFcf");
  c.out.text(3, recordName(e.style, "Standard"));
  c.out.point(10, e.position);
  c.out.text(1, e.text);
  writeNormal(c, e.normal);
  c.out.point(11, e.direction);
  c.entityEnd(e);
}

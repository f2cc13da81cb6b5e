// Text entities: TEXT, MTEXT, ATTRIB, ATTDEF (with the embedded multi-line text of R2018
// attributes), SHAPE, TOLERANCE.
#include "kit/db/MTextExtendedData.h"
#include "kit/dxf/DxfEntityGroups.h"

namespace {

// Groups of single-line text (AcDbText). Vertical alignment is 73 for TEXT but 74 for ATTRIB and
// ATTDEF, whose 73 is the field length: the callers handle those two codes.
bool takeTextGroup(DxfLoader& in, int code, TextData& t) {
  switch (code) {
    case 1: t.text = in.text(); return true;
    case 10: case 20: case 30: in.coordinate(t.position, 10); return true;
    case 11: case 21: case 31:
      in.coordinate(t.alignmentPoint, 11);
      t.hasAlignmentPoint = true;
      return true;
    case 39: t.thickness = in.real(); return true;
    case 40: t.height = in.real(); return true;
    case 41: t.widthFactor = in.real(); return true;
    case 50: t.rotation = in.angle(); return true;
    case 51: t.oblique = in.angle(); return true;
    case 7: t.style = in.textStyleFromTag(); return true;
    case 71: t.generationFlags = in.int16(); return true;
    case 72: t.horizontalMode = in.int16(); return true;
    case 210: case 220: case 230: in.coordinate(t.normal, 210); return true;
    default: return false;
  }
}

// Groups of AcDbMText. Column heights share code 50 with the rotation: after a column type
// (75) they are heights.
bool takeMTextGroup(DxfLoader& in, int code, MTextData& m, bool& inColumns) {
  switch (code) {
    case 1:
    case 3: {
      std::string part = in.text();
      m.text += part;
      return true;
    }
    case 10: case 20: case 30: in.coordinate(m.position, 10); return true;
    case 11: case 21: case 31: in.coordinate(m.xDirection, 11); return true;
    case 210: case 220: case 230: in.coordinate(m.normal, 210); return true;
    case 40: m.height = in.real(); return true;
    case 41: m.referenceWidth = in.real(); return true;
    case 46: m.definedHeight = in.real(); return true;
    case 42: case 43: return true;  // extents as last drawn
    case 71: m.attachment = in.int16(); return true;
    case 72: m.flowDirection = in.int16(); return true;
    case 7: m.style = in.textStyleFromTag(); return true;
    case 73: m.lineSpacingStyle = in.int16(); return true;
    case 44: m.lineSpacingFactor = in.real(); return true;
    case 90: m.backgroundFlags = in.int32(); return true;
    case 63: m.backgroundColor = OdCmEntityColor::fromACI(in.int16()); return true;
    case 421: m.backgroundColor = OdCmEntityColor::fromPackedRGB(uint32_t(in.int32())); return true;
    case 431: return true;
    case 45: m.backgroundScale = in.real(); return true;
    case 441: m.backgroundTransparency = OdCmTransparency::fromRaw(uint32_t(in.int32())); return true;
    case 75:
      m.columnType = in.int16();
      inColumns = true;
      return true;
    case 76: m.columnCount = in.int16(); return true;
    case 78: m.columnFlowReversed = in.boolean(); return true;
    case 79: m.columnAutoHeight = in.boolean(); return true;
    case 48: m.columnWidth = in.real(); return true;
    case 49: m.columnGutter = in.real(); return true;
    case 50:
      if (inColumns) m.columnHeights.push_back(in.real());
      else m.rotation = in.angle();
      return true;
    default: return false;
  }
}

// The "101 Embedded Object" part of R2018 MTEXT: column layout and the frame geometry.
bool takeEmbeddedColumnGroup(DxfLoader& in, int code, MTextData& m) {
  switch (code) {
    case 70: return true;
    case 10: case 20: case 30: in.coordinate(m.xDirection, 10); return true;
    case 11: case 21: case 31: in.coordinate(m.position, 11); return true;
    case 40: m.referenceWidth = in.real(); return true;
    case 41: m.definedHeight = in.real(); return true;
    case 42: case 43: return true;
    case 71: m.columnType = in.int16(); return true;
    case 72: m.columnCount = in.int16(); return true;
    case 44: m.columnWidth = in.real(); return true;
    case 45: m.columnGutter = in.real(); return true;
    case 73: m.columnAutoHeight = in.boolean(); return true;
    case 74: m.columnFlowReversed = in.boolean(); return true;
    case 46: m.columnHeights.push_back(in.real()); return true;
    default: return false;
  }
}

void defaultStyle(DxfLoader& in, TextData& t) {
  if (!t.style) t.style = in.standardTextStyle();
}

// ATTRIB and ATTDEF: AcDbText, then their own subclass, then (R2018 multi-line attributes) an
// xrecord part we skip and the embedded MTEXT.
template <class E>
void readAttributeGroups(DxfLoader& in, E& e) {
  enum class Part { kText, kAttribute, kXrecord, kEmbedded } part = Part::kText;
  bool inColumns = false;
  readEntityGroups(in, e, [&](int code) {
    if (code == 100) {
      if (in.subclass == "AcDbAttribute" || in.subclass == "AcDbAttributeDefinition") part = Part::kAttribute;
      else if (in.subclass == "AcDbXrecord") part = Part::kXrecord;
      return true;
    }
    if (code == 101) {
      part = Part::kEmbedded;
      e.multiline = std::make_unique<MTextData>();
      return true;
    }
    if (part == Part::kXrecord) return code != 8 && code != 62 && code != 6;
    if (part == Part::kEmbedded) return takeMTextGroup(in, code, *e.multiline, inColumns);
    switch (code) {
      case 2: e.tag = in.text(); return true;
      case 3:
        if constexpr (requires { e.prompt; }) e.prompt = in.text();
        return true;
      case 70: e.attributeFlags = in.int16(); return true;
      case 73: e.fieldLength = in.int16(); return true;
      case 74: e.verticalMode = in.int16(); return true;
      case 280:
        // The first 280 of the subclass is its version; after the tag it locks the position.
        if (!e.tag.empty()) e.lockPosition = in.boolean();
        return true;
      default: return takeTextGroup(in, code, e);
    }
  });
  defaultStyle(in, e);
  if (e.multiline && !e.multiline->style) e.multiline->style = e.style;
}

}  // namespace

Entity* readTextEntity(DxfLoader& in) {
  auto* e = in.newEntity<TextEntity>();
  readEntityGroups(in, *e, [&](int code) {
    if (code == 73) {
      e->verticalMode = in.int16();
      return true;
    }
    return takeTextGroup(in, code, *e);
  });
  defaultStyle(in, *e);
  return in.finish(e);
}

Entity* readMTextEntity(DxfLoader& in) {
  auto* e = in.newEntity<MTextEntity>();
  bool inColumns = false;
  bool embedded = false;
  readEntityGroups(in, *e, [&](int code) {
    if (code == 101) {
      embedded = true;
      return true;
    }
    if (embedded) return takeEmbeddedColumnGroup(in, code, *e);
    return takeMTextGroup(in, code, *e, inColumns);
  });
  if (!e->style) e->style = in.standardTextStyle();
  applyMTextExtendedData(*e, *e);
  return in.finish(e);
}

Entity* readAttributeEntity(DxfLoader& in) {
  auto* e = in.newEntity<AttributeEntity>();
  readAttributeGroups(in, *e);
  return in.finish(e);
}

Entity* readAttributeDefinitionEntity(DxfLoader& in) {
  auto* e = in.newEntity<AttributeDefinitionEntity>();
  readAttributeGroups(in, *e);
  return in.finish(e);
}

Entity* readShapeEntity(DxfLoader& in) {
  auto* e = in.newEntity<ShapeEntity>();
  readEntityGroups(in, *e, [&](int code) {
    switch (code) {
      case 2: e->name = in.text(); return true;
      case 10: case 20: case 30: in.coordinate(e->position, 10); return true;
      case 40: e->size = in.real(); return true;
      case 50: e->rotation = in.angle(); return true;
      case 41: e->widthFactor = in.real(); return true;
      case 51: e->oblique = in.angle(); return true;
      case 39: e->thickness = in.real(); return true;
      case 210: case 220: case 230: in.coordinate(e->normal, 210); return true;
      default: return false;
    }
  });
  return in.finish(e);
}

Entity* readToleranceEntity(DxfLoader& in) {
  auto* e = in.newEntity<ToleranceEntity>();
  readEntityGroups(in, *e, [&](int code) {
    switch (code) {
      case 3: e->style = in.dimStyleFromTag(); return true;
      case 1: e->text = in.text(); return true;
      case 10: case 20: case 30: in.coordinate(e->position, 10); return true;
      case 11: case 21: case 31: in.coordinate(e->direction, 11); return true;
      case 210: case 220: case 230: in.coordinate(e->normal, 210); return true;
      default: return false;
    }
  });
  if (!e->style) e->style = in.standardDimStyle();
  return in.finish(e);
}

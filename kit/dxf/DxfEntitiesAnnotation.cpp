// Block references and annotation: INSERT with its attributes, DIMENSION (all kinds),
// LEADER, MULTILEADER, ACAD_TABLE.
#include "kit/dxf/DxfEntityGroups.h"

namespace {

OdCmEntityColor packedColor(DxfLoader& in) { return OdCmEntityColor::fromPacked(uint32_t(in.int32())); }

}  // namespace

Entity* readBlockReferenceEntity(DxfLoader& in) {
  auto* e = in.newEntity<BlockReferenceEntity>();
  bool attributesFollow = false;
  readEntityGroups(in, *e, [&](int code) {
    switch (code) {
      case 66: attributesFollow = in.boolean(); return true;
      case 2: e->block = in.blockFromTag(); return true;
      case 10: case 20: case 30: in.coordinate(e->position, 10); return true;
      case 41: e->scale.x = in.real(); return true;
      case 42: e->scale.y = in.real(); return true;
      case 43: e->scale.z = in.real(); return true;
      case 50: e->rotation = in.angle(); return true;
      case 70: e->columnCount = in.int16(); return true;
      case 71: e->rowCount = in.int16(); return true;
      case 44: e->columnSpacing = in.real(); return true;
      case 45: e->rowSpacing = in.real(); return true;
      case 210: case 220: case 230: in.coordinate(e->normal, 210); return true;
      default: return false;
    }
  });
  // Attributes follow when flagged, and some writers forget the flag.
  bool hadAttributes = false;
  while (in.next()) {
    if (in.tag.code != 0 || in.tag.trimmed() != "ATTRIB") {
      in.pushBack();
      break;
    }
    auto* attribute = static_cast<AttributeEntity*>(readAttributeEntity(in));
    attribute->ownerHandle = e->handle;
    e->attributes.push_back(attribute);
    hadAttributes = true;
  }
  if (attributesFollow || hadAttributes) e->seqendHandle = readSequenceEnd(in);
  if (!e->block) {
    in.warn("block reference without a block name dropped (" + in.where() + ")");
    return nullptr;
  }
  return in.finish(e);
}

Entity* readDimensionEntity(DxfLoader& in) {
  auto* e = in.newEntity<DimensionEntity>();
  std::string_view dxfName = in.tag.trimmed();
  bool arcLength = dxfName == "ARC_DIMENSION";
  bool radialLarge = dxfName == "LARGE_RADIAL_DIMENSION";
  int16_t typeFlags = 0;
  readEntityGroups(in, *e, [&](int code) {
    bool arcPart = in.subclass == "AcDbArcDimension";
    if (arcPart) {
      switch (code) {
        case 40: e->arcStartParam = in.real(); return true;
        case 41: e->arcEndParam = in.real(); return true;
        case 70: e->arcPartial = in.boolean(); return true;
        case 71: e->arcHasLeader = in.boolean(); return true;
        default: break;
      }
    }
    switch (code) {
      case 280: return true;  // version
      case 2: e->block = in.blockFromTag(); return true;
      case 3: e->style = in.dimStyleFromTag(); return true;
      case 1: e->text = in.text(); return true;
      case 70: typeFlags = in.int16(); return true;
      case 71: e->attachment = in.int16(); return true;
      case 72: e->lineSpacingStyle = in.int16(); return true;
      case 41: e->lineSpacingFactor = in.real(); return true;
      case 42:
        e->actualMeasurement = in.real();
        e->hasActualMeasurement = true;
        return true;
      case 53: e->textRotation = in.angle(); return true;
      case 51: e->horizontalDirection = in.angle(); return true;
      case 50: e->rotation = in.angle(); return true;
      case 52: e->obliqueAngle = in.angle(); return true;
      case 40: e->leaderLength = in.real(); return true;
      case 73: case 74: case 75: return true;
      case 10: case 20: case 30: in.coordinate(e->definitionPoint, 10); return true;
      case 11: case 21: case 31: in.coordinate(e->textMidpoint, 11); return true;
      case 12: case 22: case 32: in.coordinate(e->cloneInsertion, 12); return true;
      case 13: case 23: case 33: in.coordinate(e->defPoint2, 13); return true;
      case 14: case 24: case 34: in.coordinate(e->defPoint3, 14); return true;
      case 15: case 25: case 35: in.coordinate(e->defPoint4, 15); return true;
      case 16: case 26: case 36: in.coordinate(e->arcPoint, 16); return true;
      case 17: case 27: case 37: in.coordinate(e->leaderEnd, 17); return true;
      case 210: case 220: case 230: in.coordinate(e->normal, 210); return true;
      default: return false;
    }
  });
  int kind = typeFlags & 0x0F;
  e->dimensionFlags = int16_t(typeFlags & ~0x0F);
  if (arcLength) e->kind = DimensionEntity::Kind::kArcLength;
  else if (radialLarge) e->kind = DimensionEntity::Kind::kRadialLarge;
  else if (kind <= 6) e->kind = DimensionEntity::Kind(kind);
  if (!e->style) e->style = in.standardDimStyle();
  return in.finish(e);
}

Entity* readLeaderEntity(DxfLoader& in) {
  auto* e = in.newEntity<LeaderEntity>();
  readEntityGroups(in, *e, [&](int code) {
    switch (code) {
      case 3: e->style = in.dimStyleFromTag(); return true;
      case 71: e->hasArrowhead = in.boolean(); return true;
      case 72: e->pathType = in.int16(); return true;
      case 73: e->annotationType = in.int16(); return true;
      case 74: e->hooklineOppositeDirection = in.boolean(); return true;
      case 75: e->hasHookline = in.boolean(); return true;
      case 40: e->textHeight = in.real(); return true;
      case 41: e->textWidth = in.real(); return true;
      case 76: return true;  // vertex count: the 10 groups say it
      case 10:
        if (e->vertices.size() < kMaxRecordCount) e->vertices.push_back({in.real(), 0.0, 0.0});
        return true;
      case 20: case 30:
        if (!e->vertices.empty()) in.coordinate(e->vertices.back(), 10);
        return true;
      case 77: e->overrideColor = OdCmEntityColor::fromACI(in.int16()); return true;
      case 340: e->annotation = in.handle(); return true;
      case 210: case 220: case 230: in.coordinate(e->normal, 210); return true;
      case 211: case 221: case 231: in.coordinate(e->horizontalDirection, 211); return true;
      case 212: case 222: case 232: in.coordinate(e->blockOffset, 212); return true;
      case 213: case 223: case 233: in.coordinate(e->annotationOffset, 213); return true;
      default: return false;
    }
  });
  if (!e->style) e->style = in.standardDimStyle();
  return in.finish(e);
}

namespace {

// The parts of MULTILEADER: its context data, a leader branch inside it, a leader line inside
// a branch, and the entity's own properties after the context.
enum class MLeaderPart { kEntity, kContext, kBranch, kLine };

bool takeMLeaderLine(DxfLoader& in, int code, MLeaderLine& line) {
  switch (code) {
    case 10:
      if (line.vertices.size() < kMaxRecordCount) line.vertices.push_back({in.real(), 0.0, 0.0});
      return true;
    case 20: case 30:
      if (!line.vertices.empty()) in.coordinate(line.vertices.back(), 10);
      return true;
    case 91: line.index = in.int32(); return true;
    default: return true;  // break points and indices
  }
}

bool takeMLeaderBranch(DxfLoader& in, int code, MLeaderBranch& b) {
  switch (code) {
    case 290: b.hasLastLeaderLinePoint = in.boolean(); return true;
    case 291: b.hasDogleg = in.boolean(); return true;
    case 10: case 20: case 30: in.coordinate(b.lastLeaderLinePoint, 10); return true;
    case 11: case 21: case 31: in.coordinate(b.doglegVector, 11); return true;
    case 40: b.doglegLength = in.real(); return true;
    case 90: b.index = in.int32(); return true;
    case 271: b.attachmentDirection = in.int16(); return true;
    default: return true;
  }
}

bool takeMLeaderContext(DxfLoader& in, int code, MLeaderEntity& e, int& matrixIndex) {
  switch (code) {
    case 40: e.contentScale = in.real(); return true;
    case 10: case 20: case 30: in.coordinate(e.contentBasePoint, 10); return true;
    case 41: e.contextTextHeight = in.real(); return true;
    case 140: e.contextArrowheadSize = in.real(); return true;
    case 145: e.landingGap = in.real(); return true;
    case 290: e.hasMText = in.boolean(); return true;
    case 304: e.text = in.text(); return true;
    case 11: case 21: case 31: in.coordinate(e.textNormal, 11); return true;
    case 340: e.contextTextStyle = in.handle(); return true;
    case 12: case 22: case 32: in.coordinate(e.textLocation, 12); return true;
    case 13: case 23: case 33: in.coordinate(e.textDirection, 13); return true;
    case 42: e.textRotation = in.real(); return true;
    case 43: e.textWidth = in.real(); return true;
    case 44: e.textDefinedHeight = in.real(); return true;
    case 45: e.textLineSpacingFactor = in.real(); return true;
    case 170: e.textLineSpacingStyle = in.int16(); return true;
    case 90: e.contextTextColor = packedColor(in); return true;
    case 171: e.textAttachment = in.int16(); return true;
    case 172: e.textFlowDirection = in.int16(); return true;
    case 296: e.hasBlock = in.boolean(); return true;
    case 341: e.contextBlock = in.handle(); return true;
    case 14: case 24: case 34: in.coordinate(e.contextBlockNormal, 14); return true;
    case 15: case 25: case 35: in.coordinate(e.blockPosition, 15); return true;
    case 16: case 26: case 36: in.coordinate(e.contextBlockScale, 16); return true;
    case 46: e.contextBlockRotation = in.real(); return true;
    case 93: e.contextBlockColor = packedColor(in); return true;
    case 47:
      if (matrixIndex < 16) e.blockTransform[matrixIndex++] = in.real();
      return true;
    case 110: case 120: case 130: in.coordinate(e.planeOrigin, 110); return true;
    case 111: case 121: case 131: in.coordinate(e.planeXAxis, 111); return true;
    case 112: case 122: case 132: in.coordinate(e.planeYAxis, 112); return true;
    case 297: e.planeNormalReversed = in.boolean(); return true;
    default: return true;  // text background, columns and attachment details
  }
}

bool takeMLeaderProperty(DxfLoader& in, int code, MLeaderEntity& e) {
  switch (code) {
    case 340: e.style = in.handle(); return true;
    case 90: e.overrideFlags = in.int32(); return true;
    case 170: e.leaderType = in.int16(); return true;
    case 91: e.leaderColor = packedColor(in); return true;
    case 341: e.leaderLinetype = in.handle(); return true;
    case 171: e.leaderLineweight = in.int16(); return true;
    case 290: e.landingEnabled = in.boolean(); return true;
    case 291: e.doglegEnabled = in.boolean(); return true;
    case 41: e.landingDistance = in.real(); return true;
    case 342: e.arrowhead = in.handle(); return true;
    case 42: e.arrowheadSize = in.real(); return true;
    case 172: e.contentType = in.int16(); return true;
    case 343: e.textStyle = in.handle(); return true;
    case 173: e.textLeftAttachment = in.int16(); return true;
    case 95: e.textRightAttachment = in.int16(); return true;
    case 174: e.textAngleType = in.int16(); return true;
    case 175: e.textAlignment = in.int16(); return true;
    case 92: e.textColor = packedColor(in); return true;
    case 292: e.textFrame = in.boolean(); return true;
    case 344: e.blockContent = in.handle(); return true;
    case 93: e.blockColor = packedColor(in); return true;
    case 10: case 20: case 30: in.coordinate(e.blockScale, 10); return true;
    case 43: e.blockRotation = in.real(); return true;
    case 176: e.blockConnection = in.int16(); return true;
    case 293: e.annotative = in.boolean(); return true;
    case 330:
      e.blockAttributes.push_back({in.handle(), std::string()});
      return true;
    case 302:
      if (!e.blockAttributes.empty()) e.blockAttributes.back().second = in.text();
      return true;
    default: return false;
  }
}

}  // namespace

Entity* readMLeaderEntity(DxfLoader& in) {
  auto* e = in.newEntity<MLeaderEntity>();
  MLeaderPart part = MLeaderPart::kEntity;
  int matrixIndex = 0;
  readEntityGroups(in, *e, [&](int code) {
    if (code == 100) return true;
    std::string_view value = in.tag.trimmed();
    if (code == 300 && value == "CONTEXT_DATA{") {
      part = MLeaderPart::kContext;
      return true;
    }
    if (part == MLeaderPart::kContext && code == 302 && value == "LEADER{") {
      e->branches.emplace_back();
      part = MLeaderPart::kBranch;
      return true;
    }
    if (part == MLeaderPart::kBranch && code == 304 && value == "LEADER_LINE{") {
      e->branches.back().lines.emplace_back();
      part = MLeaderPart::kLine;
      return true;
    }
    switch (part) {
      case MLeaderPart::kLine:
        if (code == 305) part = MLeaderPart::kBranch;
        else takeMLeaderLine(in, code, e->branches.back().lines.back());
        return true;
      case MLeaderPart::kBranch:
        if (code == 303) part = MLeaderPart::kContext;
        else takeMLeaderBranch(in, code, e->branches.back());
        return true;
      case MLeaderPart::kContext:
        if (code == 301) part = MLeaderPart::kEntity;
        else takeMLeaderContext(in, code, *e, matrixIndex);
        return true;
      case MLeaderPart::kEntity:
        return takeMLeaderProperty(in, code, *e);
    }
    return false;
  });
  return in.finish(e);
}

Entity* readTableEntity(DxfLoader& in) {
  auto* e = in.newEntity<TableEntity>();
  bool cellsStarted = false;
  bool cellHasText = false;
  OdGeVector3d scale{1.0, 1.0, 1.0};
  readEntityGroups(in, *e, [&](int code) {
    bool tablePart = in.subclass == "AcDbTable";
    if (tablePart && code != 100) e->tableData.push_back(in.taggedValue());
    switch (code) {
      case 2: if (!tablePart) e->block = in.blockFromTag(); return true;
      case 10: case 20: case 30: if (!cellsStarted) in.coordinate(e->position, 10); return true;
      case 41: if (!tablePart) scale.x = in.real(); return true;
      case 42: if (!tablePart) scale.y = in.real(); return true;
      case 43: if (!tablePart) scale.z = in.real(); return true;
      case 210: case 220: case 230: in.coordinate(e->normal, 210); return true;
      default: break;
    }
    if (!tablePart) return false;
    switch (code) {
      case 342: e->tableStyle = in.handle(); return true;
      case 11: case 21: case 31: in.coordinate(e->horizontalDirection, 11); return true;
      case 91:
        if (!cellsStarted) e->rows = in.int32();
        return true;
      case 92:
        if (!cellsStarted) e->columns = in.int32();
        return true;
      case 141:
        if (e->rowHeights.size() < kMaxRecordCount) e->rowHeights.push_back(in.real());
        return true;
      case 142:
        if (e->columnWidths.size() < kMaxRecordCount) e->columnWidths.push_back(in.real());
        return true;
      case 171:
        cellsStarted = true;
        if (e->cells.size() < kMaxRecordCount) e->cells.emplace_back();
        e->cells.back().type = in.int16();
        cellHasText = false;
        return true;
      default: break;
    }
    if (e->cells.empty()) return true;
    TableCell& cell = e->cells.back();
    switch (code) {
      case 172: cell.flags = in.int16(); return true;
      case 173: cell.merged = in.boolean(); return true;
      case 175: cell.mergedColumns = in.int32(); return true;
      case 176: cell.mergedRows = in.int32(); return true;
      case 1:
      case 302:
        if (!cellHasText) {
          cell.text = in.text();
          cellHasText = !cell.text.empty();
        }
        return true;
      case 340: cell.block = in.handle(); return true;
      default: return true;
    }
  });
  (void)scale;
  return in.finish(e);
}

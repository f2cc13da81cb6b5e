// Block references and annotation: INSERT with its attributes, DIMENSION (all kinds), LEADER,
// MULTILEADER, ACAD_TABLE.
#include "kit/dxf/DxfWriterEntities.h"

void writeBlockReference(DxfWriterContext& c, const BlockReferenceEntity& e) {
  c.entityStart("INSERT", e);
  c.out.raw(100, e.isArray() ? "AcDbMInsertBlock" : "AcDbBlockReference");
  if (!e.attributes.empty()) c.out.integer(66, 1);
  c.out.text(2, recordName(e.block, ""));
  c.out.point(10, e.position);
  if (e.scale.x != 1.0) c.out.real(41, e.scale.x);
  if (e.scale.y != 1.0) c.out.real(42, e.scale.y);
  if (e.scale.z != 1.0) c.out.real(43, e.scale.z);
  if (e.rotation != 0.0) c.out.angle(50, e.rotation);
  if (e.columnCount != 1) c.out.integer(70, e.columnCount);
  if (e.rowCount != 1) c.out.integer(71, e.rowCount);
  if (e.columnSpacing != 0.0) c.out.real(44, e.columnSpacing);
  if (e.rowSpacing != 0.0) c.out.real(45, e.rowSpacing);
  writeNormal(c, e.normal);
  c.entityEnd(e);
  if (e.attributes.empty()) return;
  OdDbHandle blockOwner = c.blockOwner();
  c.setOwner(e.handle);
  for (const AttributeEntity* a : e.attributes) writeAttribute(c, *a);
  c.setOwner(blockOwner);
  c.sequenceEnd(c.handles.referenceEnd(e), e);
}

namespace {

const char* dimensionName(DimensionEntity::Kind kind) {
  switch (kind) {
    case DimensionEntity::Kind::kArcLength: return "ARC_DIMENSION";
    case DimensionEntity::Kind::kRadialLarge: return "LARGE_RADIAL_DIMENSION";
    default: return "DIMENSION";
  }
}

// The type number of group 70: the kind for the classic kinds; arc length dimensions are written
// as 3-point angular ones and large radial ones as radial, as AutoCAD does.
int dimensionTypeNumber(DimensionEntity::Kind kind) {
  switch (kind) {
    case DimensionEntity::Kind::kArcLength: return 5;
    case DimensionEntity::Kind::kRadialLarge: return 4;
    default: return int(kind);
  }
}

void writeDimensionCommon(DxfWriterContext& c, const DimensionEntity& e) {
  c.out.raw(100, "AcDbDimension");
  if (c.atLeast(1024)) c.out.integer(280, 0);
  if (e.block) c.out.text(2, e.block->name);
  c.out.point(10, e.definitionPoint);
  c.out.point(11, e.textMidpoint);
  if (!(e.cloneInsertion == OdGePoint3d())) c.out.point(12, e.cloneInsertion);
  c.out.integer(70, dimensionTypeNumber(e.kind) | (e.dimensionFlags & ~0x0F));
  if (!e.text.empty()) c.out.text(1, e.text);
  c.out.integer(71, e.attachment);
  if (e.lineSpacingStyle != 1) c.out.integer(72, e.lineSpacingStyle);
  if (e.lineSpacingFactor != 1.0) c.out.real(41, e.lineSpacingFactor);
  if (e.hasActualMeasurement) c.out.real(42, e.actualMeasurement);
  if (e.textRotation != 0.0) c.out.angle(53, e.textRotation);
  if (e.horizontalDirection != 0.0) c.out.angle(51, e.horizontalDirection);
  writeNormal(c, e.normal);
  c.out.text(3, recordName(e.style, "Standard"));
}

void writeDimensionKind(DxfWriterContext& c, const DimensionEntity& e) {
  using K = DimensionEntity::Kind;
  switch (e.kind) {
    case K::kRotated:
    case K::kAligned:
      c.out.raw(100, "AcDbAlignedDimension");
      c.out.point(13, e.defPoint2);
      c.out.point(14, e.defPoint3);
      if (e.kind == K::kRotated || e.rotation != 0.0) c.out.angle(50, e.rotation);
      if (e.obliqueAngle != 0.0) c.out.angle(52, e.obliqueAngle);
      if (e.kind == K::kRotated) c.out.raw(100, "AcDbRotatedDimension");
      break;
    case K::kAngular2Line:
      c.out.raw(100, "AcDb2LineAngularDimension");
      c.out.point(13, e.defPoint2);
      c.out.point(14, e.defPoint3);
      c.out.point(15, e.defPoint4);
      c.out.point(16, e.arcPoint);
      break;
    case K::kDiameter:
    case K::kRadius:
      c.out.raw(100, e.kind == K::kDiameter ? "AcDbDiametricDimension" : "AcDbRadialDimension");
      c.out.point(15, e.defPoint4);
      c.out.real(40, e.leaderLength);
      break;
    case K::kAngular3Point:
      c.out.raw(100, "AcDb3PointAngularDimension");
      c.out.point(13, e.defPoint2);
      c.out.point(14, e.defPoint3);
      c.out.point(15, e.defPoint4);
      break;
    case K::kOrdinate:
      c.out.raw(100, "AcDbOrdinateDimension");
      c.out.point(13, e.defPoint2);
      c.out.point(14, e.defPoint3);
      break;
    case K::kArcLength:
      c.out.raw(100, "AcDbArcDimension");
      c.out.point(13, e.defPoint2);
      c.out.point(14, e.defPoint3);
      c.out.point(15, e.defPoint4);
      c.out.boolean(70, e.arcPartial);
      c.out.real(40, e.arcStartParam);
      c.out.real(41, e.arcEndParam);
      c.out.boolean(71, e.arcHasLeader);
      c.out.point(16, e.arcPoint);
      c.out.point(17, e.leaderEnd);
      break;
    case K::kRadialLarge:
      c.out.raw(100, "AcDbRadialDimensionLarge");
      c.out.point(13, e.defPoint2);
      c.out.point(14, e.defPoint3);
      c.out.point(15, e.defPoint4);
      c.out.point(16, e.arcPoint);
      c.out.point(17, e.leaderEnd);
      c.out.real(40, e.leaderLength);
      break;
  }
}

}  // namespace

void writeDimension(DxfWriterContext& c, const DimensionEntity& e) {
  c.entityStart(dimensionName(e.kind), e);
  writeDimensionCommon(c, e);
  writeDimensionKind(c, e);
  c.entityEnd(e);
}

void writeLeader(DxfWriterContext& c, const LeaderEntity& e) {
  c.entityStart("LEADER", e);
  c.out.raw(100, "AcDbLeader");
  c.out.text(3, recordName(e.style, "Standard"));
  c.out.boolean(71, e.hasArrowhead);
  c.out.integer(72, e.pathType);
  c.out.integer(73, e.annotationType);
  c.out.boolean(74, e.hooklineOppositeDirection);
  c.out.boolean(75, e.hasHookline);
  c.out.real(40, e.textHeight);
  c.out.real(41, e.textWidth);
  c.out.integer(76, int64_t(e.vertices.size()));
  for (const OdGePoint3d& p : e.vertices) c.out.point(10, p);
  if (!e.overrideColor.isByLayer()) c.out.integer(77, e.overrideColor.colorIndex());
  if (c.existing(e.annotation).value()) c.out.handle(340, e.annotation);
  c.out.point(210, e.normal);
  c.out.point(211, e.horizontalDirection);
  c.out.point(212, e.blockOffset);
  c.out.point(213, e.annotationOffset);
  c.entityEnd(e);
}

namespace {

// Colours of MULTILEADER are stored whole (method and value) as a signed 32-bit number.
void packedColor(DxfWriterContext& c, int code, const OdCmEntityColor& color) {
  c.out.integer(code, int32_t(color.packed()));
}

void writeMLeaderBranch(DxfWriterContext& c, const MLeaderBranch& b) {
  c.out.raw(302, "LEADER{");
  c.out.boolean(290, b.hasLastLeaderLinePoint);
  c.out.boolean(291, b.hasDogleg);
  if (b.hasLastLeaderLinePoint) c.out.point(10, b.lastLeaderLinePoint);
  if (b.hasDogleg) c.out.point(11, b.doglegVector);
  c.out.integer(90, b.index);
  c.out.real(40, b.doglegLength);
  for (const MLeaderLine& line : b.lines) {
    c.out.raw(304, "LEADER_LINE{");
    for (const OdGePoint3d& p : line.vertices) c.out.point(10, p);
    c.out.integer(91, line.index);
    c.out.raw(305, "}");
  }
  if (c.atLeast(1024)) c.out.integer(271, b.attachmentDirection);
  c.out.raw(303, "}");
}

void writeMLeaderContext(DxfWriterContext& c, const MLeaderEntity& e) {
  c.out.raw(300, "CONTEXT_DATA{");
  c.out.real(40, e.contentScale);
  c.out.point(10, e.contentBasePoint);
  c.out.real(41, e.contextTextHeight);
  c.out.real(140, e.contextArrowheadSize);
  c.out.real(145, e.landingGap);
  c.out.boolean(290, e.hasMText);
  if (e.hasMText) {
    c.out.text(304, e.text);
    c.out.point(11, e.textNormal);
    c.out.handle(340, e.contextTextStyle);
    c.out.point(12, e.textLocation);
    c.out.point(13, e.textDirection);
    c.out.real(42, e.textRotation);
    c.out.real(43, e.textWidth);
    c.out.real(44, e.textDefinedHeight);
    c.out.real(45, e.textLineSpacingFactor);
    c.out.integer(170, e.textLineSpacingStyle);
    packedColor(c, 90, e.contextTextColor);
    c.out.integer(171, e.textAttachment);
    c.out.integer(172, e.textFlowDirection);
  }
  c.out.boolean(296, e.hasBlock);
  if (e.hasBlock) {
    c.out.handle(341, e.contextBlock);
    c.out.point(14, e.contextBlockNormal);
    c.out.point(15, e.blockPosition);
    c.out.point(16, e.contextBlockScale);
    c.out.real(46, e.contextBlockRotation);
    packedColor(c, 93, e.contextBlockColor);
    for (double m : e.blockTransform) c.out.real(47, m);
  }
  c.out.point(110, e.planeOrigin);
  c.out.point(111, e.planeXAxis);
  c.out.point(112, e.planeYAxis);
  c.out.boolean(297, e.planeNormalReversed);
  for (const MLeaderBranch& b : e.branches) writeMLeaderBranch(c, b);
  c.out.raw(301, "}");
}

void writeMLeaderProperties(DxfWriterContext& c, const MLeaderEntity& e) {
  c.out.handle(340, e.style);
  c.out.integer(90, e.overrideFlags);
  c.out.integer(170, e.leaderType);
  packedColor(c, 91, e.leaderColor);
  c.out.handle(341, e.leaderLinetype);
  c.out.integer(171, e.leaderLineweight);
  c.out.boolean(290, e.landingEnabled);
  c.out.boolean(291, e.doglegEnabled);
  c.out.real(41, e.landingDistance);
  if (!e.arrowhead.isNull()) c.out.handle(342, e.arrowhead);
  c.out.real(42, e.arrowheadSize);
  c.out.integer(172, e.contentType);
  c.out.handle(343, e.textStyle);
  c.out.integer(173, e.textLeftAttachment);
  c.out.integer(95, e.textRightAttachment);
  c.out.integer(174, e.textAngleType);
  c.out.integer(175, e.textAlignment);
  packedColor(c, 92, e.textColor);
  c.out.boolean(292, e.textFrame);
  if (!e.blockContent.isNull()) c.out.handle(344, e.blockContent);
  packedColor(c, 93, e.blockColor);
  c.out.point(10, e.blockScale);
  c.out.real(43, e.blockRotation);
  c.out.integer(176, e.blockConnection);
  c.out.boolean(293, e.annotative);
  for (const auto& [definition, text] : e.blockAttributes) {
    c.out.handle(330, definition);
    c.out.text(302, text);
  }
}

}  // namespace

void writeMLeader(DxfWriterContext& c, const MLeaderEntity& e) {
  c.entityStart("MULTILEADER", e);
  c.out.raw(100, "AcDbMLeader");
  c.out.integer(270, 2);  // the format version
  writeMLeaderContext(c, e);
  writeMLeaderProperties(c, e);
  c.entityEnd(e);
}

namespace {

// A table the file did not give its own groups for (built by another reader): its grid and
// cell texts in the AcDbTable form.
void writeTableGrid(DxfWriterContext& c, const TableEntity& e) {
  c.out.integer(280, 0);
  c.out.handle(342, e.tableStyle);
  if (e.block) c.out.handle(343, e.block->handle);
  c.out.point(11, e.horizontalDirection);
  c.out.integer(90, 22);
  c.out.integer(91, e.rows);
  c.out.integer(92, e.columns);
  for (double h : e.rowHeights) c.out.real(141, h);
  for (double w : e.columnWidths) c.out.real(142, w);
  for (const TableCell& cell : e.cells) {
    c.out.integer(171, cell.type);
    c.out.integer(172, cell.flags);
    c.out.boolean(173, cell.merged);
    c.out.integer(175, cell.mergedColumns);
    c.out.integer(176, cell.mergedRows);
    if (cell.type == 2 && !cell.block.isNull()) c.out.handle(340, cell.block);
    else c.out.text(1, cell.text);
  }
}

}  // namespace

void writeTable(DxfWriterContext& c, const TableEntity& e) {
  c.entityStart("ACAD_TABLE", e);
  c.out.raw(100, "AcDbBlockReference");
  if (e.block) c.out.text(2, e.block->name);
  c.out.point(10, e.position);
  writeNormal(c, e.normal);
  c.out.raw(100, "AcDbTable");
  if (e.tableData.empty()) writeTableGrid(c, e);
  for (const TaggedValue& v : e.tableData) c.out.tagged(v);
  c.entityEnd(e);
}

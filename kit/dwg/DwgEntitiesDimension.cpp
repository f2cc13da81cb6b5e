// Dimensions: the seven fixed kinds (linear, aligned, angular by three points and by two lines,
// radius, diameter, ordinate), ARC_DIMENSION and LARGE_RADIAL_DIMENSION (jogged radius). All
// share a common part (text position and override, insertion scale, measurement), then their
// definition points, then the dimension style and the anonymous block that holds the graphics.
#include "kit/dwg/DwgEntityReaders.h"
#include "kit/dwg/DwgLoader.h"

namespace {

using Kind = DimensionEntity::Kind;

DimensionEntity* readDimensionCommon(DwgObjectContext& c, Kind kind) {
  auto* e = c.newEntity<DimensionEntity>();
  DwgBitReader& d = c.d;
  e->kind = kind;
  if (c.atLeast(kDwgR2010)) d.RC();  // version
  e->normal = d.vector3BD();
  OdGePoint2d textMid = d.point2RD();
  double elevation = d.BD();
  e->textMidpoint = {textMid.x, textMid.y, elevation};
  uint8_t flags = d.RC();
  // Bit 0 says the text sits where the style puts it; bit 1 that the block serves this one only.
  if (!(flags & 1)) e->dimensionFlags |= DimensionEntity::kTextUserPositioned;
  if (flags & 2) e->dimensionFlags |= DimensionEntity::kBlockUniquelyReferenced;
  e->text = c.s.text();
  e->textRotation = d.BD();
  e->horizontalDirection = d.BD();
  d.point3BD();  // insertion scale of the block
  d.BD();        // insertion rotation
  if (c.atLeast(kDwgR2000)) {
    e->attachment = d.BS();
    e->lineSpacingStyle = d.BS();
    e->lineSpacingFactor = d.BD();
    e->actualMeasurement = d.BD();
    e->hasActualMeasurement = true;
  }
  if (c.atLeast(kDwgR2007)) {
    d.B();  // unknown
    d.B();  // first arrow flipped
    d.B();  // second arrow flipped
  }
  OdGePoint2d clone = d.point2RD();
  e->cloneInsertion = {clone.x, clone.y, elevation};
  return e;
}

void readStyleAndBlock(DwgObjectContext& c, DimensionEntity& e) {
  e.style = c.dimStyle(c.s.handle());
  OdDbHandle block = c.s.handle();
  if (!block.isNull()) e.block = c.block(block);
}

}  // namespace

void readDwgDimensionOrdinate(DwgObjectContext& c) {
  DimensionEntity* e = readDimensionCommon(c, Kind::kOrdinate);
  e->definitionPoint = c.d.point3BD();
  e->defPoint2 = c.d.point3BD();
  e->defPoint3 = c.d.point3BD();
  if (c.d.RC() & 1) e->dimensionFlags |= DimensionEntity::kOrdinateX;
  readStyleAndBlock(c, *e);
}

void readDwgDimensionLinear(DwgObjectContext& c) {
  DimensionEntity* e = readDimensionCommon(c, Kind::kRotated);
  e->defPoint2 = c.d.point3BD();
  e->defPoint3 = c.d.point3BD();
  e->definitionPoint = c.d.point3BD();
  e->obliqueAngle = c.d.BD();
  e->rotation = c.d.BD();
  readStyleAndBlock(c, *e);
}

void readDwgDimensionAligned(DwgObjectContext& c) {
  DimensionEntity* e = readDimensionCommon(c, Kind::kAligned);
  e->defPoint2 = c.d.point3BD();
  e->defPoint3 = c.d.point3BD();
  e->definitionPoint = c.d.point3BD();
  e->obliqueAngle = c.d.BD();
  readStyleAndBlock(c, *e);
}

void readDwgDimensionAngular3Point(DwgObjectContext& c) {
  DimensionEntity* e = readDimensionCommon(c, Kind::kAngular3Point);
  e->definitionPoint = c.d.point3BD();
  e->defPoint2 = c.d.point3BD();
  e->defPoint3 = c.d.point3BD();
  e->defPoint4 = c.d.point3BD();
  readStyleAndBlock(c, *e);
}

void readDwgDimensionAngular2Line(DwgObjectContext& c) {
  DimensionEntity* e = readDimensionCommon(c, Kind::kAngular2Line);
  OdGePoint2d arc = c.d.point2RD();
  e->arcPoint = {arc.x, arc.y, e->textMidpoint.z};
  e->defPoint2 = c.d.point3BD();
  e->defPoint3 = c.d.point3BD();
  e->defPoint4 = c.d.point3BD();
  e->definitionPoint = c.d.point3BD();
  readStyleAndBlock(c, *e);
}

void readDwgDimensionRadius(DwgObjectContext& c) {
  DimensionEntity* e = readDimensionCommon(c, Kind::kRadius);
  e->definitionPoint = c.d.point3BD();
  e->defPoint4 = c.d.point3BD();
  e->leaderLength = c.d.BD();
  readStyleAndBlock(c, *e);
}

void readDwgDimensionDiameter(DwgObjectContext& c) {
  DimensionEntity* e = readDimensionCommon(c, Kind::kDiameter);
  e->defPoint4 = c.d.point3BD();  // unlike the radius, the chord point comes first
  e->definitionPoint = c.d.point3BD();
  e->leaderLength = c.d.BD();
  readStyleAndBlock(c, *e);
}

void readDwgArcDimension(DwgObjectContext& c) {
  DimensionEntity* e = readDimensionCommon(c, Kind::kArcLength);
  DwgBitReader& d = c.d;
  e->definitionPoint = d.point3BD();
  e->defPoint2 = d.point3BD();
  e->defPoint3 = d.point3BD();
  e->defPoint4 = d.point3BD();
  e->arcPartial = d.B();
  e->arcStartParam = d.BD();
  e->arcEndParam = d.BD();
  e->arcHasLeader = d.B();
  e->arcPoint = d.point3BD();
  e->leaderEnd = d.point3BD();
  readStyleAndBlock(c, *e);
}

void readDwgLargeRadialDimension(DwgObjectContext& c) {
  DimensionEntity* e = readDimensionCommon(c, Kind::kRadialLarge);
  DwgBitReader& d = c.d;
  e->definitionPoint = d.point3BD();  // centre
  e->defPoint2 = d.point3BD();        // chord point
  d.BD();                             // jog angle
  e->defPoint3 = d.point3BD();        // centre shown
  e->defPoint4 = d.point3BD();        // jog point
  readStyleAndBlock(c, *e);
}

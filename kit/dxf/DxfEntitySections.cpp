// ENTITIES and BLOCKS sections, and the dispatch from an entity's DXF name to its reader.
#include <unordered_map>

#include "kit/base/MappedFile.h"
#include "kit/base/OdError.h"
#include "kit/dxf/DxfEntityGroups.h"

bool readCommonEntityGroup(DxfLoader& in, Entity& e, bool& ownerSeen, bool& trueColorSeen) {
  switch (in.tag.code) {
    case 5: e.handle = in.handle(); return true;
    case 330:
      if (ownerSeen) return false;
      e.ownerHandle = in.handle();
      ownerSeen = true;
      return true;
    case 8: e.layer = in.layerFromTag(); return true;
    case 6: e.linetype = in.linetypeFromTag(); return true;
    case 62:
      if (!trueColorSeen) e.color = OdCmEntityColor::fromACI(in.int16());
      return true;
    case 420:
      e.color = OdCmEntityColor::fromPackedRGB(uint32_t(in.int32()));
      trueColorSeen = true;
      return true;
    case 430: in.db.extrasOf(e).colorBookName = in.text(); return true;
    case 440: e.transparency = OdCmTransparency::fromRaw(uint32_t(in.int32())); return true;
    case 370: e.lineweight = in.int16(); return true;
    case 48: e.linetypeScale = in.real(); return true;
    case 60:
      if (in.int16() & 1) e.entityFlags |= Entity::kInvisible;
      return true;
    case 67:
      if (in.int16() != 0) e.entityFlags |= Entity::kPaperSpace;
      return true;
    case 347: in.db.extrasOf(e).material = in.handle(); return true;
    case 390: in.db.extrasOf(e).plotStyle = in.handle(); return true;
    case 348: in.db.extrasOf(e).visualStyle = in.handle(); return true;
    case 410: case 284: case 380: return true;  // layout tab name, shadow mode, plot style type
    case 92:
    case 160:
      if (in.subclass != "AcDbEntity") return false;
      in.db.extrasOf(e).proxyGraphicsBytes = uint32_t(in.integer());
      return true;
    case 310:
      return in.subclass == "AcDbEntity";  // proxy graphics: not kept
    default: return false;
  }
}

namespace {

using EntityReader = Entity* (*)(DxfLoader&);

const std::unordered_map<std::string_view, EntityReader>& entityReaders() {
  static const std::unordered_map<std::string_view, EntityReader> readers = {
      {"LINE", readLineEntity},
      {"3DLINE", readLineEntity},
      {"POINT", readPointEntity},
      {"CIRCLE", readCircleEntity},
      {"ARC", readArcEntity},
      {"ELLIPSE", readEllipseEntity},
      {"LWPOLYLINE", readLwPolylineEntity},
      {"POLYLINE", readPolylineEntity},
      {"SPLINE", readSplineEntity},
      {"HELIX", readHelixEntity},
      {"XLINE", readXLineEntity},
      {"RAY", readRayEntity},
      {"SOLID", readSolidEntity},
      {"TRACE", readTraceEntity},
      {"3DFACE", readFaceEntity},
      {"TEXT", readTextEntity},
      {"MTEXT", readMTextEntity},
      {"ATTRIB", readAttributeEntity},
      {"ATTDEF", readAttributeDefinitionEntity},
      {"SHAPE", readShapeEntity},
      {"TOLERANCE", readToleranceEntity},
      {"INSERT", readBlockReferenceEntity},
      {"DIMENSION", readDimensionEntity},
      {"ARC_DIMENSION", readDimensionEntity},
      {"LARGE_RADIAL_DIMENSION", readDimensionEntity},
      {"LEADER", readLeaderEntity},
      {"MULTILEADER", readMLeaderEntity},
      {"MLEADER", readMLeaderEntity},
      {"ACAD_TABLE", readTableEntity},
      {"HATCH", readHatchEntity},
      {"MPOLYGON", readMPolygonEntity},
      {"IMAGE", readImageEntity},
      {"WIPEOUT", readWipeoutEntity},
      {"VIEWPORT", readViewportEntity},
      {"OLE2FRAME", readOle2FrameEntity},
      {"OLEFRAME", readOle2FrameEntity},
      {"MLINE", readMLineEntity},
      {"MESH", readMeshEntity},
      {"PDFUNDERLAY", [](DxfLoader& in) { return readUnderlayEntity(in, UnderlayEntity::Format::kPdf); }},
      {"DWFUNDERLAY", [](DxfLoader& in) { return readUnderlayEntity(in, UnderlayEntity::Format::kDwf); }},
      {"DGNUNDERLAY", [](DxfLoader& in) { return readUnderlayEntity(in, UnderlayEntity::Format::kDgn); }},
  };
  return readers;
}

bool isModelerGeometryName(std::string_view name) {
  static const std::string_view kNames[] = {
      "REGION", "3DSOLID", "BODY", "SURFACE", "EXTRUDEDSURFACE", "LOFTEDSURFACE", "REVOLVEDSURFACE",
      "SWEPTSURFACE", "PLANESURFACE", "NURBSURFACE"};
  for (std::string_view n : kNames) {
    if (n == name) return true;
  }
  return false;
}

// Names that end a sequence or a block rather than start an entity.
bool isStructureName(std::string_view name) {
  return name == "SEQEND" || name == "VERTEX" || name == "ENDBLK" || name == "BLOCK" || name == "ENDSEC" ||
         name == "EOF" || name == "SECTION";
}

}  // namespace

Entity* DxfLoader::readEntity(std::string_view dxfName) {
  const auto& readers = entityReaders();
  auto it = readers.find(dxfName);
  if (it != readers.end()) return it->second(*this);
  if (isModelerGeometryName(dxfName)) return readModelerGeometryEntity(*this, dxfName);
  if (dxfName.empty() || isStructureName(dxfName)) {
    warn("stray " + std::string(dxfName.empty() ? "unnamed record" : dxfName) + " skipped (" + where() + ")");
    skipToNextObject();
    return nullptr;
  }
  return readProxyEntity(*this, dxfName);
}

void DxfLoader::readEntityInto(BlockRecord* block, bool entitiesSection) {
  std::string_view name = tag.trimmed();
  Entity* entity = readEntity(name);
  if (!entity) return;
  if (entitiesSection) {
    block = entity->isInPaperSpace() ? db.blockNamed("*Paper_Space") : db.blockNamed("*Model_Space");
  }
  block->entities.push_back(entity);
}

void DxfLoader::readEntitiesSection() {
  BlockRecord* model = db.blockNamed("*Model_Space");
  BlockRecord* paper = db.blockNamed("*Paper_Space");
  size_t releasedAt = 0;
  while (next()) {
    if (tag.code != 0) continue;  // stray groups between entities
    std::string_view name = tag.trimmed();
    if (name == "ENDSEC") return;
    if (name == "EOF" || name == "SECTION") {
      warn("ENTITIES section not closed (" + where() + ")");
      pushBack();
      return;
    }
    Entity* entity = readEntity(name);
    if (entity) (entity->isInPaperSpace() ? paper : model)->entities.push_back(entity);
    // Parsed bytes of a large mapped file are not needed again.
    if (mappedFile_ && reader_.bytesConsumed() - releasedAt > (size_t(32) << 20)) {
      releasedAt = reader_.bytesConsumed() - (size_t(1) << 20);
      mappedFile_->releaseBefore(releasedAt);
    }
  }
  structureError(eEndOfFile, "the file ends inside the ENTITIES section");
}

namespace {

struct BlockBegin {
  OdDbHandle handle;
  OdDbHandle owner;
  std::string name;
  std::string xrefPath;
  std::string description;
  int16_t flags = 0;
  OdGePoint3d basePoint;
  LayerRecord* layer = nullptr;
};

BlockBegin readBlockBegin(DxfLoader& in) {
  BlockBegin b;
  bool ownerSeen = false;
  while (in.next()) {
    switch (in.tag.code) {
      case 0: in.pushBack(); return b;
      case 5: b.handle = in.handle(); break;
      case 330:
        if (!ownerSeen) b.owner = in.handle();
        ownerSeen = true;
        break;
      case 2: b.name = in.text(); break;
      case 3: if (b.name.empty()) b.name = in.text(); break;
      case 1: b.xrefPath = in.text(); break;
      case 4: b.description = in.text(); break;
      case 70: b.flags = in.int16(); break;
      case 8: b.layer = in.layerFromTag(); break;
      case 10: case 20: case 30: in.coordinate(b.basePoint, 10); break;
      case 102: {
        DbObject scratch(DbType::kUnknown);
        in.readApplicationGroup(scratch);
        break;
      }
      default: break;
    }
  }
  return b;
}

// The block record a BLOCK belongs to: its owner when that is a block record (names may be
// missing), else the record of its name, else a new anonymous one.
BlockRecord* blockForBegin(DxfLoader& in, BlockBegin& begin, int& unnamed) {
  BlockRecord* block = in.db.findAs<BlockRecord>(begin.owner);
  std::string name = DxfLoader::normalizedBlockName(begin.name);
  if (!block && !name.empty()) block = in.db.blockNamed(name);
  if (!block) {
    do {
      name = "*U_UNNAMED" + std::to_string(++unnamed);
    } while (in.db.blocks().find(name));
    in.warn("a block without a name was read as " + name + " (" + in.where() + ")");
    block = in.db.blockNamed(name);
    begin.flags |= BlockRecord::kAnonymous;
  }
  if (block->hasDefinition) {
    in.warn("second definition of block " + block->name + " ignored (" + in.where() + ")");
    BlockRecord* detached = in.db.newObject<BlockRecord>();
    detached->name = block->name;
    return detached;
  }
  return block;
}

}  // namespace

void DxfLoader::readBlocksSection() {
  int unnamed = 0;
  while (next()) {
    if (tag.code != 0) continue;
    std::string_view name = tag.trimmed();
    if (name == "ENDSEC") return;
    if (name != "BLOCK") {
      warn("unexpected " + std::string(name) + " outside a block (" + where() + ")");
      skipToNextObject();
      continue;
    }
    BlockBegin begin = readBlockBegin(*this);
    BlockRecord* block = blockForBegin(*this, begin, unnamed);
    block->blockFlags = begin.flags;
    block->basePoint = begin.basePoint;
    block->xrefPath = std::move(begin.xrefPath);
    block->description = std::move(begin.description);
    block->blockLayer = begin.layer ? begin.layer : defaultLayer;
    block->beginHandle = begin.handle;
    block->hasDefinition = true;
    block->implicitlyCreated = false;
    bool closed = false;
    while (next()) {
      if (tag.code != 0) continue;
      std::string_view entityName = tag.trimmed();
      if (entityName == "ENDBLK") {
        BlockBegin end = readBlockBegin(*this);
        block->endHandle = end.handle;
        closed = true;
        break;
      }
      if (entityName == "ENDSEC" || entityName == "BLOCK" || entityName == "EOF") {
        warn("block " + block->name + " not closed (" + where() + ")");
        pushBack();
        closed = true;
        break;
      }
      readEntityInto(block, false);
    }
    if (!closed) structureError(eEndOfFile, "the file ends inside block " + block->name);
  }
  structureError(eEndOfFile, "the file ends inside the BLOCKS section");
}

// BLOCKS and ENTITIES sections. Every block record gets its BLOCK ... ENDBLK definition; the
// entities of model space and of the active paper space layout go to the ENTITIES section (with
// the space flag saying which), those of every other block inside its definition.
#include "kit/dxf/DxfWriterSections.h"

namespace {

bool entitiesInEntitiesSection(const OdDbDatabase& db, const BlockRecord* block) {
  return block == db.modelSpace() || block == db.paperSpace();
}

void writeBlockEntityStart(DxfWriterContext& c, const char* name, OdDbHandle handle, const BlockRecord& block,
                           bool paper) {
  static const DbObject plain(DbType::kUnknown);  // BLOCK and ENDBLK have no reactors of their own
  c.objectStart(name, plain, handle, block.handle);
  c.out.raw(100, "AcDbEntity");
  if (paper) c.out.integer(67, 1);
  c.out.text(8, recordName(block.blockLayer, "0"));
}

void writeBlock(DxfWriterContext& c, const BlockRecord& block) {
  bool paper = block.isPaperSpace();
  writeBlockEntityStart(c, "BLOCK", c.handles.blockBegin(block), block, paper);
  c.out.raw(100, "AcDbBlockBegin");
  c.out.text(2, block.name);
  c.out.integer(70, block.blockFlags);
  c.out.point(10, block.basePoint);
  c.out.text(3, block.name);
  c.out.text(1, block.xrefPath);
  if (!block.description.empty()) c.out.text(4, block.description);
  if (!entitiesInEntitiesSection(c.db, &block)) {
    c.setBlock(block.handle, paper, false);
    for (const Entity* e : block.entities) c.entity(*e);
  }
  writeBlockEntityStart(c, "ENDBLK", c.handles.blockEnd(block), block, paper);
  c.out.raw(100, "AcDbBlockEnd");
}

}  // namespace

void writeBlocksSection(DxfWriterContext& c) {
  c.out.raw(0, "SECTION");
  c.out.raw(2, "BLOCKS");
  for (const BlockRecord* block : c.db.blocks()) writeBlock(c, *block);
  c.out.raw(0, "ENDSEC");
}

void writeEntitiesSection(DxfWriterContext& c) {
  c.out.raw(0, "SECTION");
  c.out.raw(2, "ENTITIES");
  // The space flag decides which block a reader puts an entity of this section in.
  if (const BlockRecord* model = c.db.modelSpace()) {
    c.setBlock(model->handle, false, true);
    for (const Entity* e : model->entities) c.entity(*e);
  }
  if (const BlockRecord* paper = c.db.paperSpace()) {
    c.setBlock(paper->handle, true, true);
    for (const Entity* e : paper->entities) c.entity(*e);
  }
  c.out.raw(0, "ENDSEC");
}

// BLOCK_HEADER records: a block's name, flags and base point, and the entities it owns (first
// and last before R2004, all of them after), for the assembly to put in order.
#include "kit/dwg/DwgLoader.h"
#include "kit/dwg/DwgRecordReaders.h"

void readDwgBlockHeader(DwgObjectContext& c) {
  auto* r = c.newObject<BlockRecord>();
  DwgBitReader& d = c.d;
  r->name = c.s.text();
  r->flags = readDwgRecordFlags(c);
  bool xrefDependent = (r->flags & SymbolTableRecord::kXrefDependent) != 0;
  int16_t flags = 0;
  if (d.B()) flags |= BlockRecord::kAnonymous;
  if (d.B()) flags |= BlockRecord::kHasAttributes;
  bool isXref = d.B();
  bool isOverlay = d.B();
  if (isXref) flags |= BlockRecord::kExternal;
  if (isOverlay) flags |= BlockRecord::kOverlay;
  if (xrefDependent) flags |= BlockRecord::kXrefDependentBlock;
  if (c.atLeast(kDwgR2000)) d.B();  // xref loaded
  // External blocks own no entities and, from R2004, carry no count of them.
  int32_t ownedCount = c.atLeast(kDwgR2004) && !isXref && !isOverlay ? d.BL() : 0;
  r->basePoint = d.point3BD();
  r->xrefPath = c.s.text();
  uint32_t insertCount = 0;
  if (c.atLeast(kDwgR2000)) {
    while (d.RC() != 0 && !d.overrun()) ++insertCount;
    r->description = c.s.text();
    int32_t previewBytes = d.BL();
    if (previewBytes < 0 || size_t(previewBytes) > d.bitsLeft() / 8) {
      d.skip(d.bitsLeft() + 1);
      return;
    }
    d.skip(size_t(previewBytes) * 8);
  }
  if (c.atLeast(kDwgR2007)) {
    r->insertUnits = d.BS();
    r->explodable = d.B();
    r->scaleUniformly = d.RC() != 0;
  }
  r->blockFlags = flags;
  r->hasTableRecord = true;

  c.s.handle();  // xref block (null for blocks of this drawing)
  r->beginHandle = c.s.handle();
  DwgOwnedObjects owned;
  if (c.before(kDwgR2004)) {
    if (!isXref && !isOverlay) {
      owned.first = c.s.handle();
      owned.last = c.s.handle();
    }
  } else {
    uint32_t count = c.boundedCount(ownedCount, 8, c.s.handles);
    owned.handles.reserve(count);
    for (uint32_t i = 0; i < count; ++i) owned.handles.push_back(c.s.handle());
  }
  r->endHandle = c.s.handle();
  if (c.atLeast(kDwgR2000)) {
    uint32_t inserts = c.boundedCount(insertCount, 8, c.s.handles);
    for (uint32_t i = 0; i < inserts; ++i) c.s.handle();
    r->layout = c.s.handle();
  }
  c.setOwned(owned);
}

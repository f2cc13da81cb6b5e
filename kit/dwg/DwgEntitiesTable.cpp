// ACAD_TABLE up to R2007: a block reference to the anonymous block with the table's graphics,
// its direction and its grid of row heights and column widths. The cells and their formats
// that follow are not read; the block draws the table. R2010 files store tables another way
// (their content in a TABLECONTENT object); those stay proxies for now.
#include "kit/dwg/DwgEntityReaders.h"
#include "kit/dwg/DwgLoader.h"

void readDwgTable(DwgObjectContext& c) {
  if (c.atLeast(kDwgR2010)) {
    readUnknownDwgObject(c, c.loader.classOfType(c.frame.type), true);
    return;
  }
  auto* e = c.newEntity<TableEntity>();
  DwgBitReader& d = c.d;
  e->position = d.point3BD();
  readDwgInsertScale(c);
  d.BD();  // rotation: the direction below says it
  e->normal = d.vector3BD();
  bool hasAttributes = d.B();
  if (hasAttributes && c.atLeast(kDwgR2004)) d.BL();  // owned objects
  d.BS();  // table value flags
  e->horizontalDirection = d.vector3BD();
  int32_t columns = d.BL();
  int32_t rows = d.BL();
  uint32_t nColumns = c.boundedCount(columns, 2);
  for (uint32_t i = 0; i < nColumns && !d.overrun(); ++i) e->columnWidths.push_back(d.BD());
  uint32_t nRows = c.boundedCount(rows, 2);
  for (uint32_t i = 0; i < nRows && !d.overrun(); ++i) e->rowHeights.push_back(d.BD());
  e->columns = int32_t(e->columnWidths.size());
  e->rows = int32_t(e->rowHeights.size());
  e->block = c.block(c.s.handle());
}

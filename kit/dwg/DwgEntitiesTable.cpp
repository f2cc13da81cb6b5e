// ACAD_TABLE: a block reference to the anonymous block with the table's graphics, with the grid
// of the table (direction, column widths, row heights) and its cells. Up to R2007 the grid and the
// cells follow the block reference's data (DwgTableCells.cpp); from R2010 on the table embeds its
// content as linked table data instead (DwgTableContent.cpp).
#include "kit/dwg/DwgEntityReaders.h"
#include "kit/dwg/DwgLoader.h"
#include "kit/dwg/DwgTableParts.h"

namespace {

// The block reference part: position, scale, rotation, normal and owned attributes, then its
// references: the block, the attributes and their end marker. Tables own no attributes in
// practice; their handles are read only to get past them.
void readTablePlacement(DwgObjectContext& c, TableEntity& e) {
  DwgBitReader& d = c.d;
  e.position = d.point3BD();
  readDwgInsertScale(c);
  d.BD();  // rotation: the direction says it
  e.normal = d.vector3BD();
  bool hasAttributes = d.B();
  uint32_t owned = 0;
  if (hasAttributes && c.atLeast(kDwgR2004)) owned = c.boundedCount(d.BL(), 8, c.s.handleSource());
  e.block = c.block(c.s.handle());
  if (!hasAttributes) return;
  if (c.before(kDwgR2004)) owned = 2;  // first and last
  for (uint32_t i = 0; i < owned && !c.s.overrun(); ++i) c.s.handle();
  c.s.handle();  // end of sequence
}

void readGridR2000(DwgObjectContext& c, TableEntity& e) {
  DwgBitReader& d = c.d;
  d.BS();  // table value flags
  e.horizontalDirection = d.vector3BD();
  int32_t columns = d.BL();
  int32_t rows = d.BL();
  uint32_t nColumns = c.boundedCount(columns, 2);
  for (uint32_t i = 0; i < nColumns && !d.overrun(); ++i) e.columnWidths.push_back(d.BD());
  uint32_t nRows = c.boundedCount(rows, 2);
  for (uint32_t i = 0; i < nRows && !d.overrun(); ++i) e.rowHeights.push_back(d.BD());
  e.columns = int32_t(e.columnWidths.size());
  e.rows = int32_t(e.rowHeights.size());
  e.tableStyle = c.s.handle();
  readDwgTableCellGrid(c, e);
}

// How a table is split into parts across columns of the sheet: read to get past it.
void skipBreaks(DwgObjectContext& c) {
  DwgBitReader& d = c.d;
  if (d.BL()) {
    d.BL();  // options
    d.BL();  // flow direction
    d.BD();  // spacing
    d.BL();
    d.BL();
    uint32_t heights = c.boundedCount(d.BL(), 10);
    for (uint32_t i = 0; i < heights && !d.overrun(); ++i) {
      d.point3BD();
      d.BD();
      d.BL();
    }
  }
  uint32_t ranges = c.boundedCount(d.BL(), 10);
  for (uint32_t i = 0; i < ranges && !d.overrun(); ++i) {
    d.point3BD();
    d.BL();  // first row
    d.BL();  // last row
  }
}

void readContentR2010(DwgObjectContext& c, TableEntity& e) {
  DwgBitReader& d = c.d;
  d.RC();
  c.s.handle();
  d.BL();
  if (c.before(kDwgR2013)) d.B();
  else d.BL();
  readDwgTableContent(c, e);
  d.BS();
  e.horizontalDirection = d.vector3BD();
  skipBreaks(c);
  e.tableStyle = c.s.handle();
}

// Forgets a grid that could not be read to its end: the block still draws the table.
void dropDamagedGrid(DwgObjectContext& c, TableEntity& e) {
  c.loader.warn("table " + c.frame.handle.toHex() + ": its cells cannot be read");
  e.cells.clear();
  e.columnWidths.clear();
  e.rowHeights.clear();
  e.rows = e.columns = 0;
  c.s.data.clearOverrun();
  c.s.strings.clearOverrun();
  c.s.handles.clearOverrun();
}

}  // namespace

void readDwgTable(DwgObjectContext& c) {
  auto* e = c.newEntity<TableEntity>();
  readTablePlacement(c, *e);
  if (c.s.overrun()) return;
  if (c.atLeast(kDwgR2010)) readContentR2010(c, *e);
  else readGridR2000(c, *e);
  if (c.s.overrun()) dropDamagedGrid(c, *e);
}

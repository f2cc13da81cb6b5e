// The linked table data that R2010 and later tables embed: columns with their widths, rows with
// their heights and cells, and the merged cell ranges. A cell holds a list of contents (values,
// fields, blocks); the table keeps the first value's text or the first block, as a cell of the
// older grid would. Styles, formats and cached geometry are read only to get past them.
#include "kit/dwg/DwgLoader.h"
#include "kit/dwg/DwgTableParts.h"

namespace {

enum : int32_t { kContentValue = 1, kContentField = 2, kContentBlock = 4 };
enum : int16_t { kTextCell = 1, kBlockCell = 2 };

void readContent(DwgObjectContext& c, TableCell& cell, bool first) {
  DwgBitReader& d = c.d;
  int32_t type = d.BL();
  std::string text;
  OdDbHandle block;
  if (type == kContentValue) text = readDwgTableValue(c);
  else if (type == kContentField) c.s.handle();
  else if (type == kContentBlock) block = c.s.handle();
  uint32_t attributes = c.boundedCount(d.BL(), 6);
  for (uint32_t i = 0; i < attributes && !c.s.overrun(); ++i) {
    c.s.handle();  // attribute definition
    c.s.text();    // value
    d.BL();        // index
  }
  if (d.BS()) skipDwgContentFormat(c);
  if (!first) return;
  if (type == kContentBlock) {
    cell.type = kBlockCell;
    cell.block = block;
  } else {
    cell.text = std::move(text);
  }
}

// Sizes and positions of the contents as last laid out.
void skipCellGeometry(DwgObjectContext& c) {
  DwgBitReader& d = c.d;
  if (!d.BL()) return;
  d.BL();  // flags
  d.BD();  // width with margins
  d.BD();  // height with margins
  uint32_t count = c.boundedCount(d.BL(), 20);
  c.s.handle();  // table geometry
  for (uint32_t i = 0; i < count && !c.s.overrun(); ++i) {
    d.point3BD();  // to the top left
    d.point3BD();  // to the centre
    for (int k = 0; k < 4; ++k) d.BD();  // content and cell sizes
    d.BL();
  }
}

void readCell(DwgObjectContext& c, TableCell& cell) {
  DwgBitReader& d = c.d;
  d.BL();      // state
  c.s.text();  // tool tip
  d.BL();      // custom data
  skipDwgTableCustomData(c);
  if (d.BL()) {  // linked to a data link
    c.s.handle();
    d.BL();
    d.BL();
    d.BL();
  }
  uint32_t contents = c.boundedCount(d.BL(), 8);
  for (uint32_t i = 0; i < contents && !c.s.overrun(); ++i) readContent(c, cell, i == 0);
  skipDwgCellStyle(c);
  d.BL();  // style id
  skipCellGeometry(c);
}

// What closes a column or a row: custom data, its cell style and style id, then its size.
double readSizeAfterStyle(DwgObjectContext& c) {
  DwgBitReader& d = c.d;
  d.BL();  // custom data
  skipDwgTableCustomData(c);
  skipDwgCellStyle(c);
  d.BL();  // style id
  return d.BD();
}

void readColumns(DwgObjectContext& c, TableEntity& e) {
  uint32_t columns = c.boundedCount(c.d.BL(), 12);
  for (uint32_t i = 0; i < columns && !c.s.overrun(); ++i) {
    c.s.text();  // name
    e.columnWidths.push_back(readSizeAfterStyle(c));
  }
}

void readRows(DwgObjectContext& c, TableEntity& e) {
  DwgBitReader& d = c.d;
  uint32_t rows = c.boundedCount(d.BL(), 12);
  for (uint32_t r = 0; r < rows && !c.s.overrun(); ++r) {
    // Every row has a cell per column; any other count means the data is damaged.
    uint32_t cells = c.boundedCount(d.BL(), 16);
    if (cells != e.columnWidths.size()) {
      d.skip(d.bitsLeft() + 1);
      return;
    }
    for (uint32_t k = 0; k < cells && !c.s.overrun(); ++k) readCell(c, e.cells.emplace_back());
    e.rowHeights.push_back(readSizeAfterStyle(c));
  }
}

// Merged ranges give their top left cell the span and mark the cells they cover. Ranges do not
// overlap, so together they cover at most every cell once: more means damage, and stops the
// marking before it takes long.
void readMergedRanges(DwgObjectContext& c, TableEntity& e) {
  DwgBitReader& d = c.d;
  uint32_t ranges = c.boundedCount(d.BL(), 8);
  const int64_t rows = int64_t(e.rowHeights.size()), columns = int64_t(e.columnWidths.size());
  int64_t uncovered = int64_t(e.cells.size());
  for (uint32_t i = 0; i < ranges && !c.s.overrun(); ++i) {
    int64_t top = d.BL(), left = d.BL(), bottom = d.BL(), right = d.BL();
    if (top < 0 || left < 0 || bottom < top || right < left || bottom >= rows || right >= columns) continue;
    uncovered -= (bottom - top + 1) * (right - left + 1);
    if (uncovered < 0) return;
    for (int64_t r = top; r <= bottom; ++r) {
      for (int64_t k = left; k <= right; ++k) e.cells[size_t(r * columns + k)].merged = true;
    }
    TableCell& corner = e.cells[size_t(top * columns + left)];
    corner.merged = false;
    corner.mergedRows = int32_t(bottom - top + 1);
    corner.mergedColumns = int32_t(right - left + 1);
  }
}

}  // namespace

void readDwgTableContent(DwgObjectContext& c, TableEntity& e) {
  DwgBitReader& d = c.d;
  c.s.text();  // name
  c.s.text();  // description
  readColumns(c, e);
  readRows(c, e);
  uint32_t fields = c.boundedCount(d.BL(), 8, c.s.handleSource());
  for (uint32_t i = 0; i < fields && !c.s.overrun(); ++i) c.s.handle();
  skipDwgCellStyle(c);  // the table's own
  if (!c.s.overrun()) readMergedRanges(c, e);
  e.columns = int32_t(e.columnWidths.size());
  e.rows = int32_t(e.rowHeights.size());
}

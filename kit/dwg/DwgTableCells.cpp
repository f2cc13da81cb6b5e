// The cells of an ACAD_TABLE up to R2007, row by row after the row heights, and the overrides the
// table itself carries after them. Overrides are read only to get past them: the anonymous block
// already shows their effect. Handles come in the same order from the handle stream: each cell's
// text field or block, its attribute definitions and its text style.
#include "kit/dwg/DwgLoader.h"
#include "kit/dwg/DwgTableParts.h"

namespace {

enum : int16_t { kTextCell = 1, kBlockCell = 2 };

// Cell override bits and what each adds, in stored order.
void skipCellOverrides(DwgObjectContext& c) {
  DwgBitReader& d = c.d;
  uint32_t flags = uint32_t(d.BL());
  d.RC();  // virtual edges
  if (flags & 0x01) d.RS();  // alignment
  if (flags & 0x02) d.B();   // no background fill
  if (flags & 0x04) skipDwgTableColor(c);  // background
  if (flags & 0x08) skipDwgTableColor(c);  // content colour
  if (flags & 0x10) c.s.handle();          // text style
  if (flags & 0x20) d.BD();                // text height
  // Grid colour, lineweight and visibility per edge: top, right, bottom, left.
  for (uint32_t edge = 0; edge < 4; ++edge) {
    if (flags & (0x40u << edge)) skipDwgTableColor(c);
    if (flags & (0x400u << edge)) d.BS();
    if (flags & (0x4000u << edge)) d.BS();
  }
}

void readBlockCellAttributes(DwgObjectContext& c) {
  DwgBitReader& d = c.d;
  uint32_t count = c.boundedCount(d.BS(), 2);
  for (uint32_t i = 0; i < count && !c.s.overrun(); ++i) {
    c.s.handle();  // attribute definition
    d.BS();        // index
    c.s.text();    // value
  }
}

void readCell(DwgObjectContext& c, TableCell& cell) {
  DwgBitReader& d = c.d;
  cell.type = d.BS();
  cell.flags = d.RC();
  cell.merged = d.B();
  d.B();  // fit to content
  cell.mergedColumns = d.BL();
  cell.mergedRows = d.BL();
  d.BD();  // rotation
  if (cell.type == kTextCell) {
    c.s.handle();  // field
    // From R2007 on the text is the cell's value, after the overrides.
    if (c.before(kDwgR2007)) cell.text = c.s.text();
  } else if (cell.type == kBlockCell) {
    cell.block = c.s.handle();
    d.BD();  // scale
    if (d.B()) readBlockCellAttributes(c);
  }
  if (d.B()) skipCellOverrides(c);
  if (c.atLeast(kDwgR2007)) {
    d.BL();
    std::string value = readDwgTableValue(c);
    if (cell.type == kTextCell) cell.text = std::move(value);
  }
}

// The table's overrides of its style: rows, text styles and heights.
void skipTableOverrides(DwgObjectContext& c) {
  DwgBitReader& d = c.d;
  uint32_t flags = uint32_t(d.BL());
  if (flags & 0x0001) d.B();  // title suppressed
  d.B();                      // header suppressed
  if (flags & 0x0004) d.BS();  // flow direction
  if (flags & 0x0008) d.BD();  // horizontal margin
  if (flags & 0x0010) d.BD();  // vertical margin
  for (uint32_t bit = 0x0020; bit <= 0x0080; bit <<= 1) {
    if (flags & bit) skipDwgTableColor(c);  // title, header, data text colours
  }
  for (uint32_t bit = 0x0100; bit <= 0x0400; bit <<= 1) {
    if (flags & bit) d.B();  // no fill
  }
  for (uint32_t bit = 0x0800; bit <= 0x2000; bit <<= 1) {
    if (flags & bit) skipDwgTableColor(c);  // fill colours
  }
  for (uint32_t bit = 0x4000; bit <= 0x10000; bit <<= 1) {
    if (flags & bit) d.BS();  // alignments
  }
  for (uint32_t bit = 0x20000; bit <= 0x80000; bit <<= 1) {
    if (flags & bit) c.s.handle();  // text styles
  }
  for (uint32_t bit = 0x100000; bit <= 0x400000; bit <<= 1) {
    if (flags & bit) d.BD();  // row heights
  }
}

// Border colours, lineweights or visibilities of the three row kinds: one value per set bit.
template <class Skip>
void skipBorderOverrides(DwgObjectContext& c, Skip skip) {
  if (!c.d.B()) return;
  uint32_t flags = uint32_t(c.d.BL());
  for (uint32_t bit = 1; bit <= 0x20000; bit <<= 1) {
    if (flags & bit) skip();
  }
}

}  // namespace

void readDwgTableCellGrid(DwgObjectContext& c, TableEntity& e) {
  size_t count = size_t(e.rows) * size_t(e.columns);
  // A cell takes at least 18 bits.
  count = c.boundedCount(int64_t(count), 18);
  e.cells.reserve(count);
  for (size_t i = 0; i < count && !c.s.overrun(); ++i) readCell(c, e.cells.emplace_back());
  if (c.d.B()) skipTableOverrides(c);
  skipBorderOverrides(c, [&] { skipDwgTableColor(c); });
  skipBorderOverrides(c, [&] { c.d.BS(); });
  skipBorderOverrides(c, [&] { c.d.BS(); });
}

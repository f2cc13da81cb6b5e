// DWG tables: the cell grid of every release matches the DXF twin of the drawing cell for cell,
// tables keep the block that draws them, and damage to a table's data costs its cells and
// nothing else.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "kit/db/DatabaseDump.h"
#include "kit/dwg/DwgLoader.h"
#include "tests/kit/DwgTestSupport.h"

namespace {

struct TableCase {
  const char* file;  // DWG with a DXF twin
  uint64_t handle;
  int rows;
  int columns;
  const char* firstText;
  int titleSpan;  // columns the first cell spans
};

// R13 and R14 DXF files cannot hold tables: those DWGs are checked against the R2000 twin.
const TableCase kTables[] = {
    {"dwg/2000/TS1.dwg", 0x236, 3, 5, "some text", 5},
    {"dwg/example_2000.dwg", 0x4F2, 20, 9, "test", 9},
    {"dwg/example_2004.dwg", 0x4F2, 20, 9, "test", 9},
    {"dwg/example_2007.dwg", 0x4F2, 20, 9, "test", 9},
    {"dwg/example_2010.dwg", 0x4F2, 20, 9, "test", 9},
    {"dwg/example_2013.dwg", 0x4F2, 20, 9, "test", 9},
    {"dwg/example_2018.dwg", 0x4F2, 20, 9, "test", 9},
    {"dwg/example_r13.dwg", 0x4F2, 20, 9, "test", 9},
    {"dwg/example_r14.dwg", 0x4F2, 20, 9, "test", 9},
};

std::string twinOf(const std::string& dwg) {
  if (dwg == "dwg/example_r13.dwg" || dwg == "dwg/example_r14.dwg") return "dwg/example_2000.dxf";
  return dwg.substr(0, dwg.size() - 4) + ".dxf";
}

// DXF writes sizes with 16 significant digits.
void expectNear(const std::vector<double>& dwg, const std::vector<double>& dxf) {
  ASSERT_EQ(dwg.size(), dxf.size());
  for (size_t i = 0; i < dwg.size(); ++i) EXPECT_NEAR(dwg[i], dxf[i], 1e-12 * std::max(1.0, std::fabs(dxf[i])));
}

void expectSameCells(const TableEntity& dwg, const TableEntity& dxf) {
  ASSERT_EQ(dwg.cells.size(), dxf.cells.size());
  for (size_t i = 0; i < dwg.cells.size(); ++i) {
    const TableCell& a = dwg.cells[i];
    const TableCell& b = dxf.cells[i];
    SCOPED_TRACE("cell " + std::to_string(i));
    EXPECT_EQ(a.type, b.type);
    EXPECT_EQ(a.text, b.text);
    EXPECT_EQ(a.merged, b.merged);
    EXPECT_EQ(a.mergedColumns, b.mergedColumns);
    EXPECT_EQ(a.mergedRows, b.mergedRows);
    EXPECT_EQ(a.block, b.block);
  }
}

TEST(DwgTables, EveryReleaseGivesTheCellsOfItsDxfTwin) {
  for (const TableCase& t : kTables) {
    SCOPED_TRACE(t.file);
    OdDbDatabasePtr dwgDb = readDwgFile(corpusPath(t.file));
    OdDbDatabasePtr dxfDb = readDxfFile(corpusPath(twinOf(t.file)));
    const auto* dwg = dwgDb->findAs<TableEntity>(OdDbHandle(t.handle));
    const auto* dxf = dxfDb->findAs<TableEntity>(OdDbHandle(t.handle));
    ASSERT_NE(dwg, nullptr);
    ASSERT_NE(dxf, nullptr);
    EXPECT_EQ(dwg->rows, t.rows);
    EXPECT_EQ(dwg->columns, t.columns);
    expectNear(dwg->rowHeights, dxf->rowHeights);
    expectNear(dwg->columnWidths, dxf->columnWidths);
    EXPECT_EQ(dwg->tableStyle, dxf->tableStyle);
    EXPECT_NEAR(dwg->position.distanceTo(dxf->position), 0.0, 1e-9);
    EXPECT_EQ(dwg->horizontalDirection, dxf->horizontalDirection);
    ASSERT_EQ(dwg->cells.size(), size_t(t.rows) * size_t(t.columns));
    EXPECT_EQ(dwg->cells[0].text, t.firstText);
    EXPECT_EQ(dwg->cells[0].mergedColumns, t.titleSpan);
    expectSameCells(*dwg, *dxf);
    // The vectorizer draws the table from its block.
    ASSERT_NE(dwg->block, nullptr);
    EXPECT_FALSE(dwg->block->entities.empty());
  }
}

// The objects section offset of an object, through the loader's own map.
uint64_t objectOffset(const std::string& bytes, uint64_t handle) {
  OdDbDatabase db;
  DwgLoader loader(bytes, db, {}, "table test");
  loader.load();
  int64_t index = loader.indexOf(OdDbHandle(handle));
  return index < 0 ? 0 : loader.map_[size_t(index)].offset;
}

// The dump of everything but tables, to see that damage to a table touches nothing else.
std::string dumpWithoutTables(const OdDbDatabase& db) {
  std::string all = dumpDatabase(db, {.loadReport = false}), kept;
  size_t start = 0;
  while (start < all.size()) {
    size_t end = all.find('\n', start);
    if (end == std::string::npos) end = all.size();
    std::string line = all.substr(start, end - start);
    if (line.find("ACAD_TABLE ") == std::string::npos) kept += line + '\n';
    start = end + 1;
  }
  return kept;
}

// A run of bytes of a table object overwritten, counted back from the end of its data. TS1's
// table keeps its references in the last 30 bytes, its own values in the 200 before them (the
// graphics AutoCAD stores with it come first).
struct Damage {
  const char* what;
  size_t firstFromEnd;
  size_t lastFromEnd;
  uint8_t fill;
  bool blockKept;
};

// TS1's bytes, with where its table's data lies.
struct TableBytes {
  std::string bytes;
  size_t dataStart = 0;
  size_t dataEnd = 0;
};

TableBytes ts1Table() {
  TableBytes t;
  t.bytes = readBytes(corpusPath("dwg/2000/TS1.dwg"));
  const uint64_t offset = objectOffset(t.bytes, 0x236);
  // R2000 objects start with their size as a modular short; this one needs one 15-bit unit.
  const auto lo = uint8_t(t.bytes[offset]), hi = uint8_t(t.bytes[offset + 1]);
  if (offset == 0 || (hi & 0x80)) return t;
  t.dataStart = offset + 2;
  t.dataEnd = t.dataStart + (lo | size_t(hi) << 8);
  return t;
}

TEST(DwgTables, DamagedTableDataCostsOnlyItsCells) {
  const TableBytes intact = ts1Table();
  ASSERT_GT(intact.dataEnd, intact.dataStart + 300);
  const std::string expected = dumpWithoutTables(*readDwgBuffer(intact.bytes));

  // Zeros make every cell look far longer than it is, ones give unknown cell kinds: either way
  // the cells run past the data.
  const Damage kDamage[] = {
      {"cells zeroed", 130, 32, 0x00, true},
      {"cells of ones", 130, 32, 0xFF, true},
      {"last cells zeroed", 70, 32, 0x00, true},
      {"grid, cells and references zeroed", 180, 0, 0x00, false},
  };
  for (const Damage& d : kDamage) {
    SCOPED_TRACE(d.what);
    std::string bytes = intact.bytes;
    for (size_t i = intact.dataEnd - d.firstFromEnd; i < intact.dataEnd - d.lastFromEnd; ++i) bytes[i] = char(d.fill);
    OdDbDatabasePtr db;
    ASSERT_NO_THROW(db = readDwgBuffer(bytes));
    EXPECT_EQ(dumpWithoutTables(*db), expected);
    const auto* table = db->findAs<TableEntity>(OdDbHandle(0x236));
    ASSERT_NE(table, nullptr);
    EXPECT_TRUE(table->cells.empty());
    EXPECT_EQ(table->rows * table->columns, 0);
    EXPECT_EQ(table->block != nullptr, d.blockKept);
    if (table->block) {
      EXPECT_EQ(table->block->name, "*T1");
    }
  }
}

// Random bytes anywhere in the table's own values: never an error, a crash or a hang, and the
// grid is whole or gone.
TEST(DwgTables, RandomBytesInTableValuesAreSurvived) {
  const TableBytes intact = ts1Table();
  ASSERT_GT(intact.dataEnd, intact.dataStart + 300);
  const std::string expected = dumpWithoutTables(*readDwgBuffer(intact.bytes));
  const size_t first = intact.dataEnd - 200, count = 200 - 32;
  for (unsigned seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    srandom(seed);
    std::string bytes = intact.bytes;
    for (int i = 0, n = 1 + int(random() % 8); i < n; ++i) bytes[first + size_t(random()) % count] = char(random());
    OdDbDatabasePtr db;
    ASSERT_NO_THROW(db = readDwgBuffer(bytes));
    EXPECT_EQ(dumpWithoutTables(*db), expected);
    if (const auto* table = db->findAs<TableEntity>(OdDbHandle(0x236))) {
      EXPECT_TRUE(table->cells.empty() || table->cells.size() == size_t(table->rows) * size_t(table->columns));
    }
  }
}

}  // namespace

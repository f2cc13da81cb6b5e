// The parts an ACAD_TABLE is made of in DWG, shared by its two layouts: the cell grid of R2007
// and before (DwgTableCells.cpp), the linked table data of R2010 and later
// (DwgTableContent.cpp), and the values and formats of R2007 and later (DwgTableFormats.cpp).
//
// Every reader reads through the context's streams and leaves them where the part ends; a
// damaged part shows as an overrun of the streams, which the caller checks.
#pragma once

#include <string>

#include "kit/db/Entities.h"

class DwgObjectContext;

// A cell value: its text, as a cell shows it. The data string for text values, else the
// formatted value string.
std::string readDwgTableValue(DwgObjectContext& c);
// A list of named values attached to cells, rows and columns.
void skipDwgTableCustomData(DwgObjectContext& c);
// A content format and a cell style (the latter holds a content format, margins and borders).
void skipDwgContentFormat(DwgObjectContext& c);
void skipDwgCellStyle(DwgObjectContext& c);
// A colour as tables keep it in every release: index, true colour and names.
void skipDwgTableColor(DwgObjectContext& c);

// R2007 and before: the cells after the row heights, then the table's own overrides and
// borders, filling e.cells row by row.
void readDwgTableCellGrid(DwgObjectContext& c, TableEntity& e);
// R2010 and later: the linked table data (columns, rows with their cells, merged ranges) as the
// table entity embeds it, filling the grid and the cells.
void readDwgTableContent(DwgObjectContext& c, TableEntity& e);

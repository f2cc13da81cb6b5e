// Readers of table control objects and table records (DwgTableRecords.cpp, DwgDimStyle.cpp,
// DwgBlockHeader.cpp), called by the dispatch.
#pragma once

#include <cstdint>

class DwgObjectContext;

void readDwgControlObject(DwgObjectContext& c);
void readDwgAppId(DwgObjectContext& c);
void readDwgTextStyle(DwgObjectContext& c);
void readDwgLinetype(DwgObjectContext& c);
void readDwgLayer(DwgObjectContext& c);
void readDwgView(DwgObjectContext& c);
void readDwgUcs(DwgObjectContext& c);
void readDwgViewportRecord(DwgObjectContext& c);
void readDwgDimStyle(DwgObjectContext& c);
void readDwgBlockHeader(DwgObjectContext& c);
// The xref bits every record has after its name, as group 70 bits (referenced, xref
// dependent): before R2007 a referenced bit, the xref index and a dependent bit; from R2007
// the xref index alone, whose 0x100 bit says the record depends on an xref.
int16_t readDwgRecordFlags(DwgObjectContext& c);

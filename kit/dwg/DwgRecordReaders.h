// Readers of table control objects and table records (DwgTableRecords.cpp, DwgDimStyle.cpp,
// DwgBlockHeader.cpp), called by the dispatch.
#pragma once

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

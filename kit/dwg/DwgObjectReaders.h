// Readers of non-graphical objects (DwgObjects.cpp, DwgXRecord.cpp), called by the dispatch.
#pragma once

#include "kit/db/Objects.h"

class DwgObjectContext;

void readDwgDictionary(DwgObjectContext& c);
void readDwgDictionaryWithDefault(DwgObjectContext& c);
void readDwgDictionaryVariable(DwgObjectContext& c);
void readDwgLayout(DwgObjectContext& c);
void readDwgPlotSettingsObject(DwgObjectContext& c);
void readDwgImageDefinition(DwgObjectContext& c);
void readDwgGroup(DwgObjectContext& c);
void readDwgMLineStyle(DwgObjectContext& c);
void readDwgSortEntsTable(DwgObjectContext& c);
void readDwgSpatialFilter(DwgObjectContext& c);
void readDwgUnderlayDefinition(DwgObjectContext& c, UnderlayDefinitionObject::Format format);
void readDwgXRecord(DwgObjectContext& c);
void readDwgBookColour(DwgObjectContext& c);

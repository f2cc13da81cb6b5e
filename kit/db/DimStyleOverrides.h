// Dimension variables as an entity sees them: the values its own extended data overrides (the
// "DSTYLE" list under the ACAD application, pairs of a 1070 variable code and its value) win
// over those of its dimension style, which win over AutoCAD's defaults.
#pragma once

#include "kit/db/DbObject.h"
#include "kit/db/SymbolTables.h"

double dimensionVariable(const DbObject& entity, const DimStyleRecord* style, int code, double fallback);
int64_t dimensionInteger(const DbObject& entity, const DimStyleRecord* style, int code, int64_t fallback);
std::string dimensionString(const DbObject& entity, const DimStyleRecord* style, int code);
OdDbHandle dimensionHandle(const DbObject& entity, const DimStyleRecord* style, int code);

// DIMASZ times DIMSCALE: the size of arrowheads and of a leader's hook line.
double dimensionArrowSize(const DbObject& entity, const DimStyleRecord* style);

// The CSV list written beside an SVG file: one line per layer, then one per closed shape of model
// space with its area, each marked "hidden" or "visible" by its layer.
#pragma once

#include <string>

#include "kit/base/OdString.h"

class OdDbDatabase;

// The process-wide value written in the fifth field of every layer line; 1 at start.
extern int g_CsvValue;

// The CSV file's name: `csvFileName` when one was given, else `outputName` with ".svg" replaced by
// ".csv" (".csv" appended when the name does not end in ".svg").
OdString CsvListName(const OdString& outputName, const OdString& csvFileName);
// The whole file: layer lines in table order, then shape lines in model-space order.
std::string CsvListText(const OdDbDatabase& database);

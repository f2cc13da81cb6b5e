// Which loader an input file goes to, from the last four characters of its name (lower-cased) and
// the forced kind (TREATAS). A kind matches when those four characters begin with its extension,
// so five-letter extensions (".jpeg", ".webp") never match and ".g3" matches ".g3x".
#pragma once

#include "kit/base/OdString.h"

enum class InputRoute { kDwf, kPdf, kDgn, kRaster, kDwg, kDxf, kUnknown };

// Forced kinds (TREATAS) that change the route.
constexpr int kTreatAsDwf = 1000;
constexpr int kTreatAsDgn = 1018;

// The last four characters in lower case; empty for a path of four characters or fewer.
OdString InputExtension(const OdString& path);
InputRoute ChooseInputRoute(const OdString& extension, int treatAs);

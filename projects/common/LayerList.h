// The ";"-separated layer lists of a run (room layers, text layers, layers off and on), split
// in one place so every reader sees the same names.
#pragma once

#include <vector>

#include "kit/base/OdString.h"

// The names of the list in order, without empty pieces ("A;;B;" gives A and B). Names keep their
// blanks: a layer may be called " A".
std::vector<OdString> SplitLayerList(const OdString& list);

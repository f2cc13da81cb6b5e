// The groups of an entity or object of a class this kit does not read, as AutoCAD writes proxies
// to DXF.
#pragma once

#include "kit/db/TaggedValue.h"

class DwgObjectContext;
struct DwgClass;

// Reads the rest of the object (its value, string and handle streams, positioned after the
// common data) into `out`.
void keepDwgProxyData(DwgObjectContext& c, const DwgClass& cls, bool isEntity, TaggedValues& out);

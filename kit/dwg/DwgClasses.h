// The classes section: the application classes whose objects have type numbers of 500 and up.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kit/db/OdDbDatabase.h"

class DwgStreams;

struct DwgClass {
  int number = 0;
  DatabaseClass info;
};

// Reads class records from `s` (positioned after the section's size field) up to `endBit`.
void readDwgClasses(DwgStreams& s, size_t endBit, std::vector<DwgClass>& classes);

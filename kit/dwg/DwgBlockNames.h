// Anonymous blocks carry only their prefix in DWG files ("*D", "*U", "*X", and every layout's
// block is "*Paper_Space"); the numbers that make their names unique are given at load time.
#pragma once

#include "kit/db/Handle.h"

class OdDbDatabase;

// Names every anonymous block uniquely: "*D1", "*D2", ... per prefix, and "*Paper_Space0", ...
// for the layout blocks other than `paperSpace`, in table order. Names already unique stay.
void numberDwgAnonymousBlocks(OdDbDatabase& db, OdDbHandle paperSpace);

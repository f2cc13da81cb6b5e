// The header variables section: every variable in its release's order. Values are kept in the
// database header the way a DXF file would give them ("$LUNITS" 70 = 2 ...), the typed ones are
// set on their fields, and the handles the rest of the load needs (current layer, tables, named
// objects dictionary, ...) are handed back, to be turned into names once the objects are read.
#pragma once

#include <cstdint>

#include "kit/db/Handle.h"

class DwgStreams;
struct DatabaseHeader;

struct DwgHeaderHandles {
  OdDbHandle currentLayer;
  OdDbHandle textStyle;
  OdDbHandle currentLinetype;
  OdDbHandle dimStyle;
  OdDbHandle multilineStyle;
  OdDbHandle dimTextStyle;
  OdDbHandle blockControl;
  OdDbHandle layerControl;
  OdDbHandle styleControl;
  OdDbHandle linetypeControl;
  OdDbHandle viewControl;
  OdDbHandle ucsControl;
  OdDbHandle vportControl;
  OdDbHandle appIdControl;
  OdDbHandle dimStyleControl;
  OdDbHandle groupDictionary;
  OdDbHandle multilineStyleDictionary;
  OdDbHandle namedObjectsDictionary;
  OdDbHandle layoutDictionary;
  OdDbHandle paperSpaceBlock;
  OdDbHandle modelSpaceBlock;
  OdDbHandle linetypeByLayer;
  OdDbHandle linetypeByBlock;
  OdDbHandle linetypeContinuous;
};

// Reads the variables from `s` (positioned at the first one). Returns false when the data ran
// out before the last variable; what was read is kept.
bool readDwgHeaderVariables(DwgStreams& s, DatabaseHeader& header, DwgHeaderHandles& handles);

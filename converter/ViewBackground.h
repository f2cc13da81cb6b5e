// The palette and background colours of a view, chosen by the BG setting.
#pragma once

#include "kit/gs/OdGsPalette.h"

struct ViewBackground {
  bool lightPalette;     // white at index 0 and black at 7; the driver's white-background flag
  ODCOLORREF device;     // the device's background colour
  ODCOLORREF paper;      // the drawing context's paper colour
};

// background: -1 not set, 0 black, 255 white, anything else grey. `modelActiveOrDwf`: model space
// is the active space (TILEMODE) or the drawing came from DWF.
ViewBackground ChooseViewBackground(int background, bool modelActiveOrDwf);

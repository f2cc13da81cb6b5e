// The kit objects of one vector run, process-wide as the kit's callbacks expect: the drawing
// context, the vectorization device and the layout helper of the view being converted.
#pragma once

#include "kit/gs/OdGiContextForDbDatabase.h"
#include "kit/gs/OdGsDevice.h"
#include "kit/gs/OdGsLayoutHelper.h"

extern OdGiContextForDbDatabasePtr g_pContext;
extern OdGsDevicePtr g_pDevice;
extern OdGsLayoutHelperPtr g_pLayoutHelper;

// The system's vectorization device (device type 1), drawing into the process-wide output driver;
// null when it cannot be made.
OdGsDevicePtr CreateVectorizationDevice();

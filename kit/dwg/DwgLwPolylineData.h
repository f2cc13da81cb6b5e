// The values of a lightweight polyline as DWG files write them, from its flags to its widths:
// read for LWPOLYLINE entities and for the polylines inside proxy graphics.
#pragma once

#include "kit/db/Entities.h"
#include "kit/dwg/DwgBitReader.h"

// Reads into `e`; counts beyond what the stream can hold mark it as overrun and read nothing.
void readDwgLwPolylineData(DwgBitReader& d, int version, LwPolylineEntity& e);

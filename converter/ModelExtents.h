// The extents of model space as the converter uses them to fit views: the header's when they can
// be trusted, otherwise those of what model space draws.
#pragma once

#include "kit/db/OdDbDatabase.h"

// False for header extents never set (at or beyond 1e15, or minimum above maximum), not numbers,
// or shrunk to one point.
bool HeaderExtentsValid(const OdGePoint3d& low, const OdGePoint3d& high);

// The header's model extents when valid, else the geometry's, else the drawing limits.
void ModelExtents(const OdDbDatabase& db, OdGePoint3d& low, OdGePoint3d& high);

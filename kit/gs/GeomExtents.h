// Geometric extents: the box of what regeneration draws for an entity or a block, found by
// regenerating into a conveyor that only widens a box.
#pragma once

#include "kit/base/Geometry.h"
#include "kit/db/OdDbDatabase.h"

// The extents of one entity in the coordinates of its block; false when it draws nothing (an
// entity on a layer that is off or frozen draws nothing).
bool entityGeomExtents(const OdDbDatabase& db, const Entity& entity, OdGeExtents3d& extents);
// The extents of a block's visible entities (layers off or frozen and invisible entities left out),
// in block coordinates; false when nothing is drawn.
bool blockGeomExtents(const OdDbDatabase& db, const BlockRecord& block, OdGeExtents3d& extents);
// The block's extents measured after `transform` (a view's world-to-eye matrix): the box of what
// the block draws as seen along another direction; false when nothing is drawn.
bool blockGeomExtents(const OdDbDatabase& db, const BlockRecord& block, const OdGeMatrix3d& transform,
                      OdGeExtents3d& extents);

// The outline of a closed entity (a polyline, circle, ellipse, spline, region ...) as point loops:
// what clips a viewport whose boundary is another entity.
#pragma once

#include <vector>

#include "kit/base/Geometry.h"
#include "kit/db/OdDbDatabase.h"

// The xy points of the entity's first drawn loop, curves broken within `deviation`; empty when
// the entity draws no loop of at least three points. The last point does not repeat the first.
std::vector<OdGePoint2d> entityOutline(const OdDbDatabase& db, const Entity& entity, double deviation);
// Every loop the entity draws (a region with holes draws several), in the order drawn; point lists
// that continue one another are joined first. Loops of fewer than three points are left out.
std::vector<std::vector<OdGePoint2d>> entityOutlines(const OdDbDatabase& db, const Entity& entity, double deviation);

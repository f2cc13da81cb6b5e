// Primitives drawn with the current entity's linetype: continuous ones go to the conveyor as they
// are; dashed ones are cut into dashes first (arcs into arc pieces, everything else into point
// lists). Coordinates are those of the block being drawn.
#pragma once

#include <vector>

#include "kit/gi/GiCurves.h"
#include "kit/gi/LinetypeDashes.h"
#include "kit/gi/OdGiConveyorGeometry.h"
#include "kit/gi/regen/GiRegenContext.h"

namespace gi {

// The dash pattern of the current traits, or a continuous one when the linetype is continuous or
// its dashes would be too small to see at the output's resolution.
DashPattern currentDashes(GiRegenContext& ctx);

void drawChain(GiRegenContext& ctx, const std::vector<OdGePoint3d>& points, const OdGeVector3d* normal = nullptr);
void drawCircle(GiRegenContext& ctx, const OdGePoint3d& center, double radius, const OdGeVector3d& normal);
void drawArc(GiRegenContext& ctx, const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
             const OdGeVector3d& startVector, double sweep);
void drawEllipse(GiRegenContext& ctx, const OdGeEllipArc3d& arc);
void drawNurbs(GiRegenContext& ctx, const OdGeNurbCurve3d& curve);
// A lightweight polyline; with `continuousPattern` (PLINEGEN) the pattern runs on across vertices,
// otherwise it starts again at each vertex.
void drawPline(GiRegenContext& ctx, const OdGiPolyline& polyline, bool continuousPattern);
// A filled area (fill type set to "always" for it and restored after).
void drawFilledPolygon(GiRegenContext& ctx, const std::vector<OdGePoint3d>& points, const OdGeVector3d* normal);

}  // namespace gi

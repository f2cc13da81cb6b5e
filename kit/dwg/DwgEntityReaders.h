// Readers of entity kinds (DwgEntities*.cpp), called by the dispatch with the frame read.
#pragma once

#include "kit/db/Entities.h"

class OdDbDatabase;

class DwgObjectContext;

void readDwgLine(DwgObjectContext& c);
void readDwgPoint(DwgObjectContext& c);
void readDwgCircle(DwgObjectContext& c);
void readDwgArc(DwgObjectContext& c);
void readDwgEllipse(DwgObjectContext& c);
void readDwgRay(DwgObjectContext& c);
void readDwgXLine(DwgObjectContext& c);
void readDwgSolid(DwgObjectContext& c);
void readDwgTrace(DwgObjectContext& c);
void readDwgFace(DwgObjectContext& c);
void readDwgLwPolyline(DwgObjectContext& c);
void readDwgSpline(DwgObjectContext& c);
void readDwgHelix(DwgObjectContext& c);
// The B-spline part SPLINE and HELIX share.
void readDwgSplineData(DwgObjectContext& c, SplineData& s);

void readDwgBlockBegin(DwgObjectContext& c);
void readDwgBlockEnd(DwgObjectContext& c);
void readDwgSequenceEnd(DwgObjectContext& c);
// The scale of a block reference: three bit doubles before R2000, then a flag for the common cases.
OdGeVector3d readDwgInsertScale(DwgObjectContext& c);
void readDwgInsert(DwgObjectContext& c);
void readDwgMInsert(DwgObjectContext& c);
void readDwgPolyline2d(DwgObjectContext& c);
void readDwgPolyline3d(DwgObjectContext& c);
void readDwgPolyfaceMesh(DwgObjectContext& c);
void readDwgPolygonMesh(DwgObjectContext& c);
void readDwgVertex2d(DwgObjectContext& c);
void readDwgVertex3d(DwgObjectContext& c);
void readDwgFaceRecord(DwgObjectContext& c);

void readDwgText(DwgObjectContext& c);
void readDwgAttribute(DwgObjectContext& c);
void readDwgAttributeDefinition(DwgObjectContext& c);
void readDwgMText(DwgObjectContext& c);
void readDwgShape(DwgObjectContext& c);

void readDwgDimensionOrdinate(DwgObjectContext& c);
void readDwgDimensionLinear(DwgObjectContext& c);
void readDwgDimensionAligned(DwgObjectContext& c);
void readDwgDimensionAngular3Point(DwgObjectContext& c);
void readDwgDimensionAngular2Line(DwgObjectContext& c);
void readDwgDimensionRadius(DwgObjectContext& c);
void readDwgDimensionDiameter(DwgObjectContext& c);
void readDwgArcDimension(DwgObjectContext& c);
void readDwgLargeRadialDimension(DwgObjectContext& c);

void readDwgViewport(DwgObjectContext& c);
// Viewports of the active layout get their numbers in block order: 1 is the layout's own.
void numberDwgViewports(OdDbDatabase& db);

void readDwgHatch(DwgObjectContext& c);
void readDwgMPolygon(DwgObjectContext& c);
void readDwgMesh(DwgObjectContext& c);
void readDwgUnderlay(DwgObjectContext& c, UnderlayEntity::Format format);

void readDwgImage(DwgObjectContext& c);
void readDwgWipeout(DwgObjectContext& c);
void readDwgLeader(DwgObjectContext& c);
void readDwgTolerance(DwgObjectContext& c);
void readDwgMLine(DwgObjectContext& c);
void readDwgTable(DwgObjectContext& c);
void readDwgOle2Frame(DwgObjectContext& c);
void readDwgMLeader(DwgObjectContext& c);
void readDwgModelerGeometry(DwgObjectContext& c, const char* dxfName);

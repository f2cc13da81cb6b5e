// The regeneration of each entity family, called by regenEntity once the entity's traits are set.
// One file per family: RegenCurves, RegenPolylines, RegenMeshes, RegenSolids, RegenHatch,
// RegenInserts, RegenText, RegenMText, RegenAnnotations, RegenMLeader, RegenImages, RegenMLine,
// RegenProxyGraphics, RegenModelerGeometry.
#pragma once

#include "kit/gi/regen/GiRegenContext.h"

namespace gi {

void regenLine(GiRegenContext& ctx, const LineEntity& e);
void regenPoint(GiRegenContext& ctx, const PointEntity& e);
void regenCircle(GiRegenContext& ctx, const CircleEntity& e);
void regenArc(GiRegenContext& ctx, const ArcEntity& e);
void regenEllipse(GiRegenContext& ctx, const EllipseEntity& e);
void regenXLine(GiRegenContext& ctx, const XLineEntity& e);
void regenRay(GiRegenContext& ctx, const RayEntity& e);
void regenSpline(GiRegenContext& ctx, const SplineData& spline);

void regenLwPolyline(GiRegenContext& ctx, const LwPolylineEntity& e);
void regenPolyline(GiRegenContext& ctx, const PolylineEntity& e);

void regenPolygonMesh(GiRegenContext& ctx, const PolylineEntity& e);
void regenPolyfaceMesh(GiRegenContext& ctx, const PolylineEntity& e);
void regenFace(GiRegenContext& ctx, const FaceEntity& e);
void regenMesh(GiRegenContext& ctx, const MeshEntity& e);

void regenSolid(GiRegenContext& ctx, const OdGePoint3d (&corners)[4], const OdGeVector3d& normal);

void regenHatch(GiRegenContext& ctx, const HatchEntity& e);
void regenMPolygon(GiRegenContext& ctx, const MPolygonEntity& e);

void regenBlockReference(GiRegenContext& ctx, const BlockReferenceEntity& e);

void regenText(GiRegenContext& ctx, const TextData& text);
void regenAttribute(GiRegenContext& ctx, const AttributeEntity& e);
void regenAttributeDefinition(GiRegenContext& ctx, const AttributeDefinitionEntity& e);
void regenMText(GiRegenContext& ctx, const MTextData& text);

void regenDimension(GiRegenContext& ctx, const DimensionEntity& e);
// A dimension drawn from its definition points and dimension variables (no block to draw).
void regenDimensionFromStyle(GiRegenContext& ctx, const DimensionEntity& e);
// The text regenDimensionFromStyle draws (MText contents).
std::string regeneratedDimensionText(const OdDbDatabase& db, const DimensionEntity& e);
void regenLeader(GiRegenContext& ctx, const LeaderEntity& e);
void regenMLeader(GiRegenContext& ctx, const MLeaderEntity& e);
void regenTolerance(GiRegenContext& ctx, const ToleranceEntity& e);
void regenTable(GiRegenContext& ctx, const TableEntity& e);

void regenImageFrame(GiRegenContext& ctx, const RasterImageData& image);
void regenWipeout(GiRegenContext& ctx, const WipeoutEntity& e);
void regenUnderlay(GiRegenContext& ctx, const UnderlayEntity& e);
void regenOle2Frame(GiRegenContext& ctx, const Ole2FrameEntity& e);
void regenViewportFrame(GiRegenContext& ctx, const ViewportEntity& e);
void regenShape(GiRegenContext& ctx, const ShapeEntity& e);
void regenMLine(GiRegenContext& ctx, const MLineEntity& e);
void regenProxyEntity(GiRegenContext& ctx, const ProxyEntity& e);
void regenModelerGeometry(GiRegenContext& ctx, const ModelerGeometryEntity& e);

// Shared by several families: an arrowhead (a filled triangle) at `tip`, pointing away from `from`.
void drawArrowhead(GiRegenContext& ctx, const OdGePoint3d& tip, const OdGePoint3d& from, double size,
                   const OdGeVector3d& normal);

}  // namespace gi

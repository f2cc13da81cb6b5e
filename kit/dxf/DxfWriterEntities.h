// Entity writers, one per kind or family (DxfWriter*Entities.cpp). Each writes the whole entity,
// from "0 NAME" to its extended data, and what follows it (vertices, attributes, SEQEND).
#pragma once

#include "kit/dxf/DxfWriterContext.h"

// Curves and faces (DxfWriterCurveEntities.cpp).
void writeLine(DxfWriterContext& c, const LineEntity& e);
void writePoint(DxfWriterContext& c, const PointEntity& e);
void writeCircle(DxfWriterContext& c, const CircleEntity& e);
void writeArc(DxfWriterContext& c, const ArcEntity& e);
void writeEllipse(DxfWriterContext& c, const EllipseEntity& e);
void writeLwPolyline(DxfWriterContext& c, const LwPolylineEntity& e);
void writePolyline(DxfWriterContext& c, const PolylineEntity& e);
void writeSpline(DxfWriterContext& c, const SplineEntity& e);
void writeHelix(DxfWriterContext& c, const HelixEntity& e);
void writeXLine(DxfWriterContext& c, const XLineEntity& e);
void writeRay(DxfWriterContext& c, const RayEntity& e);
void writeSolid(DxfWriterContext& c, const SolidEntity& e);
void writeTrace(DxfWriterContext& c, const TraceEntity& e);
void writeFace(DxfWriterContext& c, const FaceEntity& e);

// Text (DxfWriterTextEntities.cpp).
void writeText(DxfWriterContext& c, const TextEntity& e);
void writeMText(DxfWriterContext& c, const MTextEntity& e);
void writeAttribute(DxfWriterContext& c, const AttributeEntity& e);
void writeAttributeDefinition(DxfWriterContext& c, const AttributeDefinitionEntity& e);
void writeShape(DxfWriterContext& c, const ShapeEntity& e);
void writeTolerance(DxfWriterContext& c, const ToleranceEntity& e);

// Annotation and references (DxfWriterAnnotationEntities.cpp).
void writeBlockReference(DxfWriterContext& c, const BlockReferenceEntity& e);
void writeDimension(DxfWriterContext& c, const DimensionEntity& e);
void writeLeader(DxfWriterContext& c, const LeaderEntity& e);
void writeMLeader(DxfWriterContext& c, const MLeaderEntity& e);
void writeTable(DxfWriterContext& c, const TableEntity& e);

// HATCH (DxfWriterHatchEntity.cpp).
void writeHatch(DxfWriterContext& c, const HatchEntity& e);
void writeMPolygon(DxfWriterContext& c, const MPolygonEntity& e);

// Images, viewports, OLE, multilines, underlays, modeler data, meshes and proxies
// (DxfWriterOtherEntities.cpp).
void writeRasterImage(DxfWriterContext& c, const RasterImageEntity& e);
void writeWipeout(DxfWriterContext& c, const WipeoutEntity& e);
void writeViewport(DxfWriterContext& c, const ViewportEntity& e);
void writeOle2Frame(DxfWriterContext& c, const Ole2FrameEntity& e);
void writeMLine(DxfWriterContext& c, const MLineEntity& e);
void writeUnderlay(DxfWriterContext& c, const UnderlayEntity& e);
void writeModelerGeometry(DxfWriterContext& c, const ModelerGeometryEntity& e);
void writeMesh(DxfWriterContext& c, const MeshEntity& e);
void writeProxyEntity(DxfWriterContext& c, const ProxyEntity& e);

// Groups the entity writers share.
void writeNormal(DxfWriterContext& c, const OdGeVector3d& normal);  // 210, when not +Z
void writeThickness(DxfWriterContext& c, double thickness);         // 39, when not zero

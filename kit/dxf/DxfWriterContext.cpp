#include "kit/dxf/DxfWriterContext.h"

#include "kit/dxf/DxfWriterEntities.h"

void DxfWriterContext::objectStart(std::string_view dxfName, const DbObject& object, OdDbHandle handle,
                                   OdDbHandle owner, int handleCode) {
  out.raw(0, dxfName);
  out.handle(handleCode, handle);
  if (const ObjectExtras* x = object.extras) {
    bool anyReactor = false;
    for (OdDbHandle r : x->reactors) anyReactor = anyReactor || db.find(r);
    if (anyReactor) {
      out.raw(102, "{ACAD_REACTORS");
      for (OdDbHandle r : x->reactors) {
        if (db.find(r)) out.handle(330, r);
      }
      out.raw(102, "}");
    }
    if (db.find(x->extensionDictionary)) {
      out.raw(102, "{ACAD_XDICTIONARY");
      out.handle(360, x->extensionDictionary);
      out.raw(102, "}");
    }
  }
  // Only the root dictionary is owned by nothing; an object that lost its owner is written without
  // one, as it was read, rather than claiming the null handle as its owner.
  if (!owner.isNull() || object.type == DbType::kDictionary) out.handle(330, owner);
}

void DxfWriterContext::extendedData(const DbObject& object) {
  if (!object.extras) return;
  for (const XDataGroup& group : object.extras->xdata) {
    out.text(1001, group.appName);
    for (const TaggedValue& v : group.values) out.tagged(v);
  }
}

void DxfWriterContext::entityStart(std::string_view dxfName, const Entity& e) {
  objectStart(dxfName, e, e.handle, owner_);
  commonEntityGroups(e);
}

void DxfWriterContext::commonEntityGroups(const Entity& e) {
  out.raw(100, "AcDbEntity");
  if (paperSpaceFlag(e)) out.integer(67, 1);
  out.text(8, recordName(e.layer, "0"));
  if (e.linetype && !e.linetype->isByLayer()) out.text(6, e.linetype->name);
  const ObjectExtras* x = e.extras;
  if (x && db.find(x->material)) out.handle(347, x->material);
  if (e.color.isByACI() || e.color.isByBlock()) {
    out.integer(62, e.color.colorIndex());
  } else if (e.color.isForeground()) {
    out.integer(62, 257);
  } else if (e.color.isByColor()) {
    out.integer(420, int64_t(e.color.rgb()));
    if (x && !x->colorBookName.empty()) out.text(430, x->colorBookName);
  }
  if (!e.transparency.isByLayer()) out.integer(440, int64_t(e.transparency.raw()));
  if (x && db.find(x->plotStyle)) out.handle(390, x->plotStyle);
  if (e.lineweight != kLnWtByLayer) out.integer(370, e.lineweight);
  if (e.linetypeScale != 1.0) out.real(48, e.linetypeScale);
  if (!e.isVisible()) out.integer(60, 1);
  if (x && atLeast(1021) && db.find(x->visualStyle)) out.handle(348, x->visualStyle);
}

void DxfWriterContext::sequenceEnd(OdDbHandle handle, const Entity& parent) {
  static const DbObject plain(DbType::kUnknown);  // no reactors or extended data of its own
  objectStart("SEQEND", plain, handle, parent.handle);
  out.raw(100, "AcDbEntity");
  if (paperSpaceFlag(parent)) out.integer(67, 1);
  out.text(8, recordName(parent.layer, "0"));
}

void writeNormal(DxfWriterContext& c, const OdGeVector3d& normal) {
  if (!(normal == kDefaultNormal)) c.out.point(210, normal);
}

void writeThickness(DxfWriterContext& c, double thickness) {
  if (thickness != 0.0) c.out.real(39, thickness);
}

void DxfWriterContext::entity(const Entity& e) {
  DxfWriterContext& c = *this;
  switch (e.type) {
    case DbType::kLine: writeLine(c, static_cast<const LineEntity&>(e)); break;
    case DbType::kPoint: writePoint(c, static_cast<const PointEntity&>(e)); break;
    case DbType::kCircle: writeCircle(c, static_cast<const CircleEntity&>(e)); break;
    case DbType::kArc: writeArc(c, static_cast<const ArcEntity&>(e)); break;
    case DbType::kEllipse: writeEllipse(c, static_cast<const EllipseEntity&>(e)); break;
    case DbType::kLwPolyline: writeLwPolyline(c, static_cast<const LwPolylineEntity&>(e)); break;
    case DbType::kPolyline: writePolyline(c, static_cast<const PolylineEntity&>(e)); break;
    case DbType::kSpline: writeSpline(c, static_cast<const SplineEntity&>(e)); break;
    case DbType::kHelix: writeHelix(c, static_cast<const HelixEntity&>(e)); break;
    case DbType::kText: writeText(c, static_cast<const TextEntity&>(e)); break;
    case DbType::kMText: writeMText(c, static_cast<const MTextEntity&>(e)); break;
    case DbType::kAttribute: writeAttribute(c, static_cast<const AttributeEntity&>(e)); break;
    case DbType::kAttributeDefinition:
      writeAttributeDefinition(c, static_cast<const AttributeDefinitionEntity&>(e));
      break;
    case DbType::kBlockReference: writeBlockReference(c, static_cast<const BlockReferenceEntity&>(e)); break;
    case DbType::kDimension: writeDimension(c, static_cast<const DimensionEntity&>(e)); break;
    case DbType::kLeader: writeLeader(c, static_cast<const LeaderEntity&>(e)); break;
    case DbType::kMLeader: writeMLeader(c, static_cast<const MLeaderEntity&>(e)); break;
    case DbType::kHatch: writeHatch(c, static_cast<const HatchEntity&>(e)); break;
    case DbType::kSolid: writeSolid(c, static_cast<const SolidEntity&>(e)); break;
    case DbType::kTrace: writeTrace(c, static_cast<const TraceEntity&>(e)); break;
    case DbType::kFace: writeFace(c, static_cast<const FaceEntity&>(e)); break;
    case DbType::kRasterImage: writeRasterImage(c, static_cast<const RasterImageEntity&>(e)); break;
    case DbType::kWipeout: writeWipeout(c, static_cast<const WipeoutEntity&>(e)); break;
    case DbType::kViewport: writeViewport(c, static_cast<const ViewportEntity&>(e)); break;
    case DbType::kXLine: writeXLine(c, static_cast<const XLineEntity&>(e)); break;
    case DbType::kRay: writeRay(c, static_cast<const RayEntity&>(e)); break;
    case DbType::kTolerance: writeTolerance(c, static_cast<const ToleranceEntity&>(e)); break;
    case DbType::kTable: writeTable(c, static_cast<const TableEntity&>(e)); break;
    case DbType::kOle2Frame: writeOle2Frame(c, static_cast<const Ole2FrameEntity&>(e)); break;
    case DbType::kMLine: writeMLine(c, static_cast<const MLineEntity&>(e)); break;
    case DbType::kShape: writeShape(c, static_cast<const ShapeEntity&>(e)); break;
    case DbType::kUnderlay: writeUnderlay(c, static_cast<const UnderlayEntity&>(e)); break;
    case DbType::kModelerGeometry: writeModelerGeometry(c, static_cast<const ModelerGeometryEntity&>(e)); break;
    case DbType::kMesh: writeMesh(c, static_cast<const MeshEntity&>(e)); break;
    case DbType::kMPolygon: writeMPolygon(c, static_cast<const MPolygonEntity&>(e)); break;
    case DbType::kProxyEntity: writeProxyEntity(c, static_cast<const ProxyEntity&>(e)); break;
    default: break;
  }
}

// The entry of regeneration: an entity's traits are resolved, then its family draws it.
#include "kit/gi/regen/RegenEntities.h"

using namespace gi;

namespace {

void regenPolylineKind(GiRegenContext& ctx, const PolylineEntity& e) {
  switch (e.kind()) {
    case PolylineEntity::Kind::kPolygonMesh: regenPolygonMesh(ctx, e); break;
    case PolylineEntity::Kind::kPolyfaceMesh: regenPolyfaceMesh(ctx, e); break;
    default: regenPolyline(ctx, e); break;
  }
}

}  // namespace

void regenEntity(GiRegenContext& ctx, const Entity& entity) {
  if (!ctx.beginEntity(entity)) return;
  switch (entity.type) {
    case DbType::kLine: regenLine(ctx, static_cast<const LineEntity&>(entity)); break;
    case DbType::kPoint: regenPoint(ctx, static_cast<const PointEntity&>(entity)); break;
    case DbType::kCircle: regenCircle(ctx, static_cast<const CircleEntity&>(entity)); break;
    case DbType::kArc: regenArc(ctx, static_cast<const ArcEntity&>(entity)); break;
    case DbType::kEllipse: regenEllipse(ctx, static_cast<const EllipseEntity&>(entity)); break;
    case DbType::kLwPolyline: regenLwPolyline(ctx, static_cast<const LwPolylineEntity&>(entity)); break;
    case DbType::kPolyline: regenPolylineKind(ctx, static_cast<const PolylineEntity&>(entity)); break;
    case DbType::kSpline: regenSpline(ctx, static_cast<const SplineEntity&>(entity)); break;
    case DbType::kHelix: regenSpline(ctx, static_cast<const HelixEntity&>(entity)); break;
    case DbType::kText: regenText(ctx, static_cast<const TextEntity&>(entity)); break;
    case DbType::kMText: regenMText(ctx, static_cast<const MTextEntity&>(entity)); break;
    case DbType::kAttribute: regenAttribute(ctx, static_cast<const AttributeEntity&>(entity)); break;
    case DbType::kAttributeDefinition:
      regenAttributeDefinition(ctx, static_cast<const AttributeDefinitionEntity&>(entity));
      break;
    case DbType::kBlockReference: regenBlockReference(ctx, static_cast<const BlockReferenceEntity&>(entity)); break;
    case DbType::kDimension: regenDimension(ctx, static_cast<const DimensionEntity&>(entity)); break;
    case DbType::kLeader: regenLeader(ctx, static_cast<const LeaderEntity&>(entity)); break;
    case DbType::kMLeader: regenMLeader(ctx, static_cast<const MLeaderEntity&>(entity)); break;
    case DbType::kHatch: regenHatch(ctx, static_cast<const HatchEntity&>(entity)); break;
    case DbType::kMPolygon: regenMPolygon(ctx, static_cast<const MPolygonEntity&>(entity)); break;
    case DbType::kSolid: {
      const auto& solid = static_cast<const SolidEntity&>(entity);
      regenSolid(ctx, solid.corners, solid.normal);
      break;
    }
    case DbType::kTrace: {
      const auto& trace = static_cast<const TraceEntity&>(entity);
      regenSolid(ctx, trace.corners, trace.normal);
      break;
    }
    case DbType::kFace: regenFace(ctx, static_cast<const FaceEntity&>(entity)); break;
    case DbType::kRasterImage: regenImageFrame(ctx, static_cast<const RasterImageEntity&>(entity)); break;
    case DbType::kWipeout: regenWipeout(ctx, static_cast<const WipeoutEntity&>(entity)); break;
    case DbType::kViewport: regenViewportFrame(ctx, static_cast<const ViewportEntity&>(entity)); break;
    case DbType::kXLine: regenXLine(ctx, static_cast<const XLineEntity&>(entity)); break;
    case DbType::kRay: regenRay(ctx, static_cast<const RayEntity&>(entity)); break;
    case DbType::kTolerance: regenTolerance(ctx, static_cast<const ToleranceEntity&>(entity)); break;
    case DbType::kTable: regenTable(ctx, static_cast<const TableEntity&>(entity)); break;
    case DbType::kOle2Frame: regenOle2Frame(ctx, static_cast<const Ole2FrameEntity&>(entity)); break;
    case DbType::kMLine: regenMLine(ctx, static_cast<const MLineEntity&>(entity)); break;
    case DbType::kShape: regenShape(ctx, static_cast<const ShapeEntity&>(entity)); break;
    case DbType::kUnderlay: regenUnderlay(ctx, static_cast<const UnderlayEntity&>(entity)); break;
    case DbType::kMesh: regenMesh(ctx, static_cast<const MeshEntity&>(entity)); break;
    case DbType::kProxyEntity: regenProxyEntity(ctx, static_cast<const ProxyEntity&>(entity)); break;
    case DbType::kModelerGeometry: regenModelerGeometry(ctx, static_cast<const ModelerGeometryEntity&>(entity)); break;
    // Modeler geometry (ACIS) carries no graphics this kit can read.
    default: break;
  }
}

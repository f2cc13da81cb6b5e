// What the sink needs to know about an entity's kind: areas that are filled, texts whose filled
// background is a mask, circles that may come back tessellated, polylines with a width.
#include <cmath>

#include "vectorizer/EntityDrawState.h"
#include "vectorizer/EntityRules.h"

namespace {

bool IsFilledKind(const Entity& entity) {
  if (const auto* hatch = dbCast<HatchEntity>(&entity)) return hatch->solidFill;
  return entity.type == DbType::kSolid || entity.type == DbType::kTrace;
}

// The constant width of a polyline, 0 when it has none.
double ConstantWidth(const Entity& entity) {
  if (const auto* lw = dbCast<LwPolylineEntity>(&entity)) return lw->constantWidth;
  if (const auto* pl = dbCast<PolylineEntity>(&entity)) {
    if (pl->kind() == PolylineEntity::Kind::k2d && pl->defaultStartWidth == pl->defaultEndWidth) {
      return pl->defaultStartWidth;
    }
  }
  return 0.0;
}

void MarkCircle(double radius) {
  g_EntityDrawState.circleCandidate = 1;
  g_EntityDrawState.circleRadius = std::fabs(radius);
}

}  // namespace

void ApplyFillRules(const Entity& entity) {
  EntityDrawState& s = g_EntityDrawState;
  if (IsFilledKind(entity)) s.forceFill = 1;
  // Every entity starts unfilled (as its traits do); the traits update fills what asks for it.
  s.fillOn = s.forceFill;
  switch (entity.type) {
    case DbType::kRasterImage:
      // The image's frame is never filled.
      s.fillOn = 0;
      s.suppressFillOnce = 1;
      break;
    case DbType::kMText:
    case DbType::kMLeader: s.isBackgroundMask = 1; break;
    case DbType::kCircle: MarkCircle(static_cast<const CircleEntity&>(entity).radius); break;
    case DbType::kEllipse: {
      const auto& ellipse = static_cast<const EllipseEntity&>(entity);
      if (ellipse.radiusRatio == 1.0) MarkCircle(ellipse.majorAxis.length());
      break;
    }
    default: break;
  }
  double width = ConstantWidth(entity);
  if (width > 0.0) {
    s.lineWidth = width;
    s.widthIsGeometric = 1;
  }
}

// What the sink needs to know about an entity's kind: areas that are filled, texts whose filled
// background is a mask, circles that may come back tessellated, polylines with a width.
#include <cmath>
#include <vector>

#include "vectorizer/EntityDrawState.h"
#include "vectorizer/EntityRules.h"

namespace {

bool IsFilledKind(const Entity& entity) {
  if (const auto* hatch = dbCast<HatchEntity>(&entity)) return hatch->solidFill;
  return entity.type == DbType::kSolid || entity.type == DbType::kTrace;
}

// The width shared by every segment of a polyline (start and end alike), 0 when the widths vary:
// such a polyline is drawn as its centre line with that width, as one with a constant width.
double UniformWidth(const std::vector<OdGePoint2d>& widths, size_t segments) {
  if (widths.empty() || segments == 0) return 0.0;
  double w = widths[0].x;
  for (size_t i = 0; i < segments && i < widths.size(); ++i) {
    if (widths[i].x != w || widths[i].y != w) return 0.0;
  }
  return w;
}

size_t SegmentCount(size_t points, bool closed) { return points < 2 ? 0 : closed ? points : points - 1; }

// The constant width of a polyline, 0 when it has none.
double ConstantWidth(const Entity& entity) {
  if (const auto* lw = dbCast<LwPolylineEntity>(&entity)) {
    if (lw->constantWidth != 0.0) return lw->constantWidth;
    return UniformWidth(lw->widths, SegmentCount(lw->points.size(), lw->isClosed()));
  }
  if (const auto* pl = dbCast<PolylineEntity>(&entity)) {
    if (pl->kind() != PolylineEntity::Kind::k2d) return 0.0;
    // Fitted polylines draw generated vertices whose widths are the kit's own business.
    if ((pl->flags & (PolylineEntity::kSplineFit | PolylineEntity::kCurveFit)) != 0) {
      return pl->defaultStartWidth == pl->defaultEndWidth ? pl->defaultStartWidth : 0.0;
    }
    std::vector<OdGePoint2d> widths;
    for (const PolylineVertex& v : pl->vertices) {
      if ((v.flags & PolylineVertex::kPolyfaceFace) != 0) continue;
      bool own = v.startWidth != 0.0 || v.endWidth != 0.0;
      widths.push_back(own ? OdGePoint2d(v.startWidth, v.endWidth)
                           : OdGePoint2d(pl->defaultStartWidth, pl->defaultEndWidth));
    }
    return UniformWidth(widths, SegmentCount(widths.size(), pl->isClosed()));
  }
  return 0.0;
}

// How much the entity's own lengths grow on their way to the sink: a width given in the entity's
// units is drawn at this many output units per unit (the mean of the two plane axes, so a block
// scaled unevenly still gets one width).
double OutputLengthScale(const OdGeMatrix3d& blockToOutput) {
  OdGeVector3d x = blockToOutput.transform(OdGeVector3d(1.0, 0.0, 0.0));
  OdGeVector3d y = blockToOutput.transform(OdGeVector3d(0.0, 1.0, 0.0));
  double scale = std::sqrt(x.crossProduct(y).length());
  return std::isfinite(scale) ? scale : 0.0;
}

void MarkCircle(double radius) {
  g_EntityDrawState.circleCandidate = 1;
  g_EntityDrawState.circleRadius = std::fabs(radius);
}

}  // namespace

void ApplyFillRules(const EntityRuleInput& input, const Entity& entity) {
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
  // A constant width is geometry: it reaches the driver in output units, as the points do.
  double width = ConstantWidth(entity) * OutputLengthScale(input.blockToOutput);
  if (width > 0.0) {
    s.lineWidth = width;
    s.widthIsGeometric = 1;
  }
}

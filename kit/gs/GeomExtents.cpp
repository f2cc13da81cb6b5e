#include "kit/gs/GeomExtents.h"

#include <cmath>

#include "kit/gi/OdGiGeometrySimplifier.h"
#include "kit/gi/regen/GiRegenContext.h"

namespace {

constexpr int kCurveSamples = 64;

// A conveyor end that draws nothing and widens a box by every point it is given. Circles are
// measured exactly and arcs finely sampled; everything else goes through the simplifier.
class ExtentsCollector : public OdGiGeometrySimplifier {
public:
  OdGeExtents3d box;

  using OdGiGeometrySimplifier::circleProc;
  using OdGiGeometrySimplifier::circularArcProc;

  void circleProc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                  const OdGeVector3d* = nullptr) override {
    OdGeVector3d n = normal.isZeroLength() ? OdGeVector3d::kZAxis() : normal.normal();
    // Half the circle's extent along an axis is r * sqrt(1 - n_axis^2).
    OdGeVector3d half(radius * std::sqrt(std::max(0.0, 1.0 - n.x * n.x)),
                      radius * std::sqrt(std::max(0.0, 1.0 - n.y * n.y)),
                      radius * std::sqrt(std::max(0.0, 1.0 - n.z * n.z)));
    add(center - half);
    add(center + half);
  }
  void circularArcProc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                       const OdGeVector3d& startVector, double sweepAngle, OdGiArcType arcType = kOdGiArcSimple,
                       const OdGeVector3d* = nullptr) override {
    OdGeVector3d n = normal.isZeroLength() ? OdGeVector3d::kZAxis() : normal.normal();
    OdGeVector3d u = startVector.isZeroLength() ? arbitraryAxisX(n) : startVector.normal();
    OdGeVector3d v = n.crossProduct(u);
    if (!std::isfinite(sweepAngle)) return;
    for (int i = 0; i <= kCurveSamples; ++i) {
      double a = sweepAngle * i / kCurveSamples;
      add(center + u * (radius * std::cos(a)) + v * (radius * std::sin(a)));
    }
    if (arcType == kOdGiArcSector) add(center);
  }
  void ellipArcProc(const OdGeEllipArc3d& arc, const OdGePoint3d* endPointOverrides = nullptr, OdGiArcType = kOdGiArcSimple,
                    const OdGeVector3d* = nullptr) override {
    double span = arc.endAng() - arc.startAng();
    if (!std::isfinite(span)) return;
    for (int i = 0; i <= kCurveSamples; ++i) add(arc.evalPoint(arc.startAng() + span * i / kCurveSamples));
    if (endPointOverrides) {
      add(endPointOverrides[0]);
      add(endPointOverrides[1]);
    }
  }
  void polylineOut(int32_t numPoints, const OdGePoint3d* vertexList) override { addAll(numPoints, vertexList); }
  void polygonOut(int32_t numPoints, const OdGePoint3d* vertexList) override { addAll(numPoints, vertexList); }

private:
  // Points past 1e15 come from damaged data (a scale of 1e300, a stray coordinate): no real
  // drawing reaches that far (the Earth is 4e10 mm round), and counting them would shrink the rest
  // of the drawing to a speck.
  void add(const OdGePoint3d& p) {
    constexpr double kFarAway = 1e15;
    if (std::fabs(p.x) <= kFarAway && std::fabs(p.y) <= kFarAway && std::fabs(p.z) <= kFarAway) box.addPoint(p);
  }
  void addAll(int32_t n, const OdGePoint3d* points) {
    for (int32_t i = 0; i < n && points; ++i) add(points[i]);
  }
};

}  // namespace

bool entityGeomExtents(const OdDbDatabase& db, const Entity& entity, OdGeExtents3d& extents) {
  ExtentsCollector collector;
  GiRegenContext ctx(db, collector);
  collector.setDrawContext(nullptr);
  regenEntity(ctx, entity);
  if (!collector.box.isValidExtents()) return false;
  extents = collector.box;
  return true;
}

bool blockGeomExtents(const OdDbDatabase& db, const BlockRecord& block, OdGeExtents3d& extents) {
  return blockGeomExtents(db, block, OdGeMatrix3d(), extents);
}

bool blockGeomExtents(const OdDbDatabase& db, const BlockRecord& block, const OdGeMatrix3d& transform,
                      OdGeExtents3d& extents) {
  ExtentsCollector collector;
  GiRegenContext ctx(db, collector);
  ctx.setViewTransform(transform);
  for (const Entity* entity : block.entities) {
    if (entity) regenEntity(ctx, *entity);
  }
  if (!collector.box.isValidExtents()) return false;
  extents = collector.box;
  return true;
}

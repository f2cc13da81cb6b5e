#include "kit/gs/EntityOutline.h"

#include "kit/gi/OdGiGeometrySimplifier.h"
#include "kit/gi/regen/GiRegenContext.h"

namespace {

// Keeps the first point list regeneration produces; curves are left to the simplifier.
class FirstLoopCollector : public OdGiGeometrySimplifier {
public:
  std::vector<OdGePoint2d> points;

  void polylineOut(int32_t numPoints, const OdGePoint3d* vertexList) override { take(numPoints, vertexList); }
  void polygonOut(int32_t numPoints, const OdGePoint3d* vertexList) override { take(numPoints, vertexList); }

private:
  void take(int32_t n, const OdGePoint3d* p) {
    if (!points.empty() || n < 3 || !p) return;
    for (int32_t i = 0; i < n; ++i) points.push_back(p[i].to2d());
  }
};

// Shows an entity and its layer for the time of one regeneration, then restores them.
class ShownForMeasuring {
public:
  explicit ShownForMeasuring(const Entity& entity)
      : entity_(const_cast<Entity&>(entity)), flags_(entity_.entityFlags) {
    entity_.entityFlags = uint16_t(flags_ & ~Entity::kInvisible);
    if (entity_.layer) {
      layerOff_ = entity_.layer->off;
      layerFlags_ = entity_.layer->flags;
      entity_.layer->off = false;
      entity_.layer->setIsFrozen(false);
    }
  }
  ~ShownForMeasuring() {
    entity_.entityFlags = flags_;
    if (entity_.layer) {
      entity_.layer->off = layerOff_;
      entity_.layer->flags = layerFlags_;
    }
  }
  ShownForMeasuring(const ShownForMeasuring&) = delete;
  ShownForMeasuring& operator=(const ShownForMeasuring&) = delete;

private:
  Entity& entity_;
  uint16_t flags_;
  bool layerOff_ = false;
  int16_t layerFlags_ = 0;
};

}  // namespace

std::vector<OdGePoint2d> entityOutline(const OdDbDatabase& db, const Entity& entity, double deviation) {
  FirstLoopCollector collector;
  collector.setDefaultDeviation(deviation > 0.0 ? deviation : 0.5);
  GiRegenContext ctx(db, collector);
  ctx.setOutputDeviation(deviation);
  // Drawn whatever its visibility: a clip boundary is often invisible or on a hidden layer.
  ShownForMeasuring shown(entity);
  regenEntity(ctx, entity);
  std::vector<OdGePoint2d>& loop = collector.points;
  if (loop.size() > 3 && loop.front().distanceTo(loop.back()) <= 1e-12) loop.pop_back();
  if (loop.size() < 3) loop.clear();
  return loop;
}

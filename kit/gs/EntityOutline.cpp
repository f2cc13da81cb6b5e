#include "kit/gs/EntityOutline.h"

#include "kit/gi/OdGiGeometrySimplifier.h"
#include "kit/gi/regen/GiRegenContext.h"

namespace {

// Keeps the point lists regeneration produces, a list that starts where the last ended joined to
// it; curves are left to the simplifier.
class LoopCollector : public OdGiGeometrySimplifier {
public:
  std::vector<std::vector<OdGePoint2d>> loops;

  void polylineOut(int32_t numPoints, const OdGePoint3d* vertexList) override { take(numPoints, vertexList); }
  void polygonOut(int32_t numPoints, const OdGePoint3d* vertexList) override { take(numPoints, vertexList); }

private:
  void take(int32_t n, const OdGePoint3d* p) {
    if (n < 2 || !p) return;
    bool continues = !loops.empty() && !closed(loops.back()) && loops.back().back() == p[0].to2d();
    if (!continues) loops.emplace_back();
    for (int32_t i = continues ? 1 : 0; i < n; ++i) loops.back().push_back(p[i].to2d());
  }
  static bool closed(const std::vector<OdGePoint2d>& loop) {
    return loop.size() > 3 && loop.front().distanceTo(loop.back()) <= 1e-12;
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

std::vector<std::vector<OdGePoint2d>> entityOutlines(const OdDbDatabase& db, const Entity& entity, double deviation) {
  LoopCollector collector;
  collector.setDefaultDeviation(deviation > 0.0 ? deviation : 0.5);
  GiRegenContext ctx(db, collector);
  ctx.setOutputDeviation(deviation);
  // Drawn whatever its visibility: a clip boundary is often invisible or on a hidden layer.
  ShownForMeasuring shown(entity);
  regenEntity(ctx, entity);
  std::vector<std::vector<OdGePoint2d>> loops;
  for (auto& loop : collector.loops) {
    if (loop.size() > 3 && loop.front().distanceTo(loop.back()) <= 1e-12) loop.pop_back();
    if (loop.size() >= 3) loops.push_back(std::move(loop));
  }
  return loops;
}

std::vector<OdGePoint2d> entityOutline(const OdDbDatabase& db, const Entity& entity, double deviation) {
  std::vector<std::vector<OdGePoint2d>> loops = entityOutlines(db, entity, deviation);
  return loops.empty() ? std::vector<OdGePoint2d>() : std::move(loops.front());
}

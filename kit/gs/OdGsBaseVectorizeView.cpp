#include "kit/gs/OdGsBaseVectorizeView.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "kit/gi/GiPerspectiveStage.h"
#include "kit/gi/OdGiGeometrySimplifier.h"
#include "kit/gs/DrawOrder.h"
#include "kit/gs/GeomExtents.h"
#include "kit/gs/OdGsBaseVectorizeDevice.h"

namespace {

bool finitePositive(double v) { return v > 0.0 && std::isfinite(v); }

bool isFinite(const OdGePoint3d& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }

// Clears the view's pointer to the regeneration when update() leaves, by return or exception.
class RegenScope {
public:
  RegenScope(GiRegenContext*& slot, GiRegenContext& ctx) : slot_(slot) { slot_ = &ctx; }
  ~RegenScope() { slot_ = nullptr; }
  RegenScope(const RegenScope&) = delete;
  RegenScope& operator=(const RegenScope&) = delete;

private:
  GiRegenContext*& slot_;
};

}  // namespace

OdGsBaseVectorizeViewDef::OdGsBaseVectorizeViewDef() = default;
OdGsBaseVectorizeViewDef::~OdGsBaseVectorizeViewDef() = default;

void OdGsBaseVectorizeViewDef::init(OdGsBaseVectorizeDevice* device, const OdGsClientViewInfo* viewInfo, bool) {
  device_ = device;
  info_ = viewInfo ? *viewInfo : OdGsClientViewInfo();
}

OdGsDevice* OdGsBaseVectorizeViewDef::device() const { return device_; }

OdGiContextForDbDatabase* OdGsBaseVectorizeViewDef::userGiContext() const {
  return device_ ? device_->userGiContext() : nullptr;
}

// ---- Eye ------------------------------------------------------------------------------------------

void OdGsBaseVectorizeViewDef::setView(const OdGePoint3d& position, const OdGePoint3d& target,
                                       const OdGeVector3d& upVector, double fieldWidth, double fieldHeight,
                                       Projection projection) {
  if (!isFinite(position) || !isFinite(target)) return;
  target_ = target;
  position_ = position == target ? target + OdGeVector3d::kZAxis() : position;
  up_ = upVector.isZeroLength() ? OdGeVector3d::kYAxis() : upVector;
  fieldWidth_ = std::isfinite(fieldWidth) ? std::fabs(fieldWidth) : 1.0;
  fieldHeight_ = std::isfinite(fieldHeight) ? std::fabs(fieldHeight) : 1.0;
  perspective_ = projection == kPerspective;
}

OdGeMatrix3d OdGsBaseVectorizeViewDef::eyeToWorldMatrix() const {
  OdGeVector3d z = (position_ - target_).normal();
  if (z.isZeroLength()) z = OdGeVector3d::kZAxis();
  OdGeVector3d x = up_.crossProduct(z);
  // An up vector along the line of sight: take the usual axis of that direction instead.
  x = x.isZeroLength(1e-12) ? arbitraryAxisX(z) : x.normal();
  OdGeVector3d y = z.crossProduct(x).normal();
  return OdGeMatrix3d::fromAxes(target_, x, y, z);
}

OdGeMatrix3d OdGsBaseVectorizeViewDef::worldToEyeMatrix() const {
  OdGeMatrix3d inverse;
  eyeToWorldMatrix().invert(inverse);
  return inverse;
}

// ---- Place on the device --------------------------------------------------------------------------

void OdGsBaseVectorizeViewDef::setViewport(const OdGePoint2d& lowerLeft, const OdGePoint2d& upperRight) {
  ndcMin_ = {std::min(lowerLeft.x, upperRight.x), std::min(lowerLeft.y, upperRight.y)};
  ndcMax_ = {std::max(lowerLeft.x, upperRight.x), std::max(lowerLeft.y, upperRight.y)};
}

void OdGsBaseVectorizeViewDef::getViewport(OdGePoint2d& lowerLeft, OdGePoint2d& upperRight) const {
  lowerLeft = ndcMin_;
  upperRight = ndcMax_;
}

namespace {

struct Box2 {
  double x0, y0, x1, y1;  // x0 <= x1, y0 <= y1
};

// A device rectangle given with ymin above ymax (as windows and images count rows) has its y axis
// pointing down; given the other way round, y points up like the drawing's.
bool yPointsDown(const OdGsDCRect& r) { return r.ymin > r.ymax; }

Box2 normalised(const OdGsDCRect& r) {
  return {double(std::min(r.xmin, r.xmax)), double(std::min(r.ymin, r.ymax)), double(std::max(r.xmin, r.xmax)),
          double(std::max(r.ymin, r.ymax))};
}

}  // namespace

void OdGsBaseVectorizeViewDef::setViewport(const OdGsDCRect& screenRect) {
  if (!device_) return;
  Box2 dev = normalised(device_->outputRect());
  Box2 r = normalised(screenRect);
  double w = dev.x1 - dev.x0, h = dev.y1 - dev.y0;
  if (!(w > 0.0) || !(h > 0.0)) return;
  if (yPointsDown(device_->outputRect())) {
    setViewport(OdGePoint2d((r.x0 - dev.x0) / w, (dev.y1 - r.y1) / h),
                OdGePoint2d((r.x1 - dev.x0) / w, (dev.y1 - r.y0) / h));
  } else {
    setViewport(OdGePoint2d((r.x0 - dev.x0) / w, (r.y0 - dev.y0) / h),
                OdGePoint2d((r.x1 - dev.x0) / w, (r.y1 - dev.y0) / h));
  }
}

void OdGsBaseVectorizeViewDef::getViewport(OdGsDCRect& screenRect) const {
  double x0, y0, x1, y1;
  deviceRect(x0, y0, x1, y1);
  screenRect = OdGsDCRect(std::lround(x0), std::lround(x1), std::lround(y0), std::lround(y1));
}

void OdGsBaseVectorizeViewDef::deviceRect(double& xmin, double& ymin, double& xmax, double& ymax) const {
  if (paperView_) {
    OdGeMatrix3d m = paperView_->worldToDeviceMatrix();
    OdGePoint3d a = m.transform(OdGePoint3d(paperMin_.x, paperMin_.y, 0.0));
    OdGePoint3d b = m.transform(OdGePoint3d(paperMax_.x, paperMax_.y, 0.0));
    xmin = std::min(a.x, b.x);
    xmax = std::max(a.x, b.x);
    ymin = std::min(a.y, b.y);
    ymax = std::max(a.y, b.y);
    return;
  }
  Box2 dev = device_ ? normalised(device_->outputRect()) : Box2{0.0, 0.0, 0.0, 0.0};
  double w = dev.x1 - dev.x0, h = dev.y1 - dev.y0;
  xmin = dev.x0 + ndcMin_.x * w;
  xmax = dev.x0 + ndcMax_.x * w;
  if (device_ && yPointsDown(device_->outputRect())) {
    ymin = dev.y1 - ndcMax_.y * h;
    ymax = dev.y1 - ndcMin_.y * h;
  } else {
    ymin = dev.y0 + ndcMin_.y * h;
    ymax = dev.y0 + ndcMax_.y * h;
  }
}

void OdGsBaseVectorizeViewDef::setViewportClipRegion(int numContours, const int* counts,
                                                     const OdGePoint2d* vertices) {
  removeViewportClipRegion();
  if (numContours <= 0 || !counts || !vertices) return;
  size_t total = 0;
  for (int i = 0; i < numContours; ++i) {
    if (counts[i] < 0) return;
    total += size_t(counts[i]);
  }
  clipCounts_.assign(counts, counts + numContours);
  clipVertices_.assign(vertices, vertices + total);
}

void OdGsBaseVectorizeViewDef::viewportClipRegion(std::vector<int>& counts, std::vector<OdGePoint2d>& vertices) const {
  counts = clipCounts_;
  vertices = clipVertices_;
}

void OdGsBaseVectorizeViewDef::removeViewportClipRegion() {
  clipCounts_.clear();
  clipVertices_.clear();
}

void OdGsBaseVectorizeViewDef::setPaperPlacement(const OdGsView* paperView, const OdGePoint2d& paperMin,
                                                 const OdGePoint2d& paperMax, gi::ClipLoops paperClip) {
  paperView_ = paperView == this ? nullptr : paperView;  // a view never places itself
  paperMin_ = paperMin;
  paperMax_ = paperMax;
  paperClip_ = std::move(paperClip);
}

namespace {

bool anyLoop(const gi::ClipLoops& loops) {
  return std::any_of(loops.begin(), loops.end(), [](const auto& loop) { return loop.size() >= 3; });
}

}  // namespace

gi::ClipLoops OdGsBaseVectorizeViewDef::deviceClipLoops() const {
  gi::ClipLoops loops;
  if (paperView_ && anyLoop(paperClip_)) {
    OdGeMatrix3d m = paperView_->worldToDeviceMatrix();
    for (const auto& paperLoop : paperClip_) {
      auto& loop = loops.emplace_back();
      for (const OdGePoint2d& p : paperLoop) loop.push_back(m.transform(OdGePoint3d(p.x, p.y, 0.0)).to2d());
    }
    return loops;
  }
  size_t start = 0;
  for (int count : clipCounts_) {
    loops.emplace_back(clipVertices_.begin() + start, clipVertices_.begin() + start + size_t(count));
    start += size_t(count);
  }
  if (anyLoop(loops)) return loops;
  double x0, y0, x1, y1;
  deviceRect(x0, y0, x1, y1);
  // Geometry on the rectangle's edge (a border zoomed to its extents) stays in.
  double grow = 1e-10 * (std::fabs(x1 - x0) + std::fabs(y1 - y0));
  x0 -= grow, y0 -= grow, x1 += grow, y1 += grow;
  return {{{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}}};
}

OdGeMatrix3d OdGsBaseVectorizeViewDef::eyeToDeviceMatrix() const {
  double x0, y0, x1, y1;
  deviceRect(x0, y0, x1, y1);
  double w = x1 - x0, h = y1 - y0;
  double sx = fieldWidth_ > 0.0 ? w / fieldWidth_ : std::numeric_limits<double>::infinity();
  double sy = fieldHeight_ > 0.0 ? h / fieldHeight_ : std::numeric_limits<double>::infinity();
  double s = std::min(sx, sy);
  if (!finitePositive(s)) s = 1.0;
  OdGeMatrix3d m;
  m.entry[0][0] = s;
  m.entry[0][3] = (x0 + x1) / 2.0;
  m.entry[1][1] = device_ && yPointsDown(device_->outputRect()) ? -s : s;
  m.entry[1][3] = (y0 + y1) / 2.0;
  m.entry[2][2] = s;
  return m;
}

OdGeMatrix3d OdGsBaseVectorizeViewDef::worldToDeviceMatrix() const { return eyeToDeviceMatrix() * worldToEyeMatrix(); }

// ---- Layers and zoom ------------------------------------------------------------------------------

void OdGsBaseVectorizeViewDef::freezeLayer(const LayerRecord* layer) {
  if (layer && std::find(frozen_.begin(), frozen_.end(), layer) == frozen_.end()) frozen_.push_back(layer);
}

void OdGsBaseVectorizeViewDef::thawLayer(const LayerRecord* layer) { std::erase(frozen_, layer); }

void OdGsBaseVectorizeViewDef::zoom(double factor) {
  if (!finitePositive(factor)) return;
  fieldWidth_ /= factor;
  fieldHeight_ /= factor;
}

void OdGsBaseVectorizeViewDef::zoomExtents(const OdGePoint3d& minPoint, const OdGePoint3d& maxPoint) {
  OdGeExtents3d world(minPoint, maxPoint);
  if (!world.isValidExtents() || !isFinite(minPoint) || !isFinite(maxPoint)) return;
  OdGeMatrix3d toEye = worldToEyeMatrix();
  OdGeExtents3d eye;
  for (int i = 0; i < 8; ++i) {
    OdGePoint3d corner((i & 1) ? maxPoint.x : minPoint.x, (i & 2) ? maxPoint.y : minPoint.y,
                       (i & 4) ? maxPoint.z : minPoint.z);
    eye.addPoint(toEye.transform(corner));
  }
  OdGePoint3d centre((eye.minPoint.x + eye.maxPoint.x) / 2.0, (eye.minPoint.y + eye.maxPoint.y) / 2.0, 0.0);
  OdGeVector3d sight = position_ - target_;
  target_ = eyeToWorldMatrix().transform(centre);
  position_ = target_ + sight;
  double w = eye.maxPoint.x - eye.minPoint.x, h = eye.maxPoint.y - eye.minPoint.y;
  // A box flat in one direction still gets a field of some size in it.
  double floor = std::max({w, h, 1e-9}) * 1e-9;
  fieldWidth_ = std::max(w, floor);
  fieldHeight_ = std::max(h, floor);
  if (std::max(w, h) <= 0.0) fieldWidth_ = fieldHeight_ = 1.0;
}

// ---- Vectorization --------------------------------------------------------------------------------

const OdDbDatabase* OdGsBaseVectorizeViewDef::database() const {
  if (ctx_) return &ctx_->database();
  OdGiContextForDbDatabase* context = userGiContext();
  return context ? context->getDatabase() : nullptr;
}

void OdGsBaseVectorizeViewDef::setDeviceDeviation(double deviceUnits) {
  if (finitePositive(deviceUnits)) deviceDeviation_ = deviceUnits;
}

double OdGsBaseVectorizeViewDef::deviation(OdGiDeviationType, const OdGePoint3d&) const { return deviceDeviation_; }

void OdGsBaseVectorizeViewDef::update() {
  const OdDbDatabase* db = database();
  OdGiConveyorGeometry* dest = device_ ? device_->destGeometry() : nullptr;
  if (!db || !block_ || !dest) return;
  double x0, y0, x1, y1;
  deviceRect(x0, y0, x1, y1);
  if (!(x1 - x0 > 0.0) || !(y1 - y0 > 0.0)) return;  // not on the device: nothing shows
  gi::ClipLoops loops = deviceClipLoops();

  GiClipStage clip(dest);
  clip.pushBoundary(std::move(loops));
  applyDepthClipping(clip);
  clip.setDeviation(this);
  clip.setDrawContext(this);
  // A perspective view regenerates in eye coordinates; its stage projects them onto the device.
  // The outlines of clipped references then cut in eye coordinates, ahead of the projection.
  std::optional<GiPerspectiveStage> perspective;
  std::optional<GiClipStage> eyeClip;
  double cameraDistance = position_.distanceTo(target_);
  double eyeDeviation = deviceDeviation_ / eyeToDeviceMatrix().entry[2][2];
  if (perspective_ && finitePositive(cameraDistance) && finitePositive(eyeDeviation)) {
    perspective.emplace(&clip, cameraDistance, eyeToDeviceMatrix());
    perspective->setDefaultDeviation(eyeDeviation);
    perspective->setDrawContext(this);
    eyeClip.emplace(&*perspective);
    eyeClip->setDefaultDeviation(eyeDeviation);
    eyeClip->setDrawContext(this);
  }
  GiClipStage& referenceClip = eyeClip ? *eyeClip : clip;
  GiRegenContext ctx(*db, referenceClip, this);
  ctx.setClipStage(&referenceClip);
  if (perspective) {
    ctx.setViewTransform(worldToEyeMatrix());
    ctx.setOutputDeviation(eyeDeviation);
  } else {
    ctx.setViewTransform(worldToDeviceMatrix());
    ctx.setOutputDeviation(deviceDeviation_);
  }
  ctx.setViewportFrozenLayers(frozen_);
  ctx.setLinetypeViewFactor(linetypeFactor_);
  ctx.setViewHeight(fieldHeight_);
  ctx.setDrawingPaperSpace(!block_->isModelSpace() && block_->isLayout());
  ODCOLORREF background = device_->getBackgroundColor();
  ctx.setBackgroundColor(OdCmEntityColor::fromRGB(ODGETRED(background), ODGETGREEN(background), ODGETBLUE(background)));

  auto* sink = dynamic_cast<OdGiGeometrySimplifier*>(dest);
  {
    RegenScope scope(ctx_, ctx);
    try {
      beginViewVectorization();
      vectorizeScene(ctx);
      endViewVectorization();
    } catch (...) {
      if (sink) sink->setDrawContext(nullptr);
      throw;
    }
  }
  // The sink outlives this update; it must not keep pointing at the finished regeneration.
  if (sink) sink->setDrawContext(nullptr);
}

void OdGsBaseVectorizeViewDef::applyDepthClipping(GiClipStage& clip) const {
  if (!frontClipOn_ && !backClipOn_) return;
  // Device z is eye z (distance from the target towards the eye) times the view's scale.
  double scale = eyeToDeviceMatrix().entry[2][2];
  double front = frontClipOn_ ? frontClip_ * scale : HUGE_VAL;
  double back = backClipOn_ ? backClip_ * scale : -HUGE_VAL;
  clip.setDepthLimits(back, front);
}

void OdGsBaseVectorizeViewDef::beginViewVectorization() {
  if (auto* sink = dynamic_cast<OdGiGeometrySimplifier*>(device_ ? device_->destGeometry() : nullptr)) {
    sink->setDeviation(this);
    sink->setDrawContext(this);
  }
}

void OdGsBaseVectorizeViewDef::endViewVectorization() {}

void OdGsBaseVectorizeViewDef::vectorizeScene(GiRegenContext& ctx) {
  for (const Entity* entity : entitiesInDrawOrder(ctx.database(), *block_)) draw(entity);
}

void OdGsBaseVectorizeViewDef::draw(const OdGiDrawable* drawable) {
  if (ctx_ && drawable) regenEntity(*ctx_, *drawable);
}

bool OdGsBaseVectorizeViewDef::drawNested(const OdGiDrawable& entity) {
  draw(&entity);
  return true;
}

void OdGsBaseVectorizeViewDef::onTraitsModified() { ++traitsChanges_; }

const OdGiSubEntityTraitsData& OdGsBaseVectorizeViewDef::effectiveTraits() const {
  static const OdGiSubEntityTraitsData kNone;
  return ctx_ ? ctx_->effectiveTraits() : kNone;
}

size_t OdGsBaseVectorizeViewDef::blockDepth() const { return ctx_ ? ctx_->blockDepth() : 0; }

OdGeMatrix3d OdGsBaseVectorizeViewDef::blockToWorldTransform() const {
  return ctx_ ? ctx_->blockTransform() : OdGeMatrix3d();
}

bool OdGsBaseVectorizeViewDef::entityGeomExtents(const OdGiDrawable& drawable, OdGeExtents3d& extents) const {
  const OdDbDatabase* db = database();
  return db && ::entityGeomExtents(*db, drawable, extents);
}

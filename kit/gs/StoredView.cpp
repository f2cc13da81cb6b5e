#include "kit/gs/StoredView.h"

#include <cmath>

namespace {

bool finitePositive(double v) { return v > 0.0 && std::isfinite(v); }

bool isFinite(const OdGeVector3d& v) { return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z); }

double finiteOr(double v, double fallback) { return std::isfinite(v) ? v : fallback; }

void setClipping(StoredView& v, int mode, double front, double back) {
  v.perspective = (mode & kViewPerspective) != 0;
  v.frontClip = (mode & kViewFrontClip) != 0;
  v.frontClipAtEye = (mode & kViewFrontClipNotAtEye) == 0;
  v.backClip = (mode & kViewBackClip) != 0;
  v.frontDistance = front;
  v.backDistance = back;
}

OdGeVector3d sightOf(const StoredView& stored) {
  const OdGeVector3d& d = stored.direction;
  return isFinite(d) && !d.isZeroLength(1e-12) ? d.normal() : OdGeVector3d::kZAxis();
}

}  // namespace

StoredView storedViewOf(const ViewportRecord& record) {
  StoredView v;
  v.center = record.center;
  v.target = record.target;
  v.direction = record.viewDirection;
  v.twist = record.twist;
  v.height = record.height;
  v.width = record.height * record.aspectRatio;
  v.lensLength = record.lensLength;
  setClipping(v, record.viewMode, record.frontClip, record.backClip);
  return v;
}

StoredView storedViewOf(const ViewRecord& record) {
  StoredView v;
  v.center = record.center;
  v.target = record.target;
  v.direction = record.direction;
  v.twist = record.twist;
  v.height = record.height;
  v.width = record.width;
  v.lensLength = record.lensLength;
  setClipping(v, record.viewMode, record.frontClip, record.backClip);
  return v;
}

StoredView storedViewOf(const ViewportEntity& vp) {
  StoredView v;
  v.center = vp.viewCenter;
  v.target = vp.viewTarget;
  v.direction = vp.viewDirection;
  v.twist = vp.twistAngle;
  v.height = vp.viewHeight;
  v.width = vp.height != 0.0 ? vp.viewHeight * vp.width / vp.height : vp.viewHeight;
  v.lensLength = vp.lensLength;
  setClipping(v, vp.statusFlags, vp.frontClip, vp.backClip);
  return v;
}

bool isPlanView(const StoredView& stored) {
  OdGeVector3d d = sightOf(stored);
  return d.x == 0.0 && d.y == 0.0 && d.z > 0.0 && finiteOr(stored.twist, 0.0) == 0.0;
}

void applyStoredView(OdGsView& view, const StoredView& stored) {
  OdGeVector3d dir = sightOf(stored);
  // The screen's x axis is level (perpendicular to world z) unless the view looks along z.
  OdGeVector3d x = OdGeVector3d::kZAxis().crossProduct(dir);
  x = x.isZeroLength(1e-9) ? OdGeVector3d::kXAxis() : x.normal();
  OdGeVector3d y = dir.crossProduct(x).normal();
  // A twist turns the drawing counter-clockwise on the screen: the screen axes turn the other way.
  double t = finiteOr(stored.twist, 0.0);
  OdGeVector3d xs = x * std::cos(t) - y * std::sin(t);
  OdGeVector3d ys = x * std::sin(t) + y * std::cos(t);
  double cx = finiteOr(stored.center.x, 0.0), cy = finiteOr(stored.center.y, 0.0);
  OdGePoint3d centre = stored.target + xs * cx + ys * cy;
  double h = finitePositive(stored.height) ? stored.height : 1.0;
  double w = finitePositive(stored.width) ? stored.width : h;
  // A perspective view's camera stands as far from the target as the stored direction is long.
  double distance = stored.perspective && isFinite(stored.direction) ? stored.direction.length() : 1.0;
  if (!finitePositive(distance)) distance = 1.0;
  view.setView(centre + dir * distance, centre, ys, w, h,
               stored.perspective ? OdGsView::kPerspective : OdGsView::kParallel);
  if (finitePositive(stored.lensLength)) view.setLensLength(stored.lensLength);
  // The planes are measured from the target; the view's eye space has its origin at the centre,
  // which lies in the target's plane, so the distances hold as they are. A front plane "at the
  // eye" only hides what is behind the camera of a perspective view: a parallel view keeps all.
  bool front = stored.frontClip && !stored.frontClipAtEye && std::isfinite(stored.frontDistance);
  bool back = stored.backClip && std::isfinite(stored.backDistance);
  view.setEnableFrontClip(front);
  view.setFrontClip(front ? stored.frontDistance : 0.0);
  view.setEnableBackClip(back);
  view.setBackClip(back ? stored.backDistance : 0.0);
}

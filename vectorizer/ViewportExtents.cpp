#include "vectorizer/ViewportExtents.h"

ViewportExtents g_ViewportExtents;

void ViewportExtents::AddPoint(const OdGePoint3d& point) {
  if (boxes.empty()) {
    valid.push_back(true);
    boxes.emplace_back(point, point);
    return;
  }
  if (currentIndex < 0) currentIndex = 0;
  if (currentIndex >= int(boxes.size())) currentIndex = int(boxes.size()) - 1;
  size_t i = size_t(currentIndex);
  if (!valid[i]) {
    valid[i] = true;
    boxes[i] = OdGeExtents3d(point, point);
    return;
  }
  boxes[i].addPoint(point);
}

void ViewportExtents::AddBox(const OdGePoint3d& minPoint, const OdGePoint3d& maxPoint) {
  AddPoint(minPoint);
  AddPoint(maxPoint);
}

void ViewportExtents::SelectViewport(int index) {
  if (index < 0) index = 0;
  while (int(boxes.size()) <= index) {
    valid.push_back(false);
    boxes.emplace_back();
  }
  currentIndex = index;
}

void ViewportExtents::SetWorldToDevice(int index, const OdGeMatrix3d& matrix) {
  if (index < 0) index = 0;
  if (int(worldToDevice.size()) <= index) worldToDevice.resize(size_t(index) + 1);
  worldToDevice[size_t(index)] = matrix;
}

bool ViewportExtents::WorldBox(size_t index, OdGeExtents3d& world) const {
  if (index >= boxes.size() || !valid[index] || !boxes[index].isValidExtents()) return false;
  if (index >= worldToDevice.size()) return false;
  OdGeMatrix3d deviceToWorld;
  if (!worldToDevice[index].invert(deviceToWorld)) return false;
  const OdGePoint3d& lo = boxes[index].minPoint;
  const OdGePoint3d& hi = boxes[index].maxPoint;
  world = OdGeExtents3d();
  for (const OdGePoint3d& corner : {lo, OdGePoint3d(hi.x, lo.y, lo.z), OdGePoint3d(lo.x, hi.y, lo.z), hi}) {
    world.addPoint(deviceToWorld.transform(corner));
  }
  return world.isValidExtents();
}

void ViewportExtents::Clear() {
  valid.clear();
  boxes.clear();
  worldToDevice.clear();
  currentIndex = 0;
}

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

void ViewportExtents::Clear() {
  valid.clear();
  boxes.clear();
  currentIndex = 0;
}

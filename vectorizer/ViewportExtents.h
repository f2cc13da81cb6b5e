// The bounding box of what was drawn in each viewport of the layout: the converter sizes the
// drawing from them. Two parallel arrays (validity, box) and the index of the current viewport.
#pragma once

#include <cstddef>
#include <vector>

#include "kit/base/Geometry.h"

struct ViewportExtents {
  std::vector<bool> valid;
  std::vector<OdGeExtents3d> boxes;
  int currentIndex = 0;

  // Widens the current viewport's box (the first entry when there is none yet).
  void AddPoint(const OdGePoint3d& point);
  void AddBox(const OdGePoint3d& minPoint, const OdGePoint3d& maxPoint);
  // Makes sure an (invalid) entry exists for the viewport of this index and makes it current.
  void SelectViewport(int index);
  size_t Count() const { return boxes.size(); }
  void Clear();
};

extern ViewportExtents g_ViewportExtents;

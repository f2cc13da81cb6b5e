// The bounding box of what was drawn in each viewport of the layout: the converter sizes the
// drawing from them. Parallel arrays (validity, box in device units, the viewport's world-to-device
// matrix) and the index of the current viewport.
#pragma once

#include <cstddef>
#include <vector>

#include "kit/base/Geometry.h"

struct ViewportExtents {
  std::vector<bool> valid;
  std::vector<OdGeExtents3d> boxes;
  std::vector<OdGeMatrix3d> worldToDevice;
  int currentIndex = 0;

  // Widens the current viewport's box (the first entry when there is none yet).
  void AddPoint(const OdGePoint3d& point);
  void AddBox(const OdGePoint3d& minPoint, const OdGePoint3d& maxPoint);
  // Makes sure an (invalid) entry exists for the viewport of this index and makes it current.
  void SelectViewport(int index);
  // Remembers how the viewport of this index maps world points to device points.
  void SetWorldToDevice(int index, const OdGeMatrix3d& matrix);
  // The drawn box of viewport `index` in world units: false when it is empty or its mapping is
  // unknown or singular.
  bool WorldBox(size_t index, OdGeExtents3d& world) const;
  size_t Count() const { return boxes.size(); }
  void Clear();
};

extern ViewportExtents g_ViewportExtents;

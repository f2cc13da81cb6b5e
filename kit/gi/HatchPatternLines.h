// Hatch pattern lines cut to a hatch's boundary: each line family (angle, base point, offset
// between lines, dash pattern) is laid over the boundary's extent and kept where it is inside
// the boundary loops (even-odd, so that islands stay empty).
#pragma once

#include <vector>

#include "kit/base/Geometry.h"

struct HatchPatternLine;

namespace gi {

struct HatchSegment {
  OdGePoint2d from;
  OdGePoint2d to;  // equal to `from` for a dot
};

// Appends the family's inside pieces to `out`. False when the family would need more than
// `maxSegments` pieces (too dense to draw); `out` then holds whatever came before.
bool hatchPatternSegments(const std::vector<std::vector<OdGePoint2d>>& loops, const HatchPatternLine& line,
                          size_t maxSegments, std::vector<HatchSegment>& out);

// How deeply each loop is nested inside the others (0 for outermost loops).
std::vector<int> loopDepths(const std::vector<std::vector<OdGePoint2d>>& loops);

}  // namespace gi

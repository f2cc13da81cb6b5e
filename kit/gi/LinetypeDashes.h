// Linetypes applied as geometry: a scaled dash pattern laid along curves, giving the pieces to
// draw (dashes) and the points to mark (dots). Shapes and texts inside a pattern keep their
// length in it but are not drawn.
#pragma once

#include <functional>
#include <vector>

#include "kit/base/Geometry.h"

struct LinetypeRecord;

namespace gi {

struct DashPattern {
  std::vector<double> lengths;  // > 0 dash, < 0 gap, 0 dot; already scaled
  double total = 0.0;           // sum of absolute lengths

  bool isDashed() const { return total > 0.0 && !lengths.empty(); }
};

// The record's pattern times `scale`; continuous (not dashed) when the record has no usable dashes.
DashPattern dashPatternOf(const LinetypeRecord* linetype, double scale);

// A piece of a curve by length from its start: from == to for a dot.
struct DashInterval {
  double from;
  double to;
};

// The dashes and dots along a curve of that length, the pattern starting at its beginning.
// False (and nothing set) when more than `maxIntervals` pieces would be needed.
bool dashIntervals(double length, const DashPattern& pattern, std::vector<DashInterval>& out,
                   size_t maxIntervals = 100000);

// Cuts a point chain into its dashes; each dash is handed on as a point list (one point for a
// dot). False when the pattern is too dense for the chain (nothing handed on then).
bool dashChain(const std::vector<OdGePoint3d>& chain, const DashPattern& pattern,
               const std::function<void(const std::vector<OdGePoint3d>&)>& emit, size_t maxIntervals = 100000);

}  // namespace gi

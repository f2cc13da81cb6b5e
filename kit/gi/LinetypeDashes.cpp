#include "kit/gi/LinetypeDashes.h"

#include <cmath>

#include "kit/db/SymbolTables.h"

namespace gi {

DashPattern dashPatternOf(const LinetypeRecord* linetype, double scale) {
  DashPattern pattern;
  if (!linetype || linetype->dashes.empty() || !(scale > 0.0) || !std::isfinite(scale)) return pattern;
  for (const LinetypeDash& dash : linetype->dashes) {
    double len = dash.length * scale;
    if (!std::isfinite(len)) return {};
    pattern.lengths.push_back(len);
    pattern.total += std::fabs(len);
  }
  // A pattern of nothing but gaps, or of zero length, draws as a continuous line.
  bool anyDrawn = false;
  for (double len : pattern.lengths) anyDrawn = anyDrawn || len >= 0.0;
  if (!anyDrawn || !(pattern.total > 0.0)) return {};
  return pattern;
}

bool dashIntervals(double length, const DashPattern& pattern, std::vector<DashInterval>& out, size_t maxIntervals) {
  out.clear();
  if (!pattern.isDashed() || !(length >= 0.0) || !std::isfinite(length)) return false;
  double estimate = length / pattern.total * double(pattern.lengths.size());
  if (estimate > double(maxIntervals)) return false;
  double pos = 0.0;
  size_t i = 0;
  while (pos <= length) {
    double len = pattern.lengths[i];
    if (len > 0.0 && pos < length) out.push_back({pos, std::min(pos + len, length)});
    if (len == 0.0) out.push_back({pos, pos});
    pos += std::fabs(len);
    i = (i + 1) % pattern.lengths.size();
  }
  return true;
}

namespace {

OdGePoint3d pointAt(const std::vector<OdGePoint3d>& chain, const std::vector<double>& cumulative, double s,
                    size_t& segment) {
  while (segment + 1 < cumulative.size() - 1 && cumulative[segment + 1] < s) ++segment;
  double segLen = cumulative[segment + 1] - cumulative[segment];
  double t = segLen > 0.0 ? (s - cumulative[segment]) / segLen : 0.0;
  t = std::clamp(t, 0.0, 1.0);
  return chain[segment] + (chain[segment + 1] - chain[segment]) * t;
}

}  // namespace

bool dashChain(const std::vector<OdGePoint3d>& chain, const DashPattern& pattern,
               const std::function<void(const std::vector<OdGePoint3d>&)>& emit, size_t maxIntervals) {
  if (chain.size() < 2) return false;
  std::vector<double> cumulative(chain.size(), 0.0);
  for (size_t i = 1; i < chain.size(); ++i) cumulative[i] = cumulative[i - 1] + chain[i].distanceTo(chain[i - 1]);
  std::vector<DashInterval> intervals;
  if (!dashIntervals(cumulative.back(), pattern, intervals, maxIntervals)) return false;
  std::vector<OdGePoint3d> piece;
  size_t segment = 0;
  for (const DashInterval& d : intervals) {
    piece.clear();
    size_t startSegment = segment;
    piece.push_back(pointAt(chain, cumulative, d.from, startSegment));
    segment = startSegment;
    if (d.to > d.from) {
      // The chain's own vertices inside the dash keep its shape.
      for (size_t k = startSegment + 1; k < chain.size() && cumulative[k] < d.to; ++k) {
        if (cumulative[k] > d.from) piece.push_back(chain[k]);
      }
      size_t endSegment = startSegment;
      piece.push_back(pointAt(chain, cumulative, d.to, endSegment));
    }
    emit(piece);
  }
  return true;
}

}  // namespace gi

// Stroke widths as the primitives are collected. Every record keeps its width in hundredths of an
// output unit, whatever its origin: a geometric width (a polyline's constant width, already in
// output units) is geometry and keeps its size on the page; a line weight (hundredths of a
// millimetre) is drawn as a plot draws it, with the page fitted onto an A-size sheet.
#include <algorithm>
#include <cmath>

#include "drivers/TRANS_BASE2.h"

namespace {

// The sheet a line weight is plotted on: ANSI A in landscape, in millimetres.
constexpr double kSheetLongSide = 279.4;
constexpr double kSheetShortSide = 215.9;
// The device window is ten output units per unit of the drawing size.
constexpr double kWindowUnitsPerDrawingUnit = 10.0;
// Widths are kept in hundredths of an output unit, the unit line weights arrive in.
constexpr double kHundredths = 100.0;
// The heaviest line weight there is (2.11 mm).
constexpr double kHeaviestLineWeight = 211.0;

}  // namespace

double TRANS_BASE2::OutputUnitsPerSheetMillimetre() const {
  double width = kWindowUnitsPerDrawingUnit * static_cast<double>(m_drawingWidth) * m_unitScale;
  double height = kWindowUnitsPerDrawingUnit * static_cast<double>(m_drawingHeight) * m_unitScale;
  double longSide = std::max(width, height);
  double shortSide = std::min(width, height);
  // Without a known page a millimetre is one unit.
  if (!(shortSide > 0.0) || !std::isfinite(longSide)) return 1.0;
  return std::max(longSide / kSheetLongSide, shortSide / kSheetShortSide);
}

double TRANS_BASE2::LargestStrokeWidth() const {
  double largest = kWindowUnitsPerDrawingUnit * static_cast<double>(std::max(m_drawingWidth, m_drawingHeight)) *
                   std::fabs(m_unitScale);
  return largest > 0.0 && std::isfinite(largest) ? largest : kHeaviestLineWeight;
}

TRANS_BASE2::StrokeWidth TRANS_BASE2::CollectedStrokeWidth(int widthIsGeometric, double lineWidth) const {
  // No usable width (none, negative, not a number, infinite) draws at the thinnest width.
  if (!(lineWidth > 0.0) || !std::isfinite(lineWidth)) return {0.0, 0, false};
  if (widthIsGeometric) {
    // Wider than the page helps no one: the stroke still covers all of it.
    double width = std::min(lineWidth * std::fabs(m_unitScale), LargestStrokeWidth());
    return {width * kHundredths, 0, false};
  }
  double weight = std::min(lineWidth, kHeaviestLineWeight);
  return {weight * OutputUnitsPerSheetMillimetre(), static_cast<int>(weight), false};
}

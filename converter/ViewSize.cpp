// The output size of a view: the given width and height fitted to the view's aspect, or the view's
// size at the given DPI, never above rasterMaxSize on either side.
#include <cmath>

#include "converter/CDm2017.h"
#include "converter/DrawingUnits.h"
#include "services/Trace.h"

namespace {

// ⌊0.999 + value⌋: rounds up unless the value is within a thousandth above a whole number.
double Ceil999(double value) { return std::floor(0.999 + value); }

}  // namespace

void CDm2017::ComputeViewSize(double viewWidthIn, double viewHeightIn) {
  const double limit = rasterMaxSize;
  const double aspect = viewHeightIn != 0.0 ? viewWidthIn / viewHeightIn : 1.0;
  if (dpi == 0) {
    if (width > rasterMaxSize || height > rasterMaxSize) width = height = rasterMaxSize;
    if (width == height && std::isfinite(aspect) && aspect > 0.0) {
      if (aspect <= 1.0) {
        width = static_cast<int64_t>(Ceil999(static_cast<double>(height) * aspect));
      } else {
        height = static_cast<int64_t>(Ceil999(static_cast<double>(width) / aspect));
      }
    }
    viewWidth = static_cast<double>(width);
    viewHeight = static_cast<double>(height);
  } else {
    if (units == 0 && g_pDb) SetUnits(UnitsFromDrawing(g_pDb->header().insUnits, g_pDb->header().measurement));
    const double scale = dpi / unitFactor;
    const double w = viewWidthIn * scale;
    const double h = viewHeightIn * scale;
    if (w > limit || h > limit) {
      if (aspect <= 1.0) {
        viewWidth = Ceil999(limit * aspect);
        viewHeight = limit;
      } else {
        viewWidth = limit;
        viewHeight = Ceil999(limit / aspect);
      }
    } else {
      viewWidth = w;
      viewHeight = h;
    }
  }
  TraceMessage("ViewWidth", viewWidth);
  TraceMessage("ViewHeight", viewHeight);
  height = std::isfinite(viewHeight) ? static_cast<int64_t>(viewHeight) : 0;
  width = std::isfinite(viewWidth) ? static_cast<int64_t>(viewWidth) : 0;
  viewActive = true;
}

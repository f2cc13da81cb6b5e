// Point lists that are something else: the frame of a raster image, a tessellated circle that
// can be drawn as one, and the filled rectangle behind a text that must take the page colour.
#include <algorithm>
#include <cmath>

#include "drivers/TRANS_BASE2.h"
#include "kit/gi/GiCurves.h"
#include "services/Trace.h"
#include "vectorizer/EntityDrawState.h"
#include "vectorizer/OdGiDumperImpl.h"

namespace {

// Fewer points than this are a polygon, not a circle.
constexpr int32_t kMinCirclePoints = 21;
// The SVG writer draws line weights at three quarters of the PDF writer's width.
constexpr double kSvgWidthFactor = 0.75;
// How far (relative to the radius) a point may stray from the fitted circle: tessellated circles
// lie on it, ellipses made by a non-uniform scale do not.
constexpr double kRoundnessTolerance = 1e-3;

// The points go all the way round the circle: a clipped piece or an arc leaves a gap between its
// last and first points wider than its steps.
bool IsWholeRoundCircle(int32_t numPoints, const OdGePoint3d* points, const OdGePoint3d& center, double r) {
  double largestStep = 0.0;
  for (int32_t i = 0; i < numPoints; ++i) {
    double distance = std::hypot(points[i].x - center.x, points[i].y - center.y);
    if (!(std::fabs(distance - r) <= kRoundnessTolerance * r)) return false;
    if (i > 0) {
      largestStep = std::max(largestStep, std::hypot(points[i].x - points[i - 1].x, points[i].y - points[i - 1].y));
    }
  }
  const OdGePoint3d& first = points[0];
  const OdGePoint3d& last = points[numPoints - 1];
  return std::hypot(last.x - first.x, last.y - first.y) <= 1.5 * largestStep;
}

}  // namespace

bool DrawRasterFrame(TRANS_BASE2& driver, int32_t numPoints, const OdGePoint3d* points) {
  EntityDrawState& s = g_EntityDrawState;
  if (numPoints != 5 || s.rasterFileName.isEmpty()) return false;
  TraceMessage("Process Raster Image", s.rasterFileName);
  OdGePoint2d minPoint = points[0].to2d(), maxPoint = minPoint;
  for (int32_t i = 1; i < numPoints; ++i) {
    minPoint = {std::min(minPoint.x, points[i].x), std::min(minPoint.y, points[i].y)};
    maxPoint = {std::max(maxPoint.x, points[i].x), std::max(maxPoint.y, points[i].y)};
  }
  TraceMessage("   MinPoint", OdString().format(L"%g, %g", minPoint.x, minPoint.y));
  TraceMessage("   MaxPoint", OdString().format(L"%g, %g", maxPoint.x, maxPoint.y));
  driver.DrawEmbeddedImage(s.rasterFileName, s.rasterWidth, s.rasterHeight, {}, 1, minPoint.x, minPoint.y,
                           maxPoint.x, maxPoint.y, 0.0);
  s.rasterFileName.empty();
  return true;
}

bool DrawDetectedCircle(TRANS_BASE2& driver, int32_t numPoints, const OdGePoint3d* points) {
  EntityDrawState& s = g_EntityDrawState;
  if (numPoints < kMinCirclePoints || !s.circleCandidate) return false;
  OdGePoint3d center;
  double r = 0.0;
  OdGeVector3d normal;
  OdGePoint3d a(points[0].x, points[0].y), b(points[numPoints / 3].x, points[numPoints / 3].y),
      c(points[2 * numPoints / 3].x, points[2 * numPoints / 3].y);
  if (!circleThroughPoints(a, b, c, center, r, normal) || !(r > 0.0)) return false;
  if (!IsWholeRoundCircle(numPoints, points, center, r)) return false;
  // A line weight is no geometry: the circle keeps its radius and its weight, as a native one does.
  if (!s.widthIsGeometric && !s.fillOn) {
    driver.DrawCircle(false, s.lineTypeName, s.isContinuous, 0, center.x, center.y, r, s.lineTypeScale, s.lineWidth);
    s.circleCandidate = 0;
    return true;
  }
  // A geometric width arrives in output units, as the points do.
  double w = s.widthIsGeometric ? s.lineWidth : 0.0;
  if (driver.GetFormatCode() == 1016) w *= kSvgWidthFactor;
  double ringRadius = r - std::fabs(w / 2);
  // A ring as wide as the circle is a disk: never a circle of no radius.
  if (w >= r || s.fillOn || !(ringRadius > 0.0)) {
    s.lineWidth = 0.0;
    driver.DrawCircle(true, L"CONTINUOUS", true, 1, center.x, center.y, r, 1.0, 0.0);
  } else {
    // A ring drawn on its centre line with the ring's full width.
    driver.DrawCircle(false, s.lineTypeName, s.isContinuous, s.widthIsGeometric, center.x, center.y, ringRadius,
                      s.lineTypeScale, 2 * w);
  }
  s.circleCandidate = 0;
  return true;
}

int BeginBackgroundMask(TRANS_BASE2& driver, const OdGePoint3d* points) {
  EntityDrawState& s = g_EntityDrawState;
  if (!s.isBackgroundMask) return -1;
  s.maskFilled = 0;
  double dx = std::fabs(points[3].x - points[0].x);
  double dy = std::fabs(points[3].y - points[0].y);
  if (!(dx > 0.0 && dy > 0.0 && s.closedFlag && s.fillOn)) return -1;
  s.maskFilled = 1;
  int previous = driver.GetColorIndex();
  if (driver.BackgroundIsBlack()) driver.SetColorRGB(0, 0, 0);
  else driver.SetColorRGB(255, 255, 255);
  return previous;
}

// The dumper's central routine: every point list of the sink ends here.
#include <cmath>

#include "drivers/TRANS_BASE2.h"
#include "vectorizer/EntityDrawState.h"
#include "vectorizer/OdGiDumperImpl.h"
#include "vectorizer/OutputDriverPointer.h"

namespace {

// Points closer than this in every coordinate are one point: keeps tessellations small.
constexpr double kDuplicateDistance = 0.1;

bool Near(const OdGePoint3d& a, const OdGePoint3d& b) {
  return std::fabs(a.x - b.x) < kDuplicateDistance && std::fabs(a.y - b.y) < kDuplicateDistance &&
         std::fabs(a.z - b.z) < kDuplicateDistance;
}

std::vector<OdGePoint2d> DistinctPoints(int32_t numPoints, const OdGePoint3d* points) {
  std::vector<OdGePoint2d> taken;
  taken.reserve(size_t(numPoints));
  taken.push_back(points[0].to2d());
  OdGePoint3d last = points[0];
  for (int32_t i = 1; i < numPoints; ++i) {
    const OdGePoint3d& p = points[i];
    if (Near(p, last)) continue;
    taken.push_back(p.to2d());
    last = p;
  }
  // The list always ends where the line ends, so that the next line meets it without a gap: a
  // last point that was thinned away replaces the last one kept.
  const OdGePoint3d& end = points[numPoints - 1];
  if (taken.size() > 1 && !(last == end)) taken.back() = end.to2d();
  return taken;
}

void UseMaskLineStyle(EntityDrawState& s) {
  ResetLineType();
  s.lineWidth = 0.0;
  s.widthIsGeometric = 1;
}

}  // namespace

void OdGiDumperImpl::outputPolyline(int32_t numPoints, const OdGePoint3d* points) {
  TRANS_BASE2* driver = g_pOutputDriver;
  if (!driver || numPoints <= 0 || !points) return;
  EntityDrawState& s = g_EntityDrawState;
  if (s.isBackgroundMask) UseMaskLineStyle(s);
  if (numPoints == 5 && s.skipNextFrame) {
    s.skipNextFrame = 0;
    return;
  }
  if (DrawRasterFrame(*driver, numPoints, points)) return;
  if (DrawDetectedCircle(*driver, numPoints, points)) return;
  s.circleCandidate = 0;
  driver->ResetPendingPath();

  std::vector<OdGePoint2d> taken = DistinctPoints(numPoints, points);
  if (taken.size() == 1) {
    if (!driver->arcHandled) driver->DrawDot(taken[0].x, taken[0].y);
    return;
  }
  if (taken.size() == 2 && s.widthIsGeometric == 0) {
    driver->DrawLine(s.lineTypeName, s.isContinuous, s.widthIsGeometric, taken[0].x, taken[0].y, taken[1].x,
                     taken[1].y, s.lineTypeScale, s.lineWidth);
    return;
  }
  size_t distinct = taken.size();
  if (s.closedFlag) taken.push_back(taken.front());
  int restoreColor = distinct == 4 ? BeginBackgroundMask(*driver, points) : -1;
  driver->DrawPolyline(taken, s.closedFlag && s.fillOn, s.pathStyle, s.lineTypeName, s.isContinuous,
                       s.widthIsGeometric, s.lineTypeScale, s.lineWidth);
  if (restoreColor >= 0) driver->SetColor(restoreColor);
}

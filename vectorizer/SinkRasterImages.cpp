// Images whose pixels the kit hands over: written as PNG files beside the output and placed into
// the drawing in their frame.
#include <algorithm>
#include <cmath>

#include "drivers/TRANS_BASE2.h"
#include "kit/gi/GiCurves.h"
#include "vectorizer/EntityDrawState.h"
#include "vectorizer/OdGiConveyorGeometryDumper.h"
#include "vectorizer/OutputDriverPointer.h"
#include "vectorizer/RasterFiles.h"

namespace {

constexpr double kDegreesPerRadian = 180.0 / kPi;
// Below this the frame counts as unrotated.
constexpr double kUnrotatedAngle = 1e-9;

}  // namespace

void OdGiConveyorGeometryDumper::rasterImageProc(const OdGePoint3d& origin, const OdGeVector3d& u,
                                                 const OdGeVector3d& v, const OdGiRasterImage* image,
                                                 const OdGePoint2d*, uint32_t, bool, double, double, double) {
  double uAngle = angleOf(u.x, u.y);
  g_EntityDrawState.closedFlag = 0;
  TRANS_BASE2* driver = g_pOutputDriver;
  if (!driver || !image) return;
  OdString fileName = NextImageFileName(driver->GetOutputFileName());
  int64_t width = 0, height = 0;
  if (!CreateRasterFile(*image, fileName, width, height, int(image->colorDepth()), 1.0)) return;

  OdGeVector3d across = u * double(width), up = v * double(height);
  OdGePoint3d corners[4] = {origin, origin + across, origin + across + up, origin + up};
  driver->ResetPendingPath();
  OdGePoint2d minPoint = origin.to2d(), maxPoint = minPoint;
  for (const OdGePoint3d& c : corners) {
    minPoint = {std::min(minPoint.x, c.x), std::min(minPoint.y, c.y)};
    maxPoint = {std::max(maxPoint.x, c.x), std::max(maxPoint.y, c.y)};
  }
  bool rotated = uAngle > kUnrotatedAngle && uAngle < 2 * kPi - kUnrotatedAngle;
  if (!rotated) {
    driver->DrawEmbeddedImage(fileName, width, height, {}, 1, minPoint.x, minPoint.y, maxPoint.x, maxPoint.y, 0.0);
    return;
  }
  // A rotated image is placed by its unrotated size at its origin and turned about it.
  double drawnWidth = across.length(), drawnHeight = up.length();
  driver->DrawEmbeddedImage(fileName, width, height, {}, 1, origin.x, origin.y, origin.x + drawnWidth,
                            origin.y + drawnHeight, uAngle * kDegreesPerRadian);
}

// Raster images: pictures whose pixels the kit hands over are written as PNG files beside the
// output; pictures given by file were converted by the entity rules. Both are placed into the
// drawing in their frame (turned and mirrored as the frame is) and cut by their clip outline.
#include <algorithm>
#include <cmath>

#include "drivers/TRANS_BASE2.h"
#include "kit/gi/GiCurves.h"
#include "kit/gi/GiImageOutline.h"
#include "services/Trace.h"
#include "vectorizer/EntityDrawState.h"
#include "vectorizer/OdGiConveyorGeometryDumper.h"
#include "vectorizer/OutputDriverPointer.h"
#include "vectorizer/RasterFiles.h"

namespace {

constexpr double kDegreesPerRadian = 180.0 / kPi;
// Below this the frame counts as unrotated.
constexpr double kUnrotatedAngle = 1e-9;

// Where a picture goes, in output coordinates: its corner and its two sides.
struct PictureFrame {
  OdGePoint3d origin;
  OdGeVector3d across;  // the bottom edge, left to right in the picture
  OdGeVector3d up;      // the left edge, bottom to top in the picture
};

// A clip outline that is the rectangle of two pixel corners (as the regeneration expands it).
bool IsPixelRectangle(const OdGePoint2d* clip, uint32_t count) {
  return count == 4 && clip[1].x == clip[2].x && clip[1].y == clip[0].y && clip[3].x == clip[0].x &&
         clip[3].y == clip[2].y;
}

// The clip outline in output coordinates: two corners for a rectangle, else every point.
std::vector<OdGePoint2d> OutputClip(const OdGePoint3d& origin, const OdGeVector3d& u, const OdGeVector3d& v,
                                    double height, const OdGePoint2d* clip, uint32_t count) {
  std::vector<OdGePoint2d> points;
  if (!clip || count < 3) return points;
  if (IsPixelRectangle(clip, count)) {
    for (uint32_t corner : {0u, 2u}) points.push_back(gi::imagePixelPoint(origin, u, v, height, clip[corner]).to2d());
    return points;
  }
  for (uint32_t i = 0; i < count; ++i) points.push_back(gi::imagePixelPoint(origin, u, v, height, clip[i]).to2d());
  return points;
}

void PlacePicture(TRANS_BASE2& driver, const OdString& fileName, int64_t pixelWidth, int64_t pixelHeight,
                  const PictureFrame& frame, const std::vector<OdGePoint2d>& clip) {
  driver.ResetPendingPath();
  const OdGePoint3d& o = frame.origin;
  double angle = angleOf(frame.across.x, frame.across.y);
  bool rotated = angle > kUnrotatedAngle && angle < 2 * kPi - kUnrotatedAngle;
  // The up side running clockwise from the bottom edge: the picture is seen from behind.
  bool mirrored = frame.across.x * frame.up.y - frame.across.y * frame.up.x < 0.0;
  if (!rotated && !mirrored) {
    OdGePoint3d corners[4] = {o, o + frame.across, o + frame.across + frame.up, o + frame.up};
    OdGePoint2d minPoint = o.to2d(), maxPoint = minPoint;
    for (const OdGePoint3d& c : corners) {
      minPoint = {std::min(minPoint.x, c.x), std::min(minPoint.y, c.y)};
      maxPoint = {std::max(maxPoint.x, c.x), std::max(maxPoint.y, c.y)};
    }
    driver.DrawEmbeddedImage(fileName, pixelWidth, pixelHeight, clip, 1, minPoint.x, minPoint.y, maxPoint.x,
                             maxPoint.y, 0.0);
    return;
  }
  // Placed by its own size at its corner, then turned about that corner (and flipped first when
  // mirrored).
  double width = frame.across.length(), height = frame.up.length();
  driver.DrawEmbeddedImage(fileName, pixelWidth, pixelHeight, clip, 1, o.x, o.y, o.x + width, o.y + height,
                           rotated ? angle * kDegreesPerRadian : 0.0, mirrored);
}

}  // namespace

void OdGiConveyorGeometryDumper::rasterImageProc(const OdGePoint3d& origin, const OdGeVector3d& u,
                                                 const OdGeVector3d& v, const OdGiRasterImage* image,
                                                 const OdGePoint2d* uvBoundary, uint32_t numBoundPts,
                                                 bool, double, double, double) {
  g_EntityDrawState.closedFlag = 0;
  TRANS_BASE2* driver = g_pOutputDriver;
  if (!driver || !image) return;
  double height = double(image->pixelHeight());
  std::vector<OdGePoint2d> clip = OutputClip(origin, u, v, height, uvBoundary, numBoundPts);
  PictureFrame frame{origin, u * double(image->pixelWidth()), v * height};
  if (!image->scanLines()) {
    // A picture given by file: placed when the entity rules found and converted it, otherwise
    // only its outline shows.
    EntityDrawState& s = g_EntityDrawState;
    if (s.rasterFileName.isEmpty()) {
      std::vector<OdGePoint3d> outline =
          gi::imageOutline(origin, u, v, double(image->pixelWidth()), height, uvBoundary, numBoundPts);
      OdGeVector3d normal = u.crossProduct(v);
      if (!normal.isZeroLength()) normal = normal.normal();
      polylineProc(int32_t(outline.size()), outline.data(), normal.isZeroLength() ? nullptr : &normal);
      return;
    }
    TraceMessage("Process Raster Image", s.rasterFileName);
    PlacePicture(*driver, s.rasterFileName, s.rasterWidth, s.rasterHeight, frame, clip);
    s.rasterFileName.empty();
    return;
  }
  OdString fileName = NextImageFileName(driver->GetOutputFileName());
  int64_t width = 0, pixelHeight = 0;
  if (!CreateRasterFile(*image, fileName, width, pixelHeight, int(image->colorDepth()), 1.0)) return;
  frame.across = u * double(width);
  frame.up = v * double(pixelHeight);
  PlacePicture(*driver, fileName, width, pixelHeight, frame, clip);
}

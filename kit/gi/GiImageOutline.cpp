#include "kit/gi/GiImageOutline.h"

namespace gi {

OdGePoint3d imagePixelPoint(const OdGePoint3d& origin, const OdGeVector3d& u, const OdGeVector3d& v, double height,
                            const OdGePoint2d& pixel) {
  return origin + u * (pixel.x + 0.5) + v * (height - (pixel.y + 0.5));
}

std::vector<OdGePoint3d> imageOutline(const OdGePoint3d& origin, const OdGeVector3d& u, const OdGeVector3d& v,
                                      double width, double height, const OdGePoint2d* pixelClip,
                                      uint32_t numClipPoints) {
  std::vector<OdGePoint3d> outline;
  if (pixelClip && numClipPoints >= 3) {
    outline.reserve(numClipPoints + 1);
    for (uint32_t i = 0; i < numClipPoints; ++i) outline.push_back(imagePixelPoint(origin, u, v, height, pixelClip[i]));
  } else {
    OdGeVector3d across = u * width, up = v * height;
    outline = {origin, origin + across, origin + across + up, origin + up};
  }
  if (!(outline.front() == outline.back())) outline.push_back(outline.front());
  return outline;
}

}  // namespace gi

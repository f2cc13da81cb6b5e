// Where a raster image lies: its frame, and the clip outline given in pixel coordinates mapped
// into the frame's space. Shared by the regeneration, the simplifier (which draws a picture it
// cannot show as its outline) and devices that place pictures.
#pragma once

#include <cstdint>
#include <vector>

#include "kit/base/Geometry.h"

namespace gi {

// A pixel position (x to the right, y down from the top edge, pixel centres at whole numbers) in
// the space of the frame at `origin` with one pixel along `u` and `v` and `height` pixel rows.
OdGePoint3d imagePixelPoint(const OdGePoint3d& origin, const OdGeVector3d& u, const OdGeVector3d& v, double height,
                            const OdGePoint2d& pixel);

// The clip outline mapped into the frame's space, or the frame itself when there is none (fewer
// than three points); closed by repeating its first point.
std::vector<OdGePoint3d> imageOutline(const OdGePoint3d& origin, const OdGeVector3d& u, const OdGeVector3d& v,
                                      double width, double height, const OdGePoint2d* pixelClip,
                                      uint32_t numClipPoints);

}  // namespace gi

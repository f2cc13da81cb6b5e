// Raster images, underlays and OLE frames as their frames (a closed five-point outline that a
// device may fill with the picture); wipeouts as areas filled with the background colour;
// viewport borders.
#include <algorithm>
#include <cmath>

#include "kit/gi/GiImageOutline.h"
#include "kit/gi/regen/RegenEntities.h"
#include "kit/gi/regen/RegenPrimitives.h"

namespace gi {

namespace {

// The clip boundary when there is one to use, else the full frame; closed.
std::vector<OdGePoint3d> imageOutline(const RasterImageData& image, bool useClip) {
  std::vector<OdGePoint2d> loop;
  if (useClip && image.clipBoundary.size() >= 2) {
    loop = image.clipBoundary;
    if (loop.size() == 2) {
      OdGePoint2d a = loop[0], b = loop[1];
      loop = {a, {b.x, a.y}, b, {a.x, b.y}};
    }
  }
  return gi::imageOutline(image.origin, image.uVector, image.vVector, image.imageSize.x, image.imageSize.y,
                          loop.data(), uint32_t(loop.size()));
}

OdGeVector3d normalOf(const RasterImageData& image) {
  OdGeVector3d n = image.uVector.crossProduct(image.vVector);
  return n.isZeroLength() ? kDefaultNormal : n.normal();
}

}  // namespace

namespace {

// A picture the device finds by itself (the image definition names its file): only its size in
// pixels travels down the conveyor, no pixel rows.
class PictureBySize : public OdGiRasterImage {
public:
  PictureBySize(uint32_t width, uint32_t height) : width_(width), height_(height) {}
  uint32_t pixelWidth() const override { return width_; }
  uint32_t pixelHeight() const override { return height_; }
  uint32_t colorDepth() const override { return 0; }
  uint32_t scanLineSize() const override { return 0; }
  uint32_t paletteDataSize() const override { return 0; }
  const uint8_t* paletteData() const override { return nullptr; }
  const uint8_t* scanLines() const override { return nullptr; }

private:
  uint32_t width_, height_;
};

// Whole pixels between 1 and a bound that keeps damaged sizes from overflowing; 0 when unusable.
uint32_t pixelCount(double size) {
  constexpr double kMaxPixels = 1e9;
  if (!(size >= 0.5) || !std::isfinite(size)) return 0;
  return uint32_t(std::min(std::round(size), kMaxPixels));
}

// The clip outline in pixel coordinates when the image is clipped: a rectangle by its two corners
// becomes its four; fewer than three distinct points clip nothing.
std::vector<OdGePoint2d> pixelClip(const RasterImageData& image) {
  if (!image.clipping || image.clipBoundary.size() < 2) return {};
  std::vector<OdGePoint2d> loop = image.clipBoundary;
  if (loop.size() == 2) {
    OdGePoint2d a = loop[0], b = loop[1];
    loop = {a, {b.x, a.y}, b, {a.x, b.y}};
  }
  if (loop.size() > 1 && loop.front() == loop.back()) loop.pop_back();
  for (const OdGePoint2d& p : loop) {
    if (!std::isfinite(p.x) || !std::isfinite(p.y)) return {};
  }
  return loop.size() >= 3 ? loop : std::vector<OdGePoint2d>();
}

}  // namespace

void regenImageFrame(GiRegenContext& ctx, const RasterImageData& image) {
  // An image whose display is switched off shows nothing, neither picture nor frame.
  if (!(image.displayFlags & RasterImageData::kShow)) return;
  uint32_t width = pixelCount(image.imageSize.x), height = pixelCount(image.imageSize.y);
  if (width == 0 || height == 0) {
    std::vector<OdGePoint3d> outline = imageOutline(image, image.clipping);
    if (outline.size() < 3) return;
    OdGeVector3d normal = normalOf(image);
    ctx.geometry().polylineProc(int32_t(outline.size()), outline.data(), &normal);
    return;
  }
  // The picture in its frame, cut by its clip outline; a device that cannot show it draws the
  // outline instead.
  PictureBySize picture(width, height);
  std::vector<OdGePoint2d> clip = pixelClip(image);
  ctx.geometry().rasterImageProc(image.origin, image.uVector, image.vVector, &picture,
                                 clip.empty() ? nullptr : clip.data(), uint32_t(clip.size()),
                                 (image.displayFlags & RasterImageData::kTransparent) != 0, image.brightness,
                                 image.contrast, image.fade);
}

void regenWipeout(GiRegenContext& ctx, const WipeoutEntity& e) {
  std::vector<OdGePoint3d> outline = imageOutline(e, true);
  if (outline.size() < 4) return;
  outline.pop_back();
  OdGeVector3d normal = normalOf(e);
  OdGiSubEntityTraitsData before = ctx.effectiveTraits();
  ctx.traits().setTrueColor(ctx.backgroundColor());
  drawFilledPolygon(ctx, outline, &normal);
  ctx.traits().setAll(before);
}

void regenUnderlay(GiRegenContext& ctx, const UnderlayEntity& e) {
  // Without the underlay's own content only its clip boundary can be shown.
  if (e.clipBoundary.size() < 2) return;
  std::vector<OdGePoint2d> loop = e.clipBoundary;
  if (loop.size() == 2) {
    OdGePoint2d a = loop[0], b = loop[1];
    loop = {a, {b.x, a.y}, b, {a.x, b.y}};
  }
  OdGeMatrix3d placement = OdGeMatrix3d::planeToWorld(e.normal) * OdGeMatrix3d::translation(e.position.asVector()) *
                           OdGeMatrix3d::rotation(e.rotation, OdGeVector3d::kZAxis()) *
                           OdGeMatrix3d::scaling(e.scale.x, e.scale.y, e.scale.z);
  std::vector<OdGePoint3d> outline;
  for (const OdGePoint2d& p : loop) outline.push_back(placement.transform(OdGePoint3d(p.x, p.y, 0.0)));
  outline.push_back(outline.front());
  drawChain(ctx, outline);
}

void regenOle2Frame(GiRegenContext& ctx, const Ole2FrameEntity& e) {
  OdGePoint3d ul = e.upperLeft, lr = e.lowerRight;
  OdGePoint3d frame[5] = {ul, {lr.x, ul.y, ul.z}, lr, {ul.x, lr.y, lr.z}, ul};
  ctx.geometry().polylineProc(5, frame);
}

void regenViewportFrame(GiRegenContext& ctx, const ViewportEntity& e) {
  // The layout's own viewport and viewports clipped by another entity have no border here.
  if (e.number == 1 || !e.isOn() || (e.statusFlags & ViewportEntity::kNonRectangularClip)) return;
  double w = e.width / 2, h = e.height / 2;
  if (!(w > 0.0) || !(h > 0.0)) return;
  const OdGePoint3d& c = e.center;
  OdGePoint3d frame[5] = {{c.x - w, c.y - h, c.z}, {c.x + w, c.y - h, c.z}, {c.x + w, c.y + h, c.z},
                          {c.x - w, c.y + h, c.z}, {c.x - w, c.y - h, c.z}};
  ctx.geometry().polylineProc(5, frame);
}

}  // namespace gi

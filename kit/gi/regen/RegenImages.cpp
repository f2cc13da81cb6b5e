// Raster images, underlays and OLE frames as their frames (a closed five-point outline that a
// device may fill with the picture); wipeouts as areas filled with the background colour;
// viewport borders.
#include <cmath>

#include "kit/gi/regen/RegenEntities.h"
#include "kit/gi/regen/RegenPrimitives.h"

namespace gi {

namespace {

// Pixel coordinates (y running down from the top edge) to world coordinates.
OdGePoint3d pixelToWorld(const RasterImageData& image, const OdGePoint2d& p) {
  return image.origin + image.uVector * (p.x + 0.5) + image.vVector * (image.imageSize.y - (p.y + 0.5));
}

// The clip boundary when there is one to use, else the full frame; closed.
std::vector<OdGePoint3d> imageOutline(const RasterImageData& image, bool useClip) {
  std::vector<OdGePoint3d> outline;
  if (useClip && image.clipBoundary.size() >= 2) {
    std::vector<OdGePoint2d> loop = image.clipBoundary;
    if (loop.size() == 2) {
      OdGePoint2d a = loop[0], b = loop[1];
      loop = {a, {b.x, a.y}, b, {a.x, b.y}};
    }
    for (const OdGePoint2d& p : loop) outline.push_back(pixelToWorld(image, p));
  } else {
    OdGeVector3d u = image.uVector * image.imageSize.x, v = image.vVector * image.imageSize.y;
    outline = {image.origin, image.origin + u, image.origin + u + v, image.origin + v};
  }
  if (!outline.empty() && !(outline.front() == outline.back())) outline.push_back(outline.front());
  return outline;
}

OdGeVector3d normalOf(const RasterImageData& image) {
  OdGeVector3d n = image.uVector.crossProduct(image.vVector);
  return n.isZeroLength() ? kDefaultNormal : n.normal();
}

}  // namespace

void regenImageFrame(GiRegenContext& ctx, const RasterImageData& image) {
  std::vector<OdGePoint3d> outline = imageOutline(image, image.clipping);
  if (outline.size() < 3) return;
  OdGeVector3d normal = normalOf(image);
  ctx.geometry().polylineProc(int32_t(outline.size()), outline.data(), &normal);
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

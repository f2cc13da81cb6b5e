// SHAPE: one shape of the compiled shape file its text style names, by name (DXF) or by number
// (DWG), scaled by the entity's size over the file's declared height, then width factor,
// obliquing and rotation in the entity's plane.
#include <algorithm>
#include <cmath>

#include "kit/gi/ShxFont.h"
#include "kit/gi/StrokeFont.h"
#include "kit/gi/regen/RegenEntities.h"

namespace gi {

namespace {

const Glyph* shapeOf(const ShxFont& file, const ShapeEntity& e) {
  if (!e.name.empty()) {
    if (uint32_t number = file.numberOf(e.name)) return file.shape(number);
  }
  return e.number > 0 ? file.shape(uint32_t(uint16_t(e.number))) : nullptr;
}

}  // namespace

void regenShape(GiRegenContext& ctx, const ShapeEntity& e) {
  if (!e.style) return;
  const ShxFont* file = shapeFileFor(e.style->fontFile);
  const Glyph* glyph = file ? shapeOf(*file, e) : nullptr;
  if (!glyph || !(e.size > 0.0) || !std::isfinite(e.size)) return;
  double scale = e.size / file->unitsPerHeight();
  double width = std::isfinite(e.widthFactor) && e.widthFactor > 0.0 ? e.widthFactor : 1.0;
  double slant = std::tan(std::clamp(std::isfinite(e.oblique) ? e.oblique : 0.0, -1.48, 1.48));
  double rotation = std::isfinite(e.rotation) ? e.rotation : 0.0;
  OdGeVector3d x(std::cos(rotation), std::sin(rotation), 0.0), y(-x.y, x.x, 0.0);
  OdGeMatrix3d plane = OdGeMatrix3d::planeToWorld(e.normal);
  auto place = [&](const OdGePoint2d& p) {
    OdGePoint3d inPlane = e.position + x * ((p.x * width + p.y * slant) * scale) + y * (p.y * scale);
    return plane.transform(inPlane);
  };
  double deviation = ctx.localDeviation() / scale;
  std::vector<OdGePoint2d> flat;
  std::vector<OdGePoint3d> points;
  for (const auto& stroke : glyph->strokes) {
    flattenStroke(stroke, deviation, flat);
    if (flat.empty()) continue;
    points.clear();
    for (const OdGePoint2d& p : flat) points.push_back(place(p));
    ctx.geometry().polylineProc(int32_t(points.size()), points.data());
  }
}

}  // namespace gi

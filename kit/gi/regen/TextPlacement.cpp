#include "kit/gi/regen/TextPlacement.h"

#include <algorithm>
#include <cmath>

namespace gi {

TextRun placeText(const TextData& text, double advance, double defaultHeight, double defaultWidthFactor,
                  double descent) {
  TextRun run;
  double height = text.height > 0.0 && std::isfinite(text.height) ? text.height : defaultHeight;
  double widthFactor = text.widthFactor > 0.0 && std::isfinite(text.widthFactor) ? text.widthFactor : defaultWidthFactor;
  double rotation = std::isfinite(text.rotation) ? text.rotation : 0.0;
  OdGePoint3d first = text.position;
  OdGePoint3d second = text.hasAlignmentPoint ? text.alignmentPoint : text.position;
  const int h = text.horizontalMode, v = text.verticalMode;
  // Aligned and fit texts run from the first to the second point.
  if ((h == TextData::kAligned || h == TextData::kFit) && text.hasAlignmentPoint) {
    OdGeVector3d span(second.x - first.x, second.y - first.y, 0.0);
    double length = span.length();
    if (length > 0.0 && advance > 0.0) {
      rotation = std::atan2(span.y, span.x);
      if (h == TextData::kAligned) height = length / (advance * widthFactor);
      else widthFactor = length / (advance * height);
    }
  }
  bool backward = (text.generationFlags & TextData::kMirroredX) != 0;
  bool upsideDown = (text.generationFlags & TextData::kMirroredY) != 0;
  OdGeVector3d x(std::cos(rotation), std::sin(rotation), 0.0);
  OdGeVector3d y(-x.y, x.x, 0.0);
  OdGeVector3d along = backward ? -x : x;
  OdGeVector3d rise = upsideDown ? -y : y;
  double width = advance * height * widthFactor;
  // The reference point and the run's offset from it.
  OdGePoint3d reference = first;
  double dx = 0.0, dy = 0.0;
  bool usesSecond = text.hasAlignmentPoint && (h != TextData::kLeft || v != TextData::kBaseline) &&
                    h != TextData::kAligned && h != TextData::kFit;
  if (usesSecond) reference = second;
  if (h == TextData::kCenter) dx = -width / 2;
  if (h == TextData::kRight) dx = -width;
  if (h == TextData::kMiddle) {
    dx = -width / 2;
    dy = -height / 2;
  } else if (h != TextData::kAligned && h != TextData::kFit) {
    if (v == TextData::kBottom) dy = height * (descent >= 0.0 && std::isfinite(descent) ? descent : 1.0 / 3.0);
    if (v == TextData::kMiddleV) dy = -height / 2;
    if (v == TextData::kTop) dy = -height;
  }
  OdGePoint3d planeStart = reference + along * dx + rise * dy;
  double oblique = std::clamp(std::isfinite(text.oblique) ? text.oblique : 0.0, -1.48, 1.48);
  OdGeVector3d slantedUp = rise + along * std::tan(oblique);
  OdGeMatrix3d plane = OdGeMatrix3d::planeToWorld(text.normal);
  run.start = plane.transform(planeStart);
  run.direction = plane.transform(along * (height * widthFactor));
  run.up = plane.transform(slantedUp * height);
  run.height = height;
  run.widthFactor = widthFactor;
  return run;
}

}  // namespace gi

// MTEXT (and multi-line attributes): the laid-out runs placed by the attachment point, each
// handed to textProc with its own height, width factor, font and colour; a background fill and a
// frame when the text asks for them.
#include <cmath>

#include "kit/gi/StrokeFont.h"
#include "kit/gi/TextCodes.h"
#include "kit/gi/regen/MTextLayout.h"
#include "kit/gi/regen/RegenEntities.h"
#include "kit/gi/regen/RegenPrimitives.h"

namespace gi {

namespace {

struct Frame {
  OdGePoint3d origin;
  OdGeVector3d x;
  OdGeVector3d y;
  OdGeVector3d normal;
  OdGePoint3d at(double u, double v) const { return origin + x * u + y * v; }
};

Frame frameOf(const MTextData& text) {
  Frame f;
  f.normal = text.normal.isZeroLength() ? kDefaultNormal : text.normal.normal();
  OdGeVector3d x = text.xDirection - f.normal * text.xDirection.dotProduct(f.normal);
  if (x.isZeroLength()) {
    double r = std::isfinite(text.rotation) ? text.rotation : 0.0;
    x = OdGeMatrix3d::planeToWorld(f.normal).transform(OdGeVector3d(std::cos(r), std::sin(r), 0.0));
  }
  f.x = x.normal();
  f.y = f.normal.crossProduct(f.x).normal();
  f.origin = text.position;
  return f;
}

OdGiTextStyle styleFor(GiRegenContext& ctx, const MTextData& text, const MTextFormat& format) {
  OdGiTextStyle style = ctx.textStyleOf(text.style, format.height, format.widthFactor, format.oblique);
  if (!format.font.empty()) {
    OdString name = toOdString(format.font);
    bool shx = format.font.size() > 4 && (format.font.ends_with(".shx") || format.font.ends_with(".SHX"));
    if (shx) {
      style.setFileName(name);
      style.setTypeface(OdString(), false, false);
    } else {
      style.setTypeface(name, format.bold, format.italic);
    }
  }
  return style;
}

void drawBox(GiRegenContext& ctx, const Frame& f, double left, double top, double right, double bottom, bool filled,
             const OdCmEntityColor& fillColor) {
  std::vector<OdGePoint3d> box = {f.at(left, bottom), f.at(right, bottom), f.at(right, top), f.at(left, top)};
  if (!filled) {
    box.push_back(box.front());
    ctx.geometry().polylineProc(int32_t(box.size()), box.data(), &f.normal);
    return;
  }
  OdGiSubEntityTraitsData before = ctx.effectiveTraits();
  ctx.traits().setTrueColor(fillColor);
  drawFilledPolygon(ctx, box, &f.normal);
  ctx.traits().setAll(before);
}

}  // namespace

void regenMText(GiRegenContext& ctx, const MTextData& text) {
  if (text.text.empty()) return;
  double height = text.height > 0.0 && std::isfinite(text.height) ? text.height : ctx.database().header().textSize;
  double widthFactor = text.style && text.style->widthFactor > 0.0 ? text.style->widthFactor : 1.0;
  MTextLayoutInput input;
  input.contents = utf8ToU32(text.text);
  input.height = height;
  input.widthFactor = widthFactor;
  input.referenceWidth = text.referenceWidth > 0.0 && std::isfinite(text.referenceWidth) ? text.referenceWidth : 0.0;
  input.lineSpacingFactor = text.lineSpacingFactor > 0.0 ? text.lineSpacingFactor : 1.0;
  input.exactSpacing = text.lineSpacingStyle == 2;
  auto measure = [&](const std::u32string& run, const MTextFormat& format) {
    std::u32string chars;
    for (const DecodedChar& c : decodeTextCodes(run, false)) chars += c.ch;
    return measureText(styleFor(ctx, text, format), chars) * format.height * format.widthFactor * format.tracking;
  };
  MTextLayoutResult layout = layoutMText(input, measure);
  Frame f = frameOf(text);
  int attachment = text.attachment >= 1 && text.attachment <= 9 ? text.attachment : 1;
  int column = (attachment - 1) % 3, row = (attachment - 1) / 3;
  double blockWidth = input.referenceWidth > 0.0 ? input.referenceWidth : layout.width;
  double top = row == 0 ? 0.0 : row == 1 ? layout.height / 2 : layout.height;
  double left = column == 0 ? 0.0 : column == 1 ? -blockWidth / 2 : -blockWidth;

  if (text.backgroundFlags & 3) {
    double margin = (std::max(text.backgroundScale, 1.0) - 1.0) * height / 2;
    OdCmEntityColor fill = (text.backgroundFlags & 2) ? ctx.backgroundColor()
                                                      : ctx.resolveColor(text.backgroundColor, nullptr);
    drawBox(ctx, f, left - margin, top + margin, left + blockWidth + margin, top - layout.height - margin, true, fill);
  }
  OdGiSubEntityTraitsData entityTraits = ctx.effectiveTraits();
  for (const MTextLine& line : layout.lines) {
    double lineLeft = column == 0 ? left : column == 1 ? -line.width / 2 : -line.width;
    if (input.referenceWidth > 0.0 && column == 0) lineLeft = left;
    for (const MTextRun& run : line.runs) {
      if (run.text.find_first_not_of(U' ') == std::u32string::npos) continue;
      if (run.format.hasColor) ctx.traits().setTrueColor(run.format.color);
      else ctx.traits().setAll(entityTraits);
      OdGiTextStyle style = styleFor(ctx, text, run.format);
      style.setUnderlined(run.format.underline);
      style.setOverlined(run.format.overline);
      double h = run.format.height;
      OdGeVector3d direction = f.x * (h * run.format.widthFactor);
      OdGeVector3d up = (f.y + f.x * std::tan(run.format.oblique)) * h;
      std::wstring wide(run.text.begin(), run.text.end());
      ctx.geometry().textProc(f.at(lineLeft + run.x, top + line.baseline), direction, up, wide.c_str(),
                              int32_t(wide.size()), false, &style);
    }
  }
  ctx.traits().setAll(entityTraits);
  if (text.backgroundFlags & 16) {
    drawBox(ctx, f, left, top, left + blockWidth, top - layout.height, false, {});
  }
}

}  // namespace gi

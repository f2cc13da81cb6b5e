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
    bool extension = format.font.size() > 4 && (format.font.ends_with(".shx") || format.font.ends_with(".SHX"));
    if (format.shxFont || extension) {
      style.setFileName(toOdString(extension ? format.font : format.font + ".shx"));
      style.setTypeface(OdString(), false, false);
    } else {
      style.setTypeface(toOdString(format.font), format.bold, format.italic);
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

// One run of characters from its baseline start: each glyph spaced out by the run's tracking.
void drawChars(GiRegenContext& ctx, const MTextData& text, const Frame& f, double x, double y,
               const std::u32string& chars, const MTextFormat& format, const OdGiTextStyle& style) {
  double h = format.height;
  OdGeVector3d direction = f.x * (h * format.widthFactor);
  OdGeVector3d up = (f.y + f.x * std::tan(format.oblique)) * h;
  auto draw = [&](double at, const std::u32string& part) {
    std::wstring wide(part.begin(), part.end());
    ctx.geometry().textProc(f.at(at, y), direction, up, wide.c_str(), int32_t(wide.size()), false, &style);
  };
  if (format.tracking == 1.0 || chars.size() < 2) {
    draw(x, chars);
    return;
  }
  // Tracking spaces the glyphs out: each is drawn on its own, its escapes decoded first.
  OdGiTextStyle measuring = styleFor(ctx, text, format);
  double advance = 0.0;
  for (const DecodedChar& c : decodeTextCodes(chars, false)) {
    std::u32string one(1, c.ch);
    draw(x + advance, one);
    advance += measureText(measuring, one) * h * format.widthFactor * format.tracking;
  }
}

void drawLine(GiRegenContext& ctx, const Frame& f, double x0, double y0, double x1, double y1) {
  OdGePoint3d line[2] = {f.at(x0, y0), f.at(x1, y1)};
  ctx.geometry().polylineProc(2, line, &f.normal);
}

void drawStack(GiRegenContext& ctx, const MTextData& text, const Frame& f, double x, double y, const MTextRun& run) {
  const MTextStackGeometry& g = run.stacked->shape;
  const MTextStack& stack = run.stacked->stack;
  MTextFormat part = run.format;
  part.height = g.height;
  OdGiTextStyle style = styleFor(ctx, text, part);
  if (!stack.top.empty()) drawChars(ctx, text, f, x + g.topX, y + g.topY, stack.top, part, style);
  if (!stack.bottom.empty()) drawChars(ctx, text, f, x + g.bottomX, y + g.bottomY, stack.bottom, part, style);
  if (g.hasLine) drawLine(ctx, f, x + g.lineX0, y + g.lineY0, x + g.lineX1, y + g.lineY1);
}

void drawRun(GiRegenContext& ctx, const MTextData& text, const Frame& f, double x, double y, const MTextRun& run) {
  if (run.stacked) {
    drawStack(ctx, text, f, x, y, run);
    return;
  }
  if (run.text.find_first_not_of(U' ') == std::u32string::npos) return;
  OdGiTextStyle style = styleFor(ctx, text, run.format);
  style.setUnderlined(run.format.underline);
  style.setOverlined(run.format.overline);
  style.setStruckThrough(run.format.strike);
  drawChars(ctx, text, f, x, y, run.text, run.format, style);
}

}  // namespace

void regenMText(GiRegenContext& ctx, const MTextData& text) {
  if (text.text.empty()) return;
  double height = text.height > 0.0 && std::isfinite(text.height) ? text.height : ctx.database().header().textSize;
  double widthFactor = text.style && text.style->widthFactor > 0.0 ? text.style->widthFactor : 1.0;
  int attachment = text.attachment >= 1 && text.attachment <= 9 ? text.attachment : 1;
  int column = (attachment - 1) % 3, row = (attachment - 1) / 3;
  MTextLayoutInput input;
  input.contents = utf8ToU32(text.text);
  input.height = height;
  input.widthFactor = widthFactor;
  input.referenceWidth = text.referenceWidth > 0.0 && std::isfinite(text.referenceWidth) ? text.referenceWidth : 0.0;
  input.lineSpacingFactor = text.lineSpacingFactor > 0.0 ? text.lineSpacingFactor : 1.0;
  input.exactSpacing = text.lineSpacingStyle == 2;
  if (text.columnType != 0 && text.columnWidth > 0.0 && std::isfinite(text.columnWidth)) {
    input.columns = true;
    input.referenceWidth = text.columnWidth;
    input.columnGutter = std::isfinite(text.columnGutter) ? text.columnGutter : 0.0;
    input.columnCount = text.columnType == 1 ? text.columnCount : 0;
    bool manual = text.columnType == 2 && !text.columnAutoHeight;
    if (manual) input.columnHeights = text.columnHeights;
    input.columnHeight = text.definedHeight > 0.0 && std::isfinite(text.definedHeight) ? text.definedHeight : 0.0;
  }
  input.defaultAlign = column == 0 ? MTextAlign::kLeft : column == 1 ? MTextAlign::kCenter : MTextAlign::kRight;
  auto measure = [&](const std::u32string& run, const MTextFormat& format) {
    std::u32string chars;
    for (const DecodedChar& c : decodeTextCodes(run, false)) chars += c.ch;
    return measureText(styleFor(ctx, text, format), chars) * format.height * format.widthFactor * format.tracking;
  };
  MTextLayoutResult layout = layoutMText(input, measure);
  Frame f = frameOf(text);
  double blockWidth = input.columns ? layout.width : input.referenceWidth > 0.0 ? input.referenceWidth : layout.width;
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
    for (const MTextRun& run : line.runs) {
      if (run.format.hasColor) ctx.traits().setTrueColor(run.format.color);
      else ctx.traits().setAll(entityTraits);
      drawRun(ctx, text, f, left + run.x, top + line.baseline + run.y, run);
    }
  }
  ctx.traits().setAll(entityTraits);
  if (text.backgroundFlags & 16) {
    drawBox(ctx, f, left, top, left + blockWidth, top - layout.height, false, {});
  }
}

}  // namespace gi

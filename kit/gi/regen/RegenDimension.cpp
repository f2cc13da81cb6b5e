// A dimension without the block that should hold its graphics (as several programs write them):
// drawn from its definition points and dimension variables, the entity's overrides winning over
// its style.
#include <cmath>
#include <numbers>

#include "kit/db/DimStyleOverrides.h"
#include "kit/db/OdDbDatabase.h"
#include "kit/gi/StrokeFont.h"
#include "kit/gi/TextCodes.h"
#include "kit/gi/regen/DimensionGeometry.h"
#include "kit/gi/regen/DimensionText.h"
#include "kit/gi/regen/RegenEntities.h"
#include "kit/gi/regen/RegenPrimitives.h"

namespace gi {
namespace {

using Kind = DimensionEntity::Kind;

struct Variables {
  const DimensionEntity& e;
  double real(int code, double fallback) const {
    double v = dimensionVariable(e, e.style, code, fallback);
    return std::isfinite(v) ? v : fallback;
  }
  int integer(int code, int fallback) const {
    int64_t v = dimensionInteger(e, e.style, code, fallback);
    return v >= -32768 && v <= 32767 ? int(v) : fallback;
  }
  // A size variable times DIMSCALE (0, as annotative styles say, counts as 1).
  double scaled(int code, double fallback) const {
    double scale = real(40, 1.0);
    return std::fabs(real(code, fallback)) * (scale > 0.0 ? scale : 1.0);
  }
};

DimensionFormat formatOf(const Variables& v) {
  DimensionFormat f;
  f.linearUnit = v.integer(277, 0);
  if (f.linearUnit == 0) {
    // Before DIMLUNIT, DIMUNIT: 6 and 7 are the unstacked architectural and fractional, 8 the
    // system's units.
    static const int kFromOldUnit[] = {2, 1, 2, 3, 4, 5, 4, 5, 6};
    int old = v.integer(270, 2);
    f.linearUnit = old >= 1 && old <= 8 ? kFromOldUnit[old] : 2;
  }
  f.decimals = v.integer(271, 4);
  f.zeroSuppression = v.integer(78, 0);
  f.roundTo = v.real(45, 0.0);
  f.linearFactor = v.real(144, 1.0);
  int separator = v.integer(278, '.');
  f.decimalSeparator = separator > 32 && separator < 127 ? char(separator) : '.';
  f.post = dimensionString(v.e, v.e.style, 3);
  f.angularUnit = v.integer(275, 0);
  f.angularDecimals = v.integer(179, 0);
  f.angularZeroSuppression = v.integer(79, 0);
  f.tolerance = v.integer(71, 0) != 0;
  f.limits = v.integer(72, 0) != 0;
  f.plus = v.real(47, 0.0);
  f.minus = v.real(48, 0.0);
  f.toleranceDecimals = v.integer(272, 4);
  f.toleranceZeroSuppression = v.integer(284, 0);
  return f;
}

// The arrowhead a DIMBLK-like variable names: a block handle, or a name in files of old releases.
DimensionArrow arrowOf(const OdDbDatabase& db, const Variables& v, int handleCode, int nameCode) {
  OdDbHandle handle = dimensionHandle(v.e, v.e.style, handleCode);
  if (!handle.isNull()) {
    const BlockRecord* block = db.findAs<BlockRecord>(handle);
    return block ? dimensionArrowByName(block->name) : DimensionArrow::kClosedFilled;
  }
  return dimensionArrowByName(dimensionString(v.e, v.e.style, nameCode));
}

DimensionGeometryStyle geometryStyleOf(const OdDbDatabase& db, const Variables& v) {
  DimensionGeometryStyle s;
  s.arrowSize = v.scaled(41, 0.18);
  s.tickSize = v.scaled(142, 0.0);
  s.extensionOffset = v.scaled(42, 0.0625);
  s.extensionBeyond = v.scaled(44, 0.18);
  s.lineBeyond = v.scaled(46, 0.0);
  s.centerMark = v.scaled(141, 0.09);
  s.textHeight = v.scaled(140, 0.18);
  s.textGap = v.scaled(147, 0.09);
  s.textAbove = v.integer(77, 0) != 0;
  s.textInsideHorizontal = v.integer(73, 1) != 0;
  s.lineInside = v.integer(172, 0) != 0;
  s.suppressExtension1 = v.integer(75, 0) != 0;
  s.suppressExtension2 = v.integer(76, 0) != 0;
  s.suppressLine1 = v.integer(281, 0) != 0;
  s.suppressLine2 = v.integer(282, 0) != 0;
  s.arcSymbol = v.integer(90, 0);
  if (v.integer(173, 0) != 0) {
    s.arrow1 = arrowOf(db, v, 343, 6);
    s.arrow2 = arrowOf(db, v, 344, 7);
  } else {
    s.arrow1 = s.arrow2 = arrowOf(db, v, 342, 5);
  }
  return s;
}

std::string symbolFor(Kind kind) {
  switch (kind) {
    case Kind::kRadius: case Kind::kRadialLarge: return "R";
    case Kind::kDiameter: return "%%c";
    default: return std::string();
  }
}

// DIMCLRD/E/T: 0 (by block) keeps the dimension's own colour.
void setColor(GiRegenContext& ctx, const OdGiSubEntityTraitsData& entityTraits, int aci) {
  ctx.traits().setAll(entityTraits);
  if (aci > 0 && aci <= 256) ctx.setTraitsColor(OdCmEntityColor::fromACI(int16_t(aci)));
}

void drawArrow(GiRegenContext& ctx, const OdGeMatrix3d& toWorld, const OdGeVector3d& normal,
               const DimensionGraphics::Arrow& arrow, double size) {
  OdGePoint3d tip = toWorld.transform(arrow.tip);
  OdGeVector3d back = toWorld.transform(arrow.back);
  OdGeVector3d across = normal.crossProduct(back);
  switch (arrow.kind) {
    case DimensionArrow::kNone: return;
    case DimensionArrow::kOblique: case DimensionArrow::kArchTick: {
      OdGeVector3d slant = (back + across) * (size / 2.0);
      drawChain(ctx, {tip - slant, tip + slant}, &normal);
      return;
    }
    case DimensionArrow::kDot: case DimensionArrow::kDotSmall: {
      double radius = size * (arrow.kind == DimensionArrow::kDot ? 0.25 : 0.0625);
      std::vector<OdGePoint3d> disc;
      for (int i = 0; i < 16; ++i) {
        double a = i * std::numbers::pi / 8.0;
        disc.push_back(tip + back * (radius * std::cos(a)) + across * (radius * std::sin(a)));
      }
      drawFilledPolygon(ctx, disc, &normal);
      return;
    }
    case DimensionArrow::kOpen: case DimensionArrow::kClosed: {
      OdGePoint3d base = tip + back * size;
      std::vector<OdGePoint3d> outline = {base + across * (size / 6), tip, base - across * (size / 6)};
      if (arrow.kind == DimensionArrow::kClosed) outline.push_back(outline.front());
      drawChain(ctx, outline, &normal);
      return;
    }
    case DimensionArrow::kClosedFilled: drawArrowhead(ctx, tip, tip + back, size, normal); return;
  }
}

bool isFinite(const OdGePoint3d& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }

double textWidthOf(GiRegenContext& ctx, const std::string& text, const TextStyleRecord* style, double height) {
  std::u32string chars;
  for (const DecodedChar& c : decodeTextCodes(utf8ToU32(text), false)) chars += c.ch;
  double widthFactor = style && style->widthFactor > 0.0 ? style->widthFactor : 1.0;
  return measureText(ctx.textStyleOf(style, height, widthFactor, 0.0), chars) * height * widthFactor;
}

std::string textFor(const Variables& v, const DimensionEntity& e, const DimensionGraphics& first) {
  DimensionFormat format = formatOf(v);
  std::string measured = first.angular ? formatDimensionAngle(first.measurement, format)
                                       : formatDimensionLength(first.measurement, format);
  size_t marker = format.post.find("<>");
  bool ownPrefix = marker != std::string::npos && marker != 0;
  if (!ownPrefix && !measured.empty()) measured = symbolFor(e.kind) + measured;
  return composeDimensionText(e.text, measured, format, first.angular, first.measurement);
}

}  // namespace

DimensionGraphics regeneratedDimensionGraphics(const OdDbDatabase& db, const DimensionEntity& e) {
  return layoutDimension(e, geometryStyleOf(db, Variables{e}));
}

std::string regeneratedDimensionText(const OdDbDatabase& db, const DimensionEntity& e) {
  Variables v{e};
  DimensionGraphics first = layoutDimension(e, geometryStyleOf(db, v));
  return textFor(v, e, first);
}

void regenDimensionFromStyle(GiRegenContext& ctx, const DimensionEntity& e) {
  Variables v{e};
  DimensionGeometryStyle style = geometryStyleOf(ctx.database(), v);
  const TextStyleRecord* textStyle = ctx.database().findAs<TextStyleRecord>(dimensionHandle(e, e.style, 340));
  if (textStyle && textStyle->fixedHeight > 0.0 && std::isfinite(textStyle->fixedHeight)) {
    style.textHeight = textStyle->fixedHeight;
  }
  // A first pass measures; the text then sizes the gap left for it in the dimension line.
  std::string text = textFor(v, e, layoutDimension(e, style));
  style.textWidth = text.empty() ? 0.0 : textWidthOf(ctx, text, textStyle, style.textHeight);
  DimensionGraphics g = layoutDimension(e, style);

  OdGeVector3d normal = e.normal.isZeroLength() ? kDefaultNormal : e.normal.normal();
  OdGeMatrix3d toWorld = OdGeMatrix3d::planeToWorld(normal);
  OdGiSubEntityTraitsData entityTraits = ctx.effectiveTraits();
  for (bool extension : {true, false}) {
    setColor(ctx, entityTraits, v.integer(extension ? 177 : 176, 0));
    for (const DimensionGraphics::Segment& s : g.segments) {
      if (s.extension != extension || !isFinite(s.start) || !isFinite(s.end)) continue;
      drawChain(ctx, {toWorld.transform(s.start), toWorld.transform(s.end)}, &normal);
    }
  }
  for (const DimensionGraphics::Arc& arc : g.arcs) {
    if (arc.radius > 0.0 && std::isfinite(arc.radius) && isFinite(arc.center) && std::isfinite(arc.sweep)) {
      drawArc(ctx, toWorld.transform(arc.center), arc.radius, normal, toWorld.transform(arc.startVector), arc.sweep);
    }
  }
  for (const DimensionGraphics::Arrow& arrow : g.arrows) {
    if (!isFinite(arrow.tip) || !std::isfinite(arrow.back.x) || !std::isfinite(arrow.back.y)) continue;
    bool tick = arrow.kind == DimensionArrow::kOblique || arrow.kind == DimensionArrow::kArchTick;
    drawArrow(ctx, toWorld, normal, arrow, tick && style.tickSize > 0.0 ? style.tickSize : style.arrowSize);
  }
  if (!text.empty() && isFinite(g.textPosition)) {
    setColor(ctx, entityTraits, v.integer(178, 0));
    MTextData data;
    data.text = text;
    data.position = toWorld.transform(g.textPosition);
    data.normal = normal;
    data.rotation = g.textRotation;
    data.height = style.textHeight;
    data.attachment = MTextData::kMiddleCenter;
    data.style = const_cast<TextStyleRecord*>(textStyle);
    regenMText(ctx, data);
  }
  ctx.traits().setAll(entityTraits);
}

}  // namespace gi

// Texts broken into the strokes of a stroke font: each glyph's lines, arcs and outline curves are
// placed along the text's direction and up vectors, glyph pairs kerned as the font says; under- and
// overlines and strike-through (at half the capital height) are drawn as lines.
#include <cmath>

#include "kit/gi/OdGiGeometrySimplifier.h"
#include "kit/gi/StrokeFont.h"
#include "kit/gi/TextCodes.h"

namespace {

const gi::Glyph* glyphFor(const gi::StrokeFont* font, char32_t ch) {
  const gi::Glyph* glyph = font ? font->glyph(ch) : nullptr;
  if (!glyph && ch != U' ') {
    if (const gi::StrokeFont* fallback = gi::fallbackStrokeFont()) glyph = fallback->glyph(ch);
  }
  return glyph;
}

}  // namespace

void OdGiGeometrySimplifier::textProc(const OdGePoint3d& position, const OdGeVector3d& direction,
                                      const OdGeVector3d& upVector, const OdChar* msg, int32_t numChars, bool raw,
                                      const OdGiTextStyle* textStyle, const OdGeVector3d*) {
  OdGiTextStyle defaultStyle;
  const OdGiTextStyle& style = textStyle ? *textStyle : defaultStyle;
  const gi::StrokeFont* font = gi::strokeFontFor(style);
  double height = upVector.length();
  if (!(height > 0.0) || !std::isfinite(height) || direction.isZeroLength()) return;
  // Glyph units are text heights: the deviation shrinks accordingly.
  double glyphDeviation = deviation(kOdGiMaxDevForCurve, position) / height;
  double spaceAdvance = font ? font->wordSpacing() : 0.75;
  std::vector<gi::DecodedChar> chars = gi::decodeTextCodes(msg, numChars, raw);
  auto at = [&](double x, double y) { return position + direction * x + upVector * y; };
  double cursor = 0.0;
  std::vector<OdGePoint3d> points;
  std::vector<OdGePoint2d> flat;
  for (size_t i = 0; i < chars.size() && i < 100000; ++i) {
    const gi::DecodedChar& c = chars[i];
    const gi::Glyph* glyph = glyphFor(font, c.ch);
    double advance = glyph ? glyph->advance : spaceAdvance;
    if (i + 1 < chars.size() && font) advance += font->kerning(c.ch, chars[i + 1].ch);
    if (glyph) {
      for (const auto& stroke : glyph->strokes) {
        gi::flattenStroke(stroke, glyphDeviation, flat);
        points.clear();
        for (const OdGePoint2d& p : flat) points.push_back(at(cursor + p.x, p.y));
        polylineOut(int32_t(points.size()), points.data());
      }
    }
    bool under = c.underline || style.isUnderlined(), over = c.overline || style.isOverlined();
    for (double y : {under ? -0.2 : NAN, over ? 1.2 : NAN, style.isStruckThrough() ? 0.5 : NAN}) {
      if (std::isnan(y)) continue;
      OdGePoint3d line[2] = {at(cursor, y), at(cursor + advance, y)};
      polylineOut(2, line);
    }
    cursor += advance;
  }
}

// Stroke fonts for drawing text as lines: LibreCAD's LFF fonts (Debian's librecad-data), which
// stand in for SHX fonts and cover the %%c, %%d and %%p symbols, and the glyphs of SHX and
// TrueType fonts. Glyph coordinates are in units of the capital height (1.0 = the text height).
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kit/base/Geometry.h"

class OdGiTextStyle;

namespace gi {

struct GlyphVertex {
  OdGePoint2d point;
  double bulge = 0.0;  // of the arc from the previous vertex to this one
  // An off-curve control point of a Bézier segment (TrueType outlines): one between two on-curve
  // points makes the segment quadratic, two make it cubic.
  bool control = false;
};

// A stroke's points with its arcs and Bézier segments flattened to within `deviation`.
void flattenStroke(const std::vector<GlyphVertex>& stroke, double deviation, std::vector<OdGePoint2d>& out);

struct Glyph {
  std::vector<std::vector<GlyphVertex>> strokes;
  double advance = 0.0;  // from this glyph's origin to the next one's
};

class StrokeFont {
public:
  // Reads an LFF file; an unreadable file gives a font without glyphs. Only the glyph index is
  // built on reading: each glyph is parsed the first time it is asked for, so that a large font
  // consulted for a few characters costs little.
  static std::unique_ptr<StrokeFont> fromLffFile(const std::string& path);
  static std::unique_ptr<StrokeFont> fromLffText(std::string_view text);
  // Glyphs from another source (SHX fonts), asked for once per character: the loader fills a glyph
  // in text heights and says whether the character has one.
  using GlyphLoader = std::function<bool(char32_t, Glyph&)>;
  // The change of the advance between two characters, in text heights.
  using Kerning = std::function<double(char32_t, char32_t)>;
  static std::unique_ptr<StrokeFont> fromLoader(GlyphLoader loader, double wordSpacing, Kerning kerning = {},
                                                double descent = 1.0 / 3.0);

  // The glyph of a character, or null when the font lacks it.
  const Glyph* glyph(char32_t ch) const;
  double wordSpacing() const { return wordSpacing_; }
  double kerning(char32_t left, char32_t right) const { return kerning_ ? kerning_(left, right) : 0.0; }
  // How far the font reaches below the baseline, in text heights.
  double descent() const { return descent_; }
  bool empty() const { return lffIndex_.empty() && !loader_; }

private:
  void indexLff();
  const Glyph* parseLffGlyph(char32_t ch, int depth) const;

  std::string lffText_;
  std::map<char32_t, std::string_view> lffIndex_;  // the lines of each glyph not yet parsed
  GlyphLoader loader_;
  Kerning kerning_;
  mutable std::map<char32_t, std::optional<Glyph>> glyphs_;  // empty: the font lacks it
  double wordSpacing_ = 0.75;
  double letterSpacing_ = 1.0 / 3.0;
  double descent_ = 1.0 / 3.0;
};

// The advance of a run of characters in text heights, kerned, without the spacing after the last
// glyph; characters the font lacks take the fallback font's advance.
double runAdvance(const StrokeFont* font, const std::u32string& chars);

// The folders searched for LFF stroke fonts; the system's LibreCAD font folder unless set.
void setStrokeFontDirectories(std::vector<std::string> directories);

// The font a text style's texts are drawn with: its SHX font (and big font) when the host services
// find the file, else the LFF font of the same name (romans.shx becomes romans.lff), else the
// standard font. A TrueType style's font file is looked for along the font path, then its family
// through fontconfig; a missing or unreadable one is drawn with the standard stroke font. Every
// file is read once per run. Null only when no font can be found at all.
const StrokeFont* strokeFontFor(const OdGiTextStyle& style);
// A font that has glyphs for nearly every character, used for characters the style's font lacks.
const StrokeFont* fallbackStrokeFont();

// The SHX file a SHAPE entity's style names, found and read; null when missing or unreadable.
const class ShxFont* shapeFileFor(const std::string& fileName);

// The advance of a run of characters in text heights (width factor 1), from the style's font; an
// estimate of 0.6 heights per character without any font.
double measureText(const OdGiTextStyle& style, const std::u32string& chars);
// How far the style's font reaches below the baseline, in text heights.
double textDescent(const OdGiTextStyle& style);

}  // namespace gi

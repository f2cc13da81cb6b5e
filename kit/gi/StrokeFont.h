// Stroke fonts for drawing text as lines: LibreCAD's LFF fonts (Debian's librecad-data), which
// stand in for SHX fonts and cover the %%c, %%d and %%p symbols. Glyph coordinates are in units of
// the capital height (1.0 = the text height).
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
};

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
  static std::unique_ptr<StrokeFont> fromLoader(GlyphLoader loader, double wordSpacing);

  // The glyph of a character, or null when the font lacks it.
  const Glyph* glyph(char32_t ch) const;
  double wordSpacing() const { return wordSpacing_; }
  bool empty() const { return lffIndex_.empty() && !loader_; }

private:
  void indexLff();
  const Glyph* parseLffGlyph(char32_t ch, int depth) const;

  std::string lffText_;
  std::map<char32_t, std::string_view> lffIndex_;  // the lines of each glyph not yet parsed
  GlyphLoader loader_;
  mutable std::map<char32_t, std::optional<Glyph>> glyphs_;  // empty: the font lacks it
  double wordSpacing_ = 0.75;
  double letterSpacing_ = 1.0 / 3.0;
};

// The folders searched for LFF stroke fonts; the system's LibreCAD font folder unless set.
void setStrokeFontDirectories(std::vector<std::string> directories);

// The font a text style's texts are drawn with: its SHX font (and big font) when the host services
// find the file, else the LFF font of the same name (romans.shx becomes romans.lff), else the
// standard font. Every file is read once per run. Null only when no font can be found at all.
const StrokeFont* strokeFontFor(const OdGiTextStyle& style);
// A font that has glyphs for nearly every character, used for characters the style's font lacks.
const StrokeFont* fallbackStrokeFont();

// The SHX file a SHAPE entity's style names, found and read; null when missing or unreadable.
const class ShxFont* shapeFileFor(const std::string& fileName);

// The advance of a run of characters in text heights (width factor 1), from the style's font; an
// estimate of 0.6 heights per character without any font.
double measureText(const OdGiTextStyle& style, const std::u32string& chars);

}  // namespace gi

// TrueType and OpenType fonts read with FreeType: advance widths, kerning and glyph outlines, in
// text heights. A TrueType text's height is the height of its font's capital letters, so every
// measure is divided by the cap height (the OS/2 table's, else the height of 'H').
#pragma once

#include <memory>
#include <string>

#include "kit/gi/StrokeFont.h"

struct FT_FaceRec_;

namespace gi {

class TrueTypeFont {
public:
  // Null, with the reason in `error`, when the file cannot be opened as a scalable font.
  static std::unique_ptr<TrueTypeFont> fromFile(const std::string& path, std::string* error = nullptr);
  ~TrueTypeFont();
  TrueTypeFont(const TrueTypeFont&) = delete;
  TrueTypeFont& operator=(const TrueTypeFont&) = delete;

  // The outline of a character as closed contours: on-curve points, with the off-curve control
  // points of quadratic and cubic segments marked. False when the font has no glyph for it.
  bool glyph(char32_t ch, Glyph& out) const;
  // The adjustment of the advance between two characters (negative: closer).
  double kerning(char32_t left, char32_t right) const;
  // The advance of a space.
  double spaceAdvance() const;
  // How far the font reaches below the baseline (positive).
  double descent() const;
  // The cap height in font units.
  double capHeight() const { return capHeight_; }
  std::string familyName() const;

private:
  TrueTypeFont() = default;
  double measureCapHeight() const;

  FT_FaceRec_* face_ = nullptr;
  double capHeight_ = 1.0;
};

}  // namespace gi

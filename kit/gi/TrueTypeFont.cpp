#include "kit/gi/TrueTypeFont.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include FT_TRUETYPE_TABLES_H

#include <cmath>

namespace gi {

namespace {

// One FreeType library for the run. It is never released: faces held by caches that outlive any
// other static object may still be closed at exit.
FT_Library freeType() {
  static FT_Library library = [] {
    FT_Library created = nullptr;
    return FT_Init_FreeType(&created) == 0 ? created : nullptr;
  }();
  return library;
}

// Symbol fonts map their characters into the private area at U+F000.
FT_UInt glyphIndex(FT_Face face, char32_t ch) {
  FT_UInt index = FT_Get_Char_Index(face, FT_ULong(ch));
  if (index == 0 && ch < 0x100 && face->charmap && face->charmap->encoding == FT_ENCODING_MS_SYMBOL) {
    index = FT_Get_Char_Index(face, FT_ULong(0xF000 | ch));
  }
  return index;
}

bool loadUnscaled(FT_Face face, FT_UInt index) {
  return FT_Load_Glyph(face, index, FT_LOAD_NO_SCALE | FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP) == 0;
}

// Collects an outline's contours in text heights.
struct OutlineCollector {
  double scale;
  std::vector<std::vector<GlyphVertex>>* strokes;

  void add(const FT_Vector* to, bool control) {
    GlyphVertex vertex;
    vertex.point = {double(to->x) * scale, double(to->y) * scale};
    vertex.control = control;
    strokes->back().push_back(vertex);
  }
  static OutlineCollector& of(void* user) { return *static_cast<OutlineCollector*>(user); }
  static int moveTo(const FT_Vector* to, void* user) {
    of(user).strokes->emplace_back();
    of(user).add(to, false);
    return 0;
  }
  static int lineTo(const FT_Vector* to, void* user) {
    of(user).add(to, false);
    return 0;
  }
  static int conicTo(const FT_Vector* control, const FT_Vector* to, void* user) {
    of(user).add(control, true);
    of(user).add(to, false);
    return 0;
  }
  static int cubicTo(const FT_Vector* control1, const FT_Vector* control2, const FT_Vector* to, void* user) {
    of(user).add(control1, true);
    of(user).add(control2, true);
    of(user).add(to, false);
    return 0;
  }
};

}  // namespace

std::unique_ptr<TrueTypeFont> TrueTypeFont::fromFile(const std::string& path, std::string* error) {
  auto fail = [&](const std::string& reason) {
    if (error) *error = reason;
    return std::unique_ptr<TrueTypeFont>();
  };
  FT_Library library = freeType();
  if (!library) return fail("FreeType could not start");
  FT_Face face = nullptr;
  if (FT_New_Face(library, path.c_str(), 0, &face) != 0 || !face) return fail("not a font file FreeType reads");
  std::unique_ptr<TrueTypeFont> font(new TrueTypeFont());
  font->face_ = face;
  if (!FT_IS_SCALABLE(face) || face->units_per_EM == 0) return fail("not a scalable font");
  font->capHeight_ = font->measureCapHeight();
  if (!(font->capHeight_ > 0.0)) return fail("no cap height");
  return font;
}

TrueTypeFont::~TrueTypeFont() {
  if (face_) FT_Done_Face(face_);
}

double TrueTypeFont::measureCapHeight() const {
  // A cap height far from the em (a table filled carelessly) would blow texts up or shrink them.
  double em = face_->units_per_EM;
  auto plausible = [em](double height) { return height > 0.2 * em && height < 1.5 * em; };
  auto* os2 = static_cast<TT_OS2*>(FT_Get_Sfnt_Table(face_, FT_SFNT_OS2));
  if (os2 && os2->version != 0xFFFF && os2->version >= 2 && plausible(os2->sCapHeight)) return os2->sCapHeight;
  FT_UInt h = glyphIndex(face_, U'H');
  if (h && loadUnscaled(face_, h) && face_->glyph->format == FT_GLYPH_FORMAT_OUTLINE) {
    FT_BBox box;
    FT_Outline_Get_CBox(&face_->glyph->outline, &box);
    if (plausible(double(box.yMax))) return double(box.yMax);
  }
  // Capitals stand at about 0.7 of the em in most Latin fonts.
  return 0.7 * em;
}

bool TrueTypeFont::glyph(char32_t ch, Glyph& out) const {
  FT_UInt index = glyphIndex(face_, ch);
  if (index == 0 || !loadUnscaled(face_, index)) return false;
  FT_GlyphSlot slot = face_->glyph;
  double scale = 1.0 / capHeight_;
  out = Glyph();
  out.advance = double(slot->metrics.horiAdvance) * scale;
  if (slot->format != FT_GLYPH_FORMAT_OUTLINE) return true;
  OutlineCollector collector{scale, &out.strokes};
  FT_Outline_Funcs funcs{};
  funcs.move_to = &OutlineCollector::moveTo;
  funcs.line_to = &OutlineCollector::lineTo;
  funcs.conic_to = &OutlineCollector::conicTo;
  funcs.cubic_to = &OutlineCollector::cubicTo;
  if (FT_Outline_Decompose(&slot->outline, &funcs, &collector) != 0) out.strokes.clear();
  return true;
}

double TrueTypeFont::kerning(char32_t left, char32_t right) const {
  if (!FT_HAS_KERNING(face_)) return 0.0;
  FT_UInt a = glyphIndex(face_, left), b = glyphIndex(face_, right);
  FT_Vector delta{0, 0};
  if (!a || !b || FT_Get_Kerning(face_, a, b, FT_KERNING_UNSCALED, &delta) != 0) return 0.0;
  return double(delta.x) / capHeight_;
}

double TrueTypeFont::spaceAdvance() const {
  FT_UInt index = glyphIndex(face_, U' ');
  if (index && loadUnscaled(face_, index)) return double(face_->glyph->metrics.horiAdvance) / capHeight_;
  return 0.25 * face_->units_per_EM / capHeight_;
}

double TrueTypeFont::descent() const { return std::fabs(double(face_->descender)) / capHeight_; }

std::string TrueTypeFont::familyName() const { return face_->family_name ? face_->family_name : ""; }

}  // namespace gi

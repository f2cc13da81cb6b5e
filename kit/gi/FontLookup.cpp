// Which font a text style is drawn with, and the run-wide cache of font files: SHX and TrueType
// files are found through the host services (font path, ACAD and ACADFONT folders) and read once,
// TrueType families not found there through fontconfig; LFF files are parsed only when a style
// needs them as a stand-in.
#include <iconv.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <set>

#include "kit/gi/OdGiTextStyle.h"
#include "kit/gi/ShxFont.h"
#include "kit/gi/StrokeFont.h"
#include "kit/gi/SystemFonts.h"
#include "kit/gi/TrueTypeFont.h"
#include "kit/host/OdDbHostAppServices.h"
#include "kit/host/OdKit.h"

namespace gi {

namespace {

std::string toUtf8(const std::wstring& text) {
  std::string out;
  for (wchar_t wc : text) {
    auto c = char32_t(wc);
    if (c < 0x80) {
      out += char(c);
    } else if (c < 0x800) {
      out += char(0xC0 | (c >> 6));
      out += char(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
      out += char(0xE0 | (c >> 12));
      out += char(0x80 | ((c >> 6) & 0x3F));
      out += char(0x80 | (c & 0x3F));
    } else {
      out += char(0xF0 | (c >> 18));
      out += char(0x80 | ((c >> 12) & 0x3F));
      out += char(0x80 | ((c >> 6) & 0x3F));
      out += char(0x80 | (c & 0x3F));
    }
  }
  return out;
}

std::string lowerCase(std::string text) {
  for (char& c : text) c = char(std::tolower(uint8_t(c)));
  return text;
}

// "C:\Fonts\RomanS.SHX" -> "romans".
std::string baseName(const std::string& path) {
  std::string name = lowerCase(path);
  size_t slash = name.find_last_of("/\\");
  if (slash != std::string::npos) name.erase(0, slash + 1);
  size_t dot = name.rfind('.');
  if (dot != std::string::npos) name.erase(dot);
  return name;
}

void warn(const std::string& message) {
  if (OdDbHostAppServices* services = odHostAppServices()) services->warning(toOdString(message));
}

// A shape of a font, with one warning per font for shapes that cannot be decoded (their
// characters then come from the stand-in).
const Glyph* decodedShape(const ShxFont& font, uint32_t number) {
  static std::set<const ShxFont*> warned;
  const Glyph* shape = font.shape(number);
  if (!shape && font.hasShape(number) && warned.insert(&font).second) {
    warn("SHX font has shapes that cannot be decoded, drawn with a stand-in: shape " + std::to_string(number));
  }
  return shape;
}

// The path of a font file the host services find, empty when none; without services, the name
// as given.
std::string findFontFile(const std::string& name,
                         OdDbHostAppServices::FindFileHint hint = OdDbHostAppServices::kCompiledShapeFile) {
  OdString wide(odDecodeUtf8(name.data(), name.size()));
  OdDbHostAppServices* services = odHostAppServices();
  OdDbHostAppServices ownSearch;
  OdString found = (services ? services : &ownSearch)->findFile(wide, nullptr, hint);
  return toUtf8(found.str());
}

// The shape of a shape font that draws a character: ASCII as it is, the degree, plus-minus and
// diameter symbols as shapes 127 to 129, the rest of Latin-1 as it is.
uint32_t shapeFontNumber(char32_t ch) {
  switch (ch) {
    case U'\u00B0': return 127;
    case U'\u00B1': return 128;
    case U'\u2300': return 129;
    default: return ch < 256 && ch != 127 && ch != 128 && ch != 129 ? uint32_t(ch) : 0;
  }
}

// The encoding of a big font's double-byte codes, from the usual font names; Japanese otherwise.
const char* bigFontEncoding(const std::string& name) {
  if (name.find("gbc") != std::string::npos || name.find("gb2312") != std::string::npos) return "GBK";
  if (name.find("chineset") != std::string::npos || name.find("big5") != std::string::npos) return "BIG5";
  if (name.find("whg") != std::string::npos || name.find("hanja") != std::string::npos) return "CP949";
  return "CP932";
}

// Characters to a big font's double-byte codes.
class DoubleByteEncoder {
public:
  explicit DoubleByteEncoder(const char* encoding) : handle_(iconv_open(encoding, "UTF-32LE")) {}
  ~DoubleByteEncoder() {
    if (handle_ != iconv_t(-1)) iconv_close(handle_);
  }
  DoubleByteEncoder(const DoubleByteEncoder&) = delete;
  DoubleByteEncoder& operator=(const DoubleByteEncoder&) = delete;

  // The two-byte code, 0 when the encoding has none for the character.
  uint32_t encode(char32_t ch) {
    if (handle_ == iconv_t(-1) || ch < 0x80) return 0;
    char in[4] = {char(ch & 0xFF), char((ch >> 8) & 0xFF), char((ch >> 16) & 0xFF), char(ch >> 24)};
    unsigned char out[4] = {0, 0, 0, 0};
    char* inPtr = in;
    char* outPtr = reinterpret_cast<char*>(out);
    size_t inLeft = 4, outLeft = 4;
    iconv(handle_, nullptr, nullptr, nullptr, nullptr);
    if (iconv(handle_, &inPtr, &inLeft, &outPtr, &outLeft) == size_t(-1) || outLeft != 2) return 0;
    return uint32_t(out[0]) << 8 | out[1];
  }

private:
  iconv_t handle_;
};

// The glyphs of a style drawn with SHX files: double-byte characters from the big font, the rest
// from the regular font (or its stand-in when only the big font was found), each scaled by its
// own font's declared height.
class ShxGlyphs {
public:
  ShxGlyphs(const ShxFont* regular, const ShxFont* big, const std::string& bigName, const StrokeFont* standIn)
      : regular_(regular), big_(big), standIn_(standIn),
        encoder_(big ? std::make_shared<DoubleByteEncoder>(bigFontEncoding(bigName)) : nullptr) {}

  bool operator()(char32_t ch, Glyph& out) const {
    if (big_) {
      uint32_t code = encoder_->encode(ch);
      if (code >= 0x100 && big_->isLeadByte(uint8_t(code >> 8)) && copy(*big_, code, out)) return true;
    }
    if (regular_) return copy(*regular_, regularNumber(ch), out);
    const Glyph* glyph = standIn_ ? standIn_->glyph(ch) : nullptr;
    if (glyph) out = *glyph;
    return glyph != nullptr;
  }

private:
  uint32_t regularNumber(char32_t ch) const {
    if (regular_->kind() == ShxKind::kShapes) return shapeFontNumber(ch);
    // Unifonts draw %%c with whichever diameter-like sign they have.
    if (ch == U'\u2300' && !regular_->hasShape(ch)) return regular_->hasShape(0x2205) ? 0x2205 : 0xD8;
    return uint32_t(ch);
  }

  static bool copy(const ShxFont& font, uint32_t number, Glyph& out) {
    const Glyph* shape = number ? decodedShape(font, number) : nullptr;
    if (!shape) return false;
    double factor = 1.0 / font.unitsPerHeight();
    out = *shape;
    for (auto& stroke : out.strokes) {
      for (GlyphVertex& v : stroke) v.point = {v.point.x * factor, v.point.y * factor};
    }
    out.advance *= factor;
    return true;
  }

  const ShxFont* regular_;
  const ShxFont* big_;
  const StrokeFont* standIn_;
  std::shared_ptr<DoubleByteEncoder> encoder_;
};

struct FontCache {
  std::vector<std::string> lffDirectories = {"/usr/share/librecad/fonts"};
  std::map<std::string, std::unique_ptr<StrokeFont>> lff;    // by base name; null = missing
  std::map<std::string, std::unique_ptr<ShxFont>> shx;       // by the name as written, lower case
  std::map<std::string, std::unique_ptr<StrokeFont>> styles; // SHX-based fonts by "font|big font"
  std::map<std::string, std::unique_ptr<TrueTypeFont>> trueType;     // by path; null = unreadable
  std::map<std::string, std::unique_ptr<StrokeFont>> trueTypeStyles; // by file, typeface and style

  const StrokeFont* loadLff(const std::string& name) {
    auto it = lff.find(name);
    if (it != lff.end()) return it->second.get();
    std::unique_ptr<StrokeFont> font;
    for (const std::string& dir : lffDirectories) {
      std::string path = dir + "/" + name + ".lff";
      if (!std::filesystem::is_regular_file(path)) continue;
      font = StrokeFont::fromLffFile(path);
      if (font->empty()) font.reset();
      if (font) break;
    }
    return (lff[name] = std::move(font)).get();
  }

  const StrokeFont* standIn(const std::string& name) {
    std::string base = baseName(name);
    if (base == "txt") base = "standard";
    if (!base.empty()) {
      if (const StrokeFont* font = loadLff(base)) return font;
    }
    for (const char* fallback : {"standard", "iso", "simplex", "romans"}) {
      if (const StrokeFont* font = loadLff(fallback)) return font;
    }
    return nullptr;
  }

  // The SHX file of this name, read once; null (with one warning) when missing or unreadable.
  const ShxFont* loadShx(const std::string& name, const char* purpose) {
    std::string key = lowerCase(name);
    auto it = shx.find(key);
    if (it != shx.end()) return it->second.get();
    std::unique_ptr<ShxFont> font;
    std::string path = findFontFile(name);
    std::string error;
    if (path.empty()) {
      warn(std::string("SHX ") + purpose + " not found, drawn with a stand-in: " + name);
    } else if (!(font = ShxFont::fromFile(path, &error))) {
      warn(std::string("SHX ") + purpose + " unreadable (" + error + "), drawn with a stand-in: " + path);
    }
    return (shx[key] = std::move(font)).get();
  }

  // The TrueType face in this file, read once; null (with one warning) when unreadable.
  const TrueTypeFont* loadTrueType(const std::string& path) {
    auto it = trueType.find(path);
    if (it != trueType.end()) return it->second.get();
    std::string error;
    std::unique_ptr<TrueTypeFont> font = TrueTypeFont::fromFile(path, &error);
    if (!font) warn("TrueType font unreadable (" + error + "), drawn with a stand-in: " + path);
    return (trueType[path] = std::move(font)).get();
  }

  // A TrueType style's face: its file along the font path, else its family (the typeface, or the
  // family the file name stands for) among the system's fonts. Null when neither gives one.
  const TrueTypeFont* trueTypeFace(const std::string& fileName, const OdGiTextStyle& style) {
    std::string path;
    if (!fileName.empty()) path = findFontFile(fileName, OdDbHostAppServices::kTrueTypeFontFile);
    if (!path.empty()) return loadTrueType(path);
    std::string typeface = toUtf8(style.typeface().str());
    FontFamily family = typeface.empty() ? familyOfFontFile(fileName)
                                         : FontFamily{typeface, style.isBold(), style.isItalic()};
    path = systemFontFile(family);
    if (path.empty()) {
      warn("TrueType font not found, drawn with a stand-in: " + (fileName.empty() ? typeface : fileName));
      return nullptr;
    }
    return loadTrueType(path);
  }

  // The style's TrueType font as glyphs in text heights; null when it has no readable face.
  const StrokeFont* trueTypeFor(const std::string& fileName, const OdGiTextStyle& style) {
    std::string key = lowerCase(fileName) + "|" + lowerCase(toUtf8(style.typeface().str())) + "|" +
                      char('0' + style.isBold()) + char('0' + style.isItalic());
    auto it = trueTypeStyles.find(key);
    if (it != trueTypeStyles.end()) return it->second.get();
    std::unique_ptr<StrokeFont> glyphs;
    if (const TrueTypeFont* face = trueTypeFace(fileName, style)) {
      glyphs = StrokeFont::fromLoader([face](char32_t ch, Glyph& out) { return face->glyph(ch, out); },
                                      face->spaceAdvance(),
                                      [face](char32_t left, char32_t right) { return face->kerning(left, right); },
                                      face->descent());
    }
    return (trueTypeStyles[key] = std::move(glyphs)).get();
  }
};

FontCache& cache() {
  static FontCache instance;
  return instance;
}

bool isShxName(const std::string& name) {
  std::string lower = lowerCase(name);
  return lower.size() > 4 ? lower.ends_with(".shx") : !lower.empty() && lower.find('.') == std::string::npos;
}

double glyphRight(const Glyph& glyph) {
  double right = 0.0;
  for (const auto& stroke : glyph.strokes) {
    for (const GlyphVertex& v : stroke) right = std::max(right, v.point.x);
  }
  return right;
}

}  // namespace

void setStrokeFontDirectories(std::vector<std::string> directories) {
  cache().lffDirectories = std::move(directories);
  cache().lff.clear();
  cache().styles.clear();
}

const StrokeFont* strokeFontFor(const OdGiTextStyle& style) {
  FontCache& fonts = cache();
  std::string fontName = toUtf8(style.fileName().str());
  std::string bigName = toUtf8(style.bigFontFileName().str());
  if (style.isTtfFont()) {
    const StrokeFont* trueType = fonts.trueTypeFor(fontName, style);
    return trueType ? trueType : fonts.standIn(fontName);
  }
  if (!isShxName(fontName)) return fonts.standIn(fontName);
  std::string key = lowerCase(fontName) + "|" + lowerCase(bigName);
  auto it = fonts.styles.find(key);
  if (it != fonts.styles.end()) return it->second ? it->second.get() : fonts.standIn(fontName);
  const ShxFont* regular = fonts.loadShx(fontName, "font");
  const ShxFont* big = bigName.empty() ? nullptr : fonts.loadShx(bigName, "big font");
  std::unique_ptr<StrokeFont> combined;
  if (regular || big) {
    const StrokeFont* standIn = regular ? nullptr : fonts.standIn(fontName);
    const Glyph* space = regular ? regular->shape(32) : nullptr;
    double wordSpacing = standIn ? standIn->wordSpacing() : space ? space->advance / regular->unitsPerHeight() : 0.5;
    // Bottom-aligned text hangs by the depth the font declares below its baseline.
    double descent = regular && regular->above() > 0.0 ? regular->below() / regular->above()
                         : standIn ? standIn->descent() : 1.0 / 3.0;
    combined = StrokeFont::fromLoader(ShxGlyphs(regular, big, baseName(bigName), standIn), wordSpacing, {},
                                      descent);
  }
  const StrokeFont* result = combined.get();
  fonts.styles[key] = std::move(combined);
  return result ? result : fonts.standIn(fontName);
}

const StrokeFont* fallbackStrokeFont() {
  if (const StrokeFont* font = cache().loadLff("unicode")) return font;
  return cache().loadLff("standard");
}

const ShxFont* shapeFileFor(const std::string& fileName) {
  if (fileName.empty()) return nullptr;
  return cache().loadShx(fileName, "shape file");
}

double runAdvance(const StrokeFont* font, const std::u32string& chars) {
  double width = 0.0;
  for (size_t i = 0; i < chars.size(); ++i) {
    char32_t ch = chars[i];
    const Glyph* glyph = font ? font->glyph(ch) : nullptr;
    if (!glyph && font && ch != U' ') {
      if (const StrokeFont* fallback = fallbackStrokeFont()) glyph = fallback->glyph(ch);
    }
    width += glyph ? glyph->advance : (font ? font->wordSpacing() : 0.6);
    if (font && i + 1 < chars.size()) width += font->kerning(ch, chars[i + 1]);
  }
  // The spacing after the last glyph is not part of the text's extent.
  if (font && !chars.empty()) {
    const Glyph* last = font->glyph(chars.back());
    if (last && !last->strokes.empty()) width -= last->advance - glyphRight(*last);
  }
  return width;
}

double measureText(const OdGiTextStyle& style, const std::u32string& chars) {
  return runAdvance(strokeFontFor(style), chars);
}

double textDescent(const OdGiTextStyle& style) {
  const StrokeFont* font = strokeFontFor(style);
  return font ? font->descent() : 1.0 / 3.0;
}

}  // namespace gi

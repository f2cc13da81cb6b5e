#include "kit/gi/StrokeFont.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <sstream>

#include "kit/base/OdString.h"
#include "kit/gi/OdGiTextStyle.h"

namespace gi {

namespace {

// LFF glyphs are drawn on a grid where capitals are 9 units high.
constexpr double kLffCapHeight = 9.0;

double parseNumber(std::string_view text, double fallback) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  double value = fallback;
  auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  return result.ec == std::errc() ? value : fallback;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  size_t start = 0;
  while (start <= text.size()) {
    size_t end = text.find(separator, start);
    if (end == std::string_view::npos) end = text.size();
    parts.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return parts;
}

// "x,y" or "x,y,A<bulge>"; false when the numbers are not there.
bool parseVertex(std::string_view text, GlyphVertex& vertex) {
  std::vector<std::string_view> fields = split(text, ',');
  if (fields.size() < 2) return false;
  double x = parseNumber(fields[0], 1e300), y = parseNumber(fields[1], 1e300);
  if (x == 1e300 || y == 1e300) return false;
  vertex.point = {x / kLffCapHeight, y / kLffCapHeight};
  vertex.bulge = 0.0;
  if (fields.size() > 2 && !fields[2].empty() && fields[2][0] == 'A') vertex.bulge = parseNumber(fields[2].substr(1), 0.0);
  return true;
}

}  // namespace

std::unique_ptr<StrokeFont> StrokeFont::fromLffText(std::string_view text) {
  auto font = std::make_unique<StrokeFont>();
  font->lffText_ = std::string(text);
  font->indexLff();
  return font;
}

std::unique_ptr<StrokeFont> StrokeFont::fromLffFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream buffer;
  if (in) buffer << in.rdbuf();
  return fromLffText(buffer.str());
}

// The spacing settings and where each "[code]" glyph's lines start; the glyph ends at the next
// empty line or header.
void StrokeFont::indexLff() {
  std::string_view text = lffText_;
  size_t at = 0;
  char32_t open = 0;
  size_t openStart = std::string_view::npos;
  auto close = [&](size_t end) {
    if (openStart != std::string_view::npos) lffIndex_[open] = text.substr(openStart, end - openStart);
    openStart = std::string_view::npos;
  };
  while (at < text.size()) {
    size_t end = text.find('\n', at);
    if (end == std::string_view::npos) end = text.size();
    std::string_view line = text.substr(at, end - at);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.empty()) {
      close(at);
    } else if (line[0] == '#') {
      close(at);
      size_t colon = line.find(':');
      double value = colon == std::string_view::npos ? -1.0 : parseNumber(line.substr(colon + 1), -1.0);
      std::string_view key = line.substr(0, colon);
      if (value >= 0.0 && key.find("LetterSpacing") != std::string_view::npos) letterSpacing_ = value / kLffCapHeight;
      if (value >= 0.0 && key.find("WordSpacing") != std::string_view::npos) wordSpacing_ = value / kLffCapHeight;
    } else if (line[0] == '[') {
      close(at);
      size_t bracket = line.find(']');
      unsigned code = 0;
      if (bracket != std::string_view::npos &&
          std::from_chars(line.data() + 1, line.data() + bracket, code, 16).ec == std::errc()) {
        open = char32_t(code);
        openStart = end < text.size() ? end + 1 : end;
      }
    }
    at = end + 1;
  }
  close(text.size());
}

// Parses one glyph's lines; "C<code>" borrows another glyph's strokes (accented letters reuse
// their base letter); a chain of borrowings is followed a few levels deep.
const Glyph* StrokeFont::parseLffGlyph(char32_t ch, int depth) const {
  auto parsed = glyphs_.find(ch);
  if (parsed != glyphs_.end()) return parsed->second ? &*parsed->second : nullptr;
  std::optional<Glyph> result;
  Glyph glyph;
  auto indexed = lffIndex_.find(ch);
  if (indexed != lffIndex_.end()) {
    std::vector<std::vector<GlyphVertex>> borrowed;
    for (std::string_view line : split(indexed->second, '\n')) {
      if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
      if (line.empty()) continue;
      if (line[0] == 'C') {
        unsigned code = 0;
        if (std::from_chars(line.data() + 1, line.data() + line.size(), code, 16).ec != std::errc()) continue;
        const Glyph* source = depth < 4 && char32_t(code) != ch ? parseLffGlyph(char32_t(code), depth + 1) : nullptr;
        if (source) borrowed.insert(borrowed.end(), source->strokes.begin(), source->strokes.end());
        continue;
      }
      std::vector<GlyphVertex> stroke;
      for (std::string_view field : split(line, ';')) {
        GlyphVertex vertex;
        if (parseVertex(field, vertex)) stroke.push_back(vertex);
      }
      if (!stroke.empty()) glyph.strokes.push_back(std::move(stroke));
    }
    glyph.strokes.insert(glyph.strokes.begin(), borrowed.begin(), borrowed.end());
    double right = 0.0;
    for (const auto& stroke : glyph.strokes) {
      for (const GlyphVertex& v : stroke) right = std::max(right, v.point.x);
    }
    glyph.advance = glyph.strokes.empty() ? wordSpacing_ : right + letterSpacing_;
    result = std::move(glyph);
  } else if (loader_ && loader_(ch, glyph)) {
    result = std::move(glyph);
  }
  auto& stored = glyphs_.emplace(ch, std::move(result)).first->second;
  return stored ? &*stored : nullptr;
}

const Glyph* StrokeFont::glyph(char32_t ch) const { return parseLffGlyph(ch, 0); }

std::unique_ptr<StrokeFont> StrokeFont::fromLoader(GlyphLoader loader, double wordSpacing, Kerning kerning,
                                                  double descent) {
  auto font = std::make_unique<StrokeFont>();
  font->loader_ = std::move(loader);
  font->wordSpacing_ = wordSpacing;
  font->kerning_ = std::move(kerning);
  font->descent_ = descent;
  return font;
}

}  // namespace gi

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
  font->parse(text);
  return font;
}

std::unique_ptr<StrokeFont> StrokeFont::fromLffFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream buffer;
  if (in) buffer << in.rdbuf();
  return fromLffText(buffer.str());
}

void StrokeFont::parse(std::string_view text) {
  std::vector<std::pair<char32_t, char32_t>> copies;  // glyph, glyph whose strokes it borrows
  Glyph* current = nullptr;
  char32_t currentCode = 0;
  for (std::string_view line : split(text, '\n')) {
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.empty()) {
      current = nullptr;
      continue;
    }
    if (line[0] == '#') {
      size_t colon = line.find(':');
      if (colon == std::string_view::npos) continue;
      std::string_view key = line.substr(1, colon - 1);
      double value = parseNumber(line.substr(colon + 1), -1.0);
      if (value < 0.0) continue;
      if (key.find("LetterSpacing") != std::string_view::npos) letterSpacing_ = value / kLffCapHeight;
      if (key.find("WordSpacing") != std::string_view::npos) wordSpacing_ = value / kLffCapHeight;
      continue;
    }
    if (line[0] == '[') {
      size_t close = line.find(']');
      unsigned code = 0;
      if (close == std::string_view::npos ||
          std::from_chars(line.data() + 1, line.data() + close, code, 16).ec != std::errc()) {
        current = nullptr;
        continue;
      }
      currentCode = char32_t(code);
      current = &glyphs_[currentCode];
      continue;
    }
    if (!current) continue;
    if (line[0] == 'C') {
      unsigned code = 0;
      if (std::from_chars(line.data() + 1, line.data() + line.size(), code, 16).ec == std::errc()) {
        copies.emplace_back(currentCode, char32_t(code));
      }
      continue;
    }
    std::vector<GlyphVertex> stroke;
    for (std::string_view field : split(line, ';')) {
      GlyphVertex vertex;
      if (parseVertex(field, vertex)) stroke.push_back(vertex);
    }
    if (!stroke.empty()) current->strokes.push_back(std::move(stroke));
  }
  // Borrowed strokes (accented letters reuse their base letter), one level deep as the format has.
  for (const auto& [code, source] : copies) {
    auto from = glyphs_.find(source);
    if (from == glyphs_.end() || source == code) continue;
    Glyph& target = glyphs_[code];
    std::vector<std::vector<GlyphVertex>> borrowed = from->second.strokes;
    target.strokes.insert(target.strokes.begin(), borrowed.begin(), borrowed.end());
  }
  for (auto& [code, glyph] : glyphs_) {
    double right = 0.0;
    for (const auto& stroke : glyph.strokes) {
      for (const GlyphVertex& v : stroke) right = std::max(right, v.point.x);
    }
    glyph.advance = glyph.strokes.empty() ? wordSpacing_ : right + letterSpacing_;
  }
}

const Glyph* StrokeFont::glyph(char32_t ch) const {
  auto it = glyphs_.find(ch);
  return it == glyphs_.end() ? nullptr : &it->second;
}

std::unique_ptr<StrokeFont> StrokeFont::fromGlyphs(std::map<char32_t, Glyph> glyphs, double wordSpacing) {
  auto font = std::make_unique<StrokeFont>();
  font->glyphs_ = std::move(glyphs);
  font->wordSpacing_ = wordSpacing;
  return font;
}

}  // namespace gi

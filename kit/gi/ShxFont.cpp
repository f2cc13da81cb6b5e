// SHX file layouts. Each starts with a text signature ended by Ctrl-Z; numbers in the file's index
// are little-endian. Shape files list (number, size) pairs and then the definitions in order;
// unifonts give each definition after its (number, size); big fonts index the definitions by
// file offset after their escape ranges. A definition is a name, a NUL and the shape's bytes.
#include "kit/gi/ShxFont.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <sstream>

namespace gi {

namespace {

// Beyond these counts a header is damaged, not large.
constexpr uint32_t kMaxShapes = 70000;
constexpr uint32_t kMaxEscapeRanges = 256;

class Cursor {
public:
  Cursor(std::string_view bytes, size_t at = 0) : bytes_(bytes), at_(at) {}
  bool u16(uint32_t& value) {
    if (at_ + 2 > bytes_.size()) return false;
    value = uint8_t(bytes_[at_]) | uint8_t(bytes_[at_ + 1]) << 8;
    at_ += 2;
    return true;
  }
  bool u32(uint32_t& value) {
    uint32_t low = 0, high = 0;
    if (!u16(low) || !u16(high)) return false;
    value = low | high << 16;
    return true;
  }
  bool take(size_t size, std::string_view& out) {
    if (at_ + size > bytes_.size()) return false;
    out = bytes_.substr(at_, size);
    at_ += size;
    return true;
  }
  size_t at() const { return at_; }

private:
  std::string_view bytes_;
  size_t at_;
};

bool fail(std::string* error, std::string message) {
  if (error) *error = std::move(message);
  return false;
}

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = char(std::tolower(uint8_t(c)));
  return lower;
}

}  // namespace

std::unique_ptr<ShxFont> ShxFont::fromFile(const std::string& path, std::string* error) {
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    fail(error, "cannot open " + path);
    return nullptr;
  }
  std::ostringstream buffer;
  buffer << in.rdbuf();
  return fromBytes(buffer.str(), error);
}

std::unique_ptr<ShxFont> ShxFont::fromBytes(std::string bytes, std::string* error) {
  auto font = std::unique_ptr<ShxFont>(new ShxFont);
  font->bytes_ = std::move(bytes);
  std::string_view all = font->bytes_;
  size_t end = all.substr(0, 64).find('\x1a');
  if (end == std::string_view::npos || all.substr(0, 11) != "AutoCAD-86 ") {
    fail(error, "not an SHX file");
    return nullptr;
  }
  std::string_view signature = all.substr(11, end - 11);
  std::string_view body = all.substr(end + 1);
  bool ok = false;
  if (signature.starts_with("shapes 1.")) ok = font->readShapes(body, error);
  else if (signature.starts_with("unifont 1.")) ok = font->readUnifont(body, error);
  else if (signature.starts_with("bigfont 1.")) ok = font->readBigFont(body, end + 1, error);
  else fail(error, "unknown SHX kind: " + std::string(signature.substr(0, signature.find('\r'))));
  if (!ok) return nullptr;
  return font;
}

// One entry of a shape table: its name up to a zero byte, then its bytes; shape 0 holds the font's
// information rather than a glyph.
bool ShxFont::takeShape(uint32_t number, std::string_view definition, std::string* error) {
  size_t nul = definition.find('\0');
  if (nul == std::string_view::npos) return fail(error, "shape " + std::to_string(number) + " has no name end");
  if (number == 0) {
    takeInfo(definition.substr(nul + 1));
    return true;
  }
  if (nul > 0) names_.emplace(lowerCase(definition.substr(0, nul)), number);
  definitions_[number] = definition.substr(nul + 1);
  return true;
}

bool ShxFont::readShapes(std::string_view body, std::string* error) {
  kind_ = ShxKind::kShapes;
  Cursor cursor(body);
  uint32_t first = 0, last = 0, count = 0;
  if (!cursor.u16(first) || !cursor.u16(last) || !cursor.u16(count)) return fail(error, "truncated header");
  std::vector<std::pair<uint32_t, uint32_t>> index(count);
  for (auto& [number, size] : index) {
    if (!cursor.u16(number) || !cursor.u16(size)) return fail(error, "truncated shape index");
  }
  for (const auto& [number, size] : index) {
    std::string_view definition;
    if (!cursor.take(size, definition)) return fail(error, "truncated shape " + std::to_string(number));
    if (!takeShape(number, definition, error)) return false;
  }
  return true;
}

bool ShxFont::readUnifont(std::string_view body, std::string* error) {
  kind_ = ShxKind::kUnifont;
  Cursor cursor(body);
  uint32_t count = 0, infoSize = 0;
  std::string_view info;
  if (!cursor.u32(count) || !cursor.u16(infoSize) || !cursor.take(infoSize, info)) return fail(error, "truncated header");
  if (count > kMaxShapes) return fail(error, "shape count " + std::to_string(count) + " out of range");
  size_t nul = info.find('\0');
  if (nul == std::string_view::npos) return fail(error, "font information has no name end");
  takeInfo(info.substr(nul + 1));
  for (uint32_t i = 1; i < count; ++i) {
    uint32_t number = 0, size = 0;
    std::string_view definition;
    if (!cursor.u16(number) || !cursor.u16(size) || !cursor.take(size, definition)) {
      return fail(error, "truncated at shape " + std::to_string(i) + " of " + std::to_string(count));
    }
    size_t end = definition.find('\0');
    if (end == std::string_view::npos) return fail(error, "shape " + std::to_string(number) + " has no name end");
    if (end > 0) names_.emplace(lowerCase(definition.substr(0, end)), number);
    definitions_[number] = definition.substr(end + 1);
  }
  return true;
}

bool ShxFont::readBigFont(std::string_view body, size_t bodyOffset, std::string* error) {
  kind_ = ShxKind::kBigFont;
  std::string_view file = bytes_;
  Cursor cursor(body);
  uint32_t headerSize = 0, count = 0, ranges = 0;
  if (!cursor.u16(headerSize) || !cursor.u16(count) || !cursor.u16(ranges)) return fail(error, "truncated header");
  if (count > kMaxShapes || ranges > kMaxEscapeRanges) return fail(error, "counts out of range");
  for (uint32_t i = 0; i < ranges; ++i) {
    uint32_t from = 0, to = 0;
    if (!cursor.u16(from) || !cursor.u16(to)) return fail(error, "truncated escape ranges");
    escapes_.emplace_back(uint16_t(from), uint16_t(to));
  }
  for (uint32_t i = 0; i < count; ++i) {
    uint32_t number = 0, size = 0, offset = 0;
    if (!cursor.u16(number) || !cursor.u16(size) || !cursor.u32(offset)) return fail(error, "truncated shape index");
    if (number == 0 && size == 0) continue;  // unused index slot
    if (offset < bodyOffset || offset > file.size() || size > file.size() - offset) {
      return fail(error, "shape " + std::to_string(number) + " lies outside the file");
    }
    std::string_view definition = file.substr(offset, size);
    if (!takeShape(number, definition, error)) return false;
  }
  return true;
}

// Shape 0 of a font: above, below, modes and, depending on the kind, more bytes.
void ShxFont::takeInfo(std::string_view definition) {
  if (definition.size() >= 1) above_ = uint8_t(definition[0]);
  if (definition.size() >= 2) below_ = uint8_t(definition[1]);
}

const Glyph* ShxFont::shape(uint32_t number) const {
  auto done = decoded_.find(number);
  if (done == decoded_.end()) {
    auto definition = definitions_.find(number);
    if (definition == definitions_.end()) return nullptr;
    Glyph glyph;
    std::optional<Glyph> result;
    if (decodeShxShape(kind_, definition->second, definitions_, above_, glyph)) result = std::move(glyph);
    else ++broken_;
    done = decoded_.emplace(number, std::move(result)).first;
  }
  return done->second ? &*done->second : nullptr;
}

uint32_t ShxFont::numberOf(std::string_view name) const {
  auto it = names_.find(lowerCase(name));
  return it == names_.end() ? 0 : it->second;
}

bool ShxFont::isLeadByte(uint8_t byte) const {
  return std::any_of(escapes_.begin(), escapes_.end(),
                     [&](const auto& range) { return byte >= range.first && byte <= range.second; });
}

}  // namespace gi

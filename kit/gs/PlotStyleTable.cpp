#include "kit/gs/PlotStyleTable.h"

#include <zlib.h>

#include <charconv>
#include <cstring>
#include <iterator>
#include <sstream>

namespace {

// A .ctb file starts with this text line (named tables, .stb, say STBVER); the compressed table
// follows a few binary words later.
constexpr const char kSignature[] = "PIAFILEVERSION_2.0,CTBVER";
constexpr size_t kHeaderSize = 48;

std::string_view trim(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t' || s.front() == '\r')) s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r')) s.remove_suffix(1);
  return s;
}

std::string unquote(std::string_view s) {
  if (!s.empty() && s.front() == '"') s.remove_prefix(1);
  if (!s.empty() && s.back() == '"') s.remove_suffix(1);
  return std::string(s);
}

template <class T>
bool parseNumber(std::string_view s, T& value) {
  s = trim(s);
  if (!s.empty() && s.front() == '+') s.remove_prefix(1);
  auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), value);
  return ec == std::errc() && end == s.data() + s.size();
}

// The key and value of a "key=value" line.
bool splitLine(std::string_view line, std::string_view& key, std::string_view& value) {
  size_t eq = line.find('=');
  if (eq == std::string_view::npos) return false;
  key = trim(line.substr(0, eq));
  value = trim(line.substr(eq + 1));
  return true;
}

// A style's colour: `color` says whether the object's colour is kept (-1, or the index method
// with all bits set); the colour itself is in `mode_color`, packed as drawing files pack colours.
void applyColor(PlotStyle& style, long long color, long long modeColor) {
  uint32_t packed = uint32_t(color);
  if (color == -1 || packed == 0xC3FFFFFFu) return;
  uint32_t mode = uint32_t(modeColor);
  uint8_t method = uint8_t(mode >> 24);
  if (method == 0xC3) {
    style.color = odcmAciColor(int(mode & 0xFF));
  } else {
    style.color = ODRGB(uint8_t(mode >> 16), uint8_t(mode >> 8), uint8_t(mode));
  }
  style.overridesColor = true;
}

}  // namespace

bool inflateZlib(const uint8_t* data, size_t size, std::string& out, size_t limit) {
  out.clear();
  z_stream zs{};
  if (inflateInit(&zs) != Z_OK) return false;
  zs.next_in = const_cast<Bytef*>(data);
  zs.avail_in = uInt(size);
  char buffer[16384];
  int status = Z_OK;
  while (status == Z_OK) {
    zs.next_out = reinterpret_cast<Bytef*>(buffer);
    zs.avail_out = sizeof buffer;
    status = inflate(&zs, Z_NO_FLUSH);
    if (status != Z_OK && status != Z_STREAM_END) break;
    out.append(buffer, sizeof buffer - zs.avail_out);
    if (out.size() > limit) status = Z_MEM_ERROR;
    if (status == Z_OK && zs.avail_in == 0 && zs.avail_out != 0) status = Z_BUF_ERROR;
  }
  inflateEnd(&zs);
  if (status != Z_STREAM_END) out.clear();
  return status == Z_STREAM_END;
}

bool PlotStyleTable::load(std::istream& stream) {
  std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
  return load(bytes);
}

bool PlotStyleTable::load(const std::vector<uint8_t>& bytes) {
  *this = PlotStyleTable();
  size_t signatureLength = sizeof kSignature - 1;
  if (bytes.size() <= kHeaderSize || std::memcmp(bytes.data(), kSignature, signatureLength) != 0) return false;
  // The compressed text starts after the header line and up to three words (checksum and sizes);
  // take the first offset that inflates.
  std::string text;
  for (size_t offset = kHeaderSize; offset + 2 <= bytes.size() && offset <= kHeaderSize + 16; ++offset) {
    if (bytes[offset] != 0x78) continue;
    if (inflateZlib(bytes.data() + offset, bytes.size() - offset, text)) return loadText(text);
  }
  return false;
}

bool PlotStyleTable::loadText(const std::string& text) {
  *this = PlotStyleTable();
  std::istringstream in(text);
  std::string lineText;
  // Section nesting: "plot_style{" then "N{" per style; "custom_lineweight_table{".
  std::string section;
  PlotStyle* style = nullptr;
  struct RawStyle {
    long long color = -1;
    long long modeColor = -1;
    bool hasModeColor = false;
    int lineweight = 0;  // index into the lineweight table; entry 0 (0.0 mm) keeps the object's own
  };
  std::vector<RawStyle> raw;
  bool byColorIndex = true;
  while (std::getline(in, lineText)) {
    std::string_view line = trim(lineText);
    if (line.empty()) continue;
    if (line.back() == '{') {
      std::string_view name = trim(line.substr(0, line.size() - 1));
      int index = 0;
      if (section == "plot_style" && parseNumber(name, index) && index >= 0 && index < 255) {
        if (styles_.size() <= size_t(index)) styles_.resize(size_t(index) + 1);
        style = &styles_[size_t(index)];
        raw.resize(styles_.size());
      } else {
        section = std::string(name);
      }
      continue;
    }
    if (line == "}") {
      if (style) style = nullptr;
      else section.clear();
      continue;
    }
    std::string_view key, value;
    if (!splitLine(line, key, value)) continue;
    if (style) {
      size_t index = size_t(style - styles_.data());
      if (key == "name") style->name = unquote(value);
      else if (key == "color") parseNumber(value, raw[index].color);
      else if (key == "mode_color") raw[index].hasModeColor = parseNumber(value, raw[index].modeColor);
      else if (key == "screen") parseNumber(value, style->screen);
      else if (key == "lineweight") parseNumber(value, raw[index].lineweight);
    } else if (section == "custom_lineweight_table") {
      int index = 0;
      double mm = 0.0;
      if (parseNumber(key, index) && parseNumber(value, mm) && index >= 0 && index < 1000) {
        if (lineweights_.size() <= size_t(index)) lineweights_.resize(size_t(index) + 1, 0.0);
        lineweights_[size_t(index)] = mm;
      }
    } else if (section.empty()) {
      if (key == "description") description_ = unquote(value);
      else if (key == "scale_factor") parseNumber(value, scaleFactor_);
      else if (key == "apply_factor") applyFactor_ = value == "TRUE";
      else if (key == "aci_table_available") byColorIndex = value == "TRUE";
    }
  }
  for (size_t i = 0; i < styles_.size(); ++i) {
    const RawStyle& r = raw[i];
    applyColor(styles_[i], r.color, r.hasModeColor ? r.modeColor : r.color);
    int n = r.lineweight;
    if (n > 0 && size_t(n) < lineweights_.size() && lineweights_[size_t(n)] > 0.0) {
      styles_[i].lineweight = lineweights_[size_t(n)];
    }
  }
  if (!byColorIndex) styles_.clear();  // a named plot style table
  if (styles_.empty()) return false;
  text_ = text;
  return true;
}

const PlotStyle* PlotStyleTable::styleForColorIndex(int index) const {
  if (index < 1 || size_t(index) > styles_.size()) return nullptr;
  return &styles_[size_t(index - 1)];
}

#include "kit/gi/TextCodes.h"

#include <cctype>

namespace gi {

namespace {

int hexValue(char32_t c) {
  if (c >= '0' && c <= '9') return int(c - '0');
  if (c >= 'a' && c <= 'f') return int(c - 'a' + 10);
  if (c >= 'A' && c <= 'F') return int(c - 'A' + 10);
  return -1;
}

// "\U+XXXX" at i: the character and the escape's length, or 0.
size_t unicodeEscape(const std::u32string& s, size_t i, char32_t& out) {
  if (i + 7 > s.size() || s[i] != '\\' || (s[i + 1] != 'U' && s[i + 1] != 'u') || s[i + 2] != '+') return 0;
  char32_t value = 0;
  for (size_t k = 3; k < 7; ++k) {
    int h = hexValue(s[i + k]);
    if (h < 0) return 0;
    value = value * 16 + char32_t(h);
  }
  out = value;
  return 7;
}

// "\M+NXXXX" (a double-byte character of an Asian code page): kept as one unknown character.
size_t multibyteEscape(const std::u32string& s, size_t i) {
  if (i + 8 > s.size() || s[i] != '\\' || (s[i + 1] != 'M' && s[i + 1] != 'm') || s[i + 2] != '+') return 0;
  for (size_t k = 4; k < 8; ++k) {
    if (hexValue(s[i + k]) < 0) return 0;
  }
  return 8;
}

}  // namespace

std::vector<DecodedChar> decodeTextCodes(const std::u32string& s, bool raw) {
  std::vector<DecodedChar> out;
  out.reserve(s.size());
  bool underline = false, overline = false;
  for (size_t i = 0; i < s.size();) {
    char32_t ch = 0;
    if (size_t n = unicodeEscape(s, i, ch)) {
      out.push_back({ch, underline, overline});
      i += n;
      continue;
    }
    if (size_t n = multibyteEscape(s, i)) {
      out.push_back({U'?', underline, overline});
      i += n;
      continue;
    }
    if (!raw && s[i] == '%' && i + 2 < s.size() && s[i + 1] == '%') {
      char32_t code = s[i + 2];
      char32_t lower = code < 128 ? char32_t(std::tolower(int(code))) : code;
      if (lower == 'd' || lower == 'p' || lower == 'c') {
        out.push_back({lower == 'd' ? U'\u00B0' : lower == 'p' ? U'\u00B1' : U'\u2300', underline, overline});
        i += 3;
        continue;
      }
      if (lower == 'u' || lower == 'o') {
        (lower == 'u' ? underline : overline) = !(lower == 'u' ? underline : overline);
        i += 3;
        continue;
      }
      if (code == '%') {
        out.push_back({U'%', underline, overline});
        i += 3;
        continue;
      }
      if (i + 4 < s.size() && std::isdigit(int(code)) && s[i + 3] < 128 && std::isdigit(int(s[i + 3])) &&
          s[i + 4] < 128 && std::isdigit(int(s[i + 4]))) {
        char32_t value = (code - '0') * 100 + (s[i + 3] - '0') * 10 + (s[i + 4] - '0');
        if (value != 0) out.push_back({value, underline, overline});
        i += 5;
        continue;
      }
    }
    out.push_back({s[i], underline, overline});
    ++i;
  }
  return out;
}

std::vector<DecodedChar> decodeTextCodes(const OdChar* text, int32_t count, bool raw) {
  std::u32string s;
  if (text) {
    if (count < 0) {
      for (const OdChar* p = text; *p; ++p) s.push_back(char32_t(*p));
    } else {
      for (int32_t i = 0; i < count; ++i) s.push_back(char32_t(text[i]));
    }
  }
  return decodeTextCodes(s, raw);
}

std::u32string utf8ToU32(std::string_view text) {
  std::u32string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size();) {
    unsigned char c = static_cast<unsigned char>(text[i]);
    int extra = c < 0x80 ? 0 : (c >> 5) == 6 ? 1 : (c >> 4) == 14 ? 2 : (c >> 3) == 30 ? 3 : -1;
    if (extra < 0 || i + size_t(extra) >= text.size()) {
      if (extra != 0) {
        out.push_back(0xFFFD);
        ++i;
        continue;
      }
    }
    char32_t value = extra == 0 ? c : char32_t(c & (0x3F >> extra));
    bool ok = true;
    for (int k = 1; k <= extra; ++k) {
      unsigned char cc = static_cast<unsigned char>(text[i + size_t(k)]);
      if ((cc & 0xC0) != 0x80) {
        ok = false;
        break;
      }
      value = (value << 6) | (cc & 0x3F);
    }
    if (!ok) {
      out.push_back(0xFFFD);
      ++i;
      continue;
    }
    out.push_back(value);
    i += size_t(extra) + 1;
  }
  return out;
}

}  // namespace gi

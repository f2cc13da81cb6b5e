#include "drivers/svg/SvgXmlText.h"

namespace {

int HexValue(char32_t c) {
  if (c >= U'0' && c <= U'9') return static_cast<int>(c - U'0');
  if (c >= U'a' && c <= U'f') return static_cast<int>(c - U'a' + 10);
  if (c >= U'A' && c <= U'F') return static_cast<int>(c - U'A' + 10);
  return -1;
}

bool StartsWith(std::u32string_view text, std::size_t at, std::u32string_view prefix) {
  return text.substr(at, prefix.size()) == prefix;
}

// "\U+" and four hexadecimal digits at position i: the code, or -1.
long EscapeCodeAt(std::u32string_view text, std::size_t i) {
  if (!StartsWith(text, i, U"\\U+") || i + 7 > text.size()) return -1;
  long code = 0;
  for (std::size_t k = i + 3; k < i + 7; ++k) {
    int digit = HexValue(text[k]);
    if (digit < 0) return -1;
    code = code * 16 + digit;
  }
  return code;
}

void AppendEscaped(std::string& out, std::u32string_view text, XmlEscapeMode mode, bool escapesToReferences) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t c = text[i];
    if (escapesToReferences && c == U'\\') {
      long code = EscapeCodeAt(text, i);
      if (code >= 0) {
        if (IsXmlChar(static_cast<char32_t>(code))) {
          out += "&#x";
          for (std::size_t k = i + 3; k < i + 7; ++k) out += static_cast<char>(text[k]);
          out += ';';
        }
        i += 6;
        continue;
      }
    }
    if (!IsXmlChar(c)) continue;
    switch (c) {
      case U'&':
        if (mode == XmlEscapeMode::kAttribute && StartsWith(text, i, U"&amp;")) {
          out += '&';
        } else {
          out += "&amp;";
        }
        break;
      case U'<': out += "&lt;"; break;
      case U'"': out += "&quot;"; break;
      case U'\'': out += "&apos;"; break;
      case U'>':
        if (i >= 2 && text[i - 1] == U']' && text[i - 2] == U']') {
          out += "&gt;";
        } else {
          out += '>';
        }
        break;
      default: AppendUtf8(out, c);
    }
  }
}

}  // namespace

bool IsXmlChar(char32_t code) {
  if (code < 0x20) return code == 0x9 || code == 0xA || code == 0xD;
  if (code <= 0xD7FF) return true;
  if (code < 0xE000) return false;
  if (code <= 0xFFFD) return true;
  return code >= 0x10000 && code <= 0x10FFFF;
}

void AppendUtf8(std::string& out, char32_t code) {
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0 | (code >> 6));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    out += static_cast<char>(0xE0 | (code >> 12));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else if (code < 0x110000) {
    out += static_cast<char>(0xF0 | (code >> 18));
    out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  }
}

std::u32string DecodeUtf8Lenient(std::string_view utf8) {
  std::u32string codes;
  codes.reserve(utf8.size());
  std::size_t i = 0;
  while (i < utf8.size()) {
    unsigned char lead = static_cast<unsigned char>(utf8[i]);
    int extra = 0;
    if (lead >= 0xC2 && lead < 0xE0) extra = 1;
    if (lead >= 0xE0 && lead < 0xF0) extra = 2;
    if (lead >= 0xF0 && lead < 0xF5) extra = 3;
    if (extra == 0 || i + static_cast<std::size_t>(extra) >= utf8.size()) {
      codes += static_cast<char32_t>(lead);
      ++i;
      continue;
    }
    char32_t code = lead & (0x3F >> extra);
    bool valid = true;
    for (int k = 1; k <= extra; ++k) {
      unsigned char next = static_cast<unsigned char>(utf8[i + static_cast<std::size_t>(k)]);
      if ((next & 0xC0) != 0x80) {
        valid = false;
        break;
      }
      code = (code << 6) | (next & 0x3F);
    }
    // Overlong forms and surrogates are not valid UTF-8.
    bool overlong = (extra == 2 && code < 0x800) || (extra == 3 && (code < 0x10000 || code > 0x10FFFF));
    if (!valid || overlong || (code >= 0xD800 && code <= 0xDFFF)) {
      codes += static_cast<char32_t>(lead);
      ++i;
      continue;
    }
    codes += code;
    i += static_cast<std::size_t>(extra) + 1;
  }
  return codes;
}

void AppendXml(std::string& out, std::wstring_view text, XmlEscapeMode mode, bool escapesToReferences) {
  std::u32string codes;
  codes.reserve(text.size());
  for (wchar_t c : text) codes += static_cast<char32_t>(c);
  AppendEscaped(out, codes, mode, escapesToReferences);
}

void AppendXml(std::string& out, std::string_view utf8, XmlEscapeMode mode, bool escapesToReferences) {
  AppendEscaped(out, DecodeUtf8Lenient(utf8), mode, escapesToReferences);
}

std::string XmlText(std::wstring_view text, XmlEscapeMode mode, bool escapesToReferences) {
  std::string out;
  AppendXml(out, text, mode, escapesToReferences);
  return out;
}

std::string XmlText(std::string_view utf8, XmlEscapeMode mode, bool escapesToReferences) {
  std::string out;
  AppendXml(out, utf8, mode, escapesToReferences);
  return out;
}

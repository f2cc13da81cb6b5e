#include <cstdio>
#include <cwctype>

#include "projects/common/CommonRoutines.h"

namespace {

// "%04X" into a five-character buffer: codes past 0xFFFF keep only their first four digits.
std::wstring fourHexDigits(std::uint32_t code) {
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "%04X", code);
  std::wstring digits;
  for (int i = 0; i < 4; ++i) digits += static_cast<wchar_t>(buffer[i]);
  return digits;
}

int hexValue(wchar_t c) {
  if (c >= L'0' && c <= L'9') return c - L'0';
  if (c >= L'a' && c <= L'f') return c - L'a' + 10;
  if (c >= L'A' && c <= L'F') return c - L'A' + 10;
  return -1;
}

// Up to four leading hexadecimal digits taken from the end of the reversed input.
std::uint32_t takeEscapeCode(std::wstring& reversedInput) {
  std::uint32_t code = 0;
  bool digitsValid = true;
  for (int i = 0; i < 4 && !reversedInput.empty(); ++i) {
    int digit = hexValue(reversedInput.back());
    reversedInput.pop_back();
    digitsValid = digitsValid && digit >= 0;
    if (digitsValid) code = code * 16 + static_cast<std::uint32_t>(digit);
  }
  return code;
}

// Second bytes after 0xC3 and their ASCII folding; null where the character has none.
const char* utf8LatinFolding(OdChar second) {
  static const char* const kTable[64] = {
      "A", "A", "A", "A", "A", "A", "AE", "C", "E", "E", "E", "E", "I", "I", "I", "I",
      "D", "N", "O", "O", "O", "O", "O", nullptr, "O", "U", "U", "U", "U", "Y", "P", nullptr,
      "a", "a", "a", "a", "a", "a", "ae", "c", "e", "e", "e", "e", "i", "i", "i", "i",
      "d", "n", "o", "o", "o", "o", "o", nullptr, "o", "u", "u", "u", "u", "y", "p", "y"};
  if (second < 0x80 || second > 0xBF) return nullptr;
  return kTable[second - 0x80];
}

}  // namespace

void EscapeNonAscii(std::string& out, const OdString& text, const OdString& prefix, const OdString& suffix,
                    bool allowLatin1) {
  const std::uint32_t limit = allowLatin1 ? 255 : 127;
  OdString escaped;
  for (OdChar c : text.str()) {
    auto code = static_cast<std::uint32_t>(c);
    if (code <= limit) {
      escaped += c;
      continue;
    }
    escaped += prefix;
    escaped += OdString(fourHexDigits(code));
    if (!suffix.isEmpty()) escaped += suffix;
  }
  OdStringToNarrow(out, escaped);
}

// Works like restarting the search from the beginning after every replacement: the decoded character
// goes back in front of the unread input, where it may complete a new escape with the character
// before it or start one itself; no escape can begin any earlier than that.
void DecodeUnicodeEscapes(OdString& out, const OdString& text) {
  std::wstring reversedInput(text.str().rbegin(), text.str().rend());
  std::wstring decoded;
  decoded.reserve(text.str().size());
  while (!reversedInput.empty()) {
    wchar_t c = reversedInput.back();
    reversedInput.pop_back();
    if (c != L'u' || decoded.empty() || decoded.back() != L'\\') {
      decoded += c;
      continue;
    }
    decoded.pop_back();
    std::uint32_t code = takeEscapeCode(reversedInput);
    if (code != 0) reversedInput += static_cast<wchar_t>(code);
  }
  out = OdString(std::move(decoded));
}

bool TransliterateUtf8Latin(OdString& text) {
  const std::wstring& in = text.str();
  std::wstring folded;
  folded.reserve(in.size());
  bool changed = false;
  for (std::size_t i = 0; i < in.size(); ++i) {
    const char* replacement = in[i] == 0xC3 && i + 1 < in.size() ? utf8LatinFolding(in[i + 1]) : nullptr;
    if (!replacement) {
      folded += in[i];
      continue;
    }
    for (const char* p = replacement; *p; ++p) folded += static_cast<wchar_t>(*p);
    changed = true;
    ++i;
  }
  if (changed) text = OdString(std::move(folded));
  return changed;
}

std::string& FoldLatin1(std::string& text) {
  std::string folded;
  folded.reserve(text.size());
  for (char c : text) {
    auto b = static_cast<unsigned char>(c);
    // The Latin-1 letters sit 0x40 above their UTF-8 second bytes; 0xDF and 0xF8 have foldings here.
    const char* replacement = b == 0xDF ? "ss" : b == 0xF8 ? "o" : b >= 0xC0 ? utf8LatinFolding(b - 0x40) : nullptr;
    if (replacement)
      folded += replacement;
    else
      folded += c;
  }
  text = std::move(folded);
  return text;
}

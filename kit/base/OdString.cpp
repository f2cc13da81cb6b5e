#include "kit/base/OdString.h"

#include <cstdarg>
#include <cwchar>
#include <cwctype>
#include <vector>

const OdString OdString::kEmpty;

namespace {

std::wstring fromCodePage(const std::string& bytes) {
  std::wstring out;
  out.reserve(bytes.size());
  for (unsigned char b : bytes) out += static_cast<OdChar>(b);
  return out;
}

int clampCount(int count, std::size_t length) {
  if (count < 0) return 0;
  return static_cast<std::size_t>(count) > length ? static_cast<int>(length) : count;
}

}  // namespace

OdString::OdString(const char* text) : s_(fromCodePage(text ? text : "")) {}
OdString::OdString(const std::string& text) : s_(fromCodePage(text)) {}
OdString::OdString(const OdAnsiString& text) : s_(fromCodePage(text.str())) {}

int OdString::find(OdChar ch, int start) const {
  if (start < 0 || static_cast<std::size_t>(start) > s_.size()) return -1;
  auto p = s_.find(ch, static_cast<std::size_t>(start));
  return p == std::wstring::npos ? -1 : static_cast<int>(p);
}

int OdString::find(const OdChar* text, int start) const {
  if (!text || start < 0 || static_cast<std::size_t>(start) > s_.size()) return -1;
  auto p = s_.find(text, static_cast<std::size_t>(start));
  return p == std::wstring::npos ? -1 : static_cast<int>(p);
}

int OdString::reverseFind(OdChar ch) const {
  auto p = s_.rfind(ch);
  return p == std::wstring::npos ? -1 : static_cast<int>(p);
}

int OdString::findOneOf(const OdChar* set) const {
  if (!set) return -1;
  auto p = s_.find_first_of(set);
  return p == std::wstring::npos ? -1 : static_cast<int>(p);
}

OdString OdString::left(int count) const {
  return OdString(s_.substr(0, static_cast<std::size_t>(clampCount(count, s_.size()))));
}

OdString OdString::right(int count) const {
  int n = clampCount(count, s_.size());
  return OdString(s_.substr(s_.size() - static_cast<std::size_t>(n)));
}

OdString OdString::mid(int start) const {
  if (start < 0) start = 0;
  if (static_cast<std::size_t>(start) >= s_.size()) return OdString();
  return OdString(s_.substr(static_cast<std::size_t>(start)));
}

OdString OdString::mid(int start, int count) const {
  if (start < 0) start = 0;
  if (static_cast<std::size_t>(start) >= s_.size() || count <= 0) return OdString();
  return OdString(s_.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(count)));
}

OdString& OdString::makeUpper() {
  for (auto& c : s_) c = static_cast<OdChar>(std::towupper(static_cast<wint_t>(c)));
  return *this;
}

OdString& OdString::makeLower() {
  for (auto& c : s_) c = static_cast<OdChar>(std::towlower(static_cast<wint_t>(c)));
  return *this;
}

OdString& OdString::trimLeft() {
  std::size_t i = 0;
  while (i < s_.size() && std::iswspace(static_cast<wint_t>(s_[i]))) ++i;
  s_.erase(0, i);
  return *this;
}

OdString& OdString::trimRight() {
  while (!s_.empty() && std::iswspace(static_cast<wint_t>(s_.back()))) s_.pop_back();
  return *this;
}

int OdString::replace(OdChar from, OdChar to) {
  int n = 0;
  for (auto& c : s_)
    if (c == from) { c = to; ++n; }
  return n;
}

int OdString::replace(const OdChar* from, const OdChar* to) {
  if (!from || !*from) return 0;
  std::wstring f(from), t(to ? to : L"");
  int n = 0;
  for (std::size_t p = s_.find(f); p != std::wstring::npos; p = s_.find(f, p + t.size())) {
    s_.replace(p, f.size(), t);
    ++n;
  }
  return n;
}

int OdString::remove(OdChar ch) {
  std::size_t before = s_.size();
  std::erase(s_, ch);
  return static_cast<int>(before - s_.size());
}

OdString& OdString::insert(int index, const OdChar* text) {
  if (!text) return *this;
  std::size_t at = index < 0 ? 0 : std::min(static_cast<std::size_t>(index), s_.size());
  s_.insert(at, text);
  return *this;
}

OdString& OdString::deleteChars(int index, int count) {
  if (index < 0 || count <= 0 || static_cast<std::size_t>(index) >= s_.size()) return *this;
  s_.erase(static_cast<std::size_t>(index), static_cast<std::size_t>(count));
  return *this;
}

int OdString::iCompare(const OdChar* other) const {
  const OdChar* a = s_.c_str();
  const OdChar* b = other ? other : L"";
  for (;; ++a, ++b) {
    wint_t ca = std::towlower(static_cast<wint_t>(*a)), cb = std::towlower(static_cast<wint_t>(*b));
    if (ca != cb) return ca < cb ? -1 : 1;
    if (!ca) return 0;
  }
}

OdString& OdString::format(const OdChar* fmt, ...) {
  std::vector<wchar_t> buf(256);
  for (;;) {
    va_list args;
    va_start(args, fmt);
    int n = std::vswprintf(buf.data(), buf.size(), fmt, args);
    va_end(args);
    if (n >= 0 && static_cast<std::size_t>(n) < buf.size()) {
      s_.assign(buf.data(), static_cast<std::size_t>(n));
      return *this;
    }
    // vswprintf reports overflow and encoding errors alike with -1: grow up to a sane bound.
    if (buf.size() >= (1u << 24)) {
      s_.clear();
      return *this;
    }
    buf.resize(buf.size() * 4);
  }
}

OdAnsiString::OdAnsiString(const OdString& text) {
  s_.reserve(static_cast<std::size_t>(text.getLength()));
  for (OdChar c : text.str()) s_ += (c >= 0 && c < 256) ? static_cast<char>(c) : '?';
}

OdAnsiString& OdAnsiString::makeUpper() {
  for (auto& c : s_)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return *this;
}

OdAnsiString& OdAnsiString::makeLower() {
  for (auto& c : s_)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return *this;
}

int OdAnsiString::iCompare(const char* other) const {
  OdAnsiString a(*this), b(other ? other : "");
  a.makeLower();
  b.makeLower();
  int r = a.s_.compare(b.s_);
  return r < 0 ? -1 : (r > 0 ? 1 : 0);
}

std::wstring odDecodeUtf8(const char* bytes, std::size_t length) {
  std::wstring out;
  out.reserve(length);
  const auto* p = reinterpret_cast<const unsigned char*>(bytes);
  std::size_t i = 0;
  while (i < length) {
    unsigned char b = p[i];
    int extra = b < 0x80 ? 0 : (b >> 5) == 6 ? 1 : (b >> 4) == 14 ? 2 : (b >> 3) == 30 ? 3 : -1;
    if (extra < 0 || i + static_cast<std::size_t>(extra) >= length + (extra == 0 ? 1 : 0)) {
      out += L'\xFFFD';
      ++i;
      continue;
    }
    char32_t cp = extra == 0 ? b : (b & (0x3F >> extra));
    bool ok = true;
    for (int k = 1; k <= extra; ++k) {
      unsigned char c = p[i + static_cast<std::size_t>(k)];
      if ((c & 0xC0) != 0x80) { ok = false; break; }
      cp = (cp << 6) | (c & 0x3F);
    }
    if (!ok || cp > 0x10FFFF) {
      out += L'\xFFFD';
      ++i;
      continue;
    }
    out += static_cast<OdChar>(cp);
    i += static_cast<std::size_t>(extra) + 1;
  }
  return out;
}

std::string odEncodeUtf8(const std::wstring& text) {
  std::string out;
  for (const wchar_t ch : text) {
    const auto c = static_cast<char32_t>(ch);
    if (c < 0x80) {
      out += static_cast<char>(c);
    } else if (c < 0x800) {
      out += static_cast<char>(0xC0 | (c >> 6));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
      out += static_cast<char>(0xE0 | (c >> 12));
      out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x110000) {
      out += static_cast<char>(0xF0 | (c >> 18));
      out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
      out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
      out += '?';  // not a Unicode code point
    }
  }
  return out;
}

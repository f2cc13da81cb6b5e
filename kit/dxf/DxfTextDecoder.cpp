#include "kit/dxf/DxfTextDecoder.h"

#include <iconv.h>

#include <cerrno>
#include <cstring>
#include <map>
#include <mutex>

#include "kit/db/DbObject.h"

namespace {

constexpr uint32_t kReplacement = 0xFFFD;

bool isAscii(std::string_view s) {
  // Eight bytes at a time: a set high bit in any byte means non-ASCII text.
  size_t i = 0;
  for (; i + 8 <= s.size(); i += 8) {
    uint64_t word;
    std::memcpy(&word, s.data() + i, 8);
    if (word & 0x8080808080808080ULL) return false;
  }
  for (; i < s.size(); ++i) {
    if (static_cast<unsigned char>(s[i]) & 0x80) return false;
  }
  return true;
}

// Builds (once per code page, shared by all loads) the table of what bytes 0x80..0xFF mean.
// Bytes the code page leaves undefined keep their own value, as Windows does.
std::array<uint32_t, 128> buildHighHalf(const std::string& iconvName, bool& isSingleByte) {
  static std::mutex mutex;
  static std::map<std::string, std::pair<std::array<uint32_t, 128>, bool>> cache;
  std::lock_guard<std::mutex> lock(mutex);
  auto it = cache.find(iconvName);
  if (it != cache.end()) {
    isSingleByte = it->second.second;
    return it->second.first;
  }
  std::array<uint32_t, 128> table{};
  bool single = true;
  iconv_t cd = iconv_open("UTF-32LE", iconvName.c_str());
  for (int b = 0x80; b <= 0xFF; ++b) {
    table[size_t(b - 0x80)] = uint32_t(b);
    if (cd == iconv_t(-1)) continue;
    char in[1] = {char(b)};
    uint32_t outCode = 0;
    char* inPtr = in;
    size_t inLeft = 1;
    char* outPtr = reinterpret_cast<char*>(&outCode);
    size_t outLeft = sizeof outCode;
    iconv(cd, nullptr, nullptr, nullptr, nullptr);
    size_t r = iconv(cd, &inPtr, &inLeft, &outPtr, &outLeft);
    bool leadByte = r == size_t(-1) && errno == EINVAL;
    // Pages with combining marks (1255, 1258) hold a letter back until they see what follows.
    if (r != size_t(-1)) iconv(cd, nullptr, nullptr, &outPtr, &outLeft);
    if (leadByte) single = false;  // a lead byte of a multi-byte page
    if (outLeft == 0) table[size_t(b - 0x80)] = outCode;
  }
  if (cd != iconv_t(-1)) iconv_close(cd);
  cache.emplace(iconvName, std::make_pair(table, single));
  isSingleByte = single;
  return table;
}

}  // namespace

void appendUtf8(std::string& out, uint32_t cp) {
  if (cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) cp = kReplacement;
  if (cp < 0x80) {
    out += char(cp);
  } else if (cp < 0x800) {
    out += char(0xC0 | (cp >> 6));
    out += char(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    out += char(0xE0 | (cp >> 12));
    out += char(0x80 | ((cp >> 6) & 0x3F));
    out += char(0x80 | (cp & 0x3F));
  } else {
    out += char(0xF0 | (cp >> 18));
    out += char(0x80 | ((cp >> 12) & 0x3F));
    out += char(0x80 | ((cp >> 6) & 0x3F));
    out += char(0x80 | (cp & 0x3F));
  }
}

bool isValidUtf8(std::string_view s) {
  size_t i = 0;
  while (i < s.size()) {
    unsigned char c = static_cast<unsigned char>(s[i]);
    if (c < 0x80) {
      ++i;
      continue;
    }
    size_t extra;
    uint32_t cp;
    if ((c & 0xE0) == 0xC0) extra = 1, cp = c & 0x1F;
    else if ((c & 0xF0) == 0xE0) extra = 2, cp = c & 0x0F;
    else if ((c & 0xF8) == 0xF0) extra = 3, cp = c & 0x07;
    else return false;
    if (i + extra >= s.size()) return false;
    for (size_t k = 1; k <= extra; ++k) {
      unsigned char cc = static_cast<unsigned char>(s[i + k]);
      if ((cc & 0xC0) != 0x80) return false;
      cp = (cp << 6) | (cc & 0x3F);
    }
    static const uint32_t kMin[4] = {0, 0x80, 0x800, 0x10000};
    if (cp < kMin[extra] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return false;
    i += extra + 1;
  }
  return true;
}

DxfTextDecoder::DxfTextDecoder() { setCodePage("ANSI_1252"); }

DxfTextDecoder::~DxfTextDecoder() {
  if (converter_) iconv_close(static_cast<iconv_t>(converter_));
}

std::string DxfTextDecoder::iconvNameFor(std::string_view page) {
  std::string p = toUpperAscii(page);
  auto number = [&](size_t prefix) { return p.substr(prefix); };
  if (p.rfind("ANSI_", 0) == 0) {
    std::string n = number(5);
    if (n == "1361") return "JOHAB";
    return "CP" + n;
  }
  if (p.rfind("DOS", 0) == 0 && p.size() > 3) return "CP" + number(3);
  if (p.rfind("ISO8859-", 0) == 0) return "ISO-8859-" + number(8);
  if (p == "MAC-ROMAN") return "MACINTOSH";
  if (p == "BIG5") return "BIG5";
  if (p == "GB2312") return "GB2312";
  if (p == "KSC5601") return "CP949";
  if (p == "JOHAB") return "JOHAB";
  if (p == "ASCII") return "CP1252";
  return std::string();
}

void DxfTextDecoder::setCodePage(std::string_view dwgCodePage) {
  std::string upper = toUpperAscii(dwgCodePage);
  if (upper == "UTF-8" || upper == "UTF8") {
    utf8_ = true;
    return;
  }
  std::string name = iconvNameFor(dwgCodePage);
  if (name.empty()) name = "CP1252";
  if (iconv_t probe = iconv_open("UTF-32LE", name.c_str()); probe == iconv_t(-1)) {
    name = "CP1252";
  } else {
    iconv_close(probe);
  }
  if (name == iconvName_) return;
  iconvName_ = name;
  highHalf_ = buildHighHalf(iconvName_, singleByte_);
  if (converter_) {
    iconv_close(static_cast<iconv_t>(converter_));
    converter_ = nullptr;
  }
}

void DxfTextDecoder::decodeInto(std::string_view raw, std::string& out) const {
  out.clear();
  if (isAscii(raw)) {
    out.assign(raw.data(), raw.size());
    return;
  }
  if (utf8_ && isValidUtf8(raw)) {
    out.assign(raw.data(), raw.size());
    return;
  }
  decodeCodePage(raw, out);
}

void DxfTextDecoder::decodeCodePage(std::string_view raw, std::string& out) const {
  if (!singleByte_) {
    decodeMultiByte(raw, out);
    return;
  }
  out.reserve(raw.size() + raw.size() / 2);
  for (char ch : raw) {
    unsigned char b = static_cast<unsigned char>(ch);
    if (b < 0x80) out += ch;
    else appendUtf8(out, highHalf_[b - 0x80]);
  }
}

void DxfTextDecoder::decodeMultiByte(std::string_view raw, std::string& out) const {
  if (!converter_) {
    iconv_t cd = iconv_open("UTF-8", iconvName_.c_str());
    if (cd == iconv_t(-1)) {
      for (char ch : raw) appendUtf8(out, static_cast<unsigned char>(ch));
      return;
    }
    converter_ = cd;
  }
  iconv_t cd = static_cast<iconv_t>(converter_);
  iconv(cd, nullptr, nullptr, nullptr, nullptr);
  char* in = const_cast<char*>(raw.data());
  size_t inLeft = raw.size();
  char buffer[1024];
  for (;;) {
    if (inLeft == 0) {
      char* outPtr = buffer;
      size_t outLeft = sizeof buffer;
      iconv(cd, nullptr, nullptr, &outPtr, &outLeft);  // characters held back for combining marks
      out.append(buffer, size_t(outPtr - buffer));
      break;
    }
    char* outPtr = buffer;
    size_t outLeft = sizeof buffer;
    size_t r = iconv(cd, &in, &inLeft, &outPtr, &outLeft);
    out.append(buffer, size_t(outPtr - buffer));
    if (r == size_t(-1)) {
      if (errno == E2BIG) continue;
      // An invalid or cut-off sequence: one replacement character, then go on after the byte.
      appendUtf8(out, kReplacement);
      ++in;
      --inLeft;
      iconv(cd, nullptr, nullptr, nullptr, nullptr);
    }
  }
}

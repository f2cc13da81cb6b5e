#include "kit/dxf/DxfTextEncoder.h"

#include <iconv.h>

#include <cstdio>

#include "kit/dxf/DxfTextDecoder.h"

namespace {

bool isAscii(std::string_view s) {
  for (char c : s) {
    if (static_cast<unsigned char>(c) & 0x80) return false;
  }
  return true;
}

// "\U+00E9"; code points beyond the basic plane become a surrogate pair of escapes.
void appendEscape(std::string& out, uint32_t cp) {
  char buf[16];
  if (cp > 0xFFFF) {
    cp -= 0x10000;
    std::snprintf(buf, sizeof buf, "\\U+%04X", unsigned(0xD800 + (cp >> 10)));
    out += buf;
    cp = 0xDC00 + (cp & 0x3FF);
  }
  std::snprintf(buf, sizeof buf, "\\U+%04X", unsigned(cp));
  out += buf;
}

}  // namespace

uint32_t nextCodePoint(std::string_view s, size_t& i) {
  unsigned char c = static_cast<unsigned char>(s[i]);
  if (c < 0x80) {
    ++i;
    return c;
  }
  size_t extra;
  uint32_t cp;
  if ((c & 0xE0) == 0xC0) extra = 1, cp = c & 0x1F;
  else if ((c & 0xF0) == 0xE0) extra = 2, cp = c & 0x0F;
  else if ((c & 0xF8) == 0xF0) extra = 3, cp = c & 0x07;
  else {
    ++i;
    return 0xFFFD;
  }
  if (i + extra >= s.size()) {
    ++i;
    return 0xFFFD;
  }
  for (size_t k = 1; k <= extra; ++k) {
    unsigned char cc = static_cast<unsigned char>(s[i + k]);
    if ((cc & 0xC0) != 0x80) {
      ++i;
      return 0xFFFD;
    }
    cp = (cp << 6) | (cc & 0x3F);
  }
  i += extra + 1;
  return cp;
}

DxfTextEncoder::DxfTextEncoder() { setCodePage("ANSI_1252"); }

DxfTextEncoder::~DxfTextEncoder() {
  if (converter_) iconv_close(static_cast<iconv_t>(converter_));
}

void DxfTextEncoder::setCodePage(std::string_view dwgCodePage) {
  std::string name = DxfTextDecoder::iconvNameFor(dwgCodePage);
  if (name.empty()) name = "CP1252";
  if (iconv_t probe = iconv_open(name.c_str(), "UTF-32LE"); probe == iconv_t(-1)) {
    name = "CP1252";
  } else {
    iconv_close(probe);
  }
  if (name == iconvName_) return;
  iconvName_ = name;
  bytes_.clear();
  if (converter_) {
    iconv_close(static_cast<iconv_t>(converter_));
    converter_ = nullptr;
  }
  // Single-byte pages: the decoder's own reading of each high byte, reversed, so that bytes a
  // page leaves undefined (read as the code point of the same value) go back unchanged.
  DxfTextDecoder decoder;
  decoder.setCodePage(dwgCodePage);
  singleByte_ = true;
  for (int b = 0xFF; b >= 0x80; --b) {
    char byte = char(b);
    std::string utf8 = decoder.decode(std::string_view(&byte, 1));
    size_t i = 0;
    uint32_t cp = utf8.empty() ? 0xFFFD : nextCodePoint(utf8, i);
    if (cp == 0xFFFD || i != utf8.size()) {
      singleByte_ = false;  // a lead byte of a multi-byte page
      continue;
    }
    bytes_[cp] = std::string(1, byte);
  }
  if (!singleByte_) bytes_.clear();
}

const std::string& DxfTextEncoder::bytesFor(uint32_t cp) {
  auto it = bytes_.find(cp);
  if (it != bytes_.end()) return it->second;
  std::string encoded;
  if (!singleByte_ && cp != 0xFFFD) {
    if (!converter_) {
      iconv_t cd = iconv_open(iconvName_.c_str(), "UTF-32LE");
      converter_ = cd == iconv_t(-1) ? nullptr : cd;
    }
    if (converter_) {
      iconv_t cd = static_cast<iconv_t>(converter_);
      char in[4] = {char(cp & 0xFF), char((cp >> 8) & 0xFF), char((cp >> 16) & 0xFF), char(cp >> 24)};
      char out[16];
      char* inPtr = in;
      size_t inLeft = sizeof in;
      char* outPtr = out;
      size_t outLeft = sizeof out;
      iconv(cd, nullptr, nullptr, nullptr, nullptr);
      if (iconv(cd, &inPtr, &inLeft, &outPtr, &outLeft) != size_t(-1) &&
          iconv(cd, nullptr, nullptr, &outPtr, &outLeft) != size_t(-1)) {
        encoded.assign(out, size_t(outPtr - out));
      }
    }
  }
  if (encoded.empty()) appendEscape(encoded, cp);
  return bytes_.emplace(cp, std::move(encoded)).first->second;
}

void DxfTextEncoder::encodeInto(std::string_view utf8, std::string& out) {
  if (utf8_ || isAscii(utf8)) {
    out.append(utf8.data(), utf8.size());
    return;
  }
  size_t i = 0;
  while (i < utf8.size()) {
    unsigned char c = static_cast<unsigned char>(utf8[i]);
    if (c < 0x80) {
      out += char(c);
      ++i;
      continue;
    }
    out += bytesFor(nextCodePoint(utf8, i));
  }
}

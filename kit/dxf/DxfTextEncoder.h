// Turns the database's UTF-8 text into the bytes a DXF file of the chosen version holds: UTF-8
// from R2007 on, the $DWGCODEPAGE code page before. Characters the code page lacks are written
// as "\U+XXXX" escapes, which every DXF reader turns back into the character. The mapping is the
// exact inverse of DxfTextDecoder, so that text read from a file is written back byte for byte.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

class DxfTextEncoder {
public:
  DxfTextEncoder();
  ~DxfTextEncoder();
  DxfTextEncoder(const DxfTextEncoder&) = delete;
  DxfTextEncoder& operator=(const DxfTextEncoder&) = delete;

  // A $DWGCODEPAGE value; unknown names encode as Windows 1252, as the reader decodes them.
  void setCodePage(std::string_view dwgCodePage);
  void setUtf8(bool utf8) { utf8_ = utf8; }
  bool isUtf8() const { return utf8_; }

  // Appends the encoded text to `out`.
  void encodeInto(std::string_view utf8, std::string& out);
  std::string encode(std::string_view utf8) {
    std::string out;
    encodeInto(utf8, out);
    return out;
  }

private:
  const std::string& bytesFor(uint32_t codePoint);

  bool utf8_ = false;
  bool singleByte_ = true;
  std::string iconvName_;
  std::unordered_map<uint32_t, std::string> bytes_;  // code point -> encoded bytes, filled lazily
  void* converter_ = nullptr;                        // iconv descriptor, UTF-32LE -> code page
};

// Reads one code point from UTF-8 at `i` and advances past it; malformed bytes give U+FFFD and
// advance by one.
uint32_t nextCodePoint(std::string_view utf8, size_t& i);

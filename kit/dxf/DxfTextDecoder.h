// Turns the bytes of DXF string values into UTF-8, once, as they are stored. Files before R2007
// are in the Windows or DOS code page that $DWGCODEPAGE names; R2007 and later are UTF-8 (bytes
// that are not valid UTF-8 are then read in the code page instead). Text that is plain ASCII, the
// common case, is copied as it is. "\U+XXXX" and "\M+NXXXX" escapes are left in the text.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

class DxfTextDecoder {
public:
  DxfTextDecoder();
  ~DxfTextDecoder();
  DxfTextDecoder(const DxfTextDecoder&) = delete;
  DxfTextDecoder& operator=(const DxfTextDecoder&) = delete;

  // A $DWGCODEPAGE value ("ANSI_1252", "dos850", "ANSI_932", ...). Unknown names keep 1252.
  void setCodePage(std::string_view dwgCodePage);
  // R2007 and later: strings are UTF-8.
  void setUtf8(bool utf8) { utf8_ = utf8; }
  bool isUtf8() const { return utf8_; }
  // The iconv name of the code page in use ("CP1252").
  const std::string& codePageName() const { return iconvName_; }

  std::string decode(std::string_view raw) const {
    std::string out;
    decodeInto(raw, out);
    return out;
  }
  void decodeInto(std::string_view raw, std::string& out) const;

  // The iconv name for a $DWGCODEPAGE value, or empty when unknown.
  static std::string iconvNameFor(std::string_view dwgCodePage);

private:
  void decodeCodePage(std::string_view raw, std::string& out) const;
  void decodeMultiByte(std::string_view raw, std::string& out) const;

  bool utf8_ = false;
  bool singleByte_ = true;
  std::string iconvName_;
  std::array<uint32_t, 128> highHalf_{};  // code points of bytes 0x80..0xFF (single-byte pages)
  mutable void* converter_ = nullptr;     // iconv descriptor for multi-byte pages
};

// Appends one code point as UTF-8.
void appendUtf8(std::string& out, uint32_t codePoint);
// True when the bytes are well-formed UTF-8.
bool isValidUtf8(std::string_view bytes);

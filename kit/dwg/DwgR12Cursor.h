// Reading the fixed-layout fields of R11/R12 DWG files (AC1009) from a bounded range: every read
// checks what is left, so that a damaged length or count ends in a format error, not a read
// past the range.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "kit/base/OdError.h"
#include "kit/db/Handle.h"
#include "kit/dwg/DwgFileSections.h"
#include "kit/dwg/DwgLittleEndian.h"

// An offset as messages give it ("0x6CF").
inline std::string dwgR12Offset(size_t offset) { return "0x" + OdDbHandle(offset).toHex(); }

class DwgR12Cursor {
public:
  // `what` names the range in messages ("the layer table", "the entity at 0x6CF").
  DwgR12Cursor(std::string_view bytes, std::string what) : bytes_(bytes), what_(std::move(what)) {}

  size_t position() const { return at_; }
  size_t left() const { return bytes_.size() - at_; }
  bool atEnd() const { return at_ >= bytes_.size(); }

  uint8_t u8() { return uint8_t(*take(1)); }
  int8_t i8() { return int8_t(u8()); }
  uint16_t u16() { return dwgLe16(take(2)); }
  int16_t i16() { return int16_t(u16()); }
  uint32_t u32() { return dwgLe32(take(4)); }
  double f64() {
    uint64_t bits = dwgLe64(take(8));
    double v;
    std::memcpy(&v, &bits, sizeof v);
    return v;
  }
  void skip(size_t n) { take(n); }
  std::string_view bytes(size_t n) { return {reinterpret_cast<const char*>(take(n)), n}; }
  // A name field of fixed width, ended by the first zero byte.
  std::string fixedText(size_t width) {
    std::string_view field = bytes(width);
    return std::string(field.substr(0, field.find('\0')));
  }
  // A number stored highest byte first (handles and the handle seed), of at most 8 bytes.
  uint64_t bigEndian(size_t n) {
    const uint8_t* p = take(n);
    uint64_t v = 0;
    for (size_t i = 0; i < n; ++i) v = (v << 8) | p[i];
    return v;
  }
  // Text of entities: a 16-bit length, then the bytes.
  std::string text() {
    uint16_t n = u16();
    return std::string(bytes(n));
  }

  [[noreturn]] void fail(const std::string& problem) const { throw DwgFormatError{eInvalidDrawing, what_ + ": " + problem}; }

private:
  const uint8_t* take(size_t n) {
    if (n > left()) fail("its fields run past its end");
    const uint8_t* p = reinterpret_cast<const uint8_t*>(bytes_.data()) + at_;
    at_ += n;
    return p;
  }

  std::string_view bytes_;
  std::string what_;
  size_t at_ = 0;
};

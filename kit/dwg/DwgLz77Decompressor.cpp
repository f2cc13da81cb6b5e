#include "kit/dwg/DwgLz77Decompressor.h"

#include <cstring>
#include <string>

#include "kit/base/OdError.h"
#include "kit/dwg/DwgFileSections.h"

namespace {

[[noreturn]] void fail(const std::string& what) {
  throw DwgFormatError{eInvalidDrawing, "compressed page: " + what};
}

class Lz77Stream {
public:
  Lz77Stream(const uint8_t* in, size_t size, uint8_t* out, size_t capacity)
      : in_(in), size_(size), out_(out), capacity_(capacity) {}

  size_t run();

private:
  bool atEnd() const { return at_ >= size_; }

  uint8_t next() {
    if (at_ >= size_) fail("the stream ends inside an opcode");
    return in_[at_++];
  }

  // A run of literals: 0x01-0x0F plus 3, or 0x00 starting an extended count. A byte with its
  // high nibble set is the next opcode and means no literals.
  size_t literalLength() {
    if (atEnd() || in_[at_] >= 0x10) return 0;
    uint8_t first = next();
    if (first != 0) return first + 3;
    return extendedCount(0x0F) + 3;
  }

  // A count continued by zero bytes, each worth 0xFF, up to the first non-zero byte.
  size_t extendedCount(size_t total) {
    for (;;) {
      uint8_t b = next();
      if (b != 0) return total + b;
      total += 0xFF;
    }
  }

  size_t longLength() {
    uint8_t first = next();
    return first != 0 ? first : extendedCount(0xFF);
  }

  // Two bytes holding a 14-bit offset and, in the low bits of the first, a literal count of 0-3.
  size_t twoByteOffset(size_t& literals) {
    uint8_t first = next();
    uint8_t second = next();
    literals = first & 0x03;
    return size_t(first >> 2) | (size_t(second) << 6);
  }

  void copyLiterals(size_t count) {
    if (count > size_ - at_) fail("a literal run goes past the end of the stream");
    if (count > capacity_ - written_) fail("a literal run goes past the end of the page");
    if (count == 0) return;  // an empty page may have no buffer at all
    std::memcpy(out_ + written_, in_ + at_, count);
    written_ += count;
    at_ += count;
  }

  // A reference may overlap the bytes it produces: those go byte by byte, repeating the pattern.
  void copyBack(size_t offset, size_t count) {
    if (offset > written_) fail("a reference points before the start of the page");
    if (count > capacity_ - written_) fail("a reference goes past the end of the page");
    if (count == 0) return;
    uint8_t* to = out_ + written_;
    const uint8_t* from = to - offset;
    if (offset >= count) {
      std::memcpy(to, from, count);
    } else {
      for (size_t i = 0; i < count; ++i) to[i] = from[i];
    }
    written_ += count;
  }

  const uint8_t* in_;
  size_t size_;
  uint8_t* out_;
  size_t capacity_;
  size_t at_ = 0;
  size_t written_ = 0;
};

size_t Lz77Stream::run() {
  copyLiterals(literalLength());
  while (!atEnd()) {
    uint8_t op = next();
    if (op == 0x11) return written_;
    if (op < 0x10) fail("opcode " + std::to_string(op) + " is not used");
    size_t count = 0;
    size_t offset = 0;
    size_t literals = 0;
    if (op < 0x20) {
      count = op == 0x10 ? longLength() + 9 : (op & 0x0F) + 2;
      offset = twoByteOffset(literals) + 0x3FFF;
    } else if (op < 0x40) {
      count = op == 0x20 ? longLength() + 0x21 : op - 0x1E;
      offset = twoByteOffset(literals);
    } else {
      count = (op >> 4) - 1;
      offset = (size_t(next()) << 2) | ((op & 0x0C) >> 2);
      literals = op & 0x03;
    }
    if (literals == 0) literals = literalLength();
    copyBack(offset + 1, count);
    copyLiterals(literals);
  }
  // Some writers end the stream without the closing opcode.
  return written_;
}

}  // namespace

size_t decompressDwgLz77(const uint8_t* in, size_t size, uint8_t* out, size_t capacity) {
  return Lz77Stream(in, size, out, capacity).run();
}

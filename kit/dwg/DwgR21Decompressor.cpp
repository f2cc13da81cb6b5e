#include "kit/dwg/DwgR21Decompressor.h"

#include <string>

#include "kit/base/OdError.h"
#include "kit/dwg/DwgFileSections.h"

namespace {

[[noreturn]] void fail(const std::string& what) {
  throw DwgFormatError{eInvalidDrawing, "compressed R2007 page: " + what};
}

// A literal run of n bytes (1-32) is stored as pieces: {length, source offset} in output order.
// Pieces of 2 and 3 bytes are stored reversed, 16 as two swapped halves of 8.
struct Piece {
  uint8_t length;
  uint8_t from;
};

const std::vector<Piece> kLiteralPieces[33] = {
    {},
    {{1, 0}},
    {{2, 0}},
    {{3, 0}},
    {{4, 0}},
    {{1, 4}, {4, 0}},
    {{1, 5}, {4, 1}, {1, 0}},
    {{2, 5}, {4, 1}, {1, 0}},
    {{8, 0}},
    {{1, 8}, {8, 0}},
    {{1, 9}, {8, 1}, {1, 0}},
    {{2, 9}, {8, 1}, {1, 0}},
    {{4, 8}, {8, 0}},
    {{1, 12}, {4, 8}, {8, 0}},
    {{1, 13}, {4, 9}, {8, 1}, {1, 0}},
    {{2, 13}, {4, 9}, {8, 1}, {1, 0}},
    {{16, 0}},
    {{8, 9}, {1, 8}, {8, 0}},
    {{1, 17}, {16, 1}, {1, 0}},
    {{3, 16}, {16, 0}},
    {{4, 16}, {16, 0}},
    {{1, 20}, {4, 16}, {16, 0}},
    {{2, 20}, {4, 16}, {16, 0}},
    {{3, 20}, {4, 16}, {16, 0}},
    {{8, 16}, {16, 0}},
    {{8, 17}, {1, 16}, {16, 0}},
    {{1, 25}, {8, 17}, {1, 16}, {16, 0}},
    {{2, 25}, {8, 17}, {1, 16}, {16, 0}},
    {{4, 24}, {8, 16}, {16, 0}},
    {{1, 28}, {4, 24}, {8, 16}, {16, 0}},
    {{2, 28}, {4, 24}, {8, 16}, {16, 0}},
    {{1, 30}, {4, 26}, {8, 18}, {16, 2}, {2, 0}},
    {{16, 16}, {16, 0}},
};

class R21Stream {
public:
  R21Stream(const uint8_t* in, size_t size, size_t outputSize) : in_(in), size_(size), out_(outputSize) {}

  std::vector<uint8_t> run();

private:
  bool atEnd() const { return at_ >= size_; }

  uint8_t next() {
    if (at_ >= size_) fail("the stream ends inside an instruction");
    return in_[at_++];
  }

  size_t literalLength(uint8_t op) {
    size_t length = size_t(op) + 8;
    if (length != 0x17) return length;
    uint8_t n = next();
    length += n;
    if (n != 0xFF) return length;
    for (;;) {
      size_t wide = next();
      wide |= size_t(next()) << 8;
      length += wide;
      if (wide != 0xFFFF) return length;
    }
  }

  void putPiece(const uint8_t* from, size_t length) {
    if (length == 2 || length == 3) {
      for (size_t i = length; i-- > 0;) out_[written_++] = from[i];
    } else if (length == 16) {
      for (size_t i = 8; i < 16; ++i) out_[written_++] = from[i];
      for (size_t i = 0; i < 8; ++i) out_[written_++] = from[i];
    } else {
      for (size_t i = 0; i < length; ++i) out_[written_++] = from[i];
    }
  }

  void copyLiterals(size_t count) {
    if (count > size_ - at_) fail("a literal run goes past the end of the stream");
    if (count > out_.size() - written_) fail("a literal run goes past the end of the page");
    const uint8_t* from = in_ + at_;
    at_ += count;
    for (; count >= 32; count -= 32, from += 32) {
      for (const Piece& p : kLiteralPieces[32]) putPiece(from + p.from, p.length);
    }
    for (const Piece& p : kLiteralPieces[count]) putPiece(from + p.from, p.length);
  }

  // Byte by byte, since a reference may overlap the bytes it produces.
  void copyBack(size_t offset, size_t count) {
    if (offset == 0 || offset > written_) fail("a reference points before the start of the page");
    if (count > out_.size() - written_) fail("a reference goes past the end of the page");
    for (size_t i = 0; i < count; ++i, ++written_) out_[written_] = out_[written_ - offset];
  }

  // Reads one reference; `op` becomes the byte whose low 3 bits count the literals after it.
  void reference(uint8_t& op, size_t& offset, size_t& count);
  // References until one is followed by literals; returns their count, 0 with `op` pending.
  size_t references(uint8_t& op, bool& pending);

  const uint8_t* in_;
  size_t size_;
  std::vector<uint8_t> out_;
  size_t at_ = 0;
  size_t written_ = 0;
};

void R21Stream::reference(uint8_t& op, size_t& offset, size_t& count) {
  switch (op >> 4) {
    case 0:
      count = (op & 0x0F) + 0x13;
      offset = next();
      op = next();
      count += (op >> 3) & 0x10;
      offset += ((op & 0x78) << 5) + 1;
      break;
    case 1:
      count = (op & 0x0F) + 3;
      offset = next();
      op = next();
      offset += ((op & 0xF8) << 5) + 1;
      break;
    case 2:
      offset = next();
      offset |= size_t(next()) << 8;
      count = op & 7;
      if ((op & 8) == 0) {
        op = next();
        count += op & 0xF8;
      } else {
        ++offset;
        count += size_t(next()) << 3;
        op = next();
        count += (size_t(op & 0xF8) << 8) + 0x100;
      }
      break;
    default:
      count = op >> 4;
      offset = op & 0x0F;
      op = next();
      offset += ((op & 0xF8) << 1) + 1;
      break;
  }
}

size_t R21Stream::references(uint8_t& op, bool& pending) {
  op = next();
  for (;;) {
    size_t offset = 0;
    size_t count = 0;
    reference(op, offset, count);
    copyBack(offset, count);
    size_t literals = op & 7;
    if (literals != 0 || atEnd()) return literals;
    op = next();
    if ((op >> 4) == 0) {
      pending = true;
      return 0;
    }
    if ((op >> 4) == 0x0F) op &= 0x0F;
  }
}

std::vector<uint8_t> R21Stream::run() {
  size_t literals = 0;
  uint8_t op = 0;
  bool pending = false;
  if (size_ >= 4 && (in_[0] >> 4) == 2) {
    at_ = 4;
    literals = in_[3] & 7;
  }
  while (!atEnd()) {
    if (literals == 0) {
      if (!pending) op = next();
      pending = false;
      literals = literalLength(op);
    }
    copyLiterals(literals);
    literals = 0;
    if (atEnd()) break;
    literals = references(op, pending);
  }
  if (written_ != out_.size()) fail("the stream gives " + std::to_string(written_) + " bytes instead of " + std::to_string(out_.size()));
  return std::move(out_);
}

}  // namespace

std::vector<uint8_t> decompressDwgR21(const uint8_t* in, size_t size, size_t outputSize) {
  return R21Stream(in, size, outputSize).run();
}

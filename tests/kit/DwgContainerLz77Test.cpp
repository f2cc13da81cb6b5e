// The LZ77 decompressor of R2004 and later pages on hand-made streams: every opcode form, a
// reference that overlaps its own output, and streams that would read or write out of bounds.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kit/dwg/DwgFileSections.h"
#include "kit/dwg/DwgLz77Decompressor.h"

namespace {

using Bytes = std::vector<uint8_t>;

Bytes text(const std::string& s) { return Bytes(s.begin(), s.end()); }

Bytes concat(std::initializer_list<Bytes> parts) {
  Bytes all;
  for (const Bytes& p : parts) all.insert(all.end(), p.begin(), p.end());
  return all;
}

Bytes decompress(const Bytes& in, size_t capacity = 0x8000) {
  Bytes out(capacity);
  out.resize(decompressDwgLz77(in.data(), in.size(), out.data(), out.size()));
  return out;
}

// 0x4001 literals: 0x0F, 64 zero bytes of 0xFF each, 0x2F, and the 3 every run adds.
Bytes longLiteralRun() {
  Bytes run(65, 0x00);  // the opcode byte, then 64 zero bytes
  run.push_back(0x2F);
  for (int i = 0; i < 0x4001; ++i) run.push_back(uint8_t('A' + i % 26));
  return run;
}

struct Case {
  const char* name;
  Bytes stream;
  Bytes expected;
};

TEST(DwgLz77, DecodesEveryOpcodeForm) {
  const Bytes longRun = longLiteralRun();
  const Bytes runText(longRun.begin() + 66, longRun.end());
  const std::vector<Case> cases = {
      {"short literal run", concat({{0x02}, text("abcde"), {0x11}}), text("abcde")},
      {"extended literal run", concat({{0x00, 0x01}, text("0123456789abcdefghi"), {0x11}}), text("0123456789abcdefghi")},
      {"no first literals", {0x11}, {}},
      {"end without closing opcode", concat({{0x01}, text("abcd")}), text("abcd")},
      // 0x40-0xFF: count (op >> 4) - 1, offset from the second byte and bits 2-3, literals in bits 0-1.
      {"one-byte-offset reference", concat({{0x01}, text("abcd"), {0x4D, 0x00}, text("x"), {0x11}}), text("abcdabcx")},
      // Literal bits zero: a literal length follows; a byte of 0x10 or more is the next opcode.
      {"reference then literal length", concat({{0x01}, text("abcd"), {0x4C, 0x00, 0x02}, text("vwxyz"), {0x11}}),
       text("abcdabcvwxyz")},
      {"overlapping reference", concat({{0x01}, text("abcd"), {0x94, 0x00, 0x11}}), text("abcdcdcdcdcd")},
      // 0x21-0x3F: count op - 0x1E, then a two-byte offset with the literal count in its low bits.
      {"two-byte-offset reference", concat({{0x01}, text("abcd"), {0x22, 0x0E, 0x00}, text("yz"), {0x11}}),
       text("abcdabcdyz")},
      // 0x20: a long count plus 0x21.
      {"long count", concat({{0x01}, text("abcd"), {0x20, 0x05, 0x00, 0x00, 0x11}}),
       concat({text("abcd"), Bytes(0x26, 'd')})},
      {"extended long count", concat({{0x01}, text("abcd"), {0x20, 0x00, 0x00, 0x02, 0x00, 0x00, 0x01}, text("wxyz"), {0x11}}),
       concat({text("abcd"), Bytes(0xFF + 0xFF + 2 + 0x21, 'd'), text("wxyz")})},
      // 0x12-0x1F and 0x10 reach 0x4000 bytes and more back.
      {"far reference", concat({longRun, {0x13, 0x01, 0x00}, text("!"), {0x11}}),
       concat({runText, Bytes(runText.begin() + 1, runText.begin() + 6), text("!")})},
      {"far long reference", concat({longRun, {0x10, 0x03, 0x00, 0x00, 0x11}}),
       concat({runText, Bytes(runText.begin() + 1, runText.begin() + 13)})},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(decompress(c.stream), c.expected);
  }
}

TEST(DwgLz77, RejectsStreamsThatLeaveTheirBounds) {
  const std::vector<Case> cases = {
      {"reference before the start", concat({{0x01}, text("abcd"), {0x4C, 0x01, 0x11}}), {}},
      {"far reference in a short page", concat({{0x01}, text("abcd"), {0x12, 0x00, 0x00, 0x11}}), {}},
      {"reference with nothing written", {0x4C, 0x00, 0x11}, {}},
      {"literal run past the input", concat({{0x05}, text("abc")}), {}},
      {"extended literal run cut off", {0x00, 0x00, 0x00}, {}},
      {"opcode cut off", concat({{0x01}, text("abcd"), {0x4C}}), {}},
      {"two-byte offset cut off", concat({{0x01}, text("abcd"), {0x22, 0x0E}}), {}},
      {"unused opcode", concat({{0x01}, text("abcd"), {0x05}}), {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_THROW(decompress(c.stream), DwgFormatError);
  }
}

TEST(DwgLz77, NeverWritesPastItsCapacity) {
  const std::vector<Case> cases = {
      {"literal run", concat({{0x05}, text("abcdefgh"), {0x11}}), {}},
      {"reference", concat({{0x01}, text("abcd"), {0x74, 0x00, 0x11}}), {}},
      {"literals after a reference", concat({{0x01}, text("abcd"), {0x23, 0x0E, 0x00}, text("yz"), {0x11}}), {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Bytes out(16, 0xEE);
    EXPECT_THROW(decompressDwgLz77(c.stream.data(), c.stream.size(), out.data(), 6), DwgFormatError);
    for (size_t i = 6; i < out.size(); ++i) EXPECT_EQ(out[i], 0xEE) << i;
  }
}

}  // namespace

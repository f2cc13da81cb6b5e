// The bit-level pieces every release shares and the ones later releases add: bit-coded
// numbers, handle references, UTF-16 and code page strings, and the way an object's bits split
// into values, strings and handles (R2000: a bit size; R2007: strings found back from the
// handles; R2010: handle bits in the object's size prefix and a new type encoding).
// Objects are built here bit by bit, so these run without any file of those releases.
#include <gtest/gtest.h>

#include <cstring>

#include "kit/dwg/DwgBitReader.h"
#include "kit/dwg/DwgCrc.h"
#include "kit/dwg/DwgLineweight.h"
#include "kit/dwg/DwgObjectFrame.h"
#include "kit/dwg/DwgSectionFraming.h"
#include "kit/dwg/DwgStreams.h"
#include "kit/dxf/DxfTextDecoder.h"

namespace {

// Writes bits high bit first, the way DWG files are read.
class BitWriter {
public:
  void bits(uint64_t value, unsigned count) {
    for (unsigned i = count; i-- > 0;) bit((value >> i) & 1);
  }
  void bit(bool b) {
    if (pos_ % 8 == 0) bytes_.push_back(0);
    if (b) bytes_.back() |= uint8_t(0x80 >> (pos_ % 8));
    ++pos_;
  }
  void RC(uint8_t v) { bits(v, 8); }
  void RS(uint16_t v) { RC(uint8_t(v)), RC(uint8_t(v >> 8)); }
  void RL(uint32_t v) { RS(uint16_t(v)), RS(uint16_t(v >> 16)); }
  void RD(double d) {
    uint64_t raw;
    std::memcpy(&raw, &d, 8);
    for (int i = 0; i < 8; ++i) RC(uint8_t(raw >> (8 * i)));
  }
  void BS(int16_t v) { bits(0, 2), RS(uint16_t(v)); }
  void BL(int32_t v) { bits(0, 2), RL(uint32_t(v)); }
  void BD(double d) { bits(0, 2), RD(d); }
  void H(uint8_t code, uint64_t value) {
    int n = 0;
    for (uint64_t v = value; v; v >>= 8) ++n;
    bits(code, 4), bits(uint64_t(n), 4);
    for (int i = n - 1; i >= 0; --i) RC(uint8_t(value >> (8 * i)));
  }
  void TU(const std::u16string& s) {
    BS(int16_t(s.size()));
    for (char16_t c : s) RS(uint16_t(c));
  }
  void T(const std::string& s) {
    BS(int16_t(s.size()));
    for (char c : s) RC(uint8_t(c));
  }
  size_t position() const { return pos_; }
  void padTo(size_t bit) {
    while (pos_ < bit) this->bit(false);
  }
  const std::vector<uint8_t>& bytes() const { return bytes_; }

private:
  std::vector<uint8_t> bytes_;
  size_t pos_ = 0;
};

DwgBitReader readerOf(const std::vector<uint8_t>& bytes) { return DwgBitReader(bytes.data(), bytes.size()); }

}  // namespace

TEST(DwgBitStream, CompactNumbersDecode) {
  // 257, 0, 256, 15 and 0 as bit shorts: 00 and a raw short, 10, 11, 01 and a byte, 10.
  const std::vector<uint8_t> example = {0x00, 0x40, 0x6D, 0x0F, 0x80};
  DwgBitReader r = readerOf(example);
  for (int16_t expected : {257, 0, 256, 15, 0}) EXPECT_EQ(r.BS(), expected);
  EXPECT_FALSE(r.overrun());

  BitWriter w;
  w.bits(1, 2), w.RC(200);             // BL from one byte
  w.bits(2, 2);                        // BL zero
  w.bits(1, 2);                        // BD one
  w.bits(2, 2);                        // BD zero
  w.bits(0b010, 3), w.RC(0x34), w.RC(0x12);  // BLL: a length of two bytes in three plain bits
  w.bits(1, 2), w.RC(0x20);            // object type: 0x1F0 + 0x20
  w.bits(2, 2), w.RS(0x0321);          // object type as a raw short
  r = readerOf(w.bytes());
  EXPECT_EQ(r.BL(), 200);
  EXPECT_EQ(r.BL(), 0);
  EXPECT_EQ(r.BD(), 1.0);
  EXPECT_EQ(r.BD(), 0.0);
  EXPECT_EQ(r.BLL(), 0x1234u);
  EXPECT_EQ(r.OT(), 0x210);
  EXPECT_EQ(r.OT(), 0x321);
  EXPECT_FALSE(r.overrun());
}

TEST(DwgBitStream, ModularNumbersAndDefaults) {
  struct Case {
    std::vector<uint8_t> bytes;
    int64_t mc;
  };
  const Case cases[] = {
      {{0x05}, 5},
      {{0x45}, -5},
      {{0x82, 0x24}, 4610},      // 2 + (0x24 << 7)
      {{0xE9, 0x97, 0xE6, 0x35}, 112823273},
      {{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x3F}, INT64_MAX},  // damage stays in range
  };
  for (const Case& c : cases) EXPECT_EQ(readerOf(c.bytes).MC(), c.mc) << c.mc;
  EXPECT_EQ(readerOf({0x31, 0xF4, 0x8D, 0x00}).MS(), 0x8DU << 15 | 0x7431);

  BitWriter w;
  w.bits(0, 2);                        // DD: the default
  w.bits(1, 2), w.RL(0x11223344);      // DD: the low four bytes replaced
  w.bits(3, 2), w.RD(-2.5);            // DD: a whole double
  DwgBitReader r = readerOf(w.bytes());
  EXPECT_EQ(r.DD(7.0), 7.0);
  double patched = r.DD(1.0);
  uint64_t raw;
  std::memcpy(&raw, &patched, 8);
  EXPECT_EQ(raw, 0x3FF0000011223344ULL);
  EXPECT_EQ(r.DD(1.0), -2.5);
}

TEST(DwgBitStream, ReadsPastTheEndYieldZeroAndAreNoted) {
  const std::vector<uint8_t> bytes = {0xFF};
  DwgBitReader r = readerOf(bytes);
  (void)r.RL();  // the byte there, then nothing
  EXPECT_TRUE(r.overrun());
  EXPECT_EQ(r.BD(), 0.0);
  std::string out;
  r.rawBytes(1000, out);
  EXPECT_TRUE(out.empty());
}

TEST(DwgBitStream, HandleReferencesResolveAgainstTheObject) {
  struct Case {
    uint8_t code;
    uint64_t value;
    uint64_t expected;
  };
  const Case cases[] = {
      {0x2, 0x1F, 0x1F}, {0x5, 0xABCDEF, 0xABCDEF},  // owner and pointer references: absolute
      {0x6, 0, 0x101}, {0x8, 0, 0xFF},                // the next and the previous handle
      {0xA, 0x10, 0x110}, {0xC, 0x10, 0xF0},          // forward and backward offsets
  };
  for (const Case& c : cases) {
    BitWriter w;
    w.H(c.code, c.value);
    DwgStreams s(kDwgR2000, nullptr);
    s.data = readerOf(w.bytes());
    s.setReferenceHandle(0x100);
    EXPECT_EQ(s.handleFrom(s.data).value(), c.expected) << int(c.code);
  }
}

TEST(DwgBitStream, TextsByRelease) {
  // UTF-16 with a surrogate pair and a lone surrogate, which becomes U+FFFD.
  std::string out;
  const uint8_t units[] = {0x41, 0x00, 0x3D, 0xD8, 0x00, 0xDE, 0x00, 0xD8, 0x42, 0x00};
  appendUtf16AsUtf8(units, 5, out);
  EXPECT_EQ(out, "A\xF0\x9F\x98\x80\xEF\xBF\xBD" "B");

  // Before R2007, code page bytes decoded once; R2007 and later, UTF-16.
  DxfTextDecoder decoder;
  decoder.setCodePage("ANSI_1252");
  BitWriter old;
  old.T(std::string("108\xB0", 4));
  DwgStreams r2000(kDwgR2000, &decoder);
  r2000.data = readerOf(old.bytes());
  EXPECT_EQ(r2000.text(), "108\xC2\xB0");

  BitWriter unicode;
  unicode.TU(u"Gr\u00FC\u00DFe");
  DwgStreams r2007(kDwgR2007, &decoder);
  r2007.data = readerOf(unicode.bytes());
  EXPECT_EQ(r2007.text(), "Gr\xC3\xBC\xC3\x9F" "e");
}

namespace {

// An object of the given release: size prefix, type, handle, no extended data, a bit double,
// one text, then a handle reference; returns the bytes and the handle stream's start.
std::vector<uint8_t> objectBytes(int version, uint16_t type) {
  BitWriter body;
  if (version >= kDwgR2010) body.bits(2, 2), body.RS(type);
  else body.BS(int16_t(type));
  size_t bitSizeAt = body.position();
  if (version >= kDwgR2000 && version < kDwgR2010) body.RL(0);  // patched below
  body.H(0, 0x2A);   // the object's handle
  body.BS(0);        // no extended data
  body.BD(12.5);
  BitWriter strings;
  strings.TU(u"\u00C5land");
  if (version < kDwgR2007) body.T("Aland");
  size_t stringBits = 0;
  if (version >= kDwgR2007) {
    // Strings, then their size in bits and the flag that they are present, end the values.
    for (size_t i = 0; i < strings.position(); ++i) body.bit((strings.bytes()[i / 8] >> (7 - i % 8)) & 1);
    stringBits = strings.position();
    body.RS(uint16_t(stringBits));
    body.bit(true);
  }
  size_t handleStart = body.position();
  body.H(0x4, 0x1F);
  std::vector<uint8_t> data = body.bytes();
  if (version >= kDwgR2000 && version < kDwgR2010) {
    // Write the bit size into its place.
    BitWriter patched;
    for (size_t i = 0; i < body.position(); ++i) {
      bool b = (data[i / 8] >> (7 - i % 8)) & 1;
      if (i >= bitSizeAt && i < bitSizeAt + 32) b = (uint32_t(handleStart) >> (8 * ((i - bitSizeAt) / 8)) >> (7 - (i - bitSizeAt) % 8)) & 1;
      patched.bit(b);
    }
    data = patched.bytes();
  }
  BitWriter prefix;
  prefix.RS(uint16_t(data.size()));  // a modular short below 0x8000 is a plain short
  if (version >= kDwgR2010) prefix.RC(uint8_t(data.size() * 8 - handleStart));  // handle bits, one modular char
  std::vector<uint8_t> out = prefix.bytes();
  out.insert(out.end(), data.begin(), data.end());
  uint16_t crc = dwgCrc16(0xC0C1, out.data(), out.size());
  out.push_back(uint8_t(crc));
  out.push_back(uint8_t(crc >> 8));
  return out;
}

}  // namespace

TEST(DwgBitStream, ObjectsSplitIntoValuesStringsAndHandlesByRelease) {
  for (int version : {int(kDwgR2000), int(kDwgR2007), int(kDwgR2010), int(kDwgR2013), int(kDwgR2018)}) {
    SCOPED_TRACE(version);
    const std::vector<uint8_t> bytes = objectBytes(version, 0x1F5);
    DxfTextDecoder decoder;
    DwgStreams s(version, &decoder);
    DwgObjectFrame frame;
    bool crcOk = false;
    std::string_view view(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    ASSERT_EQ(openDwgObject({view, 0}, s, frame, crcOk), DwgFrameResult::kOk);
    EXPECT_TRUE(crcOk);
    EXPECT_EQ(frame.type, 0x1F5);
    frame.handle = s.handleFrom(s.data);
    EXPECT_EQ(frame.handle.value(), 0x2Au);
    EXPECT_EQ(s.data.BS(), 0);
    EXPECT_EQ(s.data.BD(), 12.5);
    EXPECT_EQ(s.text(), version >= kDwgR2007 ? "\xC3\x85land" : "Aland");
    s.setReferenceHandle(0x2A);
    EXPECT_EQ(s.handle().value(), 0x1Fu);
    EXPECT_FALSE(s.overrun());
  }
}

TEST(DwgBitStream, ObjectsOutsideTheirSectionAreRefused) {
  std::vector<uint8_t> bytes = objectBytes(kDwgR2000, 19);
  DwgStreams s(kDwgR2000, nullptr);
  DwgObjectFrame frame;
  bool crcOk = true;
  std::string_view view(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  EXPECT_EQ(openDwgObject({view, bytes.size()}, s, frame, crcOk), DwgFrameResult::kOutside);
  EXPECT_EQ(openDwgObject({view.substr(0, 6), 0}, s, frame, crcOk), DwgFrameResult::kOutside);
  bytes[3] ^= 0x40;  // damage inside the object: read, but its check sum fails
  view = std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  EXPECT_EQ(openDwgObject({view, 0}, s, frame, crcOk), DwgFrameResult::kOk);
  EXPECT_FALSE(crcOk);
}

namespace {

// Wraps values and handles into an object of `version` (R2010 and later: handle bits in the
// size prefix; R2000 and R2007: a bit size after the type), strings empty.
std::vector<uint8_t> wrapObject(int version, uint16_t type, const BitWriter& values, const BitWriter& handles) {
  BitWriter body;
  if (version >= kDwgR2010) body.bits(2, 2), body.RS(type);
  else body.BS(int16_t(type));
  size_t valueBits = values.position() + (version >= kDwgR2007 ? 1 : 0);
  size_t handleStart = body.position() + (version < kDwgR2010 ? 32 : 0) + valueBits;
  if (version < kDwgR2010) body.RL(uint32_t(handleStart));
  for (size_t i = 0; i < values.position(); ++i) body.bit((values.bytes()[i / 8] >> (7 - i % 8)) & 1);
  if (version >= kDwgR2007) body.bit(false);  // no strings
  for (size_t i = 0; i < handles.position(); ++i) body.bit((handles.bytes()[i / 8] >> (7 - i % 8)) & 1);
  BitWriter prefix;
  prefix.RS(uint16_t(body.bytes().size()));
  if (version >= kDwgR2010) prefix.RC(uint8_t(body.bytes().size() * 8 - handleStart));
  std::vector<uint8_t> out = prefix.bytes();
  out.insert(out.end(), body.bytes().begin(), body.bytes().end());
  out.push_back(0), out.push_back(0);  // check sum, not checked here
  return out;
}

}  // namespace

// An entity's common data, release by release: true colour and transparency from R2004, the
// material from R2007, visual styles from R2010 and the data store flag from R2013, with their
// handles in the handle stream.
TEST(DwgBitStream, EntityCommonDataByRelease) {
  for (int version : {int(kDwgR2004), int(kDwgR2007), int(kDwgR2010), int(kDwgR2013), int(kDwgR2018)}) {
    SCOPED_TRACE(version);
    BitWriter v;
    v.H(0, 0x30);                 // the entity's handle
    v.BS(0);                      // no extended data
    v.bit(false);                 // no graphics
    v.bits(0, 2);                 // owner given
    v.BL(1);                      // one reactor
    v.bit(false);                 // an extension dictionary follows
    if (version >= kDwgR2013) v.bit(false);
    v.BS(int16_t(0x8000 | 0x2000));  // true colour and transparency
    v.BL(int32_t(0xC2FF8000));
    v.BL(0x02000080);
    v.BD(2.0);                    // linetype scale
    v.bits(3, 2);                 // linetype by handle
    v.bits(0, 2);                 // plot style by layer
    if (version >= kDwgR2007) v.bits(3, 2), v.RC(0);  // material by handle, shadows
    if (version >= kDwgR2010) v.bit(true), v.bit(false), v.bit(false);  // full visual style
    v.BS(1);                      // invisible
    v.RC(5);                      // lineweight index
    BitWriter h;
    h.H(0x4, 0x1F);               // owner
    h.H(0x4, 0xAA);               // reactor
    h.H(0x3, 0xBB);               // extension dictionary
    h.H(0x5, 0x10);               // layer
    h.H(0x5, 0x14);               // linetype
    if (version >= kDwgR2007) h.H(0x5, 0x50);  // material
    if (version >= kDwgR2010) h.H(0x5, 0x60);  // visual style
    const std::vector<uint8_t> bytes = wrapObject(version, 19, v, h);

    DwgStreams s(version, nullptr);
    DwgObjectFrame frame;
    bool crcOk = false;
    std::string_view view(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    ASSERT_EQ(openDwgObject({view, 0}, s, frame, crcOk), DwgFrameResult::kOk);
    readDwgObjectCommon(s, frame, true);
    EXPECT_FALSE(s.overrun());
    EXPECT_EQ(frame.handle.value(), 0x30u);
    EXPECT_TRUE(frame.color.isByColor());
    EXPECT_EQ(frame.color.red(), 0xFF);
    EXPECT_EQ(frame.transparency.alpha(), 0x80);
    EXPECT_EQ(frame.linetypeScale, 2.0);
    EXPECT_EQ(frame.invisible, 1);
    EXPECT_EQ(frame.lineweight, dwgLineweightFromIndex(5));
    EXPECT_EQ(frame.owner.value(), 0x1Fu);
    ASSERT_EQ(frame.reactors.size(), 1u);
    EXPECT_EQ(frame.reactors[0].value(), 0xAAu);
    EXPECT_EQ(frame.xdictionary.value(), 0xBBu);
    EXPECT_EQ(frame.layer.value(), 0x10u);
    EXPECT_EQ(frame.linetype.value(), 0x14u);
    EXPECT_EQ(frame.material.value(), version >= kDwgR2007 ? 0x50u : 0u);
    EXPECT_EQ(frame.visualStyle.value(), version >= kDwgR2010 ? 0x60u : 0u);
  }
}

// A colour-book colour (0x4000) has no RGB among the values, only a reference to its DBCOLOR
// object before the layer's; a shadow flag of 3 adds a reference after the material's. Both
// shift every later reference when missed (the plot style here, an insert's block elsewhere).
TEST(DwgBitStream, ColourBookAndShadowReferences) {
  for (int version : {int(kDwgR2007), int(kDwgR2018)}) {
    SCOPED_TRACE(version);
    BitWriter v;
    v.H(0, 0x677);
    v.BS(0);                              // no extended data
    v.bit(false);                         // no graphics
    v.bits(2, 2);                         // model space: no owner
    v.BL(0);                              // no reactors
    v.bit(true);                          // no extension dictionary
    if (version >= kDwgR2013) v.bit(false);
    v.BS(int16_t(0xC000 | 0x2000 | 42));  // book colour 42, with transparency
    v.BL(0x02000080);
    v.BD(1.0);
    v.bits(0, 2);                         // linetype by layer
    v.bits(3, 2);                         // plot style by handle
    v.bits(0, 2), v.RC(3);                // material by layer, shadow settings by handle
    if (version >= kDwgR2010) v.bit(false), v.bit(false), v.bit(false);
    v.BS(0);
    v.RC(5);
    BitWriter h;
    h.H(0x5, 0x154);  // DBCOLOR
    h.H(0x5, 0x10A);  // layer
    h.H(0x5, 0x77);   // shadow
    h.H(0x5, 0xC52);  // plot style
    const std::vector<uint8_t> bytes = wrapObject(version, 19, v, h);

    DwgStreams s(version, nullptr);
    DwgObjectFrame frame;
    bool crcOk = false;
    std::string_view view(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    ASSERT_EQ(openDwgObject({view, 0}, s, frame, crcOk), DwgFrameResult::kOk);
    readDwgObjectCommon(s, frame, true);
    EXPECT_FALSE(s.overrun());
    EXPECT_TRUE(frame.colorFromBook);
    EXPECT_EQ(frame.color.colorIndex(), 42);
    EXPECT_EQ(frame.transparency.alpha(), 0x80);
    EXPECT_EQ(frame.lineweight, dwgLineweightFromIndex(5));
    EXPECT_EQ(frame.layer.value(), 0x10Au);
    EXPECT_EQ(frame.plotStyle.value(), 0xC52u);
    EXPECT_LT(s.handles.bitsLeft(), 8u);
  }
}

// From R2007 the header and classes sections begin with their size in bits: values, then the
// strings, then (header only) the handles, found the way objects find theirs.
TEST(DwgBitStream, SectionsFromR2007SplitTheirStreams) {
  BitWriter strings;
  strings.TU(u"ISO");
  BitWriter data;
  data.RL(0);  // the size in bits, written below
  data.BD(3.5);
  for (size_t i = 0; i < strings.position(); ++i) data.bit((strings.bytes()[i / 8] >> (7 - i % 8)) & 1);
  data.RS(uint16_t(strings.position()));
  data.bit(true);
  const size_t handleStart = data.position();
  data.H(0x5, 0x1F);
  std::vector<uint8_t> body = data.bytes();
  for (int i = 0; i < 4; ++i) body[size_t(i)] = uint8_t(handleStart >> (8 * i));  // RL at a byte boundary

  std::vector<uint8_t> section(kDwgHeaderSentinel, kDwgHeaderSentinel + 16);
  for (int i = 0; i < 4; ++i) section.push_back(uint8_t(body.size() >> (8 * i)));
  section.insert(section.end(), body.begin(), body.end());
  section.push_back(0), section.push_back(0);
  std::string_view view(reinterpret_cast<const char*>(section.data()), section.size());

  DwgStreams s(kDwgR2007, nullptr);
  DwgSectionFrame frame = openDwgSection(view, kDwgHeaderSentinel, s, 0);
  ASSERT_TRUE(frame.ok) << frame.problem;
  EXPECT_EQ(s.data.BD(), 3.5);
  EXPECT_EQ(s.text(), "ISO");
  EXPECT_EQ(s.handle().value(), 0x1Fu);
  EXPECT_FALSE(s.overrun());

  // The same bytes claimed by an R2000 section are values only.
  DwgStreams old(kDwgR2000, nullptr);
  frame = openDwgSection(view, kDwgHeaderSentinel, old, 0);
  ASSERT_TRUE(frame.ok);
  EXPECT_EQ(uint32_t(old.data.RL()), handleStart);
  EXPECT_EQ(frame.endBit, body.size() * 8);

  // A wrong sentinel or a size beyond the section is refused with the reason.
  section[0] ^= 0xFF;
  view = std::string_view(reinterpret_cast<const char*>(section.data()), section.size());
  EXPECT_FALSE(openDwgSection(view, kDwgHeaderSentinel, s, 0).ok);
  section[0] ^= 0xFF;
  section[16] = 0xFF, section[17] = 0xFF;
  view = std::string_view(reinterpret_cast<const char*>(section.data()), section.size());
  DwgSectionFrame tooLong = openDwgSection(view, kDwgHeaderSentinel, s, 0);
  EXPECT_FALSE(tooLong.ok);
  EXPECT_NE(tooLong.problem.find("claims"), std::string::npos);
}

// Raw bytes at every bit offset, in runs of every length up to several words, match the same
// bytes read eight bits at a time, and stop at the end bit.
TEST(DwgBitReader, RawBytesAtAnyBitOffsetMatchBytewiseReading) {
  std::vector<uint8_t> data(64);
  for (size_t i = 0; i < data.size(); ++i) data[i] = uint8_t(i * 37 + 11);
  for (size_t offset = 0; offset < 16; ++offset) {
    for (size_t count = 0; count <= 40; ++count) {
      DwgBitReader raw(data.data(), data.size()), bytewise(data.data(), data.size());
      raw.seek(offset);
      bytewise.seek(offset);
      std::string got, expected;
      raw.rawBytes(count, got);
      for (size_t i = 0; i < count; ++i) expected += char(bytewise.bits(8));
      ASSERT_EQ(got, expected) << offset << " " << count;
      EXPECT_EQ(raw.position(), bytewise.position());
    }
  }
  DwgBitReader cut(data.data(), data.size());
  cut.setEnd(100);
  cut.seek(3);
  std::string got;
  cut.rawBytes(20, got);
  EXPECT_EQ(got.size(), 12u);  // (100 - 3) / 8 whole bytes
  EXPECT_TRUE(cut.overrun());
}

// The object check sum (CRC-16, polynomial 0xA001 reflected) over every length, taken four
// bytes at a time and byte by byte, with the standard check value.
TEST(DwgCrc, SixteenBitCheckSumMatchesTheBytewiseDefinition) {
  const uint8_t check[] = {'1', '2', '3', '4', '5', '6', '7', '8', '9'};
  EXPECT_EQ(dwgCrc16(0, check, sizeof check), 0xBB3D);
  std::vector<uint8_t> data(40);
  for (size_t i = 0; i < data.size(); ++i) data[i] = uint8_t(i * 91 + 7);
  for (size_t size = 0; size <= data.size(); ++size) {
    uint16_t expected = 0xC0C1;
    for (size_t i = 0; i < size; ++i) {
      expected ^= data[i];
      for (int k = 0; k < 8; ++k) expected = (expected & 1) ? uint16_t((expected >> 1) ^ 0xA001) : uint16_t(expected >> 1);
    }
    EXPECT_EQ(dwgCrc16(0xC0C1, data.data(), size), expected) << size;
  }
}

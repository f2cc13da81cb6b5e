// Reading the bit-coded values DWG files are made of: single bits, two-bit prefixed shorts,
// longs and doubles, raw little-endian values that need not sit on a byte boundary, modular
// chars and shorts, and handle references. Bits run from the high bit of each byte down.
//
// A read past the end never touches memory outside the buffer: it yields zero, leaves the
// position at the end and sets overrun(), so that a caller checks once per object instead of
// once per value.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "kit/base/Geometry.h"

// A handle reference as stored: the 4-bit code (ownership kind or offset rule), and the handle
// or offset value.
struct DwgHandleRef {
  uint8_t code = 0;
  uint64_t value = 0;
};

class DwgBitReader {
public:
  DwgBitReader() = default;
  DwgBitReader(const uint8_t* data, size_t sizeBytes) : data_(data), bufferBytes_(sizeBytes), endBit_(sizeBytes * 8) {}

  // Position and bounds, in bits from the start of the buffer.
  size_t position() const { return pos_; }
  size_t endBit() const { return endBit_; }
  size_t bitsLeft() const { return endBit_ - pos_; }
  void seek(size_t bit) {
    if (bit > endBit_) {
      overrun_ = true;
      bit = endBit_;
    }
    pos_ = bit;
  }
  // Lowers the end (never raises it past the buffer): reads stop there.
  void setEnd(size_t bit) {
    if (bit < endBit_) endBit_ = bit;
    if (pos_ > endBit_) pos_ = endBit_;
  }
  void alignToByte() { seek((pos_ + 7) & ~size_t(7)); }
  bool overrun() const { return overrun_; }
  void clearOverrun() { overrun_ = false; }
  const uint8_t* data() const { return data_; }

  // Up to 57 bits as an unsigned number, first bit highest.
  uint64_t bits(unsigned count);
  bool B() { return bits(1) != 0; }
  uint8_t BB() { return uint8_t(bits(2)); }
  uint8_t B3();  // 1 to 3 bits, stopping at the first 0
  int16_t BS();
  int32_t BL();
  uint64_t BLL();
  double BD();
  uint8_t RC() { return uint8_t(bits(8)); }
  int16_t RS();
  int32_t RL();
  uint64_t RLL();
  double RD();
  // Modular char: seven bits per byte, high bit continues; the last byte's 0x40 negates.
  int64_t MC();
  uint64_t UMC();  // the same without the sign bit
  uint32_t MS();   // modular short: fifteen bits per short
  DwgHandleRef H();
  // Bit double with a default: two bits say which bytes of the default the data replaces.
  double DD(double fallback);
  // 2010 object type: two bits, then one byte (plus 0x1F0) or a raw short.
  uint16_t OT();

  OdGePoint2d point2RD() { return {RD(), RD()}; }
  OdGePoint2d point2BD() { return {BD(), BD()}; }
  OdGePoint3d point3RD() { return {RD(), RD(), RD()}; }
  OdGePoint3d point3BD() { return {BD(), BD(), BD()}; }
  OdGeVector3d vector3BD() { return {BD(), BD(), BD()}; }
  OdGePoint2d point2DD(const OdGePoint2d& fallback) {
    double x = DD(fallback.x);
    return {x, DD(fallback.y)};
  }
  OdGePoint3d point3DD(const OdGePoint3d& fallback) {
    double x = DD(fallback.x), y = DD(fallback.y);
    return {x, y, DD(fallback.z)};
  }

  // Appends `count` raw bytes (bounded by what is left) to `out`.
  void rawBytes(size_t count, std::string& out);
  // Skips `count` bits.
  void skip(size_t count) { seek(count > endBit_ - pos_ ? endBit_ + 1 : pos_ + count); }

private:
  uint64_t slowBits(unsigned count);

  const uint8_t* data_ = nullptr;
  size_t bufferBytes_ = 0;
  size_t pos_ = 0;
  size_t endBit_ = 0;
  bool overrun_ = false;
};

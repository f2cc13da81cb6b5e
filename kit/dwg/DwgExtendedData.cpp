// Extended data: per application a run of items, each a one-byte code (the DXF group code minus
// 1000) and a value in raw form. Strings are code page bytes before R2007, UTF-16 after.
#include "kit/dwg/DwgExtendedData.h"

#include <cstring>

#include "kit/dwg/DwgStreams.h"
#include "kit/dxf/DxfTextDecoder.h"

namespace {

class ItemReader {
public:
  ItemReader(std::string_view bytes) : p_(reinterpret_cast<const uint8_t*>(bytes.data())), end_(p_ + bytes.size()) {}

  bool has(size_t n) const { return size_t(end_ - p_) >= n; }
  uint8_t u8() { return *p_++; }
  uint16_t u16() {
    uint16_t v = uint16_t(p_[0] | (p_[1] << 8));
    p_ += 2;
    return v;
  }
  uint32_t u32() {
    uint32_t v;
    std::memcpy(&v, p_, 4);
    p_ += 4;
    return v;
  }
  double f64() {
    double v;
    std::memcpy(&v, p_, 8);
    p_ += 8;
    return v;
  }
  const uint8_t* take(size_t n) {
    const uint8_t* at = p_;
    p_ += n;
    return at;
  }

private:
  const uint8_t* p_;
  const uint8_t* end_;
};

std::string hexOf(const uint8_t* bytes, size_t n) {
  static const char kHex[] = "0123456789ABCDEF";
  std::string s;
  s.reserve(n * 2);
  for (size_t i = 0; i < n; ++i) {
    s += kHex[bytes[i] >> 4];
    s += kHex[bytes[i] & 15];
  }
  return s;
}

// Handles in extended data are eight bytes, most significant first.
std::string handleText(const uint8_t* bytes) {
  uint64_t v = 0;
  for (int i = 0; i < 8; ++i) v = (v << 8) | bytes[i];
  return OdDbHandle(v).toHex();
}

// Reads one item; false when the bytes end inside it or the code is unknown.
bool readItem(ItemReader& r, int version, const DxfTextDecoder& decoder, TaggedValues& out) {
  if (!r.has(1)) return false;
  int code = r.u8();
  TaggedValue v;
  v.code = int16_t(1000 + code);
  v.kind = groupValueKind(v.code);
  switch (code) {
    case 0: {
      if (version >= kDwgR2007) {
        if (!r.has(2)) return false;
        size_t n = r.u16();
        if (!r.has(n * 2)) return false;
        appendUtf16AsUtf8(r.take(n * 2), n, v.text);
      } else {
        if (!r.has(3)) return false;
        size_t n = r.u8();
        r.u16();  // code page of the string
        if (!r.has(n)) return false;
        const uint8_t* raw = r.take(n);
        decoder.decodeInto(std::string_view(reinterpret_cast<const char*>(raw), n), v.text);
      }
      v.kind = GroupValueKind::kString;
      break;
    }
    case 2:
      if (!r.has(1)) return false;
      v.text.assign(1, r.u8() ? '}' : '{');
      v.kind = GroupValueKind::kString;
      break;
    case 3:
    case 5:
      if (!r.has(8)) return false;
      v.text = handleText(r.take(8));
      v.kind = GroupValueKind::kHandle;
      break;
    case 4: {
      if (!r.has(1)) return false;
      size_t n = r.u8();
      if (!r.has(n)) return false;
      v.text = hexOf(r.take(n), n);
      v.kind = GroupValueKind::kBinary;
      break;
    }
    case 10: case 11: case 12: case 13: {
      if (!r.has(24)) return false;
      double x = r.f64(), y = r.f64(), z = r.f64();
      out.push_back(TaggedValue::ofReal(1000 + code, x));
      // 1010 is followed by 1020 and 1030, 1011 by 1021 and 1031, ...
      out.push_back(TaggedValue::ofReal(1010 + code, y));
      out.push_back(TaggedValue::ofReal(1020 + code, z));
      return true;
    }
    case 40: case 41: case 42:
      if (!r.has(8)) return false;
      v.real = r.f64();
      v.kind = GroupValueKind::kReal;
      break;
    case 70:
      if (!r.has(2)) return false;
      v.integer = int16_t(r.u16());
      v.kind = GroupValueKind::kInt16;
      break;
    case 71:
      if (!r.has(4)) return false;
      v.integer = int32_t(r.u32());
      v.kind = GroupValueKind::kInt32;
      break;
    default:
      return false;
  }
  out.push_back(std::move(v));
  return true;
}

}  // namespace

bool decodeDwgExtendedData(std::string_view bytes, int version, const DxfTextDecoder& decoder, TaggedValues& out) {
  ItemReader r(bytes);
  while (r.has(1)) {
    if (!readItem(r, version, decoder, out)) return false;
  }
  return true;
}

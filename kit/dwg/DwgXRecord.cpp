// XRECORD: its data is a run of DXF group codes, each followed by its value in raw form.
#include <cstring>

#include "kit/dwg/DwgLoader.h"
#include "kit/dwg/DwgObjectReaders.h"

namespace {

class RawValues {
public:
  explicit RawValues(const std::string& bytes) : p_(reinterpret_cast<const uint8_t*>(bytes.data())), left_(bytes.size()) {}

  bool has(size_t n) const { return left_ >= n; }
  uint64_t le(size_t n) {
    uint64_t v = 0;
    for (size_t i = 0; i < n; ++i) v |= uint64_t(p_[i]) << (8 * i);
    advance(n);
    return v;
  }
  double real() {
    double v;
    std::memcpy(&v, p_, 8);
    advance(8);
    return v;
  }
  const uint8_t* take(size_t n) {
    const uint8_t* at = p_;
    advance(n);
    return at;
  }

private:
  void advance(size_t n) {
    p_ += n;
    left_ -= n;
  }
  const uint8_t* p_;
  size_t left_;
};

bool isPointCode(int code) { return (code >= 10 && code < 20) || (code >= 110 && code < 113) || (code >= 1010 && code < 1014); }

// Reads one group; false when the data ends inside it.
bool readGroup(RawValues& r, DwgObjectContext& c, TaggedValues& out) {
  int code = int16_t(r.le(2));
  GroupValueKind kind = groupValueKind(code);
  if (isPointCode(code)) {
    if (!r.has(24)) return false;
    double x = r.real(), y = r.real(), z = r.real();
    out.push_back(TaggedValue::ofReal(code, x));
    out.push_back(TaggedValue::ofReal(code + 10, y));
    out.push_back(TaggedValue::ofReal(code + 20, z));
    return true;
  }
  TaggedValue v;
  v.code = int16_t(code);
  v.kind = kind;
  switch (kind) {
    case GroupValueKind::kReal:
      if (!r.has(8)) return false;
      v.real = r.real();
      break;
    case GroupValueKind::kInt16:
      if (code >= 280 && code < 290) {  // 8-bit integers
        if (!r.has(1)) return false;
        v.integer = int8_t(r.le(1));
        break;
      }
      if (!r.has(2)) return false;
      v.integer = int16_t(r.le(2));
      break;
    case GroupValueKind::kInt32:
      if (!r.has(4)) return false;
      v.integer = int32_t(r.le(4));
      break;
    case GroupValueKind::kInt64:
      if (!r.has(8)) return false;
      v.integer = int64_t(r.le(8));
      break;
    case GroupValueKind::kBool:
      if (!r.has(1)) return false;
      v.integer = r.le(1);
      break;
    case GroupValueKind::kHandle:
      if (!r.has(8)) return false;
      v.text = OdDbHandle(r.le(8)).toHex();
      break;
    case GroupValueKind::kBinary: {
      if (!r.has(1)) return false;
      size_t n = r.le(1);
      if (!r.has(n)) return false;
      static const char kHex[] = "0123456789ABCDEF";
      v.text.resize(2 * n);
      char* out = v.text.data();
      for (const uint8_t* b = r.take(n), *end = b + n; b < end; ++b) {
        *out++ = kHex[*b >> 4];
        *out++ = kHex[*b & 15];
      }
      break;
    }
    case GroupValueKind::kString:
      if (c.atLeast(kDwgR2007)) {
        if (!r.has(2)) return false;
        size_t n = r.le(2);
        if (!r.has(n * 2)) return false;
        appendUtf16AsUtf8(r.take(n * 2), n, v.text);
      } else {
        if (!r.has(3)) return false;
        size_t n = r.le(2);
        r.le(1);  // code page
        if (!r.has(n)) return false;
        const uint8_t* raw = r.take(n);
        c.loader.decoder().decodeInto(std::string_view(reinterpret_cast<const char*>(raw), n), v.text);
      }
      break;
  }
  out.push_back(std::move(v));
  return true;
}

}  // namespace

void readDwgXRecord(DwgObjectContext& c) {
  auto* x = c.newObject<XRecordObject>();
  int32_t size = c.d.BL();
  if (size < 0 || size_t(size) > c.d.bitsLeft() / 8) {
    c.d.skip(c.d.bitsLeft() + 1);
    return;
  }
  std::string bytes;
  c.d.rawBytes(size_t(size), bytes);
  if (c.atLeast(kDwgR2000)) x->cloning = c.d.BS();
  RawValues r(bytes);
  while (r.has(2)) {
    if (!readGroup(r, c, x->values)) {
      c.loader.warn("xrecord " + x->handle.toHex() + ": data ends inside a value");
      break;
    }
  }
  // Drawings hold thousands of xrecords: their values should not keep the growth reserve.
  x->values.shrink_to_fit();
}

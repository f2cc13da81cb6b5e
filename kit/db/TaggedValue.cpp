#include "kit/db/TaggedValue.h"

#include <charconv>
#include <cstdint>
#include <cmath>
#include <cstdio>

GroupValueKind groupValueKind(int code) {
  using K = GroupValueKind;
  if (code == 5 || code == 105) return K::kHandle;
  if (code < 10) return K::kString;
  if (code < 60) return K::kReal;
  if (code < 80) return K::kInt16;
  if (code < 90) return K::kString;
  if (code < 100) return K::kInt32;
  if (code < 110) return K::kString;
  if (code < 150) return K::kReal;
  if (code < 160) return K::kString;
  if (code < 170) return K::kInt64;
  if (code < 180) return K::kInt16;
  if (code < 210) return K::kString;
  if (code < 240) return K::kReal;
  if (code < 270) return K::kString;
  if (code < 290) return K::kInt16;
  if (code < 300) return K::kBool;
  if (code < 310) return K::kString;
  if (code < 320) return K::kBinary;
  if (code < 370) return K::kHandle;
  if (code < 390) return K::kInt16;
  if (code < 400) return K::kHandle;
  if (code < 410) return K::kInt16;
  if (code < 420) return K::kString;
  if (code < 430) return K::kInt32;
  if (code < 440) return K::kString;
  if (code < 460) return K::kInt32;
  if (code < 470) return K::kReal;
  if (code < 480) return K::kString;
  if (code < 482) return K::kHandle;
  if (code < 1004) return K::kString;
  if (code == 1004) return K::kBinary;
  if (code == 1005) return K::kHandle;
  if (code < 1010) return K::kString;
  if (code < 1060) return K::kReal;
  if (code < 1071) return K::kInt16;
  if (code == 1071) return K::kInt32;
  return K::kString;
}

TaggedValue TaggedValue::ofString(int code, std::string value) {
  TaggedValue v;
  v.code = int16_t(code);
  v.kind = groupValueKind(code);
  if (isNumericKind(v.kind)) v.kind = GroupValueKind::kString;
  v.text = std::move(value);
  return v;
}

TaggedValue TaggedValue::ofReal(int code, double value) {
  TaggedValue v;
  v.code = int16_t(code);
  v.kind = GroupValueKind::kReal;
  v.real = value;
  return v;
}

TaggedValue TaggedValue::ofInteger(int code, int64_t value) {
  TaggedValue v;
  v.code = int16_t(code);
  v.kind = groupValueKind(code);
  if (!isNumericKind(v.kind) || v.kind == GroupValueKind::kReal) v.kind = GroupValueKind::kInt32;
  v.integer = value;
  return v;
}

double TaggedValue::asReal() const {
  if (kind == GroupValueKind::kReal) return real;
  if (isNumericKind(kind)) return double(integer);
  double d = 0.0;
  std::from_chars(text.data(), text.data() + text.size(), d);
  return d;
}

int64_t TaggedValue::asInteger() const {
  if (kind == GroupValueKind::kReal) {
    // Out-of-range reals (damaged files) clamp rather than overflow the conversion.
    if (!std::isfinite(real)) return 0;
    if (real >= 9.2e18) return INT64_MAX;
    if (real <= -9.2e18) return INT64_MIN;
    return int64_t(real);
  }
  if (isNumericKind(kind)) return integer;
  int64_t i = 0;
  std::from_chars(text.data(), text.data() + text.size(), i);
  return i;
}

std::string TaggedValue::asText() const {
  char buf[64];
  if (kind == GroupValueKind::kReal) {
    std::snprintf(buf, sizeof buf, "%.10g", real);
    return buf;
  }
  if (isNumericKind(kind)) {
    std::snprintf(buf, sizeof buf, "%lld", static_cast<long long>(integer));
    return buf;
  }
  return text;
}

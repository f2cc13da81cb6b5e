#include "kit/dxf/DxfTagWriter.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace {

// The reader's conversion from degrees, as written there.
double radiansOf(double degrees) { return degrees * (kPi / 180.0); }

double parse(const std::string& text) {
  double d = 0.0;
  std::from_chars(text.data(), text.data() + text.size(), d);
  return d;
}

std::string shortest(double value) {
  char buf[64];
  auto result = std::to_chars(buf, buf + sizeof buf, value);
  return std::string(buf, result.ptr);
}

std::string withDigits(double value, int digits) {
  char buf[64];
  auto result = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::general, digits);
  return std::string(buf, result.ptr);
}

// Reals carry a decimal point, as other programs expect ("5.0", not "5").
std::string asRealText(std::string text) {
  if (text.find_first_of(".eE") == std::string::npos) text += ".0";
  return text;
}

}  // namespace

void DxfTagWriter::code(int groupCode) {
  char buf[16];
  auto result = std::to_chars(buf, buf + sizeof buf, groupCode);
  size_t length = size_t(result.ptr - buf);
  if (length < 3) buffer_.append(3 - length, ' ');
  buffer_.append(buf, length);
  buffer_ += '\n';
}

void DxfTagWriter::raw(int groupCode, std::string_view value) {
  code(groupCode);
  buffer_.append(value.data(), value.size());
  endLine();
}

void DxfTagWriter::text(int groupCode, std::string_view utf8) {
  code(groupCode);
  size_t start = buffer_.size();
  encoder_.encodeInto(utf8, buffer_);
  if (std::memchr(buffer_.data() + start, '\n', buffer_.size() - start) ||
      std::memchr(buffer_.data() + start, '\r', buffer_.size() - start)) {
    scratch_.assign(buffer_, start, std::string::npos);
    buffer_.resize(start);
    for (char c : scratch_) {
      if (c == '\n') buffer_ += "^J";
      else if (c == '\r') buffer_ += "^M";
      else buffer_ += c;
    }
  }
  endLine();
}

void DxfTagWriter::integer(int groupCode, int64_t value) {
  code(groupCode);
  char buf[32];
  auto result = std::to_chars(buf, buf + sizeof buf, value);
  buffer_.append(buf, result.ptr);
  endLine();
}

std::string DxfTagWriter::formatReal(double value) const {
  // No DXF reader takes "nan" or "inf": a value that is not a number is written as zero.
  if (!std::isfinite(value)) return "0.0";
  if (precision_ > 0) return asRealText(withDigits(value, precision_));
  return asRealText(shortest(value));
}

std::string DxfTagWriter::formatAngle(double radians) const {
  if (!std::isfinite(radians)) return "0.0";
  double degrees = radians * (180.0 / kPi);
  if (precision_ > 0) return asRealText(withDigits(degrees, precision_));
  // The shortest text among nearby candidates that the reader turns back into these radians.
  for (int digits = 12; digits <= 17; ++digits) {
    std::string text = withDigits(degrees, digits);
    if (radiansOf(parse(text)) == radians) return asRealText(text);
  }
  double up = degrees, down = degrees;
  for (int step = 0; step < 8; ++step) {
    up = std::nextafter(up, INFINITY);
    if (radiansOf(up) == radians) return asRealText(shortest(up));
    down = std::nextafter(down, -INFINITY);
    if (radiansOf(down) == radians) return asRealText(shortest(down));
  }
  return asRealText(shortest(degrees));
}

void DxfTagWriter::real(int groupCode, double value) {
  code(groupCode);
  if (precision_ == 0 && std::isfinite(value)) {
    char buf[64];
    auto result = std::to_chars(buf, buf + sizeof buf, value);
    size_t length = size_t(result.ptr - buf);
    buffer_.append(buf, length);
    if (!std::memchr(buf, '.', length) && !std::memchr(buf, 'e', length)) buffer_ += ".0";
  } else {
    buffer_ += formatReal(value);
  }
  endLine();
}

void DxfTagWriter::angle(int groupCode, double radians) {
  code(groupCode);
  if (radians == 0.0 && !std::signbit(radians)) buffer_ += "0.0";
  else buffer_ += formatAngle(radians);
  endLine();
}

void DxfTagWriter::point(int groupCode, const OdGePoint3d& p) {
  real(groupCode, p.x);
  real(groupCode + 10, p.y);
  real(groupCode + 20, p.z);
}

void DxfTagWriter::point(int groupCode, const OdGeVector3d& v) {
  real(groupCode, v.x);
  real(groupCode + 10, v.y);
  real(groupCode + 20, v.z);
}

void DxfTagWriter::point(int groupCode, const OdGePoint2d& p) {
  real(groupCode, p.x);
  real(groupCode + 10, p.y);
}

void DxfTagWriter::point2(int groupCode, const OdGePoint3d& p) {
  real(groupCode, p.x);
  real(groupCode + 10, p.y);
}

void DxfTagWriter::tagged(const TaggedValue& v) {
  switch (v.kind) {
    case GroupValueKind::kReal: real(v.code, v.real); break;
    case GroupValueKind::kInt16:
    case GroupValueKind::kInt32:
    case GroupValueKind::kInt64:
    case GroupValueKind::kBool: integer(v.code, v.integer); break;
    case GroupValueKind::kHandle:
    case GroupValueKind::kBinary: raw(v.code, v.text); break;
    case GroupValueKind::kString: text(v.code, v.text); break;
  }
}

void DxfTagWriter::binary(int groupCode, const uint8_t* data, size_t size) {
  static const char kHex[] = "0123456789ABCDEF";
  for (size_t offset = 0; offset < size; offset += 127) {
    size_t n = std::min<size_t>(127, size - offset);
    code(groupCode);
    for (size_t i = 0; i < n; ++i) {
      buffer_ += kHex[data[offset + i] >> 4];
      buffer_ += kHex[data[offset + i] & 15];
    }
    endLine();
  }
}

bool DxfTagWriter::flush() {
  if (!file_ || buffer_.empty()) return !failed_;
  if (std::fwrite(buffer_.data(), 1, buffer_.size(), file_) != buffer_.size()) failed_ = true;
  buffer_.clear();
  return !failed_;
}

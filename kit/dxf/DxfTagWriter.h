// Writes ASCII DXF tags: the group code on one line, right-aligned to three places as AutoCAD
// writes it, and the value on the next. Numbers are written so that reading them back gives the
// same double (shortest round-trip form unless a fixed number of significant digits is asked
// for); angles, stored in radians, are written in degrees chosen so that the reader's conversion
// gives the stored radians back exactly. Text goes through the encoder of the file's version.
//
// Output is collected in a buffer and handed to the file in large blocks; without a file the
// whole output stays in the buffer (tests and in-memory writes).
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "kit/base/Geometry.h"
#include "kit/db/Handle.h"
#include "kit/db/TaggedValue.h"
#include "kit/dxf/DxfTextEncoder.h"

class DxfTagWriter {
public:
  explicit DxfTagWriter(std::FILE* file = nullptr) : file_(file) {}

  // 0: shortest round-trip form; otherwise that many significant digits.
  void setPrecision(int significantDigits) { precision_ = significantDigits; }
  DxfTextEncoder& encoder() { return encoder_; }

  // A value written as it is (markers, section and class names, hexadecimal).
  void raw(int code, std::string_view value);
  // Database text: encoded for the file; line breaks, which would split the tag, as ^J and ^M.
  void text(int code, std::string_view utf8);
  void integer(int code, int64_t value);
  void boolean(int code, bool value) { integer(code, value ? 1 : 0); }
  void real(int code, double value);
  void angle(int code, double radians);
  void handle(int code, OdDbHandle handle) { raw(code, handle.toHex()); }
  // x, y and z under code, code + 10 and code + 20.
  void point(int code, const OdGePoint3d& p);
  void point(int code, const OdGeVector3d& v);
  void point(int code, const OdGePoint2d& p);
  void point2(int code, const OdGePoint3d& p);  // x and y only
  // A kept group, written by its kind.
  void tagged(const TaggedValue& value);
  // Bytes as hexadecimal chunks of at most 127 bytes.
  void binary(int code, const uint8_t* data, size_t size);

  // Hands the buffer to the file; false when the file refused it.
  bool flush();
  bool failed() const { return failed_; }
  const std::string& buffer() const { return buffer_; }
  std::string takeBuffer() { return std::move(buffer_); }

  // The text of a real as this writer formats it.
  std::string formatReal(double value) const;
  std::string formatAngle(double radians) const;

private:
  void code(int groupCode);
  void endLine() {
    buffer_ += '\n';
    if (file_ && buffer_.size() >= kFlushSize) flush();
  }

  static constexpr size_t kFlushSize = size_t(1) << 20;
  std::FILE* file_;
  std::string buffer_;
  std::string scratch_;
  DxfTextEncoder encoder_;
  int precision_ = 0;
  bool failed_ = false;
};

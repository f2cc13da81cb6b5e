// Splits DXF bytes into group-code/value tags, ASCII or binary, without allocating: a tag's value
// is a view into the file's bytes (ASCII: the value line without its line end; binary: the string
// or chunk bytes, with numbers decoded into `real`/`integer`). Values are converted only when a
// reader asks for them (DxfTag::toReal and friends).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

struct DxfTag {
  int code = 0;
  std::string_view value;
  double real = 0.0;      // binary files: the decoded number
  int64_t integer = 0;    // binary files: the decoded integer
  bool binary = false;    // the value came from a binary file (numbers already decoded)
  bool numberIsReal = false;
  size_t line = 0;        // ASCII: line number of the group code; binary: byte offset

  // Conversions return false (and leave `out` alone) when the value is not of that type.
  bool toReal(double& out) const;
  bool toInteger(int64_t& out) const;
  // The value with surrounding blanks removed (ASCII) or as stored (binary).
  std::string_view trimmed() const;
  bool is(int c, std::string_view text) const { return code == c && trimmed() == text; }
};

class DxfTagReader {
public:
  enum class Error { kNone, kTruncated, kBadGroupCode };

  explicit DxfTagReader(std::string_view data);

  bool isBinary() const { return binary_; }
  // Advances to the next tag, skipping 999 comments. False at the end of the data or on an error.
  bool next(DxfTag& tag);
  // The tag just read is read again by the next call to next(). The tag object it was read into
  // must still exist then.
  void pushBack() { pushedBack_ = last_ != nullptr; }

  Error error() const { return error_; }
  // ASCII: the line number reached; binary: the byte offset.
  size_t position() const {
    if (binary_) return error_ != Error::kNone ? errorOffset_ : size_t(cursor_ - begin_);
    return line_;
  }
  size_t bytesConsumed() const { return size_t(cursor_ - begin_); }
  bool atEnd() const { return cursor_ >= end_; }

  static constexpr std::string_view kBinarySentinel{"AutoCAD Binary DXF\r\n\x1a\0", 22};

private:
  bool nextAscii(DxfTag& tag);
  bool nextBinary(DxfTag& tag);
  bool readLine(std::string_view& line);
  bool fail(Error e) {
    error_ = e;
    errorOffset_ = size_t(cursor_ - begin_);
    cursor_ = end_;
    return false;
  }

  const char* begin_;
  const char* cursor_;
  const char* end_;
  size_t line_ = 0;
  char lineEnd_ = '\n';
  bool binary_ = false;
  bool oneByteCodes_ = false;  // binary files before R13
  bool pushedBack_ = false;
  Error error_ = Error::kNone;
  size_t errorOffset_ = 0;
  const DxfTag* last_ = nullptr;
};

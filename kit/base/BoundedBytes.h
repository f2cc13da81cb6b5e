// Reads little-endian values and length-prefixed strings from a byte block, every read checked
// against the room left: a short block makes the read fail instead of reading past its end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

class BoundedBytes {
public:
  explicit BoundedBytes(std::string_view data) : data_(data) {}

  bool atEnd() const { return at_ >= data_.size(); }
  size_t position() const { return at_; }

  bool take(size_t n, const char*& p) {
    if (data_.size() - at_ < n) return false;
    p = data_.data() + at_;
    at_ += n;
    return true;
  }
  template <class T>
  bool value(T& out) {
    const char* p;
    if (!take(sizeof(T), p)) return false;
    std::memcpy(&out, p, sizeof(T));
    return true;
  }
  // A string whose length comes first in `lengthBytes` bytes (1, 2 or 4).
  bool string(size_t lengthBytes, std::string& out) {
    uint32_t length = 0;
    const char* p;
    if (lengthBytes > sizeof length || !take(lengthBytes, p)) return false;
    std::memcpy(&length, p, lengthBytes);
    if (!take(length, p)) return false;
    out.assign(p, length);
    return true;
  }

private:
  std::string_view data_;
  size_t at_ = 0;
};

#include "kit/dxf/DxfTagReader.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>

#include "kit/db/TaggedValue.h"

static_assert(std::endian::native == std::endian::little, "binary DXF and the line scan read little-endian words");

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\0'; }

std::string_view trimBlanks(std::string_view s) {
  size_t b = 0, e = s.size();
  while (b < e && isBlank(s[b])) ++b;
  while (e > b && isBlank(s[e - 1])) --e;
  return s.substr(b, e - b);
}

// Group codes are short decimal numbers, possibly padded with blanks on either side.
bool parseGroupCode(std::string_view line, int& code) {
  const char* p = line.data();
  const char* e = p + line.size();
  while (p < e && (*p == ' ' || *p == '\t')) ++p;
  bool negative = false;
  if (p < e && *p == '-') {
    negative = true;
    ++p;
  }
  if (p == e || *p < '0' || *p > '9') return false;
  int value = 0;
  int digits = 0;
  while (p < e && *p >= '0' && *p <= '9') {
    value = value * 10 + (*p - '0');
    if (++digits > 6) return false;
    ++p;
  }
  while (p < e && isBlank(*p)) ++p;
  if (p != e) return false;
  code = negative ? -value : value;
  return true;
}

// The first `c` in [p, end), or null. Lines of DXF files are short (a few bytes), where a
// library memchr spends more on its set-up than on the search: eight bytes at a time instead.
const char* findByte(const char* p, const char* end, char c) {
  const uint64_t ones = 0x0101010101010101ULL;
  const uint64_t pattern = ones * static_cast<unsigned char>(c);
  while (end - p >= 8) {
    uint64_t word;
    std::memcpy(&word, p, 8);
    uint64_t x = word ^ pattern;
    // A zero byte in x (a match) sets the high bit of that byte; the lowest one is the first match.
    uint64_t found = (x - ones) & ~x & 0x8080808080808080ULL;
    if (found) return p + (__builtin_ctzll(found) >> 3);
    p += 8;
  }
  while (p < end) {
    if (*p == c) return p;
    ++p;
  }
  return nullptr;
}

template <class T>
T readLittleEndian(const char* p) {
  T value;
  std::memcpy(&value, p, sizeof(T));
  return value;
}

}  // namespace

std::string_view DxfTag::trimmed() const { return binary ? value : trimBlanks(value); }

bool DxfTag::toReal(double& out) const {
  if (binary && !value.data()) {
    out = numberIsReal ? real : double(integer);
    return true;
  }
  std::string_view s = trimBlanks(value);
  if (!s.empty() && s[0] == '+') s.remove_prefix(1);
  double d = 0.0;
  auto [ptr, ec] = std::from_chars(s.data(), s.data() + s.size(), d);
  if (ec != std::errc() || ptr != s.data() + s.size() || !std::isfinite(d)) {
    // Overflowing numbers are reported as out of range; they are not usable coordinates anyway.
    return false;
  }
  out = d;
  return true;
}

bool DxfTag::toInteger(int64_t& out) const {
  if (binary && !value.data()) {
    if (numberIsReal) {
      if (!std::isfinite(real) || std::fabs(real) > 9e18) return false;
      out = int64_t(real);
    } else {
      out = integer;
    }
    return true;
  }
  std::string_view s = trimBlanks(value);
  if (!s.empty() && s[0] == '+') s.remove_prefix(1);
  int64_t i = 0;
  auto [ptr, ec] = std::from_chars(s.data(), s.data() + s.size(), i);
  if (ec == std::errc() && ptr == s.data() + s.size()) {
    out = i;
    return true;
  }
  // Some writers put reals where integers belong ("1.0"); take the integral part.
  double d = 0.0;
  auto [ptr2, ec2] = std::from_chars(s.data(), s.data() + s.size(), d);
  if (ec2 != std::errc() || ptr2 != s.data() + s.size() || !std::isfinite(d) || std::fabs(d) > 9e18) {
    return false;
  }
  out = int64_t(d);
  return true;
}

DxfTagReader::DxfTagReader(std::string_view data)
    : begin_(data.data()), cursor_(data.data()), end_(data.data() + data.size()) {
  if (data.size() >= kBinarySentinel.size() && data.substr(0, kBinarySentinel.size()) == kBinarySentinel) {
    binary_ = true;
    cursor_ += kBinarySentinel.size();
    // R13 and later write two-byte group codes: the first tag "0 SECTION" then starts with two
    // zero bytes; before R13 the code is one byte.
    oneByteCodes_ = !(end_ - cursor_ >= 2 && cursor_[0] == 0 && cursor_[1] == 0);
    return;
  }
  if (data.size() >= 3 && std::memcmp(data.data(), "\xEF\xBB\xBF", 3) == 0) cursor_ += 3;
  // Files from old Macintosh programs end lines with a lone carriage return.
  size_t probe = data.size() < 65536 ? data.size() : 65536;
  if (!std::memchr(cursor_, '\n', probe - size_t(cursor_ - begin_)) && std::memchr(cursor_, '\r', probe)) {
    lineEnd_ = '\r';
  }
}

bool DxfTagReader::next(DxfTag& tag) {
  if (pushedBack_) {
    pushedBack_ = false;
    // Readers keep reading into the same tag, which then still holds it: no copy needed.
    if (&tag != last_) tag = *last_;
    return true;
  }
  for (;;) {
    bool ok = binary_ ? nextBinary(tag) : nextAscii(tag);
    if (!ok) return false;
    if (tag.code != 999) break;
  }
  last_ = &tag;
  return true;
}

bool DxfTagReader::readLine(std::string_view& line) {
  if (cursor_ >= end_) return false;
  const char* nl = findByte(cursor_, end_, lineEnd_);
  const char* lineEnd = nl ? nl : end_;
  const char* valueEnd = lineEnd;
  if (valueEnd > cursor_ && valueEnd[-1] == '\r') --valueEnd;
  line = std::string_view(cursor_, size_t(valueEnd - cursor_));
  cursor_ = nl ? nl + 1 : end_;
  ++line_;
  return true;
}

bool DxfTagReader::nextAscii(DxfTag& tag) {
  std::string_view codeLine;
  if (!readLine(codeLine)) return false;
  size_t codeLineNumber = line_;
  if (!parseGroupCode(codeLine, tag.code)) {
    // A last line of blanks (or NULs) is not a tag: files often end that way.
    if (trimBlanks(codeLine).empty() && cursor_ >= end_) return false;
    return fail(Error::kBadGroupCode);
  }
  std::string_view valueLine;
  if (!readLine(valueLine)) return fail(Error::kTruncated);
  tag.value = valueLine;
  tag.binary = false;
  tag.line = codeLineNumber;
  return true;
}

bool DxfTagReader::nextBinary(DxfTag& tag) {
  if (cursor_ >= end_) return false;
  tag.line = size_t(cursor_ - begin_);
  int code;
  if (oneByteCodes_) {
    code = static_cast<unsigned char>(*cursor_++);
    if (code == 255) {
      if (end_ - cursor_ < 2) return fail(Error::kTruncated);
      code = readLittleEndian<int16_t>(cursor_);
      cursor_ += 2;
    }
  } else {
    if (end_ - cursor_ < 2) return fail(Error::kTruncated);
    code = readLittleEndian<int16_t>(cursor_);
    cursor_ += 2;
  }
  if (code < -5 || code > 1071) return fail(Error::kBadGroupCode);
  tag.code = code;
  tag.binary = true;
  tag.value = std::string_view();
  auto need = [this](size_t n) { return size_t(end_ - cursor_) >= n; };
  switch (groupValueKind(code)) {
    case GroupValueKind::kReal:
      if (!need(8)) return fail(Error::kTruncated);
      tag.real = readLittleEndian<double>(cursor_);
      tag.numberIsReal = true;
      cursor_ += 8;
      return true;
    case GroupValueKind::kBool:
      if (!need(1)) return fail(Error::kTruncated);
      tag.integer = static_cast<unsigned char>(*cursor_);
      tag.numberIsReal = false;
      cursor_ += 1;
      return true;
    case GroupValueKind::kInt16:
      if (!need(2)) return fail(Error::kTruncated);
      tag.integer = readLittleEndian<int16_t>(cursor_);
      tag.numberIsReal = false;
      cursor_ += 2;
      return true;
    case GroupValueKind::kInt32:
      if (!need(4)) return fail(Error::kTruncated);
      tag.integer = readLittleEndian<int32_t>(cursor_);
      tag.numberIsReal = false;
      cursor_ += 4;
      return true;
    case GroupValueKind::kInt64:
      if (!need(8)) return fail(Error::kTruncated);
      tag.integer = readLittleEndian<int64_t>(cursor_);
      tag.numberIsReal = false;
      cursor_ += 8;
      return true;
    case GroupValueKind::kBinary: {
      if (!need(1)) return fail(Error::kTruncated);
      size_t length = static_cast<unsigned char>(*cursor_++);
      if (!need(length)) return fail(Error::kTruncated);
      tag.value = std::string_view(cursor_, length);
      cursor_ += length;
      return true;
    }
    case GroupValueKind::kString:
    case GroupValueKind::kHandle: {
      const char* nul = static_cast<const char*>(std::memchr(cursor_, 0, size_t(end_ - cursor_)));
      if (!nul) return fail(Error::kTruncated);
      tag.value = std::string_view(cursor_, size_t(nul - cursor_));
      cursor_ = nul + 1;
      return true;
    }
  }
  return fail(Error::kBadGroupCode);
}

#include "kit/db/Handle.h"

OdDbHandle OdDbHandle::fromHex(std::string_view text) {
  size_t begin = 0, end = text.size();
  while (begin < end && (text[begin] == ' ' || text[begin] == '\t')) ++begin;
  while (end > begin && (text[end - 1] == ' ' || text[end - 1] == '\t' || text[end - 1] == '\r')) --end;
  if (begin == end || end - begin > 16) return OdDbHandle();
  uint64_t v = 0;
  for (size_t i = begin; i < end; ++i) {
    char c = text[i];
    unsigned digit;
    if (c >= '0' && c <= '9') digit = unsigned(c - '0');
    else if (c >= 'A' && c <= 'F') digit = unsigned(c - 'A' + 10);
    else if (c >= 'a' && c <= 'f') digit = unsigned(c - 'a' + 10);
    else return OdDbHandle();
    v = (v << 4) | digit;
  }
  return OdDbHandle(v);
}

std::string OdDbHandle::toHex() const {
  static const char kDigits[] = "0123456789ABCDEF";
  char buf[16];
  int n = 0;
  uint64_t v = value_;
  do {
    buf[n++] = kDigits[v & 0xF];
    v >>= 4;
  } while (v != 0);
  std::string out;
  out.reserve(size_t(n));
  while (n > 0) out += buf[--n];
  return out;
}

#include "drivers/svg/SvgBase64.h"

void AppendBase64(std::string& out, std::string_view bytes) {
  static const char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  out.reserve(out.size() + (bytes.size() + 2) / 3 * 4);
  std::size_t i = 0;
  auto byte = [&](std::size_t k) { return static_cast<unsigned>(static_cast<unsigned char>(bytes[k])); };
  for (; i + 3 <= bytes.size(); i += 3) {
    unsigned v = byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2);
    out += kAlphabet[v >> 18];
    out += kAlphabet[(v >> 12) & 63];
    out += kAlphabet[(v >> 6) & 63];
    out += kAlphabet[v & 63];
  }
  std::size_t rest = bytes.size() - i;
  if (rest == 0) return;
  unsigned v = byte(i) << 16 | (rest == 2 ? byte(i + 1) << 8 : 0);
  out += kAlphabet[v >> 18];
  out += kAlphabet[(v >> 12) & 63];
  out += rest == 2 ? kAlphabet[(v >> 6) & 63] : '=';
  out += '=';
}

// Text of R11/R12 DWG files as a DXF value: up to its first zero byte, with control characters
// in caret notation (^J for a line feed) so that no value splits a DXF line.
#pragma once

#include <string>
#include <string_view>

inline std::string dxfText(std::string_view bytes) {
  std::string out;
  for (char c : bytes.substr(0, bytes.find('\0'))) {
    if (static_cast<unsigned char>(c) < 0x20) {
      out += '^';
      out += char(c + 0x40);
    } else {
      out += c;
    }
  }
  return out;
}

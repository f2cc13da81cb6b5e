#include "drivers/svg/SvgNumberText.h"

#include <charconv>
#include <string_view>

namespace {

// Large enough for any double in fixed notation (309 digits before the point) and its decimals.
constexpr int kMaxFixedLength = 420;

int ClampPrecision(int precision) { return precision < 0 ? 0 : (precision > 60 ? 60 : precision); }

void AppendGeneral(std::string& out, double value, int digits) {
  char buffer[64];
  auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, digits);
  out.append(buffer, result.ptr);
}

}  // namespace

void AppendDouble(std::string& out, double value) { AppendGeneral(out, value, 6); }

std::string DoubleText(double value) {
  std::string text;
  AppendDouble(text, value);
  return text;
}

void AppendDouble10(std::string& out, double value) { AppendGeneral(out, value, 10); }

void AppendFixed6(std::string& out, double value) {
  char buffer[kMaxFixedLength];
  auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 6);
  out.append(buffer, result.ptr);
}

void AppendCoordinate(std::string& out, double value, int precision) {
  char buffer[kMaxFixedLength];
  auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed,
                              ClampPrecision(precision));
  char* end = result.ptr;
  std::size_t length = static_cast<std::size_t>(end - buffer);
  if (std::string_view(buffer, length).find(".00") != std::string_view::npos) {
    length -= 3;
  } else if (length > 0 && buffer[length - 1] == '0') {
    --length;
  }
  if (length > 0 && buffer[length - 1] == '.') --length;
  out.append(buffer, length);
}

std::string CoordinateText(double value, int precision) {
  std::string text;
  AppendCoordinate(text, value, precision);
  return text;
}

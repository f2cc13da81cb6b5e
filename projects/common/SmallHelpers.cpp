#include <algorithm>
#include <cmath>
#include <ctime>

#include "projects/common/CommonRoutines.h"

namespace {

bool insideSingleQuotes = false;
bool insideDoubleQuotes = false;

}  // namespace

bool RgbToCmyk(int red, int green, int blue, double& c, double& m, double& y, double& k) {
  c = 1.0 - red / 255.0;
  m = 1.0 - green / 255.0;
  y = 1.0 - blue / 255.0;
  k = std::min({c, m, y, 1.0});
  if (k == 1.0) {
    c = m = y = 0.0;
  } else {
    c = (c - k) / (1.0 - k);
    m = (m - k) / (1.0 - k);
    y = (y - k) / (1.0 - k);
  }
  return true;
}

void PolarPoint(double centerX, double centerY, double angleDegrees, double radius, double& x, double& y) {
  // The program has always used this rounded factor; output coordinates depend on it.
  const double radians = angleDegrees * 0.017453;
  x = std::cos(radians) * radius + centerX;
  y = std::sin(radians) * radius + centerY;
}

bool IsWhitespaceOutsideQuotes(int c) {
  switch (c) {
    case '\t':
    case '\n':
    case '\r':
      return true;
    case ' ':
      return !insideSingleQuotes && !insideDoubleQuotes;
    case '\'':
      insideSingleQuotes = !insideSingleQuotes;
      return false;
    case '"':
      insideDoubleQuotes = !insideDoubleQuotes;
      return false;
    default:
      return false;
  }
}

void ResetWhitespaceQuoteState() {
  insideSingleQuotes = false;
  insideDoubleQuotes = false;
}

std::string MakeTimestamp() {
  std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  char buffer[80];
  std::size_t n = std::strftime(buffer, sizeof buffer, "%Y-%m-%d-%H%M%S", &local);
  return std::string(buffer, n);
}

#include "kit/gi/regen/DimensionText.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <numeric>

namespace {

// Beyond this magnitude fractions and feet lose their meaning in a double; such values are shown
// as plain decimals.
constexpr double kLargestExact = 1e15;

std::string printFixed(double value, int decimals) {
  char small[64];
  int length = std::snprintf(small, sizeof small, "%.*f", decimals, value);
  if (length < 0) return "0";
  if (size_t(length) < sizeof small) return small;
  std::string big(size_t(length) + 1, '\0');
  std::snprintf(big.data(), big.size(), "%.*f", decimals, value);
  big.resize(size_t(length));
  return big;
}

int clampDecimals(int decimals) { return std::clamp(decimals, 0, 8); }

// "%.*f" with DIMZIN's leading (4) and trailing (8) zero suppression and the decimal separator.
std::string decimalText(double value, int decimals, int zeroSuppression, char separator) {
  std::string text = printFixed(value, clampDecimals(decimals));
  if (text.find_first_not_of("-0.") == std::string::npos && text[0] == '-') text.erase(0, 1);  // no "-0"
  size_t point = text.find('.');
  if ((zeroSuppression & 8) && point != std::string::npos) {
    while (text.back() == '0') text.pop_back();
    if (text.back() == '.') text.pop_back();
    point = text.find('.');
  }
  bool negative = text[0] == '-';
  size_t digits = negative ? 1 : 0;
  if ((zeroSuppression & 4) && text.compare(digits, 2, "0.") == 0) {
    text = std::string(negative ? "-" : "").append(text, digits + 1, std::string::npos);
  }
  if (text.empty() || text == "-") return std::string(1, '0');
  if (point != std::string::npos && separator != '.') std::replace(text.begin(), text.end(), '.', separator);
  return text;
}

std::string fractionText(double whole, int numerator, int denominator) {
  std::string text = whole > 0.0 || numerator == 0 ? printFixed(whole, 0) : std::string();
  if (numerator == 0) return text;
  int divisor = std::gcd(numerator, denominator);
  if (!text.empty()) text += ' ';
  return text + std::to_string(numerator / divisor) + "/" + std::to_string(denominator / divisor);
}

// A value counted in 1/denominator steps: its whole part and its numerator.
void splitFraction(double value, int denominator, double& whole, int& numerator) {
  double steps = std::round(value * denominator);
  whole = std::floor(steps / denominator);
  numerator = int(steps - whole * denominator);
}

// Feet and inches (engineering and architectural units). DIMZIN's low bits: 0 drops zero feet and
// zero inches, 1 keeps both, 2 keeps zero feet only, 3 keeps zero inches only.
std::string feetAndInches(double feet, const std::string& inches, bool inchesZero, int zeroSuppression) {
  int mode = zeroSuppression & 3;
  bool showFeet = feet != 0.0 || mode == 1 || mode == 2;
  bool showInches = !inchesZero || mode == 1 || mode == 3 || !showFeet;
  std::string text;
  if (showFeet) text = printFixed(feet, 0) + "'";
  if (showFeet && showInches) text += "-";
  if (showInches) text += inches + "\"";
  return text;
}

std::string engineeringText(double inches, const DimensionFormat& f) {
  double feet = std::floor(inches / 12.0);
  double rest = inches - feet * 12.0;
  std::string restText = decimalText(rest, f.decimals, f.zeroSuppression & 12, f.decimalSeparator);
  if (std::stod(printFixed(rest, clampDecimals(f.decimals))) >= 12.0) {  // rounded up to a whole foot
    feet += 1.0;
    rest = 0.0;
    restText = decimalText(0.0, f.decimals, f.zeroSuppression & 12, f.decimalSeparator);
  }
  return feetAndInches(feet, restText, std::round(rest * std::pow(10.0, clampDecimals(f.decimals))) == 0.0,
                       f.zeroSuppression);
}

std::string architecturalText(double inches, const DimensionFormat& f) {
  int denominator = 1 << clampDecimals(f.decimals);
  double whole = 0.0;
  int numerator = 0;
  splitFraction(inches, denominator, whole, numerator);
  double feet = std::floor(whole / 12.0);
  double restWhole = whole - feet * 12.0;
  bool zero = restWhole == 0.0 && numerator == 0;
  std::string rest = restWhole > 0.0 ? printFixed(restWhole, 0) : "0";
  if (numerator != 0) rest = (restWhole > 0.0 ? rest + " " : std::string()) + fractionText(0.0, numerator, denominator);
  return feetAndInches(feet, rest, zero, f.zeroSuppression);
}

std::string unsignedLength(double value, const DimensionFormat& f) {
  bool exact = value < kLargestExact;
  switch (f.linearUnit) {
    case 1: {
      char text[64];
      std::snprintf(text, sizeof text, "%.*E", clampDecimals(f.decimals), value);
      return text;
    }
    case 3: return exact ? engineeringText(value, f) : decimalText(value, f.decimals, f.zeroSuppression, '.');
    case 4: return exact ? architecturalText(value, f) : decimalText(value, f.decimals, f.zeroSuppression, '.');
    case 5: {
      if (!exact) break;
      double whole = 0.0;
      int numerator = 0;
      splitFraction(value, 1 << clampDecimals(f.decimals), whole, numerator);
      return fractionText(whole, numerator, 1 << clampDecimals(f.decimals));
    }
    default: break;
  }
  return decimalText(value, f.decimals, f.zeroSuppression, f.decimalSeparator);
}

double roundedLength(double value, const DimensionFormat& f) {
  double factor = std::isfinite(f.linearFactor) && f.linearFactor != 0.0 ? f.linearFactor : 1.0;
  value *= std::fabs(factor);  // a negative DIMLFAC only tells where it applies (paper space)
  if (f.roundTo > 0.0 && std::isfinite(f.roundTo) && std::fabs(value / f.roundTo) < kLargestExact) {
    value = std::round(value / f.roundTo) * f.roundTo;
  }
  return value;
}

void replaceAll(std::string& text, const std::string& what, const std::string& with) {
  for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size())) {
    text.replace(at, what.size(), with);
  }
}

std::string toleranceValue(double value, const DimensionFormat& f) {
  DimensionFormat tolerance = f;
  tolerance.decimals = f.toleranceDecimals;
  tolerance.zeroSuppression = f.toleranceZeroSuppression;
  tolerance.linearFactor = 1.0;
  tolerance.roundTo = 0.0;
  return formatDimensionLength(value, tolerance);
}

// The measurement with its tolerance (a stack of +DIMTP over -DIMTM, or one "±" value) or replaced
// by its limits (a stack of the largest over the smallest).
std::string withTolerance(const std::string& measurement, double value, const DimensionFormat& f, bool angular) {
  if (f.limits && !angular) {
    return "\\S" + formatDimensionLength(value + f.plus, f) + "^" + formatDimensionLength(value - f.minus, f) + ";";
  }
  if (!f.tolerance) return measurement;
  if (f.plus == f.minus) return measurement + "%%p" + toleranceValue(f.plus, f);
  std::string upper = std::string(f.plus >= 0.0 ? "+" : "").append(toleranceValue(f.plus, f));
  std::string lower = std::string(f.minus > 0.0 ? "-" : "+").append(toleranceValue(std::fabs(f.minus), f));
  return measurement + "\\S" + upper + "^" + lower + ";";
}

}  // namespace

std::string formatDimensionLength(double value, const DimensionFormat& format) {
  if (!std::isfinite(value)) return std::string();
  value = roundedLength(value, format);
  if (!std::isfinite(value)) return std::string();
  std::string text = unsignedLength(std::fabs(value), format);
  bool zero = text.find_first_of("123456789") == std::string::npos;
  return value < 0.0 && !zero ? "-" + text : text;
}

std::string formatDimensionAngle(double radians, const DimensionFormat& f) {
  if (!std::isfinite(radians)) return std::string();
  int decimals = f.angularDecimals >= 0 ? f.angularDecimals : f.decimals;
  int zeros = ((f.angularZeroSuppression & 1) ? 4 : 0) | ((f.angularZeroSuppression & 2) ? 8 : 0);
  double degrees = radians * 180.0 / std::numbers::pi;
  switch (f.angularUnit) {
    case 1: {
      // Degrees, then minutes from two decimals up, then seconds from four, seconds' decimals beyond.
      double value = std::fabs(degrees);
      int secondDecimals = std::max(0, clampDecimals(decimals) - 4);
      double unit = decimals >= 3 ? 3600.0 : decimals >= 1 ? 60.0 : 1.0;
      double steps = std::round(value * unit * std::pow(10.0, secondDecimals)) / std::pow(10.0, secondDecimals);
      if (!(steps < kLargestExact)) return decimalText(degrees, 0, zeros, '.') + "%%d";
      double wholeDegrees = std::floor(steps / unit);
      std::string text = std::string(degrees < 0.0 ? "-" : "").append(printFixed(wholeDegrees, 0)).append("%%d");
      double rest = steps - wholeDegrees * unit;
      if (unit == 60.0) text += printFixed(rest, 0) + "'";
      if (unit == 3600.0) {
        double minutes = std::floor(rest / 60.0);
        text += printFixed(minutes, 0) + "'" + decimalText(rest - minutes * 60.0, secondDecimals, zeros, '.') + "\"";
      }
      return text;
    }
    case 2: return decimalText(degrees * 400.0 / 360.0, decimals, zeros, f.decimalSeparator) + "g";
    case 3: return decimalText(radians, decimals, zeros, f.decimalSeparator) + "r";
    default: return decimalText(degrees, decimals, zeros, f.decimalSeparator) + "%%d";
  }
}

std::string composeDimensionText(const std::string& userText, const std::string& measurement,
                                 const DimensionFormat& format, bool angular, double rawValue) {
  if (userText == " ") return std::string();
  std::string shown = measurement;
  if (!angular && !format.post.empty()) {
    std::string post = format.post;
    size_t marker = post.find("<>");
    shown = marker == std::string::npos ? measurement + post : post.replace(marker, 2, measurement);
  }
  shown = withTolerance(shown, rawValue, format, angular);
  if (userText.empty()) return shown;
  std::string text = userText;
  replaceAll(text, "<>", shown);
  return text;
}

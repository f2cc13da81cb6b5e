#include "drivers/svg/SvgLineTypes.h"

#include <cmath>
#include <string_view>

#include "drivers/svg/SvgNumberText.h"
#include "drivers/svg/SvgXmlText.h"

namespace {

// The viewer's dash unit: dash lengths are given in sixteenths.
constexpr double kDashUnit = 0.0625;
constexpr double kSmallestDot = 0.4;

bool BecomesUnderscore(wchar_t c) {
  // Those after the double quote also keep the name usable in an attribute and a style sheet.
  static constexpr std::wstring_view kCharacters = L" ()-.$[]|?@!%^*{}'\"<>&/\\;:,#";
  return kCharacters.find(c) != std::wstring_view::npos;
}

}  // namespace

std::string CleanSvgName(const std::wstring& name) {
  std::string out;
  out.reserve(name.size());
  for (wchar_t c : name) {
    char32_t code = static_cast<char32_t>(c);
    if (BecomesUnderscore(c)) {
      out += '_';
    } else if (IsXmlChar(code) && code >= 0x20) {
      AppendUtf8(out, code);
    }
  }
  for (char& c : out) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return out;
}

std::string DashArrayText(const std::vector<double>& dashes, double scale, double minLineWidth) {
  std::string out;
  for (double dash : dashes) {
    double value = 0;
    if (dash == 0) {
      value = minLineWidth > kSmallestDot ? minLineWidth : kSmallestDot;
    } else {
      value = std::fabs(scale * dash) / kDashUnit;
    }
    if (!std::isfinite(value)) value = 0;
    if (!out.empty()) out += ' ';
    AppendFixed6(out, value);
  }
  return out;
}

#include "kit/gi/OdGiTextStyle.h"

#include <cwctype>

bool OdGiTextStyle::isTtfFont() const {
  if (!typeface_.isEmpty()) return true;
  const std::wstring& name = fileName_.str();
  if (name.empty()) return false;
  size_t dot = name.rfind(L'.');
  if (dot == std::wstring::npos) return false;  // a bare name is an SHX font ("txt")
  std::wstring ext = name.substr(dot + 1);
  for (wchar_t& c : ext) c = wchar_t(std::towlower(wint_t(c)));
  return ext == L"ttf" || ext == L"ttc" || ext == L"otf";
}

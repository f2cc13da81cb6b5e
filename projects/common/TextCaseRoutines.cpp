#include <cctype>
#include <cwctype>

#include "projects/common/CommonRoutines.h"

namespace {

// The <cctype> functions take an unsigned char value; a plain char above 127 would be negative.
int lowerByte(char c) { return std::tolower(static_cast<unsigned char>(c)); }
int upperByte(char c) { return std::toupper(static_cast<unsigned char>(c)); }

}  // namespace

bool EqualsNoCase(const std::string& a, const std::string& b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (lowerByte(a[i]) != lowerByte(b[i])) return false;
  return true;
}

void MakeUpperInPlace(std::string& text) {
  for (char& c : text) c = static_cast<char>(upperByte(c));
}

char* UpperCString(char* text) {
  for (char* p = text; p && *p; ++p) *p = static_cast<char>(upperByte(*p));
  return text;
}

char* LowerCString(char* text) {
  for (char* p = text; p && *p; ++p) *p = static_cast<char>(lowerByte(*p));
  return text;
}

std::string ToLowerCopy(std::string text) {
  for (char& c : text) c = static_cast<char>(lowerByte(c));
  return text;
}

std::wstring ToLowerCopy(std::wstring text) {
  for (wchar_t& c : text) c = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
  return text;
}

bool IsUpperLetter(int c) { return c >= 'A' && c <= 'Z'; }
bool IsLowerLetter(int c) { return c >= 'a' && c <= 'z'; }
bool IsLetter(int c) { return IsUpperLetter(c) || IsLowerLetter(c); }

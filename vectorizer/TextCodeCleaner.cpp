// The drawing's text control codes that the output cannot show as they are.
#include <cwctype>

#include "projects/common/CommonRoutines.h"
#include "vectorizer/VectorizerText.h"

namespace {

// "\U+2205" (diameter) becomes the byte 0xD8 widened with its sign, as the program always did.
constexpr OdChar kWidenedDiameter = static_cast<OdChar>(static_cast<int32_t>(0xFFFFFFD8u));

void Replace(std::wstring& text, const std::wstring& from, const std::wstring& to) { text = ReplaceAll(text, from, to); }

bool IsDigit(OdChar c) { return c >= L'0' && c <= L'9'; }

// %%nnn: the character of code nnn. A "%%" with fewer than five characters from it ends the scan.
void ReplaceNumericCodes(std::wstring& text) {
  size_t from = 0;
  for (;;) {
    size_t at = text.find(L"%%", from);
    if (at == std::wstring::npos || text.size() - at < 5) return;
    if (IsDigit(text[at + 2]) && IsDigit(text[at + 3]) && IsDigit(text[at + 4])) {
      int code = (text[at + 2] - L'0') * 100 + (text[at + 3] - L'0') * 10 + (text[at + 4] - L'0');
      if (code != 0) {
        // The code is taken as one byte of the 8-bit text.
        text.replace(at, 5, 1, static_cast<OdChar>(code & 0xFF));
        from = 0;
        continue;
      }
    }
    from = at + 1;
  }
}

// ",12;" at the start of a text, repeatedly.
void RemoveLeadingCounters(std::wstring& text) {
  while (!text.empty() && text[0] == L',') {
    size_t semicolon = text.find(L';');
    if (semicolon == std::wstring::npos) return;
    for (size_t i = 1; i < semicolon; ++i) {
      if (!IsDigit(text[i])) return;
    }
    text.erase(0, semicolon + 1);
  }
}

}  // namespace

OdString& CleanTextCodes(OdString& text, bool& underlineOut) {
  std::wstring& s = text.str();
  Replace(s, L"\\(", L"(");
  Replace(s, L"\\)", L")");
  Replace(s, L"\\U+2205", std::wstring(1, kWidenedDiameter));
  Replace(s, L"%%O", L"");
  Replace(s, L"%%o", L"");
  if (s.find(L"%%U") != std::wstring::npos || s.find(L"%%u") != std::wstring::npos) underlineOut = true;
  Replace(s, L"%%U", L"");
  Replace(s, L"%%u", L"");
  Replace(s, L"%%%", L"%%%%");
  Replace(s, L"%%c", L"\u00D8");
  Replace(s, L"%%C", L"\u00D8");
  Replace(s, L"%%p", L"\u00B1");
  Replace(s, L"%%P", L"\u00B1");
  Replace(s, L"%%d", L"\u00B0");
  Replace(s, L"%%D", L"\u00B0");
  Replace(s, L"|a", L"|>");
  Replace(s, L"|e", L"|>");
  ReplaceNumericCodes(s);
  RemoveLeadingCounters(s);
  return text;
}

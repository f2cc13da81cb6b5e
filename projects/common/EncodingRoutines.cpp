#include "projects/common/CommonRoutines.h"

#include <cstdlib>

std::string& WideToUtf8(std::string& out, const std::wstring& text) {
  out = odEncodeUtf8(text);
  return out;
}

std::string& OdStringToUtf8(std::string& out, const OdString& text) { return WideToUtf8(out, text.str()); }

OdString& Utf8ToOdString(OdString& out, const OdAnsiString& text) {
  for (wchar_t c : odDecodeUtf8(text.c_str(), static_cast<std::size_t>(text.getLength())))
    if (c != 0) out += c;
  return out;
}

std::string& OdStringToNarrow(std::string& out, const OdString& text) {
  out = OdAnsiString(text).str();
  return out;
}

std::string& Utf8ToLatin1(std::string& out, const std::string& text) {
  out.clear();
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    auto b = static_cast<unsigned char>(text[i]);
    if (b < 0x80) {
      out += static_cast<char>(b);
      continue;
    }
    bool leadsLatin1 = (b == 0xC2 || b == 0xC3) && i + 1 < text.size();
    auto next = leadsLatin1 ? static_cast<unsigned char>(text[i + 1]) : 0;
    if (leadsLatin1 && next >= 0x80 && next <= 0xBF) {
      out += static_cast<char>(b == 0xC2 ? next : next + 0x40);
      ++i;
    }
  }
  return out;
}

bool GetEnvironmentValue(const std::string& name, std::string& value) {
  const char* found = std::getenv(name.c_str());
  if (!found) return false;
  value = found;
  return true;
}

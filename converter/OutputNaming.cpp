#include "converter/OutputNaming.h"

#include <cwchar>
#include <string>

OdString OutputExtension(int format) {
  switch (format) {
    case 1020: return OdString(L".js");
    case 1007: return OdString(L".pdf");
    case 1016: return OdString(L".svg");
    case 1000: return OdString(L".dwf");
    case 2000: return OdString(L".jpg");
    case 2002: return OdString(L".gif");
    case 2003:
    case 2102: return OdString(L".tif");
    default: return OdString(L".png");
  }
}

OdString StripExtension(const OdString& name, const OdString& extension) {
  const int cut = name.getLength() - extension.getLength();
  if (extension.isEmpty() || cut < 0) return name;
  if (name.mid(cut).iCompare(extension.c_str()) != 0) return name;
  return name.left(cut);
}

OdString ModelSpaceOutputName(const OdString& base) { return base + L"__ModelSpace"; }

OdString LayoutOutputName(const OdString& base, int number) {
  wchar_t digits[16];
  std::swprintf(digits, 16, L"%02d", number);
  return base + L"__Layout" + digits;
}

bool NameIs(const OdString& name, const wchar_t* other) { return name.iCompare(other) == 0; }

bool NameStartsWith(const OdString& name, const wchar_t* prefix) {
  return name.str().rfind(prefix, 0) == 0;
}

OdString SvgNameForPage(const OdString& name) {
  for (const wchar_t* ending : {L".html", L".htm"}) {
    const OdString stem = StripExtension(name, OdString(ending));
    if (stem.getLength() < name.getLength()) return stem + L".svg";
  }
  return OdString();
}

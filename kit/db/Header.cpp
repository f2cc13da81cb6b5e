#include "kit/db/Header.h"

#include <charconv>

#include "kit/db/DbObject.h"

const HeaderVariable* DatabaseHeader::find(std::string_view name) const {
  if (!name.empty() && name[0] == '$') name.remove_prefix(1);
  for (const HeaderVariable& v : variables) {
    if (equalsIgnoringCase(v.name, name)) return &v;
  }
  return nullptr;
}

int DatabaseHeader::versionNumber() const {
  if (acadVer.size() < 3 || acadVer[0] != 'A' || acadVer[1] != 'C') return 0;
  int number = 0;
  auto [ptr, ec] = std::from_chars(acadVer.data() + 2, acadVer.data() + acadVer.size(), number);
  if (ec != std::errc() || ptr != acadVer.data() + acadVer.size()) return 0;
  return number;
}

// TrueType fonts of the system, found by family through fontconfig, which also substitutes its
// metric-compatible families for the usual Windows ones (Liberation Sans for Arial).
#pragma once

#include <string>

namespace gi {

struct FontFamily {
  std::string name;
  bool bold = false;
  bool italic = false;
};

// The family a Windows font file holds ("arialbd.ttf" is Arial bold); the file's base name for a
// file not known.
FontFamily familyOfFontFile(const std::string& fileName);

// The file of the system font closest to a family, empty when fontconfig has none at all.
std::string systemFontFile(const FontFamily& family);

}  // namespace gi

#include "kit/gi/SystemFonts.h"

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <array>
#include <cctype>

namespace gi {

namespace {

struct KnownFile {
  const char* baseName;
  const char* family;
  bool bold;
  bool italic;
};

constexpr std::array<KnownFile, 22> kKnownFiles = {{
    {"arial", "Arial", false, false},           {"arialbd", "Arial", true, false},
    {"ariali", "Arial", false, true},           {"arialbi", "Arial", true, true},
    {"arialn", "Arial Narrow", false, false},   {"arialnb", "Arial Narrow", true, false},
    {"times", "Times New Roman", false, false}, {"timesbd", "Times New Roman", true, false},
    {"timesi", "Times New Roman", false, true}, {"timesbi", "Times New Roman", true, true},
    {"cour", "Courier New", false, false},      {"courbd", "Courier New", true, false},
    {"couri", "Courier New", false, true},      {"courbi", "Courier New", true, true},
    {"verdana", "Verdana", false, false},       {"tahoma", "Tahoma", false, false},
    {"calibri", "Calibri", false, false},       {"cambria", "Cambria", false, false},
    {"georgia", "Georgia", false, false},       {"segoeui", "Segoe UI", false, false},
    {"consola", "Consolas", false, false},      {"arialuni", "Arial Unicode MS", false, false},
}};

std::string baseNameOf(const std::string& path) {
  std::string name = path;
  size_t slash = name.find_last_of("/\\");
  if (slash != std::string::npos) name.erase(0, slash + 1);
  size_t dot = name.rfind('.');
  if (dot != std::string::npos) name.erase(dot);
  return name;
}

// fontconfig's configuration, loaded once; null when it cannot be.
FcConfig* fontConfig() {
  static FcConfig* config = FcInitLoadConfigAndFonts();
  return config;
}

}  // namespace

FontFamily familyOfFontFile(const std::string& fileName) {
  std::string base = baseNameOf(fileName);
  std::string lower = base;
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) { return char(std::tolower(uint8_t(c))); });
  for (const KnownFile& known : kKnownFiles) {
    if (lower == known.baseName) return {known.family, known.bold, known.italic};
  }
  return {base, false, false};
}

std::string systemFontFile(const FontFamily& family) {
  FcConfig* config = fontConfig();
  if (!config || family.name.empty()) return {};
  FcPattern* pattern = FcPatternCreate();
  if (!pattern) return {};
  FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(family.name.c_str()));
  FcPatternAddInteger(pattern, FC_WEIGHT, family.bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
  FcPatternAddInteger(pattern, FC_SLANT, family.italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
  FcPatternAddBool(pattern, FC_SCALABLE, FcTrue);
  FcConfigSubstitute(config, pattern, FcMatchPattern);
  FcDefaultSubstitute(pattern);
  FcResult result = FcResultNoMatch;
  FcPattern* match = FcFontMatch(config, pattern, &result);
  std::string file;
  FcChar8* path = nullptr;
  if (match && FcPatternGetString(match, FC_FILE, 0, &path) == FcResultMatch && path) {
    file = reinterpret_cast<const char*>(path);
  }
  if (match) FcPatternDestroy(match);
  FcPatternDestroy(pattern);
  return file;
}

}  // namespace gi

// Font map and unmapped-font files beside the program, and system font files through fontconfig.
#include <fontconfig/fontconfig.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "drivers/TRANS_BASE2.h"
#include "projects/common/CommonRoutines.h"
#include "projects/common/ProgramInfo.h"
#include "services/Trace.h"

namespace {

const char kFontMapFile[] = "dm_font_map.txt";
const char kUnmappedFontsFile[] = "dm_unmapped_fonts.txt";

// Lines as a 256-byte line buffer reads them: a longer line arrives in pieces of 255 characters.
template <typename Visit>
void forEachLine(const std::string& path, Visit visit) {
  std::ifstream in(path, std::ios::binary);
  std::string line;
  while (std::getline(in, line)) {
    for (std::size_t start = 0;; start += 255) {
      std::string piece = line.substr(start, 255);
      Trim(piece);
      visit(piece);
      if (start + 255 >= line.size()) break;
    }
  }
}

bool startsWith(const std::string& text, const char* prefix) { return text.rfind(prefix, 0) == 0; }

// "DejaVu Sans Bold Oblique" -> "DejaVu Sans": style words cut, each only after the first character.
std::string familyPartOf(std::string fullName) {
  for (const char* style : {" Italic", " Bold", " Regular", " Condensed"}) {
    std::size_t found = fullName.find(style);
    if (found != std::string::npos && found > 0) fullName.erase(found);
  }
  Trim(fullName);
  return fullName;
}

}  // namespace

void TRANS_BASE2::ReadFontMap() {
  const std::string path = g_ProgramDirectory + kFontMapFile;
  if (!fileExists(path)) return;
  bool strokeSection = false;
  forEachLine(path, [this, &strokeSection](const std::string& line) {
    const std::string lower = ToLowerCopy(line);
    if (startsWith(lower, "[stroke]")) {
      strokeSection = true;
      return;
    }
    if (startsWith(lower, "[map]")) {
      strokeSection = false;
      return;
    }
    if (strokeSection) {
      if (!lower.empty()) m_strokeFonts.insert(lower);
      return;
    }
    std::size_t arrow = line.find("==>");
    if (arrow == std::string::npos) return;
    std::string from = line.substr(0, arrow);
    std::string to = line.substr(arrow + 3);
    Trim(from);
    Trim(to);
    m_fontMap.emplace(from, to);
  });
}

void TRANS_BASE2::ReadUnmappedFonts() {
  const std::string path = g_ProgramDirectory + kUnmappedFontsFile;
  if (!fileExists(path)) return;
  forEachLine(path, [this](const std::string& line) {
    if (!line.empty()) m_unmappedFonts.insert(line);
  });
}

void TRANS_BASE2::WriteUnmappedFonts() const {
  if (m_unmappedFonts.empty()) return;
  std::ofstream out(g_ProgramDirectory + kUnmappedFontsFile, std::ios::binary | std::ios::trunc);
  if (!out) return;
  for (const auto& name : m_unmappedFonts) out << name << '\n';
}

bool TRANS_BASE2::IsStrokeFont(const std::string& lowerCaseName) const {
  return m_strokeFonts.count(lowerCaseName) > 0;
}

std::string TRANS_BASE2::MapFontName(const std::string& fontName) const {
  auto found = m_fontMap.find(fontName);
  return found == m_fontMap.end() ? std::string() : found->second;
}

std::string TRANS_BASE2::OutputFontFor(const TextRecord& record) const {
  std::string file = record.fontFile.substr(record.fontFile.find_last_of("/\\") + 1);
  std::string stem = file.substr(0, file.rfind('.'));
  // The file first: a text in an SHX font carries the default font's name as its own.
  for (const std::string& name : {file, stem, record.fontName}) {
    if (name.empty()) continue;
    std::string mapped = MapFontName(name);
    if (!mapped.empty()) return mapped;
    // Drawings spell one font in varying case: an exact entry wins, any other spelling serves.
    for (const auto& [from, to] : m_fontMap) {
      if (EqualsNoCase(from, name) && !to.empty()) return to;
    }
  }
  return record.fontName;
}

std::string TRANS_BASE2::FindSystemFontFile(const std::string& fontName) {
  auto cached = m_systemFontCache.find(fontName);
  if (cached != m_systemFontCache.end()) return cached->second;
  std::string file = LookupSystemFontFile(fontName);
  m_systemFontCache.emplace(fontName, file);
  return file;
}

std::string TRANS_BASE2::LookupSystemFontFile(const std::string& fontName) {
  std::string result;
  if (!FcInit()) return result;
  FcConfig* config = FcConfigGetCurrent();
  FcConfigSetRescanInterval(config, 0);
  FcPattern* pattern = FcPatternCreate();
  FcObjectSet* objects = FcObjectSetBuild(FC_FILE, FC_FULLNAME, FC_FAMILY, FC_STYLE, FC_LANG, nullptr);
  FcFontSet* fonts = pattern && objects ? FcFontList(config, pattern, objects) : nullptr;
  for (int i = 0; fonts && i < fonts->nfont; ++i) {
    FcChar8* file = nullptr;
    FcChar8* fullName = nullptr;
    FcPattern* font = fonts->fonts[i];
    if (FcPatternGetString(font, FC_FULLNAME, 0, &fullName) != FcResultMatch || !fullName) continue;
    if (FcPatternGetString(font, FC_FILE, 0, &file) != FcResultMatch || !file) continue;
    if (familyPartOf(reinterpret_cast<const char*>(fullName)) == fontName) {
      result = reinterpret_cast<const char*>(file);
      break;
    }
  }
  if (fonts) FcFontSetDestroy(fonts);
  if (objects) FcObjectSetDestroy(objects);
  if (pattern) FcPatternDestroy(pattern);
  return result;
}

std::string TRANS_BASE2::BestMatchFontFile(const std::string& fontName) {
  std::string result;
  FcConfig* config = FcInitLoadConfigAndFonts();
  if (!config) return result;
  FcPattern* pattern = FcNameParse(reinterpret_cast<const FcChar8*>(fontName.c_str()));
  if (pattern) {
    FcConfigSubstitute(config, pattern, FcMatchPattern);
    FcDefaultSubstitute(pattern);
    FcResult matchResult = FcResultNoMatch;
    FcPattern* match = FcFontMatch(config, pattern, &matchResult);
    FcChar8* file = nullptr;
    if (match && FcPatternGetString(match, FC_FILE, 0, &file) == FcResultMatch && file) {
      result = reinterpret_cast<const char*>(file);
      PrintMessage("Filename", result.c_str());
    }
    if (match) FcPatternDestroy(match);
    FcPatternDestroy(pattern);
  }
  FcConfigDestroy(config);
  return result;
}

// Which texts are stroked (drawn as the kit's glyph strokes) instead of written as text: fonts
// the output cannot show (stroke fonts, right-to-left fonts, multibyte codes) and, for PDF, texts
// beyond Latin-1.
#include <array>

#include "drivers/TRANS_BASE2.h"
#include "kit/gi/OdGiTextStyle.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"
#include "vectorizer/VectorizerText.h"

namespace {

constexpr int kPdfFormat = 1007;

bool Contains(const OdString& text, const wchar_t* part) { return text.str().find(part) != std::wstring::npos; }

bool ContainsAny(const OdString& text, std::initializer_list<const wchar_t*> parts) {
  for (const wchar_t* part : parts) {
    if (Contains(text, part)) return true;
  }
  return false;
}

std::string FileNameLower(const OdString& path) {
  std::string lower = LowerUtf8(path);
  size_t slash = lower.find_last_of("/\\");
  return slash == std::string::npos ? lower : lower.substr(slash + 1);
}

bool SymbolFontEscape(const OdString& text, const OdGiTextStyle& style) {
  bool symbfe = Contains(style.fileName(), L"SYMBFE") || Contains(style.bigFontFileName(), L"SYMBFE");
  if (!symbfe) return false;
  if (ContainsAny(text, {L"|a", L"|e"})) return true;
  if (Contains(text, L"|")) {
    std::string utf8;
    OdStringToUtf8(utf8, text);
    PrintMessage("Unhandled BFE Escape Character", utf8.c_str());
  }
  return false;
}

bool IsRomansOrSimplex(const OdGiTextStyle& style) {
  std::string file = FileNameLower(style.fileName());
  return LowerUtf8(style.typeface()) == "romans" || FontBaseName(style.fileName()) == "romans" ||
         file == "romans.shx" || file == "simplex.shx";
}

bool RightToLeftFont(const OdGiTextStyle& style) {
  for (const OdString& name : {style.fileName(), style.bigFontFileName()}) {
    if (ContainsAny(name, {L"HEBREW", L"TRHEBTXT", L"MIRYM", L"AARONI"})) return true;
  }
  return false;
}

// A Unicode escape beyond Latin-1, which the PDF writer's fonts cannot show.
bool BeyondLatin1Escape(const OdString& text) {
  return ContainsAny(text, {L"\\U+1", L"\\U+2", L"\\U+3", L"\\U+4", L"\\U+5", L"\\U+6", L"\\U+7", L"\\U+8",
                            L"\\U+9", L"\\U+01", L"\\U+02", L"\\U+03", L"\\U+04", L"\\U+05", L"\\U+06", L"\\U+07",
                            L"\\U+08", L"\\U+09"});
}

bool DriverStrokeFont(const OdGiTextStyle& style, TRANS_BASE2& driver) {
  std::string typeface = LowerUtf8(style.typeface());
  if (!typeface.empty() && driver.IsStrokeFont(typeface)) return true;
  std::string file = FileNameLower(style.fileName());
  return !file.empty() && (driver.IsStrokeFont(file) || driver.IsStrokeFont(FontBaseName(style.fileName())));
}

bool ShxBeyondByte(const OdString& text, const OdGiTextStyle& style) {
  if (!style.isShxFont()) return false;
  for (OdChar c : text.str()) {
    if (static_cast<uint32_t>(c) > 255) return true;
  }
  return false;
}

}  // namespace

std::string LowerUtf8(const OdString& text) {
  std::string utf8;
  OdStringToUtf8(utf8, text);
  return ToLowerCopy(utf8);
}

std::string FontBaseName(const OdString& fileName) {
  std::string name = FileNameLower(fileName);
  size_t dot = name.rfind('.');
  return dot == std::string::npos ? name : name.substr(0, dot);
}

bool IsSpecialIsocpText(const OdString& text, const OdGiTextStyle& style) {
  if (FileNameLower(style.fileName()) != "es_isocp.shx") return false;
  static const std::array<OdChar, 9> kSpecial = {0xA0, 0xA5, 0xA8, 0xA9, 0xAE, 0xBE, 0xBF, 0xC8, 0xC9};
  for (OdChar c : text.str()) {
    for (OdChar special : kSpecial) {
      if (c == special) return true;
    }
  }
  return false;
}

bool MustStrokeText(const OdString& text, const OdGiTextStyle& style, TRANS_BASE2& driver) {
  return SymbolFontEscape(text, style) || IsRomansOrSimplex(style) || RightToLeftFont(style) ||
         driver.strokeAllText || Contains(text, L"\\M+") ||
         (driver.GetFormatCode() == kPdfFormat && BeyondLatin1Escape(text)) || DriverStrokeFont(style, driver) ||
         ShxBeyondByte(text, style);
}

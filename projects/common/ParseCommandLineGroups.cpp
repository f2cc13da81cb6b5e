// Parameters whose value needs more than one assignment: the output format, the raster and
// watermark groups, the PDF DENY list, precision, units, the input kind and the dash limits.
#include <climits>
#include <cmath>

#include "projects/common/CommonRoutines.h"
#include "projects/common/OutputFormatTable.h"
#include "projects/common/ParameterListing.h"
#include "projects/common/ParseCommandLine.h"
#include "services/Trace.h"

namespace {

const char kWatermarkColourExclusive[] = "wm_color and wm_rgb are mutually exclusive, wm_color is used";

std::string utf8(const OdString& text) {
  std::string out;
  OdStringToUtf8(out, text);
  return out;
}

bool keyBegins(const OdString& key, const wchar_t* prefix) {
  return key.left(static_cast<int>(std::wcslen(prefix))) == prefix;
}

// A real read where a whole number belongs; values past the int range are held at its ends.
int truncatedToInt(double value) {
  if (std::isnan(value)) return 0;
  if (value >= static_cast<double>(INT_MAX)) return INT_MAX;
  if (value <= static_cast<double>(INT_MIN)) return INT_MIN;
  return static_cast<int>(value);
}

}  // namespace

void CParseCommandLine::ProcessFormatParameter(const KeywordValue& value) {
  if (value.number != 0) {
    outputFormat = value.number;
    return;
  }
  OdString name = value.text;
  if (!name.isEmpty() && name.getAt(0) == L'?') {
    ListOutputFormats();
    outputFormat = -1;
    return;
  }
  if (!name.isEmpty() && name.getAt(0) == L'.') name = name.mid(1);
  if (name.getLength() > 6) return;
  formatExt = name;
  name.makeUpper();
  const OutputFormatName* entry = FindOutputFormatName(name);
  if (!entry) {
    outputFormat = 0;
    return;
  }
  outputFormat = entry->code;
  if (entry->extension) formatExt = entry->extension;
  switch (entry->effect) {
    case FormatSideEffect::kThinLines: minLineWidth = 0.6; break;
    case FormatSideEffect::kJpegLowQuality: jpegQuality = 2; break;
    case FormatSideEffect::kBlackAndWhite: colorMode = 1; break;
    case FormatSideEffect::kRasterPdf:
      rasterPdf = true;
      if (rasterFormat == 0) rasterFormat = 2001;
      break;
    case FormatSideEffect::kNone: break;
  }
}

// Keys beginning with "*" or "R". Only "RDPI=?" marks the resolution as given.
void CParseCommandLine::ProcessRasterParameter(const KeywordValue& value) {
  const OdString& key = value.key;
  if (key == L"*RCC" || key == L"RCC") ccittCompression = value.number;
  else if (key == L"*RFC" || key == L"RFC") faxCompression = value.number;
  else if (key == L"*RWD" || key == L"RWD") width = value.number;
  else if (key == L"*RHT" || key == L"RHT") height = value.number;
  else if (key == L"*RDPI" || key == L"RDPI") {
    if (value.text.isEmpty()) dpi = value.number;
    else if (value.text.getAt(0) == L'?') dpiSet = true;
    else dpi = truncatedToInt(TextToReal(value.text));
  } else if (key == L"ROR") rasterOrientation = value.number;
  else if (key == L"RQL") jpegQuality = value.number;
}

void CParseCommandLine::ProcessWatermarkParameter(const KeywordValue& value) {
  const OdString& key = value.key;
  if (key == L"WM_SIZE" || key == L"WM_HEIGHT") {
    watermarkHeight = RealValue(value.number, value.text);
  } else if (key == L"WM_ANGLE") {
    if (value.text.isEmpty()) PrintMessageOnce("ERROR: No Value given for WM_ANGLE parameter");
    else watermarkAngle = TextToReal(value.text);
  } else if (keyBegins(key, L"WM_CON")) {
    watermarkContent = value.text;
  } else if (keyBegins(key, L"WM_X")) {
    watermarkX = utf8(value.text);
  } else if (keyBegins(key, L"WM_Y")) {
    watermarkY = utf8(value.text);
  } else if (key == L"WM_FONT") {
    watermarkFont = utf8(value.text);
  } else if (keyBegins(key, L"WM_ANC")) {
    watermarkAnchor = utf8(value.text);
  } else if (keyBegins(key, L"WM_LAY")) {
    watermarkLayer = utf8(value.text);
  } else if (keyBegins(key, L"WM_COL")) {
    watermarkColor = value.number;
    if (!watermarkRGB.empty()) {
      watermarkRGB.clear();
      PrintMessageOnce(kWatermarkColourExclusive);
    }
  } else if (keyBegins(key, L"WM_RGB")) {
    if (watermarkColor != 7) PrintMessageOnce(kWatermarkColourExclusive);
    else watermarkRGB = utf8(value.text);
  }
}

void CParseCommandLine::ProcessDenyList(const OdString& text) {
  static const char* const kNames[] = {"Ed", "Co", "Pr", "An", "As", "Hi", "Op", "Se", "Fi", "Ac"};
  std::vector<std::string> tokens;
  SplitAny(tokens, OdAnsiString(text).str(), " ,\t\n(");
  for (const std::string& token : tokens) {
    for (int i = 0; i < 10; ++i)
      if (!token.empty() && EqualsNoCase(token, kNames[i])) deny[kDenyEdit + i] = true;
  }
}

void CParseCommandLine::ProcessPrecision(const KeywordValue& value) {
  if (value.text.isEmpty()) {
    if (value.number >= 0 && value.number <= 8) precision = value.number;
    return;
  }
  OdString name = value.text;
  name.makeUpper();
  if (name == L"HIGH" || name == L"HI" || name == L"2") precision = 2;
  else if (name == L"MEDIUM" || name == L"MED" || name == L"1") precision = 1;
  else if (name == L"LOW" || name == L"0") precision = 0;
}

void CParseCommandLine::ProcessUnits(const KeywordValue& value) {
  if (value.number != 0) {
    units = value.number;
    return;
  }
  static const struct {
    const wchar_t* name;
    int units;
  } kNames[] = {{L"IN", 1}, {L"INCH", 1},  {L"INCHES", 1}, {L"FT", 2},    {L"FOOT", 2},  {L"FEET", 2},
                {L"Y", 3},  {L"YD", 3},    {L"YARD", 3},   {L"YARDS", 3}, {L"MI", 4},    {L"MILE", 4},
                {L"MM", 5}, {L"CM", 6},    {L"M", 7},      {L"MT", 7},    {L"METER", 7}, {L"METRE", 7}};
  units = 0;
  for (const auto& entry : kNames)
    if (value.text.iCompare(entry.name) == 0) units = entry.units;
}

void CParseCommandLine::ProcessTreatAs(const OdString& text) {
  treatAs = 0;
  if (text.iCompare(L"DGN") == 0) treatAs = 1018;
  else if (text.iCompare(L"DWF") == 0) treatAs = 1000;
  else if (text.iCompare(L"DWG") == 0) treatAs = 1013;
  else if (text.iCompare(L"DXF") == 0) treatAs = 1014;
}

// MD, MG and ML read only their text, so a whole number (which SplitParameter turns into the
// number) arrives as no value at all: "-MD=5" is refused and "-MD=5.0" works.
void CParseCommandLine::ProcessLimitParameter(const KeywordValue& value, double& field, const char* name) {
  if (value.text.isEmpty()) {
    PrintMessageOnce((std::string("ERROR: No Value given for ") + name + " parameter").c_str());
    return;
  }
  int comma = value.text.reverseFind(L',');
  field = TextToReal(comma < 0 ? value.text : value.text.mid(comma + 1));
}

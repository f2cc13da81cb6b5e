// The two-letter keywords. A key of exactly two characters is looked up here only, so "IN" and
// "FT", which the long table also names, are not units when written alone.
#include "projects/common/CommonRoutines.h"
#include "projects/common/KeywordRules.h"

namespace {

using Match = ParameterKeywordTables::Match;

std::string utf8(const OdString& text) {
  std::string out;
  OdStringToUtf8(out, text);
  return out;
}

// 0 for A, 1 for B, ... of the key's second character.
int secondLetterIndex(const KeywordValue& value, OdChar first) { return value.key.getAt(1) - first; }

}  // namespace

void CParseCommandLine::ProcessTwoLetterKeyword(const KeywordValue& value) {
  ParameterKeywordTables::Run(ParameterKeywordTables::TwoLetterChain(), *this, value);
}

const ParameterKeywordTables::Chain& ParameterKeywordTables::TwoLetterChain() {
  using P = CParseCommandLine;
  using V = KeywordValue;
  static const Chain chain = {
      {Match::kExact, {L"AU"}, [](P& p, const V&) { p.autoTrim = true; }},
      {Match::kExact, {L"AL"}, [](P& p, const V&) { p.allLayers = true; }},
      {Match::kExact, {L"OL"}, [](P& p, const V&) { p.olFlag = true; }},
      {Match::kExact, {L"TT"}, [](P& p, const V&) { p.doTooltips = p.tooltipsRequested = true; }},
      {Match::kExact, {L"BR"}, [](P& p, const V& v) {
         p.brightness = p.RealValue(v.number, v.text);
         p.brightnessSet = true;
       }},
      {Match::kExact, {L"BW"}, [](P& p, const V&) { p.colorMode = 1; }},
      {Match::kExact, {L"BA"}, [](P& p, const V& v) { p.blankAttributeText = v.text; }},
      {Match::kExact, {L"GS"}, [](P& p, const V&) { p.colorMode = 2; }},
      {Match::kExact, {L"BK", L"ON"}, [](P& p, const V& v) {
         p.bList = v.text;
         p.bListSet = true;
       }},
      {Match::kExact, {L"IP"}, [](P& p, const V&) { p.ignorePoints = true; }},
      {Match::kExact, {L"RL"}, [](P& p, const V& v) { p.rLayers = v.text; }},
      {Match::kExact, {L"BN"}, [](P& p, const V& v) { p.blockName = v.text; }},
      {Match::kExact, {L"SL"}, [](P& p, const V&) { p.sl = true; }},
      {Match::kExact, {L"TL"}, [](P& p, const V& v) { p.tLayers = v.text; }},
      {Match::kExact, {L"RA"}, [](P& p, const V& v) { p.roomAtt = v.text; }},
      {Match::kExact, {L"RX"}, [](P& p, const V& v) { p.regex = utf8(v.text); }},
      {Match::kExact, {L"CP"}, [](P& p, const V& v) { p.codePage = OdAnsiString(v.text); }},
      {Match::kExact, {L"HL"}, [](P& p, const V& v) { p.contentHyperlink = v.text; }},
      {Match::kExact, {L"EN", L"CE"}, [](P& p, const V& v) {
         OdString kind = v.text.left(3);
         kind.makeUpper();
         if (v.text.isEmpty()) {
           if (v.number >= 0 && v.number <= 3) p.encoding = v.number;
         } else if (kind == L"BIN") {
           p.encoding = 2;
         } else if (kind == L"ASC" || kind == L"TEX") {
           p.encoding = 1;
         } else if (kind == L"COM") {
           p.encoding = 3;
         }
       }},
      {Match::kExact, {L"LA"}, [](P& p, const V&) { p.listArea = true; }},
      {Match::kExact, {L"HP"}, [](P& p, const V& v) {
         p.highResolution = v.number != 0;
         p.precision = v.number;
       }},
      {Match::kExact, {L"ID"}, [](P& p, const V& v) {
         p.inputDirectory = v.text;
         P::AddTrailingSlash(p.inputDirectory);
       }},
      {Match::kExact, {L"RE"}, [](P& p, const V&) { p.repository = true; }},
      {Match::kExact, {L"CQ"}, [](P& p, const V& v) { p.colorQuantization = v.number; }},
      {Match::kExact, {L"RP"}, [](P& p, const V& v) {
         p.rasterPath = v.text;
         P::AddTrailingSlash(p.rasterPath);
       }},
      {Match::kExact, {L"DF"}, [](P& p, const V& v) { p.defaultFont = v.text; }},
      {Match::kExact, {L"DG"}, [](P& p, const V&) { p.processGroups = true; }},
      {Match::kExact, {L"DI"}, [](P& p, const V& v) { p.defaultItalicFont = v.text; }},
      {Match::kExact, {L"BL"}, [](P& p, const V&) { p.breakByLayer = true; }},
      {Match::kExact, {L"HB"}, [](P& p, const V&) { p.flag259 = true; }},
      {Match::kExact, {L"HS"}, [](P& p, const V& v) { p.hatchScale = p.RealValue(v.number, v.text); }},
      {Match::kExact, {L"LS"}, [](P& p, const V& v) { p.lineSpacing = p.RealValue(v.number, v.text); }},
      {Match::kExact, {L"LT"}, [](P& p, const V& v) { p.layerTable = v.text; }},
      {Match::kExact, {L"CW"}, [](P& p, const V& v) { p.colorWidthTable = v.text; }},
      {Match::kExact, {L"FS"}, [](P& p, const V& v) { p.fontScale = p.RealValue(v.number, v.text); }},
      {Match::kExact, {L"LW"}, [](P& p, const V& v) { p.lineWidthScale = p.RealValue(v.number, v.text); }},
      {Match::kExact, {L"MA"}, [](P& p, const V& v) { p.margin = v.number; }},
      {Match::kExact, {L"JS"}, [](P& p, const V&) {
         p.SelectFormat(1020, L"js");
         p.precision = 2;
         p.sizeIsDefault = false;
         p.width = p.height = 3000;
         p.minLineWidth = 0.6;
       }},
      {Match::kExact, {L"MD"}, [](P& p, const V& v) { p.ProcessLimitParameter(v, p.maxDash, "MD"); }},
      {Match::kExact, {L"MG"}, [](P& p, const V& v) { p.ProcessLimitParameter(v, p.maxGap, "MG"); }},
      {Match::kExact, {L"ML"}, [](P& p, const V& v) { p.ProcessLimitParameter(v, p.minLineWidth, "ML"); }},
      {Match::kExact, {L"OM"}, [](P& p, const V& v) { p.overwriteMode = v.number; }},
      {Match::kExact, {L"NW"}, [](P& p, const V&) { p.network = true; }},
      {Match::kExact, {L"OD"}, [](P& p, const V& v) {
         p.outputDirectory = v.text;
         P::AddTrailingSlash(p.outputDirectory);
       }},
      {Match::kExact, {L"RO"}, [](P& p, const V& v) {
         if (v.number == 0 || v.number == 90 || v.number == 180 || v.number == 270) p.rotation = v.number;
       }},
      {Match::kExact, {L"PW"}, [](P& p, const V& v) { p.penWidthScale = v.number; }},
      {Match::kExact, {L"SH"}, [](P& p, const V& v) { p.sharpen = v.number; }},
      {Match::kExact, {L"SU"}, [](P& p, const V&) { p.strictHyperlink = false; }},
      {Match::kExact, {L"SP"}, [](P& p, const V& v) {
         if (v.text.isEmpty()) p.viewMode = v.number;
         else if (v.text.getAt(0) == L'M' || v.text.getAt(0) == L'm') p.viewMode = 1;
         else if (v.text.getAt(0) == L'P' || v.text.getAt(0) == L'p') p.viewMode = 2;
         else p.viewMode = 0;
       }},
      {Match::kExact, {L"ST"}, [](P& p, const V&) { p.strokeText = true; }},
      {Match::kExact, {L"A0", L"A1", L"A2", L"A3", L"A4", L"A5"}, [](P& p, const V& v) {
         p.drawingSize = 6 + secondLetterIndex(v, L'0');
         p.drawingSizeMode = 1;
       }},
      {Match::kExact, {L"UA", L"UB", L"UC", L"UD", L"UE"},
       [](P& p, const V& v) { p.drawingSize = 1 + secondLetterIndex(v, L'A'); }},
      {Match::kExact, {L"US"}, [](P& p, const V& v) {
         if (v.text.isEmpty()) {
           p.drawingSize = v.number;
           return;
         }
         OdChar letter = v.text.getAt(0);
         if (letter >= L'a' && letter <= L'e') letter = letter - L'a' + L'A';
         if (letter >= L'A' && letter <= L'E') p.drawingSize = 1 + (letter - L'A');
       }},
      {Match::kExact, {L"UN"}, [](P& p, const V& v) { p.ProcessUnits(v); }},
      {Match::kExact, {L"CM"}, [](P& p, const V&) { p.units = 6; }},
      {Match::kExact, {L"MM"}, [](P& p, const V&) { p.units = 5; }},
      {Match::kExact, {L"UP"}, [](P& p, const V& v) { p.userPassword = OdAnsiString(v.text); }},
      {Match::kExact, {L"MP"}, [](P& p, const V& v) { p.masterPassword = OdAnsiString(v.text); }},
      {Match::kExact, {L"XP"}, [](P& p, const V& v) {
         // Unlike XPATH this keeps the old Windows habit of a closing backslash.
         p.xrefPath = v.text;
         if (!p.xrefPath.isEmpty() && p.xrefPath.getAt(p.xrefPath.getLength() - 1) != L'\\') p.xrefPath += L'\\';
       }},
      {Match::kExact, {L"TA"}, [](P& p, const V& v) { p.ProcessTreatAs(v.text); }},
      {Match::kExact, {L"ND"}, [](P& p, const V& v) { p.nodeMap = v.text; }},
      {Match::kExact, {L"VN"}, [](P& p, const V& v) { p.viewName = v.text; }},
      {Match::kExact, {L"WM"}, [](P& p, const V& v) { p.watermark = v.text; }},
  };
  return chain;
}

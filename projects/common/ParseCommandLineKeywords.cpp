// ProcessParameter and the long keyword table. Most parameters have a long name, a short one and
// often a two-letter one; a few are matched by their first three characters or by a prefix.
#include <cwchar>

#include "projects/common/KeywordRules.h"
#include "projects/common/CommonRoutines.h"
#include "projects/common/ParameterListing.h"
#include "services/Trace.h"

namespace {

using Tables = ParameterKeywordTables;
using Match = Tables::Match;

const char kLayersExclusive[] = "Layers Off and Layers On are mutually exclusive, ignoring second defined: Layers";

std::string utf8(const OdString& text) {
  std::string out;
  OdStringToUtf8(out, text);
  return out;
}

bool beginsWithNoCase(const OdString& key, const wchar_t* prefix) {
  OdString head = key.left(static_cast<int>(std::wcslen(prefix)));
  return head.getLength() == static_cast<int>(std::wcslen(prefix)) && head.iCompare(prefix) == 0;
}

bool matches(const Tables::Rule& rule, const KeywordValue& value) {
  for (const wchar_t* name : rule.names) {
    switch (rule.match) {
      case Match::kExact:
        if (value.key.iCompare(name) == 0) return true;
        break;
      case Match::kKey3:
        if (value.key3.iCompare(name) == 0) return true;
        break;
      case Match::kBegins:
        if (beginsWithNoCase(value.key, name)) return true;
        break;
    }
  }
  return false;
}

}  // namespace

bool ParameterKeywordTables::Run(const Chain& chain, CParseCommandLine& parameters, const KeywordValue& value) {
  for (const Rule& rule : chain) {
    if (!matches(rule, value)) continue;
    rule.apply(parameters, value);
    return true;
  }
  return false;
}

int CParseCommandLine::ProcessParameter(OdString& key, short number, OdString text) {
  key.makeUpper();
  KeywordValue value;
  value.key = key;
  value.key3 = key.left(3);
  value.number = number;
  value.text = text;
  if (key.getLength() == 2) ProcessTwoLetterKeyword(value);
  else ProcessLongKeyword(value);
  return 0;
}

void CParseCommandLine::ProcessLongKeyword(const KeywordValue& value) {
  ParameterKeywordTables::Run(ParameterKeywordTables::FirstLongChain(), *this, value);
  ParameterKeywordTables::Run(ParameterKeywordTables::SecondLongChain(), *this, value);
  if (!value.key.isEmpty() && (value.key.getAt(0) == L'*' || value.key.getAt(0) == L'R'))
    ProcessRasterParameter(value);
}

void CParseCommandLine::SelectFormat(int code, const wchar_t* extension) {
  outputFormat = code;
  formatExt = extension;
}

void CParseCommandLine::SetViewSelection(const wchar_t* name, int mode) {
  viewName = name;
  viewMode = mode;
}

// Output, view and background choices, switches and the names of side files. "BLA" and "WHI"
// take any key beginning so ("BLACK", "WHITEBG"), which is why "BLANKATTRIBUTES" also sets a
// black background before the second chain reads it.
const ParameterKeywordTables::Chain& ParameterKeywordTables::FirstLongChain() {
  using P = CParseCommandLine;
  using V = KeywordValue;
  static const Handler background = [](P& p, const V& v) {
    if (v.text.isEmpty()) p.background = v.number;
    else if (v.text.getLength() > 1 && v.text.iCompare(L"BLACK") == 0) p.background = 0;
    else if (v.text.iCompare(L"WHITE") == 0) p.background = 255;
  };
  static const Handler layersOff = [](P& p, const V& v) {
    if (!p.layersOff.isEmpty()) PrintMessageOnce(kLayersExclusive);
    else p.layersOff = v.text;
  };
  static const Handler layersOn = [](P& p, const V& v) {
    if (!p.layersOff.isEmpty()) PrintMessageOnce(kLayersExclusive);
    else p.layersOn = v.text;
  };
  static const Handler orientation = [](P& p, const V& v) {
    if (v.number >= -1 && v.number <= 1) p.orientation = v.number;
    else PrintMessageOnce("Invalid parameter for Originatation", static_cast<int>(v.number));
  };
  static const Handler dinSize = [](P& p, const V& v) {
    static const wchar_t* const kNames[] = {L"DIN0", L"DIN1", L"DIN2", L"DIN3", L"DIN4", L"DIN5"};
    for (int i = 0; i < 6; ++i)
      if (v.key == kNames[i]) p.drawingSize = 6 + i;
  };
  static const Handler usSize = [](P& p, const V& v) {
    static const wchar_t* const kNames[] = {L"USA", L"USB", L"USC", L"USD", L"USE"};
    for (int i = 0; i < 5; ++i)
      if (v.key == kNames[i]) p.drawingSize = 1 + i;
  };
  static const Handler archSize = [](P& p, const V& v) {
    static const wchar_t* const kNames[] = {L"ARCHA", L"ARCHB", L"ARCHC", L"ARCHD", L"ARCHE"};
    for (int i = 0; i < 5; ++i)
      if (v.key == kNames[i]) p.drawingSize = 12 + i;
  };
  static const Chain chain = {
      {Match::kExact, {L"B"}, background},
      {Match::kKey3, {L"BAC", L"BGD"}, background},
      {Match::kExact, {L"LISTAREA"}, [](P& p, const V&) { p.listArea = true; }},
      {Match::kExact, {L"POSTFIX"}, [](P& p, const V&) { p.postfix = true; }},
      {Match::kExact, {L"JSUNICODE"}, [](P& p, const V&) { p.jsUnicode = true; }},
      {Match::kExact, {L"SHORT"}, [](P& p, const V&) { p.shortMode = true; }},
      {Match::kKey3, {L"BLA"}, [](P& p, const V&) { p.background = 0; }},
      {Match::kKey3, {L"WHI"}, [](P& p, const V&) { p.background = 255; }},
      {Match::kKey3, {L"BIN"}, [](P& p, const V&) { p.encoding = 2; }},
      {Match::kKey3, {L"ASC", L"TEX"}, [](P& p, const V&) { p.encoding = 1; }},
      {Match::kKey3, {L"COM"}, [](P& p, const V&) { p.encoding = 3; }},
      {Match::kExact, {L"CTB"}, [](P& p, const V& v) { p.ctbFileName = v.text; }},
      {Match::kExact, {L"NODEMAP"}, [](P& p, const V& v) { p.nodeMap = v.text; }},
      {Match::kExact, {L"LTD"}, [](P& p, const V& v) { p.lineTypeDivisor = p.RealValue(v.number, v.text); }},
      {Match::kExact, {L"HIS", L"HISTORY"}, [](P&, const V&) { ListProgramHistory(); }},
      {Match::kExact, {L"F"}, [](P& p, const V& v) { p.ProcessFormatParameter(v); }},
      {Match::kBegins, {L"TOOLT"}, [](P& p, const V&) { p.doTooltips = p.tooltipsRequested = true; }},
      {Match::kBegins, {L"BRIGHT"}, [](P& p, const V& v) {
         p.brightness = p.RealValue(v.number, v.text);
         p.brightnessSet = true;
       }},
      {Match::kBegins, {L"WM_"}, [](P& p, const V& v) { p.ProcessWatermarkParameter(v); }},
      {Match::kExact, {L"AUTOTRIM"}, [](P& p, const V&) { p.autoTrim = true; }},
      {Match::kExact, {L"ALLLAYERS"}, [](P& p, const V&) { p.allLayers = true; }},
      {Match::kExact, {L"NOTEXTSCALE", L"NOTS"}, [](P& p, const V&) { p.noTextScale = true; }},
      {Match::kExact, {L"LOG"}, [](P& p, const V& v) { p.logFileName = v.text; }},
      {Match::kExact, {L"REGEX"}, [](P& p, const V& v) { p.regex = utf8(v.text); }},
      {Match::kExact, {L"MARGIN"}, [](P& p, const V& v) { p.margin = v.number; }},
      {Match::kExact, {L"NETWORK"}, [](P& p, const V&) { p.network = true; }},
      {Match::kExact, {L"LOFF", L"LAYER_OFF", L"LAYERS_OFF"}, layersOff},
      {Match::kExact, {L"LON", L"LAYER_ON", L"LAYERS_ON"}, layersOn},
      {Match::kExact, {L"ALL"}, [](P& p, const V&) { p.SetViewSelection(L"*ALL*", 3); }},
      {Match::kExact, {L"NOLAST"}, [](P& p, const V&) { p.SetViewSelection(L"*NOLAST*", 8); }},
      {Match::kExact, {L"MODELONLY"}, [](P& p, const V&) { p.SetViewSelection(L"*MODELONLY*", 11); }},
      {Match::kExact, {L"BASIC"}, [](P& p, const V&) { p.SetViewSelection(L"*BASIC*", 9); }},
      {Match::kExact, {L"ALLPAPER"}, [](P& p, const V&) { p.SetViewSelection(L"*ALLPAPER*", 4); }},
      {Match::kExact, {L"ALLMODEL"}, [](P& p, const V&) { p.SetViewSelection(L"*ALLMODEL*", 5); }},
      {Match::kExact, {L"LAYOUTSONLY", L"ONLYLAYOUTS"},
       [](P& p, const V&) { p.SetViewSelection(L"*LAYOUTSONLY*", 6); }},
      {Match::kExact, {L"FIRSTLAYOUT", L"FIRSTSHEET", L"FIRST"},
       [](P& p, const V&) { p.SetViewSelection(L"*FIRSTLAYOUT*", 10); }},
      {Match::kExact, {L"VIEWSONLY", L"ONLYVIEWS"}, [](P& p, const V&) { p.SetViewSelection(L"*VIEWSONLY*", 7); }},
      {Match::kExact, {L"CODEPAGE"}, [](P& p, const V& v) { p.codePage = OdAnsiString(v.text); }},
      {Match::kExact, {L"CSV"}, [](P& p, const V& v) {
         p.csvOutput = true;
         if (!v.text.isEmpty()) p.csvFileName = v.text;
       }},
      {Match::kExact, {L"SAVEDWG"}, [](P& p, const V&) { p.saveDwg = true; }},
      {Match::kExact, {L"DWF"}, [](P& p, const V&) { p.SelectFormat(1000, L"dwf"); }},
      {Match::kExact, {L"PDF"}, [](P& p, const V&) { p.SelectFormat(1007, L"pdf"); }},
      {Match::kExact, {L"SVG"}, [](P& p, const V&) { p.SelectFormat(1016, L"svg"); }},
      {Match::kExact, {L"VERBOSE", L"TRACE"}, [](P&, const V&) { SetTraceEnabled(true); }},
      {Match::kExact, {L"REPO", L"REPOSITORY"}, [](P& p, const V&) { p.repository = true; }},
      {Match::kBegins, {L"QUANT"}, [](P& p, const V& v) { p.colorQuantization = v.number; }},
      {Match::kExact, {L"JPG", L"JPEG"}, [](P& p, const V&) { p.SelectFormat(2000, L"jpg"); }},
      {Match::kExact, {L"JPG0"}, [](P& p, const V&) {
         p.SelectFormat(2000, L"jpg");
         p.jpegQuality = 2;
       }},
      {Match::kExact, {L"TIFF", L"TIF"}, [](P& p, const V&) { p.SelectFormat(2003, L"tif"); }},
      {Match::kExact, {L"CCITT"}, [](P& p, const V&) {
         p.SelectFormat(2102, L"tiff");
         p.colorMode = 1;
       }},
      {Match::kExact, {L"RPDF"}, [](P& p, const V&) {
         p.SelectFormat(2017, L"pdf");
         p.colorMode = 1;
       }},
      {Match::kExact, {L"GIF"}, [](P& p, const V&) { p.SelectFormat(2002, L"gif"); }},
      {Match::kExact, {L"PNG"}, [](P& p, const V&) { p.SelectFormat(2001, L"png"); }},
      {Match::kExact, {L"JSR"}, [](P& p, const V&) {
         p.SelectFormat(2018, L"png");
         if (p.rasterFormat == 0) p.rasterFormat = 2001;
       }},
      {Match::kExact, {L"HATCH"}, [](P& p, const V& v) { p.defaultHatch = OdAnsiString(v.text); }},
      {Match::kExact, {L"HATCHSCALE"}, [](P& p, const V& v) { p.hatchScale = p.RealValue(v.number, v.text); }},
      {Match::kExact, {L"LAY", L"LAYOUT"}, [](P& p, const V& v) {
         p.layoutName = v.text;
         p.viewMode = 12;
       }},
      {Match::kExact, {L"EXT", L"EXTENTS"}, [](P& p, const V&) { p.zoomExtents = true; }},
      {Match::kExact, {L"NOEXTENTS"}, [](P& p, const V&) { p.zoomExtents = false; }},
      {Match::kExact, {L"PREC"}, [](P& p, const V& v) { p.ProcessPrecision(v); }},
      {Match::kExact, {L"HIGH"}, [](P& p, const V&) { p.precision = 2; }},
      {Match::kExact, {L"MEDIUM"}, [](P& p, const V&) { p.precision = 1; }},
      {Match::kExact, {L"LOW"}, [](P& p, const V&) { p.precision = 0; }},
      {Match::kExact, {L"Q", L"QUIET"}, [](P& p, const V&) { p.quiet = 1; }},
      {Match::kExact, {L"ORNT", L"R"}, orientation},
      {Match::kExact, {L"LANDSCAPE"}, [](P& p, const V&) { p.orientation = 1; }},
      {Match::kExact, {L"PORTRAIT"}, [](P& p, const V&) { p.orientation = 0; }},
      {Match::kExact, {L"ROT"}, [](P& p, const V& v) {
         if (v.number == 0 || v.number == 90 || v.number == 180 || v.number == 270) p.rotation = v.number;
       }},
      {Match::kExact, {L"LAST"}, [](P& p, const V&) { p.viewMode = 0; }},
      {Match::kExact, {L"MONO"}, [](P& p, const V&) { p.colorMode = 1; }},
      {Match::kExact, {L"GRAY", L"GREY", L"GRAYSCALE", L"GREYSCALE"}, [](P& p, const V&) { p.colorMode = 2; }},
      {Match::kExact, {L"MODEL"}, [](P& p, const V&) { p.viewMode = 1; }},
      {Match::kExact, {L"PAPER"}, [](P& p, const V&) { p.viewMode = 2; }},
      {Match::kExact, {L"SUB"}, [](P& p, const V&) { p.subDirectories = true; }},
      {Match::kExact, {L"STROKE"}, [](P& p, const V&) { p.strokeText = true; }},
      {Match::kExact, {L"LIST"}, [](P& p, const V&) { p.listViews = true; }},
      {Match::kExact, {L"STAMP"}, [](P& p, const V& v) { p.stampName = v.text; }},
      {Match::kExact, {L"STSZ"}, [](P& p, const V& v) { p.stampSize = p.RealValue(v.number, v.text); }},
      {Match::kExact, {L"STX"}, [](P& p, const V& v) { p.stampX = v.number; }},
      {Match::kExact, {L"STY"}, [](P& p, const V& v) { p.stampY = v.number; }},
      {Match::kExact, {L"TOL"}, [](P& p, const V& v) {
         p.tolerance = p.RealValue(v.number, v.text);
         p.toleranceSet = true;
       }},
      {Match::kExact, {L"ADIN"}, [](P& p, const V& v) { p.drawingSize = v.number; }},
      {Match::kBegins, {L"DIN"}, dinSize},
      {Match::kBegins, {L"US"}, usSize},
      {Match::kBegins, {L"ARCH"}, archSize},
  };
  return chain;
}

// Units, PDF properties, paths, files, blocks, drawing size modes and raster sizes.
const ParameterKeywordTables::Chain& ParameterKeywordTables::SecondLongChain() {
  using P = CParseCommandLine;
  using V = KeywordValue;
  static const Chain chain = {
      {Match::kExact, {L"UNIT", L"UNITS"}, [](P& p, const V& v) { p.ProcessUnits(v); }},
      {Match::kExact, {L"INCH", L"INCHES", L"IN"}, [](P& p, const V&) { p.units = 1; }},
      {Match::kExact, {L"FOOT", L"FEET", L"FT"}, [](P& p, const V&) { p.units = 2; }},
      {Match::kExact, {L"YARD", L"YARDS"}, [](P& p, const V&) { p.units = 3; }},
      {Match::kExact, {L"MILE", L"MILES"}, [](P& p, const V&) { p.units = 4; }},
      {Match::kExact, {L"METER", L"METRE", L"M"}, [](P& p, const V&) { p.units = 7; }},
      {Match::kExact, {L"METERS", L"METRES"}, [](P& p, const V&) { p.units = 7; }},
      {Match::kExact, {L"NOUNINIT", L"NUI"}, [](P& p, const V&) { p.noUninit = false; }},
      {Match::kExact, {L"DENY"}, [](P& p, const V& v) { p.ProcessDenyList(v.text); }},
      {Match::kExact, {L"AUTHOR"}, [](P& p, const V& v) { p.author = OdAnsiString(v.text); }},
      {Match::kExact, {L"SUBJECT"}, [](P& p, const V& v) { p.subject = OdAnsiString(v.text); }},
      {Match::kExact, {L"KEYWORDS"}, [](P& p, const V& v) { p.keywords = OdAnsiString(v.text); }},
      {Match::kExact, {L"TITLE"}, [](P& p, const V& v) { p.title = OdAnsiString(v.text); }},
      {Match::kExact, {L"VER"}, [](P& p, const V& v) { p.version = v.number; }},
      {Match::kExact, {L"BATTR", L"BLANKATTRIBUTES"}, [](P& p, const V& v) {
         p.blankAttributeText = v.text.isEmpty() ? OdString(L"**EMPTY**") : v.text;
       }},
      {Match::kExact, {L"SPATH", L"SERVERPATH"}, [](P& p, const V& v) {
         p.serverPath = v.text;
         P::AddTrailingSlash(p.serverPath);
       }},
      {Match::kExact, {L"WKSP", L"WORKSPACE"}, [](P& p, const V& v) { p.workspaceFile = v.text; }},
      {Match::kExact, {L"XPATH", L"XREFPATH"}, [](P& p, const V& v) {
         p.xrefPath = v.text;
         P::AddTrailingSlash(p.xrefPath);
       }},
      {Match::kExact, {L"FPATH", L"FONTPATH"}, [](P& p, const V& v) {
         p.fontPath = v.text;
         P::AddTrailingSlash(p.fontPath);
       }},
      {Match::kExact, {L"RASTERPATH", L"RPATH"}, [](P& p, const V& v) {
         p.rasterPath = v.text;
         P::AddTrailingSlash(p.rasterPath);
       }},
      {Match::kExact, {L"RASTERFORMAT", L"RFORMAT", L"RFMT"}, [](P& p, const V& v) {
         std::wstring lower = ToLowerCopy(v.text.str());
         if (lower.find(L"jpg") != std::wstring::npos || lower.find(L"jpeg") != std::wstring::npos)
           p.rasterFormat = 2000;
         else if (lower.find(L"png") != std::wstring::npos) p.rasterFormat = 2001;
         else if (lower.find(L"gif") != std::wstring::npos) p.rasterFormat = 2002;
       }},
      {Match::kExact, {L"VIEW"}, [](P& p, const V& v) {
         if (v.text.isEmpty()) p.viewName.format(L"%d", static_cast<int>(v.number));
         else p.viewName = v.text;
         p.viewMode = 13;
       }},
      {Match::kExact, {L"BLOCKS"}, [](P& p, const V& v) {
         if (v.text.isEmpty()) p.processBlocks = true;
         else if (v.text.iCompare(L"IGNORE") == 0 || v.text.iCompare(L"OFF") == 0 || v.text.iCompare(L"NO") == 0)
           p.processBlocks = false;
         else if (v.text.iCompare(L"ON") == 0 || v.text.iCompare(L"YES") == 0) p.processBlocks = true;
       }},
      {Match::kExact, {L"BLOCKNAME"}, [](P& p, const V& v) {
         if (!v.text.isEmpty()) p.blockName = v.text;
       }},
      {Match::kExact, {L"HIRES", L"HIGHRES"}, [](P& p, const V&) { p.highResolution = true; }},
      {Match::kExact, {L"DRAWSZ"}, [](P& p, const V& v) {
         p.drawingSizeMode = v.number >= 0 && v.number <= 2 ? v.number : 0;
       }},
      {Match::kExact, {L"JSON"}, [](P& p, const V& v) {
         p.jsonFile = utf8(v.text);
         p.ReadJSONParameters();
       }},
      {Match::kExact, {L"POINTCIRCLE", L"PTC"}, [](P& p, const V&) { p.pointCircle = 1; }},
      {Match::kExact, {L"TREATAS"}, [](P& p, const V& v) { p.ProcessTreatAs(v.text); }},
      {Match::kExact, {L"STRICTURL", L"STRICTHYPERLINK", L"STRICT"}, [](P& p, const V&) { p.strictHyperlink = false; }},
      {Match::kExact, {L"ANSI"}, [](P& p, const V&) { p.drawingSizeMode = 0; }},
      {Match::kExact, {L"DIN"}, [](P& p, const V&) { p.drawingSizeMode = 1; }},
      {Match::kExact, {L"PTS"}, [](P& p, const V&) { p.drawingSizeMode = 2; }},
      {Match::kExact, {L"RWD", L"WIDTH"}, [](P& p, const V& v) {
         p.width = v.number;
         p.sizeIsDefault = false;
       }},
      {Match::kExact, {L"RHT", L"HEIGHT"}, [](P& p, const V& v) {
         p.height = v.number;
         p.sizeIsDefault = false;
       }},
      {Match::kExact, {L"RSZ", L"SIZE"}, [](P& p, const V& v) {
         p.width = p.height = v.number;
         p.sizeIsDefault = false;
       }},
      {Match::kExact, {L"LTS"}, [](P& p, const V& v) { p.lineTypeScale = p.RealValue(v.number, v.text); }},
  };
  return chain;
}

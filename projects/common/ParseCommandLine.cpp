// The parameter set's defaults, its resets and the string getters that report while tracing.
#include "projects/common/ParseCommandLine.h"

#include <cstdlib>

#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

CParseCommandLine::CParseCommandLine() : workspaceReserved(nullptr) { SetDefaults(); }

void CParseCommandLine::SetDefaults() {
  for (OdString* s : {&nodeMap, &logFileName, &viewName, &buildingName, &floorName, &layersOff, &layersOn,
                      &contentHyperlink, &xrefPath, &fontPath, &inputFile, &outputFile, &csvFileName,
                      &ctbFileName, &rasterPath, &inputDirectory, &outputDirectory, &databaseName,
                      &colorWidthTable, &layerTable, &stampName, &blankAttributeText, &watermark, &formatExt,
                      &layoutName, &bList, &rLayers, &tLayers, &roomAtt, &blockName, &watermarkContent,
                      &serverPath, &workspaceFile})
    s->empty();
  for (OdAnsiString* s : {&codePage, &userPassword, &masterPassword, &author, &keywords, &subject, &title,
                          &defaultHatch})
    *s = OdAnsiString();
  for (std::string* s : {&regex, &jsonFile, &watermarkX, &watermarkY, &watermarkFont, &watermarkAnchor,
                         &watermarkLayer, &watermarkRGB})
    s->clear();
  defaultFont = L"ARIAL";
  defaultItalicFont = L"ARIALI";

  doTooltips = tooltipsRequested = brightnessSet = false;
  brightness = 0.0;
  parsedFlag = listArea = false;
  toleranceSet = sl = false;
  background = 255;
  autoTrim = noTextScale = processGroups = false;
  processBlocks = true;
  rasterPdf = false;
  colorMode = 0;
  encoding = 1;
  version = 0;
  margin = 0;
  orientation = -1;
  units = 0;
  lineTypeDivisor = 0.125;
  outputFormat = 1016;
  precision = 2;
  subDirectories = highResolution = false;
  width = height = 2500;
  sizeIsDefault = true;
  noUninit = true;
  // A locale whose decimal separator is not "." reads "0.1" as zero.
  decimalComma = std::atof("0.1") == 0.0;
  allLayers = false;
  pointCircle = quiet = rotation = 0;
  tolerance = 0.0;
  drawingSizeMode = drawingSize = 0;
  lineWidthScale = lineTypeScale = penWidthScale = 1.0;
  minLineWidth = 0.1;
  sharpen = 0;
  strokeText = listViews = breakByLayer = zoomExtents = false;
  viewMode = 0;
  shortMode = postfix = jsUnicode = saveDwg = csvOutput = olFlag = false;
  overwriteMode = 0;
  repository = network = false;
  colorQuantization = 3;
  dashScale = 0.02;
  spareReal = 0.5;
  spareFlag = flag259 = false;
  fontScale = 0.0;
  for (bool& flag : deny) flag = false;
  treatAs = 0;
  hatchScale = 1.0;
  maxDash = maxGap = -1.0;
  stampX = stampY = 50;
  stampSize = 1.0;
  dpi = 0;
  dpiSet = false;
  rasterOrientation = 300;
  jpegQuality = 25;
  rasterBitsMode = 1;
  faxCompression = ccittCompression = 2;
  rasterReserved = 3;
  rasterFormat = 0;
  bListSet = false;
  strictHyperlink = true;
  ignorePoints = false;
  lineSpacing = 1.0;
  flag318 = false;
  watermarkHeight = watermarkAngle = 0.0;
  watermarkColor = 7;
}

// The fields every parse starts from, whatever an earlier parse left.
void CParseCommandLine::ResetPerParse() {
  for (OdString* s : {&layersOff, &layersOn, &contentHyperlink, &layoutName, &inputFile, &outputFile,
                      &csvFileName, &stampName, &databaseName})
    s->empty();
  for (OdAnsiString* s : {&userPassword, &masterPassword, &author, &keywords, &subject, &title})
    *s = OdAnsiString();
  defaultFont = L"ARIAL";
  defaultItalicFont = L"ARIALI";
  parsedFlag = false;
  viewMode = 0;
  formatExt = L"dwf";
}

// "-Z": back to the raster and view settings of a plain DWF run, in the middle of a command line.
void CParseCommandLine::ResetRasterAndView() {
  inputDirectory.empty();
  outputDirectory.empty();
  viewMode = 0;
  colorMode = 0;
  encoding = 2;
  version = 4;
  margin = 0;
  orientation = -1;
  units = 0;
  outputFormat = 1000;
  precision = 2;
  subDirectories = false;
  watermark.empty();
  highResolution = false;
  width = height = 1000;
  dpi = 0;
  rasterOrientation = 300;
  jpegQuality = 25;
  rasterBitsMode = 1;
  faxCompression = 2;
  ccittCompression = 2;
  rasterReserved = 3;
}

double CParseCommandLine::TextToReal(const OdString& text) const {
  std::string narrow;
  OdStringToUtf8(narrow, text);
  if (decimalComma) narrow = ReplaceChar(narrow, '.', ',');
  return std::atof(narrow.c_str());
}

double CParseCommandLine::RealValue(short number, const OdString& text) const {
  return text.isEmpty() ? static_cast<double>(number) : TextToReal(text);
}

// ---- String getters that list themselves in a traced run ------------------------------------------

namespace {

OdString traced(const char* name, const OdString& value) {
  TraceMessage(name, value);
  return value;
}

OdAnsiString traced(const char* name, const OdAnsiString& value) {
  TraceMessage(name, value.str());
  return value;
}

}  // namespace

OdString CParseCommandLine::GetLogFileName() const { return traced("GetLogFileName", logFileName); }
OdString CParseCommandLine::GetViewName() const { return traced("GetViewName", viewName); }
OdString CParseCommandLine::GetBuildingName() const { return traced("GetBuildingName", buildingName); }
OdString CParseCommandLine::GetFloorName() const { return traced("GetFloorName", floorName); }
OdAnsiString CParseCommandLine::GetUserPassword() const { return traced("GetUserPassword", userPassword); }
OdAnsiString CParseCommandLine::GetMasterPassword() const { return traced("GetMasterPassword", masterPassword); }
OdAnsiString CParseCommandLine::GetAuthor() const { return traced("GetAuthor", author); }
OdAnsiString CParseCommandLine::GetKeywords() const { return traced("GetKeywords", keywords); }
OdAnsiString CParseCommandLine::GetSubject() const { return traced("GetSubject", subject); }
OdAnsiString CParseCommandLine::GetTitle() const { return traced("GetTitle", title); }
OdString CParseCommandLine::GetXrefPath() const { return traced("GetXrefPath", xrefPath); }
OdString CParseCommandLine::GetFontPath() const { return traced("GetFontPath", fontPath); }
OdString CParseCommandLine::GetInputFile() const { return traced("GetInputFile", inputFile); }
OdString CParseCommandLine::GetOutputFile() const { return traced("GetOutputFile", outputFile); }
OdString CParseCommandLine::GetCSVFileName() const { return traced("GetCSVFileName", csvFileName); }
OdString CParseCommandLine::GetCTBFileName() const { return traced("GetCTBFileName", ctbFileName); }
OdString CParseCommandLine::GetInputDirectory() const { return traced("GetInputDirectory", inputDirectory); }
OdString CParseCommandLine::GetOutputDirectory() const { return traced("GetOutputDirectory", outputDirectory); }
OdString CParseCommandLine::GetDatabaseName() const { return traced("GetDatabaseName", databaseName); }
OdString CParseCommandLine::GetColorWidthTable() const { return traced("GetColorWidthTable", colorWidthTable); }
OdString CParseCommandLine::GetLayerTable() const { return traced("GetLayerTable", layerTable); }
OdString CParseCommandLine::GetStampName() const { return traced("GetStampName", stampName); }
OdString CParseCommandLine::GetWatermark() const { return traced("GetWatermark", watermark); }
OdString CParseCommandLine::GetFormatExt() const { return traced("GetFormatExt", formatExt); }
OdString CParseCommandLine::GetLayoutName() const { return traced("GetLayoutName", layoutName); }
OdString CParseCommandLine::GetDefaultItalicFont() const { return traced("GetDefaultItalicFont", defaultItalicFont); }
OdString CParseCommandLine::GetbList() const { return traced("GetbList", bList); }
OdString CParseCommandLine::GetRLayers() const { return traced("GetRLayers", rLayers); }
OdString CParseCommandLine::GetTLayers() const { return traced("GetTLayers", tLayers); }
OdString CParseCommandLine::GetroomAtt() const { return traced("GetroomAtt", roomAtt); }
OdString CParseCommandLine::GetBlockName() const { return traced("GetBlockName", blockName); }
OdAnsiString CParseCommandLine::GetDefaultHatch() const { return traced("GetDefaultHatch", defaultHatch); }
OdString CParseCommandLine::GetServerPath() const { return traced("GetServerPath", serverPath); }

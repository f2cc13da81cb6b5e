// The parameter set of one run: every value the command line, the workspace file and the JSON
// parameter file can give, with its default, a getter per field and the parsers that fill it.
//
//   ParseCommandLine.cpp           defaults, the Z reset and the traced string getters
//   ParseCommandLineArguments.cpp  ParseArguments, SplitParameter, output names, trailing slashes
//   ParseCommandLineKeywords.cpp   the long keyword table
//   ParseCommandLineShortKeys.cpp  the two-letter keywords
//   ParseCommandLineGroups.cpp     format, raster, watermark and DENY parameters
//   OutputFormatTable.cpp          format names, codes and file extensions
//   WorkspaceFile.cpp              the workspace file of server xref directories
//   JsonParameterFile.cpp          the JSON parameter file
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "kit/base/OdString.h"

// One block reference whose attributes the JSON parameter file fills in.
struct WorkspaceBlockRecord {
  std::string blockName;
  std::string handle;  // the block reference's database handle as text
  std::vector<std::pair<std::string, std::string>> attributes;  // (tag, value)
};

// One entry of the JSON parameter file's "Variables".
struct ParameterVariable {
  std::string prefix;
  std::string value;
};

// The values one parameter arrives with after SplitParameter.
struct KeywordValue {
  OdString key;   // upper-cased
  OdString key3;  // its first three characters
  short number = 0;
  OdString text;
};

// The permissions a PDF output can deny; the first three have no keyword.
enum DenyFlag {
  kDenyReserved0 = 0,
  kDenyReserved1,
  kDenyReserved2,
  kDenyEdit,
  kDenyCopy,
  kDenyPrint,
  kDenyAnnotate,
  kDenyAssemble,
  kDenyHighResolutionPrint,
  kDenyOpen,
  kDenySecurity,
  kDenyFormFilling,
  kDenyAccessSupport,
  kDenyFlagCount
};

class CParseCommandLine {
public:
  CParseCommandLine();

  void SetDefaults();

  // Fills the set from the process arguments (argv[0] is the program). Always returns 0.
  int ParseArguments(short argc, const char* const* argv);
  // Splits "KEY=VALUE" (without its dash) into key, number and text. The number is left alone
  // unless the value is ON/TRUE/OFF/FALSE or a whole number, in which case the text is emptied.
  static void SplitParameter(const OdString& argument, OdString& key, short& number, OdString& text);
  // Applies one keyword; the key is upper-cased in place. Returns 0.
  int ProcessParameter(OdString& key, short number, OdString text);

  // Reads the workspace file named by WKSP, if any, adding its server xref directories.
  void ReadWorkspaceFile();
  // Reads the JSON parameter file (or JSON text) named by JSON.
  void ReadJSONParameters();

  // Ends the path with a separator of its own style; see ParseCommandLineArguments.cpp.
  static void AddTrailingSlash(OdString& path);
  // The output name for an input: in the output directory when one is given, with the extension
  // of the format code.
  static void MakeOutputName(int format, const OdString& inputFile, OdString& outputFile,
                             const OdString& inputDirectory, const OdString& outputDirectory, bool replaceExtension);
  // ".svg" for 1016 and so on; empty for codes without an extension.
  static const wchar_t* OutputExtension(int format);

  // ---- Strings (the ones marked traced report their name and value while tracing) ----------------
  OdAnsiString GetCodePage() const { return codePage; }
  OdString GetNodeMap() const { return nodeMap; }
  OdString GetLogFileName() const;               // traced
  OdString GetViewName() const;                  // traced
  OdString GetBuildingName() const;              // traced
  OdString GetFloorName() const;                 // traced
  OdAnsiString GetUserPassword() const;          // traced
  OdAnsiString GetMasterPassword() const;        // traced
  OdString GetLayersOff() const { return layersOff; }
  OdString GetLayersOn() const { return layersOn; }
  OdString GetContentHyperlink() const { return contentHyperlink; }
  OdAnsiString GetAuthor() const;                // traced
  OdAnsiString GetKeywords() const;              // traced
  OdAnsiString GetSubject() const;               // traced
  OdAnsiString GetTitle() const;                 // traced
  OdString GetXrefPath() const;                  // traced
  OdString GetFontPath() const;                  // traced
  OdString GetInputFile() const;                 // traced
  OdString GetOutputFile() const;                // traced
  OdString GetCSVFileName() const;               // traced
  OdString GetCTBFileName() const;               // traced
  OdString GetRasterPath() const { return rasterPath; }
  OdString GetInputDirectory() const;            // traced
  OdString GetOutputDirectory() const;           // traced
  OdString GetDatabaseName() const;              // traced
  OdString GetColorWidthTable() const;           // traced
  OdString GetLayerTable() const;                // traced
  OdString GetStampName() const;                 // traced
  OdString GetBlankAttributeText() const { return blankAttributeText; }
  OdString GetWatermark() const;                 // traced
  OdString GetFormatExt() const;                 // traced
  OdString GetLayoutName() const;                // traced
  OdString GetDefaultFont() const { return defaultFont; }
  OdString GetDefaultItalicFont() const;         // traced
  OdString GetbList() const;                     // traced
  OdString GetRLayers() const;                   // traced
  OdString GetTLayers() const;                   // traced
  OdString GetroomAtt() const;                   // traced
  std::string GetRegex() const { return regex; }
  OdString GetBlockName() const;                 // traced
  std::string GetJSONFile() const { return jsonFile; }
  OdAnsiString GetDefaultHatch() const;          // traced
  OdString GetServerPath() const;                // traced
  OdString GetWorkspaceFile() const { return workspaceFile; }
  OdString GetWatermarkContent() const { return watermarkContent; }
  std::string GetWatermarkX() const { return watermarkX; }
  std::string GetWatermarkY() const { return watermarkY; }
  std::string GetWatermarkFont() const { return watermarkFont; }
  std::string GetWatermarkAnchor() const { return watermarkAnchor; }
  std::string GetWatermarkLayer() const { return watermarkLayer; }
  std::string GetWatermarkRGB() const { return watermarkRGB; }

  // ---- "Is empty" tests, one per wide string ------------------------------------------------------
  bool IsNodeMapEmpty() const { return nodeMap.isEmpty(); }
  bool IsLogFileNameEmpty() const { return logFileName.isEmpty(); }
  bool IsViewNameEmpty() const { return viewName.isEmpty(); }
  bool IsBuildingNameEmpty() const { return buildingName.isEmpty(); }
  bool IsFloorNameEmpty() const { return floorName.isEmpty(); }
  bool IsLayersOffEmpty() const { return layersOff.isEmpty(); }
  bool IsLayersOnEmpty() const { return layersOn.isEmpty(); }
  bool IsContentHyperlinkEmpty() const { return contentHyperlink.isEmpty(); }
  bool IsXrefPathEmpty() const { return xrefPath.isEmpty(); }
  bool IsFontPathEmpty() const { return fontPath.isEmpty(); }
  bool IsInputFileEmpty() const { return inputFile.isEmpty(); }
  bool IsOutputFileEmpty() const { return outputFile.isEmpty(); }
  bool IsCSVFileNameEmpty() const { return csvFileName.isEmpty(); }
  bool IsCTBFileNameEmpty() const { return ctbFileName.isEmpty(); }
  bool IsRasterPathEmpty() const { return rasterPath.isEmpty(); }
  bool IsInputDirectoryEmpty() const { return inputDirectory.isEmpty(); }
  bool IsOutputDirectoryEmpty() const { return outputDirectory.isEmpty(); }
  bool IsDatabaseNameEmpty() const { return databaseName.isEmpty(); }
  bool IsColorWidthTableEmpty() const { return colorWidthTable.isEmpty(); }
  bool IsLayerTableEmpty() const { return layerTable.isEmpty(); }
  bool IsStampNameEmpty() const { return stampName.isEmpty(); }
  bool IsBlankAttributeTextEmpty() const { return blankAttributeText.isEmpty(); }
  bool IsWatermarkEmpty() const { return watermark.isEmpty(); }
  bool IsFormatExtEmpty() const { return formatExt.isEmpty(); }
  bool IsLayoutNameEmpty() const { return layoutName.isEmpty(); }
  bool IsDefaultFontEmpty() const { return defaultFont.isEmpty(); }
  bool IsDefaultItalicFontEmpty() const { return defaultItalicFont.isEmpty(); }
  bool IsbListEmpty() const { return bList.isEmpty(); }
  bool IsRLayersEmpty() const { return rLayers.isEmpty(); }
  bool IsTLayersEmpty() const { return tLayers.isEmpty(); }
  bool IsroomAttEmpty() const { return roomAtt.isEmpty(); }
  bool IsBlockNameEmpty() const { return blockName.isEmpty(); }
  bool IsWatermarkContentEmpty() const { return watermarkContent.isEmpty(); }
  bool IsServerPathEmpty() const { return serverPath.isEmpty(); }
  bool IsWorkspaceFileEmpty() const { return workspaceFile.isEmpty(); }

  // ---- Flags and numbers --------------------------------------------------------------------------
  bool GetDoTooltips() const { return doTooltips; }
  bool GetTooltipsRequested() const { return tooltipsRequested; }
  bool GetBrightnessSet() const { return brightnessSet; }
  double GetBrightness() const { return brightness; }
  bool GetListArea() const { return listArea; }
  bool GetToleranceSet() const { return toleranceSet; }
  bool GetSL() const { return sl; }
  int GetBackground() const { return background; }
  bool GetAutoTrim() const { return autoTrim; }
  bool GetNoTextScale() const { return noTextScale; }
  bool GetProcessGroups() const { return processGroups; }
  bool GetProcessBlocks() const { return processBlocks; }
  bool GetRasterPdf() const { return rasterPdf; }
  int GetColorMode() const { return colorMode; }
  int GetEncoding() const { return encoding; }
  int GetVersion() const { return version; }
  int GetMargin() const { return margin; }
  int GetOrientation() const { return orientation; }
  int GetUnits() const { return units; }
  double GetLineTypeDivisor() const { return lineTypeDivisor; }
  int GetOutputFormat() const { return outputFormat; }
  int GetPrecision() const { return precision; }
  bool GetSubDirectories() const { return subDirectories; }
  bool GetHighResolution() const { return highResolution; }
  int GetWidth() const { return width; }
  int GetHeight() const { return height; }
  bool GetSizeIsDefault() const { return sizeIsDefault; }
  bool GetNoUninit() const { return noUninit; }
  bool GetDecimalComma() const { return decimalComma; }
  bool GetAllLayers() const { return allLayers; }
  int GetPointCircle() const { return pointCircle; }
  int GetQuiet() const { return quiet; }
  int GetRotation() const { return rotation; }
  double GetTolerance() const { return tolerance; }
  int GetDrawingSizeMode() const { return drawingSizeMode; }
  int GetDrawingSize() const { return drawingSize; }
  double GetLineWidthScale() const { return lineWidthScale; }
  double GetLineTypeScale() const { return lineTypeScale; }
  double GetPenWidthScale() const { return penWidthScale; }
  double GetMinLineWidth() const { return minLineWidth; }
  int GetSharpen() const { return sharpen; }
  bool GetStrokeText() const { return strokeText; }
  bool GetListViews() const { return listViews; }
  bool GetBreakByLayer() const { return breakByLayer; }
  bool GetZoomExtents() const { return zoomExtents; }
  int GetViewMode() const { return viewMode; }
  bool GetShortMode() const { return shortMode; }
  bool GetPostfix() const { return postfix; }
  bool GetJSUnicode() const { return jsUnicode; }
  bool GetSaveDwg() const { return saveDwg; }
  bool GetCSVOutput() const { return csvOutput; }
  bool GetOL() const { return olFlag; }
  int GetOverwriteMode() const { return overwriteMode; }
  bool GetRepository() const { return repository; }
  bool GetNetwork() const { return network; }
  int GetColorQuantization() const { return colorQuantization; }
  double GetDashScale() const { return dashScale; }
  double GetSpareReal() const { return spareReal; }
  bool GetSpareFlag() const { return spareFlag; }
  bool GetFlag259() const { return flag259; }
  double GetFontScale() const { return fontScale; }
  bool GetDeny(int flag) const { return flag >= 0 && flag < kDenyFlagCount && deny[flag]; }
  bool GetDenyEdit() const { return deny[kDenyEdit]; }
  bool GetDenyCopy() const { return deny[kDenyCopy]; }
  bool GetDenyPrint() const { return deny[kDenyPrint]; }
  bool GetDenyAnnotate() const { return deny[kDenyAnnotate]; }
  bool GetDenyAssemble() const { return deny[kDenyAssemble]; }
  bool GetDenyHighResolutionPrint() const { return deny[kDenyHighResolutionPrint]; }
  bool GetDenyOpen() const { return deny[kDenyOpen]; }
  bool GetDenySecurity() const { return deny[kDenySecurity]; }
  bool GetDenyFormFilling() const { return deny[kDenyFormFilling]; }
  bool GetDenyAccessSupport() const { return deny[kDenyAccessSupport]; }
  int GetTreatAs() const { return treatAs; }
  double GetHatchScale() const { return hatchScale; }
  const std::vector<WorkspaceBlockRecord>& GetWorkspaceBlocks() const { return workspaceBlocks; }
  bool HasWorkspaceBlocks() const { return !workspaceBlocks.empty(); }
  const std::vector<ParameterVariable>& GetVariables() const { return variables; }
  double GetMaxDash() const { return maxDash; }
  double GetMaxGap() const { return maxGap; }
  int GetStampX() const { return stampX; }
  int GetStampY() const { return stampY; }
  double GetStampSize() const { return stampSize; }
  int GetDPI() const { return dpi; }
  bool GetDPISet() const { return dpiSet; }
  int GetRasterOrientation() const { return rasterOrientation; }
  int GetJpegQuality() const { return jpegQuality; }
  int GetFaxCompression() const { return faxCompression; }
  int GetCCITTCompression() const { return ccittCompression; }
  int GetRasterFormat() const { return rasterFormat; }
  bool GetbListSet() const { return bListSet; }
  bool GetStrictHyperlink() const { return strictHyperlink; }
  bool GetIgnorePoints() const { return ignorePoints; }
  double GetLineSpacing() const { return lineSpacing; }
  bool GetFlag318() const { return flag318; }
  double GetWatermarkHeight() const { return watermarkHeight; }
  double GetWatermarkAngle() const { return watermarkAngle; }
  int GetWatermarkColor() const { return watermarkColor; }

  // ---- Setters the parsers and the entry use ------------------------------------------------------
  void SetOrientation(int value) { orientation = value; }
  void SetFlag259(bool value) { flag259 = value; }
  void SetListArea(bool value) { listArea = value; }
  void SetFontScale(double value) { fontScale = value; }
  void SetRasterFormat(int value) { rasterFormat = value; }
  void SetNodeMap(const OdString& value) { nodeMap = value; }
  void SetTreatAs(int value) { treatAs = value; }
  // The entry's drawing-size adjustment to the units.
  void SetDrawingSizeMode(int value) { drawingSizeMode = value; }

private:
  friend struct ParameterKeywordTables;
  friend struct JsonParameterReader;

  void ResetPerParse();
  void ResetRasterAndView();
  // "real" values: the text when there is one (read with the locale's decimal separator),
  // otherwise the number.
  double RealValue(short number, const OdString& text) const;
  double TextToReal(const OdString& text) const;
  void ProcessLongKeyword(const KeywordValue& value);
  void ProcessTwoLetterKeyword(const KeywordValue& value);
  void ProcessFormatParameter(const KeywordValue& value);
  void ProcessRasterParameter(const KeywordValue& value);
  void ProcessWatermarkParameter(const KeywordValue& value);
  void ProcessDenyList(const OdString& text);
  void ProcessPrecision(const KeywordValue& value);
  void ProcessUnits(const KeywordValue& value);
  void ProcessTreatAs(const OdString& text);
  void ProcessLimitParameter(const KeywordValue& value, double& field, const char* name);
  void SelectFormat(int code, const wchar_t* extension);
  void SetViewSelection(const wchar_t* name, int mode);
  void ApplySubDirectories();

  OdAnsiString codePage;
  bool doTooltips;
  bool tooltipsRequested;
  bool brightnessSet;
  double brightness;
  OdString nodeMap;
  OdString logFileName;
  OdString viewName;
  OdString buildingName;
  OdString floorName;
  OdAnsiString userPassword;
  OdAnsiString masterPassword;
  OdString layersOff;
  OdString layersOn;
  OdString contentHyperlink;
  bool parsedFlag;
  bool listArea;
  OdAnsiString author;
  OdAnsiString keywords;
  OdAnsiString subject;
  OdAnsiString title;
  OdString xrefPath;
  OdString fontPath;
  OdString inputFile;
  OdString outputFile;
  OdString csvFileName;
  OdString ctbFileName;
  OdString rasterPath;
  OdString inputDirectory;
  OdString outputDirectory;
  OdString databaseName;
  OdString colorWidthTable;
  OdString layerTable;
  OdString stampName;
  OdString blankAttributeText;
  OdString watermark;
  OdString formatExt;
  OdString layoutName;
  OdString defaultFont;
  OdString defaultItalicFont;
  OdString bList;
  OdString rLayers;
  OdString tLayers;
  OdString roomAtt;
  std::string regex;
  OdString blockName;
  bool toleranceSet;
  bool sl;
  int background;
  bool autoTrim;
  bool noTextScale;
  bool processGroups;
  bool processBlocks;
  bool rasterPdf;
  int colorMode;
  int encoding;
  int version;
  int margin;
  int orientation;
  int units;
  double lineTypeDivisor;
  int outputFormat;
  int precision;
  bool subDirectories;
  bool highResolution;
  int width;
  int height;
  bool sizeIsDefault;
  bool noUninit;
  bool decimalComma;
  bool allLayers;
  std::string jsonFile;
  int pointCircle;
  int quiet;
  int rotation;
  double tolerance;
  int drawingSizeMode;
  int drawingSize;
  double lineWidthScale;
  double lineTypeScale;
  double penWidthScale;
  double minLineWidth;
  int sharpen;
  bool strokeText;
  bool listViews;
  bool breakByLayer;
  bool zoomExtents;
  int viewMode;
  bool shortMode;
  bool postfix;
  bool jsUnicode;
  bool saveDwg;
  bool csvOutput;
  bool olFlag;
  int overwriteMode;
  bool repository;
  bool network;
  int colorQuantization;
  double dashScale;
  double spareReal;
  bool spareFlag;
  bool flag259;
  double fontScale;
  bool deny[kDenyFlagCount];
  int treatAs;
  OdAnsiString defaultHatch;
  double hatchScale;
  std::vector<WorkspaceBlockRecord> workspaceBlocks;
  std::vector<ParameterVariable> variables;
  double maxDash;
  double maxGap;
  int stampX;
  int stampY;
  double stampSize;
  int dpi;
  bool dpiSet;
  int rasterOrientation;
  int jpegQuality;
  int rasterBitsMode;
  int faxCompression;
  int ccittCompression;
  int rasterReserved;
  int rasterFormat;
  bool bListSet;
  bool strictHyperlink;
  bool ignorePoints;
  double lineSpacing;
  bool flag318;
  OdString watermarkContent;
  double watermarkHeight;
  std::string watermarkX;
  std::string watermarkY;
  double watermarkAngle;
  std::string watermarkFont;
  std::string watermarkAnchor;
  std::string watermarkLayer;
  int watermarkColor;
  std::string watermarkRGB;
  OdString serverPath;
  OdString workspaceFile;
  void* workspaceReserved;
};

// The converter: one per process. It holds every setting of the run, owns the kit from its start
// to its stop, loads the input drawing and dispatches the conversion by output format.
//
// Calling order: constructor; setters; `ready = true`; ReadInputFile; only when that returned 0,
// StartConversion and EndConversion; destructor.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "kit/base/OdString.h"
#include "kit/db/OdDbDatabase.h"
#include "projects/common/ParseCommandLine.h"

class TRANS_BASE2;

// The run's drawing; kit callbacks and drivers reach it without a converter.
extern OdDbDatabasePtr g_pDb;
// Every layer is converted, whatever its state (ALLLAYERS).
extern bool g_AllLayersOn;
// The loaded drawing was imported from DWF.
extern bool g_DwfImported;
// Whether drawings are read partially; every read is whole, so this only travels to the reader.
extern bool g_PartialLoad;
// Several spaces, layouts or views are converted in one run; for the output stage.
extern bool g_MultiView;
// The brightness setting, for the colour handling of the output stage.
extern double g_Brightness;
// Per-view scale factors (drawing units per millimetre times the view's fit scale) in view order,
// and the unit scale of the last view, read by the output stage.
extern std::vector<double> g_ViewScaleFactors;
extern double g_UnitScale;

class CDm2017 {
public:
  CDm2017();
  ~CDm2017();
  CDm2017(const CDm2017&) = delete;
  CDm2017& operator=(const CDm2017&) = delete;

  // 0 when a drawing was loaded (or a raster input converted); see InputLoading.cpp for the rest.
  int ReadInputFile(const OdString& input);
  // 0, or -666 (not ready), -667 (no drawing), -1000 (no route for the format) or a route's code.
  int StartConversion();
  int EndConversion();

  // ---- Settings (every setter returns 0) ----
  int SetTrace(int on);
  int SetLogFileName(const OdString& name);
  int SetCTBFileName(const OdString& v) { ctbFileName = v; return 0; }
  int SetTreatAs(int v) { treatAs = v; return 0; }
  int SetInputFile(const OdString& v);
  int SetInputFile(const char* v);
  int SetOutputFile(const OdString& v);
  int SetOutputFile(const char* v);
  int SetOutputFormat(int v) { outputFormat = v; return 0; }
  int SetOrientation(int v) { orientation = v; return 0; }
  int SetWidth(int64_t v) { width = givenWidth = v; return 0; }
  int SetHeight(int64_t v) { height = givenHeight = v; return 0; }
  int SetMinLineWidth(double v) { minLineWidth = v; return 0; }
  int SetLineWidthScale(double v) { lineWidthScale = v; return 0; }
  int SetLineTypeScale(double v) { lineTypeScale = v; return 0; }
  int SetDashScale(double v) { dashScale = v; return 0; }
  int SetDrawingSize(int v) { drawingSize = v; return 0; }
  int SetDrawingSizeMode(int v) { drawingSizeMode = v; return 0; }
  int SetBackground(int v) { background = v; return 0; }
  int SetMonochrome(bool v) { monochrome = v; return 0; }
  int SetGreyscale(bool v) { greyscale = v; return 0; }
  int SetLayoutName(const OdString& v) { layoutName = v; return 0; }
  int SetViewName(const OdString& v) { viewName = v; return 0; }
  int SetViewMode(int v) { viewMode = v; return 0; }
  int SetUnits(int v);
  int SetAutoTrim(bool v) { autoTrim = v; return 0; }
  int SetNoTextScale(bool v) { noTextScale = v; return 0; }
  int SetFontScale(double v) { fontScale = v; return 0; }
  int SetFlag259(bool v) { flag259 = v; return 0; }
  int SetListArea(bool v) { listArea = v; return 0; }
  int SetMargin(int v) { margin = v; return 0; }
  int SetCSVOutput() { csvOutput = true; return 0; }
  int SetCSVFileName(const OdString& v) { csvFileName = v; return 0; }
  int SetCSVFileName(const char* v);
  int SetAllLayersOn() { g_AllLayersOn = true; return 0; }
  int SetVersion(int v) { version = v; return 0; }
  int SetPrecision(int v) { precision = v; return 0; }
  int SetPostfix() { postfix = true; return 0; }
  int SetRepository() { repository = true; return 0; }
  int SetBreakByLayer(bool v) { breakByLayer = v; return 0; }
  int SetJSUnicode() { jsUnicode = true; return 0; }
  int SetXrefPath(const OdString& v) { xrefPath = v; return 0; }
  int SetFontPath(const OdString& v) { fontPath = v; return 0; }
  int SetDPI(int v) { dpi = v; return 0; }
  int SetIgnoreBlocks() { processBlocks = false; return 0; }
  int SetZoomExtents() { zoomExtents = true; return 0; }
  int SetRLayers(const OdString& v) { roomLayers = v; return 0; }
  int SetTLayers(const OdString& v) { textLayers = v; return 0; }
  int SetLayersOff(const OdString& v);
  int SetLayersOn(const OdString& v) { layersOn = v; return 0; }
  int SetBlockName(const OdString& v) { blockName = v; return 0; }
  int SetContentHyperlink(const OdString& v) { contentHyperlink = v; return 0; }
  int SetRegex(const std::string& v) { regex = v; return 0; }
  int SetBlankAttributeText(const OdString& v) { blankAttributeText = v; return 0; }
  int SetNoUninit(bool v) { noUninit = v; return 0; }
  int SetListViews() { listViews = true; return 0; }
  int SetTolerance(double v) { tolerance = v; toleranceSet = true; return 0; }
  int SetNetwork() { network = true; return 0; }
  int SetDefaultFont(const OdString& v);
  int SetDefaultItalicFont(const OdString& v);
  int SetStrokeText() { strokeText = true; return 0; }
  int SetBrightness(double v) { brightness = v; return 0; }
  int SetSL() { sl = true; return 0; }
  int SetWorkspaceBlocks(const std::vector<WorkspaceBlockRecord>& v) { workspaceBlocks = v; return 0; }
  int SetJSONFile(const std::string& v) { jsonFile = v; return 0; }
  int SetDoTooltips();
  int SetPointCircle(int v) { pointCircle = v; return 0; }
  int SetFlag318(bool v) { watermarkEnabled = v; return 0; }
  int SetWatermarkContent(const OdString& v) { watermarkContent = v; return 0; }
  int SetWatermarkHeight(double v) { watermarkHeight = v; return 0; }
  int SetWatermarkX(const std::string& v) { watermarkX = v; return 0; }
  int SetWatermarkY(const std::string& v) { watermarkY = v; return 0; }
  int SetWatermarkAngle(double v) { watermarkAngle = v; return 0; }
  int SetWatermarkFont(const std::string& v) { watermarkFont = v; return 0; }
  int SetWatermarkAnchor(const std::string& v) { watermarkAnchor = v; return 0; }
  int SetWatermarkLayer(const std::string& v) { watermarkLayer = v; return 0; }
  int SetWatermarkColor(int v) { watermarkColor = v; return 0; }
  int SetWatermarkRGB(const std::string& v) { watermarkRGB = v; return 0; }

  // ---- Getters (strings are copies) ----
  int GetOutputFormat() const { return outputFormat; }
  int GetInputKind() const { return inputKind; }
  OdString GetInputFile() const { return inputFile; }
  OdString GetOutputFile() const { return outputName; }
  OdString GetBaseOutputName() const { return baseOutputName; }
  int GetUnits() const { return units; }
  double GetUnitFactor() const { return unitFactor; }
  int64_t GetWidth() const { return width; }
  int64_t GetHeight() const { return height; }
  int64_t GetGivenWidth() const { return givenWidth; }
  int64_t GetGivenHeight() const { return givenHeight; }
  OdString GetLayersOff() const { return layersOff; }
  OdString GetLayersOn() const { return layersOn; }
  OdAnsiString GetDefaultFont() const { return defaultFont; }
  OdAnsiString GetDefaultItalicFont() const { return defaultItalicFont; }
  // Copies the font path into `path`; true when there is one.
  bool GetFontPath(OdString& path) const { path = fontPath; return !fontPath.isEmpty(); }
  bool HasLogFile() const { return !logFileName.isEmpty(); }
  const std::map<OdString, bool>& GetLayerVisibility() const { return layerVisibility; }
  const std::set<OdString>& GetViewNames() const { return viewNames; }
  const std::set<OdString>& GetLayoutNames() const { return layoutNames; }

  // Prints the fonts the drawing's text styles name and where they were found.
  void ReportUsedFonts();
  // Writes the CSV layer list for `name` (the CSV file name when one was given); a file that
  // cannot be opened yields no list and no message.
  void WriteCSVLayerList(const OdString& name);

  // ---- View selection and sizing ----
  // True when the block has no entities; a layout that does not exist counts as empty.
  bool IsModelSpaceEmpty() const;
  bool IsPaperSpaceEmpty() const;
  bool IsLayoutEmpty(const OdString& name) const;
  // Sets width, height, viewWidth, viewHeight and viewActive from the view's size in drawing units.
  void ComputeViewSize(double viewWidth, double viewHeight);
  double GetViewWidth() const { return viewWidth; }
  double GetViewHeight() const { return viewHeight; }
  bool IsViewActive() const { return viewActive; }
  int GetViewMode() const { return viewMode; }
  OdString GetLayoutName() const { return layoutName; }
  OdString GetViewName() const { return viewName; }

  // ---- Preprocessing, watermark and layer switching ----
  // Fills block attributes from the workspace records and re-points external references.
  void PreprocessFile();
  // Adds the watermark text to model space when it applies to this view. Returns 0.
  int ProcessWatermark(const OdString& viewName, OdDbDatabase* database);
  // Switch the layers of the LOFF / LON lists, or every layer; the run does not call them.
  int SetLayersOff();
  int SetLayersOn();
  int SetAllLayersOff();
  // Every layer of the drawing on (SetAllLayersOn is the ALLLAYERS setting).
  int SwitchAllLayersOn();

  bool ready = false;

protected:
  // Chooses the spaces, layouts and views of the view mode and converts each through ConvertView.
  int Convert();
  // One output file; 0 or negative. Virtual so that a test can watch the view selection.
  virtual int ConvertView(const OdString& name, int kind, bool first);
  // Gives the converter an output driver it then owns (tests of the view selection).
  void UseOutputDriver(TRANS_BASE2* driver);
  // Gives an empty layout one viewport that shows the model extents.
  void CreateModelSpaceViewport(OdDbLayout* layout);

private:
  // Steps of Convert (ViewSelection.cpp).
  struct ConvertFlags;
  int ChooseWorkFlags(ConvertFlags& flags);
  void RegisterOutputNames(ConvertFlags& flags, const OdString& extension);
  // Lists every file of a multi-file run in the driver's page list before the first is written,
  // so that each file can name all of them.
  void RegisterPages(const ConvertFlags& flags, const OdString& extension);
  // The empty-layout rule without its messages or its repair: true when the layout gets a file.
  bool LayoutGetsFile(const OdString& name) const;
  int ConvertSpecific(bool firstLayoutSearch, const OdString& strippedName);
  // The empty-layout rule: false when the layout is skipped.
  bool AcceptEmptyLayout(OdDbLayout* layout);

  // The drawing context and vectorization device of a vector run; 0 when they are ready.
  int StartVectorization();
  void EndVectorization();
  void RunConvert();
  // View set-up and vectorization of one view.
  int ConvertToVectorByView(const OdString& name);
  int SetView();
  void ProcessModelSpace(const OdString& viewName);
  void ProcessPaperSpace(const OdString& layoutName);
  void RefreshLayerLists();
  void HandOverSettings(int format);
  void ReportLayerStates();
  int SetViewForLayout();

  // Input loading routes.
  void PrepareFileLookup(const OdString& input);
  int LoadByRoute(const OdString& input, const OdString& extension);
  void OpenDrawing(const OdString& path);
  void RecoverDrawing(const OdString& path);
  void ReadThroughTemporaryName(const OdString& path);
  void ImportDwf(const OdString& input);
  void ImportPdf(const OdString& input);
  int ImportDgn(const OdString& input);
  void SaveImportedDrawing(const OdDbDatabasePtr& database);
  int CollectDrawingTables();

  // Output routes.
  int ConvertToRaster(int format);
  int ConvertToVector(int format);
  bool ConvertRasterInput(const OdString& inputPath);
  int WriteDrawingFile(int kind, int fileVersion);

  void RestoreStandardOutput();

  std::string jsonFile;
  int pointCircle = 0;
  double dashScale = 0.02;
  double minLineWidth = 0.3;
  double lineWidthScale = 1.0;
  double lineTypeScale = 0.0;
  bool noUninit = true;
  bool breakByLayer = false;
  bool toleranceSet = false;
  double tolerance = 0.1;
  bool flag259 = false;
  bool listArea = false;
  double fontScale = 0.0;
  int inputKind = 0;
  OdString inputFile, outputName, baseOutputName;
  OdString layoutName, viewName, xrefPath, fontPath;
  OdString logFileName, csvFileName, ctbFileName, blankAttributeText;
  bool listViews = false;
  bool repository = false;
  int viewMode = 0;
  int version = 0;
  int outputFormat = 0;
  int64_t height = 0, width = 0, givenHeight = 0, givenWidth = 0;
  bool autoTrim = false;
  bool csvOutput = false;
  bool noTextScale = true;
  bool zoomExtents = false;
  bool zoomExtentsPaper = false;
  int precision = 2;
  int rasterMaxSize = 15000;
  int margin = 18;
  TRANS_BASE2* outputDriver = nullptr;
  std::streambuf* savedStdoutBuffer = nullptr;
  int treatAs = 0;
  OdString roomLayers, textLayers, layersOff, layersOn;
  std::string regex;
  OdString blockName;
  bool jsUnicode = false;
  bool postfix = false;
  OdAnsiString defaultFont, defaultItalicFont;
  bool skipConversion = false;
  bool sl = false;
  int paletteSize = 0;
  const uint32_t* palette = nullptr;
  int background = 0;
  bool monochrome = false;
  bool greyscale = false;
  int dpi = 0;
  int dpiAlt = 0;
  int units = 0;
  double unitFactor = 1.0;
  int orientation = 0;
  int drawingSize = 0;
  int drawingSizeMode = 0;
  bool viewActive = false;
  double viewWidth = 0.0, viewHeight = 0.0;
  bool processBlocks = true;
  bool strokeText = false;
  bool doTooltips = false;
  double brightness = 0.0;
  bool network = false;
  std::map<OdString, bool> layerVisibility;  // layer name -> visible when loaded
  std::set<OdString> viewNames, layoutNames;
  OdDbDatabasePtr importedDgnDb, importedPdfDb;
  OdString contentHyperlink;
  std::vector<WorkspaceBlockRecord> workspaceBlocks;
  bool watermarkEnabled = false;
  OdString watermarkContent;
  double watermarkHeight = 0.0;
  std::string watermarkX, watermarkY, watermarkFont, watermarkAnchor, watermarkLayer, watermarkRGB;
  double watermarkAngle = 0.0;
  int watermarkColor = 0;
};

// TRANS_BASE2: the abstract output driver. The vectorizer pours the primitives of a view into it
// (per view, per layer, per colour group, or per node group while a block group is open); a writer
// derived from it (DRAWSVG, DRAWPDF) reads the collections in OutputDrawing and writes its files.
//
// Source files by concern:
//   TransBase2.cpp           slots, fields, setters, views, p2x/p2y
//   ColorTable.cpp           colour table, palette mode, colour names, SetColor, lookup by RGB
//   PrimitiveCollection.cpp  Draw/Add operations, texts, node groups, SetAttributes
//   FontMap.cpp              font map and unmapped-font files, fontconfig lookups
//   LayerNames.cpp           layer name standardization
//   RoomLinking.cpp          room outlines linked to their labels, ".rl" report
#pragma once

#include <cstdint>
#include <deque>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "kit/base/Geometry.h"
#include "kit/base/OdString.h"

// Axis-aligned 2D box. A box is empty until the first point extends it.
struct DrvBox {
  double minX = 0.0;
  double minY = 0.0;
  double maxX = 0.0;
  double maxY = 0.0;
  bool empty = true;

  double width() const { return maxX - minX; }
  double height() const { return maxY - minY; }
  void extend(double x, double y);
  void clear() { *this = DrvBox(); }
  void widenIfFlat();
};

// One colour table entry (components 0..255).
struct DrvRgb {
  std::uint16_t red = 0;
  std::uint16_t green = 0;
  std::uint16_t blue = 0;

  bool operator==(const DrvRgb&) const = default;
};

// ---- Collected primitives ------------------------------------------------------------------------

// Common part of every stroked record.
struct DrvStroke {
  bool hasWidth = false;          // width (or line weight) > 0
  OdString lineTypeName;          // as the vectorizer named it ("CONTINUOUS" when solid)
  double lineTypeScale = 1.0;     // always 1.0: dashes arrive already cut by the kit
  double width = 0.0;             // hundredths of an output unit (see CollectedStrokeWidth)
  int lineWeight = 0;             // line-weight index: the line weight in 1/100 mm (0 for geometric widths)
  bool absoluteWidth = false;     // width is in drawing units and still to be scaled by the writer
  int colorIndex = 7;
  std::string handle;             // entity handle as hexadecimal text; may be empty
  bool hasHandle = false;         // the record's layer writes handles
};

struct DrvPolyline : DrvStroke {
  std::vector<OdGePoint2d> points;
  std::string roomId;             // label text linked by room linking; empty when none
  int closedKind = 0;             // 1 = closed (first point equals last, more than three points)
  double area = 0.0;              // > 0 for closed outlines
  int pathStyle = 0;              // passed through from the vectorizer
};

struct DrvLine : DrvStroke {
  OdGePoint2d start;
  OdGePoint2d end;
};

// Arc: counter-clockwise from startAngle to endAngle (degrees); start/end are the end points.
struct DrvArc : DrvStroke {
  OdGePoint2d center;
  double radius = 0.0;
  double startAngle = 0.0;
  double endAngle = 0.0;
  OdGePoint2d start;
  OdGePoint2d end;
};

// Circle (isEllipse false, radiusX == radiusY) or ellipse with its rotation in degrees.
struct DrvCircle : DrvStroke {
  OdGePoint2d center;
  double radiusX = 0.0;
  double radiusY = 0.0;
  double rotation = 0.0;
  bool isEllipse = false;
  bool filled = false;
  double opacity = 1.0;
};

// Filled area: a closed boundary painted in the group's colour.
struct DrvFill {
  std::vector<OdGePoint2d> points;
  std::string handle;
  int colorIndex = 7;
};

// Stored text (one element of a font group).
struct DrvText {
  OdGePoint2d position;           // insertion point, already times the coordinate scale
  OdString text;                  // content after rewriting ("\u" escapes, backslashes doubled)
  double rotation = 0.0;          // degrees, counter-clockwise
  double widthFactor = 0.9;
  int decoration = 0;             // 0 none, 1 underline, 2 line-through, 3 overline
  bool bold = false;
  bool italic = false;
  OdString layerName;
  int colorIndex = 7;
  std::string handle;
  std::string attributeTag;       // non-empty for block attribute values
  std::string blockHandle;
  bool invisible = false;
};

// The texts of one font name and height within a colour group.
struct DrvFontGroup {
  std::string fontName;
  double height = 0.0;
  bool written = false;
  std::vector<DrvText> texts;
};

struct DrvImage {
  OdString fileName;              // PNG file placed into the drawing
  std::int64_t pixelWidth = 0;
  std::int64_t pixelHeight = 0;
  std::vector<OdGePoint2d> clipPoints;  // empty: no clip boundary; two points: a rectangle
  int mode = 0;
  double minX = 0.0;
  double minY = 0.0;
  double maxX = 0.0;
  double maxY = 0.0;
  double rotation = 0.0;          // degrees, about (minX, minY)
  bool mirrored = false;          // flipped across the bottom edge before the rotation
  int colorIndex = 7;
};

// All primitives of one colour within a layer, one list per kind in the order the writers visit.
struct DrvColorGroup {
  int colorIndex = 7;
  std::vector<DrvPolyline> polylines;
  std::vector<DrvLine> lines;
  std::vector<DrvArc> arcs;
  std::vector<OdGePoint2d> points;
  std::vector<DrvFill> fills;
  std::vector<DrvCircle> circles;   // circles and ellipses
  std::deque<DrvFontGroup> fontGroups;
  std::vector<DrvImage> images;

  bool isEmpty() const;
};

struct DrvLayer {
  OdString name;                  // standardized by StandardizeLayerNames before writing
  OdString originalName;          // the name as the drawing gave it (also the map key)
  int color = 7;                  // layer colour from SetLayer
  bool roomLayer = false;         // set by room linking
  std::deque<DrvColorGroup> colorGroups;  // in creation order

  DrvColorGroup* findColorGroup(int colorIndex);
  DrvColorGroup& colorGroup(int colorIndex);  // found or appended
  bool isEmpty() const;
};

using DrvLayerMap = std::map<OdString, DrvLayer>;

// A block opened by BeginGroup: its primitives are kept per layer of its own.
struct DrvNodeGroup {
  OdString name;
  std::string handle;
  OdString linkText;
  OdString linkTarget;
  DrvLayerMap layers;
};

// Room label made by AddRoomLabel instead of drawing a text.
struct DrvRoomLabel {
  std::string text;               // UTF-8
  OdGePoint2d position;
};

// Hyperlink entry: the records drawn while a link was set.
struct DrvLink {
  OdString linkText;              // target address
  OdString linkName;
  int kind = 2;                   // 1 set inside an open group, 2 otherwise
  std::vector<DrvPolyline> polylines;
  std::vector<DrvLine> lines;
  std::vector<DrvArc> arcs;
  std::vector<DrvCircle> circles;
};

// Page list entry (multi-page metadata).
struct DrvPage {
  OdString pageName;
  OdString fileName;              // without directory
};

// View kinds.
enum DrvViewKind { kViewLastSaved = 0, kViewModelSpace = 1, kViewPaperSpace = 2, kViewLayout = 3, kViewNamed = 4 };

// What a view's file adds to the run's base name when it is not the run's first file:
// "__ModelSpace", or "__Layout01", "__View01"... numbered by the two counters, which it advances.
OdString ViewFileSuffix(int kind, int& layoutCounter, int& viewCounter);

// One converted view (model space, paper space, layout or named view) and its collections.
struct DrvView {
  OdString name;
  int kind = 0;
  const void* viewObject = nullptr;   // the layout or view the converter converts
  DrvBox pageExtents;                 // E2 when the view was stored
  DrvBox svgExtents;                  // E1 when the view was stored
  double worldLLx = 0.0;
  double worldLLy = 0.0;
  double worldURx = 0.0;
  double worldURy = 0.0;
  bool hasWorldExtents = false;

  DrvLayerMap layers;
  std::deque<DrvNodeGroup> nodeGroups;
  std::vector<DrvRoomLabel> roomLabels;

  // Empty when the page extents have no positive width or height.
  bool isEmpty() const;
  void clearCollections();
};

// What the vectorizer hands to DrawText for a text drawn as text.
struct TextRecord {
  std::string fontName = "Arial";
  std::string fontFile;           // the drawing's font file (SHX or TrueType), when it names one
  OdGePoint2d position;
  OdString text;                  // with the kit's "\U+XXXX" escapes
  double height = 0.0;
  double widthFactor = 0.9;
  double rotation = 0.0;          // degrees
  double oblique = 0.0;
  bool bold = false;
  bool italic = false;
  int decoration = 0;             // 0 none, 1 underline, 2 line-through, 3 overline
  std::string attributeTag;
  std::string blockHandle;
  bool invisible = false;
};

// The text content as the viewer reads it: "%2E" file extensions restored, the kit's "\U+XXXX"
// escapes written "\uXXXX", every other backslash doubled.
OdString RewriteTextContent(const OdString& content);

// ---- The driver ----------------------------------------------------------------------------------

class TRANS_BASE2 {
public:
  TRANS_BASE2();
  TRANS_BASE2(const TRANS_BASE2&) = delete;
  TRANS_BASE2& operator=(const TRANS_BASE2&) = delete;

  // The 16 virtual slots, in slot order.
  virtual int BeginConversion();                                     // 0: 1
  virtual int EndConversion();                                       // 1: 1
  virtual int OutputDrawing(bool keepFirstName);                     // 2: 1
  virtual int HasFinalOutput();                                      // 3: 0
  virtual int FixOutputName(OdString& outputName);                   // 4: 1, name unchanged
  virtual void WriteWrapperPage();                                   // 5: nothing
  virtual int StartPageFile();                                       // 6: 0
  virtual void SetHyperlink(const OdString& linkText, const OdString& linkName, bool inGroup);  // 7
  virtual void ClearHyperlink();                                     // 8
  virtual double GetViewLineWeight();                                // 9: 1.0
  virtual double GetStrokeWidth(double width, int lineWeightIndex, bool absolute);  // 10: 1.0
  virtual int QueryCapability11();                                   // 11: 0
  virtual int QueryCapability12();                                   // 12: 0
  virtual int AcceptsTrueColors();                                   // 13: 0 (nearest colour)
  virtual int GetFormatCode();                                       // 14: 0
  virtual int QueryCapability15();                                   // 15: 1
  // Writes the unmapped-font file back.
  virtual ~TRANS_BASE2();

  // ---- Setters and getters (TransBase2.cpp) ----
  void SetDoTooltips();
  bool GetDoTooltips() const { return m_doTooltips; }
  void SetInputFileName(const OdString& name);
  const OdString& GetInputFileName() const { return m_inputFileName; }
  void SetOutputFileName(const OdString& name);
  const OdString& GetOutputFileName() const { return m_outputFileName; }
  const OdString& GetOutputStem() const { return m_outputStem; }
  // The HTML page's own file name; empty: beside the SVG file with ".htm".
  void SetWrapperPageName(const OdString& name) { m_wrapperPageName = name; }
  void SetLineWidthScale(double scale);
  double GetLineWidthScale() const { return m_lineWidthScale; }
  void SetPageSize(double a, double b, double c, double d, double e, double f, double g);
  bool HasExplicitOrigin() const { return m_explicitOrigin; }
  double GetGlobalOriginX() const { return m_globalOriginX; }
  double GetGlobalOriginY() const { return m_globalOriginY; }
  const double* GetPaperValues() const { return m_paperValues; }
  void SetWorldExtents(double llx, double lly, double urx, double ury);
  bool GetWorldExtents(double& llx, double& lly, double& urx, double& ury) const;
  void SetBackgroundColor(int index) { m_backgroundColor = index; }
  // The page colour the run asked for; every new file starts with it.
  void SetPageBackground(int index) { m_pageBackground = index; m_backgroundColor = index; }
  int GetBackgroundColor() const { return m_backgroundColor; }
  bool BackgroundIsBlack() const;
  void SetPrecision(int decimals) { m_precision = decimals; }
  int GetPrecision() const { return m_precision; }
  void SetMinLineWidth(double width) { m_minLineWidth = width; }
  double GetMinLineWidth() const { return m_minLineWidth; }
  void SetMinWidthLow(double width) { m_minWidthLow = width; }
  double GetMinWidthLow() const { return m_minWidthLow; }
  double GetMinWidthHigh() const { return m_minWidthHigh; }
  void SetDashScale(double scale) { m_dashScale = scale; }
  double GetDashScale() const { return m_dashScale; }
  void SetUnitsName(const std::string& units) { m_unitsName = units; }
  const std::string& GetUnitsName() const { return m_unitsName; }
  void SetBuildingName(const std::string& name) { m_buildingName = name; }
  const std::string& GetBuildingName() const { return m_buildingName; }
  void SetFloorName(const std::string& name) { m_floorName = name; }
  const std::string& GetFloorName() const { return m_floorName; }
  void SetGeneratorName(const std::string& name) { m_generatorName = name; }
  const std::string& GetGeneratorName() const { return m_generatorName; }
  void SetOutputVersion(int version) { m_outputVersion = version; }
  int GetOutputVersion() const { return m_outputVersion; }
  void SetDrawingWidth(std::int64_t width);
  void SetDrawingHeight(std::int64_t height);
  std::int64_t GetDrawingWidth() const { return m_drawingWidth; }
  std::int64_t GetDrawingHeight() const { return m_drawingHeight; }
  bool IsDrawingSizeSet() const { return m_drawingSizeSet; }
  // ";"-separated lists; empty pieces are dropped.
  void SetRoomLayers(const std::string& list);
  void SetTextLayers(const std::string& list);
  void SetLayersOff(const std::string& list);
  void SetLayersOn(const std::string& list);
  void SetBlockNames(const std::string& list);
  void SetBlockLayers(const std::string& list);
  const std::vector<std::string>& GetRoomLayers() const { return m_roomLayers; }
  const std::vector<std::string>& GetTextLayers() const { return m_textLayers; }
  const std::vector<std::string>& GetLayersOff() const { return m_layersOff; }
  const std::vector<std::string>& GetLayersOn() const { return m_layersOn; }
  const std::vector<std::string>& GetBlockNames() const { return m_blockNames; }
  const std::vector<std::string>& GetBlockLayers() const { return m_blockLayers; }
  // Layers found off or frozen in the drawing (UTF-8 names).
  void AddOffLayer(const std::string& name) { m_offLayerSet.insert(name); }
  void AddFrozenLayer(const std::string& name) { m_frozenLayerSet.insert(name); }
  const std::set<std::string>& GetOffLayerSet() const { return m_offLayerSet; }
  const std::set<std::string>& GetFrozenLayerSet() const { return m_frozenLayerSet; }
  void AddHandleLayer(const OdString& name) { m_handleLayers.insert(name); }
  const std::set<OdString>& GetHandleLayers() const { return m_handleLayers; }
  void AddInputLayerName(const OdString& name) { m_inputLayerNames.push_back(name); }
  const std::vector<OdString>& GetInputLayerNames() const { return m_inputLayerNames; }
  // Keeps the file name after the last "/" or backslash of the path.
  void AddPage(const OdString& pageName, const OdString& filePath);
  const std::vector<DrvPage>& GetPages() const { return m_pages; }
  // Space or layout name -> output name, so written files can refer to each other.
  void AddOutputNameMapping(const OdString& spaceName, const OdString& outputName);
  const std::map<OdString, OdString>& GetOutputNameMap() const { return m_outputNameMap; }

  // Flags.
  void SetRoomLabels(bool on) { m_roomLabels = on; }
  bool GetRoomLabels() const { return m_roomLabels; }
  void SetBreakByLayer(bool on) { m_breakByLayer = on; }
  bool GetBreakByLayer() const { return m_breakByLayer; }
  void SetPostfix(bool on) { m_postfix = on; }
  bool GetPostfix() const { return m_postfix; }
  void SetJSUnicode(bool on) { m_jsUnicode = on; }
  bool GetJSUnicode() const { return m_jsUnicode; }
  bool IsPaletteLoaded() const { return m_paletteLoaded; }
  void SetNoTextScale(bool on) { m_noTextScale = on; }
  bool GetNoTextScale() const { return m_noTextScale; }
  void SetGreyRow(bool on) { m_greyRow = on; }
  bool GetGreyRow() const { return m_greyRow; }
  void SetListArea(bool on) { m_listArea = on; }
  bool GetListArea() const { return m_listArea; }
  void SetRepository(bool on) { m_repository = on; }
  bool GetRepository() const { return m_repository; }
  void SetCsvOutput(bool on) { m_csvOutput = on; }
  bool GetCsvOutput() const { return m_csvOutput; }
  void SetNoBlocks(bool on) { m_noBlocks = on; }
  bool GetNoBlocks() const { return m_noBlocks; }
  void SetFlag259(bool on) { m_flag259 = on; }
  bool GetFlag259() const { return m_flag259; }
  void SetWhiteBackground(bool on) { m_whiteBackground = on; }
  bool GetWhiteBackground() const { return m_whiteBackground; }
  // Further converter settings handed over as they are.
  void SetColorMode(int mode) { m_colorMode = mode; }      // 1 monochrome, 2 greyscale
  int GetColorMode() const { return m_colorMode; }
  void SetInputKind(int kind) { m_inputKind = kind; }
  int GetInputKind() const { return m_inputKind; }
  void SetMargin(int margin) { m_margin = margin; }
  int GetMargin() const { return m_margin; }
  void SetBrightness(double brightness) { m_brightness = brightness; }
  double GetBrightness() const { return m_brightness; }
  void SetOrientation(int orientation) { m_orientation = orientation; }
  int GetOrientation() const { return m_orientation; }
  void SetPointCircle(int mode) { m_pointCircle = mode; }
  int GetPointCircle() const { return m_pointCircle; }
  void SetJSONFile(const std::string& name) { m_jsonFile = name; }
  const std::string& GetJSONFile() const { return m_jsonFile; }
  void SetRegex(const std::string& regex) { m_regex = regex; }
  const std::string& GetRegex() const { return m_regex; }
  void SetContentHyperlink(const OdString& link) { m_contentHyperlink = link; }
  const OdString& GetContentHyperlink() const { return m_contentHyperlink; }
  void SetBlankAttributeText(const OdString& text) { m_blankAttributeText = text; }
  const OdString& GetBlankAttributeText() const { return m_blankAttributeText; }
  void SetLineTypeScale(double scale) { m_lineTypeScale = scale; }
  double GetLineTypeScale() const { return m_lineTypeScale; }
  // Texts lower than this (after the coordinate scale) are dropped.
  void SetTolerance(double tolerance) { m_tolerance = tolerance; }
  double GetTolerance() const { return m_tolerance; }
  void SetFontScale(double scale) { m_fontScale = scale; }
  double GetFontScale() const { return m_fontScale; }
  void SetFontPath(const OdString& path) { m_fontPath = path; }
  const OdString& GetFontPath() const { return m_fontPath; }
  void SetDefaultFontName(const std::string& name) { m_defaultFontName = name; }
  const std::string& GetDefaultFontName() const { return m_defaultFontName; }
  void SetDefaultItalicFontName(const std::string& name) { m_defaultItalicFontName = name; }
  const std::string& GetDefaultItalicFontName() const { return m_defaultItalicFontName; }
  // Multiplies incoming coordinates and text heights.
  void SetUnitScale(double scale) { m_unitScale = scale; }
  double GetUnitScale() const { return m_unitScale; }
  double GetPointTolerance() const { return m_pointTolerance; }
  void SetPointTolerance(double tolerance) { m_pointTolerance = tolerance; }
  void SetCurrentHandle(const std::string& handle) { m_currentHandle = handle; }
  const std::string& GetCurrentHandle() const { return m_currentHandle; }
  const OdString& GetHyperlinkText() const { return m_hyperlinkText; }
  const OdString& GetHyperlinkName() const { return m_hyperlinkName; }
  const OdString& GetLineTypeName() const { return m_lineTypeName; }

  // ---- Views (TransBase2.cpp) ----
  // Makes the named view current, appending it when new. Returns 0.
  int DefineView(const OdString& name, int kind, const void* viewObject = nullptr);
  // Copies the world extents (when set), E2 and E1 into the current view entry.
  void StoreViewExtents();
  // Loads E2 and E1 from a view entry.
  void SelectView(const DrvView& view);
  DrvView* GetCurrentView() { return m_currentView; }
  std::deque<DrvView>& GetViews() { return m_views; }
  const std::deque<DrvView>& GetViews() const { return m_views; }
  // The per-view output step: stores the view extents and calls OutputDrawing. Returns its result.
  int OutputView(bool keepFirstName);
  // Per-view clean-up after output: empties the current view's collections (and its page extents,
  // so that later passes over the view list skip it as empty).
  void ClearViewState();
  // Clears per-file state between files (writers call it from their own ResetFile).
  void ResetFile();
  const DrvBox& GetSvgExtents() const { return m_svgExtents; }     // E1
  const DrvBox& GetPageExtents() const { return m_pageExtents; }   // E2
  void SetSvgExtents(const DrvBox& box) { m_svgExtents = box; }
  void SetPageExtents(const DrvBox& box) { m_pageExtents = box; }
  // Widens the extents by the box a text covers.
  void ExtendTextExtents(const DrvText& text, double height, std::size_t characters);

  // Coordinate text with the configured precision; the returned buffer is overwritten by the
  // next call.
  const char* p2x(double x);
  const char* p2y(double y);
  long GetP2xCount() const { return m_p2xCount; }
  long GetP2yCount() const { return m_p2yCount; }
  void ResetCoordinateCounters() { m_p2xCount = 0; m_p2yCount = 0; }

  // ---- Colours (ColorTable.cpp) ----
  // Name of a colour table entry: "black", "white", ... or "rgb(r,g,b)". Shared result storage.
  const char* ColorName(int index) const;
  void SetPalette(int palette);                 // 1000 loads the built-in 256-entry palette
  int GetPalette() const { return m_palette; }
  void LoadPalette(const std::vector<DrvRgb>& entries);
  int GetPaletteWhiteIndex() const { return m_paletteWhite; }
  int GetPaletteBlackIndex() const { return m_paletteBlack; }
  void DefineColor(int index, int red, int green, int blue);   // index 0..255
  void SetColor(int index);
  // Finds (or, when AcceptsTrueColors, adds) the colour and selects it; nearest entry otherwise.
  // Returns the index selected, negative when the table is empty.
  int SetColorRGB(int red, int green, int blue);
  int GetColorIndex() const { return m_currentColor; }
  int GetPreviousColorIndex() const { return m_previousColor; }
  const std::vector<DrvRgb>& GetColorTable() const { return m_colorTable; }
  int GetColorCount() const { return m_colorCount; }
  // Colour indices used by primitives, with a use count.
  const std::map<int, int>& GetUsedColors() const { return m_usedColors; }
  void SetFirstColor7Pending(bool pending) { m_firstColor7Pending = pending; }

  // ---- Line types ----
  void DefineLineType(const OdString& name, const std::vector<double>& dashes);
  // Case-insensitive; false when unknown.
  bool FindLineType(const OdString& name, std::vector<double>& dashes) const;
  const std::map<OdString, std::vector<double>>& GetLineTypes() const { return m_lineTypes; }
  std::set<OdString>& GetSolidLineTypes() { return m_solidLineTypes; }
  std::set<OdString>& GetFixedWidthLineTypes() { return m_fixedWidthLineTypes; }

  // ---- Primitive collection (PrimitiveCollection.cpp) ----
  void SetLayer(const OdString& layerName, int layerColor);
  const OdString& GetCurrentLayerName() const { return m_currentLayerName; }
  const std::string& GetNodeId() const { return m_nodeId; }
  bool IsLayerChanged() const { return m_layerChanged; }
  void SetAttributes();
  void SetAttributes(bool flag1, bool flag2);
  void SetPathAttributes(bool flag);
  // Each Draw operation returns 1 when the primitive was stored, 0 when dropped.
  int DrawLine(const OdString& lineTypeName, bool isContinuous, int widthIsGeometric, double x1, double y1,
               double x2, double y2, double lineTypeScale, double lineWidth);
  int DrawPolyline(const std::vector<OdGePoint2d>& points, bool filled, int pathStyle,
                   const OdString& lineTypeName, bool isContinuous, int widthIsGeometric, double lineTypeScale,
                   double lineWidth);
  int DrawArc(const OdString& lineTypeName, bool isContinuous, int widthIsGeometric, double centerX,
              double centerY, double radius, double startAngle, double endAngle, double lineTypeScale,
              double lineWidth);
  int DrawCircle(bool filled, const OdString& lineTypeName, bool isContinuous, int widthIsGeometric,
                 double centerX, double centerY, double radius, double lineTypeScale, double lineWidth);
  int DrawEllipse(bool filled, const OdString& lineTypeName, bool isContinuous, int widthIsGeometric,
                  double centerX, double centerY, double radiusX, double radiusY, double rotation,
                  double lineTypeScale, double lineWidth);
  int DrawDot(double x, double y);
  int DrawText(const TextRecord& record);
  int AddRoomLabel(const std::string& labelText, double x, double y);
  int DrawEmbeddedImage(const OdString& fileName, std::int64_t pixelWidth, std::int64_t pixelHeight,
                        const std::vector<OdGePoint2d>& clipPoints, int mode, double minX, double minY,
                        double maxX, double maxY, double rotation = 0.0, bool mirrored = false);
  // Complete a prepared record (width flag, line type, width, line weight, current colour) and
  // append it to the current colour group (and the current link entry).
  void AddLine(DrvLine& record, const OdString& lineTypeName, double width, int lineWeight, bool absolute);
  void AddArc(DrvArc& record, const OdString& lineTypeName, double width, int lineWeight, bool absolute);
  void AddPolyline(DrvPolyline& record, const OdString& lineTypeName, double width, int lineWeight,
                   bool absolute);
  void AddEntity(DrvCircle& record, const OdString& lineTypeName, double width, int lineWeight, bool absolute);
  void BeginGroup(const OdString& name);
  void EndGroup(const OdString& name);
  bool IsInGroup() const { return m_inGroup; }
  void SetFont(const std::string& fontName, double height);
  // The vectorizer starts every point list here. These writers build no path across point lists, so
  // nothing is forgotten: the duplicate-line ring lives on until the file or the view is reset, and
  // a segment handed again by the next list (the same line drawn twice) is still dropped.
  void ResetPendingPath() {}
  DrvLayer* GetCurrentLayer() { return m_currentLayer; }
  DrvColorGroup* GetCurrentColorGroup() { return m_currentGroup; }
  // Read by the vectorizer: stroke every text; lone points are not drawn as dots.
  bool strokeAllText = false;
  bool arcHandled = false;

  // ---- Fonts (FontMap.cpp) ----
  void ReadFontMap();
  void ReadUnmappedFonts();
  void WriteUnmappedFonts() const;
  bool IsStrokeFont(const std::string& lowerCaseName) const;
  // Output font for a drawing font; empty when the map has none.
  std::string MapFontName(const std::string& fontName) const;
  // The font a text is written in: the font map's entry for its font file (with or without
  // extension), else for its font name, in any case; else its font name.
  std::string OutputFontFor(const TextRecord& record) const;
  void AddUnmappedFont(const std::string& fontName) { m_unmappedFonts.insert(fontName); }
  const std::map<std::string, std::string>& GetFontMap() const { return m_fontMap; }
  const std::set<std::string>& GetStrokeFonts() const { return m_strokeFonts; }
  const std::set<std::string>& GetUnmappedFonts() const { return m_unmappedFonts; }
  // System font file of the named font through fontconfig; empty when none (cached per name).
  std::string FindSystemFontFile(const std::string& fontName);
  static std::string LookupSystemFontFile(const std::string& fontName);
  static std::string BestMatchFontFile(const std::string& fontName);

  // ---- Layer names (LayerNames.cpp) ----
  int StandardizeLayerNames();
  void StandardizeLayerList(DrvLayerMap& layers);
  static OdString StandardizeLayerName(const OdString& name);
  const std::map<OdString, OdString>& GetStandardizedNames() const { return m_standardizedNames; }

  // ---- Room linking (RoomLinking.cpp) ----
  // Links the room outlines of the current view to their labels or texts and writes the ".rl" report.
  void LinkRoomsAndTexts();
  // Room outlines linked only to room labels (no text layers, no report).
  void LinkRoomLabels();
  bool IsRoomLayer(const OdString& layerName) const;
  bool IsTextLayer(const OdString& layerName) const;

  // A stroke width as collected: hundredths of an output unit, the line-weight index, and whether
  // the writer must still scale it from drawing units.
  struct StrokeWidth {
    double width;
    int lineWeight;
    bool absolute;
  };
  // ---- Stroke widths (StrokeWidths.cpp) ----
  // The width of a stroke as the vectorizer gives it: a line weight in hundredths of a millimetre,
  // or, when widthIsGeometric, a width in output units.
  StrokeWidth CollectedStrokeWidth(int widthIsGeometric, double lineWidth) const;
  // Output units per millimetre when the device window (the drawing size set for the view) is
  // plotted to fit an A-size sheet; 1 while no drawing size is set.
  double OutputUnitsPerSheetMillimetre() const;
  // The device window's larger side in output units: no stroke is drawn wider.
  double LargestStrokeWidth() const;

protected:
  // Stored colour group for the current colour, made current; null on failure.
  DrvColorGroup* CurrentGroupForDrawing();
  void ExtendExtents(double x, double y);
  void AppendToLink(const DrvPolyline& record);
  const char* FormatCoordinate(double value, long& counter, const char* errorText);
  void SelectColorDirect(int index);
  int FindOrAddColor(int red, int green, int blue);
  bool SelectsOwnEntry(int index) const;
  void ResetViewState();
  void FillDefaultColorTable();
  DrvLayerMap* CurrentLayerMap();

  // Fields, in the order of the driver's state.
  std::fstream m_fileStream;
  std::vector<OdString> m_inputLayerNames;
  std::set<std::string> m_offLayerSet;
  std::set<std::string> m_frozenLayerSet;
  std::set<OdString> m_handleLayers;
  std::deque<DrvView> m_views;
  DrvView* m_currentView = nullptr;
  long m_pathCounter = 0;
  long m_groupCounter = 0;
  std::vector<std::string> m_roomLayers;   // RL
  std::vector<std::string> m_textLayers;   // TL
  std::vector<std::string> m_layersOff;    // LOFF
  std::vector<std::string> m_layersOn;     // LON
  std::vector<std::string> m_blockNames;
  std::vector<std::string> m_blockLayers;
  std::vector<DrvPage> m_pages;
  std::map<OdString, OdString> m_outputNameMap;
  std::string m_unitsName;
  OdString m_inputFileName;
  OdString m_outputFileName;
  OdString m_outputStem;
  OdString m_wrapperPageName;
  std::string m_buildingName;               // BLDG
  std::string m_floorName;                  // FLOOR
  std::string m_generatorName;
  double m_pointTolerance = 15.1;
  double m_minWidthLow = 0.02;
  double m_minWidthHigh = 16.0;
  double m_lineWidthScale = 1.0;
  double m_dashScale = 1.0;
  DrvBox m_svgExtents;                      // E1
  DrvBox m_pageExtents;                     // E2
  double m_worldLLx = 0.0;
  double m_worldLLy = 0.0;
  double m_worldURx = 0.0;
  double m_worldURy = 0.0;
  bool m_worldExtentsSet = false;
  std::vector<DrvRgb> m_colorTable;
  int m_colorCount = 0;
  int m_backgroundColor = 255;
  int m_pageBackground = 255;
  std::int64_t m_drawingHeight = 0;
  std::int64_t m_drawingWidth = 0;
  bool m_drawingSizeSet = false;
  int m_currentColor = 7;
  int m_previousColor = -1;
  int m_currentLineWeight = 0;
  double m_minLineWidth = 0.01;             // LWMIN
  int m_precision = 2;                      // PREC
  bool m_roomLabels = false;
  bool m_breakByLayer = false;              // BL
  bool m_doTooltips = false;
  bool m_postfix = false;                   // POSTFIX
  bool m_jsUnicode = false;
  bool m_paletteLoaded = false;
  bool m_noTextScale = false;
  bool m_explicitOrigin = false;
  bool m_greyRow = false;
  bool m_listArea = false;
  bool m_repository = false;
  bool m_csvOutput = false;
  bool m_noBlocks = false;
  bool m_flag259 = false;
  bool m_whiteBackground = false;
  double m_globalOriginX = 0.0;
  double m_globalOriginY = 0.0;
  double m_paperValues[3] = {0.0, 0.0, 0.0};
  int m_outputVersion = 0;                  // VER
  OdString m_lineTypeName = L"CONTINUOUS";
  std::vector<double> m_currentDashes;
  char m_coordBuffer[512] = {};
  long m_p2xCount = 0;
  long m_p2yCount = 0;

  // Further settings.
  int m_palette = 0;
  int m_paletteWhite = -1;
  int m_paletteBlack = -1;
  bool m_firstColor7Pending = true;
  std::map<int, int> m_usedColors;
  std::map<OdString, std::vector<double>> m_lineTypes;
  std::set<OdString> m_solidLineTypes;
  std::set<OdString> m_fixedWidthLineTypes;
  int m_colorMode = 0;
  int m_inputKind = 0;
  int m_margin = 18;
  double m_brightness = 0.0;
  int m_orientation = -1;
  int m_pointCircle = 0;
  std::string m_jsonFile;
  std::string m_regex;
  OdString m_contentHyperlink;
  OdString m_blankAttributeText;
  double m_lineTypeScale = 1.0;
  double m_tolerance = 0.0;
  double m_fontScale = 1.0;
  OdString m_fontPath;
  std::string m_defaultFontName = "Arial";
  std::string m_defaultItalicFontName = "Arial Italic";
  double m_unitScale = 1.0;
  std::string m_currentHandle;
  OdString m_hyperlinkText;
  OdString m_hyperlinkName;
  std::deque<DrvLink> m_links;
  DrvLink* m_currentLink = nullptr;

  // Collection state.
  OdString m_currentLayerName;
  int m_currentLayerColor = 7;
  OdString m_previousLayerName;
  int m_attributeColor = -1;                // colour of the current colour group
  bool m_layerChanged = false;
  std::string m_nodeId;
  DrvLayer* m_currentLayer = nullptr;
  DrvColorGroup* m_currentGroup = nullptr;
  DrvFontGroup* m_currentFontGroup = nullptr;
  bool m_inGroup = false;
  DrvLayer* m_savedLayer = nullptr;
  DrvColorGroup* m_savedGroup = nullptr;
  DrvNodeGroup* m_openGroup = nullptr;
  struct GroupFrame {
    DrvLayer* savedLayer;
    DrvColorGroup* savedGroup;
    DrvNodeGroup* group;
  };
  std::vector<GroupFrame> m_groupStack;     // node groups may nest
  bool m_attributesDirty = true;            // layer or group changed since the last SetAttributes
  DrvColorGroup* m_fontGroupOwner = nullptr;
  double m_ring[5][4] = {};                 // last segments drawn: x1, y1, x2, y2
  int m_ringCount = 0;

  // Fonts.
  std::map<std::string, std::string> m_fontMap;
  std::set<std::string> m_strokeFonts;
  std::set<std::string> m_unmappedFonts;
  std::map<std::string, std::string> m_systemFontCache;

  std::map<OdString, OdString> m_standardizedNames;  // new name -> name before
};

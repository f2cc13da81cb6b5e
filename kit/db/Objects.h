// Non-graphical objects that renderers and the converter read: dictionaries, layouts with their
// plot settings, image and underlay definitions, groups, xrecords, spatial filters (clipped
// block references), multiline styles and draw order tables. Every other object is kept as a
// GenericObject with all its groups.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kit/base/Color.h"
#include "kit/base/Geometry.h"
#include "kit/base/OdString.h"
#include "kit/db/DbObject.h"

struct BlockRecord;

template <DbType T>
struct ObjectOf : DbObject {
  static constexpr DbType kType = T;
  static bool isKind(DbType t) { return t == T; }
  ObjectOf() : DbObject(T) {}
};

struct DictionaryEntry {
  std::string name;
  OdDbHandle handle;
};

struct Dictionary : ObjectOf<DbType::kDictionary> {
  std::vector<DictionaryEntry> entries;  // in file order
  bool hardOwner = false;
  int16_t cloning = 1;
  bool withDefault = false;  // ACDBDICTIONARYWDFLT
  OdDbHandle defaultEntry;

  // The entry of that name, ignoring case, or the null handle.
  OdDbHandle find(std::string_view name) const;
};

// Page setup values shared by layouts and named page setups (PLOTSETTINGS).
struct PlotSettingsData {
  enum PlotFlag : int16_t {
    kPlotViewportBorders = 1, kShowPlotStyles = 2, kPlotCentered = 4, kPlotHidden = 8,
    kUseStandardScale = 16, kPlotPlotStyles = 32, kScaleLineweights = 64, kPrintLineweights = 128,
    kDrawViewportsFirst = 512, kModelType = 1024,
  };
  std::string pageSetupName;
  std::string plotConfiguration;
  std::string paperSizeName;
  std::string plotViewName;
  std::string styleSheet;
  double marginLeft = 0.0;
  double marginBottom = 0.0;
  double marginRight = 0.0;
  double marginTop = 0.0;
  double paperWidth = 0.0;   // millimetres
  double paperHeight = 0.0;
  double plotOriginX = 0.0;
  double plotOriginY = 0.0;
  OdGePoint2d plotWindowMin;
  OdGePoint2d plotWindowMax;
  double scaleNumerator = 1.0;  // real world units
  double scaleDenominator = 1.0;  // drawing units
  int16_t plotFlags = 0;
  int16_t paperUnits = 0;  // 0 inches, 1 millimetres, 2 pixels
  int16_t plotRotation = 0;  // quarter turns
  int16_t plotType = 0;  // 0 display, 1 extents, 2 limits, 3 view, 4 window, 5 layout
  int16_t standardScaleType = 0;
  double standardScaleFactor = 1.0;
  OdGePoint2d paperImageOrigin;
  int16_t shadePlotMode = 0;
  int16_t shadePlotResolution = 0;
  int16_t shadePlotDpi = 300;
  OdDbHandle shadePlot;
};

struct PlotSettingsObject : ObjectOf<DbType::kPlotSettings>, PlotSettingsData {};

struct Layout : ObjectOf<DbType::kLayout>, PlotSettingsData {
  enum LayoutFlag : int16_t { kPsLtScale = 1, kLimCheck = 2 };
  std::string name;
  int16_t layoutFlags = 0;
  int16_t tabOrder = 0;
  OdGePoint2d limMin;
  OdGePoint2d limMax{12.0, 9.0};
  OdGePoint3d insertionBase;
  OdGePoint3d extMin;
  OdGePoint3d extMax;
  double elevation = 0.0;
  OdGePoint3d ucsOrigin;
  OdGeVector3d ucsXAxis{1.0, 0.0, 0.0};
  OdGeVector3d ucsYAxis{0.0, 1.0, 0.0};
  int16_t ucsOrthoType = 0;
  OdDbHandle blockRecordHandle;
  OdDbHandle lastActiveViewport;
  OdDbHandle ucs;
  BlockRecord* block = nullptr;  // resolved from blockRecordHandle; null only when unrecoverable

  OdString getLayoutName() const { return OdString(odDecodeUtf8(name.data(), name.size())); }
  OdDbHandle getBlockTableRecordId() const { return blockRecordHandle; }
  bool isModelLayout() const;
};

struct RasterImageDefObject : ObjectOf<DbType::kRasterImageDef> {
  std::string fileName;  // as written (relative paths and backslashes included)
  OdGePoint2d imageSize;  // pixels
  OdGePoint2d pixelSize{1.0, 1.0};  // drawing units per pixel
  int32_t classVersion = 0;
  bool loaded = true;
  int16_t resolutionUnits = 0;  // 0 none, 2 centimetres, 5 inches
};

struct GroupObject : ObjectOf<DbType::kGroup> {
  std::string description;
  bool unnamed = false;
  bool selectable = true;
  std::vector<OdDbHandle> entities;
};

struct XRecordObject : ObjectOf<DbType::kXRecord> {
  int16_t cloning = 1;
  TaggedValues values;
};

// The clip of a clipped block reference (XCLIP): found through the reference's extension
// dictionary, ACAD_FILTER, SPATIAL.
struct SpatialFilterObject : ObjectOf<DbType::kSpatialFilter> {
  std::vector<OdGePoint2d> boundary;  // in the clip plane; two points mean a rectangle
  OdGeVector3d normal{0.0, 0.0, 1.0};
  OdGePoint3d origin;
  bool displayBoundary = false;  // group 71: the clip is on; off, the reference shows whole
  bool frontClipEnabled = false;
  double frontClip = 0.0;
  bool backClipEnabled = false;
  double backClip = 0.0;
  OdGeMatrix3d inverseInsertTransform;  // block reference transform inverted, at clip time
  OdGeMatrix3d clipTransform;           // the clip boundary's own transform
};

struct MLineStyleElement {
  double offset = 0.0;
  OdCmEntityColor color;
  std::string linetypeName;
};

struct MLineStyleObject : ObjectOf<DbType::kMLineStyle> {
  enum Flag : int16_t {
    kFillOn = 1, kShowMiters = 2, kStartSquareCap = 16, kStartInnerArcs = 32, kStartRoundCap = 64,
    kEndSquareCap = 256, kEndInnerArcs = 512, kEndRoundCap = 1024,
  };
  std::string name;
  std::string description;
  int16_t flags = 0;
  OdCmEntityColor fillColor;
  double startAngle = kPi / 2;
  double endAngle = kPi / 2;
  std::vector<MLineStyleElement> elements;
};

// Draw order of one block: an entity drawn as if it had the sort handle.
struct SortEntsTableObject : ObjectOf<DbType::kSortEntsTable> {
  OdDbHandle blockRecordHandle;
  std::vector<std::pair<OdDbHandle, OdDbHandle>> entries;  // entity, sort handle
};

struct UnderlayDefinitionObject : ObjectOf<DbType::kUnderlayDefinition> {
  enum class Format : uint8_t { kPdf, kDwf, kDgn };
  Format format = Format::kPdf;
  std::string fileName;
  std::string itemName;  // page, sheet or model
};

// Every other object (and ACAD_PROXY_OBJECT): its class name and all its groups after the handle
// and owner, so that nothing is lost.
struct GenericObject : ObjectOf<DbType::kGenericObject> {
  std::string dxfName;
  bool isProxy = false;  // ACAD_PROXY_OBJECT, or a class the file marks as a proxy
  TaggedValues data;
};

// The entity kinds of the drawing database, as plain records. Geometry is kept as the file gives
// it: planar entities in their object coordinate system (OCS) with their normal (extrusion),
// others in world coordinates; all angles in radians. Regeneration owns every interpretation
// (OCS to WCS, text layout, hatch patterns), the readers only fill these fields.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "kit/db/Entity.h"

struct BlockRecord;
struct TextStyleRecord;
struct DimStyleRecord;

constexpr OdGeVector3d kDefaultNormal{0.0, 0.0, 1.0};

struct LineEntity : EntityOf<DbType::kLine> {
  OdGePoint3d start;  // WCS
  OdGePoint3d end;    // WCS
  double thickness = 0.0;
  OdGeVector3d normal = kDefaultNormal;
};

struct PointEntity : EntityOf<DbType::kPoint> {
  OdGePoint3d position;  // WCS
  double thickness = 0.0;
  OdGeVector3d normal = kDefaultNormal;
  double xAxisAngle = 0.0;  // of the UCS the point was drawn in, for PDMODE symbols
};

struct CircleEntity : EntityOf<DbType::kCircle> {
  OdGePoint3d center;  // OCS
  double radius = 0.0;
  double thickness = 0.0;
  OdGeVector3d normal = kDefaultNormal;
};

struct ArcEntity : EntityOf<DbType::kArc> {
  OdGePoint3d center;  // OCS
  double radius = 0.0;
  double startAngle = 0.0;  // counter-clockwise from the OCS x axis
  double endAngle = 0.0;
  double thickness = 0.0;
  OdGeVector3d normal = kDefaultNormal;
};

struct EllipseEntity : EntityOf<DbType::kEllipse> {
  OdGePoint3d center;        // WCS
  OdGeVector3d majorAxis;    // WCS, from the centre to the end of the major axis
  OdGeVector3d normal = kDefaultNormal;
  double radiusRatio = 1.0;  // minor / major
  double startParam = 0.0;
  double endParam = 2 * kPi;
};

struct LwPolylineEntity : EntityOf<DbType::kLwPolyline> {
  enum Flag : uint16_t { kClosed = 1, kPlinegen = 128 };
  std::vector<OdGePoint2d> points;  // OCS
  std::vector<double> bulges;       // empty when all are zero, else one per point
  std::vector<OdGePoint2d> widths;  // empty when none, else (start, end) per point
  double constantWidth = 0.0;
  double elevation = 0.0;
  double thickness = 0.0;
  OdGeVector3d normal = kDefaultNormal;
  uint16_t flags = 0;

  bool isClosed() const { return (flags & kClosed) != 0; }
  double bulgeAt(size_t i) const { return i < bulges.size() ? bulges[i] : 0.0; }
};

struct PolylineVertex {
  enum Flag : uint16_t {
    kExtraVertex = 1,  // created by curve fitting
    kCurveFitTangent = 2,
    kSplineVertex = 8,  // created by spline fitting
    kSplineFrame = 16,  // spline frame control point
    k3dPolylineVertex = 32,
    kMeshVertex = 64,
    kPolyfaceFace = 128,  // a face record of a polyface mesh (no position of its own)
  };
  OdGePoint3d position;  // OCS for 2D polylines, WCS otherwise
  double startWidth = 0.0;
  double endWidth = 0.0;
  double bulge = 0.0;
  double tangent = 0.0;
  int32_t faceIndices[4] = {0, 0, 0, 0};  // polyface faces: 1-based, negative = invisible edge
  uint16_t flags = 0;
  OdCmEntityColor color;  // faces of polyface meshes may carry their own colour
  OdDbHandle handle;
};

struct PolylineEntity : EntityOf<DbType::kPolyline> {
  enum Flag : uint16_t {
    kClosed = 1,  // closed in M for meshes
    kCurveFit = 2,
    kSplineFit = 4,
    k3dPolyline = 8,
    kPolygonMesh = 16,
    kClosedN = 32,
    kPolyfaceMesh = 64,
    kPlinegen = 128,
  };
  enum class Kind { k2d, k3d, kPolygonMesh, kPolyfaceMesh };

  std::vector<PolylineVertex> vertices;
  double elevation = 0.0;  // 2D polylines: z of the OCS plane
  double defaultStartWidth = 0.0;
  double defaultEndWidth = 0.0;
  double thickness = 0.0;
  OdGeVector3d normal = kDefaultNormal;
  uint16_t flags = 0;
  int16_t meshM = 0;  // mesh vertex counts, or polyface vertex and face counts
  int16_t meshN = 0;
  int16_t smoothM = 0;
  int16_t smoothN = 0;
  int16_t curveType = 0;  // 0 none, 5 quadratic, 6 cubic B-spline, 8 Bezier
  OdDbHandle seqendHandle;

  Kind kind() const {
    if (flags & kPolyfaceMesh) return Kind::kPolyfaceMesh;
    if (flags & kPolygonMesh) return Kind::kPolygonMesh;
    if (flags & k3dPolyline) return Kind::k3d;
    return Kind::k2d;
  }
  bool isClosed() const { return (flags & kClosed) != 0; }
};

// B-spline data shared by SPLINE, HELIX and spline edges of hatch boundaries.
struct SplineData {
  enum Flag : uint16_t { kClosed = 1, kPeriodic = 2, kRational = 4, kPlanar = 8, kLinear = 16 };
  uint16_t flags = 0;
  int16_t degree = 3;
  std::vector<double> knots;
  std::vector<OdGePoint3d> controlPoints;
  std::vector<double> weights;  // empty unless rational
  std::vector<OdGePoint3d> fitPoints;
  double knotTolerance = 1e-10;
  double controlTolerance = 1e-10;
  double fitTolerance = 1e-10;
  OdGeVector3d startTangent;  // zero when not given
  OdGeVector3d endTangent;
};

struct SplineEntity : EntityOf<DbType::kSpline>, SplineData {
  OdGeVector3d normal = kDefaultNormal;  // of planar splines
};

struct HelixEntity : EntityOf<DbType::kHelix>, SplineData {
  OdGePoint3d axisBasePoint;
  OdGePoint3d startPoint;
  OdGeVector3d axisVector = kDefaultNormal;
  double radius = 0.0;
  double turns = 1.0;
  double turnHeight = 0.0;
  bool rightHanded = true;
  int16_t constraint = 0;  // 0 turn height, 1 turns, 2 height
};

// Single-line text as TEXT, ATTRIB and ATTDEF store it.
struct TextData {
  enum HorizontalMode : int16_t { kLeft = 0, kCenter = 1, kRight = 2, kAligned = 3, kMiddle = 4, kFit = 5 };
  enum VerticalMode : int16_t { kBaseline = 0, kBottom = 1, kMiddleV = 2, kTop = 3 };
  enum Generation : int16_t { kMirroredX = 2, kMirroredY = 4 };

  std::string text;  // UTF-8; "\U+XXXX" and "\M+NXXXX" escapes are kept as written
  OdGePoint3d position;        // OCS, first alignment point
  OdGePoint3d alignmentPoint;  // OCS, second alignment point
  bool hasAlignmentPoint = false;
  double height = 0.0;
  double rotation = 0.0;
  double widthFactor = 1.0;
  double oblique = 0.0;
  double thickness = 0.0;
  OdGeVector3d normal = kDefaultNormal;
  TextStyleRecord* style = nullptr;
  int16_t generationFlags = 0;
  int16_t horizontalMode = kLeft;
  int16_t verticalMode = kBaseline;
};

struct TextEntity : EntityOf<DbType::kText>, TextData {};

// Multi-line text as MTEXT stores it (also the embedded text of multi-line attributes).
struct MTextData {
  enum Attachment : int16_t {
    kTopLeft = 1, kTopCenter, kTopRight, kMiddleLeft, kMiddleCenter, kMiddleRight,
    kBottomLeft, kBottomCenter, kBottomRight,
  };
  std::string text;  // UTF-8 with the inline format codes as written
  OdGePoint3d position;  // WCS
  OdGeVector3d normal = kDefaultNormal;
  OdGeVector3d xDirection;  // WCS; zero when the file gave only a rotation
  double rotation = 0.0;    // used when xDirection is zero
  double height = 0.0;
  double referenceWidth = 0.0;
  double definedHeight = 0.0;
  int16_t attachment = kTopLeft;
  int16_t flowDirection = 1;  // 1 left to right, 3 top to bottom, 5 by style
  TextStyleRecord* style = nullptr;
  int16_t lineSpacingStyle = 1;  // 1 at least, 2 exact
  double lineSpacingFactor = 1.0;
  int32_t backgroundFlags = 0;  // 1 fill with colour, 2 with the drawing background, 16 text frame
  double backgroundScale = 1.5;
  OdCmEntityColor backgroundColor;
  OdCmTransparency backgroundTransparency;
  int16_t columnType = 0;  // 0 none, 1 static, 2 dynamic
  int16_t columnCount = 0;
  bool columnFlowReversed = false;
  bool columnAutoHeight = false;
  double columnWidth = 0.0;
  double columnGutter = 0.0;
  std::vector<double> columnHeights;
};

struct MTextEntity : EntityOf<DbType::kMText>, MTextData {};

// What ATTRIB and ATTDEF add to single-line text.
struct AttributeData {
  enum Flag : int16_t { kInvisible = 1, kConstant = 2, kVerify = 4, kPreset = 8 };
  std::string tag;
  int16_t attributeFlags = 0;
  int16_t fieldLength = 0;
  bool lockPosition = false;
  std::unique_ptr<MTextData> multiline;  // multi-line attributes (R2018): the text is here

  bool isInvisible() const { return (attributeFlags & kInvisible) != 0; }
  bool isConstant() const { return (attributeFlags & kConstant) != 0; }
};

struct AttributeEntity : EntityOf<DbType::kAttribute>, TextData, AttributeData {};

struct AttributeDefinitionEntity : EntityOf<DbType::kAttributeDefinition>, TextData, AttributeData {
  std::string prompt;
};

struct BlockReferenceEntity : EntityOf<DbType::kBlockReference> {
  BlockRecord* block = nullptr;  // never null after loading; may lack a definition
  OdGePoint3d position;          // OCS
  OdGeVector3d scale{1.0, 1.0, 1.0};
  double rotation = 0.0;
  OdGeVector3d normal = kDefaultNormal;
  int16_t columnCount = 1;  // MINSERT arrays
  int16_t rowCount = 1;
  double columnSpacing = 0.0;
  double rowSpacing = 0.0;
  std::vector<AttributeEntity*> attributes;
  OdDbHandle seqendHandle;

  bool isArray() const { return columnCount > 1 || rowCount > 1; }
};

struct DimensionEntity : EntityOf<DbType::kDimension> {
  enum class Kind : uint8_t {
    kRotated = 0, kAligned = 1, kAngular2Line = 2, kDiameter = 3, kRadius = 4,
    kAngular3Point = 5, kOrdinate = 6, kArcLength = 7, kRadialLarge = 8,
  };
  enum Flag : int16_t { kBlockUniquelyReferenced = 32, kOrdinateX = 64, kTextUserPositioned = 128 };

  Kind kind = Kind::kRotated;
  int16_t dimensionFlags = 0;  // the high bits of group 70
  BlockRecord* block = nullptr;  // the anonymous block with the dimension's graphics, or null
  DimStyleRecord* style = nullptr;
  std::string text;  // user text; empty means the measurement, "<>" stands for it
  OdGePoint3d definitionPoint;  // 10, WCS
  OdGePoint3d textMidpoint;     // 11, OCS
  OdGePoint3d cloneInsertion;   // 12, OCS
  OdGePoint3d defPoint2;        // 13, WCS: first extension line / chord point
  OdGePoint3d defPoint3;        // 14, WCS: second extension line point
  OdGePoint3d defPoint4;        // 15, WCS: arc/centre point
  OdGePoint3d arcPoint;         // 16, OCS: dimension arc point (2-line angular), leader start (arc length)
  OdGePoint3d leaderEnd;        // 17, arc length leader end
  double rotation = 0.0;        // 50: rotated linear dimensions
  double obliqueAngle = 0.0;    // 52
  double textRotation = 0.0;    // 53
  double horizontalDirection = 0.0;  // 51
  double leaderLength = 0.0;    // 40: radius and diameter
  double arcStartParam = 0.0;   // arc length dimensions
  double arcEndParam = 0.0;
  bool arcPartial = false;
  bool arcHasLeader = false;
  double actualMeasurement = 0.0;
  bool hasActualMeasurement = false;
  int16_t attachment = 5;
  int16_t lineSpacingStyle = 1;
  double lineSpacingFactor = 1.0;
  OdGeVector3d normal = kDefaultNormal;
};

struct LeaderEntity : EntityOf<DbType::kLeader> {
  DimStyleRecord* style = nullptr;
  std::vector<OdGePoint3d> vertices;  // WCS
  bool hasArrowhead = true;
  int16_t pathType = 0;        // 0 straight segments, 1 spline
  int16_t annotationType = 3;  // 0 mtext, 1 tolerance, 2 block reference, 3 none
  bool hooklineOppositeDirection = false;
  bool hasHookline = false;
  double textHeight = 0.0;
  double textWidth = 0.0;
  OdCmEntityColor overrideColor;  // 77
  OdDbHandle annotation;
  OdGeVector3d normal = kDefaultNormal;
  OdGeVector3d horizontalDirection{1.0, 0.0, 0.0};
  OdGeVector3d blockOffset;
  OdGeVector3d annotationOffset;
};

struct MLeaderLine {
  std::vector<OdGePoint3d> vertices;
  int32_t index = 0;
};

struct MLeaderBranch {
  bool hasLastLeaderLinePoint = false;
  bool hasDogleg = false;
  OdGePoint3d lastLeaderLinePoint;
  OdGeVector3d doglegVector;
  double doglegLength = 0.0;
  int32_t index = 0;
  int16_t attachmentDirection = 0;
  std::vector<MLeaderLine> lines;
};

struct MLeaderEntity : EntityOf<DbType::kMLeader> {
  enum ContentType : int16_t { kNoContent = 0, kBlockContent = 1, kMTextContent = 2, kToleranceContent = 3 };
  // Entity properties.
  OdDbHandle style;
  int32_t overrideFlags = 0;
  int16_t leaderType = 1;  // 0 invisible, 1 straight, 2 spline
  OdCmEntityColor leaderColor;
  OdDbHandle leaderLinetype;
  int16_t leaderLineweight = kLnWtByBlock;
  bool landingEnabled = true;
  bool doglegEnabled = true;
  double landingDistance = 0.0;
  OdDbHandle arrowhead;
  double arrowheadSize = 0.0;
  int16_t contentType = kMTextContent;
  OdDbHandle textStyle;
  int16_t textLeftAttachment = 1;
  int16_t textRightAttachment = 1;
  int16_t textAngleType = 1;
  int16_t textAlignment = 0;
  OdCmEntityColor textColor;
  bool textFrame = false;
  OdDbHandle blockContent;
  OdCmEntityColor blockColor;
  OdGeVector3d blockScale{1.0, 1.0, 1.0};
  double blockRotation = 0.0;
  int16_t blockConnection = 0;
  bool annotative = false;
  // Content as laid out (the context data).
  double contentScale = 1.0;
  OdGePoint3d contentBasePoint;
  double contextTextHeight = 0.0;
  double contextArrowheadSize = 0.0;
  double landingGap = 0.0;
  bool hasMText = false;
  std::string text;
  OdGeVector3d textNormal = kDefaultNormal;
  OdDbHandle contextTextStyle;
  OdGePoint3d textLocation;
  OdGeVector3d textDirection{1.0, 0.0, 0.0};
  double textRotation = 0.0;
  double textWidth = 0.0;
  double textDefinedHeight = 0.0;
  double textLineSpacingFactor = 1.0;
  int16_t textLineSpacingStyle = 1;
  OdCmEntityColor contextTextColor;
  int16_t textAttachment = 1;
  int16_t textFlowDirection = 1;
  bool hasBlock = false;
  OdDbHandle contextBlock;
  OdGeVector3d contextBlockNormal = kDefaultNormal;
  OdGePoint3d blockPosition;
  OdGeVector3d contextBlockScale{1.0, 1.0, 1.0};
  double contextBlockRotation = 0.0;
  OdCmEntityColor contextBlockColor;
  double blockTransform[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
  OdGePoint3d planeOrigin;
  OdGeVector3d planeXAxis{1.0, 0.0, 0.0};
  OdGeVector3d planeYAxis{0.0, 1.0, 0.0};
  bool planeNormalReversed = false;
  std::vector<MLeaderBranch> branches;
  // Attribute values of block content: attribute definition handle and text.
  std::vector<std::pair<OdDbHandle, std::string>> blockAttributes;
};

struct HatchSplineEdge {
  int16_t degree = 3;
  bool rational = false;
  bool periodic = false;
  std::vector<double> knots;
  std::vector<OdGePoint2d> controlPoints;
  std::vector<double> weights;
  std::vector<OdGePoint2d> fitPoints;
  OdGeVector2d startTangent;
  OdGeVector2d endTangent;
};

struct HatchEdge {
  enum Type : uint8_t { kLine = 1, kCircularArc = 2, kEllipticArc = 3, kSpline = 4 };
  Type type = kLine;
  bool counterClockwise = true;
  OdGePoint2d start;     // line start, or arc/ellipse centre
  OdGePoint2d end;       // line end, or ellipse major axis end relative to the centre
  double radius = 0.0;   // arc radius, or ellipse minor/major ratio
  double startAngle = 0.0;
  double endAngle = 0.0;
  std::unique_ptr<HatchSplineEdge> spline;
};

struct HatchLoop {
  enum Flag : int32_t {
    kExternal = 1, kPolyline = 2, kDerived = 4, kTextbox = 8, kOutermost = 16,
    kNotClosed = 32, kSelfIntersecting = 64, kTextIsland = 128, kDuplicate = 256,
  };
  int32_t flags = 0;
  // Polyline loops.
  std::vector<OdGePoint2d> points;
  std::vector<double> bulges;  // empty when no bulges
  bool closed = true;
  // Edge loops.
  std::vector<HatchEdge> edges;
  std::vector<OdDbHandle> sourceObjects;

  bool isPolyline() const { return (flags & kPolyline) != 0; }
};

struct HatchPatternLine {
  double angle = 0.0;
  OdGePoint2d basePoint;
  OdGeVector2d offset;
  std::vector<double> dashes;
};

struct HatchGradient {
  bool enabled = false;
  std::string name;
  double angle = 0.0;
  double shift = 0.0;
  double tint = 0.0;
  bool singleColor = false;
  std::vector<std::pair<double, OdCmEntityColor>> colors;
};

// What HATCH and MPOLYGON share: boundary loops and their fill.
struct HatchData {
  OdGePoint3d elevationPoint;  // z is the elevation of the OCS plane
  OdGeVector3d normal = kDefaultNormal;
  std::string patternName;
  bool solidFill = false;
  bool associative = false;
  int16_t style = 0;        // 0 odd parity, 1 outermost, 2 entire area
  int16_t patternType = 1;  // 0 user defined, 1 predefined, 2 custom
  double patternAngle = 0.0;
  double patternScale = 1.0;
  bool patternDouble = false;
  double pixelSize = 0.0;
  std::vector<HatchLoop> loops;
  std::vector<HatchPatternLine> patternLines;
  std::vector<OdGePoint2d> seedPoints;
  HatchGradient gradient;
};

struct HatchEntity : EntityOf<DbType::kHatch>, HatchData {};

// MPOLYGON (AutoCAD Map's polygons): a hatch whose boundary is drawn too, its solid fill in a
// colour of its own.
struct MPolygonEntity : EntityOf<DbType::kMPolygon>, HatchData {
  OdCmEntityColor fillColor;  // for solid fills; by layer when the file gave none
  bool hasFillColor = false;
  OdGeVector2d patternOffset;  // 11: the pattern's x direction offset
};

// SOLID and TRACE: four corners (the third and fourth equal for triangles), in OCS.
struct SolidEntity : EntityOf<DbType::kSolid> {
  OdGePoint3d corners[4];
  double thickness = 0.0;
  OdGeVector3d normal = kDefaultNormal;
};

struct TraceEntity : EntityOf<DbType::kTrace> {
  OdGePoint3d corners[4];
  double thickness = 0.0;
  OdGeVector3d normal = kDefaultNormal;
};

struct FaceEntity : EntityOf<DbType::kFace> {
  OdGePoint3d corners[4];  // WCS
  int16_t invisibleEdges = 0;  // bit i: edge i is invisible
};

// IMAGE and WIPEOUT share their geometry.
struct RasterImageData {
  enum DisplayFlag : int16_t { kShow = 1, kShowUnaligned = 2, kClip = 4, kTransparent = 8 };
  int32_t classVersion = 0;
  OdGePoint3d origin;  // WCS, lower-left corner of the lower-left pixel
  OdGeVector3d uVector;  // one pixel along the image's x
  OdGeVector3d vVector;  // one pixel along the image's y
  OdGePoint2d imageSize;  // pixels
  OdDbHandle imageDefinition;
  OdDbHandle definitionReactor;
  int16_t displayFlags = kShow;
  bool clipping = false;
  int16_t brightness = 50;
  int16_t contrast = 50;
  int16_t fade = 0;
  int16_t clipBoundaryType = 1;  // 1 rectangle, 2 polygon
  std::vector<OdGePoint2d> clipBoundary;  // pixel coordinates
  bool clipInverted = false;
};

struct RasterImageEntity : EntityOf<DbType::kRasterImage>, RasterImageData {};
struct WipeoutEntity : EntityOf<DbType::kWipeout>, RasterImageData {};

struct ViewportEntity : EntityOf<DbType::kViewport> {
  enum StatusFlag : int32_t {
    kPerspective = 0x1, kFrontClip = 0x2, kBackClip = 0x4, kUcsFollow = 0x8,
    kFrontClipNotAtEye = 0x10, kUcsIcon = 0x20, kUcsIconAtOrigin = 0x40, kFastZoom = 0x80,
    kSnap = 0x100, kGrid = 0x200, kIsometricSnap = 0x400, kHidePlot = 0x800,
    kLockZoom = 0x4000, kNonRectangularClip = 0x10000, kViewportOff = 0x20000,
  };
  OdGePoint3d center;  // paper space
  double width = 0.0;
  double height = 0.0;
  int16_t status = 0;  // 0 off, -1 on but off screen, >0 stacking order
  int16_t number = 0;  // 1 is the paper space viewport of the layout itself
  OdGePoint2d viewCenter;  // DCS
  OdGePoint2d snapBase;
  OdGePoint2d snapSpacing;
  OdGePoint2d gridSpacing;
  OdGeVector3d viewDirection = kDefaultNormal;
  OdGePoint3d viewTarget;
  double lensLength = 50.0;
  double frontClip = 0.0;
  double backClip = 0.0;
  double viewHeight = 0.0;  // model space height shown
  double snapAngle = 0.0;
  double twistAngle = 0.0;
  int16_t circleSides = 100;
  int32_t statusFlags = 0;
  OdDbHandle clipBoundary;  // an entity giving a non-rectangular clip
  std::string plotStyleSheet;
  int16_t renderMode = 0;
  bool ucsPerViewport = false;
  OdGePoint3d ucsOrigin;
  OdGeVector3d ucsXAxis{1.0, 0.0, 0.0};
  OdGeVector3d ucsYAxis{0.0, 1.0, 0.0};
  double elevation = 0.0;
  int16_t shadePlotMode = 0;
  OdDbHandle visualStyle;
  std::vector<OdDbHandle> frozenLayerHandles;
  std::vector<LayerRecord*> frozenLayers;  // resolved from the handles (or names) on load

  bool isOn() const { return status != 0 && (statusFlags & kViewportOff) == 0; }
};

struct XLineEntity : EntityOf<DbType::kXLine> {
  OdGePoint3d basePoint;
  OdGeVector3d direction{1.0, 0.0, 0.0};
};

struct RayEntity : EntityOf<DbType::kRay> {
  OdGePoint3d basePoint;
  OdGeVector3d direction{1.0, 0.0, 0.0};
};

struct ToleranceEntity : EntityOf<DbType::kTolerance> {
  DimStyleRecord* style = nullptr;
  std::string text;
  OdGePoint3d position;  // WCS
  OdGeVector3d normal = kDefaultNormal;
  OdGeVector3d direction{1.0, 0.0, 0.0};
};

struct TableCell {
  int16_t type = 1;  // 1 text, 2 block
  int16_t flags = 0;
  int32_t mergedColumns = 1;
  int32_t mergedRows = 1;
  bool merged = false;
  std::string text;
  OdDbHandle block;
};

struct TableEntity : EntityOf<DbType::kTable> {
  BlockRecord* block = nullptr;  // the anonymous block holding the table's graphics
  OdGePoint3d position;
  OdGeVector3d horizontalDirection{1.0, 0.0, 0.0};
  OdGeVector3d normal = kDefaultNormal;
  OdDbHandle tableStyle;
  int32_t rows = 0;
  int32_t columns = 0;
  std::vector<double> rowHeights;
  std::vector<double> columnWidths;
  std::vector<TableCell> cells;  // row by row
  TaggedValues tableData;        // the table's own groups as read, for whatever is not modelled
};

struct Ole2FrameEntity : EntityOf<DbType::kOle2Frame> {
  int16_t version = 2;
  std::string programName;
  OdGePoint3d upperLeft;
  OdGePoint3d lowerRight;
  int16_t oleType = 2;  // 1 link, 2 embedded, 3 static
  int16_t tileMode = 0;  // 0 paper space, 1 model space
  std::vector<uint8_t> data;
};

struct MLineVertex {
  OdGePoint3d position;
  OdGeVector3d direction;
  OdGeVector3d miter;
  std::vector<std::vector<double>> elementParams;      // per style element
  std::vector<std::vector<double>> elementFillParams;  // per style element
};

struct MLineEntity : EntityOf<DbType::kMLine> {
  enum Justification : int16_t { kTop = 0, kZero = 1, kBottom = 2 };
  enum Flag : int16_t { kHasVertices = 1, kClosed = 2, kSuppressStartCaps = 4, kSuppressEndCaps = 8 };
  std::string styleName;
  OdDbHandle style;
  double scale = 1.0;
  int16_t justification = kZero;
  int16_t flags = kHasVertices;
  int16_t styleElementCount = 0;
  OdGePoint3d startPoint;
  OdGeVector3d normal = kDefaultNormal;
  std::vector<MLineVertex> vertices;
};

// DXF files name the shape; DWG files give its number in the shape file of a text style.
struct ShapeEntity : EntityOf<DbType::kShape> {
  std::string name;
  int16_t number = 0;
  TextStyleRecord* style = nullptr;
  OdGePoint3d position;  // OCS
  double size = 1.0;
  double rotation = 0.0;
  double widthFactor = 1.0;
  double oblique = 0.0;
  double thickness = 0.0;
  OdGeVector3d normal = kDefaultNormal;
};

struct UnderlayEntity : EntityOf<DbType::kUnderlay> {
  enum class Format : uint8_t { kPdf, kDwf, kDgn };
  enum Flag : int16_t { kClip = 1, kOn = 2, kMonochrome = 4, kAdjustForBackground = 8, kClipInverted = 16 };
  Format format = Format::kPdf;
  OdDbHandle definition;
  OdGePoint3d position;
  OdGeVector3d scale{1.0, 1.0, 1.0};
  double rotation = 0.0;
  OdGeVector3d normal = kDefaultNormal;
  int16_t flags = kOn;
  int16_t contrast = 100;
  int16_t fade = 0;
  std::vector<OdGePoint2d> clipBoundary;
};

// REGION, 3DSOLID, BODY and the SURFACE kinds: modeler data kept as read, not interpreted.
struct ModelerGeometryEntity : EntityOf<DbType::kModelerGeometry> {
  std::string dxfName;
  int16_t modelerVersion = 1;
  TaggedValues data;  // the groups after the common entity data, ACIS text included
  // Binary ACIS data, where the file keeps the model that way (the data storage of R2013 and later
  // files, or binary data that did not become text); empty otherwise.
  std::string acisBinary;
};

// A subdivision mesh (MESH) at its base level: vertices and faces; the smoothing level and
// creases are kept for regeneration to apply.
struct MeshEntity : EntityOf<DbType::kMesh> {
  int16_t version = 2;
  bool blendCrease = false;
  int32_t subdivisionLevel = 0;
  std::vector<OdGePoint3d> vertices;
  std::vector<int32_t> faceList;  // per face: its vertex count, then that many vertex indices
  std::vector<std::pair<int32_t, int32_t>> edges;
  std::vector<double> edgeCreases;
};

// Entities of kinds this kit does not model (and ACAD_PROXY_ENTITY): their own groups are kept.
struct ProxyEntity : EntityOf<DbType::kProxyEntity> {
  std::string dxfName;
  TaggedValues data;
};

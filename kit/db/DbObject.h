// The base of everything the database holds: an object with a handle and an owner. Entities,
// symbol table records and non-graphical objects all derive from it and carry their kind in
// `type`, so that a reader of the database switches on the kind and casts with dbCast<> instead of
// paying for a virtual table in every record.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "kit/db/Handle.h"
#include "kit/db/TaggedValue.h"

enum class DbType : uint16_t {
  kUnknown = 0,
  // Entities.
  kLine,
  kPoint,
  kCircle,
  kArc,
  kEllipse,
  kLwPolyline,
  kPolyline,  // 2D, 3D, polygon mesh and polyface mesh POLYLINE with their vertices
  kSpline,
  kHelix,
  kText,
  kMText,
  kAttribute,
  kAttributeDefinition,
  kBlockReference,  // INSERT, with row/column arrays and attributes
  kDimension,       // every dimension kind, arc length included
  kLeader,
  kMLeader,
  kHatch,
  kSolid,
  kTrace,
  kFace,  // 3DFACE
  kRasterImage,
  kWipeout,
  kViewport,
  kXLine,
  kRay,
  kTolerance,
  kTable,
  kOle2Frame,
  kMLine,
  kShape,
  kUnderlay,         // PDF, DWF and DGN underlays
  kModelerGeometry,  // REGION, 3DSOLID, BODY, SURFACE kinds: kept whole, not interpreted
  kMesh,             // subdivision MESH
  kMPolygon,         // AutoCAD Map's MPOLYGON
  kProxyEntity,      // ACAD_PROXY_ENTITY and entity kinds this kit does not model
  // Symbol tables and their records.
  kSymbolTable,
  kLayer,
  kLinetype,
  kTextStyle,
  kDimStyle,
  kView,
  kViewportRecord,  // VPORT table record
  kUcs,
  kRegApp,
  kBlockRecord,
  // Non-graphical objects.
  kDictionary,
  kLayout,
  kPlotSettings,
  kRasterImageDef,
  kGroup,
  kXRecord,
  kSpatialFilter,
  kMLineStyle,
  kSortEntsTable,
  kUnderlayDefinition,
  kGenericObject,  // any other object: its class name and all its groups
};

constexpr bool isEntityType(DbType t) { return t >= DbType::kLine && t <= DbType::kProxyEntity; }
constexpr bool isSymbolRecordType(DbType t) { return t >= DbType::kLayer && t <= DbType::kBlockRecord; }

// The hyperlink attached to an object (stored in files as PE_URL extended data).
struct Hyperlink {
  std::string url;
  std::string description;
  std::string subLocation;
};

// PE_URL groups of extended data as hyperlinks: the address, then the description and the
// sub-location. Every reader finds them this way.
void hyperlinksFromExtendedData(const std::vector<XDataGroup>& groups, std::vector<Hyperlink>& out);

// Data most objects do not have, kept out of line so that the common records stay small.
struct ObjectExtras {
  std::vector<XDataGroup> xdata;
  std::vector<OdDbHandle> reactors;
  OdDbHandle extensionDictionary;
  std::vector<Hyperlink> hyperlinks;
  std::string colorBookName;  // "BOOK$COLOR" of a colour taken from a colour book
  OdDbHandle material;
  OdDbHandle plotStyle;
  OdDbHandle visualStyle;
  uint32_t proxyGraphicsBytes = 0;  // size of the proxy graphics the file carried (not kept)
};

struct DbObject {
  explicit DbObject(DbType t) : type(t) {}

  OdDbHandle handle;
  OdDbHandle ownerHandle;
  ObjectExtras* extras = nullptr;
  DbType type;
  uint16_t objectFlags = 0;

  enum ObjectFlag : uint16_t {
    kHandleReassigned = 1,  // the file's handle was missing or taken; this one was given on load
    kDamaged = 2,           // read with errors; values may be defaults
  };

  bool isEntity() const { return isEntityType(type); }
  // Extended data of one application (application names compare ignoring case), or null.
  const XDataGroup* xdata(std::string_view appName) const;
  OdDbHandle extensionDictionary() const { return extras ? extras->extensionDictionary : OdDbHandle(); }
};

// Checked downcast: null when the object is not of the requested kind.
template <class T>
T* dbCast(DbObject* object) {
  return object && T::isKind(object->type) ? static_cast<T*>(object) : nullptr;
}
template <class T>
const T* dbCast(const DbObject* object) {
  return object && T::isKind(object->type) ? static_cast<const T*>(object) : nullptr;
}

// The readable kind name used in dumps and messages ("LINE", "LAYER", "DICTIONARY", ...).
const char* dbTypeName(DbType type);

// Case-insensitive comparison of ASCII letters, as names of symbols and applications compare.
bool equalsIgnoringCase(std::string_view a, std::string_view b);
std::string toUpperAscii(std::string_view text);

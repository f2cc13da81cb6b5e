#include "kit/db/DbObject.h"

const XDataGroup* DbObject::xdata(std::string_view appName) const {
  if (!extras) return nullptr;
  for (const XDataGroup& group : extras->xdata) {
    if (equalsIgnoringCase(group.appName, appName)) return &group;
  }
  return nullptr;
}

const char* dbTypeName(DbType type) {
  switch (type) {
    case DbType::kUnknown: return "UNKNOWN";
    case DbType::kLine: return "LINE";
    case DbType::kPoint: return "POINT";
    case DbType::kCircle: return "CIRCLE";
    case DbType::kArc: return "ARC";
    case DbType::kEllipse: return "ELLIPSE";
    case DbType::kLwPolyline: return "LWPOLYLINE";
    case DbType::kPolyline: return "POLYLINE";
    case DbType::kSpline: return "SPLINE";
    case DbType::kHelix: return "HELIX";
    case DbType::kText: return "TEXT";
    case DbType::kMText: return "MTEXT";
    case DbType::kAttribute: return "ATTRIB";
    case DbType::kAttributeDefinition: return "ATTDEF";
    case DbType::kBlockReference: return "INSERT";
    case DbType::kDimension: return "DIMENSION";
    case DbType::kLeader: return "LEADER";
    case DbType::kMLeader: return "MULTILEADER";
    case DbType::kHatch: return "HATCH";
    case DbType::kSolid: return "SOLID";
    case DbType::kTrace: return "TRACE";
    case DbType::kFace: return "3DFACE";
    case DbType::kRasterImage: return "IMAGE";
    case DbType::kWipeout: return "WIPEOUT";
    case DbType::kViewport: return "VIEWPORT";
    case DbType::kXLine: return "XLINE";
    case DbType::kRay: return "RAY";
    case DbType::kTolerance: return "TOLERANCE";
    case DbType::kTable: return "ACAD_TABLE";
    case DbType::kOle2Frame: return "OLE2FRAME";
    case DbType::kMLine: return "MLINE";
    case DbType::kShape: return "SHAPE";
    case DbType::kUnderlay: return "UNDERLAY";
    case DbType::kModelerGeometry: return "MODELER_GEOMETRY";
    case DbType::kMesh: return "MESH";
    case DbType::kMPolygon: return "MPOLYGON";
    case DbType::kProxyEntity: return "PROXY_ENTITY";
    case DbType::kSymbolTable: return "TABLE";
    case DbType::kLayer: return "LAYER";
    case DbType::kLinetype: return "LTYPE";
    case DbType::kTextStyle: return "STYLE";
    case DbType::kDimStyle: return "DIMSTYLE";
    case DbType::kView: return "VIEW";
    case DbType::kViewportRecord: return "VPORT";
    case DbType::kUcs: return "UCS";
    case DbType::kRegApp: return "APPID";
    case DbType::kBlockRecord: return "BLOCK_RECORD";
    case DbType::kDictionary: return "DICTIONARY";
    case DbType::kLayout: return "LAYOUT";
    case DbType::kPlotSettings: return "PLOTSETTINGS";
    case DbType::kRasterImageDef: return "IMAGEDEF";
    case DbType::kGroup: return "GROUP";
    case DbType::kXRecord: return "XRECORD";
    case DbType::kSpatialFilter: return "SPATIAL_FILTER";
    case DbType::kMLineStyle: return "MLINESTYLE";
    case DbType::kSortEntsTable: return "SORTENTSTABLE";
    case DbType::kUnderlayDefinition: return "UNDERLAYDEFINITION";
    case DbType::kGenericObject: return "OBJECT";
  }
  return "UNKNOWN";
}

namespace {
char upperAscii(char c) { return (c >= 'a' && c <= 'z') ? char(c - 'a' + 'A') : c; }
}  // namespace

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (upperAscii(a[i]) != upperAscii(b[i])) return false;
  }
  return true;
}

std::string toUpperAscii(std::string_view text) {
  std::string out(text);
  for (char& c : out) c = upperAscii(c);
  return out;
}

void hyperlinksFromExtendedData(const std::vector<XDataGroup>& groups, std::vector<Hyperlink>& out) {
  for (const XDataGroup& g : groups) {
    if (!equalsIgnoringCase(g.appName, "PE_URL") || g.values.empty()) continue;
    Hyperlink link;
    int strings = 0;
    for (const TaggedValue& v : g.values) {
      if (v.code != 1000) continue;
      if (strings == 0) link.url = v.text;
      else if (strings == 1) link.description = v.text;
      else if (strings == 2) link.subLocation = v.text;
      ++strings;
    }
    out.push_back(std::move(link));
  }
}

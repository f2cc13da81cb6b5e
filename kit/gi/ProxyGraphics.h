// Proxy graphics: the drawing an application leaves with its entities so that programs without
// the application can show them (ACAD_PROXY_ENTITY groups 92/160 and 310, and the graphics of
// DWG entities). The data is a run of records, each a size, a type and its values, little-endian
// and padded to four bytes: primitives (lines, circles, arcs, polygons, meshes, shells, texts)
// and changes of the traits the following primitives take (colour, fill, transforms).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kit/base/Color.h"
#include "kit/base/Geometry.h"
#include "kit/db/Entities.h"

class DxfTextDecoder;

struct ProxyGraphicsItem {
  enum class Kind {
    kPolyline,  // points; `normal` when the record gave one; `bulges` (one per point) when any
    kPolygon,   // points, filled when fill is on
    kArc,       // center, radius, normal, startVector, sweep (a full turn for circles)
    kMesh,      // rows x columns points
    kShell,     // points and the face list (count, then that many indices; negative counts are holes)
    kText,      // text (UTF-8), points[0] the start, normal, direction, height, widthFactor, oblique
    kColor,     // color
    kLayer,     // layerIndex: the layer table's record by position, whose colour "by layer" means
    kFill,      // fill
    kPushTransform,  // transform applies to everything until the matching pop
    kPopTransform,
  };
  Kind kind = Kind::kPolyline;
  std::vector<OdGePoint3d> points;
  std::vector<int32_t> faces;
  std::vector<double> bulges;
  bool closed = false;
  OdGePoint3d center;
  double radius = 0.0;
  OdGeVector3d normal;  // zero when not given
  OdGeVector3d startVector;
  double sweep = 0.0;
  int32_t rows = 0;
  int32_t columns = 0;
  int32_t layerIndex = 0;
  OdCmEntityColor color;
  bool fill = false;
  OdGeMatrix3d transform;
  std::string text;
  OdGeVector3d direction{1.0, 0.0, 0.0};
  double height = 0.0;
  double widthFactor = 1.0;
  double oblique = 0.0;
};

// The records of `bytes` this kit draws, in order; records of other kinds (and damaged ones)
// are passed over. Strings not in Unicode are decoded with `decoder` (Latin-1 when null);
// polylines kept in DWG form are read as the release `dwgVersion` (1015 for AC1015) writes them.
std::vector<ProxyGraphicsItem> parseProxyGraphics(std::string_view bytes, const DxfTextDecoder* decoder,
                                                  int dwgVersion = 1015);

// The graphics bytes a proxy entity keeps in its groups, or empty.
std::string proxyGraphicsBytes(const ProxyEntity& proxy);

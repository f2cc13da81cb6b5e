// The graphics of a dimension drawn without its block, worked out from its definition points and
// dimension variables: dimension line or arc, extension lines, arrowheads and where the text goes.
// Everything is in the dimension's own plane (its OCS), as its text point is.
#pragma once

#include <string>
#include <vector>

#include "kit/db/Entities.h"
#include "kit/db/OdDbDatabase.h"

namespace gi {

enum class DimensionArrow : uint8_t { kClosedFilled, kClosed, kOpen, kOblique, kArchTick, kDot, kDotSmall, kNone };

// DIMBLK-style names ("", "_OBLIQUE", "_ARCHTICK", "_DOT" ...) to the arrowhead kinds drawn here.
DimensionArrow dimensionArrowByName(const std::string& blockName);

struct DimensionGeometryStyle {
  double arrowSize = 0.18;      // DIMASZ x DIMSCALE
  double tickSize = 0.0;        // DIMTSZ x DIMSCALE: ticks instead of arrows when above zero
  double extensionOffset = 0.0625;  // DIMEXO x DIMSCALE
  double extensionBeyond = 0.18;    // DIMEXE x DIMSCALE
  double lineBeyond = 0.0;          // DIMDLE x DIMSCALE (with ticks only)
  double centerMark = 0.09;         // DIMCEN x DIMSCALE
  double textHeight = 0.18;         // DIMTXT x DIMSCALE
  double textGap = 0.09;            // DIMGAP x DIMSCALE
  double textWidth = 0.0;           // of the text as drawn, for the gap left in the dimension line
  bool textAbove = false;           // DIMTAD != 0: the line is not broken for the text
  bool textInsideHorizontal = true;  // DIMTIH
  bool lineInside = false;          // DIMTOFL: radial dimensions draw their line across the circle
  bool suppressExtension1 = false, suppressExtension2 = false;  // DIMSE1, DIMSE2
  bool suppressLine1 = false, suppressLine2 = false;            // DIMSD1, DIMSD2
  DimensionArrow arrow1 = DimensionArrow::kClosedFilled, arrow2 = DimensionArrow::kClosedFilled;
  int arcSymbol = 0;  // DIMARCSYM: the arc length sign before the text (0), above it (1) or none (2)
};

struct DimensionGraphics {
  struct Segment {
    OdGePoint3d start, end;
    bool extension = false;  // drawn with the extension line colour
  };
  struct Arc {
    OdGePoint3d center;
    double radius = 0.0;
    OdGeVector3d startVector;  // unit, in the plane
    double sweep = 0.0;        // counter-clockwise
  };
  struct Arrow {
    OdGePoint3d tip;
    OdGeVector3d back;  // unit, from the tip along the arrow's body
    DimensionArrow kind = DimensionArrow::kClosedFilled;
  };
  std::vector<Segment> segments;
  std::vector<Arc> arcs;
  std::vector<Arrow> arrows;
  double measurement = 0.0;  // length, or angle in radians for angular kinds
  bool angular = false;
  OdGePoint3d textPosition;  // middle of the text
  double textRotation = 0.0;
};

// Lays out `e` (points read in the plane of e.normal); measurement taken from the geometry.
DimensionGraphics layoutDimension(const DimensionEntity& e, const DimensionGeometryStyle& style);

// The same with the style the entity's dimension variables give (text gap not counted).
DimensionGraphics regeneratedDimensionGraphics(const OdDbDatabase& db, const DimensionEntity& e);

}  // namespace gi

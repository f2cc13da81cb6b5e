// The curve an ACIS edge lies on, cut to the edge: straight-curve as a line between the edge's
// vertices, ellipse-curve as the arc from vertex to vertex in the edge's sense, intcurve-curve as
// its exact B-spline (bs3 data) over the edge's parameter range.
#pragma once

#include <string>
#include <vector>

#include "kit/gi/GiCurves.h"
#include "kit/gi/acis/AcisRecords.h"

struct AcisEdgeShape {
  enum class Kind : uint8_t { kLine, kArc, kSpline, kPolyline, kPoint };
  Kind kind = Kind::kLine;
  std::vector<OdGePoint3d> points;  // a line's two ends, a polyline's points, a lone vertex
  OdGeEllipArc3d arc;
  OdGeNurbCurve3d spline;
};

// What an edge record says about its ends.
struct AcisEdgeEnds {
  OdGePoint3d start, end;
  bool closed = false;    // one vertex at both ends
  bool reversed = false;  // the edge runs against its curve
  bool hasRange = false;  // the edge stores its parameter range (version 7 on)
  double startParam = 0.0, endParam = 0.0;
};

// How well an edge's curve could be read.
enum class AcisCurveFit : uint8_t {
  kExact,   // drawn as the curve
  kApprox,  // a spline whose data could not be used as such: the polyline through its data
  kChord,   // an unknown or unreadable curve: the straight line between the vertices
};

// The numbers of a record after its common part; counted strings holding numbers (a transform's values
// may come as one string) give theirs too.
std::vector<double> acisNumbers(const AcisModel& model, const AcisRecord& record);

AcisCurveFit acisEdgeShape(const AcisModel& model, const AcisRecord* curve, const AcisEdgeEnds& ends,
                           AcisEdgeShape& shape);

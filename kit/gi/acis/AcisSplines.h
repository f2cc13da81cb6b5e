// The B-spline of an intcurve-curve record: its sub-type data ("{ exactcur full nubs 3 open ...")
// or a reference to sub-type data met earlier ("{ ref 2 }"). Knots are stored once with their
// multiplicity, and without the outermost knot at each end.
#pragma once

#include <vector>

#include "kit/gi/GiCurves.h"
#include "kit/gi/acis/AcisRecords.h"

struct AcisSpline {
  OdGeNurbCurve3d curve;                   // valid when the whole bs3 data was read
  std::vector<OdGePoint3d> controlPoints;  // as many as could be read
  bool reversed = false;                   // the intcurve runs against its spline
};

// False when the record holds no spline data this reader knows (no control points at all).
bool readAcisSpline(const AcisModel& model, const AcisRecord& intcurve, AcisSpline& out);

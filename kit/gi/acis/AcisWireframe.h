// The wireframe of an ACIS model, as a 2D wireframe view shows a body: every edge once, as the
// curve between its vertices, found by walking body -> lump -> shell -> face -> loop -> coedge ->
// edge (and the wires of bodies and shells), in the coordinates of the drawing: each body's
// transform applied. Isolines of faces are not drawn.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "kit/gi/acis/AcisCurves.h"

struct AcisWireframe {
  std::vector<AcisEdgeShape> edges;
  size_t exactEdges = 0;
  size_t approximateEdges = 0;  // splines drawn through their data points
  size_t chordEdges = 0;        // unknown or unreadable curves drawn as chords
  std::set<std::string> unknownCurves;  // record names of the curves drawn as chords
  std::string problem;                  // where the data was damaged, if it was
};

AcisWireframe acisWireframe(const AcisModel& model);

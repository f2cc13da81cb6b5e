// REGION, 3DSOLID, BODY and the surface kinds, as a 2D wireframe shows them: the edges of their
// ACIS model, each as its curve, in world coordinates (ACIS models are not in an object
// coordinate system). Edges on curves this kit cannot read are drawn as chords; one line in the
// load report says so.
#include <algorithm>

#include "kit/gi/acis/AcisEntityData.h"
#include "kit/gi/acis/AcisWireframe.h"
#include "kit/gi/regen/RegenEntities.h"
#include "kit/gi/regen/RegenPrimitives.h"

namespace gi {

namespace {

void drawEdge(GiRegenContext& ctx, const AcisEdgeShape& edge) {
  switch (edge.kind) {
    case AcisEdgeShape::Kind::kLine:
    case AcisEdgeShape::Kind::kPolyline: drawChain(ctx, edge.points); break;
    case AcisEdgeShape::Kind::kArc: drawEllipse(ctx, edge.arc); break;
    case AcisEdgeShape::Kind::kSpline: drawNurbs(ctx, edge.spline); break;
    case AcisEdgeShape::Kind::kPoint: {
      OdGePoint3d p = edge.points.front();
      ctx.geometry().polylineProc(1, &p);
      break;
    }
  }
}

std::string problemLine(const ModelerGeometryEntity& e, const AcisWireframe& wires) {
  std::string line = e.dxfName + " " + e.handle.toHex() + ": ACIS data";
  if (!wires.problem.empty()) line += " damaged (" + wires.problem + ")";
  if (wires.chordEdges > 0) {
    line += (wires.problem.empty() ? " with " : ", ") + std::to_string(wires.chordEdges) +
            " edges on curves drawn as chords:";
    for (const std::string& name : wires.unknownCurves) line += " " + name;
  }
  return line;
}

// The load report is where the kit tells of data it could not use; regeneration holds the
// database read-only, and only adds a line it has not added before.
void report(GiRegenContext& ctx, std::string line) {
  LoadReport& report = const_cast<OdDbDatabase&>(ctx.database()).loadReport();
  if (std::find(report.messages.begin(), report.messages.end(), line) == report.messages.end()) {
    report.addMessage(std::move(line));
  }
}

}  // namespace

void regenModelerGeometry(GiRegenContext& ctx, const ModelerGeometryEntity& e) {
  AcisModel model = acisModelOf(e);
  if (model.records.empty() && model.problem.empty()) return;  // no ACIS data kept
  AcisWireframe wires = acisWireframe(model);
  for (const AcisEdgeShape& edge : wires.edges) drawEdge(ctx, edge);
  if (!wires.problem.empty() || wires.chordEdges > 0) report(ctx, problemLine(e, wires));
}

}  // namespace gi

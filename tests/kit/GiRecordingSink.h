// A sink for the vectorization tests: it takes circles, arcs and texts natively (as a device's
// sink would), lets the simplifier break down everything else, and records every call with the
// traits in force, so that tests can ask what reached the end of the conveyor.
#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "kit/gi/OdGiGeometrySimplifier.h"

struct RecordedCall {
  std::string kind;  // "polyline", "polygon", "circle", "arc", "text", "xline", "ray", "shell", "image"
  std::vector<OdGePoint3d> points;
  OdGePoint3d center;
  double radius = 0.0;
  OdGeVector3d normal;
  OdGeVector3d startVector;
  double sweep = 0.0;
  OdGeVector3d direction;
  OdGeVector3d up;
  std::wstring text;
  OdGiTextStyle style;
  OdGiSubEntityTraitsData traits;
};

class RecordingSink : public OdGiGeometrySimplifier {
public:
  bool nativeCurves = true;  // circles and arcs with a z normal are recorded as such
  std::vector<RecordedCall> calls;

  std::vector<RecordedCall> ofKind(const std::string& kind) const {
    std::vector<RecordedCall> result;
    for (const RecordedCall& c : calls) {
      if (c.kind == kind) result.push_back(c);
    }
    return result;
  }
  size_t count(const std::string& kind) const { return ofKind(kind).size(); }

  using OdGiGeometrySimplifier::circleProc;
  using OdGiGeometrySimplifier::circularArcProc;

  void circleProc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                  const OdGeVector3d* extrusion = nullptr) override {
    if (!nativeCurves || !isZ(normal)) return OdGiGeometrySimplifier::circleProc(center, radius, normal, extrusion);
    RecordedCall& c = record("circle");
    c.center = center;
    c.radius = radius;
    c.normal = normal;
  }
  void circularArcProc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                       const OdGeVector3d& startVector, double sweepAngle, OdGiArcType arcType = kOdGiArcSimple,
                       const OdGeVector3d* extrusion = nullptr) override {
    if (!nativeCurves || !isZ(normal)) {
      return OdGiGeometrySimplifier::circularArcProc(center, radius, normal, startVector, sweepAngle, arcType,
                                                     extrusion);
    }
    RecordedCall& c = record("arc");
    c.center = center;
    c.radius = radius;
    c.normal = normal;
    c.startVector = startVector;
    c.sweep = sweepAngle;
  }
  void textProc(const OdGePoint3d& position, const OdGeVector3d& direction, const OdGeVector3d& upVector,
                const OdChar* msg, int32_t numChars, bool, const OdGiTextStyle* textStyle,
                const OdGeVector3d* = nullptr) override {
    RecordedCall& c = record("text");
    c.points = {position};
    c.direction = direction;
    c.up = upVector;
    c.text = numChars < 0 ? std::wstring(msg) : std::wstring(msg, size_t(numChars));
    if (textStyle) c.style = *textStyle;
  }
  void xlineProc(const OdGePoint3d& a, const OdGePoint3d& b) override { record("xline").points = {a, b}; }
  void rayProc(const OdGePoint3d& a, const OdGePoint3d& b) override { record("ray").points = {a, b}; }
  void shellProc(int32_t numVertices, const OdGePoint3d* vertexList, int32_t faceListSize, const int32_t* faceList,
                 const OdGiEdgeData* edgeData = nullptr, const OdGiFaceData* faceData = nullptr,
                 const OdGiVertexData* vertexData = nullptr) override {
    record("shell").points.assign(vertexList, vertexList + numVertices);
    OdGiGeometrySimplifier::shellProc(numVertices, vertexList, faceListSize, faceList, edgeData, faceData, vertexData);
  }
  void polylineOut(int32_t n, const OdGePoint3d* p) override { record("polyline").points.assign(p, p + n); }
  void polygonOut(int32_t n, const OdGePoint3d* p) override { record("polygon").points.assign(p, p + n); }

private:
  static bool isZ(const OdGeVector3d& n) {
    OdGeVector3d u = n.normal();
    return std::fabs(u.x) < 1e-9 && std::fabs(u.y) < 1e-9;
  }
  RecordedCall& record(const std::string& kind) {
    calls.push_back({});
    calls.back().kind = kind;
    if (drawContext()) calls.back().traits = drawContext()->effectiveTraits();
    return calls.back();
  }
};

// Distance from a point to a point list taken as a chain of segments.
inline double distanceToChain(const OdGePoint3d& p, const std::vector<OdGePoint3d>& chain) {
  double best = 1e300;
  for (size_t i = 0; i + 1 < chain.size(); ++i) {
    OdGeVector3d ab = chain[i + 1] - chain[i];
    double len2 = ab.dotProduct(ab);
    double t = len2 > 0 ? std::clamp((p - chain[i]).dotProduct(ab) / len2, 0.0, 1.0) : 0.0;
    best = std::min(best, p.distanceTo(chain[i] + ab * t));
  }
  if (chain.size() == 1) best = p.distanceTo(chain[0]);
  return best;
}

// Shoelace area of a closed xy point list (first point not repeated or repeated).
inline double areaOf(const std::vector<OdGePoint3d>& pts) {
  double a = 0.0;
  for (size_t i = 0; i < pts.size(); ++i) {
    const OdGePoint3d& p = pts[i];
    const OdGePoint3d& q = pts[(i + 1) % pts.size()];
    a += p.x * q.y - q.x * p.y;
  }
  return a / 2.0;
}

// Traits that a test sets by hand.
struct FixedTraitsContext : OdGiConveyorContext {
  OdGiSubEntityTraitsData data;
  const OdGiSubEntityTraitsData& effectiveTraits() const override { return data; }
};

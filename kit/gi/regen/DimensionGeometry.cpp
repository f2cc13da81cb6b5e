#include "kit/gi/regen/DimensionGeometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace gi {
namespace {

using Kind = DimensionEntity::Kind;
using Graphics = DimensionGraphics;
constexpr double kTwoPi = 2.0 * std::numbers::pi;

// World points into the dimension's plane, all at the elevation of its text point.
struct Plane {
  OdGeMatrix3d toPlane;
  double elevation = 0.0;
  Plane(const OdGeVector3d& normal, double z) : elevation(std::isfinite(z) ? z : 0.0) {
    OdGeVector3d n = normal.isZeroLength() ? kDefaultNormal : normal.normal();
    if (!OdGeMatrix3d::planeToWorld(n).invert(toPlane)) toPlane = OdGeMatrix3d();
  }
  OdGePoint3d operator()(const OdGePoint3d& world) const {
    OdGePoint3d p = toPlane.transform(world);
    return {p.x, p.y, elevation};
  }
};

OdGeVector3d unitOr(const OdGeVector3d& v, const OdGeVector3d& fallback) {
  double length = v.length();
  return length > 1e-12 && std::isfinite(length) ? v * (1.0 / length) : fallback;
}
OdGeVector3d perpendicular(const OdGeVector3d& v) { return {-v.y, v.x, 0.0}; }
OdGeVector3d direction(double angle) { return {std::cos(angle), std::sin(angle), 0.0}; }
double angleOf(const OdGeVector3d& v) { return std::atan2(v.y, v.x); }
double normalized(double angle) {
  double a = std::fmod(angle, kTwoPi);
  return a < 0.0 ? a + kTwoPi : a;
}
bool ticks(DimensionArrow kind) { return kind == DimensionArrow::kOblique || kind == DimensionArrow::kArchTick; }

// Text along a direction, turned so that it reads from left to right or from the bottom up.
double readableAngle(const OdGeVector3d& along) {
  double angle = normalized(angleOf(along));
  if (angle > std::numbers::pi / 2 + 1e-9 && angle <= 3 * std::numbers::pi / 2 + 1e-9) angle -= std::numbers::pi;
  return angle;
}

void addExtension(Graphics& g, const OdGePoint3d& origin, const OdGePoint3d& onLine, const OdGeVector3d& fallback,
                  const DimensionGeometryStyle& s) {
  OdGeVector3d out = unitOr(onLine - origin, fallback);
  g.segments.push_back({origin + out * s.extensionOffset, onLine + out * s.extensionBeyond, true});
}

// The straight dimension line between a and b with its arrows, broken around centred text and
// halved by DIMSD1/DIMSD2.
void addDimensionLine(Graphics& g, const OdGePoint3d& a, const OdGePoint3d& b, const DimensionGeometryStyle& s) {
  OdGeVector3d along = b - a;
  double length = along.length();
  OdGeVector3d u = unitOr(along, OdGeVector3d::kXAxis());
  double arrow = s.tickSize > 0.0 ? 0.0 : s.arrowSize;
  bool tickEnds = s.tickSize > 0.0 || (ticks(s.arrow1) && ticks(s.arrow2));
  bool inside = length >= 2.0 * arrow;
  DimensionArrow kind1 = s.tickSize > 0.0 ? DimensionArrow::kOblique : s.arrow1;
  DimensionArrow kind2 = s.tickSize > 0.0 ? DimensionArrow::kOblique : s.arrow2;
  if (!s.suppressLine1) g.arrows.push_back({a, inside || tickEnds ? u : -u, kind1});
  if (!s.suppressLine2) g.arrows.push_back({b, inside || tickEnds ? -u : u, kind2});
  double beyond = tickEnds ? s.lineBeyond : 0.0;
  OdGePoint3d start = a - u * beyond, end = b + u * beyond;
  if (!inside && !tickEnds) {  // arrows outside, each with a short tail
    start = a - u * (2.0 * arrow);
    end = b + u * (2.0 * arrow);
  }
  OdGePoint3d middle = a + u * (length / 2.0);
  // Centred text on the line leaves a gap as wide as itself.
  double t = (g.textPosition - a).dotProduct(u);
  double off = std::fabs((g.textPosition - a).dotProduct(perpendicular(u)));
  std::vector<std::pair<OdGePoint3d, OdGePoint3d>> pieces;
  if (!s.textAbove && s.textWidth > 0.0 && off < s.textHeight && t > 0.0 && t < length) {
    double half = s.textWidth / 2.0 + s.textGap;
    middle = a + u * t;
    if (t - half > 0.0) pieces.push_back({start, middle - u * half});
    if (t + half < length) pieces.push_back({middle + u * half, end});
  } else {
    pieces.push_back({start, middle});
    pieces.push_back({middle, end});
  }
  for (auto& [p, q] : pieces) {
    bool firstHalf = (p - a).dotProduct(u) < (middle - a).dotProduct(u) - 1e-12;
    if (firstHalf ? s.suppressLine1 : s.suppressLine2) continue;
    g.segments.push_back({p, q, false});
  }
}

void layoutLinear(Graphics& g, const DimensionEntity& e, const Plane& plane, const DimensionGeometryStyle& s) {
  OdGePoint3d p1 = plane(e.defPoint2), p2 = plane(e.defPoint3), onLine = plane(e.definitionPoint);
  OdGeVector3d u = e.kind == Kind::kAligned ? unitOr(p2 - p1, OdGeVector3d::kXAxis()) : direction(e.rotation);
  OdGeVector3d n = perpendicular(u);
  // Extension lines run perpendicular to the line, or at the oblique angle.
  OdGeVector3d across = e.obliqueAngle != 0.0 && std::fabs(direction(e.obliqueAngle).dotProduct(n)) > 1e-6
                            ? direction(e.obliqueAngle) : n;
  auto foot = [&](const OdGePoint3d& p) { return p + across * ((onLine - p).dotProduct(n) / across.dotProduct(n)); };
  OdGePoint3d q1 = foot(p1), q2 = foot(p2);
  g.measurement = std::fabs((p2 - p1).dotProduct(u));
  OdGeVector3d side = (onLine - p1).dotProduct(n) >= 0.0 ? n : -n;
  // Some writers leave the text point out: the text then goes above the middle of the line.
  if (e.textMidpoint == OdGePoint3d() && !(q1 - q2).isZeroLength()) {
    g.textPosition = q1 + (q2 - q1) * 0.5 + side * (s.textHeight / 2.0 + s.textGap);
  }
  if (!s.suppressExtension1) addExtension(g, p1, q1, side, s);
  if (!s.suppressExtension2) addExtension(g, p2, q2, side, s);
  addDimensionLine(g, q1, q2, s);
  g.textRotation = s.textInsideHorizontal ? 0.0 : readableAngle(u);
}

// Arrows at both ends of a dimension arc, pointing outwards along it.
void addDimensionArc(Graphics& g, const OdGePoint3d& center, double radius, double start, double sweep,
                     const DimensionGeometryStyle& s) {
  g.arcs.push_back({center, radius, direction(start), sweep});
  // Text not kept horizontal follows the arc where it stands.
  if (!s.textInsideHorizontal) g.textRotation = readableAngle(perpendicular(unitOr(g.textPosition - center, direction(start))));
  if (!(radius > 0.0)) return;
  OdGePoint3d a = center + direction(start) * radius, b = center + direction(start + sweep) * radius;
  DimensionArrow kind1 = s.tickSize > 0.0 ? DimensionArrow::kOblique : s.arrow1;
  DimensionArrow kind2 = s.tickSize > 0.0 ? DimensionArrow::kOblique : s.arrow2;
  if (!s.suppressLine1) g.arrows.push_back({a, perpendicular(direction(start)), kind1});
  if (!s.suppressLine2) g.arrows.push_back({b, -perpendicular(direction(start + sweep)), kind2});
}

// The counter-clockwise sweep from ray `from` to ray `to` that holds `through`, taken the other
// way round when it does not.
void sectorThrough(double from, double to, double through, double& start, double& sweep) {
  start = from;
  sweep = normalized(to - from);
  if (normalized(through - from) > sweep) {
    start = to;
    sweep = kTwoPi - sweep;
  }
}

// An extension line along a ray from the centre, from a point at `distance` to the arc.
void addRadialExtension(Graphics& g, const OdGePoint3d& center, double angle, double distance, double radius,
                        const DimensionGeometryStyle& s) {
  double sign = radius >= distance ? 1.0 : -1.0;
  OdGeVector3d d = direction(angle);
  g.segments.push_back({center + d * (distance + sign * s.extensionOffset),
                        center + d * (radius + sign * s.extensionBeyond), true});
}

void layoutAngular3Point(Graphics& g, const DimensionEntity& e, const Plane& plane, const DimensionGeometryStyle& s) {
  OdGePoint3d center = plane(e.defPoint4), p1 = plane(e.defPoint2), p2 = plane(e.defPoint3);
  OdGePoint3d arcPoint = plane(e.definitionPoint);
  double radius = (arcPoint - center).length();
  double start = 0.0, sweep = 0.0;
  sectorThrough(angleOf(p1 - center), angleOf(p2 - center), angleOf(arcPoint - center), start, sweep);
  if (e.kind == Kind::kArcLength) g.measurement = (p1 - center).length() * sweep;
  else g.measurement = sweep;
  bool firstIsStart = std::fabs(normalized(angleOf(p1 - center) - start)) < 1e-9;
  const OdGePoint3d& atStart = firstIsStart ? p1 : p2;
  const OdGePoint3d& atEnd = firstIsStart ? p2 : p1;
  if (!(firstIsStart ? s.suppressExtension1 : s.suppressExtension2))
    addRadialExtension(g, center, start, (atStart - center).length(), radius, s);
  if (!(firstIsStart ? s.suppressExtension2 : s.suppressExtension1))
    addRadialExtension(g, center, start + sweep, (atEnd - center).length(), radius, s);
  addDimensionArc(g, center, radius, start, sweep, s);
}

// The arc length sign, an arc drawn as geometry as AutoCAD draws it: before the text or above it.
void addArcSymbol(Graphics& g, const DimensionGeometryStyle& s) {
  if (s.arcSymbol != 0 && s.arcSymbol != 1) return;
  OdGeVector3d along = direction(g.textRotation), up = perpendicular(along);
  double h = s.textHeight;
  OdGePoint3d center = s.arcSymbol == 0 ? g.textPosition - along * (s.textWidth / 2.0 + 0.6 * h) - up * (0.25 * h)
                                        : g.textPosition + up * (0.3 * h);
  double start = g.textRotation + std::numbers::pi / 6;
  g.arcs.push_back({center, 0.45 * h, direction(start), 2.0 * std::numbers::pi / 3});
}

bool intersect(const OdGePoint3d& a, const OdGeVector3d& u, const OdGePoint3d& b, const OdGeVector3d& v,
               OdGePoint3d& at) {
  double cross = u.x * v.y - u.y * v.x;
  if (std::fabs(cross) < 1e-12) return false;
  OdGeVector3d ab = b - a;
  at = a + u * ((ab.x * v.y - ab.y * v.x) / cross);
  return true;
}

void layoutAngular2Line(Graphics& g, const DimensionEntity& e, const Plane& plane, const DimensionGeometryStyle& s) {
  OdGePoint3d a1 = plane(e.defPoint2), a2 = plane(e.defPoint3), b1 = plane(e.defPoint4), b2 = plane(e.definitionPoint);
  OdGePoint3d arcPoint{e.arcPoint.x, e.arcPoint.y, a1.z};
  OdGeVector3d u = unitOr(a2 - a1, OdGeVector3d::kXAxis()), v = unitOr(b2 - b1, OdGeVector3d::kYAxis());
  OdGePoint3d center;
  if (!intersect(a1, u, b1, v, center)) return;
  double radius = (arcPoint - center).length();
  double through = angleOf(arcPoint - center);
  // Of the four sectors between the two lines, the one holding the arc point.
  double start = 0.0, sweep = kTwoPi;
  for (double ra : {angleOf(u), angleOf(u) + std::numbers::pi}) {
    for (double rb : {angleOf(v), angleOf(v) + std::numbers::pi}) {
      double s0 = ra, sw = normalized(rb - ra);
      if (sw > std::numbers::pi) {
        s0 = rb;
        sw = kTwoPi - sw;
      }
      if (normalized(through - s0) <= sw + 1e-12 && sw < sweep) {
        start = s0;
        sweep = sw;
      }
    }
  }
  g.measurement = sweep;
  // Each line reaches the arc, or gets an extension line from its nearer end.
  auto extend = [&](const OdGePoint3d& p, const OdGePoint3d& q, double angle, bool suppressed) {
    if (suppressed) return;
    OdGeVector3d d = direction(angle);
    double tp = (p - center).dotProduct(d), tq = (q - center).dotProduct(d);
    double near = std::min(tp, tq), far = std::max(tp, tq);
    if (radius > far) addRadialExtension(g, center, angle, far, radius, s);
    else if (radius < near) addRadialExtension(g, center, angle, near, radius, s);
  };
  bool uFirst = std::fabs(std::sin(start - angleOf(u))) < 1e-9;
  extend(uFirst ? a1 : b1, uFirst ? a2 : b2, start, s.suppressExtension1);
  extend(uFirst ? b1 : a1, uFirst ? b2 : a2, start + sweep, s.suppressExtension2);
  addDimensionArc(g, center, radius, start, sweep, s);
}

void addCenterMark(Graphics& g, const OdGePoint3d& center, const DimensionGeometryStyle& s) {
  double size = std::fabs(s.centerMark);
  if (!(size > 0.0)) return;
  g.segments.push_back({center - OdGeVector3d::kXAxis() * size, center + OdGeVector3d::kXAxis() * size, false});
  g.segments.push_back({center - OdGeVector3d::kYAxis() * size, center + OdGeVector3d::kYAxis() * size, false});
}

// Radius and diameter: the line through the chord point towards the text, with the arrow on the
// circle pointing at it from the side of the line.
void layoutRadial(Graphics& g, const DimensionEntity& e, const Plane& plane, const DimensionGeometryStyle& s) {
  bool diameter = e.kind == Kind::kDiameter;
  OdGePoint3d chord = plane(e.defPoint4), other = plane(e.definitionPoint);
  OdGePoint3d center = diameter ? other + (chord - other) * 0.5 : other;
  double radius = (chord - center).length();
  g.measurement = diameter ? 2.0 * radius : radius;
  OdGeVector3d out = unitOr(chord - center, OdGeVector3d::kXAxis());
  double textDistance = (g.textPosition - center).dotProduct(out);
  DimensionArrow kind = s.tickSize > 0.0 ? DimensionArrow::kOblique : s.arrow2;
  if (!s.lineInside && s.textInsideHorizontal) {
    // A leader: one arrow on the circle, a line to an elbow and a landing up to the text.
    double side = g.textPosition.x >= chord.x ? 1.0 : -1.0;
    OdGePoint3d landing = g.textPosition - OdGeVector3d::kXAxis() * (side * (s.textWidth / 2.0 + s.textGap));
    OdGePoint3d elbow = landing - OdGeVector3d::kXAxis() * (side * s.arrowSize);
    g.segments.push_back({landing, elbow, false});
    g.segments.push_back({elbow, chord, false});
    g.arrows.push_back({chord, unitOr(elbow - chord, -out), kind});
    if (textDistance > radius) addCenterMark(g, center, s);
  } else if (textDistance > radius) {
    double reach = std::max(radius + 2.0 * s.arrowSize, textDistance - s.textWidth / 2.0 - s.textGap);
    g.segments.push_back({chord, center + out * reach, false});
    g.arrows.push_back({chord, out, kind});
    if (diameter) {
      g.segments.push_back({center - out * radius, center - out * (radius + 2.0 * s.arrowSize), false});
      g.arrows.push_back({center - out * radius, -out, kind});
    }
    addCenterMark(g, center, s);
  } else {
    g.segments.push_back({diameter ? center - out * radius : center, chord, false});
    g.arrows.push_back({chord, -out, kind});
    if (diameter) g.arrows.push_back({center - out * radius, out, kind});
  }
  g.textRotation = s.textInsideHorizontal ? 0.0 : readableAngle(out);
}

void layoutJoggedRadius(Graphics& g, const DimensionEntity& e, const Plane& plane, const DimensionGeometryStyle& s) {
  OdGePoint3d center = plane(e.definitionPoint), chord = plane(e.defPoint2);
  OdGePoint3d shownCenter = plane(e.defPoint3), jog = plane(e.defPoint4);
  g.measurement = (chord - center).length();
  OdGeVector3d in = unitOr(center - chord, -OdGeVector3d::kXAxis());
  // From the chord point towards the centre until level with the jog, across to the line through
  // the shown centre, and on to it.
  OdGePoint3d onRadius = chord + in * (jog - chord).dotProduct(in);
  OdGePoint3d onShown = shownCenter + in * (jog - shownCenter).dotProduct(in);
  double jogSize = s.arrowSize;
  g.segments.push_back({chord, onRadius - in * (jogSize / 2.0), false});
  g.segments.push_back({onRadius - in * (jogSize / 2.0), onShown + in * (jogSize / 2.0), false});
  g.segments.push_back({onShown + in * (jogSize / 2.0), shownCenter, false});
  g.arrows.push_back({chord, in, s.tickSize > 0.0 ? DimensionArrow::kOblique : s.arrow2});
  g.textRotation = s.textInsideHorizontal ? 0.0 : readableAngle(-in);
}

// Ordinate: a leader from the feature to the text with a jog when they are not level.
void layoutOrdinate(Graphics& g, const DimensionEntity& e, const Plane& plane, const DimensionGeometryStyle& s) {
  OdGePoint3d origin = plane(e.definitionPoint), feature = plane(e.defPoint2), end = plane(e.defPoint3);
  bool xDatum = (e.dimensionFlags & DimensionEntity::kOrdinateX) != 0;
  g.measurement = std::fabs(xDatum ? feature.x - origin.x : feature.y - origin.y);
  OdGeVector3d along = xDatum ? OdGeVector3d::kYAxis() : OdGeVector3d::kXAxis();
  OdGeVector3d across = perpendicular(along);
  double length = (end - feature).dotProduct(along);
  double sign = length >= 0.0 ? 1.0 : -1.0;
  OdGePoint3d start = feature + along * (sign * s.extensionOffset);
  double offset = (end - feature).dotProduct(across);
  if (std::fabs(offset) < 1e-9 || std::fabs(length) < 4.0 * s.arrowSize) {
    g.segments.push_back({start, end, true});
  } else {
    OdGePoint3d kneeA = feature + along * (length - sign * 2.0 * s.arrowSize);
    OdGePoint3d kneeB = end - along * (sign * s.arrowSize);
    g.segments.push_back({start, kneeA, true});
    g.segments.push_back({kneeA, kneeB, true});
    g.segments.push_back({kneeB, end, true});
  }
  g.textRotation = s.textInsideHorizontal ? 0.0 : readableAngle(along);
}

}  // namespace

DimensionArrow dimensionArrowByName(const std::string& blockName) {
  std::string name;
  for (char c : blockName) name += char(std::toupper(static_cast<unsigned char>(c)));
  if (!name.empty() && name[0] != '_') name.insert(name.begin(), '_');
  if (name == "_OBLIQUE") return DimensionArrow::kOblique;
  if (name == "_ARCHTICK") return DimensionArrow::kArchTick;
  if (name == "_DOT") return DimensionArrow::kDot;
  if (name == "_DOTSMALL" || name == "_SMALL") return DimensionArrow::kDotSmall;
  if (name == "_OPEN" || name == "_OPEN30" || name == "_OPEN90") return DimensionArrow::kOpen;
  if (name == "_CLOSED" || name == "_CLOSEDBLANK" || name == "_BOXBLANK" || name == "_DATUMBLANK")
    return DimensionArrow::kClosed;
  if (name == "_NONE" || name == "_INTEGRAL") return DimensionArrow::kNone;
  return DimensionArrow::kClosedFilled;
}

DimensionGraphics layoutDimension(const DimensionEntity& e, const DimensionGeometryStyle& style) {
  Graphics g;
  Plane plane(e.normal, e.textMidpoint.z);
  g.textPosition = e.textMidpoint;
  switch (e.kind) {
    case Kind::kRotated: case Kind::kAligned: layoutLinear(g, e, plane, style); break;
    case Kind::kAngular3Point: layoutAngular3Point(g, e, plane, style); g.angular = true; break;
    case Kind::kArcLength: layoutAngular3Point(g, e, plane, style); break;
    case Kind::kAngular2Line: layoutAngular2Line(g, e, plane, style); g.angular = true; break;
    case Kind::kRadius: case Kind::kDiameter: layoutRadial(g, e, plane, style); break;
    case Kind::kRadialLarge: layoutJoggedRadius(g, e, plane, style); break;
    case Kind::kOrdinate: layoutOrdinate(g, e, plane, style); break;
  }
  if (e.textRotation != 0.0 && std::isfinite(e.textRotation)) g.textRotation = e.textRotation;
  if (e.kind == Kind::kArcLength) addArcSymbol(g, style);
  return g;
}

}  // namespace gi

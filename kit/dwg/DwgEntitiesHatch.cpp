// HATCH and MPOLYGON: gradient (R2004 on), boundary loops (polylines with bulges, or edges: lines, arcs,
// elliptic arcs, splines), pattern lines and seed points, then the handles of the objects each
// loop was made from. Every count is bounded by the bits left, so damage cannot make it loop
// or allocate for long.
#include "kit/dwg/DwgEntityReaders.h"
#include "kit/dwg/DwgLoader.h"

namespace {

void readGradient(DwgObjectContext& c, HatchGradient& g) {
  DwgBitReader& d = c.d;
  g.enabled = d.BL() != 0;
  d.BL();  // reserved
  g.angle = d.BD();
  g.shift = d.BD();
  g.singleColor = d.BL() != 0;
  g.tint = d.BD();
  uint32_t colors = c.boundedCount(d.BL(), 2 + 2 + 2 + 8);
  for (uint32_t i = 0; i < colors && !c.s.overrun(); ++i) {
    double value = d.BD();
    g.colors.emplace_back(value, c.s.color().color);
  }
  g.name = c.s.text();
}

void readSplineEdge(DwgObjectContext& c, HatchSplineEdge& s) {
  DwgBitReader& d = c.d;
  s.degree = int16_t(d.BL());
  s.rational = d.B();
  s.periodic = d.B();
  int32_t knots = d.BL();
  int32_t points = d.BL();
  uint32_t nKnots = c.boundedCount(knots, 2);
  for (uint32_t i = 0; i < nKnots && !d.overrun(); ++i) s.knots.push_back(d.BD());
  uint32_t nPoints = c.boundedCount(points, 128);
  for (uint32_t i = 0; i < nPoints && !d.overrun(); ++i) {
    s.controlPoints.push_back(d.point2RD());
    if (s.rational) s.weights.push_back(d.BD());
  }
  if (c.atLeast(kDwgR2010)) {
    uint32_t fit = c.boundedCount(d.BL(), 128);
    for (uint32_t i = 0; i < fit && !d.overrun(); ++i) s.fitPoints.push_back(d.point2RD());
    if (fit) {
      OdGePoint2d start = d.point2RD(), end = d.point2RD();
      s.startTangent = {start.x, start.y};
      s.endTangent = {end.x, end.y};
    }
  }
}

void readEdge(DwgObjectContext& c, HatchEdge& e) {
  DwgBitReader& d = c.d;
  e.type = HatchEdge::Type(d.RC());
  switch (e.type) {
    case HatchEdge::kLine:
      e.start = d.point2RD();
      e.end = d.point2RD();
      break;
    case HatchEdge::kCircularArc:
      e.start = d.point2RD();
      e.radius = d.BD();
      e.startAngle = d.BD();
      e.endAngle = d.BD();
      e.counterClockwise = d.B();
      break;
    case HatchEdge::kEllipticArc:
      e.start = d.point2RD();
      e.end = d.point2RD();
      e.radius = d.BD();
      e.startAngle = d.BD();
      e.endAngle = d.BD();
      e.counterClockwise = d.B();
      break;
    case HatchEdge::kSpline:
      e.spline = std::make_unique<HatchSplineEdge>();
      readSplineEdge(c, *e.spline);
      break;
    default:
      d.skip(d.bitsLeft() + 1);  // an unknown edge kind: nothing after it can be trusted
      break;
  }
}

// Returns the number of source object handles the loop lists.
uint32_t readLoop(DwgObjectContext& c, HatchLoop& loop) {
  DwgBitReader& d = c.d;
  loop.flags = d.BL();
  if (!loop.isPolyline()) {
    uint32_t edges = c.boundedCount(d.BL(), 8 + 8);  // a kind byte and at least a spline's counts
    loop.edges.resize(edges);
    for (uint32_t i = 0; i < edges && !d.overrun(); ++i) readEdge(c, loop.edges[i]);
  } else {
    bool bulges = d.B();
    loop.closed = d.B();
    uint32_t points = c.boundedCount(d.BL(), 128);
    for (uint32_t i = 0; i < points && !d.overrun(); ++i) {
      loop.points.push_back(d.point2RD());
      if (bulges) loop.bulges.push_back(d.BD());
    }
  }
  return c.boundedCount(d.BL(), 8, c.s.handles);
}

void readPattern(DwgObjectContext& c, HatchData& e) {
  DwgBitReader& d = c.d;
  e.patternAngle = d.BD();
  e.patternScale = d.BD();
  e.patternDouble = d.B();
  uint32_t lines = c.boundedCount(d.BS(), 2 + 4 + 4 + 2);
  e.patternLines.resize(lines);
  for (HatchPatternLine& line : e.patternLines) {
    line.angle = d.BD();
    line.basePoint = d.point2BD();
    OdGePoint2d offset = d.point2BD();
    line.offset = {offset.x, offset.y};
    uint32_t dashes = c.boundedCount(d.BS(), 2);
    for (uint32_t i = 0; i < dashes && !d.overrun(); ++i) line.dashes.push_back(d.BD());
    if (d.overrun()) break;
  }
}

}  // namespace

void readDwgHatch(DwgObjectContext& c) {
  auto* e = c.newEntity<HatchEntity>();
  DwgBitReader& d = c.d;
  if (c.atLeast(kDwgR2004)) readGradient(c, e->gradient);
  e->elevationPoint = {0.0, 0.0, d.BD()};
  e->normal = d.vector3BD();
  e->patternName = c.s.text();
  e->solidFill = d.B();
  e->associative = d.B();
  uint32_t loops = c.boundedCount(d.BL(), 6);
  e->loops.resize(loops);
  std::vector<uint32_t> sourceCounts(loops, 0);
  bool derived = false;
  for (uint32_t i = 0; i < loops && !d.overrun(); ++i) {
    sourceCounts[i] = readLoop(c, e->loops[i]);
    if (e->loops[i].flags & HatchLoop::kDerived) derived = true;
  }
  e->style = d.BS();
  e->patternType = d.BS();
  if (!e->solidFill) readPattern(c, *e);
  if (derived) e->pixelSize = d.BD();
  uint32_t seeds = c.boundedCount(d.BL(), 128);
  for (uint32_t i = 0; i < seeds && !d.overrun(); ++i) e->seedPoints.push_back(d.point2RD());
  for (uint32_t i = 0; i < loops; ++i) {
    for (uint32_t k = 0; k < sourceCounts[i] && !c.s.overrun(); ++k) e->loops[i].sourceObjects.push_back(c.s.handle());
  }
}

namespace {

// An MPOLYGON loop: always a polyline, its closed flag before its bulge flag (the reverse of a
// hatch's).
void readMPolygonLoop(DwgObjectContext& c, HatchLoop& loop) {
  DwgBitReader& d = c.d;
  loop.flags = HatchLoop::kPolyline;
  d.B();  // closed: an area's loops always are
  bool bulges = d.B();
  uint32_t count = c.boundedCount(d.BL(), bulges ? 128 + 2 : 128);
  for (uint32_t i = 0; i < count && !d.overrun(); ++i) {
    loop.points.push_back(d.point2RD());
    if (bulges) loop.bulges.push_back(d.BD());
  }
}

}  // namespace

// MPOLYGON: a leading style, the hatch's gradient, plane and name, a solid flag (no associative
// one), its polyline loops, style and pattern, then the fill colour.
void readDwgMPolygon(DwgObjectContext& c) {
  auto* e = c.newEntity<MPolygonEntity>();
  DwgBitReader& d = c.d;
  e->style = d.BS();
  if (c.atLeast(kDwgR2004)) readGradient(c, e->gradient);
  e->elevationPoint = {0.0, 0.0, d.BD()};
  e->normal = d.vector3BD();
  e->patternName = c.s.text();
  e->solidFill = d.B();
  uint32_t loops = c.boundedCount(d.BL(), 2 + 2 + 2);
  e->loops.resize(loops);
  for (uint32_t i = 0; i < loops && !d.overrun(); ++i) readMPolygonLoop(c, e->loops[i]);
  e->style = d.BS();
  e->patternType = d.BS();
  if (!e->solidFill) readPattern(c, *e);
  // The fill colour's index leads; what follows it (true colour, the pattern offset, the
  // boundary object count) is not needed to draw the polygon and is left unread.
  int16_t fill = d.BS();
  if (fill >= 1 && fill <= 255) {
    e->fillColor = OdCmEntityColor::fromACI(fill);
    e->hasFillColor = true;
  }
}

// VIEWPORT entities: the paper space frame and the model space view it shows (kept in extended
// data by R13 and R14). Files do not store viewport
// numbers; the active layout's are given once the blocks are assembled, the others keep 0 as
// AutoCAD has them until their layout is shown.
#include "kit/dwg/DwgEntityReaders.h"
#include "kit/dwg/DwgLoader.h"

namespace {

void readView(DwgObjectContext& c, ViewportEntity& e) {
  DwgBitReader& d = c.d;
  e.viewTarget = d.point3BD();
  e.viewDirection = d.vector3BD();
  e.twistAngle = d.BD();
  e.viewHeight = d.BD();
  e.lensLength = d.BD();
  e.frontClip = d.BD();
  e.backClip = d.BD();
  e.snapAngle = d.BD();
  e.viewCenter = d.point2RD();
  e.snapBase = d.point2RD();
  e.snapSpacing = d.point2RD();
  e.gridSpacing = d.point2RD();
  e.circleSides = d.BS();
  if (c.atLeast(kDwgR2007)) d.BS();  // major grid lines
}

// Frozen layer count, status and the UCS; returns the frozen layer count.
int32_t readSettings(DwgObjectContext& c, ViewportEntity& e) {
  DwgBitReader& d = c.d;
  int32_t frozen = d.BL();
  e.statusFlags = d.BL();
  e.plotStyleSheet = c.s.text();
  e.renderMode = d.RC();
  d.B();  // UCS icon at origin
  e.ucsPerViewport = d.B();
  e.ucsOrigin = d.point3BD();
  e.ucsXAxis = d.vector3BD();
  e.ucsYAxis = d.vector3BD();
  e.elevation = d.BD();
  d.BS();  // orthographic UCS kind
  if (c.atLeast(kDwgR2004)) e.shadePlotMode = d.BS();
  if (c.atLeast(kDwgR2007)) {
    d.B();   // default lighting
    d.RC();  // default lighting kind
    d.BD();  // brightness
    d.BD();  // contrast
    (void)c.s.color();  // ambient light colour
  }
  return frozen;
}

void readViewportHandles(DwgObjectContext& c, ViewportEntity& e, int32_t frozen) {
  if (c.before(kDwgR2000)) {
    c.s.handle();  // viewport entity header
    return;
  }
  uint32_t count = c.boundedCount(frozen, 8, c.s.handles);
  e.frozenLayerHandles.reserve(count);
  for (uint32_t i = 0; i < count; ++i) e.frozenLayerHandles.push_back(c.s.handle());
  e.clipBoundary = c.s.handle();
  if (c.version() == kDwgR2000) c.s.handle();  // viewport entity header
  c.s.handle();  // named UCS
  c.s.handle();  // base UCS
  if (c.atLeast(kDwgR2007)) {
    c.s.handle();  // background
    e.visualStyle = c.s.handle();
    c.s.handle();  // shade plot object
    c.s.handle();  // sun
  }
}

// R13 and R14 keep the view in ACAD extended data: "MVIEW", then a braced list of the target
// and direction points, twist, height, centre, lens length and clips among other values, and a
// nested list of the frozen layers' names.
void applyMViewData(DwgObjectContext& c, ViewportEntity& e) {
  const XDataGroup* acad = e.xdata("ACAD");
  if (!acad || acad->values.empty() || acad->values[0].text != "MVIEW") return;
  std::vector<OdGeVector3d> points;
  std::vector<double> reals;
  int depth = 0;
  const TaggedValues& v = acad->values;
  for (size_t i = 1; i < v.size(); ++i) {
    if (v[i].code == 1002) depth += v[i].text == "{" ? 1 : -1;
    else if (depth >= 2 && v[i].code == 1003) e.frozenLayers.push_back(c.db().layerNamed(v[i].text));
    else if (v[i].code == 1010 && i + 2 < v.size()) points.push_back({v[i].real, v[i + 1].real, v[i + 2].real});
    else if (v[i].code == 1040) reals.push_back(v[i].real);
  }
  if (points.size() >= 2) {
    e.viewTarget = OdGePoint3d(points[0].x, points[0].y, points[0].z);
    e.viewDirection = points[1];
  }
  if (reals.size() >= 7) {
    e.twistAngle = reals[0];
    e.viewHeight = reals[1];
    e.viewCenter = {reals[2], reals[3]};
    e.lensLength = reals[4];
    e.frontClip = reals[5];
    e.backClip = reals[6];
  }
}

}  // namespace

void readDwgViewport(DwgObjectContext& c) {
  auto* e = c.newEntity<ViewportEntity>();
  e->center = c.d.point3BD();
  e->width = c.d.BD();
  e->height = c.d.BD();
  int32_t frozen = 0;
  if (c.atLeast(kDwgR2000)) {
    readView(c, *e);
    frozen = readSettings(c, *e);
  }
  readViewportHandles(c, *e, frozen);
  if (c.before(kDwgR2000)) applyMViewData(c, *e);
}

void numberDwgViewports(OdDbDatabase& db) {
  BlockRecord* active = db.paperSpace();
  if (!active) return;
  int16_t number = 0;
  for (Entity* entity : active->entities) {
    auto* viewport = dbCast<ViewportEntity>(entity);
    if (!viewport) continue;
    viewport->number = ++number;
    viewport->status = (viewport->statusFlags & ViewportEntity::kViewportOff) ? 0 : number;
  }
}

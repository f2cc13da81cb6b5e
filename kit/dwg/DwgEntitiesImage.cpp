// IMAGE and WIPEOUT: the same raster frame (insertion point, pixel vectors, size, display
// settings and clip boundary), then the image definition and its reactor; and the underlays of
// PDF, DWF and DGN files, which place a page of another file much as an image.
#include "kit/dwg/DwgEntityReaders.h"
#include "kit/dwg/DwgLoader.h"

namespace {

void readRasterData(DwgObjectContext& c, RasterImageData& r) {
  DwgBitReader& d = c.d;
  r.classVersion = d.BL();
  r.origin = d.point3BD();
  r.uVector = d.vector3BD();
  r.vVector = d.vector3BD();
  r.imageSize = d.point2RD();
  r.displayFlags = d.BS();
  r.clipping = d.B();
  r.brightness = d.RC();
  r.contrast = d.RC();
  r.fade = d.RC();
  if (c.atLeast(kDwgR2010)) r.clipInverted = d.B();
  r.clipBoundaryType = d.BS();
  if (r.clipBoundaryType == 1) {
    r.clipBoundary.push_back(d.point2RD());
    r.clipBoundary.push_back(d.point2RD());
  } else {
    uint32_t n = c.boundedCount(d.BL(), 128);
    r.clipBoundary.reserve(n);
    for (uint32_t i = 0; i < n && !d.overrun(); ++i) r.clipBoundary.push_back(d.point2RD());
    // DXF files close the polygon on its first point; so does the database.
    if (r.clipBoundary.size() > 2 && !(r.clipBoundary.front() == r.clipBoundary.back()))
      r.clipBoundary.push_back(r.clipBoundary.front());
  }
  r.imageDefinition = c.s.handle();
  r.definitionReactor = c.s.handle();
}

}  // namespace

void readDwgImage(DwgObjectContext& c) { readRasterData(c, *c.newEntity<RasterImageEntity>()); }
void readDwgWipeout(DwgObjectContext& c) { readRasterData(c, *c.newEntity<WipeoutEntity>()); }

// PDFUNDERLAY, DWFUNDERLAY and DGNUNDERLAY: placement, display settings as bytes, the clip
// boundary in raw doubles, and the underlay definition.
void readDwgUnderlay(DwgObjectContext& c, UnderlayEntity::Format format) {
  auto* e = c.newEntity<UnderlayEntity>();
  e->format = format;
  DwgBitReader& d = c.d;
  e->normal = d.vector3BD();
  e->position = d.point3BD();
  e->rotation = d.BD();
  e->scale = d.vector3BD();
  e->flags = d.RC();
  e->contrast = d.RC();
  e->fade = d.RC();
  uint32_t n = c.boundedCount(d.BL(), 128);
  e->clipBoundary.reserve(n);
  for (uint32_t i = 0; i < n && !d.overrun(); ++i) e->clipBoundary.push_back(d.point2RD());
  e->definition = c.s.handle();
}

#include "kit/dwg/DwgLwPolylineData.h"

#include "kit/dwg/DwgStreams.h"

namespace {

// A count of items of at least `minBits` each, bounded by what is left of the stream.
uint32_t bounded(DwgBitReader& d, int64_t claimed, size_t minBits) {
  if (claimed <= 0) return 0;
  if (uint64_t(claimed) > d.bitsLeft() / minBits) {
    d.skip(d.bitsLeft() + 1);
    return 0;
  }
  return uint32_t(claimed);
}

}  // namespace

void readDwgLwPolylineData(DwgBitReader& d, int version, LwPolylineEntity& e) {
  uint16_t flags = uint16_t(d.BS());
  if (flags & 4) e.constantWidth = d.BD();
  if (flags & 8) e.elevation = d.BD();
  if (flags & 2) e.thickness = d.BD();
  if (flags & 1) e.normal = d.vector3BD();
  int32_t points = d.BL();
  int32_t bulges = (flags & 16) ? d.BL() : 0;
  int32_t ids = (version >= kDwgR2010 && (flags & 1024)) ? d.BL() : 0;
  int32_t widths = (flags & 32) ? d.BL() : 0;
  if (flags & 512) e.flags |= LwPolylineEntity::kClosed;
  if (flags & 256) e.flags |= LwPolylineEntity::kPlinegen;
  uint32_t n = bounded(d, points, 2);
  e.points.reserve(n);
  for (uint32_t i = 0; i < n; ++i) {
    if (version < kDwgR2000 || i == 0) e.points.push_back(d.point2RD());
    else e.points.push_back(d.point2DD(e.points.back()));
  }
  uint32_t nb = bounded(d, bulges, 2);
  for (uint32_t i = 0; i < nb; ++i) e.bulges.push_back(d.BD());
  uint32_t ni = bounded(d, ids, 2);
  for (uint32_t i = 0; i < ni; ++i) d.BL();
  uint32_t nw = bounded(d, widths, 4);
  for (uint32_t i = 0; i < nw; ++i) {
    double start = d.BD();
    e.widths.push_back({start, d.BD()});
  }
  bool anyBulge = false;
  for (double b : e.bulges) anyBulge = anyBulge || b != 0.0;
  if (!anyBulge) e.bulges.clear();
  if (!e.bulges.empty()) e.bulges.resize(e.points.size(), 0.0);
  if (!e.widths.empty()) e.widths.resize(e.points.size());
}

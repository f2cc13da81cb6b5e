// MLINE: vertices with their directions and, per style element, the parameters that place the
// element's segments and fills along each vertex's miter.
#include "kit/dwg/DwgEntityReaders.h"
#include "kit/dwg/DwgLoader.h"

namespace {

std::vector<double> readParameters(DwgObjectContext& c) {
  std::vector<double> values;
  uint32_t n = c.boundedCount(c.d.BS(), 2);
  values.reserve(n);
  for (uint32_t i = 0; i < n && !c.d.overrun(); ++i) values.push_back(c.d.BD());
  return values;
}

}  // namespace

void readDwgMLine(DwgObjectContext& c) {
  auto* e = c.newEntity<MLineEntity>();
  DwgBitReader& d = c.d;
  e->scale = d.BD();
  e->justification = d.RC();
  e->startPoint = d.point3BD();
  e->normal = d.vector3BD();
  e->flags = d.BS();
  e->styleElementCount = d.RC();
  uint32_t vertices = c.boundedCount(d.BS(), 18);
  e->vertices.resize(vertices);
  for (MLineVertex& v : e->vertices) {
    v.position = d.point3BD();
    v.direction = d.vector3BD();
    v.miter = d.vector3BD();
    for (int i = 0; i < e->styleElementCount && !d.overrun(); ++i) {
      v.elementParams.push_back(readParameters(c));
      v.elementFillParams.push_back(readParameters(c));
    }
    if (d.overrun()) break;
  }
  e->style = c.s.handle();
  if (auto* style = dbCast<MLineStyleObject>(c.loader.objectFor(e->style))) e->styleName = style->name;
}

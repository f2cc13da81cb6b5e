// MESH: the base level of a subdivision mesh, as its DXF groups list it: vertices, the face list
// (each face's vertex count, then its vertex indices), edges as vertex pairs, and edge creases.
#include "kit/dwg/DwgEntityReaders.h"
#include "kit/dwg/DwgLoader.h"

namespace {

// The smallest bits a bit long and a bit double can take: each list's count is checked against
// what is left before anything is reserved.
constexpr size_t kBitLongBits = 2;
constexpr size_t kPointBits = 3 * 2;

}  // namespace

void readDwgMesh(DwgObjectContext& c) {
  auto* e = c.newEntity<MeshEntity>();
  DwgBitReader& d = c.d;
  e->version = d.BS();
  e->blendCrease = d.B();
  e->subdivisionLevel = d.BL();
  uint32_t vertices = c.boundedCount(d.BL(), kPointBits);
  e->vertices.reserve(vertices);
  for (uint32_t i = 0; i < vertices && !d.overrun(); ++i) e->vertices.push_back(d.point3BD());
  uint32_t faceItems = c.boundedCount(d.BL(), kBitLongBits);
  e->faceList.reserve(faceItems);
  for (uint32_t i = 0; i < faceItems && !d.overrun(); ++i) e->faceList.push_back(d.BL());
  uint32_t edges = c.boundedCount(d.BL(), 2 * kBitLongBits);
  e->edges.reserve(edges);
  for (uint32_t i = 0; i < edges && !d.overrun(); ++i) {
    int32_t from = d.BL();
    e->edges.push_back({from, d.BL()});
  }
  uint32_t creases = c.boundedCount(d.BL(), kBitLongBits);
  e->edgeCreases.reserve(creases);
  for (uint32_t i = 0; i < creases && !d.overrun(); ++i) e->edgeCreases.push_back(d.BD());
}

// After every object is read: entities go into their blocks in drawing order, vertices into
// their polylines and attributes into their block references. Files before R2004 chain entities
// through next links from the first to the last an owner names; later files list them all. An
// owned object the list or chain misses, but which names the owner, is appended in handle order;
// a chain that loops or breaks stops where it does.
#include <algorithm>

#include "kit/dwg/DwgLoader.h"

namespace {

bool isPlaced(DwgRole role) { return role == DwgRole::kEntity || role == DwgRole::kVertex; }

}  // namespace

void DwgLoader::assemble() {
  const size_t n = map_.size();
  // Without the header (recovering a damaged one) the spaces are found by their names.
  auto space = [](OdDbHandle fromHeader, const BlockRecord* byName) {
    return !fromHeader.isNull() || !byName ? fromHeader : byName->handle;
  };
  const OdDbHandle modelSpace = space(headerHandles_.modelSpaceBlock, db.modelSpace());
  const OdDbHandle paperSpace = space(headerHandles_.paperSpaceBlock, db.paperSpace());

  // Children by the map index of their owner, in handle order: one sorted list rather than a list
  // per owner, since a drawing has as many owners as it has polylines and block references.
  // Indices rather than handles keep it at half the size while every vertex is also in the store.
  std::vector<std::pair<uint32_t, uint32_t>> children;
  children.reserve(size_t(std::count_if(states_.begin(), states_.end(),
                                        [](const DwgObjectState& s) { return s.status == 1 && isPlaced(s.role); })));
  OdDbHandle lastOwner;
  int64_t lastOwnerIndex = -1;  // runs of vertices share their owner
  for (size_t i = 0; i < n; ++i) {
    const DwgObjectState& s = states_[i];
    if (s.status != 1 || !isPlaced(s.role)) continue;
    OdDbHandle owner = s.entityMode == 2 ? modelSpace : s.entityMode == 1 ? paperSpace : s.owner;
    if (owner != lastOwner) {
      lastOwner = owner;
      lastOwnerIndex = indexOf(owner);
    }
    if (lastOwnerIndex >= 0) children.emplace_back(uint32_t(lastOwnerIndex), uint32_t(i));
  }
  std::sort(children.begin(), children.end());  // by owner, then in map (handle) order

  std::vector<uint8_t> taken(n, 0);
  auto ordered = [&](OdDbHandle ownerHandle, const DwgOwnedObjects* owned) {
    std::vector<uint32_t> order;
    auto take = [&](int64_t index) {
      if (index < 0 || taken[size_t(index)]) return false;
      const DwgObjectState& s = states_[size_t(index)];
      if (s.status != 1 || !isPlaced(s.role)) return false;
      taken[size_t(index)] = 1;
      order.push_back(uint32_t(index));
      return true;
    };
    if (owned && !owned->handles.empty()) {
      for (OdDbHandle h : owned->handles) take(indexOf(h));
    } else if (owned && !owned->first.isNull()) {
      OdDbHandle h = owned->first;
      for (size_t steps = 0; steps < n && !h.isNull(); ++steps) {
        int64_t index = indexOf(h);
        if (!take(index)) break;
        if (h == owned->last) break;
        h = states_[size_t(index)].next;
      }
    }
    const int64_t owner = indexOf(ownerHandle);
    if (owner < 0) return order;
    auto first = std::lower_bound(children.begin(), children.end(), uint32_t(owner),
                                  [](const auto& child, uint32_t o) { return child.first < o; });
    for (auto it = first; it != children.end() && it->first == uint32_t(owner); ++it) take(it->second);
    return order;
  };

  // Complex entities first, so that their parts are not mistaken for block entities.
  size_t orphanParts = 0;
  for (size_t i = 0; i < n; ++i) {
    DbObject* o = states_[i].object;
    if (states_[i].status != 1 || !o) continue;
    auto* polyline = dbCast<PolylineEntity>(o);
    auto* reference = dbCast<BlockReferenceEntity>(o);
    if (!polyline && !reference) continue;
    auto owned = owned_.find(o);
    std::vector<uint32_t> parts = ordered(o->handle, owned == owned_.end() ? nullptr : &owned->second);
    if (polyline) polyline->vertices.reserve(parts.size());
    for (uint32_t index : parts) {
      const DwgObjectState& s = states_[index];
      if (polyline && s.role == DwgRole::kVertex) {
        polyline->vertices.push_back(vertices_.take(s.vertex));
      } else if (auto* attribute = dbCast<AttributeEntity>(s.object); reference && attribute) {
        reference->attributes.push_back(attribute);
      } else {
        ++orphanParts;
      }
    }
  }

  // Every vertex now lives in its polyline.
  vertices_.clear();

  size_t placed = 0;
  for (BlockRecord* block : db.blocks()) {
    auto owned = owned_.find(block);
    std::vector<uint32_t> entities = ordered(block->handle, owned == owned_.end() ? nullptr : &owned->second);
    block->entities.reserve(entities.size());
    for (uint32_t index : entities) {
      auto* e = dbCast<Entity>(states_[index].object);
      if (!e || dbCast<AttributeEntity>(e)) continue;
      if (e->ownerHandle.isNull()) e->ownerHandle = block->handle;
      if (block->isPaperSpace()) e->entityFlags |= Entity::kPaperSpace;
      block->entities.push_back(e);
      ++placed;
    }
  }

  size_t unplaced = 0;
  for (size_t i = 0; i < n; ++i) {
    if (states_[i].status == 1 && isPlaced(states_[i].role) && !taken[i]) ++unplaced;
  }
  if (unplaced) warn(std::to_string(unplaced) + " entities whose owner is missing were dropped");
  if (orphanParts) warn(std::to_string(orphanParts) + " entities owned by the wrong kind of entity were dropped");
  (void)placed;
}

#include "kit/gs/DrawOrder.h"

#include <algorithm>
#include <unordered_map>

namespace {

const SortEntsTableObject* drawOrderTableOf(const OdDbDatabase& db, const BlockRecord& block) {
  for (const DbObject* object : db.objects()) {
    const auto* table = dbCast<SortEntsTableObject>(object);
    if (table && !table->entries.empty() && table->blockRecordHandle == block.handle) return table;
  }
  return nullptr;
}

}  // namespace

std::vector<const Entity*> entitiesInDrawOrder(const OdDbDatabase& db, const BlockRecord& block) {
  std::vector<const Entity*> order(block.entities.begin(), block.entities.end());
  std::erase(order, nullptr);
  const SortEntsTableObject* table = block.handle.isNull() ? nullptr : drawOrderTableOf(db, block);
  if (!table) return order;
  std::unordered_map<OdDbHandle, OdDbHandle> sortHandle;
  for (const auto& [entity, sort] : table->entries) sortHandle[entity] = sort;
  auto keyOf = [&](const Entity* e) {
    auto it = sortHandle.find(e->handle);
    return it == sortHandle.end() ? e->handle : it->second;
  };
  std::vector<std::pair<OdDbHandle, const Entity*>> keyed;
  keyed.reserve(order.size());
  for (const Entity* e : order) keyed.emplace_back(keyOf(e), e);
  std::stable_sort(keyed.begin(), keyed.end(),
                   [](const auto& a, const auto& b) { return a.first.value() < b.first.value(); });
  for (size_t i = 0; i < keyed.size(); ++i) order[i] = keyed[i].second;
  return order;
}

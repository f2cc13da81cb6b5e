#include "kit/db/HandleMap.h"

size_t HandleMap::slotOf(uint64_t key) const {
  size_t mask = slots_.size() - 1;
  size_t i = size_t(mix(key)) & mask;
  while (slots_[i].key != 0 && slots_[i].key != key) i = (i + 1) & mask;
  return i;
}

void HandleMap::grow() {
  std::vector<Slot> old;
  old.swap(slots_);
  slots_.assign(old.empty() ? 1024 : old.size() * 2, Slot());
  for (const Slot& s : old) {
    if (s.key != 0) slots_[slotOf(s.key)] = s;
  }
}

void HandleMap::reserve(size_t count) {
  size_t wanted = 1024;
  while (wanted < count * 2) wanted *= 2;
  if (wanted <= slots_.size()) return;
  std::vector<Slot> old;
  old.swap(slots_);
  slots_.assign(wanted, Slot());
  for (const Slot& s : old) {
    if (s.key != 0) slots_[slotOf(s.key)] = s;
  }
}

bool HandleMap::insert(OdDbHandle handle, DbObject* object) {
  uint64_t key = handle.value();
  if (key == 0) return false;
  // Keep the load factor at or below one half so that probes stay short.
  if ((count_ + 1) * 2 > slots_.size()) grow();
  size_t i = slotOf(key);
  if (slots_[i].key == key) return false;
  slots_[i] = {key, object};
  ++count_;
  return true;
}

void HandleMap::assign(OdDbHandle handle, DbObject* object) {
  if (handle.isNull()) return;
  if (!insert(handle, object)) slots_[slotOf(handle.value())].object = object;
}

DbObject* HandleMap::find(OdDbHandle handle) const {
  if (handle.isNull() || slots_.empty()) return nullptr;
  const Slot& s = slots_[slotOf(handle.value())];
  return s.key == handle.value() ? s.object : nullptr;
}

bool HandleMap::erase(OdDbHandle handle) {
  if (handle.isNull() || slots_.empty()) return false;
  size_t mask = slots_.size() - 1;
  size_t i = slotOf(handle.value());
  if (slots_[i].key != handle.value()) return false;
  // Backward-shift deletion keeps every remaining key reachable without tombstones.
  size_t j = i;
  for (;;) {
    j = (j + 1) & mask;
    if (slots_[j].key == 0) break;
    size_t home = size_t(mix(slots_[j].key)) & mask;
    bool movable = (i <= j) ? (home <= i || home > j) : (home <= i && home > j);
    if (movable) {
      slots_[i] = slots_[j];
      i = j;
    }
  }
  slots_[i] = Slot();
  --count_;
  return true;
}

void HandleMap::clear() {
  slots_.clear();
  count_ = 0;
}

#include "kit/db/HandleMap.h"

#include <algorithm>

size_t HandleMap::slotOf(uint64_t key) const {
  size_t mask = slots_.size() - 1;
  size_t i = size_t(mix(key)) & mask;
  while (slots_[i].key != 0 && slots_[i].key != key) i = (i + 1) & mask;
  return i;
}

void HandleMap::growSparse() {
  std::vector<Slot> old;
  old.swap(slots_);
  slots_.assign(old.empty() ? 256 : old.size() * 2, Slot());
  for (const Slot& s : old) {
    if (s.key != 0) slots_[slotOf(s.key)] = s;
  }
}

// The flat part may grow to cover `key` while it stays within a few pointers per object, so
// that a file with scattered huge handles cannot make it large.
bool HandleMap::growDenseFor(uint64_t key) {
  const uint64_t limit = 4 * uint64_t(count_ + 1) + 4096;
  if (key >= limit) return false;
  size_t newSize = std::max<size_t>(size_t(key) + 1, std::min<size_t>(dense_.size() * 2, size_t(limit)));
  dense_.resize(newSize, nullptr);
  // Keys now covered by the flat part leave the hash table.
  if (sparseCount_ != 0) {
    std::vector<Slot> old;
    old.swap(slots_);
    slots_.assign(old.size(), Slot());
    sparseCount_ = 0;
    for (const Slot& s : old) {
      if (s.key == 0) continue;
      if (s.key < dense_.size()) dense_[s.key] = s.object;
      else {
        slots_[slotOf(s.key)] = s;
        ++sparseCount_;
      }
    }
  }
  return true;
}

bool HandleMap::insert(OdDbHandle handle, DbObject* object) {
  uint64_t key = handle.value();
  if (key == 0) return false;
  if (key < dense_.size() || growDenseFor(key)) {
    if (dense_[key]) return false;
    dense_[key] = object;
    ++count_;
    return true;
  }
  if (!insertSparse(key, object)) return false;
  ++count_;
  return true;
}

bool HandleMap::insertSparse(uint64_t key, DbObject* object) {
  // Keep the load factor at or below one half so that probes stay short.
  if ((sparseCount_ + 1) * 2 > slots_.size()) growSparse();
  size_t i = slotOf(key);
  if (slots_[i].key == key) return false;
  slots_[i] = {key, object};
  ++sparseCount_;
  return true;
}

void HandleMap::assign(OdDbHandle handle, DbObject* object) {
  uint64_t key = handle.value();
  if (key == 0) return;
  if (insert(handle, object)) return;
  if (key < dense_.size()) dense_[key] = object;
  else slots_[slotOf(key)].object = object;
}

DbObject* HandleMap::findSparse(uint64_t key) const {
  if (key == 0 || slots_.empty()) return nullptr;
  const Slot& s = slots_[slotOf(key)];
  return s.key == key ? s.object : nullptr;
}

bool HandleMap::erase(OdDbHandle handle) {
  uint64_t key = handle.value();
  if (key == 0) return false;
  if (key < dense_.size()) {
    if (!dense_[key]) return false;
    dense_[key] = nullptr;
    --count_;
    return true;
  }
  if (!eraseSparse(key)) return false;
  --count_;
  return true;
}

bool HandleMap::eraseSparse(uint64_t key) {
  if (slots_.empty()) return false;
  size_t mask = slots_.size() - 1;
  size_t i = slotOf(key);
  if (slots_[i].key != key) return false;
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
  --sparseCount_;
  return true;
}

void HandleMap::clear() {
  dense_.clear();
  slots_.clear();
  sparseCount_ = 0;
  count_ = 0;
}

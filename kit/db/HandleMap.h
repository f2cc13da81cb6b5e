// Handle -> object lookup for the whole database. Files hand out handles mostly in sequence, so
// handles up to a few times the number of objects go into a flat array indexed by the handle
// (sequential writes, one pointer each); the rest go into an open-addressing hash table with
// linear probing. A million entities cost about 8 MB here against 50 MB and a heap node each in
// a node-based map.
#pragma once

#include <cstdint>
#include <vector>

#include "kit/db/Handle.h"

struct DbObject;

class HandleMap {
public:
  // Returns false (and leaves the map alone) when the handle is null or already taken.
  bool insert(OdDbHandle handle, DbObject* object);
  DbObject* find(OdDbHandle handle) const {
    uint64_t key = handle.value();
    if (key < dense_.size()) return dense_[key];
    return findSparse(key);
  }
  // Points an existing handle at another object; inserts it when missing.
  void assign(OdDbHandle handle, DbObject* object);
  bool erase(OdDbHandle handle);
  size_t size() const { return count_; }
  void clear();

  template <class Fn>
  void forEach(Fn&& fn) const {
    for (size_t i = 1; i < dense_.size(); ++i) {
      if (dense_[i]) fn(OdDbHandle(i), dense_[i]);
    }
    for (const Slot& s : slots_) {
      if (s.key != 0 && s.object) fn(OdDbHandle(s.key), s.object);
    }
  }

private:
  struct Slot {
    uint64_t key = 0;  // 0 marks an empty slot; handle 0 is never stored
    DbObject* object = nullptr;
  };

  static uint64_t mix(uint64_t key) {
    key ^= key >> 33;
    key *= 0xff51afd7ed558ccdULL;
    key ^= key >> 33;
    return key;
  }
  bool growDenseFor(uint64_t key);
  DbObject* findSparse(uint64_t key) const;
  bool insertSparse(uint64_t key, DbObject* object);
  bool eraseSparse(uint64_t key);
  void growSparse();
  size_t slotOf(uint64_t key) const;

  std::vector<DbObject*> dense_;  // index = handle; never holds keys that are in slots_
  std::vector<Slot> slots_;
  size_t sparseCount_ = 0;
  size_t count_ = 0;
};

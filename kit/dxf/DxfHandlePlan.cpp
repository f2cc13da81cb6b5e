#include "kit/dxf/DxfHandlePlan.h"

#include <algorithm>

DxfHandlePlan::DxfHandlePlan(const OdDbDatabase& db) {
  uint64_t highest = 0;
  db.forEachHandle([&](OdDbHandle h, DbObject*) {
    taken_.insert(h.value());
    highest = std::max(highest, h.value());
  });
  // Just above the handles in use (not the drawing's own seed, which each load moves on), so that
  // writing what was read gives the same file again.
  next_ = highest + 1;
  const SymbolTableBase* tables[] = {&db.viewports(), &db.linetypes(), &db.layers(),   &db.textStyles(),
                                     &db.views(),     &db.ucss(),      &db.regApps(), &db.dimStyles(),
                                     &db.blocks()};
  for (const SymbolTableBase* t : tables) {
    // A table's handle is in the map only when the table itself holds it.
    bool own = !t->handle.isNull() && db.find(t->handle) == t;
    if (own) planned_[t] = t->handle;
    else plan(t, OdDbHandle());
  }
  for (const BlockRecord* block : db.blocks()) planBlock(*block);
}

void DxfHandlePlan::planBlock(const BlockRecord& block) {
  plan(&block.beginHandle, block.beginHandle);
  plan(&block.endHandle, block.endHandle);
  for (const Entity* e : block.entities) {
    if (auto* polyline = dbCast<PolylineEntity>(e)) {
      for (const PolylineVertex& v : polyline->vertices) plan(&v, v.handle);
      plan(&polyline->seqendHandle, polyline->seqendHandle);
    } else if (auto* reference = dbCast<BlockReferenceEntity>(e)) {
      if (!reference->attributes.empty()) plan(&reference->seqendHandle, reference->seqendHandle);
    }
  }
}

void DxfHandlePlan::plan(const void* key, OdDbHandle proposed) {
  if (!proposed.isNull() && taken_.insert(proposed.value()).second) {
    planned_[key] = proposed;
    if (proposed.value() >= next_) next_ = proposed.value() + 1;
    return;
  }
  planned_[key] = fresh();
}

OdDbHandle DxfHandlePlan::fresh() {
  while (taken_.count(next_)) ++next_;
  taken_.insert(next_);
  return OdDbHandle(next_++);
}

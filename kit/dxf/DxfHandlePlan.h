// Handles for what a DXF file needs but the database does not keep as objects of their own:
// symbol tables of files that gave them none, the BLOCK and ENDBLK entities of each block, the
// VERTEX and SEQEND records of polylines and block references. A handle read from the file is
// kept when no other object uses it; otherwise, and where there is none, a fresh one above every
// handle in use is given. Planned before writing, so that $HANDSEED, which comes first in the
// file, is above them all.
#pragma once

#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "kit/db/OdDbDatabase.h"

class DxfHandlePlan {
public:
  explicit DxfHandlePlan(const OdDbDatabase& db);

  OdDbHandle table(const SymbolTableBase& table) const { return at(&table); }
  OdDbHandle blockBegin(const BlockRecord& block) const { return at(&block.beginHandle); }
  OdDbHandle blockEnd(const BlockRecord& block) const { return at(&block.endHandle); }
  OdDbHandle polylineEnd(const PolylineEntity& polyline) const { return at(&polyline.seqendHandle); }
  OdDbHandle referenceEnd(const BlockReferenceEntity& reference) const { return at(&reference.seqendHandle); }
  OdDbHandle vertex(const PolylineVertex& vertex) const { return at(&vertex); }
  // A handle for something the writer adds on its own (an APPID record, a class's object).
  OdDbHandle fresh();
  // Above every handle written: the $HANDSEED value.
  OdDbHandle seed() const { return OdDbHandle(next_); }

private:
  void plan(const void* key, OdDbHandle proposed);
  OdDbHandle at(const void* key) const {
    auto it = planned_.find(key);
    return it == planned_.end() ? OdDbHandle() : it->second;
  }
  void planBlock(const BlockRecord& block);

  std::unordered_set<uint64_t> taken_;
  std::unordered_map<const void*, OdDbHandle> planned_;
  uint64_t next_ = 1;
};

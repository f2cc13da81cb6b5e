// The DXF writer's shared state and the groups every object and entity starts and ends with.
// One context writes one file: the section writers (DxfWriterHeader.cpp, DxfWriterTables.cpp,
// DxfWriterBlocks.cpp, DxfWriterObjects.cpp) and the entity writers (DxfWriter*Entities.cpp)
// emit their tags through it.
#pragma once

#include <string_view>
#include <unordered_map>

#include "kit/db/OdDbDatabase.h"
#include "kit/dxf/DxfHandlePlan.h"
#include "kit/dxf/DxfTagWriter.h"

class DxfWriterContext {
public:
  DxfWriterContext(const OdDbDatabase& database, DxfTagWriter& tags, int versionNumber)
      : db(database), out(tags), version(versionNumber), handles(database) {}

  const OdDbDatabase& db;
  DxfTagWriter& out;
  const int version;  // 1015, 1018, 1021, 1024, 1027 or 1032
  DxfHandlePlan handles;
  // Object handle -> the dictionary listing it (filled by the OBJECTS section).
  std::unordered_map<uint64_t, OdDbHandle> listingDictionary;

  bool atLeast(int v) const { return version >= v; }

  // "0 NAME", the handle, the reactor and extension dictionary groups, and the owner.
  void objectStart(std::string_view dxfName, const DbObject& object, OdDbHandle handle, OdDbHandle owner,
                   int handleCode = 5);
  // Extended data, each application's groups after its "1001 NAME".
  void extendedData(const DbObject& object);

  // The start of an entity up to and including its common groups (layer, linetype, colour, ...).
  // The owner and space come from the block being written (setBlock).
  void entityStart(std::string_view dxfName, const Entity& e);
  void entityEnd(const Entity& e) { extendedData(e); }
  void setBlock(OdDbHandle owner, bool paperSpace, bool forcePaperSpaceFlag) {
    owner_ = owner;
    paperSpace_ = paperSpace;
    forceSpace_ = forcePaperSpaceFlag;
  }
  OdDbHandle blockOwner() const { return owner_; }
  void setOwner(OdDbHandle owner) { owner_ = owner; }
  // Whether the entity is written with "67 1".
  bool paperSpaceFlag(const Entity& e) const { return forceSpace_ ? paperSpace_ : e.isInPaperSpace(); }

  // A handle that names an object of the database, or the null handle.
  OdDbHandle existing(OdDbHandle h) const { return db.find(h) ? h : OdDbHandle(); }

  // "0 SEQEND" closing the vertices or attributes of `parent`.
  void sequenceEnd(OdDbHandle handle, const Entity& parent);

  // Writes one entity of any kind (with its attributes, vertices and sequence end).
  void entity(const Entity& e);

private:
  void commonEntityGroups(const Entity& e);

  OdDbHandle owner_;
  bool paperSpace_ = false;
  bool forceSpace_ = false;  // in ENTITIES the space flag decides the block: write it as the block says
};

// Symbol table record names as files spell them.
inline std::string_view recordName(const SymbolTableRecord* record, std::string_view fallback) {
  return record ? std::string_view(record->name) : fallback;
}

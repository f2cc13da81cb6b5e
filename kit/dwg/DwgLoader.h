// The DWG loader's shared state. One loader reads one file: the container (DwgContainer*.cpp)
// yields the sections, the header and classes are read, then every object of the object map is
// decoded: table records first (so that entities find their layers and styles), then the rest in
// map order. The object readers (DwgTableRecords.cpp, DwgEntities*.cpp, DwgObjects.cpp) build
// the database through the context below; DwgAssembly.cpp then puts entities into their blocks,
// vertices into their polylines and attributes into their block references.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "kit/db/OdDbDatabase.h"
#include "kit/dwg/DwgClasses.h"
#include "kit/dwg/DwgFileSections.h"
#include "kit/dwg/DwgHeaderVariables.h"
#include "kit/dwg/DwgObjectFrame.h"
#include "kit/dwg/DwgObjectMap.h"
#include "kit/dwg/DwgReader.h"
#include "kit/dwg/DwgStreams.h"
#include "kit/dwg/DwgVertexStore.h"
#include "kit/dxf/DxfTextDecoder.h"

class DwgLoader;

// What an object contributes to the assembly besides its database record.
enum class DwgRole : uint8_t {
  kNone,
  kEntity,      // goes into its owner block (or is an attribute / vertex of its owner)
  kVertex,      // a polyline vertex, kept in vertices_ until assembly
  kBlockBegin,  // BLOCK
  kBlockEnd,    // ENDBLK
  kSequenceEnd, // SEQEND
  kControl,     // a table's control object
  kOther,       // records and objects: nothing to assemble
};

// Owned sub-objects as files list them: first and last before R2004 (the rest chained through
// the entities' next links), every handle from R2004 on.
struct DwgOwnedObjects {
  OdDbHandle first;
  OdDbHandle last;
  std::vector<OdDbHandle> handles;
  OdDbHandle sequenceEnd;
};

// Per object of the map: its record once decoded, and what assembly needs of it.
struct DwgObjectState {
  DbObject* object = nullptr;
  uint32_t vertex = 0;  // index into DwgLoader::vertices_ for kVertex
  DwgRole role = DwgRole::kNone;
  uint8_t status = 0;   // 0 not read, 1 read, 2 failed
  uint8_t entityMode = 0;
  OdDbHandle owner;
  OdDbHandle next;
};

// The object being read: its streams and frame, and the calls object readers build with.
class DwgObjectContext {
public:
  DwgObjectContext(DwgLoader& loader, DwgStreams& streams, DwgObjectFrame& frame)
      : loader(loader), s(streams), d(streams.data), frame(frame) {}

  DwgLoader& loader;
  DwgStreams& s;
  DwgBitReader& d;
  DwgObjectFrame& frame;

  // The record made for the object (null for objects that only feed the assembly).
  DbObject* result = nullptr;
  DwgRole role = DwgRole::kOther;

  OdDbDatabase& db();
  int version() const { return s.version(); }
  bool atLeast(int v) const { return s.atLeast(v); }
  bool before(int v) const { return s.before(v); }

  // A new entity with the frame's common data applied (layer, linetype, colour, ...).
  template <class E>
  E* newEntity() {
    E* e = db().template newObject<E>();
    applyEntityCommon(*e);
    result = e;
    role = DwgRole::kEntity;
    return e;
  }
  // A new non-graphical object with the frame's handle, owner and extended data.
  template <class O>
  O* newObject() {
    O* o = db().template newObject<O>();
    applyObjectCommon(*o);
    result = o;
    role = DwgRole::kOther;
    return o;
  }
  void applyObjectCommon(DbObject& o);
  void applyEntityCommon(Entity& e);

  // References to table records, with the standard record when the handle names none.
  TextStyleRecord* textStyle(OdDbHandle h);
  DimStyleRecord* dimStyle(OdDbHandle h);
  BlockRecord* block(OdDbHandle h);
  LinetypeRecord* linetype(OdDbHandle h);
  LayerRecord* layer(OdDbHandle h);

  // A count the file gives for repeated items of at least `minBits` each: bounded by the bits
  // left in the stream, so that a damaged count cannot make a reader loop or allocate for long.
  uint32_t boundedCount(int64_t claimed, size_t minBits, const DwgBitReader& from) const;
  uint32_t boundedCount(int64_t claimed, size_t minBits) const { return boundedCount(claimed, minBits, s.data); }

  // Sub-objects a complex entity or a block owns, for the assembly.
  void setOwned(const DwgOwnedObjects& owned);
};

class DwgLoader {
public:
  DwgLoader(std::string_view bytes, OdDbDatabase& db, const DwgReadOptions& options, std::string sourceName);

  // Reads the whole file. Throws OdError as DwgReader.h describes.
  void load();

  OdDbDatabase& db;
  int version() const { return sections_.version; }
  int maintenanceVersion() const { return sections_.maintenanceVersion; }
  const DxfTextDecoder& decoder() const { return decoder_; }
  void warn(std::string message);
  // Names of applications (extended data) and of classes by type number.
  std::string applicationName(OdDbHandle h);
  const DwgClass* classOfType(uint16_t type) const;

  // Reads the object of that handle now if it is in the map and not read yet; returns its record.
  DbObject* objectFor(OdDbHandle h);

  // Assembly bookkeeping (DwgAssembly.cpp).
  DwgVertexStore vertices_;
  std::unordered_map<const DbObject*, DwgOwnedObjects> owned_;
  std::unordered_map<BlockRecord*, OdDbHandle> blockOfBeginEntity_;
  // Colours of the DBCOLOR objects read so far, by handle.
  std::unordered_map<uint64_t, OdCmEntityColor> bookColours_;
  std::vector<DwgMapEntry> map_;
  std::vector<DwgObjectState> states_;
  DwgHeaderHandles headerHandles_;
  // Index of the map entry of a handle, or -1.
  int64_t indexOf(OdDbHandle h) const;

private:
  void readContainer();
  void readHeader();
  void readClasses();
  void readObjects();
  void readTables();
  void readObject(size_t index);
  void readControlObject(OdDbHandle control);
  // R2013 and later: the ACIS data of the data storage section joins its entities.
  void attachStoredAcisData();
  void finishHeader();
  void assemble();
  [[noreturn]] void fail(int code, const std::string& message);

  std::string_view bytes_;
  DwgReadOptions options_;
  std::string sourceName_;
  DwgFileSections sections_;
  DxfTextDecoder decoder_;
  std::vector<DwgClass> classes_;
  size_t failedObjects_ = 0;
  size_t crcFailures_ = 0;
};

// The readers of each object kind, by the name the dispatch knows them by (DwgDispatch.cpp).
// A reader fills the record through the context and returns false when the object is of a
// kind this kit keeps no record of (it is then counted, not reported).
using DwgObjectReader = void (*)(DwgObjectContext&);
struct DwgReaderEntry {
  DwgObjectReader read;
  bool isEntity;
};
// The reader for a type number (fixed types) or a class name; null when the kind is unknown.
const DwgReaderEntry* dwgReaderForType(uint16_t type);
const DwgReaderEntry* dwgReaderForClass(std::string_view dxfName);
// The DXF name of fixed types without a reader ("HATCH", "VIEWPORT", ...), or null; whether a
// fixed type is an entity.
const char* dwgFixedTypeName(uint16_t type);
bool dwgFixedTypeIsEntity(uint16_t type);

// Puts the object just read where it belongs: its table, the objects list, or (entities) the
// handle map until the assembly places it.
void commitDwgObject(DwgLoader& loader, DwgObjectContext& context);
// Objects of kinds without a reader: entities become proxies, objects generic objects, by name.
void readUnknownDwgObject(DwgObjectContext& context, const DwgClass* cls, bool isEntity);

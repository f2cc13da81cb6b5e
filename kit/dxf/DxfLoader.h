// The DXF loader's shared state and helpers. One loader reads one file in one pass: the section
// readers (DxfHeaderSection.cpp, DxfTablesSection.cpp, DxfBlocksSection.cpp, the DxfEntities*.cpp
// files, DxfObjectsSection.cpp) pull tags from it, convert values through it, and build the
// database through it.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "kit/db/OdDbDatabase.h"
#include "kit/dxf/DxfReader.h"
#include "kit/dxf/DxfTagReader.h"
#include "kit/dxf/DxfTextDecoder.h"

class MappedFile;

// Thrown inside the loader when the file cannot be read on; the loader turns it into OdError (or,
// when recovering, into a message).
struct DxfStructureError {
  int code;  // OdResult
  std::string message;
};

class DxfLoader {
public:
  DxfLoader(std::string_view bytes, OdDbDatabase& db, const DxfReadOptions& options, std::string sourceName);

  // Reads the whole file. Throws OdError as DxfReader.h describes.
  void load();
  // Lets parsed pages of a mapped file leave memory as the reader moves on.
  void setMappedFile(MappedFile* file) { mappedFile_ = file; }

  // ---- Tags -------------------------------------------------------------------------------
  // Advances to the next tag (in `tag`). False at the end of the data; a broken tag stream
  // throws DxfStructureError.
  bool next();
  void pushBack() { reader_.pushBack(); }
  // Reads on to the next tag with group code 0 and leaves it to be read again.
  void skipToNextObject();

  DxfTag tag;
  // The subclass marker (group 100) last read inside the current object.
  std::string_view subclass;

  // ---- Values of the current tag ---------------------------------------------------------
  double real();
  double angle() { return real() * (kPi / 180.0); }  // degrees in the file, radians stored
  int64_t integer();
  int16_t int16();
  int32_t int32();
  bool boolean() { return integer() != 0; }
  OdDbHandle handle() { return OdDbHandle::fromHex(tag.trimmed()); }
  std::string text() { return decoder_.decode(tag.value); }
  std::string_view rawText() const { return tag.value; }
  // Binary chunk value (hex text in ASCII files, raw bytes in binary ones) appended as bytes.
  void appendBinary(std::vector<uint8_t>& out);
  // The current tag as a generic value (strings decoded, numbers converted by code range).
  TaggedValue taggedValue();

  // Sets one coordinate of a point from codes base (x), base+10 (y), base+20 (z).
  void coordinate(OdGePoint3d& p, int base);
  void coordinate(OdGeVector3d& v, int base);
  void coordinate(OdGePoint2d& p, int base);

  // ---- Database ---------------------------------------------------------------------------
  OdDbDatabase& db;
  // Defaults every new entity starts with: layer "0", linetype BYLAYER.
  LayerRecord* defaultLayer = nullptr;
  LinetypeRecord* byLayerLinetype = nullptr;
  TextStyleRecord* standardTextStyle();
  DimStyleRecord* standardDimStyle();
  // Bytes of the file not read yet: a bound for counts that files claim.
  size_t remainingBytes() const;
  // Adopts the entity's handle once its groups are read; returns it for the dispatcher.
  Entity* finish(Entity* e) {
    db.adoptHandle(e);
    return e;
  }
  template <class E>
  E* newEntity() {
    if (!defaultLayer) {
      // Looked up on first use, after the tables, so that table order stays the file's.
      defaultLayer = db.layerNamed("0");
      byLayerLinetype = db.linetypeNamed("ByLayer");
    }
    E* e = db.newObject<E>();
    e->layer = defaultLayer;
    e->linetype = byLayerLinetype;
    return e;
  }
  LayerRecord* layerFromTag();
  LinetypeRecord* linetypeFromTag();
  TextStyleRecord* textStyleFromTag();
  DimStyleRecord* dimStyleFromTag();
  BlockRecord* blockFromTag();
  // Block names of R12 files ($MODEL_SPACE, $PAPER_SPACE) in their later spelling.
  static std::string normalizedBlockName(std::string name);

  // Common object groups: 102 application groups (reactors, extension dictionary) and 1001
  // extended data. Return true when the current tag was one of them (and consumed them).
  bool readApplicationGroup(DbObject& object);
  bool readExtendedData(DbObject& object);

  // ---- Reporting --------------------------------------------------------------------------
  void warn(std::string message);
  std::string where() const;  // "line 123" or "offset 456"
  bool recovering() const { return options_.recover; }
  int version() const { return version_; }  // 1009, 1015, ...

  // ---- Sections ---------------------------------------------------------------------------
  void readHeaderSection();
  void readClassesSection();
  void readTablesSection();
  bool readTableRecords(const std::string& kind);
  void readBlocksSection();
  void readEntitiesSection();
  void readObjectsSection();
  void readDataStorageSection();

  // Reads the entity whose "0 NAME" tag was just read and adds it to `block` (POLYLINE with its
  // vertices, INSERT with its attributes). Unknown kinds become ProxyEntity.
  void readEntityInto(BlockRecord* block, bool entitiesSection);
  // Reads the entity whose "0 NAME" tag was just read; null for names that are not entities
  // (SEQEND, ENDBLK, ...) whose groups are then skipped.
  Entity* readEntity(std::string_view dxfName);

private:
  void readSections();
  void applyCodePage(std::string_view codePage);
  [[noreturn]] void structureError(int code, const std::string& message);

  DxfTagReader reader_;
  DxfTextDecoder decoder_;
  DxfReadOptions options_;
  std::string sourceName_;
  MappedFile* mappedFile_ = nullptr;
  int version_ = 1009;
  size_t badValues_ = 0;
  TextStyleRecord* standardTextStyle_ = nullptr;
  DimStyleRecord* standardDimStyle_ = nullptr;
  size_t totalBytes_ = 0;
  std::unordered_map<std::string_view, LayerRecord*> layerCache_;
  LayerRecord* lastLayer_ = nullptr;
  std::string_view lastLayerName_;

};

// The drawing database: one in-memory model of a drawing, filled by the readers and importers and
// read by regeneration and the writers.
//
// Everything it holds lives in its arena and is freed with it. Tables keep their records in file
// order; blocks keep their entities in drawing order; every object with a handle is found through
// find(). Readers build it through the construction calls below and finish with
// completeDatabase() (kit/db/DatabaseCompletion.h), which adds the standard records, repairs
// links and hands out handles, so that users of a loaded database never meet null table links.
#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <unordered_map>
#include <string>
#include <string_view>
#include <vector>

#include "kit/base/OdString.h"
#include "kit/db/Entities.h"
#include "kit/db/HandleMap.h"
#include "kit/db/Header.h"
#include "kit/db/LoadReport.h"
#include "kit/db/ObjectArena.h"
#include "kit/db/Objects.h"
#include "kit/db/SymbolTables.h"

struct ExternalReference;

// An application class a file declares (its CLASSES section).
struct DatabaseClass {
  std::string dxfName;
  std::string cppName;
  std::string appName;
  int32_t proxyFlags = 0;
  int32_t instanceCount = 0;
  bool wasProxy = false;
  bool isEntity = false;
};

class OdDbDatabase {
public:
  OdDbDatabase();
  virtual ~OdDbDatabase();
  OdDbDatabase(const OdDbDatabase&) = delete;
  OdDbDatabase& operator=(const OdDbDatabase&) = delete;

  // ---- Header -----------------------------------------------------------------------------
  DatabaseHeader& header() { return header_; }
  const DatabaseHeader& header() const { return header_; }
  bool getTILEMODE() const { return header_.tileMode; }
  // The version the drawing was read in ("AC1015"); writers default to it.
  const std::string& originalFileVersion() const { return header_.acadVer; }

  // ---- Symbol tables ----------------------------------------------------------------------
  SymbolTable<LayerRecord>& layers() { return layers_; }
  const SymbolTable<LayerRecord>& layers() const { return layers_; }
  SymbolTable<LinetypeRecord>& linetypes() { return linetypes_; }
  const SymbolTable<LinetypeRecord>& linetypes() const { return linetypes_; }
  SymbolTable<TextStyleRecord>& textStyles() { return textStyles_; }
  const SymbolTable<TextStyleRecord>& textStyles() const { return textStyles_; }
  SymbolTable<DimStyleRecord>& dimStyles() { return dimStyles_; }
  const SymbolTable<DimStyleRecord>& dimStyles() const { return dimStyles_; }
  SymbolTable<ViewRecord>& views() { return views_; }
  const SymbolTable<ViewRecord>& views() const { return views_; }
  SymbolTable<ViewportRecord>& viewports() { return viewports_; }
  const SymbolTable<ViewportRecord>& viewports() const { return viewports_; }
  SymbolTable<UcsRecord>& ucss() { return ucss_; }
  const SymbolTable<UcsRecord>& ucss() const { return ucss_; }
  SymbolTable<RegAppRecord>& regApps() { return regApps_; }
  const SymbolTable<RegAppRecord>& regApps() const { return regApps_; }
  SymbolTable<BlockRecord>& blocks() { return blocks_; }
  const SymbolTable<BlockRecord>& blocks() const { return blocks_; }

  // Standard records; present in every loaded database.
  LayerRecord* layerZero() const { return layers_.find("0"); }
  LinetypeRecord* linetypeByLayer() const { return linetypes_.find("ByLayer"); }
  LinetypeRecord* linetypeByBlock() const { return linetypes_.find("ByBlock"); }
  LinetypeRecord* linetypeContinuous() const { return linetypes_.find("Continuous"); }
  BlockRecord* modelSpace() const { return blocks_.find("*Model_Space"); }
  BlockRecord* paperSpace() const { return blocks_.find("*Paper_Space"); }
  // The "*ACTIVE" viewport configuration (the current model view), or null.
  ViewportRecord* activeViewport() const;

  // ---- Layouts ----------------------------------------------------------------------------
  // All layouts in tab order (model first).
  std::vector<Layout*> layouts() const;
  Layout* findLayout(std::string_view name) const;  // ignoring case
  Layout* layoutOfBlock(const BlockRecord* block) const;
  // Model when TILEMODE is set, else the layout made current last, else the layout of
  // *Paper_Space.
  Layout* activeLayout() const;
  // Makes a layout current: "Model" (or the model layout) sets TILEMODE, any other clears it.
  // Throws OdError when there is no layout of that name.
  void setCurrentLayout(const OdString& name);
  void setCurrentLayout(Layout* layout);

  // ---- Objects ----------------------------------------------------------------------------
  DbObject* find(OdDbHandle handle) const { return handles_.find(handle); }
  template <class T>
  T* findAs(OdDbHandle handle) const {
    return dbCast<T>(find(handle));
  }
  // Objects of the OBJECTS section (dictionaries, layouts, ...) in file order.
  const std::vector<DbObject*>& objects() const { return objects_; }
  Dictionary* namedObjectsDictionary() const { return findAs<Dictionary>(namedObjects_); }
  // The object under a path of dictionary names from the named objects dictionary, or null.
  DbObject* findInDictionaries(std::initializer_list<std::string_view> path) const;
  // The spatial filter (XCLIP) of a block reference, or null.
  const SpatialFilterObject* spatialFilterOf(const BlockReferenceEntity& reference) const;
  // Entities in all blocks (attributes of block references not counted).
  size_t entityCount() const;

  // ---- External references ----------------------------------------------------------------
  // What became of the drawing an xref block names (kit/db/ExternalReference.h), or null for other
  // blocks and for references nobody looked up yet.
  const ExternalReference* externalReference(const BlockRecord* block) const;
  // The same, created unresolved when missing.
  ExternalReference& externalReferenceFor(const BlockRecord* block);

  const std::vector<DatabaseClass>& classes() const { return classes_; }
  std::vector<DatabaseClass>& classes() { return classes_; }
  LoadReport& loadReport() { return report_; }
  const LoadReport& loadReport() const { return report_; }
  const std::string& fileName() const { return fileName_; }
  void setFileName(std::string name) { fileName_ = std::move(name); }

  // ---- Construction (readers and importers) ----------------------------------------------
  template <class T>
  T* newObject() {
    return arena_.make<T>();
  }
  ObjectArena& arena() { return arena_; }
  ObjectExtras& extrasOf(DbObject& object);

  // Registers the object's handle. A missing or already taken handle is not an error: the object
  // is queued and completeDatabase() gives it a fresh one.
  void adoptHandle(DbObject* object);
  // Points a handle at an object whatever was there (for repairs).
  void reassignHandle(DbObject* object, OdDbHandle handle);
  // A handle no object uses yet, above every handle seen so far and HANDSEED.
  OdDbHandle allocateHandle();
  const std::vector<DbObject*>& objectsWithoutHandle() const { return unhandled_; }
  void clearObjectsWithoutHandle() { unhandled_.clear(); }
  void forEachHandle(const std::function<void(OdDbHandle, DbObject*)>& fn) const { handles_.forEach(fn); }

  void addObject(DbObject* object);  // an OBJECTS section object
  void setNamedObjectsDictionary(OdDbHandle handle) { namedObjects_ = handle; }

  // Table records by name, created (marked implicitlyCreated) when missing, as loading does for
  // names entities use but the tables lack.
  LayerRecord* layerNamed(std::string_view name);
  LinetypeRecord* linetypeNamed(std::string_view name);
  TextStyleRecord* textStyleNamed(std::string_view name);
  DimStyleRecord* dimStyleNamed(std::string_view name);
  BlockRecord* blockNamed(std::string_view name);

private:
  template <class Record>
  Record* recordNamed(SymbolTable<Record>& table, std::string_view name);

  ObjectArena arena_;  // first member: destroyed last, after everything that points into it
  DatabaseHeader header_;
  SymbolTable<LayerRecord> layers_;
  SymbolTable<LinetypeRecord> linetypes_;
  SymbolTable<TextStyleRecord> textStyles_;
  SymbolTable<DimStyleRecord> dimStyles_;
  SymbolTable<ViewRecord> views_;
  SymbolTable<ViewportRecord> viewports_;
  SymbolTable<UcsRecord> ucss_;
  SymbolTable<RegAppRecord> regApps_;
  SymbolTable<BlockRecord> blocks_;
  std::vector<DbObject*> objects_;
  std::vector<DatabaseClass> classes_;
  HandleMap handles_;
  std::vector<DbObject*> unhandled_;
  uint64_t highestHandle_ = 0;
  uint64_t nextHandle_ = 0;
  OdDbHandle namedObjects_;
  Layout* currentPaperLayout_ = nullptr;  // set by setCurrentLayout
  LoadReport report_;
  std::string fileName_;
  std::unordered_map<const BlockRecord*, std::unique_ptr<ExternalReference>> externalReferences_;
};

using OdDbDatabasePtr = std::shared_ptr<OdDbDatabase>;

// Names the converter's code knows these records by.
using OdDbLayout = Layout;
using OdDbBlockTableRecord = BlockRecord;
using OdDbLayerTableRecord = LayerRecord;
using OdDbViewTableRecord = ViewRecord;
using OdDbTextStyleTableRecord = TextStyleRecord;
using OdDbLine = LineEntity;
using OdDbPoint = PointEntity;
using OdDbOle2Frame = Ole2FrameEntity;

// UTF-8 database text as the kit's wide string.
inline OdString toOdString(std::string_view utf8) { return OdString(odDecodeUtf8(utf8.data(), utf8.size())); }

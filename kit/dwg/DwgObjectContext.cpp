// The calls object readers build records with, and the last step of reading one object: its
// record goes into its table, the objects list or (entities) waits for the assembly.
#include "kit/dwg/DwgExtendedData.h"
#include "kit/dwg/DwgLoader.h"
#include "kit/dwg/DwgProxyData.h"

OdDbDatabase& DwgObjectContext::db() { return loader.db; }

void DwgObjectContext::applyObjectCommon(DbObject& o) {
  o.handle = frame.handle;
  o.ownerHandle = frame.owner;
  bool needExtras = !frame.extendedData.empty() || !frame.reactors.empty() || !frame.xdictionary.isNull();
  if (!needExtras) return;
  ObjectExtras& extras = db().extrasOf(o);
  extras.reactors = frame.reactors;
  extras.extensionDictionary = frame.xdictionary;
  for (const DwgObjectFrame::ExtendedData& eed : frame.extendedData) {
    XDataGroup group;
    group.appName = loader.applicationName(eed.application);
    if (group.appName.empty()) group.appName = eed.application.toHex();
    if (!decodeDwgExtendedData(eed.bytes, version(), loader.decoder(), group.values)) {
      loader.warn("object " + frame.handle.toHex() + ": extended data of " + group.appName + " is damaged");
    }
    extras.xdata.push_back(std::move(group));
  }
  hyperlinksFromExtendedData(extras.xdata, extras.hyperlinks);
}

void DwgObjectContext::applyEntityCommon(Entity& e) {
  applyObjectCommon(e);
  e.layer = layer(frame.layer);
  const DwgHeaderHandles& h = loader.headerHandles_;
  switch (frame.linetypeFlags) {
    case 1: e.linetype = linetype(h.linetypeByBlock); break;
    case 2: e.linetype = linetype(h.linetypeContinuous); break;
    case 3: e.linetype = linetype(frame.linetype); break;
    default: e.linetype = linetype(h.linetypeByLayer); break;
  }
  e.color = frame.color;
  if (!frame.bookColour.isNull()) {
    loader.objectFor(frame.bookColour);
    auto book = loader.bookColours_.find(frame.bookColour.value());
    if (book != loader.bookColours_.end()) e.color = book->second;
  }
  e.transparency = frame.transparency;
  e.linetypeScale = frame.linetypeScale;
  e.lineweight = frame.lineweight;
  if (frame.invisible & 1) e.entityFlags |= Entity::kInvisible;
  if (frame.entityMode == 1) e.entityFlags |= Entity::kPaperSpace;
  if (!frame.material.isNull() || !frame.plotStyle.isNull() || !frame.visualStyle.isNull() || frame.graphicsBytes) {
    ObjectExtras& extras = db().extrasOf(e);
    extras.material = frame.material;
    extras.plotStyle = frame.plotStyle;
    extras.visualStyle = frame.visualStyle;
    extras.proxyGraphicsBytes = frame.graphicsBytes;
  }
}

LayerRecord* DwgObjectContext::layer(OdDbHandle h) {
  if (auto* r = dbCast<LayerRecord>(loader.objectFor(h))) return r;
  return db().layerNamed("0");
}

LinetypeRecord* DwgObjectContext::linetype(OdDbHandle h) {
  if (auto* r = dbCast<LinetypeRecord>(loader.objectFor(h))) return r;
  return db().linetypeNamed("ByLayer");
}

TextStyleRecord* DwgObjectContext::textStyle(OdDbHandle h) {
  if (auto* r = dbCast<TextStyleRecord>(loader.objectFor(h))) return r;
  return db().textStyleNamed("Standard");
}

DimStyleRecord* DwgObjectContext::dimStyle(OdDbHandle h) {
  if (auto* r = dbCast<DimStyleRecord>(loader.objectFor(h))) return r;
  return db().dimStyleNamed("Standard");
}

BlockRecord* DwgObjectContext::block(OdDbHandle h) { return dbCast<BlockRecord>(loader.objectFor(h)); }

uint32_t DwgObjectContext::boundedCount(int64_t claimed, size_t minBits, const DwgBitReader& from) const {
  if (claimed <= 0) return 0;
  size_t bound = from.bitsLeft() / (minBits ? minBits : 1);
  if (uint64_t(claimed) > bound) {
    const_cast<DwgBitReader&>(from).skip(from.bitsLeft() + 1);  // marks the stream as overrun
    return 0;
  }
  return uint32_t(claimed);
}

void DwgObjectContext::setOwned(const DwgOwnedObjects& owned) {
  if (result) loader.owned_[result] = owned;
}

namespace {

template <class Record>
void addRecord(OdDbDatabase& db, SymbolTable<Record>& table, DbObject* o) {
  table.add(static_cast<Record*>(o));
  db.adoptHandle(o);
}

void addToTable(OdDbDatabase& db, DbObject* o) {
  switch (o->type) {
    case DbType::kLayer: addRecord(db, db.layers(), o); break;
    case DbType::kLinetype: addRecord(db, db.linetypes(), o); break;
    case DbType::kTextStyle: addRecord(db, db.textStyles(), o); break;
    case DbType::kDimStyle: addRecord(db, db.dimStyles(), o); break;
    case DbType::kView: addRecord(db, db.views(), o); break;
    case DbType::kViewportRecord: addRecord(db, db.viewports(), o); break;
    case DbType::kUcs: addRecord(db, db.ucss(), o); break;
    case DbType::kRegApp: addRecord(db, db.regApps(), o); break;
    case DbType::kBlockRecord: addRecord(db, db.blocks(), o); break;
    default: db.adoptHandle(o); break;
  }
}

}  // namespace

void commitDwgObject(DwgLoader& loader, DwgObjectContext& context) {
  DbObject* o = context.result;
  if (!o) return;
  OdDbDatabase& db = loader.db;
  switch (context.role) {
    case DwgRole::kEntity:
      db.adoptHandle(o);
      break;
    case DwgRole::kControl:
      if (!o->handle.isNull() && db.find(o->handle) != o) db.adoptHandle(o);
      break;
    default:
      if (isSymbolRecordType(o->type)) addToTable(db, o);
      else if (!o->isEntity()) db.addObject(o);
      else db.adoptHandle(o);
      break;
  }
}

void readUnknownDwgObject(DwgObjectContext& c, const DwgClass* cls, bool isEntity) {
  const char* fixedName = dwgFixedTypeName(c.frame.type);
  std::string name = cls ? cls->info.dxfName : fixedName ? fixedName : "TYPE" + std::to_string(c.frame.type);
  LoadReport& report = c.db().loadReport();
  if (isEntity) {
    auto* e = c.newEntity<ProxyEntity>();
    e->dxfName = name;
    if (cls) {
      e->dxfName = "ACAD_PROXY_ENTITY";
      keepDwgProxyData(c, *cls, true, e->data);
    }
    ++report.proxyEntities;
    ++report.proxyNames[name];
    return;
  }
  auto* o = c.newObject<GenericObject>();
  o->dxfName = name;
  o->isProxy = name == "ACAD_PROXY_OBJECT" || (cls && cls->info.wasProxy);
  if (cls) {
    o->dxfName = "ACAD_PROXY_OBJECT";
    keepDwgProxyData(c, *cls, false, o->data);
  }
  if (o->isProxy) {
    ++report.proxyObjects;
    ++report.proxyNames[name];
  } else {
    ++report.unmodelledObjects;
  }
}

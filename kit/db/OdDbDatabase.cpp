#include "kit/db/OdDbDatabase.h"

#include <algorithm>

#include "kit/base/OdError.h"
#include "kit/db/ExternalReference.h"

OdDbDatabase::OdDbDatabase() = default;
OdDbDatabase::~OdDbDatabase() = default;

ViewportRecord* OdDbDatabase::activeViewport() const { return viewports_.find("*Active"); }

std::vector<Layout*> OdDbDatabase::layouts() const {
  std::vector<Layout*> result;
  for (DbObject* object : objects_) {
    if (Layout* layout = dbCast<Layout>(object)) result.push_back(layout);
  }
  std::stable_sort(result.begin(), result.end(), [](const Layout* a, const Layout* b) {
    bool aModel = a->isModelLayout(), bModel = b->isModelLayout();
    if (aModel != bModel) return aModel;
    return a->tabOrder < b->tabOrder;
  });
  return result;
}

Layout* OdDbDatabase::findLayout(std::string_view name) const {
  for (DbObject* object : objects_) {
    Layout* layout = dbCast<Layout>(object);
    if (layout && equalsIgnoringCase(layout->name, name)) return layout;
  }
  return nullptr;
}

Layout* OdDbDatabase::layoutOfBlock(const BlockRecord* block) const {
  if (!block) return nullptr;
  if (Layout* layout = findAs<Layout>(block->layout)) {
    if (layout->block == block) return layout;
  }
  for (DbObject* object : objects_) {
    Layout* layout = dbCast<Layout>(object);
    if (layout && layout->block == block) return layout;
  }
  return nullptr;
}

Layout* OdDbDatabase::activeLayout() const {
  if (!header_.tileMode && currentPaperLayout_) return currentPaperLayout_;
  return layoutOfBlock(header_.tileMode ? modelSpace() : paperSpace());
}

void OdDbDatabase::setCurrentLayout(Layout* layout) {
  if (!layout) throw OdError(eInvalidInput, OdString(L"Layout not found"));
  bool model = layout->isModelLayout() || (layout->block && layout->block->isModelSpace());
  header_.tileMode = model;
  if (!model) currentPaperLayout_ = layout;
}

void OdDbDatabase::setCurrentLayout(const OdString& name) {
  for (Layout* layout : layouts()) {
    if (layout->getLayoutName().iCompare(name.c_str()) == 0) return setCurrentLayout(layout);
  }
  if (name.iCompare(L"Model") == 0) {
    header_.tileMode = true;
    return;
  }
  throw OdError(eInvalidInput, OdString(L"Layout not found: ") + name);
}

DbObject* OdDbDatabase::findInDictionaries(std::initializer_list<std::string_view> path) const {
  DbObject* current = namedObjectsDictionary();
  for (std::string_view name : path) {
    Dictionary* dictionary = dbCast<Dictionary>(current);
    if (!dictionary) return nullptr;
    current = find(dictionary->find(name));
  }
  return current;
}

const SpatialFilterObject* OdDbDatabase::spatialFilterOf(const BlockReferenceEntity& reference) const {
  Dictionary* xdict = findAs<Dictionary>(reference.extensionDictionary());
  if (!xdict) return nullptr;
  Dictionary* filters = findAs<Dictionary>(xdict->find("ACAD_FILTER"));
  if (!filters) return nullptr;
  return findAs<SpatialFilterObject>(filters->find("SPATIAL"));
}

const ExternalReference* OdDbDatabase::externalReference(const BlockRecord* block) const {
  auto it = externalReferences_.find(block);
  return it == externalReferences_.end() ? nullptr : it->second.get();
}

ExternalReference& OdDbDatabase::externalReferenceFor(const BlockRecord* block) {
  std::unique_ptr<ExternalReference>& slot = externalReferences_[block];
  if (!slot) slot = std::make_unique<ExternalReference>();
  return *slot;
}

size_t OdDbDatabase::entityCount() const {
  size_t count = 0;
  for (const BlockRecord* block : blocks_) count += block->entities.size();
  return count;
}

ObjectExtras& OdDbDatabase::extrasOf(DbObject& object) {
  if (!object.extras) object.extras = arena_.make<ObjectExtras>();
  return *object.extras;
}

void OdDbDatabase::adoptHandle(DbObject* object) {
  uint64_t value = object->handle.value();
  if (value > highestHandle_) highestHandle_ = value;
  if (value != 0 && handles_.insert(object->handle, object)) return;
  unhandled_.push_back(object);
}

void OdDbDatabase::reassignHandle(DbObject* object, OdDbHandle handle) {
  if (find(object->handle) == object) handles_.erase(object->handle);
  object->handle = handle;
  if (handle.value() > highestHandle_) highestHandle_ = handle.value();
  handles_.assign(handle, object);
}

OdDbHandle OdDbDatabase::allocateHandle() {
  // Above every handle seen so far; when a file used the largest handle there is, the free ones
  // below are searched, from where the last search stopped so that the search stays linear.
  uint64_t above = highestHandle_ == UINT64_MAX ? 0 : highestHandle_ + 1;
  uint64_t next = std::max({above, header_.handSeed.value(), nextHandle_, uint64_t(1)});
  while (handles_.find(OdDbHandle(next)) && next != UINT64_MAX) ++next;
  nextHandle_ = next + 1;
  if (next > highestHandle_) highestHandle_ = next;
  return OdDbHandle(next);
}

void OdDbDatabase::addObject(DbObject* object) {
  objects_.push_back(object);
  adoptHandle(object);
}

template <class Record>
Record* OdDbDatabase::recordNamed(SymbolTable<Record>& table, std::string_view name) {
  if (Record* found = table.find(name)) return found;
  Record* record = arena_.make<Record>();
  record->name = std::string(name);
  record->implicitlyCreated = true;
  table.add(record);
  unhandled_.push_back(record);
  return record;
}

LayerRecord* OdDbDatabase::layerNamed(std::string_view name) { return recordNamed(layers_, name); }
LinetypeRecord* OdDbDatabase::linetypeNamed(std::string_view name) { return recordNamed(linetypes_, name); }
TextStyleRecord* OdDbDatabase::textStyleNamed(std::string_view name) { return recordNamed(textStyles_, name); }
DimStyleRecord* OdDbDatabase::dimStyleNamed(std::string_view name) { return recordNamed(dimStyles_, name); }
BlockRecord* OdDbDatabase::blockNamed(std::string_view name) { return recordNamed(blocks_, name); }

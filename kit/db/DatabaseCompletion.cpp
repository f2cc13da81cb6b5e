#include "kit/db/DatabaseCompletion.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "kit/db/OdDbDatabase.h"

namespace {

void ensureStandardRecords(OdDbDatabase& db) {
  LinetypeRecord* continuous = db.linetypeNamed("Continuous");
  if (continuous->implicitlyCreated && continuous->description.empty()) {
    continuous->description = "Solid line";
  }
  db.linetypeNamed("ByBlock");
  db.linetypeNamed("ByLayer");
  db.layerNamed("0");
  db.textStyleNamed("Standard");
  db.dimStyleNamed("Standard");
  if (db.regApps().empty() || !db.regApps().find("ACAD")) {
    RegAppRecord* acad = db.newObject<RegAppRecord>();
    acad->name = "ACAD";
    acad->implicitlyCreated = true;
    db.regApps().add(acad);
    db.adoptHandle(acad);
  }
  db.blockNamed("*Model_Space");
  db.blockNamed("*Paper_Space");
  for (LayerRecord* layer : db.layers()) {
    if (!layer->linetype) layer->linetype = continuous;
    // A layer cannot take its colour from a layer or a block: some programs write 256 or 0 there,
    // which AutoCAD shows as white (7).
    if (layer->color.isByLayer() || layer->color.isByBlock()) layer->color = OdCmEntityColor::fromACI(7);
  }
  for (TextStyleRecord* style : db.textStyles()) {
    if (style->implicitlyCreated && style->fontFile.empty()) style->fontFile = "txt";
  }
  for (BlockRecord* block : db.blocks()) {
    if (!block->blockLayer) block->blockLayer = db.layerZero();
  }
}

void giveHandles(OdDbDatabase& db) {
  size_t given = 0;
  for (DbObject* object : db.objectsWithoutHandle()) {
    if (!object->handle.isNull() && db.find(object->handle) == object) continue;  // adopted later
    if (!object->handle.isNull()) object->objectFlags |= DbObject::kHandleReassigned;
    db.reassignHandle(object, db.allocateHandle());
    ++given;
  }
  db.clearObjectsWithoutHandle();
  db.loadReport().reassignedHandles += given;
  db.header().handSeed = db.allocateHandle();
}

Dictionary* ensureDictionary(OdDbDatabase& db, Dictionary* parent, const char* name) {
  if (parent) {
    if (Dictionary* existing = db.findAs<Dictionary>(parent->find(name))) return existing;
  }
  Dictionary* dictionary = db.newObject<Dictionary>();
  dictionary->hardOwner = false;
  db.addObject(dictionary);
  dictionary->handle = db.allocateHandle();
  db.reassignHandle(dictionary, dictionary->handle);
  if (parent) {
    dictionary->ownerHandle = parent->handle;
    parent->entries.push_back({name, dictionary->handle});
  }
  return dictionary;
}

Dictionary* ensureNamedObjects(OdDbDatabase& db) {
  if (Dictionary* nod = db.namedObjectsDictionary()) return nod;
  // The first dictionary owned by nothing is the root, whatever the file's order.
  for (DbObject* object : db.objects()) {
    Dictionary* d = dbCast<Dictionary>(object);
    if (d && d->ownerHandle.isNull()) {
      db.setNamedObjectsDictionary(d->handle);
      return d;
    }
  }
  Dictionary* nod = ensureDictionary(db, nullptr, "");
  db.setNamedObjectsDictionary(nod->handle);
  return nod;
}

Layout* createLayout(OdDbDatabase& db, Dictionary* layoutDictionary, const std::string& name,
                     BlockRecord* block, int16_t tabOrder) {
  Layout* layout = db.newObject<Layout>();
  layout->name = name;
  layout->tabOrder = tabOrder;
  layout->block = block;
  layout->blockRecordHandle = block->handle;
  layout->ownerHandle = layoutDictionary->handle;
  if (block->isModelSpace()) layout->plotFlags = PlotSettingsData::kModelType;
  db.addObject(layout);
  layout->handle = db.allocateHandle();
  db.reassignHandle(layout, layout->handle);
  layoutDictionary->entries.push_back({name, layout->handle});
  block->layout = layout->handle;
  // Files before R2000 have no layouts at all: adding them is not a repair worth a message.
  if (db.header().versionNumber() >= 1015) {
    db.loadReport().addMessage("layout \"" + name + "\" added for block " + block->name);
  }
  return layout;
}

std::string unusedLayoutName(std::unordered_set<std::string>& names, int& counter) {
  for (;;) {
    std::string name = "Layout" + std::to_string(++counter);
    if (names.insert(toUpperAscii(name)).second) return name;
  }
}

BlockRecord* newPaperSpaceBlock(OdDbDatabase& db) {
  for (int i = 0;; ++i) {
    std::string name = "*Paper_Space" + std::to_string(i);
    if (db.blocks().find(name)) continue;
    BlockRecord* block = db.blockNamed(name);
    block->implicitlyCreated = true;
    return block;
  }
}

// Layouts and their blocks point at each other; files break either link, or leave layouts out.
void linkLayouts(OdDbDatabase& db) {
  Dictionary* nod = ensureNamedObjects(db);
  Dictionary* layoutDictionary = ensureDictionary(db, nod, "ACAD_LAYOUT");
  std::unordered_set<BlockRecord*> taken;
  std::unordered_map<uint64_t, BlockRecord*> blockClaiming;  // layout handle -> block naming it
  for (BlockRecord* candidate : db.blocks()) {
    if (!candidate->layout.isNull()) blockClaiming.emplace(candidate->layout.value(), candidate);
  }
  std::vector<Layout*> all = db.layouts();
  std::unordered_set<std::string> names;
  for (Layout* layout : all) names.insert(toUpperAscii(layout->name));
  for (Layout* layout : all) {
    BlockRecord* block = db.findAs<BlockRecord>(layout->blockRecordHandle);
    if (!block && !layout->handle.isNull()) {
      // The block may still name this layout.
      auto it = blockClaiming.find(layout->handle.value());
      if (it != blockClaiming.end()) block = it->second;
    }
    if (!block && equalsIgnoringCase(layout->name, "Model")) block = db.modelSpace();
    if (block && taken.count(block)) block = nullptr;
    if (block && !block->isLayout()) block = nullptr;
    if (!block) {
      block = equalsIgnoringCase(layout->name, "Model") ? nullptr : newPaperSpaceBlock(db);
      if (!block) continue;
      db.loadReport().addMessage("layout \"" + layout->name + "\" had no block; " + block->name + " added");
    }
    taken.insert(block);
    layout->block = block;
    layout->blockRecordHandle = block->handle;
    block->layout = layout->handle;
  }
  // A layout named "Model" that is not model space keeps its block; model space needs its own.
  int counter = 0;
  int16_t nextTab = 1;
  for (Layout* layout : all) nextTab = int16_t(std::max<int>(nextTab, layout->tabOrder + 1));
  BlockRecord* model = db.modelSpace();
  if (!taken.count(model)) createLayout(db, layoutDictionary, names.count("MODEL") ? "Model_" : "Model", model, 0);
  BlockRecord* paper = db.paperSpace();
  if (!taken.count(paper)) createLayout(db, layoutDictionary, unusedLayoutName(names, counter), paper, nextTab++);
  for (BlockRecord* block : db.blocks()) {
    if (block->isPaperSpace() && !taken.count(block) && block != paper) {
      createLayout(db, layoutDictionary, unusedLayoutName(names, counter), block, nextTab++);
    }
  }
  // Blocks that claim a layout which does not claim them back lose the claim.
  for (BlockRecord* block : db.blocks()) {
    Layout* layout = db.findAs<Layout>(block->layout);
    if (!layout || layout->block != block) block->layout = OdDbHandle();
  }
}

struct StandardRecords {
  LayerRecord* layer;
  LinetypeRecord* byLayer;
  TextStyleRecord* textStyle;
  DimStyleRecord* dimStyle;
};

// Links every reader must leave set; filled with the standard records where a reader did not.
void completeEntity(Entity& e, const StandardRecords& s) {
  if (!e.layer) e.layer = s.layer;
  if (!e.linetype) e.linetype = s.byLayer;
  switch (e.type) {
    case DbType::kText:
      if (!static_cast<TextEntity&>(e).style) static_cast<TextEntity&>(e).style = s.textStyle;
      break;
    case DbType::kAttribute:
      if (!static_cast<AttributeEntity&>(e).style) static_cast<AttributeEntity&>(e).style = s.textStyle;
      break;
    case DbType::kAttributeDefinition:
      if (!static_cast<AttributeDefinitionEntity&>(e).style) static_cast<AttributeDefinitionEntity&>(e).style = s.textStyle;
      break;
    case DbType::kMText:
      if (!static_cast<MTextEntity&>(e).style) static_cast<MTextEntity&>(e).style = s.textStyle;
      break;
    case DbType::kDimension:
      if (!static_cast<DimensionEntity&>(e).style) static_cast<DimensionEntity&>(e).style = s.dimStyle;
      break;
    case DbType::kLeader:
      if (!static_cast<LeaderEntity&>(e).style) static_cast<LeaderEntity&>(e).style = s.dimStyle;
      break;
    case DbType::kTolerance:
      if (!static_cast<ToleranceEntity&>(e).style) static_cast<ToleranceEntity&>(e).style = s.dimStyle;
      break;
    default:
      break;
  }
}

// Owners (files without owner handles, R12, give none: an entity belongs to the block it was
// read into), standard links, and block references without a block, which cannot be drawn.
void completeEntities(OdDbDatabase& db) {
  StandardRecords s{db.layerZero(), db.linetypeByLayer(), db.textStyles().find("Standard"), db.dimStyles().find("Standard")};
  size_t dropped = 0;
  for (BlockRecord* block : db.blocks()) {
    std::vector<Entity*>& entities = block->entities;
    size_t kept = 0;
    for (Entity* entity : entities) {
      auto* ref = dbCast<BlockReferenceEntity>(entity);
      if (ref && !ref->block) {
        ++dropped;
        continue;
      }
      if (entity->ownerHandle.isNull()) entity->ownerHandle = block->handle;
      completeEntity(*entity, s);
      if (ref) {
        for (AttributeEntity* a : ref->attributes) {
          a->ownerHandle = ref->handle;
          completeEntity(*a, s);
        }
      }
      entities[kept++] = entity;
    }
    entities.resize(kept);
  }
  if (dropped) db.loadReport().addMessage(std::to_string(dropped) + " block references without a block removed");
}

void resolveViewportLayers(OdDbDatabase& db) {
  for (BlockRecord* block : db.blocks()) {
    for (Entity* entity : block->entities) {
      ViewportEntity* viewport = dbCast<ViewportEntity>(entity);
      if (!viewport) continue;
      for (OdDbHandle h : viewport->frozenLayerHandles) {
        if (LayerRecord* layer = db.findAs<LayerRecord>(h)) viewport->frozenLayers.push_back(layer);
      }
    }
  }
}

// The blocks an entity of a block draws.
BlockRecord* referencedBlock(Entity* entity) {
  if (auto* ref = dbCast<BlockReferenceEntity>(entity)) return ref->block;
  if (auto* dim = dbCast<DimensionEntity>(entity)) return dim->block;
  if (auto* table = dbCast<TableEntity>(entity)) return table->block;
  return nullptr;
}

void dropReference(Entity* entity) {
  if (auto* dim = dbCast<DimensionEntity>(entity)) dim->block = nullptr;
  if (auto* table = dbCast<TableEntity>(entity)) table->block = nullptr;
}

// Depth-first search over block references without recursion (nesting can be deep); a reference
// back to a block still on the path closes a cycle and is removed.
void cutCircularReferences(OdDbDatabase& db) {
  enum class State : uint8_t { kNew, kOnPath, kDone };
  std::unordered_map<BlockRecord*, State> state;
  struct Frame {
    BlockRecord* block;
    size_t next;
  };
  size_t cut = 0;
  for (BlockRecord* root : db.blocks()) {
    if (state[root] != State::kNew) continue;
    std::vector<Frame> stack{{root, 0}};
    state[root] = State::kOnPath;
    while (!stack.empty()) {
      Frame& frame = stack.back();
      std::vector<Entity*>& entities = frame.block->entities;
      if (frame.next >= entities.size()) {
        state[frame.block] = State::kDone;
        stack.pop_back();
        continue;
      }
      Entity* entity = entities[frame.next];
      BlockRecord* target = referencedBlock(entity);
      if (!target) {
        ++frame.next;
        continue;
      }
      State& s = state[target];
      if (s == State::kOnPath) {
        db.loadReport().addMessage("circular reference to block " + target->name + " in block " +
                                   frame.block->name + " removed");
        ++cut;
        if (dbCast<BlockReferenceEntity>(entity)) {
          entities.erase(entities.begin() + std::ptrdiff_t(frame.next));
        } else {
          dropReference(entity);
          ++frame.next;
        }
        continue;
      }
      ++frame.next;
      if (s == State::kNew) {
        s = State::kOnPath;
        stack.push_back({target, 0});
      }
    }
  }
  (void)cut;
}

void reportMissingDefinitions(OdDbDatabase& db) {
  for (BlockRecord* block : db.blocks()) {
    if (!block->hasDefinition && !block->isLayout() && !block->isFromExternalReference()) {
      db.loadReport().addMessage("block " + block->name + " is referenced but not defined");
    }
  }
}

}  // namespace

void completeDatabase(OdDbDatabase& db) {
  ensureStandardRecords(db);
  giveHandles(db);
  linkLayouts(db);
  resolveViewportLayers(db);
  cutCircularReferences(db);
  reportMissingDefinitions(db);
  giveHandles(db);
  completeEntities(db);
}

// Helpers shared by the DXF reader tests: corpus paths, reading DXF text written inline, and the
// per-kind entity counts the corpus table records.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "kit/db/OdDbDatabase.h"
#include "kit/db/ProxyClass.h"
#include "kit/dxf/DxfReader.h"

inline std::string corpusPath(const std::string& relative) { return std::string(DM_CORPUS_DIR) + "/" + relative; }

// DXF text from tag pairs written one per line as "code value", so that tests read like the
// files they describe: dxfText({"0 SECTION", "2 ENTITIES", "0 LINE", ...}).
inline std::string dxfText(const std::vector<std::string>& pairs) {
  std::string out;
  for (const std::string& pair : pairs) {
    size_t space = pair.find(' ');
    std::string code = pair.substr(0, space);
    std::string value = space == std::string::npos ? std::string() : pair.substr(space + 1);
    out += code + "\n" + value + "\n";
  }
  return out;
}

// A minimal R2000 file around the given entity tag pairs.
inline std::string dxfWithEntities(const std::vector<std::string>& entityPairs, const std::string& version = "AC1015") {
  std::vector<std::string> pairs = {"0 SECTION", "2 HEADER", "9 $ACADVER", "1 " + version, "0 ENDSEC",
                                    "0 SECTION", "2 ENTITIES"};
  pairs.insert(pairs.end(), entityPairs.begin(), entityPairs.end());
  pairs.insert(pairs.end(), {"0 ENDSEC", "0 EOF"});
  return dxfText(pairs);
}

inline OdDbDatabasePtr readDxfText(const std::string& text, bool recover = false) {
  DxfReadOptions options;
  options.recover = recover;
  return readDxfBuffer(text, options, "test.dxf");
}

// The first entity of model space, cast to its kind (null when absent or of another kind).
template <class E>
const E* firstModelEntity(const OdDbDatabase& db) {
  const BlockRecord* model = db.modelSpace();
  if (!model || model->entities.empty()) return nullptr;
  return dbCast<E>(model->entities.front());
}

// "ARC:2 INSERT:1 LINE:7": entities of every block (attributes of block references included) by
// kind; proxies by their DXF name.
inline std::string entityCountsByKind(const OdDbDatabase& db) {
  std::map<std::string, size_t> counts;
  for (const BlockRecord* block : db.blocks()) {
    for (const Entity* e : block->entities) {
      if (auto* proxy = dbCast<ProxyEntity>(e)) {
        const DatabaseClass* cls = proxyClass(db, *proxy);
        ++counts["PROXY(" + (cls ? cls->dxfName : proxy->dxfName) + ")"];
      }
      else if (auto* modeler = dbCast<ModelerGeometryEntity>(e)) ++counts[modeler->dxfName];
      else ++counts[dbTypeName(e->type)];
      if (auto* ref = dbCast<BlockReferenceEntity>(e)) counts["ATTRIB"] += ref->attributes.size();
    }
  }
  std::string s;
  for (const auto& [kind, n] : counts) {
    if (n == 0) continue;
    if (!s.empty()) s += ' ';
    s += kind + ":" + std::to_string(n);
  }
  return s;
}

#include "kit/db/Objects.h"

#include "kit/db/SymbolTables.h"

OdDbHandle Dictionary::find(std::string_view name) const {
  for (const DictionaryEntry& e : entries) {
    if (equalsIgnoringCase(e.name, name)) return e.handle;
  }
  return OdDbHandle();
}

bool Layout::isModelLayout() const {
  if (block) return block->isModelSpace();
  return equalsIgnoringCase(name, "Model");
}

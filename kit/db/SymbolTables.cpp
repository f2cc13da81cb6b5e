#include "kit/db/SymbolTables.h"

bool LinetypeRecord::isByLayer() const { return equalsIgnoringCase(name, "ByLayer"); }
bool LinetypeRecord::isByBlock() const { return equalsIgnoringCase(name, "ByBlock"); }

bool BlockRecord::isModelSpace() const {
  return equalsIgnoringCase(name, "*Model_Space") || equalsIgnoringCase(name, "$Model_Space");
}

bool BlockRecord::isPaperSpace() const {
  // R12 files call them $Paper_Space; later ones *Paper_Space, *Paper_Space0, *Paper_Space1, ...
  std::string_view n(name);
  if (n.size() < 12) return false;
  if (n[0] != '*' && n[0] != '$') return false;
  return equalsIgnoringCase(n.substr(1, 11), "Paper_Space");
}

const TaggedValue* DimStyleRecord::find(int code) const {
  for (const TaggedValue& v : values) {
    if (v.code == code) return &v;
  }
  return nullptr;
}

double DimStyleRecord::real(int code, double fallback) const {
  const TaggedValue* v = find(code);
  return v ? v->asReal() : fallback;
}

int64_t DimStyleRecord::integer(int code, int64_t fallback) const {
  const TaggedValue* v = find(code);
  return v ? v->asInteger() : fallback;
}

OdDbHandle DimStyleRecord::handleOf(int code) const {
  const TaggedValue* v = find(code);
  return v ? OdDbHandle::fromHex(v->text) : OdDbHandle();
}

std::string DimStyleRecord::text(int code) const {
  const TaggedValue* v = find(code);
  return v ? v->asText() : std::string();
}

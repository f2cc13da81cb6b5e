#include "kit/db/DimStyleOverrides.h"

#include <cmath>

namespace {

// The value that follows "1070 code" inside the DSTYLE braces, or null.
const TaggedValue* overrideOf(const DbObject& entity, int code) {
  const XDataGroup* acad = entity.xdata("ACAD");
  if (!acad) return nullptr;
  const TaggedValues& v = acad->values;
  bool inList = false;
  for (size_t i = 0; i < v.size(); ++i) {
    if (v[i].code == 1000 && v[i].text == "DSTYLE") inList = true;
    else if (inList && v[i].code == 1002 && v[i].text == "}") return nullptr;
    else if (inList && v[i].code == 1070 && v[i].integer == code && i + 1 < v.size()) return &v[i + 1];
    else if (inList && v[i].code == 1070) ++i;  // another variable's value
  }
  return nullptr;
}

}  // namespace

double dimensionVariable(const DbObject& entity, const DimStyleRecord* style, int code, double fallback) {
  if (const TaggedValue* value = overrideOf(entity, code)) return value->asReal();
  return style ? style->real(code, fallback) : fallback;
}

int64_t dimensionInteger(const DbObject& entity, const DimStyleRecord* style, int code, int64_t fallback) {
  if (const TaggedValue* value = overrideOf(entity, code)) return value->asInteger();
  return style ? style->integer(code, fallback) : fallback;
}

std::string dimensionString(const DbObject& entity, const DimStyleRecord* style, int code) {
  if (const TaggedValue* value = overrideOf(entity, code)) return value->text;
  return style ? style->text(code) : std::string();
}

OdDbHandle dimensionHandle(const DbObject& entity, const DimStyleRecord* style, int code) {
  if (const TaggedValue* value = overrideOf(entity, code)) return OdDbHandle::fromHex(value->text);
  return style ? style->handleOf(code) : OdDbHandle();
}

double dimensionArrowSize(const DbObject& entity, const DimStyleRecord* style) {
  double scale = dimensionVariable(entity, style, 40, 1.0);
  double size = dimensionVariable(entity, style, 41, 0.18) * (scale > 0.0 ? scale : 1.0);
  return size > 0.0 && std::isfinite(size) ? size : 0.18;
}

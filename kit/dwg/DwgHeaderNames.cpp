// Header variables that DWG files give as handles and DXF files as names ($CLAYER, $TEXTSTYLE,
// $DIMBLK, ...) get their names once the objects are read; MEASUREMENT comes from the template
// section.
#include <cstring>

#include "kit/dwg/DwgLoader.h"

namespace {

std::string nameOf(DbObject* o) {
  if (auto* record = dbCast<SymbolTableRecord>(o)) return record->name;
  if (auto* style = dbCast<MLineStyleObject>(o)) return style->name;
  return "";
}

}  // namespace

void DwgLoader::finishHeader() {
  DatabaseHeader& h = db.header();
  for (HeaderVariable& v : h.variables) {
    for (TaggedValue& t : v.values) {
      if (t.kind != GroupValueKind::kHandle || t.code == 5 || t.code >= 300) continue;
      t.text = nameOf(objectFor(OdDbHandle::fromHex(t.text)));
      t.kind = GroupValueKind::kString;
    }
  }
  auto named = [&](OdDbHandle handle, std::string& field) {
    std::string name = nameOf(objectFor(handle));
    if (!name.empty()) field = name;
  };
  named(headerHandles_.currentLayer, h.cLayer);
  named(headerHandles_.textStyle, h.textStyle);
  named(headerHandles_.currentLinetype, h.celType);
  named(headerHandles_.dimStyle, h.dimStyle);
  named(headerHandles_.multilineStyle, h.cmlStyle);

  std::string_view t = sections_.templateSection;
  if (t.size() >= 4) {
    uint16_t descriptionLength;
    std::memcpy(&descriptionLength, t.data(), 2);
    if (size_t(descriptionLength) + 4 <= t.size()) {
      uint16_t measurement;
      std::memcpy(&measurement, t.data() + 2 + descriptionLength, 2);
      h.measurement = int16_t(measurement);
      h.variables.push_back(HeaderVariable{"MEASUREMENT", {TaggedValue::ofInteger(70, measurement)}});
    }
  }
}

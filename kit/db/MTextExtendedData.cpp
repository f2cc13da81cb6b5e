#include "kit/db/MTextExtendedData.h"

// The column layout comes as (1070 code, value) pairs between ACAD_MTEXT_COLUMN_INFO_BEGIN and
// _END; the defined height follows its own marker.
void applyMTextExtendedData(const DbObject& object, MTextData& m) {
  const XDataGroup* acad = object.xdata("ACAD");
  if (!acad) return;
  bool inInfo = false;
  const TaggedValues& v = acad->values;
  for (size_t i = 0; i < v.size(); ++i) {
    if (v[i].code == 1000) {
      if (v[i].text == "ACAD_MTEXT_COLUMN_INFO_BEGIN") inInfo = true;
      else if (v[i].text == "ACAD_MTEXT_COLUMN_INFO_END") inInfo = false;
      else if (v[i].text == "ACAD_MTEXT_DEFINED_HEIGHT_BEGIN" && i + 2 < v.size()) m.definedHeight = v[i + 2].asReal();
      continue;
    }
    if (!inInfo || v[i].code != 1070 || i + 1 >= v.size()) continue;
    const TaggedValue& value = v[i + 1];
    switch (v[i].integer) {
      case 75: m.columnType = int16_t(value.asInteger()); break;
      case 76: m.columnCount = int16_t(value.asInteger()); break;
      case 78: m.columnFlowReversed = value.asInteger() != 0; break;
      case 79: m.columnAutoHeight = value.asInteger() != 0; break;
      case 48: m.columnWidth = value.asReal(); break;
      case 49: m.columnGutter = value.asReal(); break;
      case 50: {
        // The count of manual column heights, each a real of its own after it.
        int64_t count = value.asInteger();
        m.columnHeights.clear();
        for (int64_t k = 0; k < count && i + 2 < v.size() && v[i + 2].code == 1040; ++k, ++i)
          m.columnHeights.push_back(v[i + 2].asReal());
        break;
      }
      default: break;
    }
    ++i;
  }
}

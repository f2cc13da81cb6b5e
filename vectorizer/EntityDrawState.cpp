#include "vectorizer/EntityDrawState.h"

#include <vector>

#include "drivers/TRANS_BASE2.h"
#include "vectorizer/OutputDriverPointer.h"

EntityDrawState g_EntityDrawState;

namespace {

// Names every driver accepts as they are (held by the driver), compared as given and upper-cased.
bool IsAlwaysAccepted(TRANS_BASE2& driver, const OdString& name) {
  std::set<OdString>& accepted = driver.GetSolidLineTypes();
  if (accepted.count(name) != 0) return true;
  OdString upper = name;
  upper.makeUpper();
  return accepted.count(upper) != 0;
}

}  // namespace

void ResetLineType() {
  EntityDrawState& s = g_EntityDrawState;
  s.lineTypeName = L"CONTINUOUS";
  s.lineTypeScale = 1.0;
  s.isContinuous = 1;
  s.lineTypeKnown = 0;
}

int SetLineType(const OdString& name, double scale) {
  EntityDrawState& s = g_EntityDrawState;
  s.lineTypeName = name;
  s.lineTypeScale = scale;
  s.isContinuous = 0;
  s.lineTypeKnown = 0;
  TRANS_BASE2* driver = g_pOutputDriver;
  if (!driver) return 0;
  if (IsAlwaysAccepted(*driver, name)) {
    s.lineTypeKnown = 1;
    return 0;
  }
  std::vector<double> dashes;
  if (!driver->FindLineType(name, dashes)) return 0;
  if (dashes.empty()) return 1;
  // A patterned line type is drawn from the kit's dashes, so the driver sees a solid line.
  ResetLineType();
  return 0;
}

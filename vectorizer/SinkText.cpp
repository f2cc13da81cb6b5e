// The text entry of the sink: each text is stroked, captured as a room label, or handed to the
// driver as one text record.

#include "drivers/TRANS_BASE2.h"
#include "kit/gi/OdGiTextStyle.h"
#include "vectorizer/EntityDrawState.h"
#include "vectorizer/EntityRuleState.h"
#include "vectorizer/OdGiConveyorGeometryDumper.h"
#include "vectorizer/OutputDriverPointer.h"
#include "vectorizer/VectorizerText.h"
#include "vectorizer/ViewportExtents.h"

namespace {

// Width factor of the special characters of es_isocp.shx.
constexpr double kIsocpWidthFactor = 0.8;

OdString TextOf(const OdChar* msg, int32_t numChars) {
  if (!msg) return OdString();
  if (numChars < 0) return OdString(msg);
  return OdString(msg, size_t(numChars));
}

}  // namespace

void OdGiConveyorGeometryDumper::textProc(const OdGePoint3d& position, const OdGeVector3d& direction,
                                          const OdGeVector3d& upVector, const OdChar* msg, int32_t numChars, bool,
                                          const OdGiTextStyle* textStyle, const OdGeVector3d*) {
  EntityDrawState& s = g_EntityDrawState;
  s.lineWidth = 0.0;
  s.widthIsGeometric = 0;
  s.closedFlag = 0;
  OdString text = TextOf(msg, numChars);
  OdGiTextStyle style = textStyle ? *textStyle : OdGiTextStyle();
  if (IsSpecialIsocpText(text, style)) {
    double height = upVector.length();
    OdGeVector3d along = direction.isZeroLength() ? direction : direction.normal() * (height * kIsocpWidthFactor);
    style.setXScale(kIsocpWidthFactor);
    strokeText(position, along, upVector, text, style);
    return;
  }
  drawText(position, direction, upVector, text, style);
}

void OdGiConveyorGeometryDumper::drawText(const OdGePoint3d& position, const OdGeVector3d& direction,
                                          const OdGeVector3d& upVector, const OdString& text,
                                          const OdGiTextStyle& style) {
  TRANS_BASE2* driver = g_pOutputDriver;
  if (!driver) return;
  if (MustStrokeText(text, style, *driver)) {
    strokeText(position, direction, upVector, text, style);
    return;
  }
  EntityRuleState& rules = g_EntityRuleState;
  if (rules.roomLabelCapture && !rules.pendingRoomLabel.empty()) {
    driver->AddRoomLabel(rules.pendingRoomLabel, position.x, position.y);
    return;
  }
  g_ViewportExtents.AddPoint(position);
  driver->DrawText(MakeTextRecord(position, direction, upVector, text, style));
}

void OdGiConveyorGeometryDumper::strokeText(const OdGePoint3d& position, const OdGeVector3d& direction,
                                            const OdGeVector3d& upVector, const OdString& text,
                                            const OdGiTextStyle& style) {
  if (!simplifies()) return;
  OdGiGeometrySimplifier::textProc(position, direction, upVector, text.c_str(), text.getLength(), false, &style);
}

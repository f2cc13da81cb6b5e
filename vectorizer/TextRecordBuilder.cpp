// The record of a text drawn as text: position, height, rotation, width factor and output font.
#include <algorithm>
#include <cmath>

#include "drivers/TRANS_BASE2.h"
#include "kit/gi/OdGiTextStyle.h"
#include "projects/common/CommonRoutines.h"
#include "vectorizer/EntityRuleState.h"
#include "vectorizer/VectorizerText.h"

namespace {

constexpr double kDegreesPerRadian = 180.0 / kPi;
// Texts whose direction and up vectors meet at less than this are slanted: italic by default.
constexpr double kSlantedBelowDegrees = 85.0;

// The baseline's angle in degrees as the drawing shows it: where the output's y runs down, the
// angle measured in output coordinates is turned back. Within a degree of level counts as level.
double RotationOf(const OdGeVector3d& direction) {
  double angle = std::atan2(direction.y, direction.x) * kDegreesPerRadian;
  if (angle < 0.0) angle += 360.0;
  if (std::fabs(angle - 360.0) < 1.0 || std::fabs(angle) < 1.0) return 0.0;
  return g_EntityRuleState.outputYDown ? 360.0 - angle : angle;
}

double DrawnHeight(const OdGeVector3d& direction, const OdGeVector3d& upVector) {
  double up = upVector.length(), along = direction.length();
  return up < 0.1 * along ? 0.67 * along : up;
}

// A text whose up vector lies clockwise of its direction reads mirrored (backward, or upside down
// which is backward turned half round). The output cannot flip a text but can scale it by a
// negative width: such a text keeps the angle its up vector gives and runs backward.
bool IsMirrored(const OdGeVector3d& direction, const OdGeVector3d& upVector) {
  double turn = direction.x * upVector.y - direction.y * upVector.x;
  return (turn < 0.0) != g_EntityRuleState.outputYDown;
}

// The direction a text would have unmirrored: its up vector turned a quarter clockwise.
OdGeVector3d UnmirroredDirection(const OdGeVector3d& upVector) {
  return g_EntityRuleState.outputYDown ? OdGeVector3d(-upVector.y, upVector.x, 0.0)
                                       : OdGeVector3d(upVector.y, -upVector.x, 0.0);
}

bool IsSlanted(const OdGeVector3d& direction, const OdGeVector3d& upVector) {
  double lengths = direction.length() * upVector.length();
  if (!(lengths > 0.0)) return false;
  double cosine = std::clamp(direction.dotProduct(upVector) / lengths, -1.0, 1.0);
  return std::acos(cosine) * kDegreesPerRadian < kSlantedBelowDegrees;
}

std::string OutputFontName(const OdGiTextStyle& style, bool slanted) {
  std::string name;
  OdStringToUtf8(name, style.typeface());
  if (name.empty()) name = slanted ? g_DefaultItalicFontName : g_DefaultFontName;
  std::string lower = LowerUtf8(OdString(name));
  if (lower.rfind("code 128", 0) == 0) return "code 128";
  if (lower.rfind("char_fast_font", 0) == 0) return "times";
  return name;
}

// Fonts that run larger or smaller than the output font standing in for them.
double SizeFactor(const OdGiTextStyle& style) {
  std::string typeface = LowerUtf8(style.typeface());
  std::string file = LowerUtf8(style.fileName());
  std::string base = FontBaseName(style.fileName());
  double factor = 1.0;
  if (!style.isTtfFont()) factor *= 1.2;
  else if (file.find(".ttf", 1) != std::string::npos) factor *= 0.85;
  if (typeface == "simplex" || base == "simplex" || base == "simplex_") factor *= 0.85;
  else if (base == "arialuni") factor *= 0.94;
  return factor;
}

bool IsRomans(const OdGiTextStyle& style) {
  return LowerUtf8(style.typeface()) == "romans" || FontBaseName(style.fileName()) == "romans";
}

}  // namespace

TextRecord MakeTextRecord(const OdGePoint3d& position, const OdGeVector3d& direction, const OdGeVector3d& upVector,
                          const OdString& text, const OdGiTextStyle& style) {
  TextRecord record;
  OdString cleaned = text;
  bool underline = false;
  CleanTextCodes(cleaned, underline);
  record.text = cleaned;
  record.position = position.to2d();
  bool mirrored = IsMirrored(direction, upVector) && !upVector.isZeroLength();
  record.rotation = RotationOf(mirrored ? UnmirroredDirection(upVector) : direction);
  double height = DrawnHeight(direction, upVector);
  double widthFactor = height > 0.0 ? direction.length() / height : 1.0;
  if (mirrored) widthFactor = -widthFactor;
  record.widthFactor = widthFactor;
  record.oblique = style.obliquingAngle();
  record.fontName = OutputFontName(style, IsSlanted(direction, upVector));
  OdStringToUtf8(record.fontFile, style.fileName());
  height *= SizeFactor(style);
  if (IsRomans(style)) height *= 0.85;
  record.height = height;
  if (style.isTtfFont()) {
    record.bold = style.isBold();
    record.italic = style.isItalic();
  }
  record.decoration = underline || style.isUnderlined() ? 1
                      : style.isStruckThrough()         ? 2
                      : style.isOverlined()             ? 3
                                                        : 0;
  return record;
}

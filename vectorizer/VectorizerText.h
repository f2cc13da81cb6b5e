// Texts in vectorization: the control-code cleaner, the rules that decide whether a text is
// stroked or drawn as text, and the text record handed to the driver.
#pragma once

#include <string>

#include "kit/base/Geometry.h"
#include "kit/base/OdString.h"

class OdGiTextStyle;
class TRANS_BASE2;
struct TextRecord;

// Removes or replaces the drawing's control codes (%%c, %%d, %%p, %%u, %%nnn, "\(" ...), in place.
// Sets underlineOut when the text held an underline code.
OdString& CleanTextCodes(OdString& text, bool& underlineOut);

// The first stroke rule that holds, in the rules' order; false: draw the text as text.
bool MustStrokeText(const OdString& text, const OdGiTextStyle& style, TRANS_BASE2& driver);
// Texts in es_isocp.shx with one of its special characters are stroked at width factor 0.8.
bool IsSpecialIsocpText(const OdString& text, const OdGiTextStyle& style);

// The native text record of a text at `position` with the conveyor's direction and up vectors.
TextRecord MakeTextRecord(const OdGePoint3d& position, const OdGeVector3d& direction, const OdGeVector3d& upVector,
                          const OdString& text, const OdGiTextStyle& style);

// Lower-case file name without directory and without extension.
std::string FontBaseName(const OdString& fileName);
std::string LowerUtf8(const OdString& text);

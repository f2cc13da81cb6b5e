// The inline format codes of multi-line text read into pieces: \P paragraphs, {} groups, \H height
// (absolute or "x" relative), \W width, \Q obliquing, \T tracking, \A vertical alignment, \f \F
// fonts, \C \c colours, \L \O \K lines, \S stacks, \p paragraph alignment, indents and tabs, \~
// spaces, ^I ^J caret codes and escaped \\ \{ \}. Unbalanced braces, unknown codes and absurd
// values are read as well as they can be, in one pass over the text.
#pragma once

#include <string>
#include <vector>

#include "kit/base/Color.h"

namespace gi {

enum class MTextAlign { kDefault, kLeft, kCenter, kRight, kJustified, kDistributed };

struct MTextFormat {
  double height = 1.0;
  double widthFactor = 1.0;
  double oblique = 0.0;  // radians
  double tracking = 1.0;
  int verticalAlign = 0;  // \A: 0 bottom, 1 middle, 2 top of the line
  std::string font;       // font file or family; empty: the style's
  bool shxFont = false;   // \F names an SHX file (its extension may be left out)
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool overline = false;
  bool strike = false;
  bool hasColor = false;
  OdCmEntityColor color;
};

// Paragraph properties, in drawing units: the first line starts at leftIndent + firstIndent.
struct MTextParagraph {
  MTextAlign align = MTextAlign::kDefault;
  double firstIndent = 0.0;
  double leftIndent = 0.0;
  double rightIndent = 0.0;
  std::vector<double> tabs;  // stops from the left edge, ascending
};

// A stacked fraction: "/" a bar between, "#" a diagonal slash, "^" no line (tolerances).
struct MTextStack {
  enum Kind { kBar, kDiagonal, kTolerance };
  Kind kind = kBar;
  std::u32string top;
  std::u32string bottom;
};

struct MTextPiece {
  enum Kind { kText, kStack, kTab, kParagraphBreak, kColumnBreak };
  Kind kind = kText;
  std::u32string text;
  MTextStack stack;
  MTextFormat format;
  int paragraph = 0;  // index into the parsed paragraph properties
};

struct MTextParsed {
  std::vector<MTextPiece> pieces;
  std::vector<MTextParagraph> paragraphs;  // one per paragraph, in order
};

MTextParsed parseMTextCodes(const std::u32string& contents, double height, double widthFactor);

// A \p argument ("xi-3,l4t4,qc") applied to paragraph properties; "*" resets a property.
void applyParagraphCode(const std::u32string& argument, MTextParagraph& paragraph);

}  // namespace gi

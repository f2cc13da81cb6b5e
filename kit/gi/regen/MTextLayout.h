// Multi-line text laid out as runs: the inline format codes (\P paragraphs, {} groups, \H height,
// \W width, \Q obliquing, \T tracking, \f \F fonts, \C \c colours, \L \O \K lines, \S stacks,
// \~ spaces, ^I ^J caret codes, escaped \\ \{ \}) are read, lines are broken at paragraphs and,
// with a reference width, between words. Positions are in the text's own frame: x along the
// text, y up, the first line's baseline at y = -height of that line, x from the line's left end.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "kit/base/Color.h"

namespace gi {

struct MTextFormat {
  double height = 1.0;
  double widthFactor = 1.0;
  double oblique = 0.0;  // radians
  double tracking = 1.0;
  std::string font;      // font file or family; empty: the style's
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool overline = false;
  bool strike = false;
  bool hasColor = false;
  OdCmEntityColor color;
};

struct MTextRun {
  std::u32string text;  // characters as drawn; %% codes and \U+ escapes kept for the run's consumer
  MTextFormat format;
  double x = 0.0;       // from the line's left end
  double width = 0.0;
};

struct MTextLine {
  std::vector<MTextRun> runs;
  double width = 0.0;
  double height = 0.0;     // tallest run
  double baseline = 0.0;   // y of the baseline, negative downwards
};

struct MTextLayoutResult {
  std::vector<MTextLine> lines;
  double width = 0.0;   // widest line
  double height = 0.0;  // from the top to the last line's descender
};

struct MTextLayoutInput {
  std::u32string contents;
  double height = 1.0;
  double widthFactor = 1.0;
  double referenceWidth = 0.0;  // 0: no wrapping
  double lineSpacingFactor = 1.0;
  bool exactSpacing = false;
};

// The advance of text in a format, in drawing units.
using MTextMeasure = std::function<double(const std::u32string& text, const MTextFormat& format)>;

MTextLayoutResult layoutMText(const MTextLayoutInput& input, const MTextMeasure& measure);

}  // namespace gi

// Multi-line text laid out as runs: the inline format codes (read by MTextCodes) are applied, lines
// are broken at paragraphs and, with a reference width, between words; tabs jump to the
// paragraph's stops, stacks become fractions, each line is placed by its paragraph's alignment
// and indents, and columns take the lines that do not fit. Positions are in the text's own frame:
// x along the text from the block's left edge, y up, a column's first baseline at y = -height of
// its line.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "kit/gi/regen/MTextCodes.h"

namespace gi {

// A stacked run's parts relative to the run's origin on the baseline, each drawn at `height`.
struct MTextStackGeometry {
  MTextStack::Kind kind = MTextStack::kBar;
  double height = 0.0;
  double topX = 0.0, topY = 0.0;
  double bottomX = 0.0, bottomY = 0.0;
  bool hasLine = false;  // the bar of "/" or the slash of "#"
  double lineX0 = 0.0, lineY0 = 0.0, lineX1 = 0.0, lineY1 = 0.0;
};

// A stack's parts and where they go, kept apart from the run: few runs are stacks.
struct MTextStacked {
  MTextStack stack;
  MTextStackGeometry shape;
};

struct MTextRun {
  std::u32string text;  // characters as drawn; %% codes and \U+ escapes kept for the run's consumer
  MTextFormat format;
  double x = 0.0;       // from the block's left edge
  double y = 0.0;       // above the line's baseline (vertical alignment of smaller runs)
  double width = 0.0;
  std::shared_ptr<const MTextStacked> stacked;  // null: a run of characters
};

struct MTextLine {
  std::vector<MTextRun> runs;
  double width = 0.0;      // from the first run's left end to the last run's right end
  double height = 0.0;     // tallest run
  double baseline = 0.0;   // y of the baseline, negative downwards, from its column's top
  int column = 0;
  bool columnBreakBefore = false;  // \N: the line starts the next column
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
  MTextAlign defaultAlign = MTextAlign::kLeft;  // from the attachment point
  // Columns: the reference width is each column's; a line that would reach below a column's
  // height starts the next column. Heights of 0 do not limit.
  int columnCount = 0;  // 0: one column without a limit on the number
  double columnGutter = 0.0;
  double columnHeight = 0.0;          // of every column without its own
  std::vector<double> columnHeights;  // each column's own
  bool columns = false;
};

// The advance of text in a format, in drawing units.
using MTextMeasure = std::function<double(const std::u32string& text, const MTextFormat& format)>;

MTextLayoutResult layoutMText(const MTextLayoutInput& input, const MTextMeasure& measure);

// Where a stack's parts go for a stack whose parts measure `topWidth` and `bottomWidth` at the
// stack's height; `lineHeight` is the height of the text around it.
MTextStackGeometry stackGeometry(MTextStack::Kind kind, double lineHeight, double topWidth, double bottomWidth);

}  // namespace gi

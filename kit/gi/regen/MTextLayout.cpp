#include "kit/gi/regen/MTextLayout.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace gi {

namespace {

constexpr double kLineSpacing = 5.0 / 3.0;  // baseline to baseline, in text heights
constexpr double kDescent = 1.0 / 3.0;
constexpr size_t kMaxLines = 200000;
// Justified words become runs of their own up to this many in all; later ones join their line's run.
constexpr size_t kMaxWordRuns = 200000;
constexpr double kStackScale = 0.7;       // a stack's parts, in heights of the text around
constexpr double kDefaultTabHeights = 4.0;  // default tab stops, in heights of the text

bool sameFormat(const MTextFormat& a, const MTextFormat& b) {
  return a.height == b.height && a.widthFactor == b.widthFactor && a.oblique == b.oblique &&
         a.tracking == b.tracking && a.verticalAlign == b.verticalAlign && a.font == b.font &&
         a.shxFont == b.shxFont && a.bold == b.bold && a.italic == b.italic && a.underline == b.underline &&
         a.overline == b.overline && a.strike == b.strike && a.hasColor == b.hasColor &&
         (!a.hasColor || a.color == b.color);
}

size_t trailingSpaces(const std::u32string& text) {
  size_t end = text.find_last_not_of(U' ');
  return end == std::u32string::npos ? text.size() : text.size() - end - 1;
}

// One line under construction, with where it starts and how its paragraph places it.
struct OpenLine {
  MTextLine line;
  int paragraph = 0;
  double start = 0.0;   // the indent the line starts at
  double cursor = 0.0;  // where the next run goes
  bool endsParagraph = false;
  bool splitRuns = false;  // a tab or stack: the next text starts a new run
  bool used = false;       // holds a run or a tab
};

class LineBuilder {
public:
  LineBuilder(const MTextLayoutInput& input, const std::vector<MTextParagraph>& paragraphs,
              const MTextMeasure& measure)
      : input_(input), paragraphs_(paragraphs), measure_(measure) {
    openLine(0, true);
  }

  void add(const MTextPiece& piece) {
    if (full_) return;
    current().paragraph = piece.paragraph;
    // Paragraph codes at the start of a paragraph already apply to its first line.
    if (!current().used) current().start = current().cursor = indentFor(piece.paragraph, firstLine_);
    switch (piece.kind) {
      case MTextPiece::kText: addText(piece.text, piece.format); break;
      case MTextPiece::kStack: addStack(piece.stack, piece.format); break;
      case MTextPiece::kTab: addTab(piece.format); break;
      case MTextPiece::kParagraphBreak:
      case MTextPiece::kColumnBreak:
        noteHeight(piece.format.height);
        current().endsParagraph = true;
        breakLine(piece.paragraph + 1, true);
        if (piece.kind == MTextPiece::kColumnBreak) current().line.columnBreakBefore = true;
        break;
    }
  }

  MTextLayoutResult finish() {
    current().endsParagraph = true;
    MTextLayoutResult result;
    for (OpenLine& open : lines_) {
      trimTrailingSpaces(open);
      result.width = std::max(result.width, open.start + open.line.width + rightIndent(open.paragraph));
    }
    double blockWidth = input_.referenceWidth > 0.0 ? input_.referenceWidth : result.width;
    double y = 0.0;
    for (size_t i = 0; i < lines_.size(); ++i) {
      OpenLine& open = lines_[i];
      MTextLine& line = open.line;
      if (!(line.height > 0.0)) line.height = input_.height;
      align(open, blockWidth);
      for (MTextRun& run : line.runs) {
        if (run.format.verticalAlign == 1) run.y = (line.height - run.format.height) / 2;
        if (run.format.verticalAlign == 2) run.y = line.height - run.format.height;
      }
      double spacingHeight = input_.exactSpacing ? input_.height : line.height;
      y = i == 0 ? -line.height : y - spacingHeight * kLineSpacing * input_.lineSpacingFactor;
      line.baseline = y;
    }
    if (!lines_.empty()) result.height = -lines_.back().line.baseline + lines_.back().line.height * kDescent;
    result.lines.reserve(lines_.size());
    for (OpenLine& open : lines_) result.lines.push_back(std::move(open.line));
    if (input_.columns) splitIntoColumns(result);
    return result;
  }

private:
  OpenLine& current() { return lines_.back(); }

  const MTextParagraph& paragraph(int index) const {
    static const MTextParagraph none;
    return index >= 0 && size_t(index) < paragraphs_.size() ? paragraphs_[size_t(index)] : none;
  }
  double indentFor(int index, bool first) const {
    const MTextParagraph& p = paragraph(index);
    return std::max(0.0, p.leftIndent + (first ? p.firstIndent : 0.0));
  }
  double rightIndent(int index) const { return std::max(0.0, paragraph(index).rightIndent); }
  bool wraps() const { return input_.referenceWidth > 0.0; }
  double rightEdge(int index) const { return input_.referenceWidth - rightIndent(index); }
  MTextAlign alignment(int index) const {
    MTextAlign a = paragraph(index).align;
    return a == MTextAlign::kDefault ? input_.defaultAlign : a;
  }

  void openLine(int paragraphIndex, bool firstOfParagraph) {
    firstLine_ = firstOfParagraph;
    OpenLine line;
    line.paragraph = paragraphIndex;
    line.start = line.cursor = indentFor(paragraphIndex, firstOfParagraph);
    lines_.push_back(std::move(line));
  }

  void breakLine(int nextParagraph, bool newParagraph) {
    if (lines_.size() >= kMaxLines) {
      full_ = true;
      return;
    }
    openLine(nextParagraph, newParagraph);
  }

  void noteHeight(double height) { current().line.height = std::max(current().line.height, height); }

  void addText(const std::u32string& text, const MTextFormat& format) {
    if (!wraps()) {
      place(text, measure_(text, format), format);
      return;
    }
    bool justified = alignment(current().paragraph) == MTextAlign::kJustified;
    for (size_t i = 0; i < text.size() && !full_;) {
      size_t end = text.find(U' ', i);
      if (end == std::u32string::npos) end = text.size();
      size_t spacesEnd = text.find_first_not_of(U' ', end);
      if (spacesEnd == std::u32string::npos) spacesEnd = text.size();
      std::u32string word = text.substr(i, end - i);
      // A word's extent decides the break; its advance with the blanks after it moves on.
      double extent = word.empty() ? 0.0 : measure_(word, format);
      word.append(spacesEnd - end, U' ');
      double advance = spacesEnd > end ? measure_(word, format) : extent;
      bool overflows = current().cursor + extent > rightEdge(current().paragraph) * 1.000001;
      if (!current().line.runs.empty() && overflows && extent > 0.0) {
        breakLine(current().paragraph, false);
        if (full_) return;
      }
      if (justified && wordRuns_ < kMaxWordRuns) {
        current().splitRuns = true;
        ++wordRuns_;
      }
      // A line does not begin with the blanks that ended the line before.
      if (!(current().line.runs.empty() && word.front() == U' ')) place(word, advance, format);
      i = spacesEnd;
    }
  }

  void addStack(const MTextStack& stack, const MTextFormat& format) {
    MTextFormat part = format;
    part.height = format.height * kStackScale;
    double topWidth = stack.top.empty() ? 0.0 : measure_(stack.top, part);
    double bottomWidth = stack.bottom.empty() ? 0.0 : measure_(stack.bottom, part);
    MTextStackGeometry shape = stackGeometry(stack.kind, format.height, topWidth, bottomWidth);
    double width = std::max({shape.topX + topWidth, shape.bottomX + bottomWidth, shape.lineX1});
    if (wraps() && !current().line.runs.empty() && current().cursor + width > rightEdge(current().paragraph)) {
      breakLine(current().paragraph, false);
      if (full_) return;
    }
    MTextRun run;
    run.format = format;
    run.x = current().cursor;
    run.width = width;
    run.stacked = std::make_shared<const MTextStacked>(MTextStacked{stack, shape});
    push(std::move(run));
    current().splitRuns = true;
  }

  void addTab(const MTextFormat& format) {
    noteHeight(format.height);
    const MTextParagraph& p = paragraph(current().paragraph);
    double cursor = current().cursor;
    auto stop = std::upper_bound(p.tabs.begin(), p.tabs.end(), cursor + 1e-9);
    double step = kDefaultTabHeights * input_.height;
    double next = stop != p.tabs.end() ? *stop : (std::floor(cursor / step + 1e-9) + 1.0) * step;
    current().cursor = std::isfinite(next) ? next : cursor;
    current().splitRuns = true;
    current().used = true;
  }

  void place(const std::u32string& text, double width, const MTextFormat& format) {
    if (text.empty()) return;
    OpenLine& open = current();
    std::vector<MTextRun>& runs = open.line.runs;
    if (!runs.empty() && !open.splitRuns && !runs.back().stacked && sameFormat(runs.back().format, format)) {
      runs.back().text += text;
      runs.back().width += width;
      open.cursor += width;
      open.line.width = open.cursor - open.start;
      return;
    }
    MTextRun run;
    run.text = text;
    run.format = format;
    run.x = open.cursor;
    run.width = width;
    push(std::move(run));
  }

  void push(MTextRun run) {
    OpenLine& open = current();
    noteHeight(run.format.height);
    open.cursor = run.x + run.width;
    open.line.width = open.cursor - open.start;
    open.line.runs.push_back(std::move(run));
    open.splitRuns = false;
    open.used = true;
  }

  // Trailing blanks do not count towards a line's width.
  void trimTrailingSpaces(OpenLine& open) {
    if (open.line.runs.empty()) return;
    MTextRun& last = open.line.runs.back();
    size_t blanks = last.stacked ? 0 : trailingSpaces(last.text);
    if (blanks == 0) return;
    last.text.erase(last.text.size() - blanks);
    last.width = last.text.empty() ? 0.0 : measure_(last.text, last.format);
    open.line.width = last.x + last.width - open.start;
  }

  void align(OpenLine& open, double blockWidth) {
    MTextLine& line = open.line;
    double room = blockWidth - rightIndent(open.paragraph) - open.start - line.width;
    MTextAlign a = alignment(open.paragraph);
    double shift = a == MTextAlign::kCenter ? room / 2 : a == MTextAlign::kRight ? room : 0.0;
    bool spreads = (a == MTextAlign::kJustified && !open.endsParagraph) || a == MTextAlign::kDistributed;
    if (spreads && wraps() && line.runs.size() > 1 && room > 0.0) {
      double gap = room / double(line.runs.size() - 1);
      for (size_t k = 0; k < line.runs.size(); ++k) line.runs[k].x += gap * double(k);
      line.width += room;
      return;
    }
    if (!(std::isfinite(shift)) || shift == 0.0) return;
    for (MTextRun& run : line.runs) run.x += shift;
  }

  double columnLimit(int column) const {
    if (size_t(column) < input_.columnHeights.size()) return input_.columnHeights[size_t(column)];
    return input_.columnHeights.empty() ? input_.columnHeight : 0.0;
  }

  // Lines moved into columns side by side, each column's first line at the column's top.
  void splitIntoColumns(MTextLayoutResult& result) const {
    double columnWidth = std::max(input_.referenceWidth, 0.0);
    double step = columnWidth + std::max(input_.columnGutter, 0.0);
    int column = 0;
    double shift = 0.0;  // added to baselines in the current column
    result.height = 0.0;
    for (size_t i = 0; i < result.lines.size(); ++i) {
      MTextLine& line = result.lines[i];
      double bottom = -(line.baseline + shift) + line.height * kDescent;
      double limit = columnLimit(column);
      bool more = input_.columnCount <= 0 || column + 1 < input_.columnCount;
      bool overflows = limit > 0.0 && bottom > limit * 1.000001;
      if (i > 0 && more && (line.columnBreakBefore || overflows)) {
        ++column;
        shift = -line.height - line.baseline;
      }
      line.baseline += shift;
      line.column = column;
      for (MTextRun& run : line.runs) run.x += step * column;
      result.height = std::max(result.height, -line.baseline + line.height * kDescent);
    }
    result.width = std::max(result.width, step * column + columnWidth);
  }

  const MTextLayoutInput& input_;
  const std::vector<MTextParagraph>& paragraphs_;
  const MTextMeasure& measure_;
  std::vector<OpenLine> lines_;
  bool firstLine_ = true;
  bool full_ = false;
  size_t wordRuns_ = 0;
};

}  // namespace

MTextStackGeometry stackGeometry(MTextStack::Kind kind, double lineHeight, double topWidth, double bottomWidth) {
  MTextStackGeometry g;
  g.kind = kind;
  double h = lineHeight;
  g.height = h * kStackScale;
  double gap = 0.1 * h;
  if (kind == MTextStack::kDiagonal) {
    // Numerator raised at the left, denominator at the right on the baseline, a slash between.
    g.topY = 0.45 * h;
    g.bottomY = -0.1 * h;
    g.hasLine = true;
    g.lineX0 = topWidth + gap / 2;
    g.lineY0 = -0.15 * h;
    g.lineX1 = g.lineX0 + 0.45 * h;
    g.lineY1 = 1.15 * h;
    g.bottomX = g.lineX1 + gap / 2;
    return g;
  }
  // One part above the other about a bar at a little under half the text's height.
  double bar = 0.4 * h;
  g.topY = bar + gap;
  g.bottomY = bar - gap - g.height;
  double width = std::max(topWidth, bottomWidth);
  if (kind == MTextStack::kBar) {
    g.topX = (width - topWidth) / 2 + gap / 2;
    g.bottomX = (width - bottomWidth) / 2 + gap / 2;
    g.hasLine = true;
    g.lineX0 = 0.0;
    g.lineX1 = width + gap;
    g.lineY0 = g.lineY1 = bar;
  }
  return g;
}

MTextLayoutResult layoutMText(const MTextLayoutInput& input, const MTextMeasure& measure) {
  MTextParsed parsed = parseMTextCodes(input.contents, input.height, input.widthFactor);
  LineBuilder builder(input, parsed.paragraphs, measure);
  for (const MTextPiece& piece : parsed.pieces) builder.add(piece);
  return builder.finish();
}

}  // namespace gi

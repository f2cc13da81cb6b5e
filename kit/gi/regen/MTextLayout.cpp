#include "kit/gi/regen/MTextLayout.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

namespace gi {

namespace {

constexpr double kLineSpacing = 5.0 / 3.0;  // baseline to baseline, in text heights
constexpr double kDescent = 1.0 / 3.0;
constexpr size_t kMaxRuns = 200000;

// One piece of parsed text: characters in a format, or a line break.
struct Piece {
  std::u32string text;
  MTextFormat format;
  bool lineBreak = false;
};

double parseValue(const std::u32string& s, double fallback) {
  std::string narrow;
  for (char32_t c : s) {
    if (c < 128) narrow += char(c);
  }
  double value = fallback;
  auto result = std::from_chars(narrow.data(), narrow.data() + narrow.size(), value);
  return (result.ec == std::errc() && std::isfinite(value)) ? value : fallback;
}

class MTextParser {
public:
  MTextParser(const MTextLayoutInput& input) : s_(input.contents) {
    base_.height = input.height;
    base_.widthFactor = input.widthFactor;
    stack_.push_back(base_);
  }

  std::vector<Piece> parse() {
    while (i_ < s_.size() && pieces_.size() < kMaxRuns) step();
    flush();
    return std::move(pieces_);
  }

private:
  MTextFormat& format() { return stack_.back(); }

  void flush() {
    if (!text_.empty()) pieces_.push_back({std::move(text_), current_, false});
    text_.clear();
  }
  void append(const std::u32string& text) {
    if (text_.empty()) current_ = format();
    text_ += text;
  }
  void formatChanged() { flush(); }
  void lineBreak() {
    flush();
    pieces_.push_back({{}, format(), true});
  }
  // The argument of a code up to its ';' (or the end).
  std::u32string argument() {
    size_t end = s_.find(U';', i_);
    if (end == std::u32string::npos) end = s_.size();
    std::u32string arg = s_.substr(i_, end - i_);
    i_ = std::min(end + 1, s_.size());
    return arg;
  }

  void step() {
    char32_t c = s_[i_];
    if (c == U'{') {
      ++i_;
      formatChanged();
      if (stack_.size() < 64) stack_.push_back(format());
      return;
    }
    if (c == U'}') {
      ++i_;
      formatChanged();
      if (stack_.size() > 1) stack_.pop_back();
      return;
    }
    if (c == U'^' && i_ + 1 < s_.size()) {
      char32_t n = s_[i_ + 1];
      i_ += 2;
      if (n == U'J') lineBreak();
      else if (n == U'I') append(U"    ");
      else if (n == U' ') append(U"^");
      else if (n != U'M') append(std::u32string(1, U'^') + n);
      return;
    }
    if (c == U'\t') {
      ++i_;
      append(U"    ");
      return;
    }
    if (c == U'\n') {
      ++i_;
      lineBreak();
      return;
    }
    if (c != U'\\' || i_ + 1 >= s_.size()) {
      ++i_;
      append(std::u32string(1, c));
      return;
    }
    char32_t code = s_[i_ + 1];
    i_ += 2;
    switch (code) {
      case U'P': case U'N': case U'X': lineBreak(); break;
      case U'~': append(U" "); break;
      case U'\\': case U'{': case U'}': append(std::u32string(1, code)); break;
      case U'L': case U'l': formatChanged(); format().underline = code == U'L'; break;
      case U'O': case U'o': formatChanged(); format().overline = code == U'O'; break;
      case U'K': case U'k': formatChanged(); format().strike = code == U'K'; break;
      case U'H': {
        std::u32string arg = argument();
        formatChanged();
        bool relative = !arg.empty() && (arg.back() == U'x' || arg.back() == U'X');
        if (relative) arg.pop_back();
        double value = parseValue(arg, 0.0);
        if (value > 0.0) format().height = relative ? format().height * value : value;
        break;
      }
      case U'W': {
        double value = parseValue(argument(), 0.0);
        formatChanged();
        if (value > 0.0) format().widthFactor = value;
        break;
      }
      case U'Q': {
        double value = parseValue(argument(), 0.0);
        formatChanged();
        format().oblique = std::clamp(value, -85.0, 85.0) * 3.14159265358979323846 / 180.0;
        break;
      }
      case U'T': {
        double value = parseValue(argument(), 1.0);
        formatChanged();
        format().tracking = std::clamp(value, 0.75, 4.0);
        break;
      }
      case U'C': {
        double value = parseValue(argument(), 256.0);
        formatChanged();
        int index = int(value);
        format().hasColor = index >= 1 && index <= 255;
        if (format().hasColor) format().color = OdCmEntityColor::fromACI(index);
        break;
      }
      case U'c': {
        double value = parseValue(argument(), -1.0);
        formatChanged();
        format().hasColor = value >= 0.0 && value <= double(0xFFFFFF);
        if (format().hasColor) format().color = OdCmEntityColor::fromPackedRGB(uint32_t(value));
        break;
      }
      case U'F': case U'f': {
        std::u32string arg = argument();
        formatChanged();
        readFont(arg);
        break;
      }
      case U'S': {
        // A stack (fraction or tolerance) drawn as one run: "top/bottom".
        std::u32string arg = argument();
        for (char32_t& ch : arg) {
          if (ch == U'^' || ch == U'#') ch = U'/';
        }
        std::u32string clean;
        for (size_t k = 0; k < arg.size(); ++k) {
          if (arg[k] == U'\\' && k + 1 < arg.size()) ++k;
          clean += arg[k];
        }
        append(clean);
        break;
      }
      case U'A': case U'p': case U'a': argument(); break;
      case U'U': case U'M':
        // Unicode and multibyte escapes stay in the text for the run's consumer to decode.
        append(std::u32string(1, U'\\') + code);
        break;
      default: break;  // an unknown code is dropped with its letter
    }
  }

  void readFont(const std::u32string& arg) {
    size_t bar = arg.find(U'|');
    std::u32string name = arg.substr(0, bar);
    format().font.clear();
    for (char32_t ch : name) format().font += ch < 128 ? char(ch) : '_';
    format().bold = false;
    format().italic = false;
    while (bar != std::u32string::npos && bar + 2 < arg.size() + 1) {
      size_t next = arg.find(U'|', bar + 1);
      std::u32string field = arg.substr(bar + 1, next == std::u32string::npos ? std::u32string::npos : next - bar - 1);
      if (field.size() >= 2 && field[0] == U'b') format().bold = field[1] == U'1';
      if (field.size() >= 2 && field[0] == U'i') format().italic = field[1] == U'1';
      bar = next;
    }
  }

  const std::u32string& s_;
  size_t i_ = 0;
  MTextFormat base_;
  std::vector<MTextFormat> stack_;
  MTextFormat current_;
  std::u32string text_;
  std::vector<Piece> pieces_;
};

// Splits text into words, each with the spaces after it.
std::vector<std::u32string> words(const std::u32string& text) {
  std::vector<std::u32string> result;
  size_t i = 0;
  while (i < text.size()) {
    size_t end = i;
    while (end < text.size() && text[end] != U' ') ++end;
    while (end < text.size() && text[end] == U' ') ++end;
    result.push_back(text.substr(i, end - i));
    i = end;
  }
  return result;
}

std::u32string withoutTrailingSpaces(const std::u32string& text) {
  size_t end = text.find_last_not_of(U' ');
  return end == std::u32string::npos ? std::u32string() : text.substr(0, end + 1);
}

bool sameFormat(const MTextFormat& a, const MTextFormat& b) {
  return a.height == b.height && a.widthFactor == b.widthFactor && a.oblique == b.oblique &&
         a.tracking == b.tracking && a.font == b.font && a.bold == b.bold && a.italic == b.italic &&
         a.underline == b.underline && a.overline == b.overline && a.strike == b.strike &&
         a.hasColor == b.hasColor && (!a.hasColor || a.color == b.color);
}

class LineBuilder {
public:
  LineBuilder(const MTextLayoutInput& input, const MTextMeasure& measure) : input_(input), measure_(measure) {
    lines_.emplace_back();
  }

  void addText(const std::u32string& text, const MTextFormat& format) {
    if (!(input_.referenceWidth > 0.0)) {
      place(text, format);
      return;
    }
    for (const std::u32string& word : words(text)) {
      MTextLine& line = lines_.back();
      double wordWidth = measure_(withoutTrailingSpaces(word), format);
      if (!line.runs.empty() && line.width + wordWidth > input_.referenceWidth * 1.000001) {
        breakLine(format);
        std::u32string trimmed = word.substr(std::min(word.find_first_not_of(U' '), word.size()));
        place(trimmed, format);
      } else {
        place(word, format);
      }
    }
  }

  void breakLine(const MTextFormat& format) {
    if (lines_.back().runs.empty()) lines_.back().height = std::max(lines_.back().height, format.height);
    if (lines_.size() < kMaxRuns) lines_.emplace_back();
  }

  MTextLayoutResult finish() {
    MTextLayoutResult result;
    double y = 0.0;
    for (size_t i = 0; i < lines_.size(); ++i) {
      MTextLine& line = lines_[i];
      if (!(line.height > 0.0)) line.height = input_.height;
      // Trailing spaces do not count towards a line's width.
      if (!line.runs.empty()) {
        MTextRun& last = line.runs.back();
        std::u32string trimmed = withoutTrailingSpaces(last.text);
        if (trimmed.size() != last.text.size()) {
          last.width = measure_(trimmed, last.format);
          line.width = last.x + last.width;
        }
      }
      double spacingHeight = input_.exactSpacing ? input_.height : line.height;
      y = i == 0 ? -line.height : y - spacingHeight * kLineSpacing * input_.lineSpacingFactor;
      line.baseline = y;
      result.width = std::max(result.width, line.width);
    }
    if (!lines_.empty()) result.height = -lines_.back().baseline + lines_.back().height * kDescent;
    result.lines = std::move(lines_);
    return result;
  }

private:
  void place(const std::u32string& text, const MTextFormat& format) {
    if (text.empty()) return;
    MTextLine& line = lines_.back();
    line.height = std::max(line.height, format.height);
    if (!line.runs.empty() && sameFormat(line.runs.back().format, format)) {
      MTextRun& run = line.runs.back();
      run.text += text;
      run.width = measure_(run.text, format);
    } else {
      MTextRun run;
      run.text = text;
      run.format = format;
      run.x = line.width;
      run.width = measure_(text, format);
      line.runs.push_back(std::move(run));
    }
    line.width = line.runs.back().x + line.runs.back().width;
  }

  const MTextLayoutInput& input_;
  const MTextMeasure& measure_;
  std::vector<MTextLine> lines_;
};

}  // namespace

MTextLayoutResult layoutMText(const MTextLayoutInput& input, const MTextMeasure& measure) {
  MTextParser parser(input);
  std::vector<Piece> pieces = parser.parse();
  LineBuilder builder(input, measure);
  for (const Piece& piece : pieces) {
    if (piece.lineBreak) builder.breakLine(piece.format);
    else builder.addText(piece.text, piece.format);
  }
  return builder.finish();
}

}  // namespace gi

#include "kit/gi/regen/MTextCodes.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace gi {

namespace {

constexpr size_t kMaxPieces = 200000;
constexpr size_t kMaxGroupDepth = 64;
constexpr double kPi = 3.14159265358979323846;
// Heights and width factors further than this from the text's own are typing errors.
constexpr double kMaxScale = 1000.0;

double parseValue(const std::u32string& s, double fallback) {
  std::string narrow;
  for (char32_t c : s) {
    if (c < 128) narrow += char(c);
  }
  size_t start = narrow.find_first_not_of(' ');
  if (start == std::string::npos) return fallback;
  if (narrow[start] == '+') ++start;
  double value = fallback;
  auto result = std::from_chars(narrow.data() + start, narrow.data() + narrow.size(), value);
  return (result.ec == std::errc() && std::isfinite(value)) ? value : fallback;
}

bool isNumberChar(char32_t c) { return (c >= U'0' && c <= U'9') || c == U'.' || c == U'-' || c == U'+'; }

// A stack's argument split at its first unescaped "/", "#" or "^"; escapes are dropped.
MTextStack readStack(const std::u32string& arg) {
  MTextStack stack;
  bool inBottom = false;
  for (size_t k = 0; k < arg.size(); ++k) {
    char32_t c = arg[k];
    if (c == U'\\' && k + 1 < arg.size()) {
      (inBottom ? stack.bottom : stack.top) += arg[++k];
      continue;
    }
    if (!inBottom && (c == U'/' || c == U'#' || c == U'^')) {
      stack.kind = c == U'/' ? MTextStack::kBar : c == U'#' ? MTextStack::kDiagonal : MTextStack::kTolerance;
      inBottom = true;
      continue;
    }
    (inBottom ? stack.bottom : stack.top) += c;
  }
  // "^ " is how tolerances are written: the blank only separates.
  if (stack.kind == MTextStack::kTolerance && !stack.bottom.empty() && stack.bottom.front() == U' ')
    stack.bottom.erase(0, 1);
  return stack;
}

class MTextCodeReader {
public:
  MTextCodeReader(const std::u32string& s, double height, double widthFactor) : s_(s), baseHeight_(height) {
    MTextFormat base;
    base.height = height;
    base.widthFactor = widthFactor;
    stack_.push_back(base);
    parsed_.paragraphs.emplace_back();
  }

  MTextParsed read() {
    while (i_ < s_.size() && parsed_.pieces.size() < kMaxPieces) step();
    flush();
    return std::move(parsed_);
  }

private:
  MTextFormat& format() { return stack_.back(); }
  int paragraphIndex() const { return int(parsed_.paragraphs.size() - 1); }

  void flush() {
    if (!text_.empty()) push({MTextPiece::kText, std::move(text_), {}, current_, paragraphIndex()});
    text_.clear();
  }
  void push(MTextPiece piece) { parsed_.pieces.push_back(std::move(piece)); }
  void append(std::u32string_view text) {
    if (text_.empty()) current_ = format();
    text_ += text;
  }
  void tab() {
    flush();
    push({MTextPiece::kTab, {}, {}, format(), paragraphIndex()});
  }
  void paragraphBreak() {
    flush();
    push({MTextPiece::kParagraphBreak, {}, {}, format(), paragraphIndex()});
    // Paragraph properties carry over to the next paragraph until changed.
    if (parsed_.paragraphs.size() < kMaxPieces) parsed_.paragraphs.push_back(parsed_.paragraphs.back());
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
      flush();
      if (stack_.size() < kMaxGroupDepth) stack_.push_back(format());
      return;
    }
    if (c == U'}') {
      ++i_;
      flush();
      if (stack_.size() > 1) stack_.pop_back();
      return;
    }
    if (c == U'^' && i_ + 1 < s_.size()) {
      caretCode(s_[i_ + 1]);
      i_ += 2;
      return;
    }
    if (c == U'\t' || c == U'\n') {
      ++i_;
      c == U'\t' ? tab() : paragraphBreak();
      return;
    }
    if (c != U'\\' || i_ + 1 >= s_.size()) {
      ++i_;
      append(std::u32string_view(&s_[i_ - 1], 1));
      return;
    }
    char32_t code = s_[i_ + 1];
    i_ += 2;
    formatCode(code);
  }

  void caretCode(char32_t n) {
    if (n == U'J') paragraphBreak();
    else if (n == U'I') tab();
    else if (n == U' ') append(U"^");
    else if (n != U'M') {
      append(U"^");
      append(std::u32string_view(&n, 1));
    }
  }

  void formatCode(char32_t code) {
    switch (code) {
      case U'P': case U'X': paragraphBreak(); break;
      case U'N':
        paragraphBreak();
        parsed_.pieces.back().kind = MTextPiece::kColumnBreak;
        break;
      case U'~': append(U"\u00A0"); break;  // a space that does not break the line
      case U'\\': case U'{': case U'}': append(std::u32string_view(&code, 1)); break;
      case U'L': case U'l': flush(); format().underline = code == U'L'; break;
      case U'O': case U'o': flush(); format().overline = code == U'O'; break;
      case U'K': case U'k': flush(); format().strike = code == U'K'; break;
      case U'H': readHeight(argument()); break;
      case U'W': {
        std::u32string arg = argument();
        flush();
        bool relative = !arg.empty() && (arg.back() == U'x' || arg.back() == U'X');
        double value = parseValue(arg, 0.0) * (relative ? format().widthFactor : 1.0);
        if (value > 0.0) format().widthFactor = std::clamp(value, 1.0 / kMaxScale, kMaxScale);
        break;
      }
      case U'Q': {
        double value = parseValue(argument(), 0.0);
        flush();
        format().oblique = std::clamp(value, -85.0, 85.0) * kPi / 180.0;
        break;
      }
      case U'T': {
        double value = parseValue(argument(), 1.0);
        flush();
        format().tracking = std::clamp(value, 0.75, 4.0);
        break;
      }
      case U'A': {
        double value = parseValue(argument(), 0.0);
        flush();
        format().verticalAlign = value >= 0.0 && value <= 2.0 ? int(value) : 0;
        break;
      }
      case U'C': case U'c': readColor(code, argument()); break;
      case U'F': case U'f': {
        std::u32string arg = argument();
        flush();
        readFont(arg);
        format().shxFont = code == U'F';
        break;
      }
      case U'S': {
        flush();
        push({MTextPiece::kStack, {}, readStack(argument()), format(), paragraphIndex()});
        break;
      }
      case U'p': applyParagraphCode(argument(), parsed_.paragraphs.back()); break;
      case U'a': argument(); break;
      case U'U': case U'M':
        // Unicode and multibyte escapes stay in the text for the run's consumer to decode.
        append(U"\\");
        append(std::u32string_view(&code, 1));
        break;
      default: break;  // an unknown code is dropped with its letter
    }
  }

  void readHeight(std::u32string arg) {
    flush();
    bool relative = !arg.empty() && (arg.back() == U'x' || arg.back() == U'X');
    if (relative) arg.pop_back();
    double value = parseValue(arg, 0.0);
    if (!(value > 0.0)) return;
    double height = relative ? format().height * value : value;
    format().height = std::clamp(height, baseHeight_ / kMaxScale, baseHeight_ * kMaxScale);
  }

  void readColor(char32_t code, const std::u32string& arg) {
    flush();
    if (code == U'C') {
      int index = int(std::clamp(parseValue(arg, 256.0), -1.0, 257.0));
      format().hasColor = index >= 1 && index <= 255;
      if (format().hasColor) format().color = OdCmEntityColor::fromACI(index);
      return;
    }
    double value = parseValue(arg, -1.0);
    format().hasColor = value >= 0.0 && value <= double(0xFFFFFF);
    if (!format().hasColor) return;
    // The value holds red in its low byte and blue in its high one.
    uint32_t bgr = uint32_t(value);
    format().color = OdCmEntityColor::fromPackedRGB(((bgr & 0xFF) << 16) | (bgr & 0xFF00) | ((bgr >> 16) & 0xFF));
  }

  void readFont(const std::u32string& arg) {
    size_t bar = arg.find(U'|');
    std::u32string name = arg.substr(0, bar);
    format().font.clear();
    for (char32_t ch : name) format().font += ch < 128 ? char(ch) : '_';
    format().bold = false;
    format().italic = false;
    while (bar != std::u32string::npos) {
      size_t next = arg.find(U'|', bar + 1);
      std::u32string field = arg.substr(bar + 1, next == std::u32string::npos ? std::u32string::npos : next - bar - 1);
      if (field.size() >= 2 && field[0] == U'b') format().bold = field[1] == U'1';
      if (field.size() >= 2 && field[0] == U'i') format().italic = field[1] == U'1';
      bar = next;
    }
  }

  const std::u32string& s_;
  double baseHeight_;
  size_t i_ = 0;
  std::vector<MTextFormat> stack_;
  MTextFormat current_;
  std::u32string text_;
  MTextParsed parsed_;
};

}  // namespace

void applyParagraphCode(const std::u32string& arg, MTextParagraph& paragraph) {
  size_t k = 0;
  char32_t key = 0;
  while (k < arg.size()) {
    char32_t c = arg[k];
    if (c == U',' || c == U' ') {
      ++k;
      continue;
    }
    if (c == U'x' && key == 0) {
      ++k;  // the extended form's marker
      continue;
    }
    if (!isNumberChar(c) && c != U'*') {
      key = c;
      ++k;
      if (key == U'q' && k < arg.size()) {
        char32_t a = arg[k++];
        paragraph.align = a == U'l' ? MTextAlign::kLeft : a == U'c' ? MTextAlign::kCenter
                          : a == U'r' ? MTextAlign::kRight : a == U'j' ? MTextAlign::kJustified
                          : a == U'd' ? MTextAlign::kDistributed : MTextAlign::kDefault;
        key = 0;
      }
      if (key == U't') paragraph.tabs.clear();
      continue;
    }
    if (c == U'*') {
      ++k;
      if (key == U'i') paragraph.firstIndent = 0.0;
      if (key == U'l') paragraph.leftIndent = 0.0;
      if (key == U'r') paragraph.rightIndent = 0.0;
      if (key == U't') paragraph.tabs.clear();
      continue;
    }
    size_t end = k;
    while (end < arg.size() && isNumberChar(arg[end])) ++end;
    double value = parseValue(arg.substr(k, end - k), 0.0);
    k = end;
    if (key == U'i') paragraph.firstIndent = value;
    else if (key == U'l') paragraph.leftIndent = value;
    else if (key == U'r') paragraph.rightIndent = value;
    else if (key == U't' && value > 0.0 && paragraph.tabs.size() < 64) paragraph.tabs.push_back(value);
  }
  std::sort(paragraph.tabs.begin(), paragraph.tabs.end());
}

MTextParsed parseMTextCodes(const std::u32string& contents, double height, double widthFactor) {
  return MTextCodeReader(contents, height, widthFactor).read();
}

}  // namespace gi

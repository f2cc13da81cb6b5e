#include "kit/gi/acis/AcisRecords.h"

#include <cctype>
#include <charconv>
#include <cstdlib>

bool AcisValue::flagSet() const {
  if (kind == Kind::kLogical) return truth;
  if (kind != Kind::kWord) return false;
  // The words that print a true value; their false partners are forward, forward_v, I, single, out.
  return text == "reversed" || text == "reverse_v" || text == "F" || text == "double" || text == "in" ||
         text == "T" || text == "true";
}

const AcisRecord* AcisModel::at(int64_t index) const {
  if (index < 0 || index >= static_cast<int64_t>(records.size())) return nullptr;
  return &records[static_cast<size_t>(index)];
}

const AcisRecord* AcisModel::at(const AcisValue& pointer) const {
  return pointer.isPointer() ? at(pointer.index()) : nullptr;
}

size_t AcisModel::firstValue(const AcisRecord& r) const {
  const std::vector<AcisValue>& v = r.values;
  size_t i = (!v.empty() && v[0].isPointer()) ? 1 : 0;
  if (version < 700) return i;
  // One or two identifier numbers, then a history pointer; some records (a transform) have no
  // pointer there, and then only the first number belongs to the common part.
  size_t numbers = 0;
  while (i + numbers < v.size() && numbers < 2 && v[i + numbers].isNumber()) ++numbers;
  if (numbers > 0 && i + numbers < v.size() && v[i + numbers].isPointer()) return i + numbers + 1;
  return numbers > 0 ? i + 1 : i;
}

void AcisModel::indexSubtypes() {
  subtypes.clear();
  for (size_t r = 0; r < records.size(); ++r) {
    const std::vector<AcisValue>& v = records[r].values;
    for (size_t i = 0; i < v.size(); ++i) {
      if (v[i].kind != AcisValue::Kind::kOpen) continue;
      bool reference = i + 1 < v.size() && v[i + 1].kind == AcisValue::Kind::kWord && v[i + 1].text == "ref";
      if (!reference) subtypes.push_back({r, i});
    }
  }
}

bool isAcisEndMarker(std::string_view name) {
  return name == "End-of-ACIS-data" || name == "End-of-ASM-data" || name == "Begin-of-ACIS-History-Data" ||
         name == "Begin-of-ASM-History-Data";
}

namespace {

class SatTokens {
public:
  explicit SatTokens(std::string_view text) : text_(text) {}

  bool atEnd() {
    skipBlanks();
    return at_ >= text_.size();
  }
  std::string_view next() {
    skipBlanks();
    size_t start = at_;
    while (at_ < text_.size() && !isBlank(text_[at_])) ++at_;
    return text_.substr(start, at_ - start);
  }
  // The `count` characters after the one blank that follows a string's "@n".
  std::string_view counted(size_t count) {
    if (at_ < text_.size()) ++at_;
    count = std::min(count, text_.size() - at_);
    std::string_view s = text_.substr(at_, count);
    at_ += count;
    return s;
  }
  bool startsWithNumber() {
    skipBlanks();
    return at_ < text_.size() && (std::isdigit(static_cast<unsigned char>(text_[at_])) || text_[at_] == '@');
  }
  std::string_view restOfLine() {
    size_t end = text_.find('\n', at_);
    if (end == std::string_view::npos) end = text_.size();
    std::string_view line = text_.substr(at_, end - at_);
    at_ = std::min(end + 1, text_.size());
    return line;
  }

private:
  static bool isBlank(char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; }
  void skipBlanks() {
    while (at_ < text_.size() && isBlank(text_[at_])) ++at_;
  }

  std::string_view text_;
  size_t at_ = 0;
};

template <class T>
bool parseWhole(std::string_view s, T& out) {
  if (s.empty()) return false;
  const char* first = s.data();
  if (*first == '+') ++first;
  auto [end, ec] = std::from_chars(first, s.data() + s.size(), out);
  return ec == std::errc() && end == s.data() + s.size();
}

AcisValue valueOf(std::string_view token, SatTokens& tokens) {
  AcisValue v;
  int64_t index = 0;
  if (token.size() > 1 && token[0] == '$' && parseWhole(token.substr(1), index)) {
    v.kind = AcisValue::Kind::kPointer;
    v.number = static_cast<double>(index);
  } else if (token.size() > 1 && token[0] == '@' && parseWhole(token.substr(1), index) && index >= 0) {
    v.kind = AcisValue::Kind::kString;
    v.text = std::string(tokens.counted(static_cast<size_t>(index)));
  } else if (token == "{" || token == "}") {
    v.kind = token == "{" ? AcisValue::Kind::kOpen : AcisValue::Kind::kClose;
  } else if (!parseWhole(token, v.number)) {
    v.kind = AcisValue::Kind::kWord;
    v.text = std::string(token);
  }
  return v;
}

// A record's optional "-n" sequence number before its name.
bool isSequenceNumber(std::string_view token) {
  int64_t n = 0;
  return token.size() > 1 && token[0] == '-' && parseWhole(token.substr(1), n);
}

}  // namespace

namespace {

AcisModel parseAcisText(std::string_view text) {
  AcisModel model;
  SatTokens tokens(text);
  std::string_view header = tokens.restOfLine();
  if (!parseWhole(header.substr(0, header.find(' ')), model.version)) {
    model.problem = "no SAT header";
    return model;
  }
  // Product, modeler version and date, then units and tolerances; the oldest releases have
  // neither line, and their records start at once.
  for (int line = 0; line < 2 && tokens.startsWithNumber(); ++line) tokens.restOfLine();
  size_t values = 0;
  while (!tokens.atEnd()) {
    std::string_view name = tokens.next();
    if (isSequenceNumber(name)) name = tokens.next();
    if (isAcisEndMarker(name)) {
      model.complete = true;
      return model;
    }
    if (model.records.size() >= kAcisMaxRecords) {
      model.problem = "too many records";
      return model;
    }
    AcisRecord record;
    record.name = std::string(name);
    for (;;) {
      if (tokens.atEnd()) {
        model.problem = "record " + record.name + " not ended";
        return model;
      }
      std::string_view token = tokens.next();
      if (token == "#") break;
      if (++values > kAcisMaxValues) {
        model.problem = "too many values";
        return model;
      }
      record.values.push_back(valueOf(token, tokens));
    }
    model.records.push_back(std::move(record));
  }
  // Older writers end with the last record, without a marker.
  model.complete = !model.records.empty();
  return model;
}

}  // namespace

AcisModel readAcisText(std::string_view text) {
  AcisModel model = parseAcisText(text);
  model.indexSubtypes();
  return model;
}

AcisModel readAcisText(const std::vector<std::string_view>& lines, bool enciphered) {
  std::string text;
  for (std::string_view line : lines) {
    if (!text.empty()) text += '\n';
    for (size_t i = 0; i < line.size(); ++i) {
      char c = line[i];
      // DXF writes a caret as "^ " (a caret before another character escapes a control code).
      if (c == '^' && i + 1 < line.size() && line[i + 1] == ' ') ++i;
      auto u = static_cast<unsigned char>(c);
      if (enciphered && u > 32 && u < 127) c = static_cast<char>(159 - u);
      text += c;
    }
  }
  return readAcisText(text);
}

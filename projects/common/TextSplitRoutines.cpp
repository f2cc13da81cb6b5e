#include <cctype>
#include <cstdio>
#include <sstream>

#include "projects/common/CommonRoutines.h"

namespace {

bool isBlank(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

bool allOf(const std::string& text, const char* allowed) {
  return !text.empty() && text.find_first_not_of(allowed) == std::string::npos;
}

bool endsQuotedField(const std::string& piece) { return piece.size() > 1 && piece.back() == '"'; }

// Splits at every occurrence of the delimiter, without the empty pieces.
std::vector<std::string> nonEmptyPieces(const std::string& text, const std::string& delimiter) {
  std::vector<std::string> pieces;
  if (delimiter.empty()) {
    if (!text.empty()) pieces.push_back(text);
    return pieces;
  }
  std::size_t start = 0;
  for (;;) {
    std::size_t found = text.find(delimiter, start);
    std::size_t end = found == std::string::npos ? text.size() : found;
    if (end > start) pieces.push_back(text.substr(start, end - start));
    if (found == std::string::npos) break;
    start = found + delimiter.size();
  }
  return pieces;
}

// Scanning on after each inserted replacement is the same as replacing the non-overlapping
// occurrences of the original text from left to right; building a new text keeps that linear.
template <typename Text>
Text replacedCopy(const Text& text, const Text& search, const Text& replacement) {
  if (search.empty()) return text;
  Text out;
  out.reserve(text.size());
  std::size_t start = 0;
  for (std::size_t found; (found = text.find(search, start)) != Text::npos; start = found + search.size()) {
    out.append(text, start, found - start);
    out += replacement;
  }
  out.append(text, start, Text::npos);
  return out;
}

}  // namespace

std::string LeftChars(const std::string& text, int count) {
  if (count <= 0) return std::string();
  return text.substr(0, static_cast<std::size_t>(count));
}

std::string RightChars(const std::string& text, int count) {
  if (count <= 0) return std::string();
  auto n = static_cast<std::size_t>(count);
  return n >= text.size() ? text : text.substr(text.size() - n);
}

std::string ReplaceChar(std::string text, char from, char to) {
  for (char& c : text)
    if (c == from) c = to;
  return text;
}

void ReplaceAll(std::string& text, const std::string& search, const std::string& replacement) {
  text = replacedCopy(text, search, replacement);
}

std::wstring ReplaceAll(const std::wstring& text, const std::wstring& search, const std::wstring& replacement) {
  return replacedCopy(text, search, replacement);
}

int SplitAny(std::vector<std::string>& pieces, const std::string& text, const std::string& delimiters) {
  pieces.clear();
  std::size_t start = 0;
  for (;;) {
    std::size_t found = text.find_first_of(delimiters, start);
    if (found == std::string::npos) break;
    pieces.push_back(text.substr(start, found - start));
    start = found + 1;
  }
  pieces.push_back(text.substr(start));
  return static_cast<int>(pieces.size());
}

int SplitQuoted(std::vector<std::string>& fields, const std::string& text, const std::string& delimiter) {
  fields.clear();
  bool inQuotedField = false;
  for (const std::string& piece : nonEmptyPieces(text, delimiter)) {
    if (inQuotedField) {
      fields.back() += "," + piece;
      inQuotedField = !endsQuotedField(piece);
      continue;
    }
    fields.push_back(piece);
    inQuotedField = piece.front() == '"' && !endsQuotedField(piece);
  }
  return static_cast<int>(fields.size());
}

bool SplitCommaList(const std::string& text, std::vector<std::string>& items) {
  items.clear();
  std::istringstream in(text);
  std::string item;
  while (std::getline(in, item, ',')) items.push_back(item);
  return !items.empty();
}

void TrimLeft(std::string& text) {
  std::size_t n = 0;
  while (n < text.size() && isBlank(text[n])) ++n;
  text.erase(0, n);
}

void TrimRight(std::string& text) {
  while (!text.empty() && isBlank(text.back())) text.pop_back();
}

void Trim(std::string& text) {
  TrimLeft(text);
  TrimRight(text);
}

std::string IntToString(int value) {
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "%d", value);
  return buffer;
}

std::string HexEncode(const std::string& bytes) {
  static const char kDigits[] = "0123456789ABCDEF";
  std::string out;
  out.reserve(bytes.size() * 2);
  for (unsigned char b : bytes) {
    out += kDigits[b >> 4];
    out += kDigits[b & 0x0F];
  }
  return out;
}

bool IsNumber(const std::string& text) { return allOf(text, ".-0123456789"); }
bool IsDigits(const std::string& text) { return allOf(text, "0123456789"); }

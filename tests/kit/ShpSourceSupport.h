// Shape source (SHP) files as the tests read them: each "*number,size,name" header followed by
// the definition's bytes, written as decimal or (with a leading zero) hexadecimal numbers, comma
// separated, parenthesised at will; ";" starts a comment. The bytes are those the compiled file
// holds, so a definition parsed here decodes to the strokes of the compiled shape.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <string_view>

struct ShpSource {
  std::map<uint32_t, std::string> definitions;  // number -> bytes after the name
  std::map<uint32_t, std::string> names;
  std::string header;                           // "UNIFONT", "BIGFONT" or the first shape's number
  std::string infoBytes;                        // the font information (shape 0 or the header line)
};

inline bool parseShpNumber(std::string token, long& value) {
  size_t first = token.find_first_not_of(" \t()");
  size_t last = token.find_last_not_of(" \t()\r");
  if (first == std::string::npos) return false;
  token = token.substr(first, last - first + 1);
  bool negative = token[0] == '-';
  std::string digits = negative || token[0] == '+' ? token.substr(1) : token;
  if (digits.empty()) return false;
  int base = digits.size() > 1 && digits[0] == '0' ? 16 : 10;
  char* end = nullptr;
  value = std::strtol(digits.c_str(), &end, base);
  if (*end != '\0') return false;
  if (negative) value = -value;
  return true;
}

inline void appendShpBytes(std::string_view line, std::string& bytes) {
  std::string token;
  std::stringstream fields{std::string(line)};
  while (std::getline(fields, token, ',')) {
    long value = 0;
    if (parseShpNumber(token, value)) bytes += char(uint8_t(value & 0xFF));
  }
}

inline ShpSource parseShp(const std::string& text) {
  ShpSource source;
  std::stringstream lines(text);
  std::string line;
  std::string* current = nullptr;
  while (std::getline(lines, line)) {
    line = line.substr(0, line.find(';'));
    if (line.empty() || line == "\r") continue;
    if (line[0] != '*') {
      if (current) appendShpBytes(line, *current);
      continue;
    }
    std::string head = line.substr(1);
    std::string numberText = head.substr(0, head.find(','));
    size_t nameAt = head.find(',', head.find(',') + 1);
    std::string name = nameAt == std::string::npos ? std::string() : head.substr(nameAt + 1);
    while (!name.empty() && (name.back() == '\r' || name.back() == ' ')) name.pop_back();
    long number = 0;
    if (source.header.empty()) source.header = numberText;
    if (!parseShpNumber(numberText, number) || number == 0) {
      current = &source.infoBytes;  // the font's header or its shape 0
      continue;
    }
    current = &source.definitions[uint32_t(number)];
    if (!name.empty()) source.names[uint32_t(number)] = name;
  }
  return source;
}

inline std::string readWholeFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream buffer;
  buffer << in.rdbuf();
  return buffer.str();
}

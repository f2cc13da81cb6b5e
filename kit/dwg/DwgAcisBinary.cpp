#include "kit/dwg/DwgAcisBinary.h"

#include <charconv>
#include <cstdint>
#include <cstring>
#include <map>
#include <type_traits>

#include "kit/base/BoundedBytes.h"

namespace {

constexpr std::string_view kMagic = "ACIS BinaryFile";

// Value tags of binary ACIS data.
enum Tag : uint8_t {
  kChar = 0x02, kShort = 0x03, kLong = 0x04, kFloat = 0x05, kDouble = 0x06,
  kString1 = 0x07, kString2 = 0x08, kString4 = 0x09, kTrue = 0x0A, kFalse = 0x0B,
  kPointer = 0x0C, kName = 0x0D, kNamePart = 0x0E, kRecordEnd = 0x11,
  kPosition = 0x13, kVector = 0x14,
};

// The words a true/false value prints as, by what it means.
struct Words {
  const char* ifFalse;
  const char* ifTrue;
};
constexpr Words kSense{"forward", "reversed"};
constexpr Words kSides{"single", "double"};
constexpr Words kContainment{"out", "in"};
constexpr Words kVSense{"forward_v", "reverse_v"};
constexpr Words kEnd{"I", "F"};  // an infinite end of a range, or a finite one whose value follows

// The true/false values of each record kind in order; a kind not listed has none.
const std::map<std::string_view, std::vector<Words>>& logicalWords() {
  static const std::map<std::string_view, std::vector<Words>> table = {
      {"coedge", {kSense}},
      {"edge", {kSense}},
      {"face", {kSense, kSides, kContainment}},
      {"plane-surface", {kVSense, kEnd, kEnd, kEnd, kEnd}},
      {"sphere-surface", {kVSense, kEnd, kEnd, kEnd, kEnd}},
      {"torus-surface", {kVSense, kEnd, kEnd, kEnd, kEnd}},
      {"cone-surface", {kEnd, kEnd, kSense, kEnd, kEnd, kEnd, kEnd}},
      {"straight-curve", {kEnd, kEnd}},
      {"ellipse-curve", {kEnd, kEnd}},
  };
  return table;
}

// Numbers as AutoCAD prints them: doubles with 19 significant digits ("%.19g").
template <class T>
void appendNumber(std::string& line, T v) {
  char text[40];
  std::to_chars_result end;
  if constexpr (std::is_floating_point_v<T>) {
    end = std::to_chars(text, text + sizeof text, double(v), std::chars_format::general, 19);
  } else {
    end = std::to_chars(text, text + sizeof text, v);
  }
  line.append(text, end.ptr);
}

std::string number(double v) {
  std::string text;
  appendNumber(text, v);
  return text;
}

// Reads tagged values; every read checks the room left and fails the whole conversion when short.
using SabReader = BoundedBytes;

struct Header {
  int32_t version = 0, records = 0, bodies = 0, flags = 0;
  std::string strings[3];
  double doubles[3] = {};
};

bool readHeader(SabReader& r, Header& h) {
  const char* magic;
  if (!r.take(kMagic.size(), magic) || std::string_view(magic, kMagic.size()) != kMagic) return false;
  if (!r.value(h.version) || !r.value(h.records) || !r.value(h.bodies) || !r.value(h.flags)) return false;
  uint8_t tag = 0;
  for (std::string& s : h.strings) {
    if (!r.value(tag) || tag != kString1 || !r.string(1, s)) return false;
  }
  for (double& d : h.doubles) {
    if (!r.value(tag) || tag != kDouble || !r.value(d)) return false;
  }
  return true;
}

// One value after a record's name, appended to `line`; false for a tag this conversion does not know.
bool appendValue(SabReader& r, uint8_t tag, const std::vector<Words>* words, size_t& logicals, std::string& line) {
  line += ' ';
  switch (tag) {
    case kChar: { int8_t v; if (!r.value(v)) return false; appendNumber(line, int(v)); return true; }
    case kShort: { int16_t v; if (!r.value(v)) return false; appendNumber(line, v); return true; }
    case kLong: { int32_t v; if (!r.value(v)) return false; appendNumber(line, v); return true; }
    case kFloat: { float v; if (!r.value(v)) return false; appendNumber(line, v); return true; }
    case kDouble: { double v; if (!r.value(v)) return false; appendNumber(line, v); return true; }
    case kPointer: { int32_t v; if (!r.value(v)) return false; line += '$'; appendNumber(line, v); return true; }
    case kString1: case kString2: case kString4: {
      std::string s;
      if (!r.string(tag == kString1 ? 1 : tag == kString2 ? 2 : 4, s)) return false;
      line += '@';
      appendNumber(line, s.size());
      line += ' ';
      line += s;
      return true;
    }
    case kPosition: case kVector: {
      double v[3];
      if (!r.value(v)) return false;
      appendNumber(line, v[0]);
      for (double x : {v[1], v[2]}) {
        line += ' ';
        appendNumber(line, x);
      }
      return true;
    }
    case kTrue: case kFalse:
      if (!words || logicals >= words->size()) return false;
      line += tag == kTrue ? (*words)[logicals].ifTrue : (*words)[logicals].ifFalse;
      ++logicals;
      return true;
    default: return false;
  }
}

// A record's name: parts joined by '-' before the last ("plane-surface").
bool readName(SabReader& r, uint8_t tag, std::string& name) {
  std::string part;
  while (tag == kNamePart) {
    if (!r.string(1, part)) return false;
    name += part + "-";
    if (!r.value(tag)) return false;
  }
  if (tag != kName || !r.string(1, part)) return false;
  name += part;
  return true;
}

}  // namespace

std::optional<AcisSatText> acisBinaryToSat(std::string_view data) {
  SabReader r(data);
  Header h;
  if (!readHeader(r, h)) return std::nullopt;
  std::vector<std::string> records;
  for (;;) {
    uint8_t tag;
    std::string name;
    if (!r.value(tag) || !readName(r, tag, name)) return std::nullopt;
    if (name == "End-of-ACIS-data" || name == "End-of-ASM-data") break;
    auto known = logicalWords().find(name);
    const std::vector<Words>* words = known == logicalWords().end() ? nullptr : &known->second;
    size_t logicals = 0;
    std::string line = name;
    for (;;) {
      if (!r.value(tag)) return std::nullopt;
      if (tag == kRecordEnd) break;
      if (!appendValue(r, tag, words, logicals, line)) return std::nullopt;
    }
    records.push_back(line + " #");
  }
  AcisSatText sat;
  sat.bytesUsed = r.position();
  sat.lines.push_back(std::to_string(h.version) + " " + std::to_string(records.size()) + " " + std::to_string(h.bodies) +
                      " " + std::to_string(h.flags));
  // AutoCAD leaves the date out of the text it writes.
  sat.lines.push_back(std::to_string(h.strings[0].size()) + " " + h.strings[0] + " " + std::to_string(h.strings[1].size()) +
                      " " + h.strings[1] + " 0");
  sat.lines.push_back(number(h.doubles[0]) + " " + number(h.doubles[1]) + " " + number(h.doubles[2]));
  sat.lines.insert(sat.lines.end(), records.begin(), records.end());
  return sat;
}

void acisCipher(std::string& text) {
  for (char& c : text) {
    auto u = static_cast<unsigned char>(c);
    if (u > 32 && u < 127) c = static_cast<char>(159 - u);
  }
}

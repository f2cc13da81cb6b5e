// The records of an ACIS model, read from SAT text or from binary (SAB) data into one form: each
// record is its name and a list of values; records point at each other by their index ("$n").
// Nothing here knows what a record means; AcisTopology and AcisCurves do.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

struct AcisValue {
  enum class Kind : uint8_t {
    kNumber,   // integers and reals alike; positions and vectors give three numbers
    kPointer,  // an index into the records, -1 for none
    kLogical,  // a binary true/false
    kWord,     // a word of the text form: forward, reversed, I, F, open, exactcur ...
    kString,   // a counted string
    kOpen,     // "{": a sub-type's data starts
    kClose,    // "}"
  };
  Kind kind = Kind::kNumber;
  double number = 0.0;  // the number, or the index of a pointer
  bool truth = false;   // logicals
  std::string text;     // words and strings

  bool isPointer() const { return kind == Kind::kPointer; }
  bool isNumber() const { return kind == Kind::kNumber; }
  // Words and logicals both carry a yes/no meaning: reversed, F (a finite end), double, in ...
  bool isFlag() const { return kind == Kind::kLogical || kind == Kind::kWord; }
  bool flagSet() const;
  int64_t index() const { return static_cast<int64_t>(number); }
};

struct AcisRecord {
  std::string name;
  std::vector<AcisValue> values;
};

struct AcisModel {
  int version = 0;  // 400, 700, ... 21800
  std::vector<AcisRecord> records;
  bool complete = false;  // the data ended where it should (end marker or last record)
  std::string problem;    // why reading stopped early, when it did
  // Where each sub-type's data starts ("{" not followed by "ref"), in the order of the data: a
  // later "{ ref n }" means the n-th of them.
  struct Place {
    size_t record = 0, value = 0;
  };
  std::vector<Place> subtypes;

  const AcisRecord* at(const AcisValue& pointer) const;
  const AcisRecord* at(int64_t index) const;
  // Where a record's own values start: after the attribute pointer and, from version 7 on, the
  // identifier number(s) and history pointer every record carries.
  size_t firstValue(const AcisRecord& r) const;
  void indexSubtypes();
};

// The records that end the model data (the history data after them is not read).
bool isAcisEndMarker(std::string_view name);

// Limits that keep damaged data from taking unbounded time or memory.
constexpr size_t kAcisMaxRecords = 1'000'000;
constexpr size_t kAcisMaxValues = 4'000'000;

// SAT text as stored in a drawing: lines of the entity's groups 1 (and 3 for continued lines),
// `enciphered` as DXF files and drawings keep them.
AcisModel readAcisText(const std::vector<std::string_view>& lines, bool enciphered);
// SAT text as a whole, plain.
AcisModel readAcisText(std::string_view text);
// Binary ACIS data ("ACIS BinaryFile" ...).
AcisModel readAcisBinary(std::string_view data);

// Binary ACIS data: a magic text, four 32-bit header numbers, the header's tagged strings and
// reals, then records of tagged values, each ended by its own tag. Little-endian throughout.
#include <cstring>

#include "kit/base/BoundedBytes.h"
#include "kit/gi/acis/AcisRecords.h"

namespace {

// ACIS writes the first, AutoCAD 2018 and later the second; the data after them is alike.
constexpr std::string_view kMagics[] = {"ACIS BinaryFile", "ASM BinaryFile4"};

enum Tag : uint8_t {
  kChar = 0x02, kShort = 0x03, kLong = 0x04, kFloat = 0x05, kDouble = 0x06,
  kString1 = 0x07, kString2 = 0x08, kString4 = 0x09, kTrue = 0x0A, kFalse = 0x0B,
  kPointer = 0x0C, kIdent = 0x0D, kIdentPart = 0x0E, kSubtypeStart = 0x0F, kSubtypeEnd = 0x10,
  kRecordEnd = 0x11, kLongString = 0x12, kPosition = 0x13, kVector = 0x14, kEnum = 0x15, kVector2 = 0x16,
  kLong64 = 0x17,
};

using SabBytes = BoundedBytes;

AcisValue number(double v) {
  AcisValue value;
  value.number = v;
  return value;
}

// One tagged value, appended to `out` (positions and vectors as their numbers); false when the
// data ends or the tag is unknown.
bool readValue(SabBytes& in, uint8_t tag, std::vector<AcisValue>& out) {
  using Kind = AcisValue::Kind;
  switch (tag) {
    case kChar: { int8_t v; if (!in.value(v)) return false; out.push_back(number(v)); return true; }
    case kShort: { int16_t v; if (!in.value(v)) return false; out.push_back(number(v)); return true; }
    case kLong: case kEnum: { int32_t v; if (!in.value(v)) return false; out.push_back(number(v)); return true; }
    case kLong64: { int64_t v; if (!in.value(v)) return false; out.push_back(number(double(v))); return true; }
    case kFloat: { float v; if (!in.value(v)) return false; out.push_back(number(v)); return true; }
    case kDouble: { double v; if (!in.value(v)) return false; out.push_back(number(v)); return true; }
    case kPointer: {
      int32_t v;
      if (!in.value(v)) return false;
      out.push_back(number(v));
      out.back().kind = Kind::kPointer;
      return true;
    }
    case kTrue: case kFalse:
      out.emplace_back();
      out.back().kind = Kind::kLogical;
      out.back().truth = tag == kTrue;
      return true;
    case kString1: case kString2: case kString4: case kLongString: case kIdent: case kIdentPart: {
      AcisValue v;
      v.kind = (tag == kIdent || tag == kIdentPart) ? Kind::kWord : Kind::kString;
      size_t lengthBytes = tag == kString2 ? 2 : (tag == kString1 || tag == kIdent || tag == kIdentPart) ? 1 : 4;
      if (!in.string(lengthBytes, v.text)) return false;
      out.push_back(std::move(v));
      return true;
    }
    case kSubtypeStart: case kSubtypeEnd:
      out.emplace_back();
      out.back().kind = tag == kSubtypeStart ? Kind::kOpen : Kind::kClose;
      return true;
    case kPosition: case kVector: case kVector2: {
      double v[3] = {};
      size_t n = tag == kVector2 ? 2 : 3;
      for (size_t i = 0; i < n; ++i) {
        if (!in.value(v[i])) return false;
        out.push_back(number(v[i]));
      }
      return true;
    }
    default: return false;
  }
}

// A record's name: parts joined by '-' before the last ("plane-surface").
bool readName(SabBytes& in, uint8_t tag, std::string& name) {
  std::string part;
  while (tag == kIdentPart) {
    if (!in.string(1, part)) return false;
    name += part + "-";
    if (!in.value(tag)) return false;
  }
  if (tag != kIdent || !in.string(1, part)) return false;
  name += part;
  return true;
}

bool readHeader(SabBytes& in, AcisModel& model) {
  const char* magic;
  if (!in.take(kMagics[0].size(), magic)) return false;
  std::string_view found(magic, kMagics[0].size());
  if (found != kMagics[0] && found != kMagics[1]) return false;
  int32_t numbers[4];
  for (int32_t& n : numbers) {
    if (!in.value(n)) return false;
  }
  model.version = numbers[0];
  // Product, modeler and date strings, then units and two tolerances.
  std::vector<AcisValue> skipped;
  size_t reals = 0;
  while (reals < 3) {
    uint8_t tag;
    if (!in.value(tag) || !readValue(in, tag, skipped)) return false;
    if (tag == kDouble) ++reals;
    if (skipped.size() > 16) return false;
  }
  return true;
}

AcisModel parseAcisBinary(std::string_view data) {
  AcisModel model;
  SabBytes in(data);
  if (!readHeader(in, model)) {
    model.problem = "no binary ACIS header";
    return model;
  }
  size_t values = 0;
  for (;;) {
    uint8_t tag;
    AcisRecord record;
    if (!in.value(tag)) {
      model.problem = "the data ends before its end marker";
      return model;
    }
    if (!readName(in, tag, record.name)) {
      model.problem = "bad record name";
      return model;
    }
    if (isAcisEndMarker(record.name)) {
      model.complete = true;
      return model;
    }
    if (model.records.size() >= kAcisMaxRecords) {
      model.problem = "too many records";
      return model;
    }
    for (;;) {
      if (!in.value(tag)) {
        model.problem = "record " + record.name + " not ended";
        return model;
      }
      if (tag == kRecordEnd) break;
      if (++values > kAcisMaxValues || !readValue(in, tag, record.values)) {
        model.problem = "unreadable value in " + record.name;
        return model;
      }
    }
    model.records.push_back(std::move(record));
  }
}

}  // namespace

AcisModel readAcisBinary(std::string_view data) {
  AcisModel model = parseAcisBinary(data);
  model.indexSubtypes();
  return model;
}

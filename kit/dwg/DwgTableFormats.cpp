// Values, content formats and cell styles of tables (R2007 and later forms): read to get past
// them, keeping only what a cell shows (its text).
#include "kit/dwg/DwgLoader.h"
#include "kit/dwg/DwgTableParts.h"

namespace {

// Value data types.
enum : int32_t {
  kValueLong = 1,
  kValueDouble = 2,
  kValueString = 4,
  kValueDate = 8,
  kValuePoint = 16,
  kValuePoint3d = 32,
  kValueObject = 64,
  kValueGeneral = 512,  // buffers (128) and result buffers (256) have no known size
};

// A byte count followed by that many bytes.
void skipSizedBytes(DwgObjectContext& c) {
  uint32_t bytes = c.boundedCount(c.d.BL(), 8);
  c.d.skip(size_t(bytes) * 8);
}

// Texts of values are sized UTF-16 bytes in the value stream, not strings of the string stream.
void readUtf16Bytes(DwgObjectContext& c, std::string& out) {
  uint32_t bytes = c.boundedCount(c.d.BL(), 8);
  std::string raw;
  c.d.rawBytes(bytes, raw);
  appendUtf16AsUtf8(reinterpret_cast<const uint8_t*>(raw.data()), raw.size() / 2, out);
}

// The stored value itself; false for kinds whose size is unknown (nothing after them can be read).
bool readValueData(DwgObjectContext& c, int32_t type, std::string& data) {
  DwgBitReader& d = c.d;
  switch (type) {
    case 0: case kValueLong: d.BL(); return true;
    case kValueDouble: d.BD(); return true;
    case kValueString: readUtf16Bytes(c, data); return true;
    case kValueDate: case kValueGeneral: skipSizedBytes(c); return true;
    case kValuePoint: d.BL(); d.point2RD(); return true;
    case kValuePoint3d: d.BL(); d.point3RD(); return true;
    case kValueObject: c.s.handle(); return true;
    default: return false;
  }
}

}  // namespace

std::string readDwgTableValue(DwgObjectContext& c) {
  DwgBitReader& d = c.d;
  int32_t flags = d.BL();
  int32_t type = d.BL();
  std::string data;
  if (!(flags & 1) && !readValueData(c, type, data)) {
    d.skip(d.bitsLeft() + 1);
    return {};
  }
  d.BL();      // unit type
  c.s.text();  // format string
  std::string shown = c.s.text();
  return data.empty() ? shown : data;
}

void skipDwgTableCustomData(DwgObjectContext& c) {
  uint32_t items = c.boundedCount(c.d.BL(), 8);
  for (uint32_t i = 0; i < items && !c.s.overrun(); ++i) {
    c.s.text();  // name
    readDwgTableValue(c);
  }
}

void skipDwgTableColor(DwgObjectContext& c) {
  DwgBitReader& d = c.d;
  d.BS();
  d.BL();
  uint8_t names = d.RC();
  if (names & 1) c.s.text();
  if (names & 2) c.s.text();
}

void skipDwgContentFormat(DwgObjectContext& c) {
  DwgBitReader& d = c.d;
  d.BL();  // overridden properties
  d.BL();  // property flags
  d.BL();  // value type
  d.BL();  // value unit type
  c.s.text();  // value format
  d.BD();  // rotation
  d.BD();  // block scale
  d.BL();  // alignment
  skipDwgTableColor(c);
  c.s.handle();  // text style
  d.BD();  // text height
}

void skipDwgCellStyle(DwgObjectContext& c) {
  DwgBitReader& d = c.d;
  d.BL();  // style kind
  if (d.BS() == 0) return;  // no data
  d.BL();  // overridden properties
  d.BL();  // merge flags
  skipDwgTableColor(c);  // background
  d.BL();  // content layout
  skipDwgContentFormat(c);
  if (d.BS() & 1) {
    for (int i = 0; i < 6; ++i) d.BD();  // margins and spacings
  }
  uint32_t borders = c.boundedCount(d.BL(), 2);
  for (uint32_t i = 0; i < borders && !c.s.overrun(); ++i) {
    if (d.BL() == 0) continue;  // no edge
    d.BL();  // overridden properties
    d.BL();  // single or double
    skipDwgTableColor(c);
    d.BL();  // lineweight
    c.s.handle();  // linetype
    d.BL();  // invisible
    d.BD();  // double line spacing
  }
}

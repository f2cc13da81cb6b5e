#include "kit/dwg/DwgR12Header.h"


#include "kit/dwg/DwgR12Cursor.h"
#include "kit/dxf/DxfTagWriter.h"

namespace {

enum class Kind { kInt, kReal, kAngle, kPoint2, kPoint3, kLayer, kStyle, kLinetype, kByte };

struct Variable {
  const char* name;
  int code;
  size_t offset;
  Kind kind;
};

// Offsets into the fixed header of R11/R12; the earlier releases end their header sooner and
// keep the variables that lie before its end at the same offsets.
constexpr Variable kVariables[] = {
    {"$INSBASE", 10, 0x5e, Kind::kPoint3},    {"$EXTMIN", 10, 0x78, Kind::kPoint3},
    {"$EXTMAX", 10, 0x90, Kind::kPoint3},     {"$LIMMIN", 10, 0xa8, Kind::kPoint2},
    {"$LIMMAX", 10, 0xb8, Kind::kPoint2},     {"$VIEWCTR", 10, 0xc8, Kind::kPoint2},
    {"$VIEWSIZE", 40, 0xe0, Kind::kReal},     {"$FILLMODE", 70, 0x12c, Kind::kInt},
    {"$QTEXTMODE", 70, 0x12e, Kind::kInt},    {"$LTSCALE", 40, 0x132, Kind::kReal},
    {"$TEXTSIZE", 40, 0x13a, Kind::kReal},    {"$TRACEWID", 40, 0x142, Kind::kReal},
    {"$LUNITS", 70, 0x164, Kind::kInt},       {"$LUPREC", 70, 0x166, Kind::kInt},
    {"$AUNITS", 70, 0x18a, Kind::kInt},       {"$AUPREC", 70, 0x18c, Kind::kInt},
    {"$TEXTSTYLE", 7, 0x18e, Kind::kStyle},   {"$ATTMODE", 70, 0x192, Kind::kInt},
    {"$DIMSCALE", 40, 0x1a3, Kind::kReal},    {"$DIMASZ", 40, 0x1ab, Kind::kReal},
    {"$DIMTXT", 40, 0x1db, Kind::kReal},      {"$ELEVATION", 40, 0x229, Kind::kReal},
    {"$THICKNESS", 40, 0x231, Kind::kReal},   {"$VIEWDIR", 10, 0x239, Kind::kPoint3},
    {"$CECOLOR", 62, 0x31b, Kind::kInt},      {"$CELTYPE", 6, 0x31d, Kind::kLinetype},
    {"$ANGBASE", 50, 0x353, Kind::kAngle},    {"$ANGDIR", 70, 0x35b, Kind::kInt},
    {"$PDMODE", 70, 0x35d, Kind::kInt},       {"$PDSIZE", 40, 0x35f, Kind::kReal},
    {"$SPLINESEGS", 70, 0x3d5, Kind::kInt},   {"$MIRRTEXT", 70, 0x3ed, Kind::kInt},
    {"$UCSORG", 10, 0x3fb, Kind::kPoint3},    {"$UCSXDIR", 10, 0x413, Kind::kPoint3},
    {"$UCSYDIR", 10, 0x42b, Kind::kPoint3},   {"$TILEMODE", 70, 0x631, Kind::kByte},
    {"$PEXTMIN", 10, 0x637, Kind::kPoint3},   {"$PEXTMAX", 10, 0x64f, Kind::kPoint3},
    {"$PLIMMIN", 10, 0x667, Kind::kPoint2},   {"$PLIMMAX", 10, 0x677, Kind::kPoint2},
    {"$PINSBASE", 10, 0x687, Kind::kPoint3},
};

// The handle seed follows, eight bytes, most significant first.
constexpr size_t kHandlingOffset = 0x4ec;

size_t sizeOf(Kind kind) {
  switch (kind) {
    case Kind::kByte: return 1;
    case Kind::kReal: case Kind::kAngle: return 8;
    case Kind::kPoint2: return 16;
    case Kind::kPoint3: return 24;
    default: return 2;
  }
}

void writeVariable(const Variable& v, DwgR12Cursor in, const DwgR12Tables& tables, DxfTagWriter& out) {
  if (v.offset + sizeOf(v.kind) > in.left()) return;  // not in this release
  in.skip(v.offset);
  out.raw(9, v.name);
  switch (v.kind) {
    case Kind::kInt: out.integer(v.code, in.i16()); break;
    case Kind::kByte: out.integer(v.code, in.u8()); break;
    case Kind::kReal: out.real(v.code, in.f64()); break;
    case Kind::kAngle: out.angle(v.code, in.f64()); break;
    case Kind::kPoint2: {
      double x = in.f64();
      out.point(v.code, OdGePoint2d{x, in.f64()});
      break;
    }
    case Kind::kPoint3: {
      double x = in.f64();
      double y = in.f64();
      out.point(v.code, OdGePoint3d{x, y, in.f64()});
      break;
    }
    case Kind::kLayer: out.raw(v.code, tables.layerName(in.u16())); break;
    case Kind::kStyle: out.raw(v.code, tables.styleName(in.u16())); break;
    case Kind::kLinetype: out.raw(v.code, tables.linetypeName(in.u16())); break;
  }
}

}  // namespace

void writeDwgR12Header(const DwgR12File& file, const DwgR12Tables& tables, DxfTagWriter& out) {
  DwgR12Cursor header(file.bytes.substr(0, file.release->variablesEnd), "the header");
  out.raw(0, "SECTION");
  out.raw(2, "HEADER");
  out.raw(9, "$ACADVER");
  out.raw(1, file.release->mark);
  for (const Variable& v : kVariables) writeVariable(v, header, tables, out);
  DwgR12Cursor handling = header;
  if (handling.left() < kHandlingOffset + 10) {
    out.raw(0, "ENDSEC");
    return;
  }
  handling.skip(kHandlingOffset);
  if (handling.i16() != 0) {
    uint64_t seed = handling.bigEndian(8);
    out.raw(9, "$HANDLING");
    out.integer(70, 1);
    out.raw(9, "$HANDSEED");
    out.raw(5, OdDbHandle(seed).toHex());
  }
  out.raw(0, "ENDSEC");
}

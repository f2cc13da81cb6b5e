#include "kit/dwg/DwgR12Entities.h"


#include "kit/dwg/DwgR12Cursor.h"
#include "kit/dwg/DwgR12ExtendedData.h"
#include "kit/dwg/DwgR12Text.h"
#include "kit/dxf/DxfTagWriter.h"

namespace {

enum Kind : uint8_t {
  kLine = 1, kPoint = 2, kCircle = 3, kShape = 4, kRepeat = 5, kEndRepeat = 6, kText = 7, kArc = 8, kTrace = 9,
  kSolid = 11, kBlock = 12, kEndBlock = 13, kInsert = 14, kAttdef = 15, kAttrib = 16, kSeqend = 17,
  kClosedPolyline = 18, kPolyline = 19, kVertex = 20, kLine3d = 21, kFace = 22, kDimension = 23, kViewport = 24,
};

enum Flag : uint8_t {
  kHasColor = 1, kHasLinetype = 2, kHasElevation = 4, kHasThickness = 8, kHasHandle = 32, kHasExtra = 64,
  kHasFollowers = 128,  // attributes after an insert, vertices after a polyline
};

enum Extra : uint8_t { kHasExtendedData = 2, kHasViewport = 4 };

constexpr size_t kRecordHeader = 4;  // kind, flags, length

struct Common {
  uint8_t kind = 0;
  uint8_t flags = 0;
  uint16_t layer = 0;
  uint16_t options = 0;
  bool paperSpace = false;
  double z = 0;              // the elevation of kinds whose points are two-dimensional
  bool flat = false;         // lines, points and faces: two-dimensional points at elevation 0
  // Before R10, lines, points and faces have two-dimensional points unless option bit `1 << i`
  // gives point i a z; they have no normal.
  bool zByOption = false;
  bool planar = false;  // before R10: dimensions have two-dimensional points throughout
  std::string_view extendedData;
  bool has(uint16_t option) const { return options & option; }
};

// The groups every entity has, before those of its kind.
Common readCommon(DwgR12Cursor& in, uint8_t kind, uint8_t flags, const DwgR12Release& release,
                  const DwgR12Tables& tables, DxfTagWriter& out, const char* dxfKind) {
  Common c;
  c.kind = kind;
  c.flags = flags;
  c.layer = in.u16();
  c.options = in.u16();
  uint8_t extra = 0;
  if (flags & kHasExtra) {
    c.paperSpace = true;
    extra = in.u8();
  }
  if (extra & kHasExtendedData) c.extendedData = in.bytes(in.u16());
  out.raw(0, dxfKind);
  out.raw(8, dxfText(tables.layerName(c.layer)));
  if (flags & kHasColor) out.integer(62, in.i8());
  // Before R11 the index has one byte, 255 for BYBLOCK.
  if (flags & kHasLinetype) out.raw(6, dxfText(tables.linetypeName(release.r12() ? in.u16() : in.u8())));
  // Lines, points and faces use the flag to say their points have no z; the others store the
  // elevation their two-dimensional points share.
  bool flatKind = kind == kLine || kind == kPoint || kind == kFace || kind == kLine3d;
  c.planar = !release.flatByFlag;
  c.zByOption = flatKind && c.planar;
  if (c.zByOption) {
    c.flat = true;
  } else if (flags & kHasElevation) {
    if (flatKind) c.flat = true;
    else c.z = in.f64();
  }
  if (flags & kHasThickness) out.real(39, in.f64());
  if (flags & kHasHandle) {
    uint8_t size = in.u8();
    if (size > 8) in.fail("its handle has " + std::to_string(size) + " bytes");
    uint64_t handle = in.bigEndian(size);
    if (handle != 0) out.raw(5, OdDbHandle(handle).toHex());
  }
  if (extra & kHasViewport) in.skip(2);
  if (c.paperSpace) out.integer(67, 1);
  return c;
}

OdGePoint3d point2(DwgR12Cursor& in, double z) {
  double x = in.f64();
  return {x, in.f64(), z};
}

OdGePoint3d point3(DwgR12Cursor& in) {
  double x = in.f64();
  double y = in.f64();
  return {x, y, in.f64()};
}

// Point `index` of a line, point or face.
OdGePoint3d pointByFlag(DwgR12Cursor& in, const Common& c, int index) {
  if (!c.flat) return point3(in);
  OdGePoint3d p = point2(in, 0);
  if (c.zByOption && c.has(uint16_t(1u << index))) p.z = in.f64();
  return p;
}

void normalIf(DwgR12Cursor& in, const Common& c, uint16_t option, DxfTagWriter& out) {
  if (c.has(option)) out.point(210, point3(in));
}

void writeLine(DwgR12Cursor& in, const Common& c, const DwgR12Tables&, DxfTagWriter& out) {
  OdGePoint3d a = pointByFlag(in, c, 0);
  out.point(10, a);
  out.point(11, pointByFlag(in, c, 1));
  if (!c.zByOption) normalIf(in, c, 1, out);
}

void writePoint(DwgR12Cursor& in, const Common& c, const DwgR12Tables&, DxfTagWriter& out) {
  out.point(10, pointByFlag(in, c, 0));
  if (c.zByOption) return;
  normalIf(in, c, 1, out);
  if (c.has(2)) out.angle(50, in.f64());
}

void writeFace(DwgR12Cursor& in, const Common& c, const DwgR12Tables&, DxfTagWriter& out) {
  for (int corner = 0; corner < 4; ++corner) out.point(10 + corner, pointByFlag(in, c, corner));
  if (!c.zByOption && c.has(1)) out.integer(70, in.i16());
}

// Circles and arcs may store a centre z of their own after the normal.
void writeCircleOrArc(DwgR12Cursor& in, const Common& c, bool arc, DxfTagWriter& out) {
  OdGePoint3d center = point2(in, c.z);
  double radius = in.f64();
  double start = arc ? in.f64() : 0;
  double end = arc ? in.f64() : 0;
  bool normal = c.has(1);
  OdGePoint3d n = normal ? point3(in) : OdGePoint3d{};
  if (c.has(2)) center.z = in.f64();
  out.point(10, center);
  out.real(40, radius);
  if (arc) {
    out.angle(50, start);
    out.angle(51, end);
  }
  if (normal) out.point(210, n);
}

void writeCircle(DwgR12Cursor& in, const Common& c, const DwgR12Tables&, DxfTagWriter& out) { writeCircleOrArc(in, c, false, out); }
void writeArc(DwgR12Cursor& in, const Common& c, const DwgR12Tables&, DxfTagWriter& out) { writeCircleOrArc(in, c, true, out); }

// Solids and traces: four corners, then an optional normal and an elevation of their own.
void writeQuad(DwgR12Cursor& in, const Common& c, const DwgR12Tables&, DxfTagWriter& out) {
  OdGePoint3d corners[4];
  for (OdGePoint3d& p : corners) p = point2(in, c.z);
  bool normal = c.has(1);
  OdGePoint3d n = normal ? point3(in) : OdGePoint3d{};
  if (c.has(2)) {
    double z = in.f64();
    for (OdGePoint3d& p : corners) p.z = z;
  }
  for (int i = 0; i < 4; ++i) out.point(10 + i, corners[i]);
  if (normal) out.point(210, n);
}

// Shapes name their shape by number and shape file; DXF names it by the shape's name, which only
// the shape file knows, so the name is left out.
void writeShape(DwgR12Cursor& in, const Common& c, const DwgR12Tables&, DxfTagWriter& out) {
  out.point(10, point2(in, c.z));
  out.real(40, in.f64());
  in.skip(1);  // shape number
  if (c.has(1)) out.angle(50, in.f64());
  if (c.has(2)) in.skip(1);  // shape file style
  if (c.has(4)) out.real(41, in.f64());
  if (c.has(8)) out.angle(51, in.f64());
}

// The optional fields texts, attributes and attribute definitions share; `bit` gives the option
// bit of each (rotation, width, oblique, style, generation, horizontal alignment, alignment
// point, normal, vertical alignment), `valign` the DXF code of the last.
void writeTextOptions(DwgR12Cursor& in, const Common& c, const uint16_t (&bit)[9], int valign,
                      const DwgR12Tables& tables, DxfTagWriter& out) {
  if (c.has(bit[0])) out.angle(50, in.f64());
  if (c.has(bit[1])) out.real(41, in.f64());
  if (c.has(bit[2])) out.angle(51, in.f64());
  if (c.has(bit[3])) out.raw(7, dxfText(tables.styleName(in.u8())));
  if (c.has(bit[4])) out.integer(71, in.u8());
  if (c.has(bit[5])) out.integer(72, in.u8());
  if (c.has(bit[6])) out.point(11, point2(in, c.z));
  if (c.has(bit[7])) out.point(210, point3(in));
  if (c.has(bit[8])) out.integer(valign, in.u8());
}

constexpr uint16_t kTextBits[9] = {1, 2, 4, 8, 16, 32, 64, 128, 256};
constexpr uint16_t kAttributeBits[9] = {2, 4, 8, 16, 32, 64, 128, 0x100, 0x200};

void writeText(DwgR12Cursor& in, const Common& c, const DwgR12Tables& tables, DxfTagWriter& out) {
  out.point(10, point2(in, c.z));
  out.real(40, in.f64());
  out.raw(1, dxfText(in.text()));
  writeTextOptions(in, c, kTextBits, 73, tables, out);
}

void writeAttribute(DwgR12Cursor& in, const Common& c, const DwgR12Tables& tables, DxfTagWriter& out) {
  bool definition = c.kind == kAttdef;
  out.point(10, point2(in, c.z));
  out.real(40, in.f64());
  out.raw(1, dxfText(in.text()));
  if (definition) out.raw(3, dxfText(in.text()));
  out.raw(2, dxfText(in.text()));
  out.integer(70, in.u8());
  writeTextOptions(in, c, kAttributeBits, 74, tables, out);
}

void writeInsert(DwgR12Cursor& in, const Common& c, const DwgR12Tables& tables, DxfTagWriter& out) {
  if (c.flags & kHasFollowers) out.integer(66, 1);
  out.raw(2, dxfText(tables.blockName(in.u16())));
  out.point(10, point2(in, c.z));
  if (c.has(1)) out.real(41, in.f64());
  if (c.has(2)) out.real(42, in.f64());
  if (c.has(4)) out.angle(50, in.f64());
  if (c.has(8)) out.real(43, in.f64());
  if (c.has(16)) out.integer(70, in.u16());
  if (c.has(32)) out.integer(71, in.u16());
  if (c.has(64)) out.real(44, in.f64());
  if (c.has(128)) out.real(45, in.f64());
  normalIf(in, c, 256, out);
}

// Before R11, a closed polyline has a kind of its own; what its option bit 0x8000 says is not known.
void writePolyline(DwgR12Cursor& in, const Common& c, const DwgR12Tables&, DxfTagWriter& out) {
  out.integer(66, 1);
  out.point(10, OdGePoint3d{0, 0, c.z});
  uint8_t closed = c.kind == kClosedPolyline ? 1 : 0;
  if (c.has(1)) out.integer(70, in.u8() | closed);
  else if (closed) out.integer(70, closed);
  if (c.has(2)) out.real(40, in.f64());
  if (c.has(4)) out.real(41, in.f64());
  normalIf(in, c, 8, out);
  // Mesh sizes, surface densities and the smoothing kind.
  for (int i = 0; i < 5; ++i) {
    if (c.has(uint16_t(16 << i))) out.integer(71 + i, in.u16());
  }
}

void writeVertex(DwgR12Cursor& in, const Common& c, const DwgR12Tables&, DxfTagWriter& out) {
  out.point(10, point2(in, c.z));
  if (c.has(1)) out.real(40, in.f64());
  if (c.has(2)) out.real(41, in.f64());
  if (c.has(4)) out.real(42, in.f64());
  if (c.has(8)) out.integer(70, in.u8());
  if (c.has(16)) out.angle(50, in.f64());
  // The corners of a polyface face.
  for (int i = 0; i < 4; ++i) {
    if (c.has(uint16_t(0x20 << i))) out.integer(71 + i, in.i16());
  }
}

void writeDimension(DwgR12Cursor& in, const Common& c, const DwgR12Tables& tables, DxfTagWriter& out) {
  auto definition = [&] { return c.planar ? point2(in, c.z) : point3(in); };
  out.raw(2, dxfText(tables.blockName(in.u16())));
  out.point(10, definition());
  out.point(11, point2(in, c.z));
  if (c.has(1)) out.point(12, point2(in, c.z));
  if (c.has(2)) out.integer(70, in.u8());
  if (c.has(4)) out.raw(1, dxfText(in.text()));
  for (int i = 0; i < 3; ++i) {
    if (c.has(uint16_t(8 << i))) out.point(13 + i, definition());
  }
  if (c.has(64)) out.point(16, point2(in, c.z));
  if (c.has(128)) out.real(40, in.f64());
  if (c.has(0x100)) out.angle(50, in.f64());
  if (c.has(0x200)) out.angle(52, in.f64());
  if (c.has(0x400)) out.angle(53, in.f64());
  // The fields of bits 0x800 to 0x2000 are not known; what follows them cannot be found.
  if (c.has(0x3800)) return;
  normalIf(in, c, 0x4000, out);
  if (c.has(0x8000)) {
    uint16_t style = in.u16();
    if (style < tables.dimstyles.size()) out.raw(3, dxfText(tables.dimstyles[style].name));
  }
}

void writeViewport(DwgR12Cursor& in, const Common&, const DwgR12Tables&, DxfTagWriter& out) {
  out.point(10, point3(in));
  out.real(40, in.f64());
  out.real(41, in.f64());
  uint16_t id = in.u16();
  out.integer(68, id);
  out.integer(69, id);
}

void writeNothing(DwgR12Cursor&, const Common&, const DwgR12Tables&, DxfTagWriter&) {}

// The end of a repeat block (R2 files): columns and rows, then their spacing, in DXF's order.
void writeEndRepeat(DwgR12Cursor& in, const Common&, const DwgR12Tables&, DxfTagWriter& out) {
  out.integer(70, in.u16());
  out.integer(71, in.u16());
  out.real(40, in.f64());
  out.real(41, in.f64());
}

using KindWriter = void (*)(DwgR12Cursor&, const Common&, const DwgR12Tables&, DxfTagWriter&);

struct KindInfo {
  const char* dxfName;
  KindWriter write;
};

// Kinds without an entry (shape file loads, jumps) draw nothing and are skipped. Repeat blocks
// are carried over as DXF writes them.
const KindInfo* kindInfo(uint8_t kind) {
  static const KindInfo kLineInfo{"LINE", writeLine}, kPointInfo{"POINT", writePoint},
      kCircleInfo{"CIRCLE", writeCircle}, kShapeInfo{"SHAPE", writeShape}, kTextInfo{"TEXT", writeText},
      kArcInfo{"ARC", writeArc}, kTraceInfo{"TRACE", writeQuad}, kSolidInfo{"SOLID", writeQuad},
      kInsertInfo{"INSERT", writeInsert}, kAttdefInfo{"ATTDEF", writeAttribute}, kAttribInfo{"ATTRIB", writeAttribute},
      kSeqendInfo{"SEQEND", writeNothing}, kPolylineInfo{"POLYLINE", writePolyline}, kVertexInfo{"VERTEX", writeVertex},
      kFaceInfo{"3DFACE", writeFace}, kDimensionInfo{"DIMENSION", writeDimension},
      kViewportInfo{"VIEWPORT", writeViewport}, kRepeatInfo{"REPEAT", writeNothing},
      kEndRepeatInfo{"ENDREP", writeEndRepeat};
  switch (kind) {
    case kLine: case kLine3d: return &kLineInfo;
    case kPoint: return &kPointInfo;
    case kCircle: return &kCircleInfo;
    case kShape: return &kShapeInfo;
    case kRepeat: return &kRepeatInfo;
    case kEndRepeat: return &kEndRepeatInfo;
    case kText: return &kTextInfo;
    case kArc: return &kArcInfo;
    case kTrace: return &kTraceInfo;
    case kSolid: return &kSolidInfo;
    case kInsert: return &kInsertInfo;
    case kAttdef: return &kAttdefInfo;
    case kAttrib: return &kAttribInfo;
    case kSeqend: return &kSeqendInfo;
    case kPolyline: case kClosedPolyline: return &kPolylineInfo;
    case kVertex: return &kVertexInfo;
    case kFace: return &kFaceInfo;
    case kDimension: return &kDimensionInfo;
    case kViewport: return &kViewportInfo;
    default: return nullptr;
  }
}

struct Record {
  size_t offset = 0;
  uint8_t kind = 0;
  uint8_t flags = 0;
  std::string_view body;  // after the length, without the check bytes
  size_t length = 0;
};

// The record at `offset`, checked against the section; `tail` check bytes close it.
Record recordAt(std::string_view section, size_t offset, size_t tail, const char* sectionName) {
  if (section.size() - offset < kRecordHeader) {
    throw DwgFormatError{eEndOfFile, std::string("the ") + sectionName + " section ends within the record at +" + dwgR12Offset(offset)};
  }
  const auto* p = reinterpret_cast<const uint8_t*>(section.data()) + offset;
  uint16_t length = dwgLe16(p + 2);
  if (length < kRecordHeader + tail || length > section.size() - offset) {
    throw DwgFormatError{eInvalidDrawing, std::string("the record at +") + dwgR12Offset(offset) + " of the " + sectionName +
                                              " section has the impossible length " + std::to_string(length)};
  }
  return {offset, p[0], p[1], section.substr(offset + kRecordHeader, length - kRecordHeader - tail), length};
}

size_t nextOffset(const Record& r) { return r.offset + r.length; }

void writeEntity(const Record& r, const KindInfo& info, const DwgR12Release& release, const DwgR12Tables& tables,
                 DxfTagWriter& out) {
  DwgR12Cursor in(r.body, "the " + std::string(info.dxfName) + " record at +" + dwgR12Offset(r.offset));
  Common c = readCommon(in, r.kind, r.flags, release, tables, out, info.dxfName);
  info.write(in, c, tables, out);
  if (!c.extendedData.empty()) writeDwgR12ExtendedData(c.extendedData, tables, out);
}

bool erased(uint8_t kind) { return kind & 0x80; }

// A block's BLOCK record: named by the table record that points at it, else by its own name.
void writeBlockStart(const Record& r, const DwgR12Release& release, const DwgR12Tables& tables, DxfTagWriter& out) {
  DwgR12Cursor in(r.body, "the BLOCK record at +" + dwgR12Offset(r.offset));
  uint16_t layer = in.u16();
  uint16_t options = in.u16();
  uint8_t extra = (r.flags & kHasExtra) ? in.u8() : 0;
  if (extra & kHasExtendedData) in.skip(in.u16());
  if (r.flags & kHasColor) in.skip(1);
  if (r.flags & kHasLinetype) in.skip(release.r12() ? 2 : 1);
  double z = (r.flags & kHasElevation) ? in.f64() : 0.0;
  if (r.flags & kHasThickness) in.skip(8);
  if (r.flags & kHasHandle) in.skip(in.u8());
  if (extra & kHasViewport) in.skip(2);
  OdGePoint3d base = point2(in, z);
  if (options & 2) in.text();  // the path of an external reference
  std::string ownName = (options & 4) ? in.text() : std::string();
  int index = tables.blockAtOffset(uint32_t(r.offset));
  std::string name = index >= 0 ? tables.blockName(uint16_t(index)) : ownName;
  if (name.empty()) name = "*U" + std::to_string(r.offset);
  name = dxfText(name);
  out.raw(0, "BLOCK");
  out.raw(8, dxfText(tables.layerName(layer)));
  out.raw(2, name);
  out.integer(70, index >= 0 ? tables.blocks[size_t(index)].flags & 0x7f : 0);
  out.point(10, base);
  out.raw(3, name);
}

}  // namespace

void writeDwgR12Entities(std::string_view section, const DwgR12Release& release, const DwgR12Tables& tables,
                         DxfTagWriter& out) {
  out.raw(0, "SECTION");
  out.raw(2, "ENTITIES");
  for (size_t offset = 0; offset < section.size();) {
    Record r = recordAt(section, offset, release.entityTail, "entity");
    offset = nextOffset(r);
    if (erased(r.kind) || r.kind == kBlock || r.kind == kEndBlock) continue;
    if (const KindInfo* info = kindInfo(r.kind)) writeEntity(r, *info, release, tables, out);
  }
  out.raw(0, "ENDSEC");
}

void writeDwgR12Blocks(std::string_view section, const DwgR12Release& release, const DwgR12Tables& tables,
                       DxfTagWriter& out) {
  out.raw(0, "SECTION");
  out.raw(2, "BLOCKS");
  bool open = false;
  for (size_t offset = 0; offset < section.size();) {
    Record r = recordAt(section, offset, release.entityTail, "block entity");
    offset = nextOffset(r);
    if (erased(r.kind)) continue;
    if (r.kind == kBlock || r.kind == kEndBlock) {
      if (open) {
        out.raw(0, "ENDBLK");
        out.raw(8, "0");
      }
      open = r.kind == kBlock;
      if (open) writeBlockStart(r, release, tables, out);
      continue;
    }
    const KindInfo* info = kindInfo(r.kind);
    if (info && open) writeEntity(r, *info, release, tables, out);
  }
  if (open) {
    out.raw(0, "ENDBLK");
    out.raw(8, "0");
  }
  out.raw(0, "ENDSEC");
}

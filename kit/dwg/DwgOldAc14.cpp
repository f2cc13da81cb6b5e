#include "kit/dwg/DwgOldAc14.h"

#include <set>

#include "kit/dwg/DwgR12Cursor.h"
#include "kit/dwg/DwgR12Text.h"
#include "kit/dxf/DxfTagWriter.h"

namespace {

// The entity records follow the fixed header; the header gives where they end and how many
// there are.
constexpr size_t kEntitiesStart = 0x202;
constexpr size_t kEntitiesEnd = 0x24;
constexpr size_t kEntityCount = 0x28;
constexpr size_t kLayerColors = 0xc8;  // 128 colours, 255 for a layer not in use
constexpr size_t kLayerSlots = 128;

enum Kind : int16_t {
  kLine = 1, kPoint = 2, kCircle = 3, kShape = 4, kRepeat = 5, kEndRepeat = 6, kText = 7, kArc = 8,
  kTrace = 9, kLoad = 10, kSolid = 11, kBlock = 12, kEndBlock = 13, kInsert = 14,
};

OdGePoint3d point(DwgR12Cursor& in) {
  double x = in.f64();
  return {x, in.f64(), 0};
}

std::string name(DwgR12Cursor& in) { return dxfText(in.text()); }

// The header settings at their offsets; the drawing's extents, limits and view are points of
// two coordinates.
void writeHeader(std::string_view bytes, DxfTagWriter& out) {
  DwgR12Cursor in(bytes.substr(0, kEntitiesStart), "the header");
  auto pointAt = [&](size_t offset) {
    DwgR12Cursor at = in;
    at.skip(offset);
    return point(at);
  };
  auto realAt = [&](size_t offset) {
    DwgR12Cursor at = in;
    at.skip(offset);
    return at.f64();
  };
  out.raw(0, "SECTION");
  out.raw(2, "HEADER");
  out.raw(9, "$ACADVER");
  out.raw(1, "AC1.40");
  out.raw(9, "$EXTMIN");
  out.point(10, pointAt(0x32));
  out.raw(9, "$EXTMAX");
  out.point(10, pointAt(0x42));
  out.raw(9, "$LIMMIN");
  out.point(10, OdGePoint2d{realAt(0x5a), realAt(0x62)});
  out.raw(9, "$LIMMAX");
  out.point(10, OdGePoint2d{realAt(0x6a), realAt(0x72)});
  out.raw(9, "$VIEWCTR");
  out.point(10, OdGePoint2d{realAt(0x7a), realAt(0x82)});
  out.raw(9, "$VIEWSIZE");
  out.real(40, realAt(0x92));
  out.raw(9, "$TEXTSIZE");
  out.real(40, realAt(0xb4));
  out.raw(9, "$TRACEWID");
  out.real(40, realAt(0xbc));
  out.raw(0, "ENDSEC");
}

// Layers are numbers; those the entities use are written with their colour (7 where the file
// has none of 1 to 255).
void writeTables(std::string_view bytes, const std::set<int>& layers, DxfTagWriter& out) {
  out.raw(0, "SECTION");
  out.raw(2, "TABLES");
  out.raw(0, "TABLE");
  out.raw(2, "LTYPE");
  out.integer(70, 1);
  out.raw(0, "LTYPE");
  out.raw(2, "CONTINUOUS");
  out.integer(70, 0);
  out.raw(3, "Solid line");
  out.integer(72, 'A');
  out.integer(73, 0);
  out.real(40, 0);
  out.raw(0, "ENDTAB");
  out.raw(0, "TABLE");
  out.raw(2, "LAYER");
  out.integer(70, int64_t(layers.size()));
  DwgR12Cursor colors(bytes.substr(kLayerColors, kLayerSlots * 2), "the layer colours");
  for (int layer : layers) {
    DwgR12Cursor at = colors;
    int color = 7;
    if (layer < int(kLayerSlots)) {
      at.skip(size_t(layer) * 2);
      int16_t stored = at.i16();
      if (stored >= 1 && stored <= 255) color = stored;
    }
    out.raw(0, "LAYER");
    out.raw(2, std::to_string(layer));
    out.integer(70, 0);
    out.integer(62, color);
    out.raw(6, "CONTINUOUS");
  }
  out.raw(0, "ENDTAB");
  out.raw(0, "ENDSEC");
}

// Writes the record's groups to `out`; erased records are read past and written nowhere.
void writeFields(DwgR12Cursor& in, int kind, DxfTagWriter& out) {
  switch (kind) {
    case kLine:
      out.point(10, point(in));
      out.point(11, point(in));
      break;
    case kPoint: out.point(10, point(in)); break;
    case kCircle:
    case kArc:
      out.point(10, point(in));
      out.real(40, in.f64());
      if (kind == kArc) {
        out.angle(50, in.f64());
        out.angle(51, in.f64());
      }
      break;
    case kShape:  // named by its number in the loaded shape file, which DXF cannot say
      out.point(10, point(in));
      out.real(40, in.f64());
      out.angle(50, in.f64());
      in.skip(2);  // the shape's number
      break;
    case kText: {
      out.point(10, point(in));
      out.real(40, in.f64());
      out.angle(50, in.f64());
      out.raw(1, name(in));
      break;
    }
    case kEndRepeat:
      out.integer(70, in.u16());
      out.integer(71, in.u16());
      out.real(40, in.f64());
      out.real(41, in.f64());
      break;
    case kTrace:
    case kSolid:
      for (int corner = 0; corner < 4; ++corner) out.point(10 + corner, point(in));
      break;
    case kInsert: {
      out.raw(2, name(in));
      out.point(10, point(in));
      out.real(41, in.f64());
      out.real(42, in.f64());
      out.angle(50, in.f64());
      break;
    }
    default: break;  // REPEAT has no fields
  }
}

const char* dxfKind(int kind) {
  static const char* const kNames[] = {nullptr, "LINE", "POINT", "CIRCLE", "SHAPE", "REPEAT", "ENDREP", "TEXT",
                                       "ARC", "TRACE", nullptr, "SOLID", nullptr, nullptr, "INSERT"};
  return kind > 0 && kind <= kInsert ? kNames[kind] : nullptr;
}

}  // namespace

bool isDwgAc14(std::string_view bytes) { return bytes.substr(0, 6) == "AC1.40"; }

std::string dwgAc14ToDxf(std::string_view bytes) {
  if (bytes.size() < kEntitiesStart) {
    throw DwgFormatError{eEndOfFile, "the file ends within its header (" + std::to_string(bytes.size()) + " bytes)"};
  }
  DwgR12Cursor header(bytes.substr(0, kEntitiesStart), "the header");
  DwgR12Cursor endAt = header, countAt = header;
  endAt.skip(kEntitiesEnd);
  countAt.skip(kEntityCount);
  uint32_t end = endAt.u32();
  uint16_t count = countAt.u16();
  if (end < kEntitiesStart || end > bytes.size()) {
    throw DwgFormatError{end > bytes.size() ? eEndOfFile : eInvalidDrawing,
                         "the entities (" + dwgR12Offset(kEntitiesStart) + " to " + dwgR12Offset(end) + ") lie outside the file of " +
                             std::to_string(bytes.size()) + " bytes"};
  }
  const std::string_view section = bytes.substr(kEntitiesStart, end - kEntitiesStart);
  DxfTagWriter blocks, entities, nowhere;
  blocks.raw(0, "SECTION");
  blocks.raw(2, "BLOCKS");
  entities.raw(0, "SECTION");
  entities.raw(2, "ENTITIES");
  std::set<int> layers{0};
  bool inBlock = false;
  size_t offset = 0;
  for (uint16_t i = 0; i < count; ++i) {
    DwgR12Cursor in(section.substr(offset), "the record at " + dwgR12Offset(kEntitiesStart + offset));
    int kind = in.i16();
    int layer = in.u16();
    bool erased = kind < 0;
    if (erased) kind = -kind;
    if (kind == kBlock || kind == kEndBlock || kind == kLoad) {
      std::string text = kind == kEndBlock ? std::string() : name(in);
      OdGePoint3d base = kind == kBlock ? point(in) : OdGePoint3d{};
      offset += in.position();
      if (erased) continue;
      if (kind == kBlock) {
        if (inBlock) in.fail("a block begins within a block");
        inBlock = true;
        blocks.raw(0, "BLOCK");
        blocks.raw(8, "0");
        blocks.raw(2, text);
        blocks.integer(70, 0);
        blocks.point(10, base);
        blocks.raw(3, text);
      } else if (kind == kEndBlock) {
        if (!inBlock) in.fail("a block ends outside any block");
        inBlock = false;
        blocks.raw(0, "ENDBLK");
        blocks.raw(8, "0");
      }
      continue;
    }
    const char* dxfName = dxfKind(kind);
    if (!dxfName) in.fail("its kind " + std::to_string(kind) + " is not known");
    DxfTagWriter& out = erased ? nowhere : inBlock ? blocks : entities;
    out.raw(0, dxfName);
    out.raw(8, std::to_string(layer));
    writeFields(in, kind, out);
    offset += in.position();
    if (!erased) layers.insert(layer);
  }
  if (inBlock) throw DwgFormatError{eInvalidDrawing, "the last block has no end"};
  blocks.raw(0, "ENDSEC");
  entities.raw(0, "ENDSEC");
  entities.raw(0, "EOF");
  DxfTagWriter head;
  writeHeader(bytes, head);
  writeTables(bytes, layers, head);
  return head.takeBuffer() + blocks.takeBuffer() + entities.takeBuffer();
}

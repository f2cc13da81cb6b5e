#include "kit/dwg/DwgR12Tables.h"

#include "kit/dwg/DwgR12Cursor.h"
#include "kit/dxf/DxfTagWriter.h"

namespace {

constexpr size_t kNameWidth = 32;

// Every record opens with its flags and its name, then (R11/R12) a word that is -1 in all files
// seen. Tables the release has no descriptor for stay empty.
template <typename Record>
std::vector<Record> readTable(const DwgR12File& file, R12Table table, const char* name,
                              void (*fields)(DwgR12Cursor&, Record&, const DwgR12Release&)) {
  std::vector<Record> records;
  for (size_t i = 0; i < file.table(table).count; ++i) {
    DwgR12Cursor in(file.record(table, i), std::string(name) + " record " + std::to_string(i));
    Record r;
    r.flags = in.u8();
    r.name = in.fixedText(kNameWidth);
    in.skip(file.release->recordWord);
    if (fields) fields(in, r, *file.release);
    records.push_back(std::move(r));
  }
  return records;
}

void layerFields(DwgR12Cursor& in, DwgR12Layer& r, const DwgR12Release&) {
  r.color = in.i16();
  r.linetype = in.u16();
}

void styleFields(DwgR12Cursor& in, DwgR12Style& r, const DwgR12Release& release) {
  r.height = in.f64();
  r.widthFactor = in.f64();
  r.oblique = in.f64();
  r.generation = in.u8();
  r.lastHeight = in.f64();
  r.font = in.fixedText(64);
  if (release.bigFont) r.bigFont = in.fixedText(64);
}

void linetypeFields(DwgR12Cursor& in, DwgR12Linetype& r, const DwgR12Release&) {
  constexpr size_t kDashSlots = 12;
  r.description = in.fixedText(48);
  r.alignment = in.u8();
  uint8_t count = in.u8();
  r.patternLength = in.f64();
  if (count > kDashSlots) in.fail("it has " + std::to_string(count) + " dashes, more than its " + std::to_string(kDashSlots) + " places");
  for (size_t i = 0; i < kDashSlots; ++i) {
    double dash = in.f64();
    if (i < count) r.dashes.push_back(dash);
  }
}

void blockFields(DwgR12Cursor& in, DwgR12Block& r, const DwgR12Release&) { r.offset = in.u32() & 0x00ffffff; }

void vportFields(DwgR12Cursor& in, DwgR12Vport& r, const DwgR12Release&) {
  for (size_t i = 0; i < 18; ++i) r.values[i] = in.f64();
  for (int16_t& m : r.modes) m = in.i16();
  for (size_t i = 18; i < 25; ++i) r.values[i] = in.f64();
}

template <typename Record>
const std::string& namedIn(const std::vector<Record>& records, uint16_t index, const char* what) {
  if (index >= records.size()) {
    throw DwgFormatError{eInvalidDrawing, std::string("an entity names ") + what + " " + std::to_string(index) +
                                              " of " + std::to_string(records.size())};
  }
  return records[index].name;
}

void beginTable(DxfTagWriter& out, const char* name, size_t count) {
  out.raw(0, "TABLE");
  out.raw(2, name);
  out.integer(70, int64_t(count));
}

// The common groups of a record; deleted records are left out.
template <typename Record>
bool beginRecord(DxfTagWriter& out, const char* kind, const Record& r) {
  if (r.deleted()) return false;
  out.raw(0, kind);
  out.raw(2, r.name);
  out.integer(70, r.flags);
  return true;
}

void writeVports(const DwgR12Tables& t, DxfTagWriter& out) {
  beginTable(out, "VPORT", t.vports.size());
  for (const DwgR12Vport& v : t.vports) {
    if (!beginRecord(out, "VPORT", v)) continue;
    const double* d = v.values;
    out.point(10, OdGePoint2d{d[0], d[1]});
    out.point(11, OdGePoint2d{d[2], d[3]});
    out.point(17, OdGePoint3d{d[4], d[5], d[6]});
    out.point(16, OdGePoint3d{d[7], d[8], d[9]});
    out.angle(51, d[10]);
    out.real(40, d[11]);
    out.point(12, OdGePoint2d{d[12], d[13]});
    out.real(41, d[14]);
    out.real(42, d[15]);
    out.real(43, d[16]);
    out.real(44, d[17]);
    for (int i = 0; i < 8; ++i) out.integer(71 + i, v.modes[i]);
    out.point(13, OdGePoint2d{d[18], d[19]});
    out.angle(50, d[20]);
    out.point(14, OdGePoint2d{d[21], d[22]});
    out.point(15, OdGePoint2d{d[23], d[24]});
  }
  out.raw(0, "ENDTAB");
}

void writeLinetypes(const DwgR12Tables& t, DxfTagWriter& out) {
  beginTable(out, "LTYPE", t.linetypes.size());
  for (const DwgR12Linetype& l : t.linetypes) {
    if (!beginRecord(out, "LTYPE", l)) continue;
    out.raw(3, l.description);
    out.integer(72, l.alignment);
    out.integer(73, int64_t(l.dashes.size()));
    out.real(40, l.patternLength);
    for (double dash : l.dashes) out.real(49, dash);
  }
  out.raw(0, "ENDTAB");
}

void writeLayers(const DwgR12Tables& t, DxfTagWriter& out) {
  beginTable(out, "LAYER", t.layers.size());
  for (const DwgR12Layer& l : t.layers) {
    if (!beginRecord(out, "LAYER", l)) continue;
    out.integer(62, l.color);
    out.raw(6, t.linetypeName(l.linetype));
  }
  out.raw(0, "ENDTAB");
}

void writeStyles(const DwgR12Tables& t, DxfTagWriter& out) {
  beginTable(out, "STYLE", t.styles.size());
  for (const DwgR12Style& s : t.styles) {
    if (!beginRecord(out, "STYLE", s)) continue;
    out.real(40, s.height);
    out.real(41, s.widthFactor);
    out.angle(50, s.oblique);
    out.integer(71, s.generation);
    out.real(42, s.lastHeight);
    out.raw(3, s.font);
    out.raw(4, s.bigFont);
  }
  out.raw(0, "ENDTAB");
}

void writeNamesOnly(const std::vector<DwgR12Record>& records, const char* kind, DxfTagWriter& out) {
  beginTable(out, kind, records.size());
  for (const DwgR12Record& r : records) beginRecord(out, kind, r);
  out.raw(0, "ENDTAB");
}

}  // namespace

const std::string& DwgR12Tables::layerName(uint16_t index) const { return namedIn(layers, index, "layer"); }

std::string DwgR12Tables::linetypeName(uint16_t index) const {
  if (index == byLayer) return "BYLAYER";
  if (index == byBlock) return "BYBLOCK";
  return namedIn(linetypes, index, "linetype");
}

const std::string& DwgR12Tables::styleName(uint16_t index) const { return namedIn(styles, index, "text style"); }

const std::string& DwgR12Tables::appName(uint16_t index) const { return namedIn(appids, index, "application"); }

std::string DwgR12Tables::blockName(uint16_t index) const {
  const std::string& name = namedIn(blocks, index, "block");
  return !name.empty() && name[0] == '*' ? name + std::to_string(index) : name;
}

int DwgR12Tables::blockAtOffset(uint32_t offset) const {
  for (size_t i = 0; i < blocks.size(); ++i) {
    if (blocks[i].offset == offset && !blocks[i].deleted()) return int(i);
  }
  return -1;
}

DwgR12Tables readDwgR12Tables(const DwgR12File& file) {
  DwgR12Tables t;
  t.byLayer = file.release->byLayer();
  t.byBlock = file.release->byBlock();
  t.blocks = readTable<DwgR12Block>(file, R12Table::kBlock, "block", blockFields);
  t.layers = readTable<DwgR12Layer>(file, R12Table::kLayer, "layer", layerFields);
  t.styles = readTable<DwgR12Style>(file, R12Table::kStyle, "style", styleFields);
  t.linetypes = readTable<DwgR12Linetype>(file, R12Table::kLinetype, "linetype", linetypeFields);
  t.vports = readTable<DwgR12Vport>(file, R12Table::kVport, "viewport", vportFields);
  t.appids = readTable<DwgR12Record>(file, R12Table::kAppid, "application", nullptr);
  t.dimstyles = readTable<DwgR12Record>(file, R12Table::kDimstyle, "dimension style", nullptr);
  return t;
}

void writeDwgR12Tables(const DwgR12Tables& t, DxfTagWriter& out) {
  out.raw(0, "SECTION");
  out.raw(2, "TABLES");
  writeVports(t, out);
  writeLinetypes(t, out);
  writeLayers(t, out);
  writeStyles(t, out);
  writeNamesOnly(t.appids, "APPID", out);
  writeNamesOnly(t.dimstyles, "DIMSTYLE", out);
  out.raw(0, "ENDSEC");
}

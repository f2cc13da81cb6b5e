// TABLES section: VPORT, LTYPE, LAYER, STYLE, VIEW, UCS, APPID, DIMSTYLE and BLOCK_RECORD, each
// "0 TABLE" with its records in the database's order and "0 ENDTAB".
#include "kit/dxf/DxfWriterSections.h"

namespace {

template <class Record>
void recordStart(DxfWriterContext& c, const char* kind, const Record& r, const SymbolTableBase& table,
                 const char* subclass) {
  c.objectStart(kind, r, r.handle, c.handles.table(table), r.type == DbType::kDimStyle ? 105 : 5);
  c.out.raw(100, "AcDbSymbolTableRecord");
  c.out.raw(100, subclass);
  c.out.text(2, r.name);
}

void writeViewportRecord(DxfWriterContext& c, const ViewportRecord& v, const SymbolTableBase& table) {
  recordStart(c, "VPORT", v, table, "AcDbViewportTableRecord");
  c.out.integer(70, v.flags);
  c.out.point(10, v.lowerLeft);
  c.out.point(11, v.upperRight);
  c.out.point(12, v.center);
  c.out.point(13, v.snapBase);
  c.out.point(14, v.snapSpacing);
  c.out.point(15, v.gridSpacing);
  c.out.point(16, v.viewDirection);
  c.out.point(17, v.target);
  c.out.real(40, v.height);
  c.out.real(41, v.aspectRatio);
  c.out.real(42, v.lensLength);
  c.out.real(43, v.frontClip);
  c.out.real(44, v.backClip);
  c.out.angle(50, v.snapRotation);
  c.out.angle(51, v.twist);
  c.out.integer(71, v.viewMode);
  c.out.integer(72, v.circleSides);
  c.out.integer(281, v.renderMode);
  c.out.point(110, v.ucsOrigin);
  c.out.point(111, v.ucsXAxis);
  c.out.point(112, v.ucsYAxis);
  c.extendedData(v);
}

void writeLinetype(DxfWriterContext& c, const LinetypeRecord& t, const SymbolTableBase& table) {
  recordStart(c, "LTYPE", t, table, "AcDbLinetypeTableRecord");
  c.out.integer(70, t.flags);
  c.out.text(3, t.description);
  c.out.integer(72, t.alignment);
  c.out.integer(73, int64_t(t.dashes.size()));
  c.out.real(40, t.patternLength);
  for (const LinetypeDash& d : t.dashes) {
    c.out.real(49, d.length);
    c.out.integer(74, d.shapeFlags);
    if (!d.hasShapeOrText()) continue;
    c.out.integer(75, d.shapeNumber);
    OdDbHandle style = d.style ? d.style->handle : d.styleHandle;
    c.out.handle(340, style);
    c.out.real(46, d.scale);
    c.out.angle(50, d.rotation);
    c.out.real(44, d.offsetX);
    c.out.real(45, d.offsetY);
    if (d.shapeFlags & LinetypeDash::kText) c.out.text(9, d.text);
  }
  c.extendedData(t);
}

void writeLayer(DxfWriterContext& c, const LayerRecord& l, const SymbolTableBase& table) {
  recordStart(c, "LAYER", l, table, "AcDbLayerTableRecord");
  c.out.integer(70, l.flags);
  int aci = l.color.isByACI() ? l.color.colorIndex() : 7;
  c.out.integer(62, l.isOff() ? -aci : aci);
  if (l.color.isByColor()) c.out.integer(420, int64_t(l.color.rgb()));
  c.out.text(6, recordName(l.linetype, "Continuous"));
  if (!l.plottable) c.out.boolean(290, false);
  c.out.integer(370, l.lineweight);
  if (c.existing(l.plotStyle).value()) c.out.handle(390, l.plotStyle);
  if (c.existing(l.material).value()) c.out.handle(347, l.material);
  c.extendedData(l);
}

void writeTextStyle(DxfWriterContext& c, const TextStyleRecord& s, const SymbolTableBase& table) {
  recordStart(c, "STYLE", s, table, "AcDbTextStyleTableRecord");
  c.out.integer(70, s.flags);
  c.out.real(40, s.fixedHeight);
  c.out.real(41, s.widthFactor);
  c.out.angle(50, s.obliqueAngle);
  c.out.integer(71, s.generationFlags);
  c.out.real(42, s.lastHeight);
  c.out.text(3, s.fontFile);
  c.out.text(4, s.bigFontFile);
  c.extendedData(s);
}

void writeView(DxfWriterContext& c, const ViewRecord& v, const SymbolTableBase& table) {
  recordStart(c, "VIEW", v, table, "AcDbViewTableRecord");
  c.out.integer(70, v.flags);
  c.out.real(40, v.height);
  c.out.point(10, v.center);
  c.out.real(41, v.width);
  c.out.point(11, v.direction);
  c.out.point(12, v.target);
  c.out.real(42, v.lensLength);
  c.out.real(43, v.frontClip);
  c.out.real(44, v.backClip);
  c.out.angle(50, v.twist);
  c.out.integer(71, v.viewMode);
  c.out.integer(281, v.renderMode);
  c.out.boolean(72, v.hasUcs);
  if (v.hasUcs) {
    c.out.point(110, v.ucsOrigin);
    c.out.point(111, v.ucsXAxis);
    c.out.point(112, v.ucsYAxis);
  }
  if (c.atLeast(1021) && c.existing(v.visualStyle).value()) c.out.handle(348, v.visualStyle);
  c.extendedData(v);
}

void writeUcs(DxfWriterContext& c, const UcsRecord& u, const SymbolTableBase& table) {
  recordStart(c, "UCS", u, table, "AcDbUCSTableRecord");
  c.out.integer(70, u.flags);
  c.out.point(10, u.origin);
  c.out.point(11, u.xAxis);
  c.out.point(12, u.yAxis);
  c.out.real(146, u.elevation);
  c.extendedData(u);
}

void writeRegApp(DxfWriterContext& c, const RegAppRecord& a, const SymbolTableBase& table) {
  recordStart(c, "APPID", a, table, "AcDbRegAppTableRecord");
  c.out.integer(70, a.flags);
  c.extendedData(a);
}

// Groups a dimension style keeps that this file's version reads differently: R12 files name the
// arrow blocks with 5, 6 and 7, which are the handle and other meanings from R13 on.
bool isOldDimStyleGroup(int code) { return code == 5; }

void writeDimStyle(DxfWriterContext& c, const DimStyleRecord& d, const SymbolTableBase& table) {
  recordStart(c, "DIMSTYLE", d, table, "AcDbDimStyleTableRecord");
  c.out.integer(70, d.flags);
  for (const TaggedValue& v : d.values) {
    if (isOldDimStyleGroup(v.code)) continue;
    c.out.tagged(v);
  }
  c.extendedData(d);
}

void writeBlockRecord(DxfWriterContext& c, const BlockRecord& b, const SymbolTableBase& table) {
  recordStart(c, "BLOCK_RECORD", b, table, "AcDbBlockTableRecord");
  c.out.handle(340, c.existing(b.layout));
  if (c.atLeast(1021)) {
    c.out.integer(70, b.insertUnits);
    c.out.boolean(280, b.explodable);
    c.out.boolean(281, b.scaleUniformly);
  }
  c.extendedData(b);
}

template <class Record, class Write>
void writeTable(DxfWriterContext& c, const char* kind, const SymbolTable<Record>& table, Write write) {
  c.out.raw(0, "TABLE");
  c.out.raw(2, kind);
  c.out.handle(5, c.handles.table(table));
  c.out.handle(330, OdDbHandle());
  c.out.raw(100, "AcDbSymbolTable");
  c.out.integer(70, int64_t(table.size()));
  if constexpr (Record::kType == DbType::kDimStyle) {
    c.out.raw(100, "AcDbDimStyleTable");
    c.out.integer(71, int64_t(table.size()));
  }
  for (const Record* record : table) write(c, *record, table);
  c.out.raw(0, "ENDTAB");
}

}  // namespace

void writeTablesSection(DxfWriterContext& c) {
  const OdDbDatabase& db = c.db;
  c.out.raw(0, "SECTION");
  c.out.raw(2, "TABLES");
  writeTable(c, "VPORT", db.viewports(), writeViewportRecord);
  writeTable(c, "LTYPE", db.linetypes(), writeLinetype);
  writeTable(c, "LAYER", db.layers(), writeLayer);
  writeTable(c, "STYLE", db.textStyles(), writeTextStyle);
  writeTable(c, "VIEW", db.views(), writeView);
  writeTable(c, "UCS", db.ucss(), writeUcs);
  writeTable(c, "APPID", db.regApps(), writeRegApp);
  writeTable(c, "DIMSTYLE", db.dimStyles(), writeDimStyle);
  writeTable(c, "BLOCK_RECORD", db.blocks(), writeBlockRecord);
  c.out.raw(0, "ENDSEC");
}

// OBJECTS section: the root dictionary first, then every object in the database's order:
// dictionaries, layouts and page setups, image and underlay definitions, groups, xrecords,
// spatial filters, multiline styles, draw order tables, and every other object with the groups
// kept when it was read.
#include "kit/dxf/DxfWriterSections.h"

namespace {

void start(DxfWriterContext& c, std::string_view dxfName, const DbObject& o) {
  OdDbHandle owner = o.ownerHandle;
  if (!c.db.find(owner)) {
    // Files that leave owners out: the dictionary that lists the object owns it.
    auto it = c.listingDictionary.find(o.handle.value());
    owner = it != c.listingDictionary.end() ? it->second : OdDbHandle();
  }
  c.objectStart(dxfName, o, o.handle, owner);
}

void writeDictionary(DxfWriterContext& c, const Dictionary& d) {
  start(c, d.withDefault ? "ACDBDICTIONARYWDFLT" : "DICTIONARY", d);
  c.out.raw(100, "AcDbDictionary");
  if (d.hardOwner) c.out.boolean(280, true);
  c.out.integer(281, d.cloning);
  for (const DictionaryEntry& entry : d.entries) {
    if (!c.db.find(entry.handle)) continue;  // an entry naming nothing would not load elsewhere
    c.out.text(3, entry.name);
    c.out.handle(d.hardOwner ? 360 : 350, entry.handle);
  }
  if (d.withDefault) {
    c.out.raw(100, "AcDbDictionaryWithDefault");
    c.out.handle(340, d.defaultEntry);
  }
  c.extendedData(d);
}

void writePlotSettings(DxfWriterContext& c, const PlotSettingsData& p) {
  c.out.raw(100, "AcDbPlotSettings");
  c.out.text(1, p.pageSetupName);
  c.out.text(2, p.plotConfiguration);
  c.out.text(4, p.paperSizeName);
  c.out.text(6, p.plotViewName);
  c.out.real(40, p.marginLeft);
  c.out.real(41, p.marginBottom);
  c.out.real(42, p.marginRight);
  c.out.real(43, p.marginTop);
  c.out.real(44, p.paperWidth);
  c.out.real(45, p.paperHeight);
  c.out.real(46, p.plotOriginX);
  c.out.real(47, p.plotOriginY);
  c.out.real(48, p.plotWindowMin.x);
  c.out.real(49, p.plotWindowMin.y);
  c.out.real(140, p.plotWindowMax.x);
  c.out.real(141, p.plotWindowMax.y);
  c.out.real(142, p.scaleNumerator);
  c.out.real(143, p.scaleDenominator);
  c.out.integer(70, p.plotFlags);
  c.out.integer(72, p.paperUnits);
  c.out.integer(73, p.plotRotation);
  c.out.integer(74, p.plotType);
  c.out.text(7, p.styleSheet);
  c.out.integer(75, p.standardScaleType);
  c.out.integer(76, p.shadePlotMode);
  c.out.integer(77, p.shadePlotResolution);
  c.out.integer(78, p.shadePlotDpi);
  c.out.real(147, p.standardScaleFactor);
  c.out.real(148, p.paperImageOrigin.x);
  c.out.real(149, p.paperImageOrigin.y);
  if (c.atLeast(1021) && c.existing(p.shadePlot).value()) c.out.handle(333, p.shadePlot);
}

void writeLayout(DxfWriterContext& c, const Layout& l) {
  start(c, "LAYOUT", l);
  writePlotSettings(c, l);
  c.out.raw(100, "AcDbLayout");
  c.out.text(1, l.name);
  c.out.integer(70, l.layoutFlags);
  c.out.integer(71, l.tabOrder);
  c.out.point(10, l.limMin);
  c.out.point(11, l.limMax);
  c.out.point(12, l.insertionBase);
  c.out.point(14, l.extMin);
  c.out.point(15, l.extMax);
  c.out.real(146, l.elevation);
  c.out.point(13, l.ucsOrigin);
  c.out.point(16, l.ucsXAxis);
  c.out.point(17, l.ucsYAxis);
  c.out.integer(76, l.ucsOrthoType);
  c.out.handle(330, l.block ? l.block->handle : l.blockRecordHandle);
  if (c.existing(l.lastActiveViewport).value()) c.out.handle(331, l.lastActiveViewport);
  if (c.existing(l.ucs).value()) c.out.handle(345, l.ucs);
  c.extendedData(l);
}

void writePlotSettingsObject(DxfWriterContext& c, const PlotSettingsObject& p) {
  start(c, "PLOTSETTINGS", p);
  writePlotSettings(c, p);
  c.extendedData(p);
}

void writeImageDefinition(DxfWriterContext& c, const RasterImageDefObject& d) {
  start(c, "IMAGEDEF", d);
  c.out.raw(100, "AcDbRasterImageDef");
  c.out.integer(90, d.classVersion);
  c.out.text(1, d.fileName);
  c.out.point(10, d.imageSize);
  c.out.point(11, d.pixelSize);
  c.out.boolean(280, d.loaded);
  c.out.integer(281, d.resolutionUnits);
  c.extendedData(d);
}

void writeGroup(DxfWriterContext& c, const GroupObject& g) {
  start(c, "GROUP", g);
  c.out.raw(100, "AcDbGroup");
  c.out.text(300, g.description);
  c.out.boolean(70, g.unnamed);
  c.out.boolean(71, g.selectable);
  for (OdDbHandle h : g.entities) {
    if (c.db.find(h)) c.out.handle(340, h);
  }
  c.extendedData(g);
}

void writeXRecord(DxfWriterContext& c, const XRecordObject& x) {
  start(c, "XRECORD", x);
  c.out.raw(100, "AcDbXrecord");
  c.out.integer(280, x.cloning);
  for (const TaggedValue& v : x.values) c.out.tagged(v);
  c.extendedData(x);
}

void writeMatrix(DxfWriterContext& c, const OdGeMatrix3d& m) {
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 4; ++column) c.out.real(40, m.entry[row][column]);
  }
}

void writeSpatialFilter(DxfWriterContext& c, const SpatialFilterObject& f) {
  start(c, "SPATIAL_FILTER", f);
  c.out.raw(100, "AcDbFilter");
  c.out.raw(100, "AcDbSpatialFilter");
  c.out.integer(70, int64_t(f.boundary.size()));
  for (const OdGePoint2d& p : f.boundary) c.out.point(10, p);
  c.out.point(210, f.normal);
  c.out.point(11, f.origin);
  c.out.boolean(71, f.displayBoundary);
  c.out.boolean(72, f.frontClipEnabled);
  if (f.frontClipEnabled) c.out.real(40, f.frontClip);
  c.out.boolean(73, f.backClipEnabled);
  if (f.backClipEnabled) c.out.real(41, f.backClip);
  writeMatrix(c, f.inverseInsertTransform);
  writeMatrix(c, f.clipTransform);
  c.extendedData(f);
}

void writeMLineStyle(DxfWriterContext& c, const MLineStyleObject& s) {
  start(c, "MLINESTYLE", s);
  c.out.raw(100, "AcDbMlineStyle");
  c.out.text(2, s.name);
  c.out.integer(70, s.flags);
  c.out.text(3, s.description);
  c.out.integer(62, s.fillColor.isByColor() ? 256 : s.fillColor.colorIndex());
  if (s.fillColor.isByColor()) c.out.integer(420, int64_t(s.fillColor.rgb()));
  c.out.angle(51, s.startAngle);
  c.out.angle(52, s.endAngle);
  c.out.integer(71, int64_t(s.elements.size()));
  for (const MLineStyleElement& e : s.elements) {
    c.out.real(49, e.offset);
    c.out.integer(62, e.color.isByColor() ? 256 : e.color.colorIndex());
    if (e.color.isByColor()) c.out.integer(420, int64_t(e.color.rgb()));
    c.out.text(6, e.linetypeName);
  }
  c.extendedData(s);
}

void writeSortEntsTable(DxfWriterContext& c, const SortEntsTableObject& t) {
  start(c, "SORTENTSTABLE", t);
  c.out.raw(100, "AcDbSortentsTable");
  c.out.handle(330, t.blockRecordHandle);
  for (const auto& [entity, sort] : t.entries) {
    c.out.handle(331, entity);
    c.out.handle(5, sort);
  }
  c.extendedData(t);
}

void writeUnderlayDefinition(DxfWriterContext& c, const UnderlayDefinitionObject& d) {
  const char* name = d.format == UnderlayDefinitionObject::Format::kPdf   ? "PDFDEFINITION"
                     : d.format == UnderlayDefinitionObject::Format::kDwf ? "DWFDEFINITION"
                                                                          : "DGNDEFINITION";
  start(c, name, d);
  c.out.raw(100, "AcDbUnderlayDefinition");
  c.out.text(1, d.fileName);
  c.out.text(2, d.itemName);
  c.extendedData(d);
}

void writeGenericObject(DxfWriterContext& c, const GenericObject& g) {
  start(c, g.dxfName, g);
  for (const TaggedValue& v : g.data) c.out.tagged(v);
  c.extendedData(g);
}

void writeObject(DxfWriterContext& c, const DbObject& o) {
  switch (o.type) {
    case DbType::kDictionary: writeDictionary(c, static_cast<const Dictionary&>(o)); break;
    case DbType::kLayout: writeLayout(c, static_cast<const Layout&>(o)); break;
    case DbType::kPlotSettings: writePlotSettingsObject(c, static_cast<const PlotSettingsObject&>(o)); break;
    case DbType::kRasterImageDef: writeImageDefinition(c, static_cast<const RasterImageDefObject&>(o)); break;
    case DbType::kGroup: writeGroup(c, static_cast<const GroupObject&>(o)); break;
    case DbType::kXRecord: writeXRecord(c, static_cast<const XRecordObject&>(o)); break;
    case DbType::kSpatialFilter: writeSpatialFilter(c, static_cast<const SpatialFilterObject&>(o)); break;
    case DbType::kMLineStyle: writeMLineStyle(c, static_cast<const MLineStyleObject&>(o)); break;
    case DbType::kSortEntsTable: writeSortEntsTable(c, static_cast<const SortEntsTableObject&>(o)); break;
    case DbType::kUnderlayDefinition:
      writeUnderlayDefinition(c, static_cast<const UnderlayDefinitionObject&>(o));
      break;
    case DbType::kGenericObject: writeGenericObject(c, static_cast<const GenericObject&>(o)); break;
    default: break;
  }
}

}  // namespace

void writeObjectsSection(DxfWriterContext& c) {
  c.out.raw(0, "SECTION");
  c.out.raw(2, "OBJECTS");
  // Readers take the first dictionary owned by nothing as the root.
  const Dictionary* root = c.db.namedObjectsDictionary();
  for (const DbObject* o : c.db.objects()) {
    if (const Dictionary* d = dbCast<Dictionary>(o)) {
      for (const DictionaryEntry& entry : d->entries) c.listingDictionary.emplace(entry.handle.value(), d->handle);
    }
  }
  if (root) writeObject(c, *root);
  for (const DbObject* o : c.db.objects()) {
    if (o != root) writeObject(c, *o);
  }
  c.out.raw(0, "ENDSEC");
}

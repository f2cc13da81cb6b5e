// Non-graphical objects: dictionaries, layouts and page setups, image definitions, groups,
// multiline styles, draw order tables, spatial filters and underlay definitions.
#include "kit/dwg/DwgLoader.h"
#include "kit/dwg/DwgObjectReaders.h"

namespace {

void readDictionaryData(DwgObjectContext& c, Dictionary& dict) {
  DwgBitReader& d = c.d;
  int32_t count = d.BL();
  if (c.version() == kDwgR14) d.RC();
  if (c.atLeast(kDwgR2000)) {
    dict.cloning = d.BS();
    dict.hardOwner = d.RC() != 0;
  }
  // The names are texts: from R2007 they sit in the string stream.
  uint32_t n = c.boundedCount(count, 2, c.s.stringSource());
  std::vector<std::string> names;
  names.reserve(n);
  for (uint32_t i = 0; i < n; ++i) names.push_back(c.s.text());
  dict.entries.reserve(n);
  for (uint32_t i = 0; i < n; ++i) {
    OdDbHandle h = c.s.handle();
    if (c.s.handles.overrun()) break;
    dict.entries.push_back({std::move(names[i]), h});
  }
}

void readPlotSettings(DwgObjectContext& c, PlotSettingsData& p) {
  DwgBitReader& d = c.d;
  p.pageSetupName = c.s.text();
  p.plotConfiguration = c.s.text();
  p.plotFlags = d.BS();
  p.marginLeft = d.BD();
  p.marginBottom = d.BD();
  p.marginRight = d.BD();
  p.marginTop = d.BD();
  p.paperWidth = d.BD();
  p.paperHeight = d.BD();
  p.paperSizeName = c.s.text();
  OdGePoint2d origin = d.point2BD();
  p.plotOriginX = origin.x;
  p.plotOriginY = origin.y;
  p.paperUnits = d.BS();
  p.plotRotation = d.BS();
  p.plotType = d.BS();
  p.plotWindowMin = d.point2BD();
  p.plotWindowMax = d.point2BD();
  if (c.before(kDwgR2004)) p.plotViewName = c.s.text();
  p.scaleNumerator = d.BD();
  p.scaleDenominator = d.BD();
  p.styleSheet = c.s.text();
  p.standardScaleType = d.BS();
  p.standardScaleFactor = d.BD();
  p.paperImageOrigin = d.point2BD();
  if (c.atLeast(kDwgR2004)) {
    p.shadePlotMode = d.BS();
    p.shadePlotResolution = d.BS();
    p.shadePlotDpi = d.BS();
  }
}

}  // namespace

void readDwgDictionary(DwgObjectContext& c) {
  auto* dict = c.newObject<Dictionary>();
  readDictionaryData(c, *dict);
  if (c.frame.handle == c.loader.headerHandles_.namedObjectsDictionary) c.db().setNamedObjectsDictionary(dict->handle);
}

void readDwgDictionaryWithDefault(DwgObjectContext& c) {
  auto* dict = c.newObject<Dictionary>();
  dict->withDefault = true;
  readDictionaryData(c, *dict);
  dict->defaultEntry = c.s.handle();
}

void readDwgLayout(DwgObjectContext& c) {
  auto* l = c.newObject<Layout>();
  DwgBitReader& d = c.d;
  readPlotSettings(c, *l);
  l->name = c.s.text();
  l->tabOrder = int16_t(d.BL());
  l->layoutFlags = d.BS();
  l->ucsOrigin = d.point3BD();
  l->limMin = d.point2RD();
  l->limMax = d.point2RD();
  l->insertionBase = d.point3BD();
  l->ucsXAxis = d.vector3BD();
  l->ucsYAxis = d.vector3BD();
  l->elevation = d.BD();
  l->ucsOrthoType = d.BS();
  l->extMin = d.point3BD();
  l->extMax = d.point3BD();
  // A bit long, though documented as a raw one: the files have two bits there.
  int32_t viewports = c.atLeast(kDwgR2004) ? d.BL() : 0;
  if (c.atLeast(kDwgR2004)) c.s.handle();  // plot view
  if (c.atLeast(kDwgR2007)) c.s.handle();  // visual style
  l->blockRecordHandle = c.s.handle();
  l->lastActiveViewport = c.s.handle();
  c.s.handle();  // base UCS
  l->ucs = c.s.handle();
  uint32_t n = c.boundedCount(viewports, 8, c.s.handles);
  for (uint32_t i = 0; i < n; ++i) c.s.handle();
}

void readDwgPlotSettingsObject(DwgObjectContext& c) {
  auto* p = c.newObject<PlotSettingsObject>();
  readPlotSettings(c, *p);
}

void readDwgImageDefinition(DwgObjectContext& c) {
  auto* def = c.newObject<RasterImageDefObject>();
  def->classVersion = c.d.BL();
  def->imageSize = c.d.point2RD();
  def->fileName = c.s.text();
  def->loaded = c.d.B();
  def->resolutionUnits = c.d.RC();
  def->pixelSize = c.d.point2RD();
}

void readDwgGroup(DwgObjectContext& c) {
  auto* g = c.newObject<GroupObject>();
  g->description = c.s.text();
  g->unnamed = c.d.BS() != 0;
  g->selectable = c.d.BS() != 0;
  uint32_t n = c.boundedCount(c.d.BL(), 8, c.s.handles);
  g->entities.reserve(n);
  for (uint32_t i = 0; i < n; ++i) g->entities.push_back(c.s.handle());
}

void readDwgMLineStyle(DwgObjectContext& c) {
  auto* s = c.newObject<MLineStyleObject>();
  DwgBitReader& d = c.d;
  s->name = c.s.text();
  s->description = c.s.text();
  uint16_t flags = uint16_t(d.BS());
  // The stored bits pair up with DXF's differently: 1<->2, 32<->64, 512<->1024.
  static const std::pair<uint16_t, uint16_t> kBits[] = {{1, 2},    {2, 1},     {16, 16},    {32, 64},
                                                        {64, 32}, {256, 256}, {512, 1024}, {1024, 512}};
  int16_t dxfFlags = 0;
  for (auto [stored, dxf] : kBits) {
    if (flags & stored) dxfFlags = int16_t(dxfFlags | dxf);
  }
  s->flags = dxfFlags;
  s->fillColor = c.s.color().color;
  s->startAngle = d.BD();
  s->endAngle = d.BD();
  int lines = d.RC();
  std::vector<int16_t> linetypeIndices;
  for (int i = 0; i < lines && !d.overrun(); ++i) {
    MLineStyleElement element;
    element.offset = d.BD();
    element.color = c.s.color().color;
    if (c.before(kDwgR2018)) linetypeIndices.push_back(d.BS());
    s->elements.push_back(element);
  }
  auto linetypeName = [&](LinetypeRecord* lt) { return lt ? lt->name : std::string("ByLayer"); };
  for (size_t i = 0; i < s->elements.size(); ++i) {
    if (c.atLeast(kDwgR2018)) {
      s->elements[i].linetypeName = linetypeName(dbCast<LinetypeRecord>(c.loader.objectFor(c.s.handle())));
      continue;
    }
    // Before R2018 an index: 32767 by layer, 32766 by block, else the position in the table.
    int16_t index = linetypeIndices[i];
    const auto& table = c.db().linetypes();
    if (index == 32766) s->elements[i].linetypeName = "ByBlock";
    else if (index >= 0 && size_t(index) < table.size() && index != 32767) s->elements[i].linetypeName = table[size_t(index)]->name;
    else s->elements[i].linetypeName = "ByLayer";
  }
}

void readDwgSortEntsTable(DwgObjectContext& c) {
  auto* t = c.newObject<SortEntsTableObject>();
  uint32_t n = c.boundedCount(c.d.BL(), 8);
  std::vector<OdDbHandle> sortHandles;
  sortHandles.reserve(n);
  for (uint32_t i = 0; i < n; ++i) sortHandles.push_back(c.s.handleFrom(c.d));
  t->blockRecordHandle = c.s.handle();
  t->entries.reserve(n);
  for (uint32_t i = 0; i < n; ++i) t->entries.push_back({c.s.handle(), sortHandles[i]});
}

void readDwgSpatialFilter(DwgObjectContext& c) {
  auto* f = c.newObject<SpatialFilterObject>();
  DwgBitReader& d = c.d;
  uint32_t n = c.boundedCount(uint16_t(d.BS()), 2);
  for (uint32_t i = 0; i < n; ++i) f->boundary.push_back(d.point2RD());
  f->normal = d.vector3BD();
  f->origin = d.point3BD();
  f->displayBoundary = d.BS() != 0;
  f->frontClipEnabled = d.BS() != 0;
  if (f->frontClipEnabled) f->frontClip = d.BD();
  f->backClipEnabled = d.BS() != 0;
  if (f->backClipEnabled) f->backClip = d.BD();
  for (OdGeMatrix3d* m : {&f->inverseInsertTransform, &f->clipTransform}) {
    for (int i = 0; i < 12; ++i) m->entry[i / 4][i % 4] = d.BD();
  }
}

void readDwgUnderlayDefinition(DwgObjectContext& c, UnderlayDefinitionObject::Format format) {
  auto* def = c.newObject<UnderlayDefinitionObject>();
  def->format = format;
  def->fileName = c.s.text();
  def->itemName = c.s.text();
}

// DICTIONARYVAR: a schema number and a value, kept as their DXF groups.
void readDwgDictionaryVariable(DwgObjectContext& c) {
  auto* o = c.newObject<GenericObject>();
  o->dxfName = "DICTIONARYVAR";
  o->data.push_back(TaggedValue::ofInteger(280, c.d.RC()));
  o->data.push_back(TaggedValue::ofString(1, c.s.text()));
}

// DBCOLOR stays the unmodelled object it was; its colour is noted for the entities that use it.
void readDwgBookColour(DwgObjectContext& c) {
  DwgStreams probe = c.s;
  OdCmEntityColor colour = probe.color().color;
  if (!probe.overrun()) c.loader.bookColours_[c.frame.handle.value()] = colour;
  readUnknownDwgObject(c, c.loader.classOfType(c.frame.type), false);
}

// Table control objects and the records they own: applications, text styles, linetypes,
// layers, views, UCSs, viewport configurations, dimension styles and block headers.
#include "kit/dwg/DwgLineweight.h"
#include "kit/dwg/DwgLoader.h"
#include "kit/dwg/DwgRecordReaders.h"

namespace {

// A record of `Record`'s kind with its name and xref bits.
template <class Record>
Record* newRecord(DwgObjectContext& c) {
  Record* r = c.newObject<Record>();
  r->name = c.s.text();
  r->flags = readDwgRecordFlags(c);
  return r;
}

void readAppId(DwgObjectContext& c) {
  auto* r = newRecord<RegAppRecord>(c);
  c.d.RC();
  c.s.handle();  // xref block
  (void)r;
}

void readTextStyle(DwgObjectContext& c) {
  auto* r = newRecord<TextStyleRecord>(c);
  if (c.d.B()) r->flags |= TextStyleRecord::kVertical;
  if (c.d.B()) r->flags |= TextStyleRecord::kShapeFile;
  r->fixedHeight = c.d.BD();
  r->widthFactor = c.d.BD();
  r->obliqueAngle = c.d.BD();
  r->generationFlags = c.d.RC();
  r->lastHeight = c.d.BD();
  r->fontFile = c.s.text();
  r->bigFontFile = c.s.text();
  c.s.handle();  // xref block
  if (const XDataGroup* acad = r->xdata("ACAD")) {
    for (const TaggedValue& v : acad->values) {
      if (v.code == 1000 && r->trueTypeFace.empty()) r->trueTypeFace = v.text;
      if (v.code == 1071) r->trueTypeFlags = int32_t(v.integer);
    }
  }
}

// Texts of complex dashes sit in a string area, each dash naming its offset.
std::string dashText(DwgObjectContext& c, const std::string& area, int offset) {
  if (offset < 0 || size_t(offset) >= area.size()) return "";
  std::string out;
  if (c.atLeast(kDwgR2007)) {
    size_t units = (area.size() - size_t(offset)) / 2;
    appendUtf16AsUtf8(reinterpret_cast<const uint8_t*>(area.data() + offset), units, out);
    return out;
  }
  std::string_view raw(area.data() + offset, area.size() - size_t(offset));
  raw = raw.substr(0, raw.find('\0'));
  c.loader.decoder().decodeInto(raw, out);
  return out;
}

void readLinetype(DwgObjectContext& c) {
  auto* r = newRecord<LinetypeRecord>(c);
  r->description = c.s.text();
  r->patternLength = c.d.BD();
  r->alignment = c.d.RC();
  int count = c.d.RC();
  bool anyText = false;
  std::vector<int16_t> textOffsets;
  for (int i = 0; i < count && !c.s.overrun(); ++i) {
    LinetypeDash dash;
    dash.length = c.d.BD();
    int16_t code = c.d.BS();
    dash.offsetX = c.d.RD();
    dash.offsetY = c.d.RD();
    dash.scale = c.d.BD();
    dash.rotation = c.d.BD();
    dash.shapeFlags = c.d.BS();
    if (dash.shapeFlags & LinetypeDash::kText) anyText = true;
    dash.shapeNumber = (dash.shapeFlags & LinetypeDash::kShape) ? code : 0;
    textOffsets.push_back(code);
    r->dashes.push_back(dash);
  }
  std::string area;
  if (c.before(kDwgR2007)) c.d.rawBytes(256, area);
  else if (anyText) c.d.rawBytes(512, area);
  for (size_t i = 0; i < r->dashes.size(); ++i) {
    if (r->dashes[i].shapeFlags & LinetypeDash::kText) r->dashes[i].text = dashText(c, area, textOffsets[i]);
  }
  c.s.handle();  // xref block
  for (LinetypeDash& dash : r->dashes) dash.styleHandle = c.s.handle();
}

void readLayer(DwgObjectContext& c) {
  auto* r = newRecord<LayerRecord>(c);
  if (c.before(kDwgR2000)) {
    if (c.d.B()) r->flags |= LayerRecord::kFrozen;
    c.d.B();  // not the on/off state in these releases: a negative colour index says the layer is off
    if (c.d.B()) r->flags |= LayerRecord::kFrozenInNewViewports;
    if (c.d.B()) r->flags |= LayerRecord::kLocked;
  } else {
    int16_t values = c.d.BS();
    if (values & 1) r->flags |= LayerRecord::kFrozen;
    r->off = (values & 2) != 0;
    if (values & 4) r->flags |= LayerRecord::kFrozenInNewViewports;
    if (values & 8) r->flags |= LayerRecord::kLocked;
    r->plottable = (values & 16) != 0;
    r->lineweight = dwgLineweightFromIndex((values & 0x3E0) >> 5);
  }
  DwgColor color = c.s.color();
  r->color = color.color;
  if (r->color.isByACI() && r->color.colorIndex() < 0) r->off = true;
  if (c.d.overrun()) return;
  c.s.handle();  // xref block
  if (c.atLeast(kDwgR2000)) r->plotStyle = c.s.handle();
  if (c.atLeast(kDwgR2007)) r->material = c.s.handle();
  r->linetype = c.linetype(c.s.handle());
  if (const XDataGroup* t = r->xdata("AcCmTransparency")) {
    for (const TaggedValue& v : t->values) {
      if (v.code == 1071) r->transparency = OdCmTransparency::fromRaw(uint32_t(v.integer));
    }
  }
  if (const XDataGroup* d = r->xdata("AcAecLayerStandard")) {
    if (d->values.size() >= 2 && d->values[1].code == 1000) r->description = d->values[1].text;
  }
}

// Bits 0, 1, 2 and the inverse of bit 4 of the view mode (group 71).
int16_t viewMode(DwgBitReader& d) {
  int16_t mode = 0;
  if (d.B()) mode |= 1;
  if (d.B()) mode |= 2;
  if (d.B()) mode |= 4;
  if (!d.B()) mode |= 16;
  return mode;
}

void readLightingSettings(DwgObjectContext& c) {
  c.d.B();
  c.d.RC();
  c.d.BD();
  c.d.BD();
  c.s.color();
}

void readView(DwgObjectContext& c) {
  auto* r = newRecord<ViewRecord>(c);
  r->height = c.d.BD();
  r->width = c.d.BD();
  r->center = c.d.point2RD();
  r->target = c.d.point3BD();
  r->direction = c.d.vector3BD();
  r->twist = c.d.BD();
  r->lensLength = c.d.BD();
  r->frontClip = c.d.BD();
  r->backClip = c.d.BD();
  r->viewMode = viewMode(c.d);
  if (c.atLeast(kDwgR2000)) r->renderMode = c.d.RC();
  if (c.atLeast(kDwgR2007)) readLightingSettings(c);
  if (c.d.B()) r->flags |= ViewRecord::kPaperSpace;
  if (c.atLeast(kDwgR2000)) {
    r->hasUcs = c.d.B();
    if (r->hasUcs) {
      r->ucsOrigin = c.d.point3BD();
      r->ucsXAxis = c.d.vector3BD();
      r->ucsYAxis = c.d.vector3BD();
      c.d.BD();
      c.d.BS();
    }
  }
  if (c.atLeast(kDwgR2007)) c.d.B();  // camera plottable
  c.s.handle();  // xref block
  if (c.atLeast(kDwgR2007)) {
    c.s.handle();
    r->visualStyle = c.s.handle();
    c.s.handle();
  }
}

void readUcs(DwgObjectContext& c) {
  auto* r = newRecord<UcsRecord>(c);
  r->origin = c.d.point3BD();
  r->xAxis = c.d.vector3BD();
  r->yAxis = c.d.vector3BD();
  if (c.atLeast(kDwgR2000)) {
    r->elevation = c.d.BD();
    c.d.BS();
    c.d.BS();
  }
  c.s.handle();  // xref block
}

void readViewportRecord(DwgObjectContext& c) {
  auto* r = newRecord<ViewportRecord>(c);
  r->height = c.d.BD();
  double widthTimesHeight = c.d.BD();
  r->aspectRatio = r->height != 0.0 ? widthTimesHeight / r->height : 1.0;
  r->center = c.d.point2RD();
  r->target = c.d.point3BD();
  r->viewDirection = c.d.vector3BD();
  r->twist = c.d.BD();
  r->lensLength = c.d.BD();
  r->frontClip = c.d.BD();
  r->backClip = c.d.BD();
  r->viewMode = viewMode(c.d);
  if (c.atLeast(kDwgR2000)) r->renderMode = c.d.RC();
  if (c.atLeast(kDwgR2007)) readLightingSettings(c);
  r->lowerLeft = c.d.point2RD();
  r->upperRight = c.d.point2RD();
  if (c.d.B()) r->viewMode |= 8;  // UCSFOLLOW
  r->circleSides = c.d.BS();
  c.d.B();   // fast zoom
  c.d.BB();  // UCS icon
  c.d.B();   // grid
  r->gridSpacing = c.d.point2RD();
  c.d.B();   // snap
  c.d.B();   // snap style
  c.d.BS();  // snap isopair
  r->snapRotation = c.d.BD();
  r->snapBase = c.d.point2RD();
  r->snapSpacing = c.d.point2RD();
  if (c.atLeast(kDwgR2000)) {
    c.d.B();
    c.d.B();  // UCS per viewport
    r->ucsOrigin = c.d.point3BD();
    r->ucsXAxis = c.d.vector3BD();
    r->ucsYAxis = c.d.vector3BD();
    c.d.BD();
    c.d.BS();
  }
  if (c.atLeast(kDwgR2007)) {
    c.d.BS();
    c.d.BS();
  }
  c.s.handle();  // xref block
}

}  // namespace

int16_t readDwgRecordFlags(DwgObjectContext& c) {
  bool referenced = false;
  bool xrefDependent = false;
  if (c.atLeast(kDwgR2007)) {
    xrefDependent = (c.d.BS() & 0x100) != 0;
  } else {
    referenced = c.d.B();
    c.d.BS();  // xref index + 1
    xrefDependent = c.d.B();
  }
  return int16_t((referenced ? SymbolTableRecord::kReferenced : 0) |
                 (xrefDependent ? SymbolTableRecord::kXrefDependent : 0));
}

void readDwgAppId(DwgObjectContext& c) { readAppId(c); }
void readDwgTextStyle(DwgObjectContext& c) { readTextStyle(c); }
void readDwgLinetype(DwgObjectContext& c) { readLinetype(c); }
void readDwgLayer(DwgObjectContext& c) { readLayer(c); }
void readDwgView(DwgObjectContext& c) { readView(c); }
void readDwgUcs(DwgObjectContext& c) { readUcs(c); }
void readDwgViewportRecord(DwgObjectContext& c) { readViewportRecord(c); }

// Control objects: the table's own handle and its records in order. The block table lists
// model and paper space last and the linetype table BYLAYER and BYBLOCK last; DXF files (and
// this database) keep them first.
void readDwgControlObject(DwgObjectContext& c) {
  SymbolTableBase* table = nullptr;
  OdDbDatabase& db = c.db();
  switch (c.frame.type) {
    case 48: table = &db.blocks(); break;
    case 50: table = &db.layers(); break;
    case 52: table = &db.textStyles(); break;
    case 56: table = &db.linetypes(); break;
    case 60: table = &db.views(); break;
    case 62: table = &db.ucss(); break;
    case 64: table = &db.viewports(); break;
    case 66: table = &db.regApps(); break;
    case 68: table = &db.dimStyles(); break;
    default: break;  // the viewport entity header table has no DXF counterpart
  }
  uint32_t count = c.boundedCount(c.d.BL(), 8, c.s.handles);
  DwgOwnedObjects owned;
  for (uint32_t i = 0; i < count; ++i) owned.handles.push_back(c.s.handle());
  int extra = c.frame.type == 48 || c.frame.type == 56 ? 2 : 0;
  std::vector<OdDbHandle> trailing;
  for (int i = 0; i < extra; ++i) trailing.push_back(c.s.handle());
  if (c.frame.type == 56) std::swap(trailing[0], trailing[1]);  // BYBLOCK before BYLAYER
  owned.handles.insert(owned.handles.begin(), trailing.begin(), trailing.end());
  std::erase_if(owned.handles, [](OdDbHandle h) { return h.isNull(); });
  if (!table) {
    c.role = DwgRole::kNone;
    return;
  }
  table->handle = c.frame.handle;
  table->ownerHandle = c.frame.owner;
  c.result = table;
  c.role = DwgRole::kControl;
  c.setOwned(owned);
}

// DIMSTYLE records: every dimension variable in its release's order, kept by its DXF group
// code as the DXF reader keeps them.
#include "kit/dwg/DwgLoader.h"
#include "kit/dwg/DwgRecordReaders.h"

namespace {

class DimValues {
public:
  DimValues(DwgObjectContext& c, DimStyleRecord& r) : c_(c), r_(r) {}

  void b(int code) { r_.values.push_back(TaggedValue::ofInteger(code, c_.d.B())); }
  void rc(int code) { r_.values.push_back(TaggedValue::ofInteger(code, c_.d.RC())); }
  void bs(int code) { r_.values.push_back(TaggedValue::ofInteger(code, c_.d.BS())); }
  void bd(int code) { r_.values.push_back(TaggedValue::ofReal(code, c_.d.BD())); }
  void tv(int code) { r_.values.push_back(TaggedValue::ofString(code, c_.s.text())); }
  void color(int code) { r_.values.push_back(TaggedValue::ofInteger(code, c_.s.color().color.colorIndex())); }
  void handle(int code) {
    OdDbHandle h = c_.s.handle();
    if (h.isNull()) return;
    r_.values.push_back(TaggedValue{int16_t(code), GroupValueKind::kHandle, 0.0, 0, h.toHex()});
  }

private:
  DwgObjectContext& c_;
  DimStyleRecord& r_;
};

void readOldFlags(DimValues& v) {
  for (int code : {71, 72, 73, 74, 75, 76, 170, 172, 173, 174, 175}) v.b(code);
  v.rc(171);
  v.rc(78);
  v.b(281);
  v.b(282);
  v.rc(283);
  v.rc(280);
  v.rc(287);
  v.b(288);
  v.rc(284);
  v.rc(285);
  v.rc(286);
  v.rc(77);
  for (int code : {270, 275, 271, 272, 273, 274}) v.bs(code);
  for (int code : {40, 41, 42, 43, 44, 45, 46, 47, 48, 140, 141, 142, 143, 144, 145, 146, 147}) v.bd(code);
  for (int code : {3, 4, 5, 6, 7}) v.tv(code);
  for (int code : {176, 177, 178}) v.bs(code);
}

void readR2000Values(DwgObjectContext& c, DimValues& v) {
  v.tv(3);
  v.tv(4);
  for (int code : {40, 41, 42, 43, 44, 45, 46, 47, 48}) v.bd(code);
  if (c.atLeast(kDwgR2007)) {
    v.bd(49);
    v.bd(50);
    v.bs(69);
    v.color(70);
  }
  for (int code : {71, 72, 73, 74, 75, 76}) v.b(code);
  v.bs(77);
  v.bs(78);
  v.bs(79);
  if (c.atLeast(kDwgR2007)) v.bs(90);
  for (int code : {140, 141, 142, 143, 144, 145, 146, 147, 148}) v.bd(code);
  v.b(170);
  v.bs(171);
  for (int code : {172, 173, 174, 175}) v.b(code);
  for (int code : {176, 177, 178}) v.color(code);
  for (int code : {179, 271, 272, 273, 274, 275, 276, 277, 278, 279, 280}) v.bs(code);
  v.b(281);
  v.b(282);
  for (int code : {283, 284, 285, 286}) v.bs(code);
  v.b(288);
  v.bs(289);
  if (c.atLeast(kDwgR2007)) v.b(290);
  if (c.atLeast(kDwgR2010)) {
    v.b(295);
    c.d.BD();
    (void)c.s.text();
    c.d.BD();
    (void)c.s.text();
  }
  v.bs(371);
  v.bs(372);
}

}  // namespace

void readDwgDimStyle(DwgObjectContext& c) {
  auto* r = c.newObject<DimStyleRecord>();
  r->name = c.s.text();
  r->flags = readDwgRecordFlags(c);
  DimValues v(c, *r);
  if (c.before(kDwgR2000)) readOldFlags(v);
  else readR2000Values(c, v);
  if (c.d.B()) r->flags |= 1;
  c.s.handle();  // xref block
  v.handle(340);
  if (c.atLeast(kDwgR2000)) {
    for (int code : {341, 342, 343, 344}) v.handle(code);
  }
  if (c.atLeast(kDwgR2007)) {
    for (int code : {345, 346, 347}) v.handle(code);
  }
}

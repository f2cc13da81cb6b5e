// REGION, 3DSOLID and BODY: the ACIS data kept as DXF files keep it, one group per line of
// the (lightly enciphered) SAT text, so that it can be written out again. Files store it in
// blocks of bytes until an empty block (version 1), or from R2004 on as binary ACIS data
// (version 2), which becomes the SAT text AutoCAD writes into DXF files where the conversion knows
// every record; otherwise those bodies keep only their version. The wire and silhouette data after
// the ACIS data are not kept.
#include "kit/dwg/DwgAcisBinary.h"
#include "kit/dwg/DwgDataStorage.h"
#include "kit/dwg/DwgEntityReaders.h"
#include "kit/dwg/DwgLoader.h"

namespace {

// DXF groups hold at most 255 characters: longer lines go on in groups of code 3.
void addLine(std::string line, TaggedValues& out) {
  constexpr size_t kGroupLimit = 255;
  if (line.size() <= kGroupLimit) {
    out.push_back(TaggedValue::ofString(1, std::move(line)));
    return;
  }
  out.push_back(TaggedValue::ofString(1, line.substr(0, kGroupLimit)));
  for (size_t at = kGroupLimit; at < line.size(); at += kGroupLimit) {
    out.push_back(TaggedValue::ofString(3, line.substr(at, kGroupLimit)));
  }
}

void readSatBlocks(DwgObjectContext& c, TaggedValues& out) {
  DwgBitReader& d = c.d;
  std::string text;
  for (;;) {
    int32_t size = d.BL();
    if (size <= 0 || d.overrun()) break;
    if (size_t(size) > d.bitsLeft() / 8) {
      d.skip(d.bitsLeft() + 1);
      return;
    }
    d.rawBytes(size_t(size), text);
  }
  size_t start = 0;
  while (start < text.size()) {
    size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(start, end - start);
    // Trailing blanks mean nothing to the modeler; DXF files drop them.
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.pop_back();
    if (!line.empty()) addLine(std::move(line), out);
    start = end + 1;
  }
}

void readBinaryAcis(DwgObjectContext& c, ModelerGeometryEntity& e) {
  std::string bytes;
  c.d.rawBytes(c.d.bitsLeft() / 8, bytes);
  std::optional<AcisSatText> sat = acisBinaryToSat(bytes);
  if (!sat) {
    // Records whose text form is not known here: the binary data is kept as it is.
    e.acisBinary = std::move(bytes);
    return;
  }
  e.modelerVersion = 1;
  e.data.back() = TaggedValue::ofInteger(70, e.modelerVersion);
  e.data.reserve(e.data.size() + sat->lines.size() + 2);
  for (std::string& line : sat->lines) {
    acisCipher(line);
    addLine(std::move(line), e.data);
  }
}

}  // namespace

void readDwgModelerGeometry(DwgObjectContext& c, const char* dxfName) {
  auto* e = c.newEntity<ModelerGeometryEntity>();
  e->dxfName = dxfName;
  e->data.push_back(TaggedValue::ofString(100, "AcDbModelerGeometry"));
  DwgBitReader& d = c.d;
  bool empty = d.B();
  d.B();  // unknown
  if (empty) {
    e->data.push_back(TaggedValue::ofInteger(70, e->modelerVersion));
    return;
  }
  e->modelerVersion = d.BS();
  e->data.push_back(TaggedValue::ofInteger(70, e->modelerVersion));
  if (e->modelerVersion == 1) readSatBlocks(c, e->data);
  else if (e->modelerVersion == 2) readBinaryAcis(c, *e);
  // Solids of R2007 and later name the history of their making.
  if (c.atLeast(kDwgR2007) && std::string_view(dxfName) == "3DSOLID") {
    e->data.push_back(TaggedValue::ofString(100, "AcDb3dSolid"));
    e->data.push_back(TaggedValue::ofString(350, c.s.handle().toHex()));
  }
}

void DwgLoader::attachStoredAcisData() {
  std::vector<std::string> messages;
  size_t orphans = 0;  // data of objects no longer in the drawing
  for (const DwgStoredRecord& record : readDwgAcisRecords(sections_.dataStorage, messages)) {
    auto* e = db.findAs<ModelerGeometryEntity>(OdDbHandle(record.handle));
    if (e) e->acisBinary.assign(record.bytes);
    else ++orphans;
  }
  if (orphans) {
    messages.push_back(std::to_string(orphans) + " ACIS data records of the data storage name no modeler entity");
  }
  for (std::string& m : messages) warn(std::move(m));
}

// Entities and objects of classes this kit does not read are kept the way AutoCAD keeps those of
// classes it does not know, and writes them to DXF files: as ACAD_PROXY_ENTITY and
// ACAD_PROXY_OBJECT groups holding the class number, the proxy graphics of entities, the
// object's own value bits (and from R2007 its string bits) and its references. Nothing of the
// object is lost, and a DXF writer can put it back.
#include "kit/dwg/DwgProxyData.h"

#include "kit/dwg/DwgLoader.h"

namespace {

// DXF binary groups carry at most 127 bytes each.
constexpr size_t kChunkBytes = 127;
// Proxy entity and object class numbers, as DXF files give them (group 90).
constexpr int kProxyEntityClass = 498;
constexpr int kProxyObjectClass = 499;

// AutoCAD's number of a release: 19 for R13, then two more for each release.
uint32_t releaseNumber(int version) {
  switch (version) {
    case kDwgR13: return 19;
    case kDwgR14: return 21;
    case kDwgR2000: return 23;
    case kDwgR2004: return 25;
    case kDwgR2007: return 27;
    case kDwgR2010: return 29;
    case kDwgR2013: return 31;
    default: return 33;
  }
}

void addChunks(int code, const std::string& bytes, TaggedValues& out) {
  static const char kHex[] = "0123456789ABCDEF";
  for (size_t at = 0; at < bytes.size(); at += kChunkBytes) {
    std::string hex;
    size_t end = std::min(bytes.size(), at + kChunkBytes);
    hex.reserve((end - at) * 2);
    for (size_t i = at; i < end; ++i) {
      auto byte = uint8_t(bytes[i]);
      hex += kHex[byte >> 4];
      hex += kHex[byte & 0xF];
    }
    out.push_back(TaggedValue{int16_t(code), GroupValueKind::kBinary, 0.0, 0, std::move(hex)});
  }
}

// The bits of the object from `begin` to `end`, packed into bytes first bit first, zero bits
// after them. `spare` adds a byte when the bits fill the last one, as AutoCAD sizes proxy data.
std::string bitsBetween(const DwgObjectContext& c, size_t begin, size_t end, bool spare) {
  std::string bytes;
  end = std::min(end, size_t(c.frame.sizeBytes) * 8);
  if (end <= begin) return bytes;
  DwgBitReader whole(c.d.data(), c.frame.sizeBytes);
  whole.seek(begin);
  bytes.reserve((end - begin) / 8 + 1);
  for (size_t at = begin; at < end; at += 8) {
    unsigned count = unsigned(std::min<size_t>(8, end - at));
    bytes += char(whole.bits(count) << (8 - count));
  }
  if (spare && (end - begin) % 8 == 0) bytes += '\0';
  return bytes;
}

// DXF groups of a reference by its kind: soft and hard owner, soft and hard pointer.
int referenceGroup(uint8_t code) {
  switch (code) {
    case 2: return 350;
    case 3: return 360;
    case 5: return 340;
    default: return 330;
  }
}

void addReferences(DwgStreams& s, TaggedValues& out) {
  DwgBitReader& h = s.handles;
  while (h.bitsLeft() >= 8) {
    DwgBitReader probe = h;
    uint8_t code = probe.H().code;
    OdDbHandle target = s.handleFrom(h);
    if (h.overrun()) break;
    out.push_back(TaggedValue{int16_t(referenceGroup(code)), GroupValueKind::kHandle, 0.0, 0, target.toHex()});
  }
  out.push_back(TaggedValue::ofInteger(94, 0));
}

}  // namespace

void keepDwgProxyData(DwgObjectContext& c, const DwgClass& cls, bool isEntity, TaggedValues& out) {
  DwgStreams& s = c.s;
  const DwgObjectFrame& f = c.frame;
  out.push_back(TaggedValue::ofString(100, isEntity ? "AcDbProxyEntity" : "AcDbProxyObject"));
  out.push_back(TaggedValue::ofInteger(90, isEntity ? kProxyEntityClass : kProxyObjectClass));
  out.push_back(TaggedValue::ofInteger(91, cls.number));
  if (c.atLeast(kDwgR2000)) {
    // The release the data is in, as AutoCAD numbers releases, and its maintenance release.
    uint32_t maintenance = uint32_t(c.loader.maintenanceVersion());
    out.push_back(TaggedValue::ofInteger(95, int64_t(releaseNumber(c.version()) | (maintenance << 16))));
    out.push_back(TaggedValue::ofInteger(70, 0));  // the data is in DWG form
  }
  const bool wideSizes = c.atLeast(kDwgR2010);
  if (isEntity && f.graphicsBytes) {
    out.push_back(TaggedValue::ofInteger(wideSizes ? 160 : 92, f.graphicsBytes));
    addChunks(310, bitsBetween(c, f.graphicsBit, f.graphicsBit + size_t(f.graphicsBytes) * 8, false), out);
  }
  DwgBitReader& d = s.data;
  const size_t dataBits = d.bitsLeft();
  if (c.atLeast(kDwgR2007)) {
    const DwgBitReader& strings = s.strings;
    out.push_back(TaggedValue::ofInteger(162, int64_t(strings.bitsLeft())));
    addChunks(311, bitsBetween(c, strings.position(), strings.endBit(), true), out);
    out.push_back(TaggedValue::ofInteger(161, int64_t(dataBits)));
  } else {
    out.push_back(TaggedValue::ofInteger(93, int64_t(dataBits)));
  }
  addChunks(310, bitsBetween(c, d.position(), d.endBit(), true), out);
  d.skip(dataBits);
  addReferences(s, out);
}

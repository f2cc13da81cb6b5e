#include "kit/dwg/DwgObjectFrame.h"

#include "kit/dwg/DwgCrc.h"
#include "kit/dwg/DwgLineweight.h"

namespace {

// Objects larger than this are taken as damage rather than data.
constexpr uint64_t kMaxObjectBytes = uint64_t(1) << 30;
// Extended data blocks per object, reactors per object: far beyond what writers produce.
constexpr int kMaxExtendedDataBlocks = 4096;

// R2007 and later: the strings sit at the end of the value bits, found backwards from the
// position where the handles begin: a flag bit, then one or two size shorts before it.
void locateStringStream(DwgStreams& s, const uint8_t* data, size_t sizeBytes, size_t handleStart) {
  if (handleStart == 0) return;
  DwgBitReader probe(data, sizeBytes);
  size_t flagAt = handleStart - 1;
  probe.seek(flagAt);
  bool present = probe.B();
  s.data.setEnd(flagAt);
  s.useSeparateStrings(true);
  s.strings = DwgBitReader(data, sizeBytes);
  s.strings.setEnd(0);  // empty unless present
  if (!present || flagAt < 16) return;
  size_t sizeAt = flagAt - 16;
  probe.seek(sizeAt);
  uint32_t length = uint16_t(probe.RS());
  if (length & 0x8000) {
    if (sizeAt < 16) return;
    sizeAt -= 16;
    probe.seek(sizeAt);
    uint32_t high = uint16_t(probe.RS());
    length = (length & 0x7FFF) | (high << 15);
  }
  if (length > sizeAt) return;
  size_t start = sizeAt - length;
  s.strings = DwgBitReader(data, sizeBytes);
  s.strings.seek(start);
  s.strings.setEnd(sizeAt);
  s.data.setEnd(start);
}

}  // namespace

void splitDwgStreams(DwgStreams& s, const uint8_t* data, size_t sizeBytes, size_t handleStart) {
  if (handleStart > sizeBytes * 8) handleStart = sizeBytes * 8;
  s.handles = DwgBitReader(data, sizeBytes);
  s.handles.seek(handleStart);
  s.useSeparateHandles(true);
  if (s.atLeast(kDwgR2007)) {
    locateStringStream(s, data, sizeBytes, handleStart);
  } else {
    s.data.setEnd(handleStart);
  }
}

namespace {

// R2004+: a colour number whose high byte holds flags; then either a reference to a colour-book
// colour (0x4000, no RGB here: the handle comes with the common references, the names in the
// strings when 0x0100 / 0x0200 are set too) or the RGB (0x8000); then the transparency (0x2000).
void readEntityColor(DwgStreams& s, DwgObjectFrame& f) {
  DwgBitReader& d = s.data;
  if (s.before(kDwgR2004)) {
    f.color = OdCmEntityColor::fromACI(d.BS());
    return;
  }
  uint16_t number = uint16_t(d.BS());
  f.color = OdCmEntityColor::fromACI(number & 0x1FF);
  if (number & 0x4000) {
    f.colorFromBook = true;
    f.color = OdCmEntityColor::fromACI(number & 0xFF);  // the book's colour lives in a DBCOLOR object
    if (number & 0x0100) s.text();                      // colour name
    if (number & 0x0200) s.text();                      // book name
  } else if (number & 0x8000) {
    uint32_t packed = uint32_t(d.BL());
    if ((packed >> 24) >= OdCmEntityColor::kByLayer) f.color = OdCmEntityColor::fromPacked(packed);
    else f.color = OdCmEntityColor::fromPackedRGB(packed);
  }
  if (number & 0x2000) {
    uint32_t raw = uint32_t(d.BL());
    uint8_t method = uint8_t(raw >> 24);
    if (method == 1) f.transparency = OdCmTransparency::fromRaw(uint32_t(OdCmTransparency::kByBlock) << 24);
    else if (method >= 2) f.transparency = OdCmTransparency::fromAlpha(uint8_t(raw));
  }
}

void readEntityData(DwgStreams& s, DwgObjectFrame& f) {
  DwgBitReader& d = s.data;
  f.entityMode = d.BB();
  f.reactorCount = uint32_t(d.BL());
  if (s.atLeast(kDwgR2004)) f.hasXDictionary = !d.B();
  if (s.atLeast(kDwgR2013)) d.B();  // data store flag
  if (s.before(kDwgR2000)) f.byLayerLinetype = d.B();
  if (s.before(kDwgR2004)) f.noLinks = d.B();
  readEntityColor(s, f);
  f.linetypeScale = d.BD();
  if (s.atLeast(kDwgR2000)) {
    f.linetypeFlags = d.BB();
    f.plotStyleFlags = d.BB();
  } else {
    f.linetypeFlags = f.byLayerLinetype ? 0 : 3;
  }
  if (s.atLeast(kDwgR2007)) {
    f.materialFlags = d.BB();
    f.shadowFlags = d.RC();
  }
  if (s.atLeast(kDwgR2010)) {
    f.fullVisualStyle = d.B();
    f.faceVisualStyle = d.B();
    f.edgeVisualStyle = d.B();
  }
  f.invisible = d.BS();
  if (s.atLeast(kDwgR2000)) f.lineweight = dwgLineweightFromIndex(d.RC(), -1);
}

void readCommonHandles(DwgStreams& s, DwgObjectFrame& f, bool isEntity) {
  if (!isEntity || f.entityMode == 0) f.owner = s.handle();
  // Each reference takes at least one byte of the handle stream.
  uint32_t bound = uint32_t(s.handles.bitsLeft() / 8);
  uint32_t count = f.reactorCount < bound ? f.reactorCount : bound;
  f.reactors.reserve(count);
  for (uint32_t i = 0; i < count; ++i) f.reactors.push_back(s.handle());
  if (f.hasXDictionary) f.xdictionary = s.handle();
  if (!isEntity) return;
  if (s.before(kDwgR2000)) {
    f.layer = s.handle();
    if (!f.byLayerLinetype) f.linetype = s.handle();
  }
  if (s.before(kDwgR2004) && !f.noLinks) {
    f.previous = s.handle();
    f.next = s.handle();
  }
  if (f.colorFromBook) f.bookColour = s.handle();
  if (s.atLeast(kDwgR2000)) {
    f.layer = s.handle();
    if (f.linetypeFlags == 3) f.linetype = s.handle();
  }
  if (s.atLeast(kDwgR2007) && f.materialFlags == 3) f.material = s.handle();
  if (s.atLeast(kDwgR2007) && f.shadowFlags == 3) s.handle();  // shadow settings
  if (s.atLeast(kDwgR2000) && f.plotStyleFlags == 3) f.plotStyle = s.handle();
  if (s.atLeast(kDwgR2010)) {
    if (f.fullVisualStyle) f.visualStyle = s.handle();
    if (f.faceVisualStyle) s.handle();
    if (f.edgeVisualStyle) s.handle();
  }
}

}  // namespace

DwgFrameResult openDwgObject(const DwgObjectLocation& where, DwgStreams& s, DwgObjectFrame& f, bool& crcOk) {
  const auto* base = reinterpret_cast<const uint8_t*>(where.objects.data());
  size_t total = where.objects.size();
  if (where.offset >= total) return DwgFrameResult::kOutside;
  DwgBitReader sizes(base + where.offset, total - where.offset);
  uint64_t size = sizes.MS();
  uint64_t handleBits = s.atLeast(kDwgR2010) ? sizes.UMC() : 0;
  if (sizes.overrun()) return DwgFrameResult::kOutside;
  size_t headerBytes = sizes.position() / 8;
  if (size > kMaxObjectBytes) return DwgFrameResult::kTooLarge;
  size_t available = total - where.offset - headerBytes;
  if (size > available) return DwgFrameResult::kOutside;
  const uint8_t* data = base + where.offset + headerBytes;
  f.sizeBytes = uint32_t(size);
  crcOk = false;
  if (size + 2 <= available) {
    uint16_t stored = uint16_t(data[size] | (data[size + 1] << 8));
    crcOk = dwgCrc16(0xC0C1, base + where.offset, headerBytes + size) == stored;
  }
  s.data = DwgBitReader(data, size);
  s.handles = DwgBitReader(data, size);
  s.strings = DwgBitReader(data, size);
  f.type = s.atLeast(kDwgR2010) ? s.data.OT() : uint16_t(s.data.BS());
  if (s.atLeast(kDwgR2010)) {
    uint64_t bits = size * 8;
    splitDwgStreams(s, data, size, handleBits > bits ? 0 : size_t(bits - handleBits));
  } else if (s.atLeast(kDwgR2000)) {
    splitDwgStreams(s, data, size, uint32_t(s.data.RL()));
  }
  return DwgFrameResult::kOk;
}

void skipDwgEmbeddedEntityCommon(DwgStreams& s) {
  DwgObjectFrame embedded;
  readEntityData(s, embedded);
  readCommonHandles(s, embedded, true);
}

void readDwgObjectCommon(DwgStreams& s, DwgObjectFrame& f, bool isEntity) {
  DwgBitReader& d = s.data;
  f.handle = s.handleFrom(d);
  s.setReferenceHandle(f.handle.value());
  for (int i = 0; i < kMaxExtendedDataBlocks; ++i) {
    size_t size = uint16_t(d.BS());
    if (size == 0 || d.overrun()) break;
    DwgObjectFrame::ExtendedData eed;
    eed.application = s.handleFrom(d);
    d.rawBytes(size, eed.bytes);
    f.extendedData.push_back(std::move(eed));
  }
  if (isEntity && d.B()) {
    uint64_t bytes = s.atLeast(kDwgR2010) ? d.BLL() : uint32_t(d.RL());
    f.graphicsBytes = bytes > UINT32_MAX ? UINT32_MAX : uint32_t(bytes);
    f.graphicsBit = d.position();
    d.skip(bytes > d.bitsLeft() / 8 ? d.bitsLeft() + 1 : size_t(bytes) * 8);
  }
  if (s.before(kDwgR2000)) {
    size_t handleStart = uint32_t(d.RL());
    size_t sizeBits = size_t(f.sizeBytes) * 8;
    splitDwgStreams(s, d.data(), f.sizeBytes, handleStart > sizeBits ? sizeBits : handleStart);
  }
  if (isEntity) {
    readEntityData(s, f);
  } else {
    f.reactorCount = uint32_t(d.BL());
    if (s.atLeast(kDwgR2004)) f.hasXDictionary = !d.B();
    if (s.atLeast(kDwgR2013)) d.B();  // data store flag
  }
  readCommonHandles(s, f, isEntity);
}

#include "kit/dwg/DwgStreams.h"

#include "kit/dxf/DxfTextDecoder.h"

void appendUtf16AsUtf8(const uint8_t* units, size_t count, std::string& out) {
  for (size_t i = 0; i < count; ++i) {
    uint32_t c = uint32_t(units[2 * i]) | (uint32_t(units[2 * i + 1]) << 8);
    if (c == 0) break;
    if (c >= 0xD800 && c <= 0xDBFF && i + 1 < count) {
      uint32_t low = uint32_t(units[2 * i + 2]) | (uint32_t(units[2 * i + 3]) << 8);
      if (low >= 0xDC00 && low <= 0xDFFF) {
        c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
        ++i;
      }
    }
    appendUtf8(out, c);  // lone surrogates become U+FFFD there
  }
}

std::string DwgStreams::text() {
  if (version_ >= kDwgR2007) return unicodeText(stringSource());
  return codePageText(data);
}

std::string DwgStreams::codePageText(DwgBitReader& from) {
  size_t length = uint16_t(from.BS());
  scratch_.clear();
  from.rawBytes(length, scratch_);
  while (!scratch_.empty() && scratch_.back() == '\0') scratch_.pop_back();
  std::string out;
  if (decoder_) decoder_->decodeInto(scratch_, out);
  else out = scratch_;
  return out;
}

std::string DwgStreams::unicodeText(DwgBitReader& from) {
  size_t count = uint16_t(from.BS());
  scratch_.clear();
  from.rawBytes(count * 2, scratch_);
  std::string out;
  appendUtf16AsUtf8(reinterpret_cast<const uint8_t*>(scratch_.data()), scratch_.size() / 2, out);
  return out;
}

OdDbHandle DwgStreams::handleFrom(DwgBitReader& from) {
  DwgHandleRef ref = from.H();
  switch (ref.code) {
    case 0x6: return OdDbHandle(reference_ + 1);
    case 0x8: return OdDbHandle(reference_ - 1);
    case 0xA: return OdDbHandle(reference_ + ref.value);
    case 0xC: return OdDbHandle(reference_ - ref.value);
    default: return OdDbHandle(ref.value);
  }
}

OdDbHandle DwgStreams::handle() { return handleFrom(handleSource()); }

DwgColor DwgStreams::color() {
  DwgColor result;
  int16_t index = data.BS();
  if (version_ < kDwgR2004) {
    result.color = OdCmEntityColor::fromACI(index);
    return result;
  }
  uint32_t packed = uint32_t(data.BL());
  uint8_t flags = data.RC();
  if (flags & 1) (void)text();
  if (flags & 2) result.bookName = text();
  uint8_t method = uint8_t(packed >> 24);
  if (method >= OdCmEntityColor::kByLayer) result.color = OdCmEntityColor::fromPacked(packed);
  else result.color = OdCmEntityColor::fromACI(index);
  return result;
}

OdGeVector3d DwgStreams::extrusion() {
  if (version_ >= kDwgR2000 && data.B()) return {0.0, 0.0, 1.0};
  return data.vector3BD();
}

double DwgStreams::thickness() {
  if (version_ >= kDwgR2000 && data.B()) return 0.0;
  return data.BD();
}

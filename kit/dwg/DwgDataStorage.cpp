#include "kit/dwg/DwgDataStorage.h"

#include <algorithm>
#include <map>

#include "kit/dwg/DwgLittleEndian.h"

namespace {

constexpr size_t kSegmentHeaderSize = 48;  // signature, name, index, ..., two alignment offsets, padding
constexpr std::string_view kAcisMagic = "ACIS BinaryFile";
constexpr std::string_view kAsmMagic = "ASM BinaryFile4";
constexpr uint32_t kBlobReference = 0xbb106bb1;  // a record too large for its segment, kept elsewhere

// Bounds-checked little-endian reads; a read past the end fails the whole section.
class StoreBytes {
public:
  explicit StoreBytes(std::string_view data) : data_(data) {}

  bool has(uint64_t at, uint64_t n) const { return at <= data_.size() && n <= data_.size() - at; }
  bool u32(uint64_t at, uint32_t& v) const {
    if (!has(at, 4)) return false;
    v = dwgLe32(bytes(at));
    return true;
  }
  bool u64(uint64_t at, uint64_t& v) const {
    if (!has(at, 8)) return false;
    v = dwgLe64(bytes(at));
    return true;
  }
  std::string_view view(uint64_t at, uint64_t n) const { return data_.substr(size_t(at), size_t(n)); }

private:
  const uint8_t* bytes(uint64_t at) const { return reinterpret_cast<const uint8_t*>(data_.data() + at); }
  std::string_view data_;
};

struct Segment {
  uint64_t offset = 0;
  uint32_t size = 0;
};

// The file header's segment index, then the segment index entries it points to.
bool readSegments(const StoreBytes& in, std::vector<Segment>& segments, uint32_t& dataIndexSegment) {
  uint32_t indexOffset = 0, entryCount = 0;
  if (!in.u32(24, indexOffset) || !in.u32(32, entryCount) || !in.u32(40, dataIndexSegment)) return false;
  uint64_t at = uint64_t(indexOffset) + kSegmentHeaderSize;
  if (!in.has(at, uint64_t(entryCount) * 12)) return false;
  for (uint32_t i = 0; i < entryCount; ++i, at += 12) {
    Segment s;
    in.u64(at, s.offset);
    in.u32(at + 8, s.size);
    segments.push_back(s);
  }
  return dataIndexSegment < segments.size();
}

// The records of one data segment: their headers at the given local offsets, then the data after
// the last header.
void readDataSegment(const StoreBytes& in, const Segment& segment, const std::vector<uint32_t>& localOffsets,
                     std::vector<DwgStoredRecord>& out, size_t& blobs) {
  struct Header {
    uint64_t handle = 0;
    uint32_t dataOffset = 0;
  };
  std::vector<Header> headers;
  uint64_t dataStart = 0;
  for (uint32_t local : localOffsets) {
    uint64_t at = segment.offset + kSegmentHeaderSize + local;  // local offsets count from the header's end
    Header h;
    if (!in.u64(at + 8, h.handle) || !in.u32(at + 16, h.dataOffset)) return;
    headers.push_back(h);
    dataStart = std::max(dataStart, at + 20);
  }
  // The data may also be placed by the segment header's object data alignment (in 16 bytes).
  uint32_t alignment = 0;
  in.u32(segment.offset + 36, alignment);
  uint64_t starts[2] = {dataStart, segment.offset + (uint64_t(alignment) << 4)};
  uint64_t segmentEnd = segment.offset + segment.size;
  for (const Header& h : headers) {
    for (uint64_t start : starts) {
      uint64_t at = start + h.dataOffset;
      uint32_t size = 0;
      if (!in.u32(at, size)) continue;
      if (size == kBlobReference) {
        ++blobs;
        break;
      }
      if (at + 4 + uint64_t(size) > segmentEnd || !in.has(at + 4, size)) continue;
      std::string_view bytes = in.view(at + 4, size);
      if (bytes.substr(0, kAcisMagic.size()) != kAcisMagic && bytes.substr(0, kAsmMagic.size()) != kAsmMagic) continue;
      out.push_back({h.handle, bytes});
      break;
    }
  }
}

}  // namespace

std::vector<DwgStoredRecord> readDwgAcisRecords(std::string_view section, std::vector<std::string>& messages) {
  std::vector<DwgStoredRecord> out;
  if (section.empty()) return out;
  StoreBytes in(section);
  std::vector<Segment> segments;
  uint32_t dataIndexSegment = 0;
  if (!readSegments(in, segments, dataIndexSegment)) {
    messages.push_back("data storage: the segment index is damaged");
    return out;
  }
  // The data index: (segment, local offset, schema) per record, grouped here by segment.
  uint64_t at = segments[dataIndexSegment].offset + kSegmentHeaderSize;
  uint32_t count = 0;
  if (!in.u32(at, count) || !in.has(at + 8, uint64_t(count) * 12)) {
    messages.push_back("data storage: the data index is damaged");
    return out;
  }
  std::map<uint32_t, std::vector<uint32_t>> offsetsBySegment;
  for (uint32_t i = 0; i < count; ++i) {
    uint32_t segment = 0, local = 0;
    in.u32(at + 8 + uint64_t(i) * 12, segment);
    in.u32(at + 12 + uint64_t(i) * 12, local);
    if (segment != 0 && segment < segments.size()) offsetsBySegment[segment].push_back(local);
  }
  size_t blobs = 0;
  for (const auto& [segment, offsets] : offsetsBySegment) readDataSegment(in, segments[segment], offsets, out, blobs);
  // Records over 256 KiB are kept in pages of their own, which are not read yet.
  if (blobs) messages.push_back("data storage: " + std::to_string(blobs) + " records in blob pages not read");
  return out;
}

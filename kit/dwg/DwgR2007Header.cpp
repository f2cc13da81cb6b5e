#include "kit/dwg/DwgR2007Header.h"

#include <vector>

#include "kit/base/OdError.h"
#include "kit/dwg/DwgFileSections.h"
#include "kit/dwg/DwgLittleEndian.h"
#include "kit/dwg/DwgR21Decompressor.h"
#include "kit/dwg/DwgReedSolomon.h"

namespace {

constexpr size_t kHeaderAt = 0x80;
constexpr size_t kHeaderBlocks = 3;
constexpr size_t kDataAt = 0x20;
constexpr size_t kFieldsSize = 0x110;

[[noreturn]] void fail(int code, const std::string& what) { throw DwgFormatError{code, what}; }

std::vector<uint8_t> headerFields(std::string_view file, std::vector<std::string>& messages) {
  if (file.size() < kHeaderAt + kHeaderBlocks * kDwgRsCodeword) fail(eEndOfFile, "the file header is cut off");
  const auto* raw = reinterpret_cast<const uint8_t*>(file.data()) + kHeaderAt;
  DwgRsDamage damage;
  std::vector<uint8_t> decoded = dwgRsData(raw, kHeaderBlocks * kDwgRsCodeword, kHeaderBlocks, dwgRsSystemCode(), true, damage);
  reportDwgRsDamage(damage, "the file header", messages);
  int32_t stored = int32_t(dwgLe32(decoded.data() + 0x18));
  // A negative length means the fields are stored as they are.
  size_t length = stored < 0 ? size_t(-int64_t(stored)) : size_t(stored);
  if (length > decoded.size() - kDataAt) fail(eInvalidDrawing, "the file header claims " + std::to_string(length) + " bytes");
  const uint8_t* data = decoded.data() + kDataAt;
  if (stored > 0) return decompressDwgR21(data, length, kFieldsSize);
  if (length < kFieldsSize) fail(eInvalidDrawing, "the file header is too short");
  return std::vector<uint8_t>(data, data + kFieldsSize);
}

}  // namespace

DwgR2007FileHeader readDwgR2007FileHeader(std::string_view file, std::vector<std::string>& messages) {
  std::vector<uint8_t> f = headerFields(file, messages);
  DwgR2007FileHeader header;
  header.pageMap.repeats = dwgLe64(f.data() + 0x18);
  header.pageMap.offset = dwgLe64(f.data() + 0x38);
  header.pageMap.compressedSize = dwgLe64(f.data() + 0x50);
  header.pageMap.size = dwgLe64(f.data() + 0x58);
  header.sectionMap.compressedSize = dwgLe64(f.data() + 0xB0);
  header.sectionMapId = dwgLe64(f.data() + 0xC0);
  header.sectionMap.size = dwgLe64(f.data() + 0xC8);
  header.sectionMap.repeats = dwgLe64(f.data() + 0xD8);
  return header;
}

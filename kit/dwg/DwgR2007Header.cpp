#include "kit/dwg/DwgR2007Header.h"

#include <vector>

#include "kit/base/OdError.h"
#include "kit/dwg/DwgFileSections.h"
#include "kit/dwg/DwgLittleEndian.h"
#include "kit/dwg/DwgR21Decompressor.h"
#include "kit/dwg/DwgR2007HeaderChecks.h"
#include "kit/dwg/DwgReedSolomon.h"

namespace {

constexpr size_t kHeaderAt = 0x80;
constexpr size_t kHeaderBlocks = 3;
constexpr size_t kDataAt = 0x20;

[[noreturn]] void fail(int code, const std::string& what) { throw DwgFormatError{code, what}; }

// The check data sit in the page's padding after the code words; a file cut there skips them.
void checkFields(std::string_view file, const std::vector<uint8_t>& decoded, size_t stored,
                 const std::vector<uint8_t>& fields, std::vector<std::string>& messages) {
  if (file.size() < kDwgR2007PagesAt) return;
  const auto* checkData = reinterpret_cast<const uint8_t*>(file.data()) + kHeaderAt + kDwgR2007CheckDataAt;
  std::string failures = dwgR2007HeaderCheckFailures(decoded.data(), stored, fields.data(), checkData);
  if (!failures.empty()) messages.push_back("the file header fails its check sums (" + failures + ")");
}

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
  std::vector<uint8_t> fields;
  if (stored > 0) {
    fields = decompressDwgR21(data, length, kDwgR2007HeaderFieldsSize);
  } else {
    if (length < kDwgR2007HeaderFieldsSize) fail(eInvalidDrawing, "the file header is too short");
    fields.assign(data, data + kDwgR2007HeaderFieldsSize);
  }
  checkFields(file, decoded, length, fields, messages);
  return fields;
}

}  // namespace

DwgR2007FileHeader readDwgR2007FileHeader(std::string_view file, std::vector<std::string>& messages) {
  std::vector<uint8_t> f = headerFields(file, messages);
  DwgR2007FileHeader header;
  header.pageMap.storedCrc = dwgLe64(f.data() + 0x10);
  header.pageMap.repeats = dwgLe64(f.data() + 0x18);
  header.pageMap.crcSeed = dwgLe64(f.data() + 0x20);
  header.pageMap.offset = dwgLe64(f.data() + 0x38);
  header.pageMap.compressedSize = dwgLe64(f.data() + 0x50);
  header.pageMap.size = dwgLe64(f.data() + 0x58);
  header.pageMap.dataCrc = dwgLe64(f.data() + 0x80);
  header.sectionMap.dataCrc = dwgLe64(f.data() + 0xA8);
  header.sectionMap.compressedSize = dwgLe64(f.data() + 0xB0);
  header.sectionMapId = dwgLe64(f.data() + 0xC0);
  header.sectionMap.size = dwgLe64(f.data() + 0xC8);
  header.sectionMap.storedCrc = dwgLe64(f.data() + 0xD0);
  header.sectionMap.repeats = dwgLe64(f.data() + 0xD8);
  header.sectionMap.crcSeed = dwgLe64(f.data() + 0xE0);
  return header;
}

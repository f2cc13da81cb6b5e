#include "kit/dwg/DwgR2004Header.h"

#include <cstring>

#include "kit/base/OdError.h"
#include "kit/dwg/DwgCrc.h"
#include "kit/dwg/DwgFileSections.h"
#include "kit/dwg/DwgLittleEndian.h"

namespace {

constexpr char kFileId[12] = "AcFssFcAJMB";
constexpr size_t kCrcAt = 0x68;

std::vector<uint8_t> makeMagicSequence() {
  std::vector<uint8_t> sequence(0x100);
  uint32_t seed = 1;
  for (uint8_t& b : sequence) {
    seed = seed * 0x343FD + 0x269EC3;
    b = uint8_t(seed >> 16);
  }
  return sequence;
}

}  // namespace

const std::vector<uint8_t>& dwgR2004MagicSequence() {
  static const std::vector<uint8_t> sequence = makeMagicSequence();
  return sequence;
}

DwgR2004FileHeader readDwgR2004FileHeader(std::string_view file, std::vector<std::string>& messages) {
  if (file.size() < kDwgR2004FirstPageAt) throw DwgFormatError{eEndOfFile, "the file header is cut off"};
  const auto* raw = reinterpret_cast<const uint8_t*>(file.data());
  const std::vector<uint8_t>& magic = dwgR2004MagicSequence();
  uint8_t h[kDwgR2004HeaderSize];
  for (size_t i = 0; i < kDwgR2004HeaderSize; ++i) h[i] = raw[kDwgR2004HeaderAt + i] ^ magic[i];

  if (std::memcmp(h, kFileId, sizeof kFileId) != 0) messages.push_back("file header identification missing");
  uint32_t stored = dwgLe32(h + kCrcAt);
  dwgPutLe32(h + kCrcAt, 0);
  if (dwgCrc32(0, h, sizeof h) != stored) messages.push_back("file header check sum mismatch");

  DwgR2004FileHeader header;
  header.securityFlags = dwgLe32(raw + 0x18);
  header.lastPageId = dwgLe32(h + 0x28);
  header.secondHeaderAddress = dwgLe64(h + 0x34);
  header.pageCount = dwgLe32(h + 0x40);
  header.pageMapId = dwgLe32(h + 0x50);
  header.pageMapAddress = dwgLe64(h + 0x54) + kDwgR2004FirstPageAt;
  header.sectionMapId = dwgLe32(h + 0x5C);
  return header;
}

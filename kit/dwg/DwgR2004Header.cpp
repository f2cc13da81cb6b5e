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

namespace {

// Decrypts the header at `at` into `h` and says whether its identification and check sum hold.
bool decryptHeader(const uint8_t* raw, uint8_t* h, std::string& problem) {
  const std::vector<uint8_t>& magic = dwgR2004MagicSequence();
  for (size_t i = 0; i < kDwgR2004HeaderSize; ++i) h[i] = raw[i] ^ magic[i];
  uint32_t stored = dwgLe32(h + kCrcAt);
  dwgPutLe32(h + kCrcAt, 0);
  if (std::memcmp(h, kFileId, sizeof kFileId) != 0) problem = "file header identification missing";
  else if (dwgCrc32(0, h, kDwgR2004HeaderSize) != stored) problem = "file header check sum mismatch";
  return problem.empty();
}

}  // namespace

DwgR2004FileHeader readDwgR2004FileHeader(std::string_view file, std::vector<std::string>& messages) {
  if (file.size() < kDwgR2004FirstPageAt) throw DwgFormatError{eEndOfFile, "the file header is cut off"};
  const auto* raw = reinterpret_cast<const uint8_t*>(file.data());
  uint8_t h[kDwgR2004HeaderSize];
  std::string problem;
  if (!decryptHeader(raw + kDwgR2004HeaderAt, h, problem)) {
    // The file ends with a copy of the header; a sound copy beats a damaged original.
    uint8_t copy[kDwgR2004HeaderSize];
    std::string copyProblem;
    if (decryptHeader(raw + file.size() - kDwgR2004HeaderSize, copy, copyProblem)) {
      std::memcpy(h, copy, sizeof h);
      problem += "; the copy at the end of the file was used";
    } else {
      // Read on with the original: the maps it points to have their own checks.
      decryptHeader(raw + kDwgR2004HeaderAt, h, copyProblem);
    }
    messages.push_back(problem);
  }

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

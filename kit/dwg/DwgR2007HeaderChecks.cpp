#include "kit/dwg/DwgR2007HeaderChecks.h"

#include <cstring>
#include <vector>

#include "kit/dwg/DwgCrc64.h"
#include "kit/dwg/DwgLittleEndian.h"

namespace {

constexpr size_t kFieldsCrcAt = 0x108;

// The writer's word scrambling: `value` rotated left by the low 5 bits of `control`.
uint64_t rotated(uint64_t value, uint64_t control) {
  unsigned shift = unsigned(control & 0x1F);
  return shift ? (value << shift) | (value >> (64 - shift)) : value;
}

uint64_t crcOfWords(const std::vector<uint64_t>& words, uint64_t seed, bool mirrored) {
  std::vector<uint8_t> bytes(words.size() * 8);
  for (size_t i = 0; i < words.size(); ++i) dwgPutLe64(bytes.data() + 8 * i, words[i]);
  return mirrored ? dwgCrc64Mirrored(seed, bytes.data(), bytes.size()) : dwgCrc64Normal(seed, bytes.data(), bytes.size());
}

bool fieldsHold(const uint8_t* fields) {
  uint8_t copy[kDwgR2007HeaderFieldsSize];
  std::memcpy(copy, fields, sizeof copy);
  std::memset(copy + kFieldsCrcAt, 0, 8);
  return dwgCrc64Normal(dwgCrc64Seed2(0, sizeof copy), copy, sizeof copy) == dwgLe64(fields + kFieldsCrcAt);
}

bool sequenceHolds(const uint8_t* decoded) {
  uint64_t first = dwgLe64(decoded + 8);
  return crcOfWords({first, rotated(first, first)}, dwgCrc64Seed1(0, 16), false) == dwgLe64(decoded);
}

bool checkDataHolds(const uint8_t* check) {
  uint64_t normal = dwgLe64(check), mirrored = dwgLe64(check + 8);
  uint64_t r1 = dwgLe64(check + 16), r2 = dwgLe64(check + 24);
  std::vector<uint64_t> w(8);
  w[0] = rotated(r1, r2);
  w[1] = rotated(w[0], w[0]);
  w[2] = rotated(r2, w[1]);
  w[3] = rotated(w[2], w[2]);
  w[4] = rotated(r1, w[3]);
  w[5] = rotated(w[4], w[4]);
  w[6] = rotated(w[5], w[5]);
  w[7] = rotated(w[6], w[6]);
  if (crcOfWords(w, ~r2, false) != normal) return false;
  w[1] = rotated(normal, w[0]);
  w[2] = rotated(r2, w[1]);
  w[3] = rotated(normal, w[2]);
  w[4] = rotated(r1, w[3]);
  w[5] = rotated(normal, w[4]);
  w[6] = rotated(r2, w[5]);
  w[7] = rotated(w[6], w[6]);
  return crcOfWords(w, ~r1, true) == mirrored;
}

void add(std::string& list, const char* name) { list += (list.empty() ? "" : ", ") + std::string(name); }

}  // namespace

std::string dwgR2007HeaderCheckFailures(const uint8_t* decoded, size_t stored, const uint8_t* fields,
                                        const uint8_t* checkData) {
  std::string failures;
  if (!sequenceHolds(decoded)) add(failures, "checking sequence");
  if (dwgCrc64Normal(dwgCrc64Seed2(0, stored), decoded + 0x20, stored) != dwgLe64(decoded + 0x10)) add(failures, "stored data");
  if (!fieldsHold(fields)) add(failures, "fields");
  if (!checkDataHolds(checkData)) add(failures, "check data");
  return failures;
}

uint64_t dwgR2007SystemPageCrc(uint64_t storedSeed, const uint8_t* data, size_t size) {
  return dwgCrc64Mirrored(dwgCrc64Seed1(dwgCrc64StoredSeed(storedSeed), size), data, size);
}

// The check sums of the R2007 file header and of the system pages it locates: a CRC over its decompressed fields, one over the
// stored (usually compressed) fields, one over a two-word checking sequence, and the check data
// in the page's last 0x28 bytes, whose two CRCs are derived from the two random words beside them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

constexpr size_t kDwgR2007HeaderFieldsSize = 0x110;
constexpr size_t kDwgR2007CheckDataAt = 0x3D8;  // in the 0x400-byte header page

// `decoded` is the page's Reed-Solomon data: checking sequence CRC and word, stored-data CRC and
// length, then `stored` bytes of data. `fields` holds the 0x110 decompressed fields, `checkData`
// the page's last 0x28 bytes. Returns the names of the checks that fail, empty when all hold.
std::string dwgR2007HeaderCheckFailures(const uint8_t* decoded, size_t stored, const uint8_t* fields,
                                        const uint8_t* checkData);

// The CRC the file header keeps of a system page's stored or decompressed bytes, from the page's
// seed as the header stores it.
uint64_t dwgR2007SystemPageCrc(uint64_t storedSeed, const uint8_t* data, size_t size);

#include "kit/dwg/DwgBitReader.h"

#include <cstring>

uint64_t DwgBitReader::bits(unsigned count) {
  if (count == 0) return 0;
  if (count > endBit_ - pos_) {
    overrun_ = true;
    pos_ = endBit_;
    return 0;
  }
  size_t byte = pos_ >> 3;
  if (byte + 8 > bufferBytes_) return slowBits(count);
  uint64_t word;
  std::memcpy(&word, data_ + byte, 8);
  word = __builtin_bswap64(word);
  word <<= (pos_ & 7);
  pos_ += count;
  return word >> (64 - count);
}

uint64_t DwgBitReader::slowBits(unsigned count) {
  uint64_t value = 0;
  for (unsigned i = 0; i < count; ++i) {
    size_t p = pos_ + i;
    value = (value << 1) | ((data_[p >> 3] >> (7 - (p & 7))) & 1u);
  }
  pos_ += count;
  return value;
}

uint8_t DwgBitReader::B3() {
  uint8_t value = 0;
  for (int i = 0; i < 3; ++i) {
    uint8_t bit = uint8_t(bits(1));
    value = uint8_t((value << 1) | bit);
    if (!bit) break;
  }
  return value;
}

int16_t DwgBitReader::RS() {
  uint16_t lo = uint16_t(bits(8));
  uint16_t hi = uint16_t(bits(8));
  return int16_t(lo | (hi << 8));
}

int32_t DwgBitReader::RL() {
  uint32_t value = 0;
  for (int i = 0; i < 4; ++i) value |= uint32_t(bits(8)) << (8 * i);
  return int32_t(value);
}

uint64_t DwgBitReader::RLL() {
  uint64_t value = 0;
  for (int i = 0; i < 8; ++i) value |= bits(8) << (8 * i);
  return value;
}

double DwgBitReader::RD() {
  uint64_t raw = RLL();
  double value;
  std::memcpy(&value, &raw, sizeof value);
  return value;
}

int16_t DwgBitReader::BS() {
  switch (bits(2)) {
    case 0: return RS();
    case 1: return int16_t(bits(8));
    case 2: return 0;
    default: return 256;
  }
}

int32_t DwgBitReader::BL() {
  switch (bits(2)) {
    case 0: return RL();
    case 1: return int32_t(bits(8));
    default: return 0;  // 2 is zero; 3 is not used by writers
  }
}

uint64_t DwgBitReader::BLL() {
  unsigned length = unsigned(bits(3));  // three plain bits, unlike the stop-at-zero B3
  uint64_t value = 0;
  for (unsigned i = 0; i < length; ++i) value |= bits(8) << (8 * i);
  return value;
}

double DwgBitReader::BD() {
  switch (bits(2)) {
    case 0: return RD();
    case 1: return 1.0;
    default: return 0.0;  // 2 is zero; 3 is not used by writers
  }
}

double DwgBitReader::DD(double fallback) {
  uint64_t raw;
  std::memcpy(&raw, &fallback, sizeof raw);
  switch (bits(2)) {
    case 0: return fallback;
    case 1: {
      uint64_t low = uint32_t(RL());
      raw = (raw & 0xFFFFFFFF00000000ULL) | low;
      break;
    }
    case 2: {
      uint64_t middle = uint16_t(RS());
      uint64_t low = uint32_t(RL());
      raw = (raw & 0xFFFF000000000000ULL) | (middle << 32) | low;
      break;
    }
    default: return RD();
  }
  double value;
  std::memcpy(&value, &raw, sizeof value);
  return value;
}

uint16_t DwgBitReader::OT() {
  switch (bits(2)) {
    case 0: return uint16_t(bits(8));
    case 1: return uint16_t(bits(8) + 0x1F0);
    default: return uint16_t(RS());
  }
}

int64_t DwgBitReader::MC() {
  uint64_t value = 0;
  unsigned shift = 0;
  for (int i = 0; i < 10; ++i) {
    uint8_t byte = RC();
    if (!(byte & 0x80)) {
      bool negative = (byte & 0x40) != 0;
      if (shift < 64) value |= uint64_t(byte & 0x3F) << shift;
      value &= uint64_t(INT64_MAX);  // more bits than a handle or offset has: damage
      return negative ? -int64_t(value) : int64_t(value);
    }
    if (shift < 64) value |= uint64_t(byte & 0x7F) << shift;
    shift += 7;
    if (overrun_) break;
  }
  return int64_t(value);
}

uint64_t DwgBitReader::UMC() {
  uint64_t value = 0;
  unsigned shift = 0;
  for (int i = 0; i < 10; ++i) {
    uint8_t byte = RC();
    if (shift < 64) value |= uint64_t(byte & 0x7F) << shift;
    shift += 7;
    if (!(byte & 0x80) || overrun_) break;
  }
  return value;
}

uint32_t DwgBitReader::MS() {
  uint32_t value = 0;
  unsigned shift = 0;
  for (int i = 0; i < 3; ++i) {
    uint16_t word = uint16_t(RS());
    if (shift < 32) value |= uint32_t(word & 0x7FFF) << shift;
    shift += 15;
    if (!(word & 0x8000) || overrun_) break;
  }
  return value;
}

DwgHandleRef DwgBitReader::H() {
  DwgHandleRef ref;
  ref.code = uint8_t(bits(4));
  unsigned counter = unsigned(bits(4));
  for (unsigned i = 0; i < counter; ++i) ref.value = (ref.value << 8) | bits(8);
  return ref;
}

void DwgBitReader::rawBytes(size_t count, std::string& out) {
  size_t available = (endBit_ - pos_) / 8;
  if (count > available) {
    overrun_ = true;
    count = available;
  }
  if ((pos_ & 7) == 0) {
    out.append(reinterpret_cast<const char*>(data_ + (pos_ >> 3)), count);
    pos_ += count * 8;
    return;
  }
  // Each byte straddles two of the buffer: both lie before the end bit, so within the buffer.
  const unsigned shift = unsigned(pos_ & 7);
  const uint8_t* in = data_ + (pos_ >> 3);
  size_t start = out.size();
  out.resize(start + count);
  char* to = out.data() + start;
  size_t i = 0;
  for (; i + 8 < count; i += 8) {  // eight at a time: bytes i to i + 8 are read
    uint64_t word;
    std::memcpy(&word, in + i, 8);
    word = __builtin_bswap64(__builtin_bswap64(word) << shift | in[i + 8] >> (8 - shift));
    std::memcpy(to + i, &word, 8);
  }
  for (; i < count; ++i) to[i] = char(uint8_t(in[i] << shift | in[i + 1] >> (8 - shift)));
  pos_ += count * 8;
}

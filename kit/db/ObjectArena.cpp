#include "kit/db/ObjectArena.h"

#include <algorithm>
#include <cstdint>

void* ObjectArena::allocate(size_t size, size_t align) {
  auto aligned = [align](std::byte* p) {
    auto address = reinterpret_cast<uintptr_t>(p);
    return reinterpret_cast<std::byte*>((address + align - 1) & ~(uintptr_t(align) - 1));
  };
  std::byte* place = cursor_ ? aligned(cursor_) : nullptr;
  if (!place || place + size > limit_) {
    // Blocks grow with what is in use, a quarter of it up to 4 MB, so that the space the last
    // block leaves unused stays a small part of the whole.
    size_t blockSize = std::clamp(bytesUsed_ / 4, kFirstBlock, kLargestBlock);
    if (blockSize < size + align) blockSize = size + align;
    // Uninitialised on purpose: every object is constructed in place.
    blocks_.push_back({std::unique_ptr<std::byte[]>(new std::byte[blockSize]), blockSize});
    cursor_ = blocks_.back().memory.get();
    limit_ = cursor_ + blockSize;
    place = aligned(cursor_);
  }
  cursor_ = place + size;
  bytesUsed_ += size;
  return place;
}

void ObjectArena::clear() {
  for (auto it = destructors_.rbegin(); it != destructors_.rend(); ++it) it->destroy(it->object);
  destructors_.clear();
  blocks_.clear();
  cursor_ = limit_ = nullptr;
  bytesUsed_ = 0;
}

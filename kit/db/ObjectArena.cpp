#include "kit/db/ObjectArena.h"

#include <cstdint>

void* ObjectArena::allocate(size_t size, size_t align) {
  auto aligned = [align](std::byte* p) {
    auto address = reinterpret_cast<uintptr_t>(p);
    return reinterpret_cast<std::byte*>((address + align - 1) & ~(uintptr_t(align) - 1));
  };
  std::byte* place = cursor_ ? aligned(cursor_) : nullptr;
  if (!place || place + size > limit_) {
    // Blocks grow geometrically up to 4 MB so that small drawings stay small.
    size_t blockSize = nextBlockSize_;
    if (nextBlockSize_ < 4 * 1024 * 1024) nextBlockSize_ *= 2;
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
  nextBlockSize_ = 64 * 1024;
}

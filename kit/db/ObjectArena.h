// The memory every database object lives in: large blocks carved sequentially, freed all at once
// with the database. Objects with non-trivial destructors (those holding vectors or strings) are
// remembered and destroyed in reverse order of creation. One allocation per block instead of one
// per object keeps loading a million entities cheap in time and memory.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

class ObjectArena {
public:
  ObjectArena() = default;
  ObjectArena(const ObjectArena&) = delete;
  ObjectArena& operator=(const ObjectArena&) = delete;
  ~ObjectArena() { clear(); }

  template <class T, class... Args>
  T* make(Args&&... args) {
    void* place = allocate(sizeof(T), alignof(T));
    T* object = ::new (place) T(std::forward<Args>(args)...);
    if constexpr (!std::is_trivially_destructible_v<T>) {
      destructors_.push_back({object, [](void* p) { static_cast<T*>(p)->~T(); }});
    }
    return object;
  }

  void* allocate(size_t size, size_t align);
  // Bytes handed out so far (for statistics).
  size_t bytesUsed() const { return bytesUsed_; }
  void clear();

private:
  struct Block {
    std::unique_ptr<std::byte[]> memory;
    size_t size;
  };
  struct Destructor {
    void* object;
    void (*destroy)(void*);
  };

  std::vector<Block> blocks_;
  std::vector<Destructor> destructors_;
  std::byte* cursor_ = nullptr;
  std::byte* limit_ = nullptr;
  size_t bytesUsed_ = 0;
  static constexpr size_t kFirstBlock = 64 * 1024;
  static constexpr size_t kLargestBlock = 4 * 1024 * 1024;
};

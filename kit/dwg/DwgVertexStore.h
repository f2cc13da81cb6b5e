// Polyline vertices read before the assembly gives them to their polylines. They are kept in
// chunks, each freed once all its vertices are taken, so that a drawing of many polylines does
// not hold every vertex twice (here and in the polylines) at the assembly's peak, nor copy them
// all when a single array would grow.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "kit/db/Entities.h"

class DwgVertexStore {
public:
  // A new vertex at the end; its index is size() - 1.
  PolylineVertex& add();
  size_t size() const { return size_; }
  // Moves the vertex out; each vertex is taken at most once (later calls give a blank one).
  PolylineVertex take(size_t index);
  void clear();

private:
  static constexpr size_t kChunk = 256;
  struct Chunk {
    PolylineVertex vertices[kChunk];
    size_t taken = 0;
  };
  std::vector<std::unique_ptr<Chunk>> chunks_;
  std::vector<bool> takenFlags_;
  size_t size_ = 0;
};

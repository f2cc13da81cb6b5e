#include "kit/dwg/DwgVertexStore.h"

PolylineVertex& DwgVertexStore::add() {
  if (size_ % kChunk == 0) chunks_.push_back(std::make_unique<Chunk>());
  takenFlags_.push_back(false);
  return chunks_.back()->vertices[size_++ % kChunk];
}

PolylineVertex DwgVertexStore::take(size_t index) {
  if (index >= size_ || takenFlags_[index]) return {};
  takenFlags_[index] = true;
  std::unique_ptr<Chunk>& chunk = chunks_[index / kChunk];
  PolylineVertex vertex = std::move(chunk->vertices[index % kChunk]);
  // Only full chunks go early: the last one may still receive vertices.
  if (++chunk->taken == kChunk) chunk.reset();
  return vertex;
}

void DwgVertexStore::clear() {
  std::vector<std::unique_ptr<Chunk>>().swap(chunks_);
  std::vector<bool>().swap(takenFlags_);
  size_ = 0;
}

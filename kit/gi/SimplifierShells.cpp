// Meshes and shells: filled faces when the fill type says so, otherwise their visible edges.
#include <vector>

#include "kit/gi/OdGiGeometrySimplifier.h"

namespace {

bool visible(const uint8_t* flags, size_t index) { return !flags || flags[index] != kOdGiInvisible; }

// Consecutive visible edges of a closed loop become one point list each.
template <class Emit>
void emitVisibleEdges(const std::vector<OdGePoint3d>& loop, const uint8_t* edgeFlags, size_t firstEdge, Emit emit) {
  const size_t n = loop.size();
  if (n < 2) return;
  size_t start = 0;
  bool allVisible = true;
  for (size_t i = 0; i < n; ++i) {
    if (!visible(edgeFlags, firstEdge + i)) {
      allVisible = false;
      start = (i + 1) % n;
    }
  }
  std::vector<OdGePoint3d> run;
  if (allVisible) {
    run = loop;
    run.push_back(loop.front());
    emit(run);
    return;
  }
  // Start right after an invisible edge, so that no run is split at the loop's seam.
  for (size_t k = 0; k < n; ++k) {
    size_t i = (start + k) % n;
    if (visible(edgeFlags, firstEdge + i)) {
      if (run.empty()) run.push_back(loop[i]);
      run.push_back(loop[(i + 1) % n]);
    } else if (!run.empty()) {
      emit(run);
      run.clear();
    }
  }
  if (!run.empty()) emit(run);
}

}  // namespace

void OdGiGeometrySimplifier::meshProc(int32_t numRows, int32_t numColumns, const OdGePoint3d* vertexList,
                                      const OdGiEdgeData* edgeData, const OdGiFaceData* faceData,
                                      const OdGiVertexData*) {
  if (numRows < 1 || numColumns < 1 || !vertexList) return;
  const size_t rows = size_t(numRows), cols = size_t(numColumns);
  auto at = [&](size_t r, size_t c) { return vertexList[r * cols + c]; };
  if (fillsFaces() && rows > 1 && cols > 1) {
    const uint8_t* faceFlags = faceData ? faceData->visibility : nullptr;
    for (size_t r = 0; r + 1 < rows; ++r) {
      for (size_t c = 0; c + 1 < cols; ++c) {
        if (!visible(faceFlags, r * (cols - 1) + c)) continue;
        OdGePoint3d quad[4] = {at(r, c), at(r, c + 1), at(r + 1, c + 1), at(r + 1, c)};
        polygonOut(4, quad);
      }
    }
    return;
  }
  // Edges are numbered row edges first (rows x (cols - 1)), then column edges ((rows - 1) x cols).
  const uint8_t* edgeFlags = edgeData ? edgeData->visibility : nullptr;
  std::vector<OdGePoint3d> run;
  auto flush = [&]() {
    if (run.size() >= 2) polylineOut(int32_t(run.size()), run.data());
    run.clear();
  };
  for (size_t r = 0; r < rows; ++r) {
    for (size_t c = 0; c + 1 < cols; ++c) {
      if (!visible(edgeFlags, r * (cols - 1) + c)) {
        flush();
        continue;
      }
      if (run.empty()) run.push_back(at(r, c));
      run.push_back(at(r, c + 1));
    }
    flush();
  }
  const size_t columnBase = rows * (cols - 1);
  for (size_t c = 0; c < cols; ++c) {
    for (size_t r = 0; r + 1 < rows; ++r) {
      if (!visible(edgeFlags, columnBase + r * cols + c)) {
        flush();
        continue;
      }
      if (run.empty()) run.push_back(at(r, c));
      run.push_back(at(r + 1, c));
    }
    flush();
  }
}

void OdGiGeometrySimplifier::shellProc(int32_t numVertices, const OdGePoint3d* vertexList, int32_t faceListSize,
                                       const int32_t* faceList, const OdGiEdgeData* edgeData,
                                       const OdGiFaceData* faceData, const OdGiVertexData*) {
  if (numVertices <= 0 || !vertexList || faceListSize <= 0 || !faceList) return;
  const bool fill = fillsFaces();
  const uint8_t* edgeFlags = edgeData ? edgeData->visibility : nullptr;
  const uint8_t* faceFlags = faceData ? faceData->visibility : nullptr;
  std::vector<std::vector<OdGePoint3d>> loops;  // the current face and its holes
  size_t faceIndex = 0, edgeIndex = 0;
  bool faceVisible = true;
  auto flushFace = [&]() {
    if (!loops.empty() && fill && faceVisible) {
      const OdGeVector3d* normal = faceData && faceData->normals ? &faceData->normals[faceIndex - 1] : nullptr;
      shellFaceOut(loops, normal);
    }
    loops.clear();
  };
  int32_t i = 0;
  while (i < faceListSize) {
    int32_t count = faceList[i++];
    bool hole = count < 0;
    size_t n = size_t(hole ? -int64_t(count) : count);
    if (n == 0 || n > size_t(faceListSize - i)) break;  // a broken list ends the shell
    if (!hole) {
      flushFace();
      faceVisible = visible(faceFlags, faceIndex++);
    }
    std::vector<OdGePoint3d> loop;
    loop.reserve(n);
    for (size_t k = 0; k < n; ++k) {
      int32_t v = faceList[i + int32_t(k)];
      if (v >= 0 && v < numVertices) loop.push_back(vertexList[v]);
    }
    i += int32_t(n);
    if (!fill && faceVisible && loop.size() == n) {
      emitVisibleEdges(loop, edgeFlags, edgeIndex,
                       [this](const std::vector<OdGePoint3d>& run) { polylineOut(int32_t(run.size()), run.data()); });
    }
    edgeIndex += n;
    if (loop.size() == n) loops.push_back(std::move(loop));
  }
  flushFace();
}

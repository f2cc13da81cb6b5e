// Polygon meshes, polyface meshes, 3D faces and subdivision meshes: shells and meshes whose
// visible edges are drawn (their faces are not filled in a wireframe view).
#include <algorithm>

#include "kit/gi/regen/RegenEntities.h"

namespace gi {

void regenPolygonMesh(GiRegenContext& ctx, const PolylineEntity& e) {
  std::vector<OdGePoint3d> points;
  for (const PolylineVertex& v : e.vertices) {
    if ((v.flags & PolylineVertex::kPolyfaceFace) == 0) points.push_back(v.position);
  }
  int rows = e.meshM, cols = e.meshN;
  if (rows < 1 || cols < 1 || size_t(rows) * size_t(cols) > points.size()) {
    // Counts that do not fit the vertices: draw what there is as a line.
    if (points.size() >= 2) ctx.geometry().polylineProc(int32_t(points.size()), points.data());
    return;
  }
  bool closedM = (e.flags & PolylineEntity::kClosed) != 0;
  bool closedN = (e.flags & PolylineEntity::kClosedN) != 0;
  // Closed directions repeat their first row or column at the end.
  int outRows = rows + (closedM ? 1 : 0), outCols = cols + (closedN ? 1 : 0);
  std::vector<OdGePoint3d> grid;
  grid.reserve(size_t(outRows) * size_t(outCols));
  for (int r = 0; r < outRows; ++r) {
    for (int c = 0; c < outCols; ++c) grid.push_back(points[size_t((r % rows) * cols + (c % cols))]);
  }
  ctx.geometry().meshProc(outRows, outCols, grid.data());
}

void regenPolyfaceMesh(GiRegenContext& ctx, const PolylineEntity& e) {
  std::vector<OdGePoint3d> points;
  std::vector<int32_t> faces;
  std::vector<uint8_t> edgeVisibility;
  for (const PolylineVertex& v : e.vertices) {
    if ((v.flags & PolylineVertex::kPolyfaceFace) == 0) points.push_back(v.position);
  }
  for (const PolylineVertex& v : e.vertices) {
    if ((v.flags & PolylineVertex::kPolyfaceFace) == 0) continue;
    int32_t face[4];
    uint8_t visible[4];
    int32_t count = 0;
    for (int k = 0; k < 4; ++k) {
      int32_t index = v.faceIndices[k];
      if (index == 0) break;
      int32_t position = (index < 0 ? -index : index) - 1;
      if (position >= int32_t(points.size())) {
        count = 0;
        break;
      }
      face[count] = position;
      visible[count] = index < 0 ? kOdGiInvisible : kOdGiVisible;
      ++count;
    }
    if (count < 2) continue;
    faces.push_back(count);
    faces.insert(faces.end(), face, face + count);
    edgeVisibility.insert(edgeVisibility.end(), visible, visible + count);
  }
  if (faces.empty() || points.empty()) return;
  OdGiEdgeData edges;
  edges.visibility = edgeVisibility.data();
  ctx.geometry().shellProc(int32_t(points.size()), points.data(), int32_t(faces.size()), faces.data(), &edges);
}

void regenFace(GiRegenContext& ctx, const FaceEntity& e) {
  bool triangle = e.corners[2] == e.corners[3];
  int32_t count = triangle ? 3 : 4;
  int32_t faces[5] = {count, 0, 1, 2, 3};
  uint8_t visible[4];
  for (int k = 0; k < 4; ++k) visible[k] = (e.invisibleEdges & (1 << k)) ? kOdGiInvisible : kOdGiVisible;
  if (triangle) visible[2] = visible[2] == kOdGiInvisible || visible[3] == kOdGiInvisible ? kOdGiInvisible : kOdGiVisible;
  OdGiEdgeData edges;
  edges.visibility = visible;
  ctx.geometry().shellProc(count, e.corners, count + 1, faces, &edges);
}

void regenMesh(GiRegenContext& ctx, const MeshEntity& e) {
  if (e.vertices.empty() || e.faceList.empty()) return;
  // The face list is already in shell form (count, indices ...); broken entries end it.
  std::vector<int32_t> faces;
  for (size_t i = 0; i < e.faceList.size();) {
    int32_t count = e.faceList[i];
    if (count < 2 || size_t(count) > e.faceList.size() - i - 1) break;
    bool ok = std::all_of(e.faceList.begin() + long(i) + 1, e.faceList.begin() + long(i) + 1 + count,
                          [&](int32_t v) { return v >= 0 && size_t(v) < e.vertices.size(); });
    if (ok) faces.insert(faces.end(), e.faceList.begin() + long(i), e.faceList.begin() + long(i) + 1 + count);
    i += size_t(count) + 1;
  }
  if (faces.empty()) return;
  ctx.geometry().shellProc(int32_t(e.vertices.size()), e.vertices.data(), int32_t(faces.size()), faces.data());
}

}  // namespace gi

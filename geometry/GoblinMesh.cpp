#include "geometry/GoblinMesh.h"

namespace morvane {
namespace {

void appendVertex(const GoblinPoolVertex& vertex, GoblinMesh& mesh) {
  mesh.points.push_back({vertex.x, vertex.y, vertex.z, 1.0F});
  mesh.normals.push_back({vertex.nx, vertex.ny, vertex.nz});
  mesh.us.push_back(vertex.u);
  mesh.vs.push_back(-vertex.v);
}

template <typename Visit>
void forEachCorner(const GoblinRecord& record, Visit visit) {
  for (std::int32_t f = 0; f < record.faceCount; ++f) {
    const GoblinFace& face = record.faces[f];
    for (std::int32_t corner = 0; corner < face.cornerCount; ++corner) visit(face.indices[corner]);
  }
}

}  // namespace

GoblinMesh buildGoblinMesh(const GoblinRecord& record, const std::vector<GoblinPoolVertex>& pool,
                           LocalIndexMap& localIndices) {
  GoblinMesh mesh;
  for (std::int32_t f = 0; f < record.faceCount; ++f)
    mesh.polygonCounts.push_back(record.faces[f].cornerCount);
  forEachCorner(record, [&](std::int32_t poolIndex) {
    std::int32_t& local = localIndices[poolIndex];
    if (local < 0) {
      local = static_cast<std::int32_t>(mesh.points.size());
      appendVertex(pool[poolIndex], mesh);
    }
    mesh.polygonConnects.push_back(local);
  });
  forEachCorner(record, [&](std::int32_t poolIndex) { localIndices[poolIndex] = -1; });
  return mesh;
}

}  // namespace morvane

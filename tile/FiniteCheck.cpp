#include "tile/FiniteCheck.h"

#include <cmath>
#include <cstring>
#include <vector>

#include "geometry/TileMatrix.h"
#include "tile/MeshTables.h"
#include "tile/SceneAttributes.h"

namespace morvane {
namespace {

bool isFinite(float x, float y, float z) {
  return std::isfinite(x) && std::isfinite(y) && std::isfinite(z);
}

bool isFinite(const VertexKey& vertex, const Matrix44& toTile) {
  const Float3 position = transformPoint(vertex.position, toTile);
  const Float3& n = vertex.normal;
  const Quat normal = transformVector4({n.x, n.y, n.z, 0.0F}, toTile);
  return isFinite(position.x, position.y, position.z) && isFinite(normal.x, normal.y, normal.z);
}

std::string fault(MObject mesh, std::size_t vertex) {
  return std::string(getFullPathName(mesh).asChar()) + ": vertex " + std::to_string(vertex) +
         " is not finite";
}

// The first of the mesh's vertices with exactly these bits.
std::size_t vertexAt(MObject mesh, const Float3& position) {
  std::vector<Float3> positions;
  getMeshPositions(mesh, positions);
  std::size_t vertex = 0;
  while (vertex + 1 < positions.size() &&
         std::memcmp(&positions[vertex], &position, sizeof position) != 0) {
    ++vertex;
  }
  return vertex;
}

}  // namespace

std::string whyNotFinite(MObject mesh) {
  std::vector<Float3> positions;
  getMeshPositions(mesh, positions);
  for (std::size_t i = 0; i < positions.size(); ++i)
    if (!isFinite(positions[i].x, positions[i].y, positions[i].z)) return fault(mesh, i);
  return std::string();
}

std::string whyNotFinite(MObject goblin, const WeldedMesh& welded, const Matrix44& toTile) {
  for (const VertexKey& vertex : welded.vertices)
    if (!isFinite(vertex, toTile)) return fault(goblin, vertexAt(goblin, vertex.position));
  return std::string();
}

}  // namespace morvane

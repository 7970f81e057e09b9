#include "tools/model/GoblinMeshes.h"

#include <cmath>
#include <limits>
#include <utility>

#include "tools/terminal/Text.h"
#include "util/ByteOrder.h"

namespace tools {
namespace {

constexpr std::uint32_t kUnused = std::numeric_limits<std::uint32_t>::max();

float finiteOr0(float value) {
  return std::isfinite(value) ? value : 0;
}

void setNormal(MeshVertex& vertex, float x, float y, float z) {
  const double length = std::hypot(double{x}, double{y}, double{z});
  const bool usable = std::isfinite(length) && length > 0;
  vertex[3] = usable ? static_cast<float>(x / length) : 0;
  vertex[4] = usable ? static_cast<float>(y / length) : 1;
  vertex[5] = usable ? static_cast<float>(z / length) : 0;
}

MeshVertex toVertex(const morvane::GoblinPoolVertex& p, bool tagged) {
  MeshVertex vertex = {p.x, p.y, tagged ? 1 - p.z : p.z};
  setNormal(vertex, p.nx, p.ny, p.nz);
  vertex[6] = finiteOr0(p.u);
  vertex[7] = finiteOr0(tagged ? 1 - p.v : p.v);
  return vertex;
}

class MeshBuilder {
 public:
  explicit MeshBuilder(const Goblins& goblins)
      : goblins_(goblins),
        tagged_(goblins.kind == morvane::GoblinBlobKind::kTagged),
        numbers_(goblins.pool.size(), kUnused) {}

  ViewMesh build(const Goblin& goblin, std::size_t number, std::size_t& dropped) {
    ViewMesh mesh;
    mesh.name = goblin.name.empty() ? "goblin " + std::to_string(number) : toUtf8(goblin.name);
    for (const auto& face : goblin.faces)
      for (std::size_t i = 2; i < face.size(); ++i)
        addTriangle(mesh, {face[0], face[i - 1], face[i]}, dropped);
    for (const std::size_t i : used_) numbers_[i] = kUnused;
    used_.clear();
    return mesh;
  }

 private:
  void addTriangle(ViewMesh& mesh, std::array<std::int32_t, 3> corners, std::size_t& dropped) {
    if (!tagged_) std::swap(corners[0], corners[2]);
    for (const std::int32_t corner : corners) {
      const auto& p = goblins_.pool[static_cast<std::size_t>(corner)];
      if (std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z)) continue;
      ++dropped;
      return;
    }
    mesh.triangles.push_back(
        {numberOf(mesh, corners[0]), numberOf(mesh, corners[1]), numberOf(mesh, corners[2])});
  }

  std::uint32_t numberOf(ViewMesh& mesh, std::int32_t corner) {
    const auto i = static_cast<std::size_t>(corner);
    if (numbers_[i] == kUnused) {
      numbers_[i] = static_cast<std::uint32_t>(mesh.vertices.size());
      used_.push_back(i);
      mesh.vertices.push_back(toVertex(goblins_.pool[i], tagged_));
    }
    return numbers_[i];
  }

  const Goblins& goblins_;
  bool tagged_;
  std::vector<std::uint32_t> numbers_;  // in the mesh being built, of each pool entry
  std::vector<std::size_t> used_;
};

}  // namespace

GoblinMeshes goblinMeshes(const Goblins& goblins) {
  GoblinMeshes result;
  MeshBuilder builder(goblins);
  for (const Goblin& goblin : goblins.goblins)
    result.meshes.push_back(builder.build(goblin, result.meshes.size() + 1, result.dropped));
  return result;
}

ViewMesh unitTile() {
  ViewMesh tile;
  tile.name = "tile";
  tile.vertices = {{0, 0, 0, 0, 1, 0, 0, 0},
                   {0, 0, 1, 0, 1, 0, 0, 1},
                   {1, 0, 1, 0, 1, 0, 1, 1},
                   {1, 0, 0, 0, 1, 0, 1, 0}};
  tile.triangles = {{0, 1, 2}, {0, 2, 3}};
  return tile;
}

void appendNumbers(const ViewMesh& mesh, std::vector<std::uint8_t>& vertices,
                   std::vector<std::uint8_t>& indices) {
  std::size_t at = vertices.size();
  vertices.resize(at + mesh.vertices.size() * sizeof(MeshVertex));
  for (const MeshVertex& vertex : mesh.vertices) {
    for (const float number : vertex) {
      morvane::storeLeFloat(&vertices[at], number);
      at += sizeof number;
    }
  }
  at = indices.size();
  indices.resize(at + mesh.triangles.size() * sizeof mesh.triangles[0]);
  for (const auto& triangle : mesh.triangles) {
    for (const std::uint32_t corner : triangle) {
      morvane::storeLe32(&indices[at], corner);
      at += sizeof corner;
    }
  }
}

}  // namespace tools

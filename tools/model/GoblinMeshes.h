#ifndef MORVANE_TOOLS_MODEL_GOBLINMESHES_H_
#define MORVANE_TOOLS_MODEL_GOBLINMESHES_H_

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/model/TileFile.h"

namespace tools {

// Position, normal, texture coordinates.
using MeshVertex = std::array<float, 8>;

// One mesh in tile space as 3D viewers take it: y up, right-handed, corners counter-clockwise, v =
// 0 at the picture's top row (where z = 0).
struct ViewMesh {
  std::string name;  // valid UTF-8; "goblin N" for one without a name
  std::vector<MeshVertex> vertices;
  std::vector<std::array<std::uint32_t, 3>> triangles;
};

struct GoblinMeshes {
  std::vector<ViewMesh> meshes;  // one a goblin, in order, perhaps without triangles
  std::size_t dropped = 0;  // triangles left out: a coordinate of theirs is not a finite number
};

// The goblins as meshes of their own, the same whichever layout they were stored in. Polygons are
// cut into fans. Every number is finite and every normal one long: where it has no length it points
// up, and texture coordinates that are not numbers become 0.
GoblinMeshes goblinMeshes(const Goblins& goblins);

// The unit tile: x and z from 0 to 1 at y = 0.
ViewMesh unitTile();

// Appends the mesh's numbers, little-endian: 8 floats a vertex, and three 32-bit indices a
// triangle, counted from the mesh's own first vertex.
void appendNumbers(const ViewMesh& mesh, std::vector<std::uint8_t>& vertices,
                   std::vector<std::uint8_t>& indices);

}  // namespace tools

#endif  // MORVANE_TOOLS_MODEL_GOBLINMESHES_H_

#ifndef MORVANE_GEOMETRY_GOBLINMESH_H_
#define MORVANE_GEOMETRY_GOBLINMESH_H_

#include <array>
#include <cstdint>
#include <vector>

#include "geometry/GoblinGeometry.h"

namespace morvane {

// The arrays from which a host makes one goblin's mesh. Vertices are the goblin's own: pool
// vertices in the order in which its faces first use them.
struct GoblinMesh {
  std::vector<std::int32_t> polygonCounts;     // corners of each face
  std::vector<std::int32_t> polygonConnects;   // one vertex index a corner, face after face
  std::vector<std::array<float, 4>> points;    // x, y, z, 1
  std::vector<std::array<double, 3>> normals;  // one a vertex
  std::vector<float> us;                       // one a vertex
  std::vector<float> vs;                       // one a vertex: the stored v, negated
};

// For each vertex of the pool its index in the current goblin, or -1. One map serves all goblins of
// a pool, so that a goblin costs only what its own corners cost.
using LocalIndexMap = std::vector<std::int32_t>;

// Builds the mesh of `record`, whose indices must lie inside the pool. `localIndices` has the
// pool's size and must hold -1 everywhere; it does so again on return.
GoblinMesh buildGoblinMesh(const GoblinRecord& record, const std::vector<GoblinPoolVertex>& pool,
                           LocalIndexMap& localIndices);

}  // namespace morvane

#endif  // MORVANE_GEOMETRY_GOBLINMESH_H_

#ifndef MORVANE_HOST_MESH_MESHDERIVED_H_
#define MORVANE_HOST_MESH_MESHDERIVED_H_

#include <maya/MMatrix.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/mesh/MeshData.h"
#include "host/mesh/MeshIndex.h"

namespace host {

// What follows from a mesh's stored data. Each part is computed when it is first asked for.
struct MeshData::Derived {
  struct Index {
    MMatrix matrix;
    std::unique_ptr<SurfaceIndex> index;
  };

  std::string problem;
  std::vector<int> cornerVertices;
  std::optional<std::vector<Vec3>> tweakedPoints;
  std::optional<MeshNormals> normals;
  std::optional<MeshTriangles> triangles;
  std::optional<MeshBox> box;
  std::vector<Index> indices;  // the most recently made last
};

}  // namespace host

#endif  // MORVANE_HOST_MESH_MESHDERIVED_H_

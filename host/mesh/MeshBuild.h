#ifndef MORVANE_HOST_MESH_MESHBUILD_H_
#define MORVANE_HOST_MESH_MESHBUILD_H_

#include <functional>
#include <string>
#include <vector>

#include "host/mesh/MeshData.h"

namespace host {

// Polygons as lists of vertices: `counts` corners each, the vertices of all in turn in `connects`.
struct MeshPolygons {
  std::vector<Vec3> points;
  std::vector<int> counts;
  std::vector<int> connects;
};

// Replaces `mesh` by one with these polygons, with the edges that they imply, numbered as the
// polygons come to them, all smooth unless `isHard` says otherwise of an edge between two vertices.
// Those of `firstEdges` that the polygons have come first, in that order and with their flags.
// Gives what is wrong, and then leaves `mesh` alone, when there is no polygon, a count is less than
// 3, the counts do not add up to the connects, or a vertex does not exist.
std::string buildMesh(const MeshPolygons& polygons, MeshData& mesh,
                      const std::function<bool(int, int)>& isHard = nullptr,
                      const std::vector<MeshEdge>& firstEdges = {});

}  // namespace host

#endif  // MORVANE_HOST_MESH_MESHBUILD_H_

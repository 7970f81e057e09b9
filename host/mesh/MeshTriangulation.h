#ifndef MORVANE_HOST_MESH_MESHTRIANGULATION_H_
#define MORVANE_HOST_MESH_MESHTRIANGULATION_H_

#include <utility>
#include <vector>

#include "host/mesh/MeshData.h"

namespace host {

// Covers every face: a convex one by a fan from its first corner, any other by cutting off ears in
// the face's plane, holes being joined to the outer loop first. A face of n corners and h holes
// gives n − 2 + 2h triangles, all turned like the face.
MeshTriangles triangulate(const MeshData& mesh);

// One polygon in the plane, as triangulate does it: `loops` are ranges of `points`, the outer loop
// first, counter-clockwise. Appends triangles of positions in `points`, plus `firstCorner`. Every
// test takes one from `budget`; once that is used up, ears are cut without a test, so that a
// hostile polygon costs quality and not hours.
struct PlanePoint {
  double x = 0.0;
  double y = 0.0;
};
void cutEars(const std::vector<PlanePoint>& points, const std::vector<std::pair<int, int>>& loops,
             int firstCorner, long long& budget, std::vector<MeshTriangle>& triangles);

}  // namespace host

#endif  // MORVANE_HOST_MESH_MESHTRIANGULATION_H_

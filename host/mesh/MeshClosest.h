#ifndef MORVANE_HOST_MESH_MESHCLOSEST_H_
#define MORVANE_HOST_MESH_MESHCLOSEST_H_

#include "host/math/MeshVector.h"

namespace host {

// A point of a triangle as its weights of corners a, b and c, which sum to 1.
struct TrianglePoint {
  double weights[3];
  Vec3 point;
  double distance;
};

// The point of the triangle (a, b, c) that is nearest to `from`. The triangle may be flat or a
// single point.
TrianglePoint closestOnTriangle(const Vec3& from, const Vec3& a, const Vec3& b, const Vec3& c);

}  // namespace host

#endif  // MORVANE_HOST_MESH_MESHCLOSEST_H_

#ifndef MORVANE_HOST_MESH_MESHTRANSFORM_H_
#define MORVANE_HOST_MESH_MESHTRANSFORM_H_

#include <maya/MMatrix.h>

#include "host/math/MeshVector.h"

namespace host {

// The point as a row vector times the matrix. Matrices of the DAG keep the fourth component at 1.
inline Vec3 transformed(const Vec3& p, const MMatrix& m) {
  return {p.x * m(0, 0) + p.y * m(1, 0) + p.z * m(2, 0) + m(3, 0),
          p.x * m(0, 1) + p.y * m(1, 1) + p.z * m(2, 1) + m(3, 1),
          p.x * m(0, 2) + p.y * m(1, 2) + p.z * m(2, 2) + m(3, 2)};
}

// The normal after the matrix, of length 1: it stays at right angles to its surface. The matrix of
// cofactors is used, which also exists for a matrix that flattens.
inline Vec3 transformedNormal(const Vec3& n, const MMatrix& m) {
  const Vec3 x = {m(0, 0), m(0, 1), m(0, 2)};
  const Vec3 y = {m(1, 0), m(1, 1), m(1, 2)};
  const Vec3 z = {m(2, 0), m(2, 1), m(2, 2)};
  const Vec3 image = cross(y, z) * n.x + cross(z, x) * n.y + cross(x, y) * n.z;
  return normalized(dot(cross(x, y), z) < 0.0 ? image * -1.0 : image);
}

}  // namespace host

#endif  // MORVANE_HOST_MESH_MESHTRANSFORM_H_

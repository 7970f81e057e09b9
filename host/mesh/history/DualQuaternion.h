#ifndef MORVANE_HOST_MESH_HISTORY_DUALQUATERNION_H_
#define MORVANE_HOST_MESH_HISTORY_DUALQUATERNION_H_

#include <maya/MMatrix.h>

namespace host {

// A rotation and a translation as eight numbers that can be blended: L. Kavan and others, "Skinning
// with Dual Quaternions", 2007.
class DualQuaternion {
 public:
  // Zero, to add to.
  DualQuaternion() = default;

  // Made of the matrix's (row vectors) translation and the rotation nearest to it. Scale and shear
  // are left out, and a mirrored matrix counts as its rotation.
  static DualQuaternion rigidPartOf(const MMatrix& matrix);

  // Adds `weight` times the other, the shorter way round.
  void add(const DualQuaternion& other, double weight);

  // The rigid matrix that the sum stands for; the identity for zero.
  MMatrix toMatrix() const;

 private:
  double real_[4] = {0.0, 0.0, 0.0, 0.0};  // w, x, y, z
  double dual_[4] = {0.0, 0.0, 0.0, 0.0};
};

}  // namespace host

#endif  // MORVANE_HOST_MESH_HISTORY_DUALQUATERNION_H_

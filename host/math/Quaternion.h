#ifndef MORVANE_HOST_MATH_QUATERNION_H_
#define MORVANE_HOST_MATH_QUATERNION_H_

#include <maya/MMatrix.h>

namespace host {

// A rotation; (w, x, y, z) and its negative are the same one.
struct Quaternion {
  double w = 1.0;
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;

  // Of a matrix for row vectors that is a rotation.
  static Quaternion of(const MMatrix& rotation);

  MMatrix toMatrix() const;  // of a unit quaternion
  // The identity for what has no length.
  Quaternion normalized() const;
};

// From `a` at 0 to `b` at 1 along an arc, the shorter one unless `longWay`. Both are unit
// quaternions.
Quaternion slerp(const Quaternion& a, const Quaternion& b, double share, bool longWay = false);

}  // namespace host

#endif  // MORVANE_HOST_MATH_QUATERNION_H_

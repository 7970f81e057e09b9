#ifndef MORVANE_UTIL_QUAT_H_
#define MORVANE_UTIL_QUAT_H_

namespace morvane {

// A rotation as four floats x, y, z, w. A new quaternion is the identity, (0, 0, 0, 1).
struct Quat {
  float x = 0, y = 0, z = 0, w = 1;

  // sqrt(x^2 + y^2 + z^2 + w^2), in double precision.
  double length() const;

  // Scales to unit length in place and returns the quaternion. One without a length (all zero, or
  // holding not-a-number) becomes the identity.
  Quat& normalise();
};

}  // namespace morvane

#endif  // MORVANE_UTIL_QUAT_H_

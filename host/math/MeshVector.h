#ifndef MORVANE_HOST_MATH_MESHVECTOR_H_
#define MORVANE_HOST_MATH_MESHVECTOR_H_

#include <cmath>

namespace host {

// A position or direction in double precision, as meshes compute with it.
struct Vec3 {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
};

inline Vec3 operator+(const Vec3& a, const Vec3& b) {
  return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec3 operator-(const Vec3& a, const Vec3& b) {
  return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec3 operator*(const Vec3& a, double s) {
  return {a.x * s, a.y * s, a.z * s};
}
inline bool operator==(const Vec3& a, const Vec3& b) {
  return a.x == b.x && a.y == b.y && a.z == b.z;
}

inline double dot(const Vec3& a, const Vec3& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vec3 cross(const Vec3& a, const Vec3& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double length(const Vec3& a) {
  return std::hypot(a.x, a.y, a.z);
}
inline bool isFinite(const Vec3& a) {
  return std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(a.z);
}
// The zero vector where `a` has no direction.
inline Vec3 normalized(const Vec3& a) {
  const double size = length(a);
  return size > 0.0 && std::isfinite(size) ? a * (1.0 / size) : Vec3{};
}

}  // namespace host

#endif  // MORVANE_HOST_MATH_MESHVECTOR_H_

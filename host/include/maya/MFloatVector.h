#ifndef MORVANE_MAYA_MFLOATVECTOR_H_
#define MORVANE_MAYA_MFLOATVECTOR_H_

#include <ostream>

class MVector;

// A direction in single precision.
class MFloatVector {
 public:
  MFloatVector() = default;
  MFloatVector(float xx, float yy, float zz = 0.0f) : x(xx), y(yy), z(zz) {}
  explicit MFloatVector(const float f[3]) : x(f[0]), y(f[1]), z(f[2]) {}
  MFloatVector(const MVector& v);

  float& operator[](unsigned int i) { return i == 0 ? x : i == 1 ? y : z; }
  float operator[](unsigned int i) const { return i == 0 ? x : i == 1 ? y : z; }
  float& operator()(unsigned int i) { return (*this)[i]; }
  float operator()(unsigned int i) const { return (*this)[i]; }

  MFloatVector operator+(const MFloatVector& v) const { return {x + v.x, y + v.y, z + v.z}; }
  MFloatVector operator-(const MFloatVector& v) const { return {x - v.x, y - v.y, z - v.z}; }
  MFloatVector operator-() const { return {-x, -y, -z}; }
  MFloatVector operator*(float s) const { return {x * s, y * s, z * s}; }
  float operator*(const MFloatVector& v) const { return x * v.x + y * v.y + z * v.z; }
  bool operator==(const MFloatVector& v) const { return x == v.x && y == v.y && z == v.z; }
  bool operator!=(const MFloatVector& v) const { return !(*this == v); }

  float length() const;
  // A vector of length 0 stays as it is.
  MFloatVector normal() const;
  void normalize() { *this = normal(); }

  float x = 0.0f;
  float y = 0.0f;
  float z = 0.0f;
};

inline std::ostream& operator<<(std::ostream& out, const MFloatVector& v) {
  return out << '(' << v.x << ", " << v.y << ", " << v.z << ')';
}

#endif  // MORVANE_MAYA_MFLOATVECTOR_H_

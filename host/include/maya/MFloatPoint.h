#ifndef MORVANE_MAYA_MFLOATPOINT_H_
#define MORVANE_MAYA_MFLOATPOINT_H_

#include <maya/MFloatVector.h>

#include <ostream>

class MPoint;

// A position in single precision, homogeneous: (x, y, z, 1) unless a fourth component is given.
class MFloatPoint {
 public:
  MFloatPoint() = default;
  MFloatPoint(float xx, float yy, float zz = 0.0f, float ww = 1.0f) : x(xx), y(yy), z(zz), w(ww) {}
  explicit MFloatPoint(const float f[4]) : x(f[0]), y(f[1]), z(f[2]), w(f[3]) {}
  MFloatPoint(const MPoint& p);

  float& operator[](unsigned int i) { return i == 0 ? x : i == 1 ? y : i == 2 ? z : w; }
  float operator[](unsigned int i) const { return i == 0 ? x : i == 1 ? y : i == 2 ? z : w; }
  float& operator()(unsigned int i) { return (*this)[i]; }
  float operator()(unsigned int i) const { return (*this)[i]; }

  MFloatPoint operator+(const MFloatVector& v) const { return {x + v.x, y + v.y, z + v.z, w}; }
  MFloatPoint operator-(const MFloatVector& v) const { return {x - v.x, y - v.y, z - v.z, w}; }
  MFloatVector operator-(const MFloatPoint& p) const { return {x - p.x, y - p.y, z - p.z}; }
  bool operator==(const MFloatPoint& p) const {
    return x == p.x && y == p.y && z == p.z && w == p.w;
  }
  bool operator!=(const MFloatPoint& p) const { return !(*this == p); }

  float distanceTo(const MFloatPoint& p) const { return (*this - p).length(); }

  float x = 0.0f;
  float y = 0.0f;
  float z = 0.0f;
  float w = 1.0f;
};

inline std::ostream& operator<<(std::ostream& out, const MFloatPoint& p) {
  return out << '(' << p.x << ", " << p.y << ", " << p.z << ", " << p.w << ')';
}

#endif  // MORVANE_MAYA_MFLOATPOINT_H_

#ifndef MORVANE_MAYA_MPOINT_H_
#define MORVANE_MAYA_MPOINT_H_

#include <maya/MVector.h>

#include <ostream>

class MFloatPoint;
class MMatrix;

// A position in double precision, homogeneous: (x, y, z, 1) unless a fourth component is given.
class MPoint {
 public:
  MPoint() = default;
  MPoint(double xx, double yy, double zz = 0.0, double ww = 1.0) : x(xx), y(yy), z(zz), w(ww) {}
  explicit MPoint(const double d[4]) : x(d[0]), y(d[1]), z(d[2]), w(d[3]) {}
  MPoint(const MVector& v) : x(v.x), y(v.y), z(v.z) {}
  MPoint(const MFloatPoint& p);

  double& operator[](unsigned int i) { return i == 0 ? x : i == 1 ? y : i == 2 ? z : w; }
  double operator[](unsigned int i) const { return i == 0 ? x : i == 1 ? y : i == 2 ? z : w; }
  double& operator()(unsigned int i) { return (*this)[i]; }
  double operator()(unsigned int i) const { return (*this)[i]; }

  MPoint operator+(const MVector& v) const { return {x + v.x, y + v.y, z + v.z, w}; }
  MPoint operator-(const MVector& v) const { return {x - v.x, y - v.y, z - v.z, w}; }
  MVector operator-(const MPoint& p) const { return {x - p.x, y - p.y, z - p.z}; }
  MPoint operator*(double s) const { return {x * s, y * s, z * s, w}; }
  // The row vector (x, y, z, w) times the matrix; the result keeps its fourth component.
  MPoint operator*(const MMatrix& m) const;
  MPoint& operator+=(const MVector& v) { return *this = *this + v; }
  MPoint& operator-=(const MVector& v) { return *this = *this - v; }
  MPoint& operator*=(const MMatrix& m) { return *this = *this * m; }
  bool operator==(const MPoint& p) const { return x == p.x && y == p.y && z == p.z && w == p.w; }
  bool operator!=(const MPoint& p) const { return !(*this == p); }

  double distanceTo(const MPoint& p) const { return (*this - p).length(); }
  // Divides by the fourth component, where that is neither 0 nor 1.
  MPoint& cartesianize();
  bool isEquivalent(const MPoint& p, double tolerance = 1.0e-10) const {
    return distanceTo(p) <= tolerance;
  }

  static const MPoint origin;

  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
  double w = 1.0;
};

inline std::ostream& operator<<(std::ostream& out, const MPoint& p) {
  return out << '(' << p.x << ", " << p.y << ", " << p.z << ", " << p.w << ')';
}

#endif  // MORVANE_MAYA_MPOINT_H_

#ifndef MORVANE_MAYA_MVECTOR_H_
#define MORVANE_MAYA_MVECTOR_H_

#include <ostream>

class MFloatVector;
class MMatrix;
class MPoint;

// A direction in double precision: matrices turn and scale it, translations leave it alone.
class MVector {
 public:
  MVector() = default;
  MVector(double xx, double yy, double zz = 0.0) : x(xx), y(yy), z(zz) {}
  explicit MVector(const double d[3]) : x(d[0]), y(d[1]), z(d[2]) {}
  MVector(const MFloatVector& v);
  MVector(const MPoint& p);

  double& operator[](unsigned int i) { return i == 0 ? x : i == 1 ? y : z; }
  double operator[](unsigned int i) const { return i == 0 ? x : i == 1 ? y : z; }
  double& operator()(unsigned int i) { return (*this)[i]; }
  double operator()(unsigned int i) const { return (*this)[i]; }

  MVector operator+(const MVector& v) const { return {x + v.x, y + v.y, z + v.z}; }
  MVector operator-(const MVector& v) const { return {x - v.x, y - v.y, z - v.z}; }
  MVector operator-() const { return {-x, -y, -z}; }
  MVector operator*(double s) const { return {x * s, y * s, z * s}; }
  MVector operator/(double s) const { return {x / s, y / s, z / s}; }
  double operator*(const MVector& v) const { return x * v.x + y * v.y + z * v.z; }  // dot product
  MVector operator^(const MVector& v) const;                                        // cross product
  MVector operator*(const MMatrix& m) const;
  MVector& operator+=(const MVector& v) { return *this = *this + v; }
  MVector& operator-=(const MVector& v) { return *this = *this - v; }
  MVector& operator*=(double s) { return *this = *this * s; }
  MVector& operator/=(double s) { return *this = *this / s; }
  bool operator==(const MVector& v) const { return x == v.x && y == v.y && z == v.z; }
  bool operator!=(const MVector& v) const { return !(*this == v); }

  double length() const;
  // A vector of length 0 stays as it is.
  MVector normal() const;
  void normalize() { *this = normal(); }
  double angle(const MVector& v) const;  // radians
  bool isEquivalent(const MVector& v, double tolerance = 1.0e-10) const {
    return (*this - v).length() <= tolerance;
  }

  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
};

inline MVector operator*(double s, const MVector& v) {
  return v * s;
}

inline std::ostream& operator<<(std::ostream& out, const MVector& v) {
  return out << '(' << v.x << ", " << v.y << ", " << v.z << ')';
}

#endif  // MORVANE_MAYA_MVECTOR_H_

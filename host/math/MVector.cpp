#include <maya/MFloatPoint.h>
#include <maya/MFloatVector.h>
#include <maya/MMatrix.h>
#include <maya/MPoint.h>
#include <maya/MVector.h>

#include <cmath>

MVector::MVector(const MFloatVector& v) : x(v.x), y(v.y), z(v.z) {}

MVector::MVector(const MPoint& p) : x(p.x), y(p.y), z(p.z) {}

MVector MVector::operator^(const MVector& v) const {
  return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
}

MVector MVector::operator*(const MMatrix& m) const {
  return {x * m(0, 0) + y * m(1, 0) + z * m(2, 0), x * m(0, 1) + y * m(1, 1) + z * m(2, 1),
          x * m(0, 2) + y * m(1, 2) + z * m(2, 2)};
}

double MVector::length() const {
  return std::hypot(x, y, z);
}

MVector MVector::normal() const {
  const double size = length();
  return size > 0.0 ? *this / size : *this;
}

double MVector::angle(const MVector& v) const {
  return std::atan2((*this ^ v).length(), *this * v);
}

MFloatVector::MFloatVector(const MVector& v)
    : x(static_cast<float>(v.x)), y(static_cast<float>(v.y)), z(static_cast<float>(v.z)) {}

float MFloatVector::length() const {
  return std::hypot(x, y, z);
}

MFloatVector MFloatVector::normal() const {
  const float size = length();
  return size > 0.0f ? MFloatVector(x / size, y / size, z / size) : *this;
}

const MPoint MPoint::origin;

MPoint::MPoint(const MFloatPoint& p) : x(p.x), y(p.y), z(p.z), w(p.w) {}

MPoint MPoint::operator*(const MMatrix& m) const {
  MPoint result;
  for (unsigned int c = 0; c < 4; ++c)
    result[c] = x * m(0, c) + y * m(1, c) + z * m(2, c) + w * m(3, c);
  return result;
}

MPoint& MPoint::cartesianize() {
  if (w != 0.0 && w != 1.0) *this = MPoint(x / w, y / w, z / w);
  return *this;
}

MFloatPoint::MFloatPoint(const MPoint& p)
    : x(static_cast<float>(p.x)),
      y(static_cast<float>(p.y)),
      z(static_cast<float>(p.z)),
      w(static_cast<float>(p.w)) {}

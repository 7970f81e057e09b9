#include "host/math/TransformParts.h"

#include <algorithm>
#include <cmath>

#include "host/math/Trigonometry.h"

namespace host {
namespace {

constexpr double kDegrees = 57.295779513082320876798;

constexpr unsigned kAxes[6][3] = {{0, 1, 2}, {1, 2, 0}, {2, 0, 1}, {0, 2, 1}, {1, 0, 2}, {2, 1, 0}};

Vec3 row(const MMatrix& matrix, unsigned index) {
  return {matrix[index][0], matrix[index][1], matrix[index][2]};
}

void setRow(MMatrix& matrix, unsigned index, const Vec3& v) {
  matrix[index][0] = v.x;
  matrix[index][1] = v.y;
  matrix[index][2] = v.z;
}

MMatrix rotationAbout(unsigned axis, double degrees) {
  const double c = cosine(degrees / kDegrees);
  const double s = sine(degrees / kDegrees);
  const unsigned u = (axis + 1) % 3;
  const unsigned v = (axis + 2) % 3;
  MMatrix m;
  m[u][u] = c;
  m[u][v] = s;
  m[v][u] = -s;
  m[v][v] = c;
  return m;
}

// Scale and shear by Gram-Schmidt over the rows; `rotation` is what is left. The matrix is scale ×
// shear × rotation: row 1 holds shear xy of row 0, and row 2 holds xz and yz.
void split(const MMatrix& matrix, TransformParts& parts, MMatrix& rotation) {
  Vec3 x = row(matrix, 0);
  Vec3 y = row(matrix, 1);
  Vec3 z = row(matrix, 2);
  parts.scale.x = length(x);
  x = normalized(x);
  const double xy = dot(x, y);
  y = y - x * xy;
  parts.scale.y = length(y);
  y = normalized(y);
  const double xz = dot(x, z);
  z = z - x * xz;
  const double yz = dot(y, z);
  z = z - y * yz;
  parts.scale.z = length(z);
  z = normalized(z);
  if (dot(cross(x, y), z) < 0) {
    parts.scale.z = -parts.scale.z;
    z = z * -1.0;
  }
  parts.shear.x = parts.scale.y == 0 ? 0 : xy / parts.scale.y;
  parts.shear.y = parts.scale.z == 0 ? 0 : xz / parts.scale.z;
  parts.shear.z = parts.scale.z == 0 ? 0 : yz / parts.scale.z;
  setRow(rotation, 0, x);
  setRow(rotation, 1, y);
  setRow(rotation, 2, z);
}

}  // namespace

MMatrix translationMatrix(const Vec3& v) {
  MMatrix m;
  setRow(m, 3, v);
  return m;
}

MMatrix scaleMatrix(const Vec3& v) {
  MMatrix m;
  m[0][0] = v.x;
  m[1][1] = v.y;
  m[2][2] = v.z;
  return m;
}

MMatrix shearMatrix(const Vec3& xyXzYz) {
  MMatrix m;
  m[1][0] = xyXzYz.x;
  m[2][0] = xyXzYz.y;
  m[2][1] = xyXzYz.z;
  return m;
}

MMatrix rotationMatrix(const Vec3& angles, int order) {
  const double each[3] = {angles.x, angles.y, angles.z};
  MMatrix m;
  for (const unsigned axis : kAxes[order]) m *= rotationAbout(axis, each[axis]);
  return m;
}

Vec3 anglesOf(const MMatrix& rotation, int order) {
  const unsigned i = kAxes[order][0];
  const unsigned j = kAxes[order][1];
  const unsigned k = kAxes[order][2];
  const double sign = order < 3 ? 1.0 : -1.0;
  const double middle = std::clamp(-sign * rotation[i][k], -1.0, 1.0);
  double angles[3];
  angles[j] = arcSine(middle) * kDegrees;
  if (std::fabs(middle) < 1.0 - 1e-12) {
    angles[i] = std::atan2(sign * rotation[j][k], rotation[k][k]) * kDegrees;
    angles[k] = std::atan2(sign * rotation[i][j], rotation[i][i]) * kDegrees;
  } else {
    // Both outer axes turn about the same line; the last one stays at rest.
    angles[i] = std::atan2(-sign * rotation[k][j], rotation[j][j]) * kDegrees;
    angles[k] = 0;
  }
  return {angles[0], angles[1], angles[2]};
}

int rotateOrder(double number) {
  return number >= 0.0 && number < 6.0 ? static_cast<int>(number) : 0;
}

TransformParts decompose(const MMatrix& matrix, int rotateOrder) {
  TransformParts parts;
  MMatrix rotation;
  split(matrix, parts, rotation);
  parts.translate = translationOf(matrix);
  parts.rotate = anglesOf(rotation, rotateOrder);
  return parts;
}

MMatrix rotationPart(const MMatrix& matrix) {
  TransformParts parts;
  MMatrix rotation;
  split(matrix, parts, rotation);
  return rotation;
}

Vec3 translationOf(const MMatrix& matrix) {
  return row(matrix, 3);
}

Vec3 pointThrough(const Vec3& point, const MMatrix& matrix) {
  return directionThrough(point, matrix) + row(matrix, 3);
}

Vec3 directionThrough(const Vec3& direction, const MMatrix& matrix) {
  return row(matrix, 0) * direction.x + row(matrix, 1) * direction.y + row(matrix, 2) * direction.z;
}

}  // namespace host

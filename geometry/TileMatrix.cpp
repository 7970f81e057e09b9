#include "geometry/TileMatrix.h"

#include <cmath>

namespace morvane {
namespace {

void include(float coordinate, float& min, float& max) {
  if (coordinate < min) min = coordinate;
  if (coordinate > max) max = coordinate;
}

bool isScalable(float extent) {
  const float scale = 1.0F / extent;
  return std::isfinite(scale) && scale > 0.0F;
}

}  // namespace

TileBounds tileBounds(const std::vector<Float3>& points) {
  TileBounds bounds;
  for (const Float3& p : points) {
    include(p.x, bounds.min.x, bounds.max.x);
    include(p.y, bounds.min.y, bounds.max.y);
    include(p.z, bounds.min.z, bounds.max.z);
  }
  return bounds;
}

bool hasTileExtent(const TileBounds& bounds) {
  return isScalable(bounds.max.x - bounds.min.x) && isScalable(bounds.max.z - bounds.min.z);
}

Matrix44 tileNormalisationMatrix(const TileBounds& bounds) {
  const float scaleX = 1.0F / (bounds.max.x - bounds.min.x);
  const float scaleZ = 1.0F / (bounds.max.z - bounds.min.z);
  const float scaleY = (scaleX + scaleZ) * 0.5F;
  Matrix44 translation;
  translation.setIdentity();
  translation.setRow(3, -bounds.min.x, -bounds.min.y, -bounds.min.z);
  Matrix44 scale;
  scale.setIdentity();
  scale.scaleColumns(scaleX, scaleY, scaleZ);
  return product(translation, scale);
}

Matrix44 product(const Matrix44& a, const Matrix44& b) {
  Matrix44 result;
  for (int i = 0; i < 4; ++i) {
    for (int j = 0; j < 4; ++j) {
      float sum = a(i, 0) * b(0, j);
      for (int k = 1; k < 4; ++k) sum += a(i, k) * b(k, j);
      result(i, j) = sum;
    }
  }
  return result;
}

Float3 transformPoint(const Float3& p, const Matrix44& m) {
  const Quat q = transformVector4({p.x, p.y, p.z, 1.0F}, m);
  return {q.x, q.y, q.z};
}

Quat transformVector4(const Quat& q, const Matrix44& m) {
  const auto component = [&](int j) {
    return q.x * m(0, j) + q.y * m(1, j) + q.z * m(2, j) + q.w * m(3, j);
  };
  return {component(0), component(1), component(2), component(3)};
}

}  // namespace morvane

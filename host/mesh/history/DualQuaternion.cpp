#include "host/mesh/history/DualQuaternion.h"

#include <algorithm>
#include <cmath>

#include "host/math/Quaternion.h"

namespace host {
namespace {

constexpr int kMostSteps = 50;

MMatrix withoutTranslation(const MMatrix& matrix) {
  MMatrix result = matrix;
  for (int i = 0; i < 3; ++i) {
    result.matrix[3][i] = 0.0;
    result.matrix[i][3] = 0.0;
  }
  result.matrix[3][3] = 1.0;
  return result;
}

// The nearest rotation, by the averaging of N. Higham, "Computing the Polar Decomposition", 1986.
MMatrix nearestRotation(const MMatrix& matrix) {
  MMatrix rotation = withoutTranslation(matrix);
  if (std::abs(rotation.det3x3()) < 1e-24) return MMatrix();
  for (int step = 0; step < kMostSteps; ++step) {
    const MMatrix next = (rotation + rotation.inverse().transpose()) * 0.5;
    const bool done = next.isEquivalent(rotation, 1e-14);
    rotation = next;
    if (done) break;
  }
  if (rotation.det3x3() < 0.0) rotation = withoutTranslation(rotation * -1.0);
  return rotation;
}

}  // namespace

DualQuaternion DualQuaternion::rigidPartOf(const MMatrix& matrix) {
  DualQuaternion result;
  const Quaternion turn = Quaternion::of(nearestRotation(matrix));
  const double parts[4] = {turn.w, turn.x, turn.y, turn.z};
  std::copy(parts, parts + 4, result.real_);
  const double(&q)[4] = result.real_;
  const double x = matrix(3, 0);
  const double y = matrix(3, 1);
  const double z = matrix(3, 2);
  // Half the product of the translation's quaternion and the rotation's.
  result.dual_[0] = -0.5 * (x * q[1] + y * q[2] + z * q[3]);
  result.dual_[1] = 0.5 * (x * q[0] + y * q[3] - z * q[2]);
  result.dual_[2] = 0.5 * (-x * q[3] + y * q[0] + z * q[1]);
  result.dual_[3] = 0.5 * (x * q[2] - y * q[1] + z * q[0]);
  return result;
}

void DualQuaternion::add(const DualQuaternion& other, double weight) {
  double cosine = 0.0;
  for (int i = 0; i < 4; ++i) cosine += real_[i] * other.real_[i];
  const double signedWeight = cosine < 0.0 ? -weight : weight;
  for (int i = 0; i < 4; ++i) {
    real_[i] += signedWeight * other.real_[i];
    dual_[i] += signedWeight * other.dual_[i];
  }
}

MMatrix DualQuaternion::toMatrix() const {
  MMatrix m;
  const double size = std::sqrt(real_[0] * real_[0] + real_[1] * real_[1] + real_[2] * real_[2] +
                                real_[3] * real_[3]);
  if (size == 0.0) return m;
  const double w = real_[0] / size;
  const double x = real_[1] / size;
  const double y = real_[2] / size;
  const double z = real_[3] / size;
  const double rotation[3][3] = {
      {1.0 - 2.0 * (y * y + z * z), 2.0 * (x * y + w * z), 2.0 * (x * z - w * y)},
      {2.0 * (x * y - w * z), 1.0 - 2.0 * (x * x + z * z), 2.0 * (y * z + w * x)},
      {2.0 * (x * z + w * y), 2.0 * (y * z - w * x), 1.0 - 2.0 * (x * x + y * y)}};
  for (int row = 0; row < 3; ++row)
    for (int column = 0; column < 3; ++column) m(row, column) = rotation[row][column];
  const double a = dual_[0] / size;
  const double b = dual_[1] / size;
  const double c = dual_[2] / size;
  const double d = dual_[3] / size;
  m(3, 0) = 2.0 * (-a * x + b * w - c * z + d * y);
  m(3, 1) = 2.0 * (-a * y + b * z + c * w - d * x);
  m(3, 2) = 2.0 * (-a * z - b * y + c * x + d * w);
  return m;
}

}  // namespace host

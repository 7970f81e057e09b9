#include "host/math/Quaternion.h"

#include <cmath>

#include "host/math/Trigonometry.h"

namespace host {

// The largest component is computed first.
Quaternion Quaternion::of(const MMatrix& m) {
  const double squares[4] = {1.0 + m(0, 0) + m(1, 1) + m(2, 2), 1.0 + m(0, 0) - m(1, 1) - m(2, 2),
                             1.0 - m(0, 0) + m(1, 1) - m(2, 2), 1.0 - m(0, 0) - m(1, 1) + m(2, 2)};
  int largest = 0;
  for (int i = 1; i < 4; ++i) largest = squares[i] > squares[largest] ? i : largest;
  const double yz = m(1, 2) - m(2, 1);
  const double zx = m(2, 0) - m(0, 2);
  const double xy = m(0, 1) - m(1, 0);
  const double sums[3] = {m(0, 1) + m(1, 0), m(2, 0) + m(0, 2), m(1, 2) + m(2, 1)};
  const double rows[4][4] = {{squares[0], yz, zx, xy},
                             {yz, squares[1], sums[0], sums[1]},
                             {zx, sums[0], squares[2], sums[2]},
                             {xy, sums[1], sums[2], squares[3]}};
  const double scale = 0.5 / std::sqrt(squares[largest]);
  const double(&q)[4] = rows[largest];
  return {q[0] * scale, q[1] * scale, q[2] * scale, q[3] * scale};
}

MMatrix Quaternion::toMatrix() const {
  MMatrix m;
  m[0][0] = 1.0 - 2.0 * (y * y + z * z);
  m[0][1] = 2.0 * (x * y + w * z);
  m[0][2] = 2.0 * (x * z - w * y);
  m[1][0] = 2.0 * (x * y - w * z);
  m[1][1] = 1.0 - 2.0 * (x * x + z * z);
  m[1][2] = 2.0 * (y * z + w * x);
  m[2][0] = 2.0 * (x * z + w * y);
  m[2][1] = 2.0 * (y * z - w * x);
  m[2][2] = 1.0 - 2.0 * (x * x + y * y);
  return m;
}

Quaternion Quaternion::normalized() const {
  const double size = std::sqrt(w * w + x * x + y * y + z * z);
  if (!(size > 0.0) || !std::isfinite(size)) return Quaternion();
  return {w / size, x / size, y / size, z / size};
}

Quaternion slerp(const Quaternion& a, const Quaternion& b, double share, bool longWay) {
  double cosine = a.w * b.w + a.x * b.x + a.y * b.y + a.z * b.z;
  const double sign = (cosine < 0.0) != longWay ? -1.0 : 1.0;
  cosine *= sign;
  constexpr double kNearlySame = 1.0 - 1e-12;
  double first = 1.0 - share;
  double second = share;
  if (std::abs(cosine) < kNearlySame) {
    const double angle = arcCosine(cosine);
    first = sine(first * angle) / sine(angle);
    second = sine(second * angle) / sine(angle);
  }
  second *= sign;
  return Quaternion{a.w * first + b.w * second, a.x * first + b.x * second,
                    a.y * first + b.y * second, a.z * first + b.z * second}
      .normalized();
}

}  // namespace host

#include "util/Quat.h"

#include <cmath>

namespace morvane {

double Quat::length() const {
  const double dx = x, dy = y, dz = z, dw = w;
  return std::sqrt(dx * dx + dy * dy + dz * dz + dw * dw);
}

Quat& Quat::normalise() {
  const double len = length();
  if (!(len > 0)) return *this = Quat();
  const double k = 1 / len;
  x = static_cast<float>(x * k);
  y = static_cast<float>(y * k);
  z = static_cast<float>(z * k);
  w = static_cast<float>(w * k);
  return *this;
}

}  // namespace morvane

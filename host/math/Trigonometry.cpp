#include "host/math/Trigonometry.h"

#include <cmath>

namespace host {

#ifdef __MINGW32__

namespace {

// A quarter turn in three parts, whose products with small whole numbers are exact.
constexpr long double kQuarter[] = {0x1.921fb544p0L, 0x1.0b4611a6p-34L, 0x1.3198a2e037073p-69L};

// The sine of an angle and so many quarter turns.
double sineOf(double angle, int quarters) {
  const long double turns = std::nearbyint(static_cast<long double>(angle) / kQuarter[0]);
  long double rest = angle;
  for (const long double part : kQuarter) rest -= turns * part;
  const int quadrant = static_cast<int>(std::fmod(turns, 4.0L)) + quarters;
  const long double value = (quadrant & 1) != 0 ? std::cos(rest) : std::sin(rest);
  return static_cast<double>((quadrant & 2) != 0 ? -value : value);
}

// Of the angle whose sine is `value`, which is in the first quarter or the last.
long double cosineTo(long double value) {
  return std::sqrt((1 - value) * (1 + value));
}

}  // namespace

double sine(double angle) {
  return angle == 0.0 ? angle : sineOf(angle, 0);
}
double cosine(double angle) {
  return sineOf(angle, 1);
}
double arcSine(double value) {
  return static_cast<double>(std::atan2(static_cast<long double>(value), cosineTo(value)));
}
double arcCosine(double value) {
  return static_cast<double>(std::atan2(cosineTo(value), static_cast<long double>(value)));
}

#else

double sine(double angle) {
  return std::sin(angle);
}
double cosine(double angle) {
  return std::cos(angle);
}
double arcSine(double value) {
  return std::asin(value);
}
double arcCosine(double value) {
  return std::acos(value);
}

#endif

}  // namespace host

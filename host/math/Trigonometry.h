#ifndef MORVANE_HOST_MATH_TRIGONOMETRY_H_
#define MORVANE_HOST_MATH_TRIGONOMETRY_H_

namespace host {

// Of angles in radians, as exact as the C library's on Linux. That of MinGW loses most digits
// beside the multiples of a quarter turn, so that a scene would not give the same bytes everywhere.
double sine(double angle);
double cosine(double angle);
double arcSine(double value);
double arcCosine(double value);

}  // namespace host

#endif  // MORVANE_HOST_MATH_TRIGONOMETRY_H_

#ifndef MORVANE_HOST_EVALUATION_QUANTITY_H_
#define MORVANE_HOST_EVALUATION_QUANTITY_H_

#include <string_view>

#include "host/attribute/Attribute.h"

namespace host {

// What a number attribute measures. The scene holds lengths in centimetres, angles in degrees and
// times in frames.
enum class Quantity { kPlain, kLength, kAngle, kTime };

Quantity quantityOf(const Attribute& attribute);

// A number on its way along a connection. The host's connections carry radians and ticks, of which
// a second has 6000, as plain numbers.
double converted(double number, Quantity from, Quantity to, double framesPerSecond);

// How many frames a second has by the name of a unit of time ("film", "23.976fps"); 24 for a name
// that is not known.
double framesPerSecond(std::string_view timeUnit);

}  // namespace host

#endif  // MORVANE_HOST_EVALUATION_QUANTITY_H_

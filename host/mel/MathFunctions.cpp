#include <algorithm>
#include <cmath>
#include <iterator>

#include "host/math/Trigonometry.h"
#include "host/mel/FunctionArguments.h"
#include "host/mel/Operators.h"

namespace host::mel {
namespace {

using Arguments = FunctionArguments;

constexpr double kDegrees = 57.295779513082320876798;

template <double (*Of)(double)>
CommandResult ofOne(const Arguments& arguments) {
  return give(Of(numberOf(arguments, 0)));
}
template <double (*Of)(double, double)>
CommandResult ofTwo(const Arguments& arguments) {
  return give(Of(numberOf(arguments, 0), numberOf(arguments, 1)));
}

double squareRoot(double x) {
  return std::sqrt(x);
}
double roundDown(double x) {
  return std::floor(x);
}
double roundUp(double x) {
  return std::ceil(x);
}
double cutOff(double x) {
  return std::trunc(x);
}
double roundToNearest(double x) {
  return std::round(x);
}
double tangent(double x) {
  return std::tan(x);
}
double sineOfDegrees(double x) {
  return sine(x / kDegrees);
}
double cosineOfDegrees(double x) {
  return cosine(x / kDegrees);
}
double tangentOfDegrees(double x) {
  return std::tan(x / kDegrees);
}
double arcTangentOfOne(double x) {
  return std::atan(x);
}
double arcSineInDegrees(double x) {
  return arcSine(x) * kDegrees;
}
double arcCosineInDegrees(double x) {
  return arcCosine(x) * kDegrees;
}
double arcTangentInDegrees(double x) {
  return std::atan(x) * kDegrees;
}
double toDegrees(double x) {
  return x * kDegrees;
}
double toRadians(double x) {
  return x / kDegrees;
}
double exponential(double x) {
  return std::exp(x);
}
double naturalLogarithm(double x) {
  return std::log(x);
}
double decimalLogarithm(double x) {
  return std::log10(x);
}
double arcTangent(double y, double x) {
  return std::atan2(y, x);
}
double power(double x, double y) {
  return std::pow(x, y);
}
double remainder(double x, double y) {
  return std::fmod(x, y);
}
double hypotenuse(double x, double y) {
  return std::hypot(x, y);
}

CommandResult absolute(const Arguments& arguments) {
  const Value& value = valueOf(arguments[0]);
  if (value.type() != Value::Type::kInt) return give(std::fabs(value.toFloat()));
  const int number = value.toInt();
  return give(number < 0 ? static_cast<int>(0u - static_cast<unsigned>(number)) : number);
}

CommandResult signOf(const Arguments& arguments) {
  const double number = numberOf(arguments, 0);
  return give(number > 0 ? 1 : number < 0 ? -1 : 0);
}

bool bothInts(const Arguments& arguments) {
  return valueOf(arguments[0]).type() == Value::Type::kInt &&
         valueOf(arguments[1]).type() == Value::Type::kInt;
}
CommandResult smaller(const Arguments& arguments) {
  const double least = std::min(numberOf(arguments, 0), numberOf(arguments, 1));
  return give(bothInts(arguments) ? Value(static_cast<int>(least)) : Value(least));
}
CommandResult larger(const Arguments& arguments) {
  const double most = std::max(numberOf(arguments, 0), numberOf(arguments, 1));
  return give(bothInts(arguments) ? Value(static_cast<int>(most)) : Value(most));
}

// clamp(least, most, number)
CommandResult clamp(const Arguments& arguments) {
  return give(
      std::min(std::max(numberOf(arguments, 2), numberOf(arguments, 0)), numberOf(arguments, 1)));
}

// The position of a number between two others, clamped to 0 and 1.
double placeBetween(const Arguments& arguments) {
  const double first = numberOf(arguments, 0);
  const double last = numberOf(arguments, 1);
  const double number = numberOf(arguments, 2);
  return last == first ? (number < first ? 0.0 : 1.0)
                       : std::clamp((number - first) / (last - first), 0.0, 1.0);
}
CommandResult linearStep(const Arguments& arguments) {
  return give(placeBetween(arguments));
}
CommandResult smoothStep(const Arguments& arguments) {
  const double t = placeBetween(arguments);
  return give(t * t * (3.0 - 2.0 * t));
}

// --- Vectors

Vector vectorAt(const Arguments& arguments, std::size_t index) {
  return valueOf(arguments[index]).toVector();
}
double lengthOf(const Vector& v) {
  return std::hypot(v[0], v[1], v[2]);
}
Vector scaled(const Vector& v, double factor) {
  return {v[0] * factor, v[1] * factor, v[2] * factor};
}
Vector unitOf(const Vector& v) {
  const double length = lengthOf(v);
  return length == 0 ? v : scaled(v, 1.0 / length);
}

CommandResult magnitude(const Arguments& arguments) {
  return give(lengthOf(vectorAt(arguments, 0)));
}
CommandResult unit(const Arguments& arguments) {
  return give(unitOf(vectorAt(arguments, 0)));
}
CommandResult dotProduct(const Arguments& arguments) {
  return give(dot(vectorAt(arguments, 0), vectorAt(arguments, 1)));
}
CommandResult crossProduct(const Arguments& arguments) {
  return give(cross(vectorAt(arguments, 0), vectorAt(arguments, 1)));
}

// In radians; the arc tangent is exact where the arc cosine of a dot product is not.
CommandResult angle(const Arguments& arguments) {
  const Vector a = vectorAt(arguments, 0);
  const Vector b = vectorAt(arguments, 1);
  return give(std::atan2(lengthOf(cross(a, b)), dot(a, b)));
}

// rot(point, axis, radians), by Rodrigues' formula.
CommandResult rotate(const Arguments& arguments) {
  const Vector point = vectorAt(arguments, 0);
  const Vector axis = unitOf(vectorAt(arguments, 1));
  const double turn = numberOf(arguments, 2);
  const Vector along = scaled(axis, dot(axis, point) * (1.0 - cosine(turn)));
  const Vector aside = scaled(cross(axis, point), sine(turn));
  const Vector rest = scaled(point, cosine(turn));
  return give(Vector{rest[0] + aside[0] + along[0], rest[1] + aside[1] + along[1],
                     rest[2] + aside[2] + along[2]});
}

// --- Chance

// rand(most) or rand(least, most).
CommandResult random(const Arguments& arguments) {
  const double first = arguments.size() == 2 ? numberOf(arguments, 0) : 0.0;
  const double last = numberOf(arguments, arguments.size() - 1);
  return give(first + (last - first) * arguments.interpreter.nextRandom());
}

CommandResult seed(const Arguments& arguments) {
  const int number = valueOf(arguments[0]).toInt();
  arguments.interpreter.seedRandom(static_cast<unsigned>(number));
  return give(number);
}

constexpr FunctionSpec kFunctions[] = {
    {"abs", 1, 1, absolute},
    {"acos", 1, 1, ofOne<arcCosine>},
    {"acosd", 1, 1, ofOne<arcCosineInDegrees>},
    {"angle", 2, 2, angle},
    {"asin", 1, 1, ofOne<arcSine>},
    {"asind", 1, 1, ofOne<arcSineInDegrees>},
    {"atan", 1, 1, ofOne<arcTangentOfOne>},
    {"atan2", 2, 2, ofTwo<arcTangent>},
    {"atand", 1, 1, ofOne<arcTangentInDegrees>},
    {"ceil", 1, 1, ofOne<roundUp>},
    {"clamp", 3, 3, clamp},
    {"cos", 1, 1, ofOne<cosine>},
    {"cosd", 1, 1, ofOne<cosineOfDegrees>},
    {"cross", 2, 2, crossProduct},
    {"crossProduct", 2, 2, crossProduct},
    {"deg_to_rad", 1, 1, ofOne<toRadians>},
    {"dot", 2, 2, dotProduct},
    {"dotProduct", 2, 2, dotProduct},
    {"exp", 1, 1, ofOne<exponential>},
    {"floor", 1, 1, ofOne<roundDown>},
    {"fmod", 2, 2, ofTwo<remainder>},
    {"hypot", 2, 2, ofTwo<hypotenuse>},
    {"linstep", 3, 3, linearStep},
    {"log", 1, 1, ofOne<naturalLogarithm>},
    {"log10", 1, 1, ofOne<decimalLogarithm>},
    {"mag", 1, 1, magnitude},
    {"max", 2, 2, larger},
    {"min", 2, 2, smaller},
    {"pow", 2, 2, ofTwo<power>},
    {"rad_to_deg", 1, 1, ofOne<toDegrees>},
    {"rand", 1, 2, random},
    {"rot", 3, 3, rotate},
    {"round", 1, 1, ofOne<roundToNearest>},
    {"seed", 1, 1, seed},
    {"sign", 1, 1, signOf},
    {"sin", 1, 1, ofOne<sine>},
    {"sind", 1, 1, ofOne<sineOfDegrees>},
    {"smoothstep", 3, 3, smoothStep},
    {"sqrt", 1, 1, ofOne<squareRoot>},
    {"tan", 1, 1, ofOne<tangent>},
    {"tand", 1, 1, ofOne<tangentOfDegrees>},
    {"trunc", 1, 1, ofOne<cutOff>},
    {"unit", 1, 1, unit},
};

}  // namespace

FunctionTable mathFunctions() {
  return {std::begin(kFunctions), std::end(kFunctions)};
}

}  // namespace host::mel

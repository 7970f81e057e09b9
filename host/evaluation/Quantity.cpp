#include "host/evaluation/Quantity.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace host {
namespace {

constexpr double kDegrees = 57.295779513082320876798;
constexpr double kTicksPerSecond = 6000.0;
constexpr double kFilm = 24.0;

// Attributes whose numbers are lengths and angles although their types do not say so.
constexpr std::string_view kLengthAttributes[] = {
    "translate",   "rotatePivot",      "rotatePivotTranslate", "scalePivotTranslate",
    "scalePivot",  "centerOfInterest", "nearClipPlane",        "farClipPlane",
    "tumblePivot", "localPosition"};
constexpr std::string_view kAngleAttributes[] = {"rotate", "rotateAxis", "jointOrient",
                                                 "preferredAngle"};

struct TimeUnit {
  std::string_view name;
  double framesPerSecond;
};
constexpr TimeUnit kTimeUnits[] = {{"game", 15.0},      {"film", kFilm},       {"pal", 25.0},
                                   {"ntsc", 30.0},      {"show", 48.0},        {"palf", 50.0},
                                   {"ntscf", 60.0},     {"sec", 1.0},          {"millisec", 1000.0},
                                   {"min", 1.0 / 60.0}, {"hour", 1.0 / 3600.0}};

template <std::size_t kCount>
bool isNamed(const std::string_view (&names)[kCount], const Attribute& attribute) {
  const AttributePtr parent = attribute.parent();
  const std::string& name = parent == nullptr ? attribute.longName() : parent->longName();
  return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

}  // namespace

Quantity quantityOf(const Attribute& attribute) {
  const std::string& type = attribute.typeWord();
  if (type == "time") return Quantity::kTime;
  const bool isBuiltIn = !attribute.isDynamic;
  if (type == "doubleLinear" || type == "floatLinear" ||
      (isBuiltIn && isNamed(kLengthAttributes, attribute)))
    return Quantity::kLength;
  if (type == "doubleAngle" || type == "floatAngle" ||
      (isBuiltIn && isNamed(kAngleAttributes, attribute)))
    return Quantity::kAngle;
  return Quantity::kPlain;
}

double converted(double number, Quantity from, Quantity to, double framesPerSecond) {
  const bool toPlain = to == Quantity::kPlain || to == Quantity::kLength;
  const bool fromPlain = from == Quantity::kPlain || from == Quantity::kLength;
  if (from == Quantity::kAngle && toPlain) return number / kDegrees;
  if (fromPlain && to == Quantity::kAngle) return number * kDegrees;
  if (from == Quantity::kTime && toPlain) return number * kTicksPerSecond / framesPerSecond;
  if (fromPlain && to == Quantity::kTime) return number * framesPerSecond / kTicksPerSecond;
  return number;
}

double framesPerSecond(std::string_view timeUnit) {
  for (const TimeUnit& unit : kTimeUnits)
    if (unit.name == timeUnit) return unit.framesPerSecond;
  double number = 0.0;
  const auto end = timeUnit.data() + timeUnit.size();
  const auto parsed = std::from_chars(timeUnit.data(), end, number);
  const std::string_view rest(parsed.ptr, static_cast<std::size_t>(end - parsed.ptr));
  const bool isRate = parsed.ec == std::errc() && rest == "fps";
  return isRate && std::isfinite(number) && number > 0.0 ? number : kFilm;
}

}  // namespace host

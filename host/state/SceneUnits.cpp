#include "host/state/SceneUnits.h"

#include <cmath>
#include <limits>

#include "host/evaluation/Quantity.h"

namespace host {
namespace {

struct Unit {
  std::string_view name;
  std::string_view shortName;
  double factor;
};
constexpr Unit kLengths[] = {{"centimeter", "cm", 1.0}, {"millimeter", "mm", 0.1},
                             {"meter", "m", 100.0},     {"kilometer", "km", 100000.0},
                             {"inch", "in", 2.54},      {"foot", "ft", 30.48},
                             {"yard", "yd", 91.44},     {"mile", "mi", 160934.4}};
constexpr Unit kAngles[] = {{"degree", "deg", 1.0},
                            {"radian", "rad", 57.295779513082320876798},
                            {"min_angle", "min", 1.0 / 60.0},
                            {"sec_angle", "sec", 1.0 / 3600.0}};

template <std::size_t kCount>
bool find(const Unit (&units)[kCount], std::string_view name, double& factor) {
  for (const Unit& unit : units) {
    if (unit.name == name || unit.shortName == name) {
      factor = unit.factor;
      return true;
    }
  }
  return false;
}

}  // namespace

bool setLengthUnit(SceneUnits& units, std::string_view name) {
  return find(kLengths, name, units.length);
}

bool setAngleUnit(SceneUnits& units, std::string_view name) {
  return find(kAngles, name, units.angle);
}

SceneRates ratesOf(const SceneInfo& info) {
  SceneUnits units;
  setLengthUnit(units, info.lengthUnit);
  setAngleUnit(units, info.angleUnit);
  return {framesPerSecond(info.timeUnit), units.length, units.angle};
}

double dividedBy(double value, double factor) {
  if (factor == 1.0) return value;
  const double quotient = value / factor;
  constexpr double kEnd = std::numeric_limits<double>::infinity();
  for (const double near :
       {quotient, std::nextafter(quotient, kEnd), std::nextafter(quotient, -kEnd)}) {
    if (near * factor == value) return near;
  }
  return quotient;
}

double unitFactor(const SceneUnits& units, const Attribute& attribute) {
  if (units.length == 1.0 && units.angle == 1.0) return 1.0;
  switch (quantityOf(attribute)) {
    case Quantity::kLength:
      return units.length;
    case Quantity::kAngle:
      return units.angle;
    default:
      return 1.0;
  }
}

}  // namespace host

#ifndef MORVANE_HOST_STATE_SCENEUNITS_H_
#define MORVANE_HOST_STATE_SCENEUNITS_H_

#include <string_view>

#include "host/attribute/Attribute.h"
#include "host/evaluation/GraphEvaluation.h"
#include "host/state/SceneInfo.h"

namespace host {

// The units in which the scene file that is being read states its numbers. The scene itself holds
// centimetres and degrees.
struct SceneUnits {
  double length = 1.0;  // centimetres in one of the file's units
  double angle = 1.0;   // degrees in one of the file's units
  double framesPerSecond = 24.0;
};

// False for a unit that is not known, which changes nothing.
bool setLengthUnit(SceneUnits& units, std::string_view name);
bool setAngleUnit(SceneUnits& units, std::string_view name);

// The factor for a number of the attribute.
double unitFactor(const SceneUnits& units, const Attribute& attribute);

// What numbers mean that the scene keeps as its file has them.
SceneRates ratesOf(const SceneInfo& info);

// The number that gives `value` when it is multiplied by `factor`, to the last bit where there is
// one.
double dividedBy(double value, double factor);

}  // namespace host

#endif  // MORVANE_HOST_STATE_SCENEUNITS_H_

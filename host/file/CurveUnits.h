#ifndef MORVANE_HOST_FILE_CURVEUNITS_H_
#define MORVANE_HOST_FILE_CURVEUNITS_H_

#include <vector>

#include "host/scene/Node.h"
#include "host/state/SceneUnits.h"

namespace host {

// An animation curve from another file than the scene's own, and the units of that.
struct ForeignCurve {
  NodePtr node;
  SceneUnits units;
};

// Curves keep their keys as their file has them, and are read in the units in which the scene is
// saved, `scene`: keys of other files are turned into those.
void takeSceneUnits(const std::vector<ForeignCurve>& curves, const SceneRates& scene);

}  // namespace host

#endif  // MORVANE_HOST_FILE_CURVEUNITS_H_

#ifndef MORVANE_TOOLS_SCENE_SCENEEVALUATION_H_
#define MORVANE_TOOLS_SCENE_SCENEEVALUATION_H_

#include <maya/MDagPath.h>

#include <string>

namespace tools {

// Something below a tile that Maya would evaluate and the stand-in host cannot, so that an export
// would write what nobody has seen.
struct Unevaluated {
  std::string what;    // "|a|b is driven by b_translateX (animCurveTL), which is not evaluated"
  std::string advice;  // what to do about it
};

// The first mesh, or transform above a goblin, of that kind; `what` is empty when there is none.
Unevaluated unevaluatedBelow(const MDagPath& tile);

}  // namespace tools

#endif  // MORVANE_TOOLS_SCENE_SCENEEVALUATION_H_

#ifndef MORVANE_TOOLS_SCENE_SCENEEVALUATION_H_
#define MORVANE_TOOLS_SCENE_SCENEEVALUATION_H_

#include <maya/MDagPath.h>

#include <cstddef>
#include <string>
#include <vector>

namespace tools {

// Something of a tile that the stand-in host cannot evaluate or lacks a file for. It is otherwise
// in Maya, so that an export would write what nobody has seen.
struct Unevaluated {
  std::string what;    // "|a|b is driven by b_translateX (animCurveTL), which is not evaluated"
  std::string advice;  // what to do about it
};

// All that is unevaluated, each once: meshes, transforms above goblins, what references hold or
// change below the tile, and the shading of its own mesh.
std::vector<Unevaluated> unevaluatedParts(const MDagPath& tile);

// The first `most` of the parts, and how many more; `what` is empty when there are none.
Unevaluated summaryOf(const std::vector<Unevaluated>& parts, std::size_t most);

// Whether a file that is missing holds shading of the tile's own mesh, so that nobody can say
// whether it has a texture.
bool lacksShading(const MDagPath& tile);

}  // namespace tools

#endif  // MORVANE_TOOLS_SCENE_SCENEEVALUATION_H_

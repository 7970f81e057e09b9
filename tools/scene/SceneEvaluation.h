#ifndef MORVANE_TOOLS_SCENE_SCENEEVALUATION_H_
#define MORVANE_TOOLS_SCENE_SCENEEVALUATION_H_

#include <maya/MDagPath.h>

#include <cstddef>
#include <string>
#include <vector>

namespace tools {

// Something of a tile that is otherwise in Maya, since the stand-in host cannot evaluate it or
// lacks a file, so that an export would write what nobody has seen.
struct Unevaluated {
  std::string what;    // "|a|b is driven by b_translateX (animCurveTL), which is not evaluated"
  std::string advice;  // what to do about it
};

// All of that kind, each once: meshes, transforms above goblins, what references hold or change
// below the tile, and the shading of its own mesh.
std::vector<Unevaluated> unevaluatedParts(const MDagPath& tile);

// Of several the first `most`, and how many more; `what` is empty when there are none.
Unevaluated summaryOf(const std::vector<Unevaluated>& parts, std::size_t most);

// Whether a file that is missing holds shading of the tile's own mesh, so that nobody can say
// whether it has a texture.
bool lacksShading(const MDagPath& tile);

}  // namespace tools

#endif  // MORVANE_TOOLS_SCENE_SCENEEVALUATION_H_

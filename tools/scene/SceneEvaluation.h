#ifndef MORVANE_TOOLS_SCENE_SCENEEVALUATION_H_
#define MORVANE_TOOLS_SCENE_SCENEEVALUATION_H_

#include <maya/MDagPath.h>

#include <cstddef>
#include <string>
#include <vector>

namespace tools {

// A part of a tile that the stand-in host cannot evaluate, or for which it lacks a file. In Maya it
// looks different, so an export would write something that nobody has seen.
struct Unevaluated {
  std::string what;    // "|a|b is driven by b_translateX (animCurveTL), which is not evaluated"
  std::string advice;  // what to do about it
};

// All such parts, each once: meshes, transforms above goblins, content and edits of references
// below the tile, and the shading of the tile's own mesh.
std::vector<Unevaluated> unevaluatedParts(const MDagPath& tile);

// Names the first `most` parts, and how many more there are; `what` is empty when there are none.
Unevaluated summaryOf(const std::vector<Unevaluated>& parts, std::size_t most);

// Whether a missing file holds shading of the tile's own mesh, so that its texture is unknown.
bool lacksShading(const MDagPath& tile);

}  // namespace tools

#endif  // MORVANE_TOOLS_SCENE_SCENEEVALUATION_H_

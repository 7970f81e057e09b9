#ifndef MORVANE_TOOLS_MODEL_TILEPLACEMENT_H_
#define MORVANE_TOOLS_MODEL_TILEPLACEMENT_H_

#include <array>

namespace tools {

// Where a tile lies in its scene: a matrix from tile space to the scene's space, in centimetres,
// row by row, for row vectors.
using TilePlacement = std::array<double, 16>;

}  // namespace tools

#endif  // MORVANE_TOOLS_MODEL_TILEPLACEMENT_H_

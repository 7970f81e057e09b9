#ifndef MORVANE_TOOLS_MODEL_GOBLINGLB_H_
#define MORVANE_TOOLS_MODEL_GOBLINGLB_H_

#include <string>

#include "tools/image/Picture.h"
#include "tools/model/GoblinMeshes.h"

namespace tools {

// The meshes over the unit tile as a binary glTF 2.0 file, in tile space: a node and mesh of its
// own for the tile and for each goblin, all coloured by `picture` (null: gray). A goblin without
// triangles is a node without a mesh. False, with the reason, when the file would be over 1 GiB.
bool writeGlb(const GoblinMeshes& goblins, const Picture* picture, std::string& glb,
              std::string& fault);

}  // namespace tools

#endif  // MORVANE_TOOLS_MODEL_GOBLINGLB_H_

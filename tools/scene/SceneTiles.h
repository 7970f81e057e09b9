#ifndef MORVANE_TOOLS_SCENE_SCENETILES_H_
#define MORVANE_TOOLS_SCENE_SCENETILES_H_

#include <optional>
#include <string>
#include <vector>

#include "tools/model/GoblinMeshes.h"
#include "tools/model/TileFile.h"
#include "tools/model/TilePlacement.h"

namespace tools {

// One tile of the open scene, in tile space, as an export would write its goblins.
struct SceneTile {
  std::string name;     // of the transform, as the scene has it
  std::string texture;  // the name of the file that its colour comes from, likewise
  ViewMesh mesh;        // the tile's own mesh, with its own texture coordinates
  Goblins goblins;      // a goblin without a name has that of its transform
  std::optional<TilePlacement> placement;  // none: it is not a tile
  std::string fault;    // why its goblins cannot be exported; some, or the mesh, are then missing
  std::string missing;  // what is not evaluated, or not there, and what to do about it; or empty
};

// Every top-level transform whose mesh has a file texture. The scene is only looked at.
std::vector<SceneTile> sceneTiles();

// The unit in which the open scene shows lengths: "cm", "m", "in".
std::string lengthUnit();

// What to tell where there is none.
inline constexpr const char* kNoTile =
    "no tile found: no top-level transform has a mesh whose colour comes from a file texture";
inline constexpr const char* kMissingTexture =
    " does not exist; if it lies elsewhere on this machine, say where with --map FROM=TO or "
    "--project DIR";

}  // namespace tools

#endif  // MORVANE_TOOLS_SCENE_SCENETILES_H_

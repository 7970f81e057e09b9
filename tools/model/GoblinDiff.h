#ifndef MORVANE_TOOLS_MODEL_GOBLINDIFF_H_
#define MORVANE_TOOLS_MODEL_GOBLINDIFF_H_

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tools/model/GoblinMeshes.h"
#include "tools/model/TileFile.h"

namespace tools {

enum class GoblinFate { kAdded, kGone, kMoved, kChanged };

// One goblin that is not the same in both files.
struct GoblinChange {
  GoblinFate fate;
  std::optional<std::size_t> before;  // its number in the old file, from 0
  std::optional<std::size_t> after;   // and in the new one
  std::array<float, 3> by{};          // how far the middle of its box has moved, in tile space
  std::vector<std::string> what;      // for kChanged: "shape", "triangles 12 to 14", "name"
};

// The goblins of one file, and their meshes.
struct GoblinSide {
  explicit GoblinSide(const Goblins& from) : goblins(from), meshes(goblinMeshes(from)) {}

  const Goblins& goblins;
  GoblinMeshes meshes;
};

struct GoblinDiff {
  std::vector<GoblinChange> changes;  // in the order of the new file; what is gone comes last
  std::size_t same = 0;
};

// Goblins of one name are each other's partners; where one of the files has no names, so are those
// that stand in one place. Numbers that differ by less than a millionth are equal, so that a file
// in the tagged layout equals the same goblins in the named one. A goblin has moved when its shape
// is the same elsewhere, turned or not; normals and texture coordinates may follow.
GoblinDiff diffGoblins(const GoblinSide& before, const GoblinSide& after);

// "added", "gone", "moved", "changed".
const char* fateName(GoblinFate fate);

// The goblin of the change, by its name in the new file where it is in that.
const std::string& changedName(const GoblinChange& change, const GoblinSide& before,
                               const GoblinSide& after);

}  // namespace tools

#endif  // MORVANE_TOOLS_MODEL_GOBLINDIFF_H_

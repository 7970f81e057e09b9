#ifndef MORVANE_TESTS_TOOLS_TRIANGLES_H_
#define MORVANE_TESTS_TOOLS_TRIANGLES_H_

#include <string>
#include <vector>

#include "tools/model/TileFile.h"

namespace tools {

// A triangle over the tile with corners counter-clockwise seen from above, as each layout stores
// it.
inline Goblins triangle(morvane::GoblinBlobKind kind, const std::vector<std::string>& names) {
  Goblins goblins;
  goblins.present = true;
  goblins.kind = kind;
  const bool tagged = kind == morvane::GoblinBlobKind::kTagged;
  const float places[3][3] = {{0.25f, 0.5f, 0.25f}, {0.25f, 0.5f, 0.75f}, {0.75f, 0.5f, 0.75f}};
  for (std::size_t g = 0; g < names.size(); ++g) {
    for (const auto& p : places) {
      const float z = tagged ? 1 - p[2] : p[2];
      goblins.pool.push_back({p[0], p[1], z, 0, 1, 0, p[0], z});
    }
    const auto base = static_cast<std::int32_t>(3 * g);
    const std::vector<std::int32_t> face = {base, base + 1, base + 2};
    Goblin goblin;
    goblin.name = names[g];
    goblin.faces.push_back(tagged ? face : std::vector<std::int32_t>(face.rbegin(), face.rend()));
    goblins.goblins.push_back(goblin);
  }
  return goblins;
}

}  // namespace tools

#endif  // MORVANE_TESTS_TOOLS_TRIANGLES_H_

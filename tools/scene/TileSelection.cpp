#include "tools/scene/TileSelection.h"

#include <algorithm>

#include "host/Host.h"
#include "host/text/NearestName.h"
#include "tools/scene/SceneDamage.h"
#include "tools/scene/SceneTiles.h"
#include "tools/scene/TileCandidates.h"
#include "tools/terminal/Text.h"

namespace tools {
namespace {

constexpr std::size_t kMostShown = 5;

// Shapes and materials often have their tile's name; they are not tiles.
bool isPattern(const std::string& name) {
  return name.find_first_of("*?") != std::string::npos;
}

// Of a name that nothing has.
std::string tileHint(const std::string& name) {
  std::vector<std::string> tiles;
  for (const auto& tile : texturedTiles()) tiles.push_back(tile.path.substr(1));
  if (tiles.empty()) return "; the scene has no tile with a file texture";
  std::sort(tiles.begin(), tiles.end());
  const std::string nearest = host::nearestName(name, tiles);
  std::string hint = nearest.empty() ? "; the scene's tiles are "
                                     : "; did you mean " + printable(nearest) + "? The tiles are ";
  for (std::size_t i = 0; i < std::min(tiles.size(), kMostShown); ++i)
    hint += (i == 0 ? "" : ", ") + printable(tiles[i]);
  const std::size_t more = tiles.size() - std::min(tiles.size(), kMostShown);
  return hint + (more == 0 ? "" : " and " + std::to_string(more) + " more");
}

bool fail(const std::string& scene, const std::string& reason, std::string& error) {
  error = reason;
  complain(printable(scene) + ": " + reason);
  return false;
}

}  // namespace

std::string whyNotSelected(const std::string& name, const morvane::Status& status) {
  return status.code() == morvane::StatusCode::kNotFound
             ? ": there is no such object" + tileHint(name)
             : ": " + printable(status.text()) + "; name it by its whole path";
}

bool selectTiles(const std::string& scene, std::vector<std::string> names,
                 const host::SceneProblems& problems, std::string& error) {
  if (names.empty())
    for (const auto& tile : texturedTiles()) names.push_back(tile.path);
  if (names.empty()) {
    const std::string loss = likelyLoss(problems);
    return fail(scene, kNoTile + (loss.empty() ? "; name the nodes to export" : loss), error);
  }
  if (!host::execute("select -clear", "selection")) return false;
  for (const std::string& name : names) {
    const morvane::Status selected = host::select(name, isPattern(name));
    if (selected.ok()) continue;
    return fail(scene,
                "cannot select " + printable(name) + ", so nothing was exported" +
                    whyNotSelected(name, selected) +
                    (problems.list.empty() ? "" : likelyLoss(problems)),
                error);
  }
  return true;
}

}  // namespace tools

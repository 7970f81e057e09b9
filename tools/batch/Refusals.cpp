#include "tools/batch/Refusals.h"

#include <algorithm>
#include <utility>

#include "tools/scene/SceneEvaluation.h"

namespace tools {

std::vector<Refusal> refusals(const std::string& scene, const std::vector<TileCandidate>& tiles,
                              SharedTextures& textures) {
  std::vector<Refusal> refused;
  for (const TileCandidate& tile : tiles) {
    const Unevaluated found =
        tile.dagPath.isValid() ? summaryOf(unevaluatedParts(tile.dagPath), 1) : Unevaluated();
    if (!found.what.empty()) refused.push_back({tile.path, found.what, found.advice});
  }
  for (Refusal& claim : textures.claims(scene, tiles)) {
    const bool isRefused = std::any_of(refused.begin(), refused.end(), [&](const Refusal& each) {
      return each.tile == claim.tile;
    });
    if (!isRefused) refused.push_back(std::move(claim));
  }
  return refused;
}

}  // namespace tools

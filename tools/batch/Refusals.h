#ifndef MORVANE_TOOLS_BATCH_REFUSALS_H_
#define MORVANE_TOOLS_BATCH_REFUSALS_H_

#include <string>
#include <vector>

#include "tools/batch/SharedTextures.h"
#include "tools/scene/TileCandidates.h"

namespace tools {

// The tiles of `scene` that must not be given to the plug-in: what it would write is not what Maya
// shows, or the file is another tile's.
std::vector<Refusal> refusals(const std::string& scene, const std::vector<TileCandidate>& tiles,
                              SharedTextures& textures);

}  // namespace tools

#endif  // MORVANE_TOOLS_BATCH_REFUSALS_H_

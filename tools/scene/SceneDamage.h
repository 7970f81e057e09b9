#ifndef MORVANE_TOOLS_SCENE_SCENEDAMAGE_H_
#define MORVANE_TOOLS_SCENE_SCENEDAMAGE_H_

#include <string>
#include <vector>

#include "host/Host.h"
#include "tools/terminal/ExitStatus.h"

// What a user is told of scenes that are not whole.
namespace tools {

// How many places are damaged, and which ("2 places of the scene are damaged: a.ma:4, a.ma:70");
// empty when none is.
std::string damageOf(const host::SceneProblems& problems);

// Why something may be missing in the scene, and what to do ("; the scene..."); empty when nothing
// speaks for it.
std::string likelyLoss(const host::SceneProblems& problems);

// After the work on `scene` (as the user named it): the damage and what to do, on standard error.
// kFailed when there was damage.
ExitStatus reportDamage(const std::string& scene, const host::SceneProblems& problems);

// At the end of a session: names on standard error what --map gave in vain, of this process or in
// these folders.
void reportUnusedMaps();
void reportUnusedMaps(const std::vector<std::string>& folders);

}  // namespace tools

#endif  // MORVANE_TOOLS_SCENE_SCENEDAMAGE_H_

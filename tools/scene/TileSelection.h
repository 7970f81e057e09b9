#ifndef MORVANE_TOOLS_SCENE_TILESELECTION_H_
#define MORVANE_TOOLS_SCENE_TILESELECTION_H_

#include <string>
#include <vector>

#include "host/Host.h"
#include "util/Status.h"

namespace tools {

// Selects the nodes named (names or patterns), or without names every tile of the open scene.
// False, with the reason in `error` and told on standard error, unless all were found. `scene` and
// the `problems` found in it are for messages.
bool selectTiles(const std::string& scene, std::vector<std::string> names,
                 const host::SceneProblems& problems, std::string& error);

// Why host::select() failed for a name, and which to give instead
// (": there is no such object; did you mean pond? ...").
std::string whyNotSelected(const std::string& name, const morvane::Status& status);

}  // namespace tools

#endif  // MORVANE_TOOLS_SCENE_TILESELECTION_H_

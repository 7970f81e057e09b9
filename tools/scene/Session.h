#ifndef MORVANE_TOOLS_SCENE_SESSION_H_
#define MORVANE_TOOLS_SCENE_SESSION_H_

#include <optional>
#include <string>
#include <vector>

#include "tools/terminal/ExitStatus.h"
#include "util/Status.h"

namespace tools {

// The name that does not change its meaning when the working folder does.
std::string absoluteName(const std::string& name);

// How scenes are opened: where the files that they name are on this machine, and at which time.
struct OpeningOptions {
  std::vector<std::string> maps;  // FROM=TO: folders of the machine that made a scene, and of this
  std::string project;  // in place of the nearest folder above a scene with workspace.mel; or empty
  std::optional<double> frame;  // in place of the time at which a scene was saved
};

// Starts the host, opens `scene` (none: the empty text), and loads the plug-in that belongs to this
// program: beside it in ../plug-ins, with its scripts in ../scripts. kDone or, with the reason on
// standard error, kNotLoaded. Names given on the command line must be absolute before: a scene
// moves the working folder. `status` (may be null) is set to why the scene or the plug-in
// cannot be loaded.
ExitStatus startSession(const std::string& scene, const OpeningOptions& opening,
                        morvane::Status* status = nullptr);

// Saves the scene as `output` (none: the empty text), or says why it cannot.
ExitStatus saveScene(const std::string& output);

}  // namespace tools

#endif  // MORVANE_TOOLS_SCENE_SESSION_H_

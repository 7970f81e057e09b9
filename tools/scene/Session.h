#ifndef MORVANE_TOOLS_SCENE_SESSION_H_
#define MORVANE_TOOLS_SCENE_SESSION_H_

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "tools/terminal/ExitStatus.h"

namespace tools {

// The name that does not change its meaning when the working folder does.
std::string absoluteName(const std::string& name);

// FROM=TO pairs: where folders of the machine that made a scene are on this one.
using FolderMaps = std::vector<std::string>;

// Gives a subcommand the option --map, which fills `maps` with checked pairs.
void addMapOption(CLI::App& command, FolderMaps& maps);

// Starts the host, opens `scene` (none: the empty text), and loads the plug-in that belongs to this
// program: beside it in ../plug-ins, with its scripts in ../scripts. kDone or, with the reason on
// standard error, kNotLoaded. Names given on the command line must be absolute before: a scene
// moves the working folder. `reason` (may be null) is set to why the scene or the plug-in
// cannot be loaded.
ExitStatus startSession(const std::string& scene, const FolderMaps& maps,
                        std::string* reason = nullptr);

// Saves the scene as `output` (none: the empty text), or says why it cannot.
ExitStatus saveScene(const std::string& output);

}  // namespace tools

#endif  // MORVANE_TOOLS_SCENE_SESSION_H_

#ifndef MORVANE_TOOLS_SESSION_H_
#define MORVANE_TOOLS_SESSION_H_

#include <string>

#include "tools/ExitStatus.h"

namespace tools {

// The name that does not change its meaning when the working folder does.
std::string absoluteName(const std::string& name);

// Starts the host, opens `scene` (none: the empty text), and loads the plug-in that belongs to this
// program: beside it in ../plug-ins, with its scripts in ../scripts. kDone or, with the reason on
// standard error, kNotLoaded. Names given on the command line must be absolute before: a scene
// moves the working folder.
ExitStatus startSession(const std::string& scene);

}  // namespace tools

#endif  // MORVANE_TOOLS_SESSION_H_

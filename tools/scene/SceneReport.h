#ifndef MORVANE_TOOLS_SCENE_SCENEREPORT_H_
#define MORVANE_TOOLS_SCENE_SCENEREPORT_H_

#include <string>

#include "tools/terminal/ExitStatus.h"

namespace tools {

// Lists the open scene's tiles on standard output, as a table or as one JSON object on a line.
// kFailed when there is none, or one that cannot be exported as things stand: its mesh is no tile's
// or its texture is missing; why is on standard error. `file` is the scene's name for all this.
ExitStatus reportScene(const std::string& file, bool json);

}  // namespace tools

#endif  // MORVANE_TOOLS_SCENE_SCENEREPORT_H_

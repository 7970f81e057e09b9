#ifndef MORVANE_TOOLS_BATCH_SCENEREPORT_H_
#define MORVANE_TOOLS_BATCH_SCENEREPORT_H_

#include <string>

#include "tools/terminal/ExitStatus.h"

namespace tools {

// Lists the open scene's tiles on standard output, as a table or as one JSON object on a line.
// kFailed when there is none, or one that an export would fail; why is on standard error. `file` is
// the scene's name for all this.
ExitStatus reportScene(const std::string& file, bool json);

}  // namespace tools

#endif  // MORVANE_TOOLS_BATCH_SCENEREPORT_H_

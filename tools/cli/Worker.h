#ifndef MORVANE_TOOLS_CLI_WORKER_H_
#define MORVANE_TOOLS_CLI_WORKER_H_

#include <string>

#include "tools/terminal/ExitStatus.h"

namespace tools {

// What this program does as one of the processes of a job. Returns when it is none.
ExitStatus runWorker(const std::string& channel);

}  // namespace tools

#endif  // MORVANE_TOOLS_CLI_WORKER_H_

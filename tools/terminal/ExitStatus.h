#ifndef MORVANE_TOOLS_TERMINAL_EXITSTATUS_H_
#define MORVANE_TOOLS_TERMINAL_EXITSTATUS_H_

namespace tools {

// The exit status of the program. The reason is always on standard error.
enum ExitStatus : int {
  kDone = 0,
  kFailed = 1,     // a command, a tile or a file
  kUsage = 2,      // the command line makes no sense
  kNotLoaded = 3,  // the scene or the plug-in
};

}  // namespace tools

#endif  // MORVANE_TOOLS_TERMINAL_EXITSTATUS_H_

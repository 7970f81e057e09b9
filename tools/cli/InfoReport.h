#ifndef MORVANE_TOOLS_CLI_INFOREPORT_H_
#define MORVANE_TOOLS_CLI_INFOREPORT_H_

#include <string>

#include "tools/jobs/JobWorker.h"
#include "tools/scene/SceneOpener.h"
#include "tools/terminal/ExitStatus.h"

namespace tools {

// What `info` prints of files, one after another.
class InfoReport {
 public:
  InfoReport(const OpeningOptions& opening, bool json) : scenes_(opening), json_(json) {}

  // `name` is the caller's, `path` absolute. kDone or, with the reason on standard error, what is
  // wrong with it.
  ExitStatus report(const std::string& name, const std::string& path);

 private:
  SceneOpener scenes_;
  bool json_;
};

// In one of the processes of `info`: `order` is its first. Does not return.
[[noreturn]] void reportOrdered(JobWorker& worker, Message order);

}  // namespace tools

#endif  // MORVANE_TOOLS_CLI_INFOREPORT_H_

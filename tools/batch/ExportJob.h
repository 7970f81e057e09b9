#ifndef MORVANE_TOOLS_BATCH_EXPORTJOB_H_
#define MORVANE_TOOLS_BATCH_EXPORTJOB_H_

#include <map>
#include <set>
#include <string>
#include <vector>

#include "tools/scene/Session.h"

namespace tools {

struct ExportJob {
  std::vector<std::string> scenes;  // as the caller named them; at least one
  std::vector<std::string> nodes;   // in each scene; none: every tile
  OpeningOptions opening;
  bool json = false;
  bool quiet = false;  // what the plug-in prints is not passed on
  bool skipUnchanged = false;
  bool dryRun = false;
  std::map<std::string, std::set<std::string>> doneTiles{};  // of each scene: are left out
  unsigned processes = 1;                                    // at work at once
  bool ordered = false;  // records and output in the order of `scenes`

  // What becomes of a tile that does not fail.
  const char* tileFate() const { return dryRun ? " planned" : " exported"; }
};

}  // namespace tools

#endif  // MORVANE_TOOLS_BATCH_EXPORTJOB_H_

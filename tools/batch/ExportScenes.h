#ifndef MORVANE_TOOLS_BATCH_EXPORTSCENES_H_
#define MORVANE_TOOLS_BATCH_EXPORTSCENES_H_

#include <string>
#include <vector>

#include "tools/scene/Session.h"
#include "tools/terminal/ExitStatus.h"

namespace tools {

struct ExportJob {
  std::vector<std::string> scenes;  // as the caller named them; at least one
  std::vector<std::string> nodes;   // in each scene; none: every tile
  OpeningOptions opening;
  bool json = false;
  bool quiet = false;  // what the plug-in prints is not passed on
};

// Runs exportTile on the tiles of each scene, one scene after another, and goes on after one that
// failed. Progress, failures and, for several scenes, a summary go to standard error; with `json`,
// standard output has one record for each tile and nothing else. The worst status of all scenes.
ExitStatus exportScenes(const ExportJob& job);

// The same of the scene that is open, which is the only one of the job.
ExitStatus exportOpenScene(const ExportJob& job);

}  // namespace tools

#endif  // MORVANE_TOOLS_BATCH_EXPORTSCENES_H_

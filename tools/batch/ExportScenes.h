#ifndef MORVANE_TOOLS_BATCH_EXPORTSCENES_H_
#define MORVANE_TOOLS_BATCH_EXPORTSCENES_H_

#include "tools/batch/ExportJob.h"
#include "tools/jobs/JobWorker.h"
#include "tools/terminal/ExitStatus.h"

namespace tools {

// Runs exportTile on the tiles of each scene, one scene after another or each in one of the job's
// processes, and goes on after one that failed. Progress, failures and, for several scenes, a
// summary go to standard error; with `json`, standard output has one record for each tile and
// nothing else. The worst status of all scenes.
ExitStatus exportScenes(const ExportJob& job);

// The same of the scene that is open, which is the only one of the job.
ExitStatus exportOpenScene(const ExportJob& job);

// In one of the job's processes: `order` is its first. Does not return.
[[noreturn]] void exportOrdered(JobWorker& worker, Message order);

}  // namespace tools

#endif  // MORVANE_TOOLS_BATCH_EXPORTSCENES_H_

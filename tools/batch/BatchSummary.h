#ifndef MORVANE_TOOLS_BATCH_BATCHSUMMARY_H_
#define MORVANE_TOOLS_BATCH_BATCHSUMMARY_H_

#include <chrono>
#include <cstddef>
#include <set>
#include <string>

#include "tools/batch/ExportJob.h"
#include "tools/batch/SceneExport.h"
#include "tools/terminal/ExitStatus.h"

namespace tools {

// What became of a job's scenes, for standard error. The job must live as long.
class BatchSummary {
 public:
  explicit BatchSummary(const ExportJob& job) : job_(job), scenes_(job.scenes.size()) {}

  // Scene `number`, from 0. Where no bar shows how far the job is, a line for each of several
  // scenes does.
  void add(std::size_t number, const std::string& scene, const SceneResult& result);
  // At the end, of several scenes.
  void tell() const;
  ExitStatus worst() const { return worst_; }

 private:
  const ExportJob& job_;
  const std::size_t scenes_;
  ExitStatus worst_ = kDone;
  std::set<std::string> failedScenes_;
  std::ptrdiff_t exportedTiles_ = 0;
  std::ptrdiff_t failedTiles_ = 0;
  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace tools

#endif  // MORVANE_TOOLS_BATCH_BATCHSUMMARY_H_

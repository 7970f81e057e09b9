#include "tools/batch/BatchSummary.h"

#include <algorithm>
#include <cstdio>

#include "tools/terminal/Platform.h"
#include "tools/terminal/Text.h"

namespace tools {
namespace {

constexpr std::size_t kMostNamed = 20;  // failed scenes

}  // namespace

void BatchSummary::add(std::size_t number, const std::string& scene, const SceneResult& result) {
  worst_ = std::max(worst_, result.status);
  failedScenes_.insert(result.failedScenes.begin(), result.failedScenes.end());
  exportedTiles_ += result.exportedTiles;
  failedTiles_ += result.failedTiles;
  if (scenes_ == 1 || standardErrorIsTerminal()) return;
  complain(std::to_string(number + 1) + "/" + std::to_string(scenes_) + " " + printable(scene) +
           ": " + result.outcome);
}

void BatchSummary::tell() const {
  if (scenes_ == 1) return;
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start_;
  char seconds[32];
  std::snprintf(seconds, sizeof seconds, "%.1f s", time.count());
  complain(counted(scenes_, "scene") + ", " + std::to_string(failedScenes_.size()) +
           " with failures; " + counted(static_cast<std::size_t>(exportedTiles_), "tile") +
           job_.tileFate() + ", " + std::to_string(failedTiles_) + " failed; " + seconds);
  // Once more, where they do not scroll away.
  std::size_t left = failedScenes_.size();
  for (const std::string& scene : failedScenes_) {
    if (failedScenes_.size() - left == kMostNamed) {
      complain("... and " + std::to_string(left) + " more");
      break;
    }
    complain("with failures: " + printable(scene));
    --left;
  }
}

}  // namespace tools

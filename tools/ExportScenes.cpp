#include "tools/ExportScenes.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <optional>

#include "host/Host.h"
#include "tools/ExportRecords.h"
#include "tools/ExportReport.h"
#include "tools/OutputWatch.h"
#include "tools/Platform.h"
#include "tools/ProgressBar.h"
#include "tools/SceneDamage.h"
#include "tools/Text.h"
#include "tools/TileSelection.h"

namespace tools {
namespace {

class Batch {
 public:
  explicit Batch(const ExportJob& job) : job_(job), bar_(standardErrorIsTerminal()) {
    if (job.json) records_.emplace();
    for (const std::string& scene : job.scenes) paths_.push_back(absoluteName(scene));
    host::beforeMessages([this](std::string_view line) {
      bar_.hide();
      if (report_) report_->hearHost(line);
    });
  }
  ~Batch() { host::beforeMessages({}); }
  Batch(const Batch&) = delete;
  Batch& operator=(const Batch&) = delete;

  ExitStatus run() {
    ExitStatus worst = startSession("", job_.maps);
    if (worst != kDone) return worst;
    for (; scene_ < paths_.size(); ++scene_) worst = std::max(worst, exportScene());
    tellUnusedMaps();
    if (paths_.size() > 1) summarise();
    if (!records_ || records_->ok()) return worst;
    complain(
        "standard output could not be written: records of tiles are missing; is the disk full?");
    return std::max(worst, kFailed);
  }

 private:
  const std::string& name() const { return job_.scenes[scene_]; }

  ExitStatus exportScene() {
    bar_.show(doneSoFar(0, 1), "opening " + printable(name()));
    std::string error;
    const bool opened = host::openScene(paths_[scene_], &error);
    bar_.hide();
    const host::SceneProblems problems = host::takeSceneProblems();
    if (!opened) return failScene(problems, error, kNotLoaded);
    if (!selectTiles(name(), job_.nodes, problems, error)) {
      return failScene(problems, error, kFailed);
    }
    if (records_ && !problems.list.empty()) {
      records_->writeScene(name(), problems, damageOf(problems));
    }
    const ExitStatus exported = exportSelected(problems.damages != 0);
    return std::max(exported, tellDamage(name(), problems));
  }

  ExitStatus exportSelected(bool isDamaged) {
    const auto tiles = host::selectedCandidates();
    ExportReport report(tiles,
                        [this, begun = std::size_t{0}, total = tiles.size()](
                            const TileOutcome& tile) mutable { showTile(tile, begun++, total); });
    report_ = &report;
    OutputWatch watch([&report](std::string_view line) { report.hear(line); },
                      [this](const std::function<void()>& write) { bar_.makeRoom(write); });
    const bool executed = host::execute("exportTile", "exportTile");
    const bool heard = watch.finish();
    report_ = nullptr;
    bar_.hide();
    if (!heard) {
      complain(
          "standard output could not be written, so nobody can tell whether every tile was "
          "exported; is the disk full?");
    }
    const bool allExported = report.conclude();
    keep(report, isDamaged);
    return executed && heard && allExported ? kDone : kFailed;
  }

  double doneSoFar(std::size_t tile, std::size_t tiles) const {
    const double inScene =
        static_cast<double>(tile) / static_cast<double>(std::max<std::size_t>(tiles, 1));
    return (static_cast<double>(scene_) + inScene) / static_cast<double>(paths_.size());
  }

  void showTile(const TileOutcome& tile, std::size_t number, std::size_t tiles) {
    std::string what =
        std::to_string(number + 1) + "/" + std::to_string(tiles) + " " + printable(tile.path);
    if (paths_.size() > 1) {
      what = "scene " + std::to_string(scene_ + 1) + "/" + std::to_string(paths_.size()) +
             " tile " + what;
    }
    bar_.show(doneSoFar(number, tiles), what);
  }

  ExitStatus failScene(const host::SceneProblems& problems, const std::string& error,
                       ExitStatus status) {
    ++failedScenes_;
    if (records_) records_->writeScene(name(), problems, error);
    tell("not exported");
    return status;
  }

  void keep(const ExportReport& report, bool isDamaged) {
    const std::size_t failed = report.failures();
    failedScenes_ += failed == 0 && !isDamaged ? 0 : 1;
    failedTiles_ += failed;
    exportedTiles_ += report.tiles().size() - failed;
    if (records_) {
      for (const TileOutcome& tile : report.tiles()) {
        records_->write(name(), tile, report.textureOf(tile.path));
      }
    }
    tell(counted(report.tiles().size() - failed, "tile") + " exported" +
         (failed == 0 ? "" : ", " + std::to_string(failed) + " failed") +
         (isDamaged ? "; the scene is damaged" : ""));
  }

  // Where no bar shows how far it is, a line for each of several scenes does.
  void tell(const std::string& outcome) const {
    if (paths_.size() == 1 || standardErrorIsTerminal()) return;
    complain(std::to_string(scene_ + 1) + "/" + std::to_string(paths_.size()) + " " +
             printable(name()) + ": " + outcome);
  }

  void summarise() const {
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start_;
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%.1f s", time.count());
    complain(counted(paths_.size(), "scene") + ", " + std::to_string(failedScenes_) +
             " with failures; " + counted(exportedTiles_, "tile") + " exported, " +
             std::to_string(failedTiles_) + " failed; " + seconds);
  }

  const ExportJob& job_;
  std::vector<std::string> paths_;  // absolute, before a scene moves the working folder
  std::optional<ExportRecords> records_;
  ProgressBar bar_;
  ExportReport* report_ = nullptr;  // of the export that is going on
  std::size_t scene_ = 0;
  std::size_t failedScenes_ = 0;
  std::size_t exportedTiles_ = 0;
  std::size_t failedTiles_ = 0;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace

ExitStatus exportScenes(const ExportJob& job) {
  return Batch(job).run();
}

}  // namespace tools

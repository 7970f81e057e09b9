#include "tools/batch/ExportScenes.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <optional>
#include <set>

#include "host/Host.h"
#include "host/text/Text.h"
#include "tools/batch/ExportRecords.h"
#include "tools/batch/ExportReport.h"
#include "tools/batch/OutputWatch.h"
#include "tools/batch/Refusals.h"
#include "tools/batch/SharedTextures.h"
#include "tools/scene/SceneDamage.h"
#include "tools/scene/TileCandidates.h"
#include "tools/scene/TileSelection.h"
#include "tools/terminal/Activity.h"
#include "tools/terminal/InterruptNotice.h"
#include "tools/terminal/Platform.h"
#include "tools/terminal/ProgressBar.h"
#include "tools/terminal/Text.h"

namespace tools {
namespace {

constexpr std::size_t kMostNamed = 20;  // failed scenes
constexpr int kMostRepeats = 3;         // of tiles whose files others changed meanwhile

class Batch {
 public:
  explicit Batch(const ExportJob& job) : job_(job), bar_(standardErrorIsTerminal()) {
    if (job.json) records_.emplace();
    for (const std::string& scene : job.scenes) paths_.push_back(absoluteName(scene));
    host::beforeMessages([this](std::string_view line) {
      bar_.hide();
      if (report_) report_->readHostLine(line);
    });
  }
  ~Batch() { host::beforeMessages({}); }
  Batch(const Batch&) = delete;
  Batch& operator=(const Batch&) = delete;

  ExitStatus run() {
    morvane::Status started;
    ExitStatus worst = startSession("", job_.opening, &started);
    if (worst != kDone) return failAll(started.text(), worst);
    InterruptNotice notice(paths_.size());
    for (; scene_ < paths_.size(); ++scene_) {
      worst = std::max(worst, exportScene());
      notice.finishScene();
    }
    reportUnusedMaps();
    if (paths_.size() > 1) summarise();
    if (!records_ || records_->ok()) return worst;
    complain(
        "standard output could not be written: records of tiles are missing; is the disk full?");
    return std::max(worst, kFailed);
  }

  // Of the scene at hand, in which these problems were found.
  ExitStatus exportOpened(const host::SceneProblems& problems) {
    std::string error;
    if (!selectTiles(name(), job_.nodes, problems, error))
      return failScene(problems, error, kFailed);
    if (records_ && !problems.list.empty()) {
      records_->writeScene(name(), problems, damageOf(problems),
                           problems.damages == 0 ? kDone : kFailed);
    }
    const ExitStatus exported = exportSelected(problems.damages != 0);
    return std::max(exported, reportDamage(name(), problems));
  }

 private:
  const std::string& name() const { return job_.scenes[scene_]; }

  ExitStatus exportScene() {
    nowDoing("opening", name());
    bar_.show(doneSoFar(0, 1), currentActivity());
    const morvane::Status opened = host::openScene(paths_[scene_]);
    bar_.hide();
    const host::SceneProblems problems = host::takeSceneProblems();
    return opened.ok() ? exportOpened(problems) : failScene(problems, opened.text(), kNotLoaded);
  }

  ExitStatus exportSelected(bool isDamaged) {
    nowDoing("exporting", name());
    const auto tiles = selectedCandidates();
    ExportReport report(name(), tiles,
                        [this, begun = std::size_t{0}, total = tiles.size()](
                            const TileOutcome& tile) mutable { showTile(tile, begun++, total); });
    report_ = &report;
    bool heard = true;
    bool executed = refuseTiles(report) && exportHeard(report, heard);
    for (int again = 0; again < kMostRepeats && heard; ++again) {
      const auto changed = report.takeChanged();
      if (changed.empty()) break;
      bar_.hide();
      complain("somebody saved the texture of " + counted(changed.size(), "tile") +
               " meanwhile: exporting again");
      executed = selectOnly(changed) && exportHeard(report, heard) && executed;
    }
    report_ = nullptr;
    bar_.hide();
    if (!heard) {
      complain(
          "standard output could not be written, so nobody can tell whether every tile was "
          "exported; is the disk full?");
    }
    const bool nothingLost = settle(report);
    const bool allExported = report.conclude();
    keep(report, isDamaged);
    return executed && heard && allExported && nothingLost ? kDone : kFailed;
  }

  // Takes tiles out of the selection that must not be exported.
  bool refuseTiles(ExportReport& report) {
    std::string script;
    for (const Refusal& refusal : refusals(name(), selectedCandidates(), textures_)) {
      report.refuse(refusal);
      script += "select -deselect " + host::mel::quoted(refusal.tile) + "; ";
    }
    return script.empty() || host::execute(script, "selection");
  }

  static bool selectOnly(const std::vector<std::string>& paths) {
    std::string script = "select -clear; ";
    for (const std::string& path : paths) script += "select -add " + host::mel::quoted(path) + "; ";
    return host::execute(script, "selection");
  }

  // Exports the selection while the report hears what the plug-in says.
  bool exportHeard(ExportReport& report, bool& heard) {
    const auto tiles = selectedCandidates();
    OutputWatch watch([&report](std::string_view line) { report.readLine(line); },
                      [this](const std::function<void()>& write) { bar_.makeRoom(write); },
                      !job_.quiet);
    const bool executed = tiles.empty() || exportRounds(tiles);
    heard = watch.finish() && heard;
    return executed;
  }

  // All that is selected; tiles with one texture not in one go, so that what each writes is seen.
  bool exportRounds(const std::vector<TileCandidate>& tiles) {
    bool ok = true;
    const auto rounds = SharedTextures::rounds(tiles);
    for (std::size_t i = 0; i < rounds.size(); ++i) {
      if (rounds.size() > 1) ok = selectRound(tiles, rounds, i) && ok;
      textures_.beginRound(tiles, rounds[i]);
      ok = host::execute("exportTile", "exportTile") && ok;
      textures_.endRound();
    }
    return ok;
  }

  // The first round is what is left of the selection without the others.
  static bool selectRound(const std::vector<TileCandidate>& tiles,
                          const std::vector<std::vector<std::size_t>>& rounds, std::size_t round) {
    std::string script = round == 0 ? "" : "select -clear; ";
    for (std::size_t i = round == 0 ? 1 : round; i < rounds.size(); ++i) {
      for (const std::size_t tile : rounds[i]) {
        script += (round == 0 ? "select -deselect " : "select -add ") +
                  host::mel::quoted(tiles[tile].path) + "; ";
      }
      if (round != 0) break;
    }
    return host::execute(script, "selection");
  }

  // Tiles whose goblins are gone have failed after all. False when they are another scene's.
  bool settle(ExportReport& report) {
    bool ok = true;
    const auto isExported = [&](const std::string& tile) { return report.isExported(tile); };
    for (const SharedTextures::Loss& loss : textures_.settle(name(), isExported)) {
      report.markLost(loss);
      for (const SharedTextures::Tile& tile : loss.lost) {
        if (tile.scene != name()) {
          markEarlierLost(tile, loss.errorOf(tile));
          ok = false;
        }
      }
    }
    return ok;
  }

  void markEarlierLost(const SharedTextures::Tile& tile, const std::string& error) {
    failedScenes_.insert(tile.scene);
    --exportedTiles_;
    ++failedTiles_;
    complain(printable(tile.scene) + ": " + printable(tile.path) + ": " + printable(error) + "; " +
             SharedTextures::Loss::kAdvice);
    if (records_) records_->write(tile.scene, {tile.path, error, {}, 0, {}, ""}, "");
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

  ExitStatus failAll(const std::string& error, ExitStatus status) {
    for (const std::string& scene : job_.scenes)
      if (records_) records_->writeScene(scene, {}, error, status);
    return status;
  }

  ExitStatus failScene(const host::SceneProblems& problems, const std::string& error,
                       ExitStatus status) {
    failedScenes_.insert(name());
    if (records_) records_->writeScene(name(), problems, error, status);
    tell("not exported");
    return status;
  }

  void keep(const ExportReport& report, bool isDamaged) {
    const std::size_t failed = report.failures();
    if (failed != 0 || isDamaged) failedScenes_.insert(name());
    failedTiles_ += failed;
    exportedTiles_ += report.tiles().size() - failed;
    if (records_)
      for (const TileOutcome& tile : report.tiles())
        records_->write(name(), tile, report.textureOf(tile.path));
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
    complain(counted(paths_.size(), "scene") + ", " + std::to_string(failedScenes_.size()) +
             " with failures; " + counted(exportedTiles_, "tile") + " exported, " +
             std::to_string(failedTiles_) + " failed; " + seconds);
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

  const ExportJob& job_;
  std::vector<std::string> paths_;  // absolute, before a scene moves the working folder
  std::optional<ExportRecords> records_;
  SharedTextures textures_;
  ProgressBar bar_;
  ExportReport* report_ = nullptr;  // of the export that is going on
  std::size_t scene_ = 0;
  std::set<std::string> failedScenes_;
  std::size_t exportedTiles_ = 0;
  std::size_t failedTiles_ = 0;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace

ExitStatus exportScenes(const ExportJob& job) {
  return Batch(job).run();
}

ExitStatus exportOpenScene(const ExportJob& job) {
  return Batch(job).exportOpened({});
}

}  // namespace tools

#include "tools/batch/SceneExport.h"

#include <algorithm>
#include <utility>

#include "host/text/Text.h"
#include "tools/batch/ExportRecords.h"
#include "tools/batch/OutputWatch.h"
#include "tools/batch/Refusals.h"
#include "tools/scene/SceneDamage.h"
#include "tools/scene/TileCandidates.h"
#include "tools/scene/TileSelection.h"
#include "tools/terminal/Activity.h"
#include "tools/terminal/Text.h"

namespace tools {
namespace {

constexpr int kMostRepeats = 3;  // of tiles whose files others changed meanwhile

bool selectOnly(const std::vector<std::string>& paths) {
  std::string script = "select -clear; ";
  for (const std::string& path : paths) script += "select -add " + host::mel::quoted(path) + "; ";
  return host::execute(script, "selection");
}

// The first round is what is left of the selection without the others.
bool selectRound(const std::vector<TileCandidate>& tiles,
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

}  // namespace

SceneExport::SceneExport(const ExportJob& job, SharedTextures& textures, ProgressBar& bar,
                         SceneExportCalls calls)
    : job_(job), textures_(textures), bar_(bar), calls_(std::move(calls)) {
  host::beforeMessages([this](std::string_view line) {
    bar_.hide();
    if (report_) report_->readHostLine(line);
  });
}

SceneExport::~SceneExport() {
  host::beforeMessages({});
}

SceneResult SceneExport::exportScene(const std::string& name, const std::string& path) {
  nowDoing("opening", name);
  calls_.show({});
  const morvane::Status opened = host::openScene(path);
  bar_.hide();
  const host::SceneProblems problems = host::takeSceneProblems();
  if (opened.ok()) return exportOpened(name, problems);
  name_ = name;
  fail(problems, opened.text(), kNotLoaded);
  return std::exchange(result_, {});
}

SceneResult SceneExport::exportOpened(const std::string& name,
                                      const host::SceneProblems& problems) {
  name_ = name;
  std::string error;
  if (!selectTiles(name_, job_.nodes, problems, error)) {
    fail(problems, error, kFailed);
  } else {
    if (job_.json && !problems.list.empty()) {
      result_.records.push_back(sceneRecord(name_, problems, damageOf(problems),
                                            problems.damages == 0 ? kDone : kFailed));
    }
    const ExitStatus exported = exportSelected(problems.damages != 0);
    result_.status = std::max(exported, reportDamage(name_, problems));
  }
  return std::exchange(result_, {});
}

void SceneExport::fail(const host::SceneProblems& problems, const std::string& error,
                       ExitStatus status) {
  result_.failedScenes.insert(name_);
  if (job_.json) result_.records.push_back(sceneRecord(name_, problems, error, status));
  result_.status = status;
}

ExitStatus SceneExport::exportSelected(bool isDamaged) {
  nowDoing("exporting", name_);
  const auto tiles = selectedCandidates();
  if (calls_.begin) calls_.begin(tiles);
  ExportReport report(
      name_, tiles,
      [this, begun = std::size_t{0}, total = tiles.size()](const TileOutcome& tile) mutable {
        calls_.show({tile.path, begun++, total});
      });
  report_ = &report;
  bool heard = true;
  bool executed = refuseTiles(report, tiles) && exportHeard(report, heard);
  executed = exportAgain(report, heard) && executed;
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
bool SceneExport::refuseTiles(ExportReport& report, const std::vector<TileCandidate>& tiles) {
  std::string script;
  for (const Refusal& refusal : refusals(name_, tiles, textures_)) {
    report.refuse(refusal);
    script += "select -deselect " + host::mel::quoted(refusal.tile) + "; ";
  }
  return script.empty() || host::execute(script, "selection");
}

bool SceneExport::exportAgain(ExportReport& report, bool& heard) {
  bool executed = true;
  for (int again = 0; again < kMostRepeats && heard; ++again) {
    const auto changed = report.takeChanged();
    if (changed.empty()) break;
    bar_.hide();
    complain("somebody saved the texture of " + counted(changed.size(), "tile") +
             " meanwhile: exporting again");
    executed = selectOnly(changed) && exportHeard(report, heard) && executed;
  }
  return executed;
}

// Exports the selection while the report hears what the plug-in says.
bool SceneExport::exportHeard(ExportReport& report, bool& heard) {
  const auto tiles = selectedCandidates();
  OutputWatch watch([&report](std::string_view line) { report.readLine(line); },
                    [this](const std::function<void()>& write) { bar_.makeRoom(write); },
                    !job_.quiet);
  const bool executed = tiles.empty() || exportRounds(tiles);
  heard = watch.finish() && heard;
  return executed;
}

// All that is selected; tiles with one texture not in one go, so that what each writes is seen.
bool SceneExport::exportRounds(const std::vector<TileCandidate>& tiles) {
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

// Tiles whose goblins are gone have failed after all. False when they are another scene's.
bool SceneExport::settle(ExportReport& report) {
  bool ok = true;
  const auto isExported = [&](const std::string& tile) { return report.isExported(tile); };
  for (const SharedTextures::Loss& loss : textures_.settle(name_, isExported)) {
    report.markLost(loss);
    for (const SharedTextures::Tile& tile : loss.lost) {
      if (tile.scene == name_) continue;
      markEarlierLost(tile, loss.errorOf(tile));
      ok = false;
    }
  }
  return ok;
}

void SceneExport::markEarlierLost(const SharedTextures::Tile& tile, const std::string& error) {
  result_.failedScenes.insert(tile.scene);
  --result_.exportedTiles;
  ++result_.failedTiles;
  complain(printable(tile.scene) + ": " + printable(tile.path) + ": " + printable(error) + "; " +
           SharedTextures::Loss::kAdvice);
  if (job_.json)
    result_.records.push_back(tileRecord(tile.scene, {tile.path, error, {}, 0, {}, ""}, ""));
}

void SceneExport::keep(const ExportReport& report, bool isDamaged) {
  const std::size_t failed = report.failures();
  const std::size_t exported = report.tiles().size() - failed;
  if (failed != 0 || isDamaged) result_.failedScenes.insert(name_);
  result_.failedTiles += static_cast<std::ptrdiff_t>(failed);
  result_.exportedTiles += static_cast<std::ptrdiff_t>(exported);
  if (job_.json)
    for (const TileOutcome& tile : report.tiles())
      result_.records.push_back(tileRecord(name_, tile, report.textureOf(tile.path)));
  result_.outcome = counted(exported, "tile") + " exported" +
                    (failed == 0 ? "" : ", " + std::to_string(failed) + " failed") +
                    (isDamaged ? "; the scene is damaged" : "");
}

}  // namespace tools

#include "tools/batch/SceneExport.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <utility>

#include "host/text/Text.h"
#include "tools/batch/ExportRecords.h"
#include "tools/batch/OutputWatch.h"
#include "tools/batch/Refusals.h"
#include "tools/model/TileFile.h"
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

bool deselect(const std::vector<std::string>& paths) {
  std::string script;
  for (const std::string& path : paths)
    script += "select -deselect " + host::mel::quoted(path) + "; ";
  return script.empty() || host::execute(script, "selection");
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
  tiles_ = tiles.size();
  if (calls_.begin) calls_.begin(tiles);
  ExportReport report(
      name_, tiles,
      [this, begun = std::size_t{0}, total = tiles.size()](const TileOutcome& tile) mutable {
        calls_.show({tile.path, begun++, total});
      });
  report_ = &report;
  bool heard = true;
  bool executed = leaveOut(report, tiles) && planTiles(report) && exportHeard(report, heard);
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

// Takes tiles out of the selection that must not be exported, or are done.
bool SceneExport::leaveOut(ExportReport& report, const std::vector<TileCandidate>& tiles) {
  std::vector<std::string> out;
  std::vector<TileCandidate> wanted;
  const auto done = job_.doneTiles.find(name_);
  for (const TileCandidate& tile : tiles) {
    const bool isDone = done != job_.doneTiles.end() && done->second.count(toUtf8(tile.path)) != 0;
    if (isDone)
      out.push_back(tile.path);
    else
      wanted.push_back(tile);
  }
  done_ = out.size();
  for (const Refusal& refusal : refusals(name_, wanted, textures_)) {
    report.refuse(refusal);
    out.push_back(refusal.tile);
  }
  return deselect(out);
}

// Takes out what needs no writing, or only says what would be written. A file that several tiles
// name is written: the last of them decides what it holds.
bool SceneExport::planTiles(ExportReport& report) {
  if (!job_.skipUnchanged && !job_.dryRun) return true;
  const auto tiles = selectedCandidates();
  std::map<std::set<std::string>, std::size_t> uses;
  for (const TileCandidate& tile : tiles) ++uses[SharedTextures::filesOf({tile})];
  std::vector<std::string> out;
  for (const TileCandidate& tile : tiles) {
    const PlannedTile planned = planTile(tile);
    const bool isUnchangedTile = planned.ok && job_.skipUnchanged &&
                                 uses[SharedTextures::filesOf({tile})] == 1 &&
                                 isUnchanged(planned.result);
    if (!job_.dryRun && !isUnchangedTile) continue;
    replay(planned, report);
    out.push_back(tile.path);
    if (!planned.ok) continue;
    const Goblins goblins = readGoblins(planned.result.document);
    report.markLast(isUnchangedTile ? TileAction::kUnchanged : TileAction::kPlanned,
                    goblins.goblins.size(), goblins.pool.size());
    if (job_.dryRun)
      textures_.foresee(tile, planned.result.document);
    else
      textures_.keep(tile);
    if (job_.dryRun && !job_.json)
      std::printf("%s %s: %s of %s\n", isUnchangedTile ? "unchanged" : "would write",
                  printable(writtenFile(tile.texture)).c_str(),
                  counted(goblins.goblins.size(), "goblin").c_str(), printable(tile.path).c_str());
  }
  return deselect(out);
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
    result_.records.push_back(tileRecord(tile.scene, {tile.path, error, {}, 0}, "", 0));
}

void SceneExport::keep(const ExportReport& report, bool isDamaged) {
  const std::size_t failed = report.failures();
  const std::size_t exported = report.tiles().size() - failed;
  if (failed != 0 || isDamaged) result_.failedScenes.insert(name_);
  result_.failedTiles += static_cast<std::ptrdiff_t>(failed);
  result_.exportedTiles += static_cast<std::ptrdiff_t>(exported);
  if (job_.json)
    for (const TileOutcome& tile : report.tiles())
      result_.records.push_back(tileRecord(name_, tile, report.textureOf(tile.path), tiles_));
  const auto unchanged = static_cast<std::size_t>(
      std::count_if(report.tiles().begin(), report.tiles().end(), [](const TileOutcome& tile) {
        return tile.error.empty() && tile.action == TileAction::kUnchanged;
      }));
  result_.outcome = counted(exported, "tile") + job_.tileFate() +
                    (unchanged == 0 ? "" : " (" + std::to_string(unchanged) + " unchanged)") +
                    (done_ == 0 ? "" : ", " + std::to_string(done_) + " done before") +
                    (failed == 0 ? "" : ", " + std::to_string(failed) + " failed") +
                    (isDamaged ? "; the scene is damaged" : "");
}

}  // namespace tools

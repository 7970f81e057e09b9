#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/Host.h"
#include "host/text/Text.h"
#include "tile/TileTexture.h"
#include "tools/batch/DoneRecords.h"
#include "tools/batch/ExportScenes.h"
#include "tools/cli/Commands.h"
#include "tools/cli/Options.h"
#include "tools/jobs/JobPool.h"
#include "tools/scene/SceneDamage.h"
#include "tools/scene/SceneEvaluation.h"
#include "tools/scene/SceneOpener.h"
#include "tools/scene/Session.h"
#include "tools/scene/TileCandidates.h"
#include "tools/scene/TileSelection.h"
#include "tools/terminal/ExitStatus.h"
#include "tools/terminal/OutputFile.h"
#include "tools/terminal/Platform.h"
#include "tools/terminal/Text.h"

namespace tools {
namespace {

constexpr const char* kFooter =
    "Examples:\n"
    "  morvane export level.ma                    every tile, into its PSD texture\n"
    "  morvane export scenes/*.ma --json 'po*'    these tiles of many scenes, as JSON\n"
    "  morvane export level.ma pond --to pond.psd one tile into a file of its own";

struct Options {
  std::vector<std::string> words;  // scenes, then nodes
  std::string to;
  OpeningOptions opening;
  JobOptions jobs;
  bool skipUnchanged = false;
  bool dryRun = false;
  std::vector<std::string> resume;
  std::optional<std::uint32_t> waitSeconds;
  bool inPlace = false;
  bool force = false;
  bool json = false;
  bool quiet = false;
};

// The plug-in saves, and is told through the environment.
void reportThePlugIn(const Options& options) {
  if (options.waitSeconds) setEnvironment("MORVANE_WAIT", std::to_string(*options.waitSeconds));
  if (options.inPlace) setEnvironment("MORVANE_IN_PLACE", "1");
}

// No node's name has a slash.
bool isSceneName(const std::string& word) {
  return isScene(word) || word.find('/') != std::string::npos;
}

// Tiles before scenes would be taken for scenes that are missing, and the scenes exported whole.
bool isInOrder(const std::vector<std::string>& words) {
  // Nor has it a dot: a file of another kind, or a folder, is told of as what it is.
  if (!isSceneName(words[0]) && words[0].find('.') == std::string::npos) {
    complain(printable(words[0]) +
             " is not a name of a scene: name scenes (*.ma, *.mb) first, then tiles; nothing was "
             "exported");
    return false;
  }
  const auto node = std::find_if_not(words.begin() + 1, words.end(), isSceneName);
  const auto scene = std::find_if(node, words.end(), isSceneName);
  if (scene == words.end()) return true;
  complain("the scene " + printable(*scene) + " comes after the tile " + printable(*node) +
           ": name scenes first, then tiles; nothing was exported");
  return false;
}

ExportJob jobOf(const Options& options) {
  const auto& words = options.words;
  const auto firstNode = std::find_if_not(words.begin() + 1, words.end(), isSceneName);
  const auto scenes = static_cast<std::size_t>(firstNode - words.begin());
  return {{words.begin(), firstNode},
          {firstNode, words.end()},
          options.opening,
          options.json,
          options.quiet || (options.json && standardErrorIsTerminal()),
          options.skipUnchanged,
          options.dryRun,
          {},
          jobsFor(options.jobs.asked, scenes),
          options.jobs.ordered};
}

// Takes up where the runs ended of which these are the records.
ExitStatus resumeExport(ExportJob job, const Options& options) {
  DoneRecords records;
  for (const std::string& file : options.resume)
    if (!records.read(file)) return kUsage;
  const std::size_t all = job.scenes.size();
  const auto isDone = [&](const std::string& scene) { return records.isDone(scene); };
  job.scenes.erase(std::remove_if(job.scenes.begin(), job.scenes.end(), isDone), job.scenes.end());
  if (!options.resume.empty() && job.scenes.size() < all)
    complain(std::to_string(all - job.scenes.size()) + " of " + counted(all, "scene") +
             " were done before");
  if (job.scenes.empty()) return kDone;
  for (const std::string& scene : job.scenes) job.doneTiles[scene] = records.tilesOf(scene);
  job.processes = jobsFor(options.jobs.asked, job.scenes.size());
  return exportScenes(job);
}

// Through the translator, into a file of its own.
ExitStatus exportToFile(const ExportJob& job, const std::string& file, bool force) {
  if (job.scenes.size() != 1 || job.nodes.size() != 1 || job.json || job.dryRun ||
      job.skipUnchanged) {
    complain(
        "--to takes exactly one scene and one node, since the file holds one tile, and no --json, "
        "--dry-run or --skip-unchanged");
    return kUsage;
  }
  const std::string to = absoluteName(file);
  if (wouldReplaceInput(to, job.scenes)) return kUsage;
  const ExitStatus started = startSession(job.scenes[0], job.opening);
  if (started != kDone) return started;
  if (wouldReplaceTexture(to)) return kUsage;
  const std::string picture = force ? "" : morvane::lookAt(to).picture;
  if (!picture.empty()) {
    complain(printable(file) + " is somebody's picture: " + printable(picture) +
             "; give another name, or --force to replace it");
    return kFailed;
  }
  const host::SceneProblems problems = host::takeSceneProblems();
  std::string told;
  if (!selectTiles(job.scenes[0], job.nodes, problems, told)) return kFailed;
  const std::vector<TileCandidate> selected = selectedCandidates();
  if (selected.size() != 1) {
    complain(printable(job.nodes[0]) + " means " + counted(selected.size(), "object") + ", and " +
             printable(file) + " holds one tile; name exactly one");
    return kFailed;
  }
  const Unevaluated found = selected[0].dagPath.isValid()
                                ? summaryOf(unevaluatedParts(selected[0].dagPath), 1)
                                : Unevaluated();
  if (!found.what.empty()) {
    complain(printable(job.scenes[0]) + ": " + printable(selected[0].path) + ": " +
             printable(found.what) + "; " + found.advice);
    return kFailed;
  }
  if (host::execute("file -force -exportSelected -type \"psd\" " + host::mel::quoted(to),
                    "export")) {
    reportUnusedMaps();
    return reportDamage(job.scenes[0], problems);
  }
  complain(
      "the export of " + printable(job.nodes[0]) + " to " + printable(file) +
      " failed; what is printed above says why; it takes a tile with a mesh, and a folder that "
      "can be written");
  return kFailed;
}

}  // namespace

void addExport(CLI::App& program, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App* command =
      program.add_subcommand("export", "Write the goblins of tiles into the tiles' texture files");
  command
      ->add_option("SCENE", options->words, "Scenes (*.ma, *.mb), then names or patterns of tiles")
      ->type_name("")
      ->required();
  checkOutput(*command
                   ->add_option("--to", options->to,
                                "Write one tile, with its goblins' names, to a new file")
                   ->type_name("FILE"),
              {"a PSD file", {".psd"}});
  command->add_flag("--force", options->force, "Let --to replace a picture that somebody painted");
  command->add_flag("--json", options->json, "A JSON record a line for each tile");
  command->add_flag("--quiet", options->quiet, "Without the plug-in's own lines");
  command
      ->add_option("--wait", options->waitSeconds, "Wait so long for a texture that is locked (10)")
      ->type_name("SECONDS");
  command->add_flag("--in-place", options->inPlace,
                    "Write into the texture: keeps hard links, not atomic");
  command->add_flag("--skip-unchanged", options->skipUnchanged,
                    "Leave files alone that hold these goblins already");
  command->add_flag("--dry-run", options->dryRun, "Say what would be written, and write nothing");
  command
      ->add_option("--resume", options->resume,
                   "Leave out what these records say is done; repeatable")
      ->type_name("RECORDS")
      ->expected(1)
      ->take_all();
  addJobOptions(*command, options->jobs);
  addFolderOptions(*command, options->opening);
  addFrameOption(*command, options->opening);
  command->footer(kFooter);
  command->callback([options, &status] {
    if (!isInOrder(options->words)) {
      status = kUsage;
      return;
    }
    if (!options->to.empty() && !options->resume.empty()) {
      complain("--resume leaves tiles out, and --to exports just one; leave one of the two out");
      status = kUsage;
      return;
    }
    reportThePlugIn(*options);
    const ExportJob job = jobOf(*options);
    status = options->to.empty() ? resumeExport(job, *options)
                                 : exportToFile(job, options->to, options->force);
  });
}

}  // namespace tools

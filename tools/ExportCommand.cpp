#include <algorithm>
#include <string>
#include <vector>

#include "host/Host.h"
#include "tools/Commands.h"
#include "tools/ExitStatus.h"
#include "tools/ExportScenes.h"
#include "tools/SceneDamage.h"
#include "tools/Session.h"
#include "tools/Text.h"
#include "tools/TileSelection.h"

namespace tools {
namespace {

constexpr const char* kFooter =
    "A TGA texture stays as it is, and a PSD file of its name is written beside it.\n"
    "A damaged scene is exported as far as it can be read, and the status is 1.\n"
    "Examples:\n"
    "  morvane export level.ma                    every tile, into its texture\n"
    "  morvane export level.ma 'shore*' pond      only these tiles\n"
    "  morvane export scenes/*.ma --json          many scenes; a record for each tile\n"
    "  morvane export level.ma --map P:/art=/mnt/art\n"
    "  morvane export level.ma pond --to pond.psd one tile into a file of its own";

struct Options {
  std::vector<std::string> words;  // scenes, then nodes
  std::string to;
  FolderMaps maps;
  bool json = false;
};

bool endsIn(const std::string& word, const std::string& extension) {
  if (word.size() < extension.size()) return false;
  return std::equal(extension.rbegin(), extension.rend(), word.rbegin(),
                    [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? b - 'A' + 'a' : b); });
}

// No node's name has a dot or a slash. What is no scene that can be read is told of as one.
bool isSceneName(const std::string& word) {
  return endsIn(word, ".ma") || endsIn(word, ".mb") || word.find('/') != std::string::npos;
}

ExportJob jobOf(const Options& options) {
  const auto& words = options.words;
  const auto firstNode = std::find_if_not(words.begin() + 1, words.end(), isSceneName);
  return {{words.begin(), firstNode}, {firstNode, words.end()}, options.maps, options.json};
}

// Through the translator, into a file of its own.
ExitStatus exportToFile(const ExportJob& job, const std::string& file) {
  if (job.scenes.size() != 1 || job.nodes.size() != 1 || job.json) {
    complain(
        "--to takes exactly one scene and one node, since the file holds one tile, and no --json");
    return kUsage;
  }
  if (!endsIn(file, ".psd")) {
    complain("--to " + printable(file) +
             ": a PSD file is written, so that the name must end in .psd");
    return kUsage;
  }
  const std::string to = absoluteName(file);
  const ExitStatus started = startSession(job.scenes[0], job.maps);
  if (started != kDone) return started;
  const host::SceneProblems problems = host::takeSceneProblems();
  std::string told;
  if (!selectTiles(job.scenes[0], job.nodes, problems, told)) return kFailed;
  if (host::execute("file -force -exportSelected -type \"psd\" " + melString(to), "export")) {
    tellUnusedMaps();
    return tellDamage(job.scenes[0], problems);
  }
  complain("the export of " + printable(job.nodes[0]) + " to " + printable(file) +
           " failed; what is printed above says why; name a file in a folder that can be written");
  return kFailed;
}

}  // namespace

void addExport(CLI::App& program, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App* command =
      program.add_subcommand("export", "Write the goblins of tiles into the tiles' texture files");
  command
      ->add_option("SCENE", options->words,
                   "Scenes (*.ma), then names or patterns of tiles in them\n"
                   "(none: each with a file texture)")
      ->type_name("")
      ->required();
  command->add_option("--to", options->to, "Write one tile, with its goblins' names, to a new file")
      ->type_name("FILE");
  command->add_flag("--json", options->json,
                    "A JSON record a line for each tile; the plug-in's own\n"
                    "lines go to standard error");
  addMapOption(*command, options->maps);
  command->footer(kFooter);
  command->callback([options, &status] {
    const ExportJob job = jobOf(*options);
    status = options->to.empty() ? exportScenes(job) : exportToFile(job, options->to);
  });
}

}  // namespace tools

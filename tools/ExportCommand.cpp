#include <algorithm>
#include <string>
#include <vector>

#include "host/Host.h"
#include "tools/Commands.h"
#include "tools/ExitStatus.h"
#include "tools/ExportReport.h"
#include "tools/OutputWatch.h"
#include "tools/Platform.h"
#include "tools/Session.h"
#include "tools/Text.h"

namespace tools {
namespace {

struct Options {
  std::string scene;
  std::vector<std::string> nodes;
  std::string to;
};

bool isPattern(const std::string& name) {
  return name.find_first_of("*?") != std::string::npos;
}

bool hasPattern(const std::vector<std::string>& names) {
  return std::any_of(names.begin(), names.end(), isPattern);
}

// A pattern means transforms: the shapes and materials that are often named like their tiles are no
// tiles.
std::string selectionScript(const std::string& name) {
  if (!isPattern(name)) return "select -add " + melString(name);
  return "{ string $found[] = `ls -long -type \"transform\" " + melString(name) + "`; " +
         "if (size($found) == 0) error " + melString("No transform matches name: " + name) +
         "; select -add $found; }";
}

// Selects the nodes named, or all tiles of the scene. False, with the reason told, unless all were
// found.
bool selectTiles(const Options& options, const std::vector<host::TileCandidate>& tiles) {
  std::vector<std::string> names = options.nodes;
  if (names.empty()) {
    for (const host::TileCandidate& tile : tiles) names.push_back(tile.path);
  }
  const std::string scene = printable(options.scene);
  if (names.empty()) {
    complain(scene +
             ": no tile found: no top-level transform has a mesh whose colour comes from a " +
             "file texture; name the nodes to export");
    return false;
  }
  if (!host::execute("select -clear", "selection")) return false;
  for (const std::string& name : names) {
    if (host::execute(selectionScript(name), "node " + name)) continue;
    complain(scene + ": cannot select " + printable(name) + "; nothing was exported");
    return false;
  }
  return true;
}

ExitStatus updateTextures(const Options& options) {
  const ExitStatus started = startSession(options.scene);
  if (started != kDone) return started;
  const auto tiles = host::texturedTopLevelTransforms();
  if (!selectTiles(options, tiles)) return kFailed;
  const std::size_t expected = options.nodes.empty() ? tiles.size() : options.nodes.size();
  const bool several = expected > 1 || hasPattern(options.nodes);
  ExportReport report(
      tiles, {several && standardErrorIsTerminal(), hasPattern(options.nodes) ? 0 : expected});
  OutputWatch watch([&report](std::string_view line) { report.hear(line); });
  const bool executed = host::execute("exportTile", "exportTile");
  const bool heard = watch.finish();
  if (!heard)
    complain(
        "standard output could not be written, so nobody can tell whether every tile was exported");
  const bool allExported = report.conclude();
  return executed && heard && allExported ? kDone : kFailed;
}

// Through the translator, into a file of its own.
ExitStatus exportToFile(const Options& options) {
  if (options.nodes.size() != 1) {
    complain("--to takes exactly one NODE, since the file holds one tile");
    return kUsage;
  }
  const std::string to = absoluteName(options.to);
  const ExitStatus started = startSession(options.scene);
  if (started != kDone) return started;
  if (!selectTiles(options, {})) return kFailed;
  if (host::execute("file -force -exportSelected -type \"psd\" " + melString(to), "export")) {
    return kDone;
  }
  complain("the export of " + printable(options.nodes[0]) + " to " + printable(options.to) +
           " failed");
  return kFailed;
}

}  // namespace

void addExport(CLI::App& program, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App* command =
      program.add_subcommand("export", "Write the goblins of tiles into the tiles' texture files");
  command->add_option("SCENE", options->scene, "The scene")->required();
  command->add_option(
      "NODE", options->nodes,
      "Tiles, by name or pattern; none: every top-level transform whose mesh has a file texture");
  command->add_option(
      "--to", options->to,
      "Write exactly one tile, with its goblins' names, into this new PSD file instead");
  command->footer("A TGA texture is kept, and a PSD file of the same name written beside it.");
  command->callback([options, &status] {
    status = options->to.empty() ? updateTextures(*options) : exportToFile(*options);
  });
}

}  // namespace tools

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "psd/PsdFormat.h"
#include "tools/batch/SceneReport.h"
#include "tools/cli/Commands.h"
#include "tools/cli/Options.h"
#include "tools/model/DocumentReport.h"
#include "tools/model/TileFile.h"
#include "tools/scene/SceneDamage.h"
#include "tools/scene/SceneOpener.h"
#include "tools/scene/Session.h"
#include "tools/terminal/ExitStatus.h"
#include "tools/terminal/Text.h"
#include "util/FileFacts.h"

namespace tools {
namespace {

using morvane::PsdDocument;
using morvane::PsdLayer;

std::string resourceName(std::uint16_t id) {
  switch (id) {
    case 1005:
      return "resolution";
    case 1024:
      return "current layer";
    case 1026:
      return "layer groups";
    case 1036:
      return "thumbnail";
    case 1039:
      return "colour profile";
    case 1044:
      return "layer-ID seed";
    case 1058:
      return "Exif";
    case 1060:
      return "XMP";
    default:
      return "";
  }
}

void printLayer(const PsdDocument& document, std::int32_t index) {
  const PsdLayer& layer = document.layers[static_cast<std::size_t>(index)];
  std::uint64_t bytes = 0;
  for (std::uint16_t c = 0; c < layer.channelCount; ++c) bytes += layer.channelInfos[c].length;
  std::printf("  layer %-3d %-24s %4s %3d%% %-7s at %d, %d  %lld x %lld, %d channels, %llu bytes\n",
              static_cast<int>(index), ('"' + printable(layerName(layer)) + '"').c_str(),
              printable({layer.blendKey, 4}).c_str(), (layer.opacity * 100 + 127) / 255,
              layer.flags & morvane::kLayerHidden ? "hidden" : "visible", layer.left, layer.top,
              static_cast<long long>(layer.right) - layer.left,
              static_cast<long long>(layer.bottom) - layer.top,
              static_cast<int>(layer.channelCount), static_cast<unsigned long long>(bytes));
}

void printReport(const std::string& file, std::uintmax_t bytes, const PsdDocument& document,
                 const Goblins& goblins) {
  std::printf("%s: %u x %u pixels, %d bits, %s, %d channels, %llu bytes\n", printable(file).c_str(),
              document.columns, document.rows, static_cast<int>(document.depth),
              colourModeName(document.colourMode).c_str(), static_cast<int>(document.channels),
              static_cast<unsigned long long>(bytes));
  const std::string fault = documentFault(document);
  if (!fault.empty()) std::printf("  %s\n", fault.c_str());
  if (!document.loadWarning.empty()) std::printf("  warning: %s\n", document.loadWarning.c_str());
  for (const auto& resource : document.resources) {
    const std::string name = resource->name ? resource->name.get() : resourceName(resource->id);
    std::printf("  resource %u%s%s: %u bytes\n", static_cast<unsigned>(resource->id),
                name.empty() ? "" : " ", printable(name).c_str(), resource->size);
  }
  for (std::int32_t i = document.layerCount; i-- > 0;) printLayer(document, i);
  if (!goblins.present) {
    std::printf("  no goblin geometry\n");
    return;
  }
  std::printf("  goblin geometry: %s, %u bytes, %zu goblins, %zu vertices, %zu faces\n",
              goblins.layoutName(), goblins.bytes, goblins.goblins.size(), goblins.pool.size(),
              goblins.faceCount());
}

// False when something is wrong with it, which is then on standard error.
bool reportDocument(const std::string& path, const std::string& file, bool json) {
  const auto document = loadDocument(path, file);
  if (!document) return false;
  const std::uint64_t bytes = morvane::factsOf(path).size;
  const Goblins goblins = readGoblins(*document);
  if (json) {
    std::printf("%s\n",
                printableJson(documentJson(file, bytes, *document, goblins).dump()).c_str());
  } else {
    printReport(file, bytes, *document, goblins);
  }
  return reportFaults(file, *document, goblins);
}

struct Options {
  std::vector<std::string> files;
  bool json = false;
  OpeningOptions opening;
};

ExitStatus reportAll(const Options& options) {
  std::vector<std::string> paths;  // absolute, before a scene moves the working folder
  for (const std::string& file : options.files) paths.push_back(absoluteName(file));
  SceneOpener scenes(options.opening);
  ExitStatus worst = kDone;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    const std::string& file = options.files[i];
    ExitStatus status = kDone;
    if (!isScene(paths[i])) {
      status = reportDocument(paths[i], file, options.json) ? kDone : kFailed;
    } else {
      status = scenes.open(paths[i]) ? reportScene(file, options.json) : kNotLoaded;
      status = std::max(status, reportDamage(file, scenes.problems()));
    }
    worst = std::max(worst, status);
  }
  reportUnusedMaps();
  return worst;
}

}  // namespace

void addInfo(CLI::App& program, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App* command =
      program.add_subcommand("info", "Show what is in PSD files, or a scene's tiles");
  command
      ->add_option("FILE", options->files,
                   "PSD files, TGA files as they would be imported,\n"
                   "or scenes (*.ma, *.mb): their tiles and textures")
      ->type_name("")
      ->required();
  command->add_flag("--json", options->json, "One JSON object a line for each file");
  addFolderOptions(*command, options->opening);
  addFrameOption(*command, options->opening);
  command->footer(
      "Examples:\n"
      "  morvane info textures/*.psd                layers, resources and goblins\n"
      "  morvane info level.ma                      tiles, their goblins and textures\n"
      "  morvane info --json pond.psd | jq .layers  the same for a script");
  command->callback([options, &status] { status = reportAll(*options); });
}

}  // namespace tools

#include "tools/cli/InfoReport.h"

#include <algorithm>
#include <cstdio>

#include "host/Host.h"
#include "psd/PsdFormat.h"
#include "tools/batch/ExportMessages.h"
#include "tools/batch/SceneReport.h"
#include "tools/model/DocumentReport.h"
#include "tools/model/TileFile.h"
#include "tools/scene/SceneDamage.h"
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
  std::printf("  goblin geometry: %s, %u bytes, %s, %zu vertices, %zu faces\n",
              goblins.layoutName(), goblins.bytes,
              counted(goblins.goblins.size(), "goblin").c_str(), goblins.pool.size(),
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

}  // namespace

ExitStatus InfoReport::report(const std::string& name, const std::string& path) {
  if (!isScene(path)) return reportDocument(path, name, json_) ? kDone : kFailed;
  const ExitStatus status = scenes_.open(path) ? reportScene(name, json_) : kNotLoaded;
  return std::max(status, reportDamage(name, scenes_.problems()));
}

void reportOrdered(JobWorker& worker, Message order) {
  const OpeningOptions opening = openingOf(order.at("opening"));
  InfoReport files(opening, order.at("json"));
  for (;; order = worker.nextOrder()) {
    const ExitStatus status = files.report(order.at("name"), order.at("path"));
    worker.finish({{"status", static_cast<int>(status)}, {"unusedMaps", host::unusedFolders()}});
  }
}

}  // namespace tools

#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tools/Commands.h"
#include "tools/ExitStatus.h"
#include "tools/Text.h"
#include "tools/TileFile.h"

namespace tools {
namespace {

using Json = nlohmann::ordered_json;
using morvane::PsdDocument;
using morvane::PsdLayer;

constexpr std::uint8_t kHidden = 2;

std::string colourModeName(std::uint16_t mode) {
  static const char* const kNames[] = {"bitmap", "gray",  "indexed",      "RGB",     "CMYK",
                                       nullptr,  nullptr, "multichannel", "duotone", "Lab"};
  if (mode < std::size(kNames) && kNames[mode]) return kNames[mode];
  return "colour mode " + std::to_string(mode);
}

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

// Without the zeros that pad some names. A half of a pair that stands alone becomes U+FFFD.
std::string fromUtf16(const std::uint16_t* units, std::size_t count) {
  while (count > 0 && units[count - 1] == 0) --count;
  std::string text;
  auto put = [&text](std::uint32_t code) {
    if (code < 0x80) {
      text += static_cast<char>(code);
      return;
    }
    const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    text += static_cast<char>((0xF00 >> more & 0xFF) | code >> 6 * more);
    for (int i = more - 1; i >= 0; --i) text += static_cast<char>(0x80 | (code >> 6 * i & 0x3F));
  };
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint32_t unit = units[i];
    const bool pair = unit >= 0xD800 && unit < 0xDC00 && i + 1 < count && units[i + 1] >= 0xDC00 &&
                      units[i + 1] < 0xE000;
    if (pair) {
      put(0x10000 + ((unit - 0xD800) << 10) + (units[++i] - 0xDC00u));
    } else {
      put(unit >= 0xD800 && unit < 0xE000 ? 0xFFFD : unit);
    }
  }
  return text;
}

std::string layerName(const PsdLayer& layer) {
  if (layer.unicodeChars && layer.unicodeCount > 0) {
    return fromUtf16(layer.unicodeChars.get(), layer.unicodeCount);
  }
  return layer.name ? toUtf8(layer.name.get()) : "";
}

Json layerJson(const PsdDocument& document, std::int32_t index) {
  const PsdLayer& layer = document.layers[static_cast<std::size_t>(index)];
  Json channels = Json::array();
  for (std::uint16_t c = 0; c < layer.channelCount; ++c) {
    channels.push_back({{"id", layer.channelInfos[c].id},
                        {"compression", document.layerChannels(index)[c].compression},
                        {"bytes", layer.channelInfos[c].length}});
  }
  return {{"index", index},
          {"name", layerName(layer)},
          {"hidden", (layer.flags & kHidden) != 0},
          {"opacity", layer.opacity},
          {"blend", toUtf8({layer.blendKey, 4})},
          {"rect", {layer.left, layer.top, layer.right, layer.bottom}},
          {"channels", channels}};
}

Json goblinJson(const Goblins& goblins) {
  if (!goblins.present) return nullptr;
  return {{"layout", goblins.layoutName()},
          {"bytes", goblins.bytes},
          {"vertices", goblins.pool.size()},
          {"goblins", goblins.goblins.size()},
          {"faces", goblins.faceCount()}};
}

std::string reportJson(const std::string& file, std::uintmax_t bytes, const PsdDocument& document,
                       const Goblins& goblins) {
  Json resources = Json::array();
  for (const auto& resource : document.resources) {
    resources.push_back({{"id", resource->id},
                         {"name", resource->name ? toUtf8(resource->name.get()) : ""},
                         {"size", resource->size}});
  }
  Json layers = Json::array();
  for (std::int32_t i = 0; i < document.layerCount; ++i) layers.push_back(layerJson(document, i));
  const Json report = {{"file", toUtf8(file)},
                       {"bytes", bytes},
                       {"width", document.columns},
                       {"height", document.rows},
                       {"depth", document.depth},
                       {"colourMode", document.colourMode},
                       {"channels", document.channels},
                       {"resources", resources},
                       {"layers", layers},
                       {"goblinGeometry", goblinJson(goblins)}};
  return report.dump();
}

void printLayer(const PsdDocument& document, std::int32_t index) {
  const PsdLayer& layer = document.layers[static_cast<std::size_t>(index)];
  std::uint64_t bytes = 0;
  for (std::uint16_t c = 0; c < layer.channelCount; ++c) bytes += layer.channelInfos[c].length;
  std::printf("  layer %-3d %-24s %4s %3d%% %-7s at %d, %d  %lld x %lld, %d channels, %llu bytes\n",
              static_cast<int>(index), ('"' + printable(layerName(layer)) + '"').c_str(),
              printable({layer.blendKey, 4}).c_str(), (layer.opacity * 100 + 127) / 255,
              layer.flags & kHidden ? "hidden" : "visible", layer.left, layer.top,
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

bool report(const std::string& file, bool json) {
  const auto document = loadDocument(file);
  if (!document) return false;
  std::error_code ignored;
  const std::uintmax_t bytes = std::filesystem::file_size(file, ignored);
  const Goblins goblins = readGoblins(*document);
  if (json) {
    std::printf("%s\n", reportJson(file, bytes, *document, goblins).c_str());
  } else {
    printReport(file, bytes, *document, goblins);
  }
  if (goblins.fault.empty()) return true;
  complain(printable(file) + ": the goblin geometry is damaged: " + goblins.fault +
           "; export the tile again");
  return false;
}

}  // namespace

void addInfo(CLI::App& program, int& status) {
  struct Options {
    std::vector<std::string> files;
    bool json = false;
  };
  auto options = std::make_shared<Options>();
  CLI::App* command = program.add_subcommand("info", "Show what is in PSD files");
  command->add_option("FILE", options->files, "PSD files (or TGA, as they would be imported)")
      ->required();
  command->add_flag("--json", options->json, "One JSON object a line for each file");
  command->callback([options, &status] {
    for (const std::string& file : options->files) {
      if (!report(file, options->json)) status = kFailed;
    }
  });
}

}  // namespace tools

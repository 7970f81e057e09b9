#include "tools/model/DocumentReport.h"

#include <utf8.h>

#include <iterator>

#include "psd/PsdFormat.h"
#include "tools/terminal/Text.h"

namespace tools {
namespace {

using Json = nlohmann::ordered_json;
using morvane::PsdDocument;
using morvane::PsdLayer;

// Drops the zeros that pad some names. An unpaired surrogate becomes U+FFFD.
std::string fromUtf16(const std::uint16_t* units, std::size_t count) {
  while (count > 0 && units[count - 1] == 0) --count;
  std::string text;
  const auto put = [&text](std::uint32_t code) {
    utf8::unchecked::append(code, std::back_inserter(text));
  };
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint32_t unit = units[i];
    const bool pair = unit >= 0xD800 && unit < 0xDC00 && i + 1 < count && units[i + 1] >= 0xDC00 &&
                      units[i + 1] < 0xE000;
    if (pair)
      put(0x10000 + ((unit - 0xD800) << 10) + (units[++i] - 0xDC00u));
    else
      put(unit >= 0xD800 && unit < 0xE000 ? 0xFFFD : unit);
  }
  return text;
}

Json layerJson(const PsdLayer& layer, std::int32_t index, const morvane::PsdChannel* channel) {
  Json channels = Json::array();
  for (std::uint16_t c = 0; c < layer.channelCount; ++c) {
    channels.push_back({{"id", layer.channelInfos[c].id},
                        {"compression", channel[c].compression},
                        {"bytes", layer.channelInfos[c].length}});
  }
  return {{"index", index},
          {"name", layerName(layer)},
          {"hidden", (layer.flags & morvane::kLayerHidden) != 0},
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

}  // namespace

std::string colourModeName(std::uint16_t mode) {
  static const char* const kNames[] = {"bitmap", "gray",  "indexed",      "RGB",     "CMYK",
                                       nullptr,  nullptr, "multichannel", "duotone", "Lab"};
  if (mode < std::size(kNames) && kNames[mode]) return kNames[mode];
  return "colour mode " + std::to_string(mode);
}

std::string layerName(const PsdLayer& layer) {
  if (layer.unicodeChars && layer.unicodeCount > 0)
    return fromUtf16(layer.unicodeChars.get(), layer.unicodeCount);
  return layer.name ? toUtf8(layer.name.get()) : "";
}

Json documentJson(const std::string& file, std::uintmax_t bytes, const PsdDocument& document,
                  const Goblins& goblins) {
  Json resources = Json::array();
  for (const auto& resource : document.resources) {
    resources.push_back({{"id", resource->id},
                         {"name", resource->name ? toUtf8(resource->name.get()) : ""},
                         {"size", resource->size}});
  }
  Json layers = Json::array();
  const morvane::PsdChannel* channel = document.channelTable.data();
  for (std::int32_t i = 0; i < document.layerCount; ++i) {
    const PsdLayer& layer = document.layers[static_cast<std::size_t>(i)];
    layers.push_back(layerJson(layer, i, channel));
    channel += layer.channelCount;
  }
  const std::string fault = documentFault(document);
  return {{"file", toUtf8(file)},
          {"bytes", bytes},
          {"fault", fault.empty() ? Json() : Json(fault)},
          {"warning", document.loadWarning.empty() ? Json() : Json(document.loadWarning)},
          {"width", document.columns},
          {"height", document.rows},
          {"depth", document.depth},
          {"colourMode", document.colourMode},
          {"channels", document.channels},
          {"resources", resources},
          {"layers", layers},
          {"goblinGeometry", goblinJson(goblins)}};
}

}  // namespace tools

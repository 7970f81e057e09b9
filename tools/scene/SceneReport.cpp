#include "tools/scene/SceneReport.h"

#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <vector>

#include "geometry/GoblinGeometry.h"
#include "psd/PsdDocument.h"
#include "tile/TileTexture.h"
#include "tools/model/TileFile.h"
#include "tools/scene/SceneTiles.h"
#include "tools/terminal/Text.h"

namespace tools {
namespace {

using Json = nlohmann::ordered_json;

// The scene's folder is the working folder, so that the texture's name is good as it stands.
bool hasTexture(const SceneTile& tile) {
  std::error_code ignored;
  return std::filesystem::exists(tile.texture, ignored);
}

// Why the texture takes no goblins; empty when it does. It is tried on what was loaded alone.
std::string textureFault(const std::string& texture) {
  constexpr std::uint8_t kSample = 0;
  morvane::PsdDocument document(1, 1);
  std::string error;
  if (!document.load(texture.c_str(), &error)) return unreadable(texture, error, texture);
  if (!morvane::removeGoblins(document, error)) return texture + ": " + error;
  morvane::FileIdentity ignored;
  const std::string obstacle = morvane::whyNotReplaced(texture, ignored);
  if (!obstacle.empty()) {
    return morvane::tileFileOf(texture) + ": " + obstacle;
  }
  if (document.addDataLayer(morvane::kGoblinLayerName, sizeof kSample, &kSample, &error)) return "";
  return texture + ": " + error + "; save it again as PSD: RGB, 8 bits a channel";
}

// With what to do about it; empty when nothing is wrong.
std::string faultOf(const SceneTile& tile) {
  if (!tile.fault.empty()) return tile.fault + "; mend the tile's mesh in Maya";
  if (!hasTexture(tile)) return "texture " + tile.texture + kMissingTexture;
  const std::string fault = textureFault(tile.texture);
  return fault.empty() ? "" : "texture " + fault;
}

Json tileJson(const SceneTile& tile, const std::string& fault) {
  return {{"tile", toUtf8('|' + tile.name)},
          {"texture", toUtf8(tile.texture)},
          {"exists", hasTexture(tile)},
          {"goblins", tile.goblins.goblins.size()},
          {"fault", fault.empty() ? Json() : Json(toUtf8(fault))}};
}

void printJson(const std::string& file, const std::vector<SceneTile>& tiles,
               const std::vector<std::string>& faults) {
  Json list = Json::array();
  for (std::size_t i = 0; i < tiles.size(); ++i) list.push_back(tileJson(tiles[i], faults[i]));
  const Json json = {{"file", toUtf8(file)}, {"tiles", list}};
  std::printf("%s\n", printableJson(json.dump()).c_str());
}

void printTable(const std::string& file, const std::vector<SceneTile>& tiles) {
  std::printf("%s: %s\n", printable(file).c_str(), counted(tiles.size(), "tile").c_str());
  for (const SceneTile& tile : tiles) {
    std::printf("  %-24s %12s  %s%s\n", printable(tile.name).c_str(),
                counted(tile.goblins.goblins.size(), "goblin").c_str(),
                printable(tile.texture).c_str(), hasTexture(tile) ? "" : " (missing)");
  }
}

}  // namespace

ExitStatus reportScene(const std::string& file, bool json) {
  const std::vector<SceneTile> tiles = sceneTiles();
  std::vector<std::string> faults;
  for (const SceneTile& tile : tiles) faults.push_back(faultOf(tile));
  if (json) {
    printJson(file, tiles, faults);
  } else {
    printTable(file, tiles);
  }
  ExitStatus status = kDone;
  for (std::size_t i = 0; i < tiles.size(); ++i) {
    if (faults[i].empty()) continue;
    status = kFailed;
    complain(printable(file) + ": " + printable(tiles[i].name) + ": " + printable(faults[i]));
  }
  if (!tiles.empty()) return status;
  complain(printable(file) + ": " + kNoTile);
  return kFailed;
}

}  // namespace tools

#include "tools/SceneReport.h"

#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <vector>

#include "tools/SceneTiles.h"
#include "tools/Text.h"

namespace tools {
namespace {

using Json = nlohmann::ordered_json;

// The scene's folder is the working folder, so that the texture's name is good as it stands.
bool hasTexture(const SceneTile& tile) {
  std::error_code ignored;
  return std::filesystem::exists(tile.texture, ignored);
}

// With what to do about it; empty when nothing is wrong.
std::string faultOf(const SceneTile& tile) {
  if (!tile.fault.empty()) return tile.fault + "; mend the tile's mesh in Maya";
  return hasTexture(tile) ? "" : "texture " + tile.texture + kMissingTexture;
}

Json tileJson(const SceneTile& tile) {
  const std::string fault = faultOf(tile);
  return {{"tile", toUtf8('|' + tile.name)},
          {"texture", toUtf8(tile.texture)},
          {"exists", hasTexture(tile)},
          {"goblins", tile.goblins.goblins.size()},
          {"fault", fault.empty() ? Json() : Json(toUtf8(fault))}};
}

void printJson(const std::string& file, const std::vector<SceneTile>& tiles) {
  Json list = Json::array();
  for (const SceneTile& tile : tiles) list.push_back(tileJson(tile));
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
  if (json) {
    printJson(file, tiles);
  } else {
    printTable(file, tiles);
  }
  ExitStatus status = kDone;
  for (const SceneTile& tile : tiles) {
    const std::string fault = faultOf(tile);
    if (fault.empty()) continue;
    status = kFailed;
    complain(printable(file) + ": " + printable(tile.name) + ": " + printable(fault));
  }
  if (!tiles.empty()) return status;
  complain(printable(file) + ": " + kNoTile);
  return kFailed;
}

}  // namespace tools

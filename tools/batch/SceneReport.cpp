#include "tools/batch/SceneReport.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <vector>

#include "host/Host.h"
#include "tools/batch/ExportForecast.h"
#include "tools/batch/ExportRecords.h"
#include "tools/scene/SceneTiles.h"
#include "tools/terminal/Text.h"
#include "util/FileFacts.h"

namespace tools {
namespace {

using Json = nlohmann::ordered_json;

// The scene's folder is the working folder, so that the texture's name is good as it stands.
bool hasTexture(const TileCandidate& tile) {
  return morvane::factsOf(tile.texture).exists();
}

// What stands behind the name of a texture that an export cannot use.
std::string markOf(const TileCandidate& tile) {
  if (tile.textureNode.empty()) return "(its shading is missing)";
  if (tile.texture.empty()) return "(" + printable(tile.textureNode) + " names no file)";
  const std::string missing = hasTexture(tile) ? "" : "missing";
  const std::string kind = isTileFileName(tile.texture) ? "" : "neither PSD nor TGA";
  const std::string both = missing + (missing.empty() || kind.empty() ? "" : ", ") + kind;
  return both.empty() ? "" : " (" + both + ")";
}

std::vector<std::string> placesOf(const TileCandidate& tile) {
  return tile.texture.empty() ? std::vector<std::string>()
                              : host::searchOfTexture(tile.texture).places;
}

Json placesJson(const TileCandidate& tile) {
  Json places = Json::array();
  for (const std::string& place : placesOf(tile)) places.push_back(toUtf8(place));
  return places;
}

// Where a texture is that is not where a reader of the scene would look first.
void printPlaces(const TileCandidate& tile) {
  const std::vector<std::string> places = placesOf(tile);
  if (hasTexture(tile) && places.size() == 1) return;
  for (const std::string& place : places)
    std::printf("  %37s  looked for as %s\n", "", printable(place).c_str());
}

Json tileJson(const TileForecast& forecast) {
  const TileOutcome& outcome = forecast.outcome;
  return {{"tile", toUtf8(forecast.tile.path)},
          {"texture", toUtf8(forecast.tile.texture)},
          {"exists", hasTexture(forecast.tile)},
          {"lookedFor", placesJson(forecast.tile)},
          {"goblins", forecast.goblins},
          {"warnings", warningsJson(outcome)},
          {"error", outcome.error.empty() ? Json() : Json(toUtf8(outcome.error))},
          {"status", outcome.error.empty() ? kDone : kFailed}};
}

void printJson(const std::string& file, const std::vector<TileForecast>& tiles) {
  Json list = Json::array();
  for (const TileForecast& tile : tiles) list.push_back(tileJson(tile));
  const Json json = {{"file", toUtf8(file)}, {"tiles", list}};
  std::printf("%s\n", printableJson(json.dump()).c_str());
}

void printTable(const std::string& file, const std::vector<TileForecast>& tiles) {
  std::printf("%s: %s\n", printable(file).c_str(), counted(tiles.size(), "tile").c_str());
  for (const TileForecast& tile : tiles) {
    std::printf("  %-24s %12s  %s%s\n", printable(tile.tile.path.substr(1)).c_str(),
                counted(tile.goblins, "goblin").c_str(), printable(tile.tile.texture).c_str(),
                markOf(tile.tile).c_str());
    printPlaces(tile.tile);
  }
}

}  // namespace

ExitStatus reportScene(const std::string& file, bool json) {
  const std::vector<TileForecast> tiles = forecastExport(file);
  if (json)
    printJson(file, tiles);
  else
    printTable(file, tiles);
  if (tiles.empty()) {
    complain(printable(file) + ": " + kNoTile);
    return kFailed;
  }
  const bool isSound = std::all_of(tiles.begin(), tiles.end(), [](const TileForecast& tile) {
    return tile.outcome.error.empty();
  });
  return isSound ? kDone : kFailed;
}

}  // namespace tools

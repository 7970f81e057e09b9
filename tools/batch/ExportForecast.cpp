#include "tools/batch/ExportForecast.h"

#include <algorithm>

#include "tile/TileExport.h"
#include "tile/TileGoblins.h"
#include "tile/TileLines.h"
#include "tools/batch/Refusals.h"
#include "tools/batch/SharedTextures.h"

namespace tools {
namespace {

// Gives a report what an export would write, line by line.
class HeardMessages final : public morvane::TileMessages {
 public:
  explicit HeardMessages(ExportReport& report) : report_(report) {}

  void log(const std::string& text) override {
    line_ += text;
    if (line_.back() == '\n') {
      line_.pop_back();
      report_.readLine(line_);
      line_.clear();
    }
  }
  void explain(const std::string& text) override { report_.readHostLine("Error: " + text); }
  void warn(const std::string& text) override { report_.readHostLine("Warning: " + text); }

 private:
  ExportReport& report_;
  std::string line_;
};

std::size_t countGoblins(const MDagPath& tile) {
  morvane::SilentMessages nobody;
  morvane::TileGround ground;
  std::size_t goblins = 0;
  if (morvane::findTileGround(tile, nobody, ground)) {
    morvane::visitGoblins(ground, nobody, [&](const morvane::TileGoblin&) {
      ++goblins;
      return true;
    });
  }
  return goblins;
}

// Gives how many goblins the tile has.
std::size_t forecastTile(const TileCandidate& tile, ExportReport& report,
                         SharedTextures& textures) {
  HeardMessages messages(report);
  morvane::TileExport result;
  if (morvane::prepareTileExport(tile.dagPath, messages, result)) {
    textures.foresee(tile, result.document);
    return result.goblins;
  }
  messages.log(std::string(morvane::kTileFailed) + "0\n");
  return countGoblins(tile.dagPath);
}

}  // namespace

std::vector<TileForecast> forecastExport(const std::string& scene) {
  const std::vector<TileCandidate> tiles = texturedTiles();
  ExportReport report(scene, tiles, {});
  SharedTextures textures;
  const std::vector<Refusal> refused = refusals(scene, tiles, textures);
  std::vector<TileForecast> forecasts;
  for (const TileCandidate& tile : tiles) {
    const auto refusal = std::find_if(refused.begin(), refused.end(),
                                      [&](const Refusal& each) { return each.tile == tile.path; });
    const bool isRefused = refusal != refused.end();
    if (isRefused) report.refuse(*refusal);
    forecasts.push_back(
        {tile, TileOutcome(),
         isRefused ? countGoblins(tile.dagPath) : forecastTile(tile, report, textures)});
  }
  const auto isExported = [&](const std::string& tile) { return report.isExported(tile); };
  for (const SharedTextures::Loss& loss : textures.settle(scene, isExported)) report.markLost(loss);
  report.conclude();
  for (TileForecast& forecast : forecasts) forecast.outcome = report.outcomeOf(forecast.tile.path);
  return forecasts;
}

}  // namespace tools

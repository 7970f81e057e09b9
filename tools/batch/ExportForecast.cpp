#include "tools/batch/ExportForecast.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>

#include "geometry/GoblinGeometry.h"
#include "psd/PsdDocument.h"
#include "tile/TileGoblins.h"
#include "tile/TileLines.h"
#include "tools/batch/Refusals.h"
#include "tools/batch/SharedTextures.h"
#include "util/WholeFile.h"

namespace tools {
namespace {

// Keeps what an export would write, line by line.
class KeptMessages final : public morvane::TileMessages {
 public:
  explicit KeptMessages(PlannedTile& planned) : planned_(planned) {}

  void log(const std::string& text) override {
    line_ += text;
    if (line_.back() == '\n') {
      line_.pop_back();
      planned_.lines.push_back(std::exchange(line_, ""));
    }
  }
  void explain(const std::string& text) override { planned_.hostLines.push_back("Error: " + text); }
  void warn(const std::string& text) override { planned_.hostLines.push_back("Warning: " + text); }

 private:
  PlannedTile& planned_;
  std::string line_;
};

bool hasSameGoblins(const morvane::PsdDocument& one, const morvane::PsdDocument& other) {
  std::uint32_t oneSize = 0;
  std::uint32_t otherSize = 0;
  const auto oneBytes = one.peekDataLayer(morvane::kGoblinLayerName, oneSize);
  const auto otherBytes = other.peekDataLayer(morvane::kGoblinLayerName, otherSize);
  return oneBytes && otherBytes && oneSize == otherSize &&
         std::memcmp(oneBytes.get(), otherBytes.get(), oneSize) == 0;
}

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
  const PlannedTile planned = planTile(tile);
  replay(planned, report);
  if (!planned.ok) return countGoblins(tile.dagPath);
  textures.foresee(tile, planned.result.document);
  return planned.result.goblins;
}

}  // namespace

PlannedTile planTile(const TileCandidate& tile) {
  PlannedTile planned;
  KeptMessages messages(planned);
  planned.ok = morvane::prepareTileExport(tile.dagPath, messages, planned.result);
  if (!planned.ok) messages.log(std::string(morvane::kTileFailed) + "0\n");
  return planned;
}

// A texture is read again, since the goblins were taken out of what was prepared. Another number of
// layers: there were older goblins, which an export removes. The file beside a TGA image has its
// pixels, too, and must be the same as a whole.
bool isUnchanged(const morvane::TileExport& planned) {
  if (planned.file == planned.texture) {
    morvane::PsdDocument file(1, 1);
    return file.load(planned.file.c_str()) && file.layerCount == planned.document.layerCount &&
           hasSameGoblins(file, planned.document);
  }
  std::vector<std::uint8_t> bytes;
  if (!planned.document.saveBytes(bytes)) return false;
  std::unique_ptr<std::uint8_t[]> file;
  std::size_t size = 0;
  return morvane::readWholeFile(planned.file.c_str(), bytes.size(), file, size).ok() &&
         size == bytes.size() && std::memcmp(file.get(), bytes.data(), size) == 0;
}

void replay(const PlannedTile& planned, ExportReport& report) {
  for (const std::string& line : planned.hostLines) report.readHostLine(line);
  for (const std::string& line : planned.lines) report.readLine(line);
}

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

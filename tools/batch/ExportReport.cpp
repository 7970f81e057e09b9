#include "tools/batch/ExportReport.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "geometry/GoblinGeometry.h"
#include "host/Host.h"
#include "psd/PsdDocument.h"
#include "tile/SaveFailure.h"
#include "tile/TileGoblins.h"
#include "tile/TileLines.h"
#include "tile/TileTexture.h"
#include "tools/model/TileFile.h"
#include "tools/scene/SceneTiles.h"
#include "tools/terminal/OutputFile.h"
#include "tools/terminal/Text.h"
#include "util/FileFacts.h"

namespace tools {
namespace {

using morvane::Status;
using morvane::StatusCode;

constexpr std::string_view kError = "*** Error";
constexpr std::string_view kWarnings[] = {morvane::kWarningMark, morvane::kPlainWarningMark};

constexpr std::size_t kMostOutside = 3;  // goblins named of a tile

constexpr std::string_view kHostError = "Error: ";
constexpr std::string_view kHostWarning = "Warning: ";

// What the plug-in logs, and what the person at the terminal can do about it.
struct Advice {
  std::string_view error;
  const char* text;
};
constexpr const char* kOneMaterial =
    "give the tile's mesh one material, its colour from one file texture";
constexpr Advice kAdvice[] = {
    {morvane::kSaveFailed,
     "check that the texture's folder can be written and the disk is not full"},
    {morvane::kLayerFailed, "save the texture again as PSD: RGB, 8 bits a channel"},
    {morvane::kTooLarge, "use a larger texture, or fewer or simpler goblins"},
    {morvane::kNoExtent, "the tile's mesh must reach over some width in x and in z"},
    {morvane::kNoMesh, "a tile is a transform with its mesh directly below it"},
    {morvane::kNoTransform, "name the tile's transform, not the shape below it"},
    {morvane::kNoDagPath, "name the tile's transform"},
    {morvane::kSeveralMaterials, kOneMaterial},
    {morvane::kNoMaterial, kOneMaterial},
    {morvane::kNoTexture, kOneMaterial},
    {morvane::kSeveralTextures, kOneMaterial},
    {morvane::kNoFileTexture, kOneMaterial},
    {morvane::kNoTextureName, kOneMaterial},
    {morvane::kWeirdTransform, "every goblin's mesh must stand below a plain transform"},
};

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == ':')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == '\r' || text.back() == ' ')) text.remove_suffix(1);
  return text;
}

bool startsWith(std::string_view text, std::string_view prefix) {
  return text.substr(0, prefix.size()) == prefix;
}

// Where the message at the front of the line ends and the next one begins.
std::size_t messageEnd(std::string_view line) {
  std::size_t end = line.size();
  for (const std::string_view marker :
       {std::string_view(morvane::kTileBegins), kError, kWarnings[0], kWarnings[1]}) {
    end = std::min(end, line.find(marker, 1));
  }
  return end;
}

}  // namespace

void ExportReport::readLine(std::string_view line) {
  while (!line.empty()) {
    const std::size_t end = messageEnd(line);
    readMessage(line.substr(0, end));
    line.remove_prefix(end);
  }
}

void ExportReport::readMessage(std::string_view message) {
  constexpr std::string_view kTile = morvane::kTileBegins;
  if (startsWith(message, kTile)) return beginTile(message.substr(kTile.size()));
  if (startsWith(message, kError)) return readError(message);
  for (const std::string_view warning : kWarnings)
    if (startsWith(message, warning)) return readWarning(message.substr(warning.size()));
}

void ExportReport::readError(std::string_view message) {
  if (!open_) beginTile(nextNameless());
  const bool isLast = startsWith(message, morvane::kTileFailed);
  std::string& error = tiles_.back().error;
  if (error.empty()) error = trimmed(isLast ? message : message.substr(kError.size()));
  if (isLast) endTile();
}

void ExportReport::readWarning(std::string_view message) {
  if (!open_) return;
  auto& warnings = tiles_.back().warnings;
  const std::string text(trimmed(message));
  const auto known = std::find_if(warnings.begin(), warnings.end(),
                                  [&](const auto& warning) { return warning.first == text; });
  if (known == warnings.end())
    warnings.emplace_back(text, 1);
  else
    ++known->second;
}

void ExportReport::beginTile(std::string_view name) {
  constexpr std::string_view kDots = morvane::kTileBeginsEnd;
  endTile();
  name = trimmed(name);
  if (name.size() > kDots.size() && name.substr(name.size() - kDots.size()) == kDots)
    name.remove_suffix(kDots.size());
  tiles_.push_back({std::string(name), "", {}, 0});
  open_ = true;
  begin_ = Clock::now();
  if (began_) began_(tiles_.back());
}

// The plug-in does not name what is not a DAG object, but it goes through the selection in order.
std::string ExportReport::nextNameless() {
  while (nextTexture_ < textures_.size()) {
    const std::string& path = textures_[nextTexture_++].path;
    if (!startsWith(path, "|")) return path;
  }
  return "";
}

void ExportReport::endTile() {
  if (!open_) return;
  open_ = false;
  tiles_.back().milliseconds =
      std::chrono::duration<double, std::milli>(Clock::now() - begin_).count();
}

void ExportReport::readHostLine(std::string_view line) {
  if (startsWith(line, kHostError)) reasons_.emplace_back(line.substr(kHostError.size()));
  if (startsWith(line, kHostWarning)) hostWarnings_.emplace_back(line.substr(kHostWarning.size()));
}

// Those about the tile's file.
void ExportReport::addHostWarnings(TileOutcome& tile) const {
  const std::string texture = textureOf(tile.path);
  if (texture.empty()) return;
  const std::string stem = texture.substr(0, texture.rfind('.'));
  for (const std::string& warning : hostWarnings_)
    if (startsWith(warning, stem + '.')) tile.warnings.emplace_back(warning, 1);
}

std::vector<std::string> ExportReport::takeChanged() {
  endTile();
  const auto isChanged = [](const Status& status) { return status.code() == StatusCode::kChanged; };
  std::vector<std::string> changed;
  for (const TileOutcome& tile : tiles_)
    if (isChanged(reasonOf(tile))) changed.push_back(tile.path);
  for (const std::string& path : changed) {
    const auto isTaken = [&](const std::string& reason) {
      return isChanged(morvane::readSaveFailure(fileOf(path), reason));
    };
    const auto isOfTile = [&](const TileOutcome& tile) { return tile.path == path; };
    reasons_.erase(std::remove_if(reasons_.begin(), reasons_.end(), isTaken), reasons_.end());
    tiles_.erase(std::remove_if(tiles_.begin(), tiles_.end(), isOfTile), tiles_.end());
  }
  return changed;
}

void ExportReport::markLast(TileAction action, std::size_t goblins, std::size_t vertices) {
  endTile();
  TileOutcome& tile = tiles_.back();
  tile.action = action;
  tile.goblins = goblins;
  tile.vertices = vertices;
}

void ExportReport::refuse(const Refusal& refusal) {
  tiles_.push_back({refusal.tile, refusal.error, {}, 0, {}, refusal.advice});
}

// What the host said of a failed tile's file, of its mesh, or of the tile where it has neither.
Status ExportReport::reasonOf(const TileOutcome& tile) const {
  const bool isSave = tile.error == morvane::kSaveFailed;
  const bool isMaterial = tile.error == morvane::kNoTexture;
  if (!isSave && !isMaterial && tile.error != morvane::kLoadFailed &&
      tile.error != morvane::kLayerFailed) {
    return {};
  }
  const std::string texture = textureOf(tile.path);
  const std::string beginning =
      isMaterial ? tile.path + '|' : (texture.empty() ? tile.path : texture) + ": ";
  for (const std::string& reason : reasons_) {
    if (isSave) {
      Status status = morvane::readSaveFailure(fileOf(tile.path), reason);
      if (!status.ok()) return status;
    } else if (startsWith(reason, beginning)) {
      return {StatusCode::kUnsupported, reason};
    }
  }
  return {};
}

bool ExportReport::isExported(const std::string& tile) const {
  return std::any_of(tiles_.begin(), tiles_.end(), [&](const TileOutcome& each) {
    return each.path == tile && each.error.empty();
  });
}

void ExportReport::markLost(const SharedTextures::Loss& loss) {
  for (const SharedTextures::Tile& tile : loss.lost) {
    for (TileOutcome& each : tiles_) {
      if (tile.scene == scene_ && each.path == tile.path && each.error.empty()) {
        each.error = loss.errorOf(tile);
        each.advice = SharedTextures::Loss::kAdvice;
      }
    }
  }
}

// The plug-in warns once for each vertex, and names none.
void ExportReport::findOutside(TileOutcome& tile) const {
  const TileCandidate* const known = candidate(tile.path);
  morvane::SilentMessages nobody;
  morvane::TileGround ground;
  if (known == nullptr || !morvane::findTileGround(known->dagPath, nobody, ground)) return;
  morvane::visitGoblins(ground, nobody, [&](const morvane::TileGoblin& goblin) {
    morvane::GoblinGeometryBuilder builder;
    if (morvane::appendGoblin(goblin.welded, goblin.toTile, morvane::GoblinLayout::kTagged, nullptr,
                              nullptr, builder) != 0) {
      tile.outside.push_back({goblin.mesh.fullPathName().asChar(), goblin.distanceOutside()});
    }
    return true;
  });
  std::stable_sort(tile.outside.begin(), tile.outside.end(),
                   [](const auto& a, const auto& b) { return a.distance > b.distance; });
}

void ExportReport::reportOutside(const TileOutcome& tile) const {
  const std::size_t named = std::min(tile.outside.size(), kMostOutside);
  for (std::size_t i = 0; i < named; ++i) {
    char distance[32];
    std::snprintf(distance, sizeof distance, "%.2f", tile.outside[i].distance);
    complain(printable(scene_) + ": " + printable(tile.outside[i].path) + " reaches " + distance +
             " of the tile's side beyond its edge");
  }
  if (tile.outside.size() > named) {
    complain(printable(scene_) + ": " + printable(tile.path) + ": and " +
             std::to_string(tile.outside.size() - named) + " more like this");
  }
}

bool ExportReport::conclude() {
  endTile();
  for (TileOutcome& tile : tiles_) {
    addHostWarnings(tile);
    const bool isOutside =
        std::any_of(tile.warnings.begin(), tile.warnings.end(),
                    [](const auto& warning) { return warning.first == morvane::kGoblinOutside; });
    if (isOutside) {
      findOutside(tile);
      reportOutside(tile);
    }
    if (tile.error.empty()) continue;
    const Status reason = reasonOf(tile);
    const std::string why = reason.ok() ? tile.error : tile.error + ": " + reason.text();
    const bool isInAdvice = tile.error == morvane::kLoadFailed;
    complain(printable(scene_) + ": " +
             (tile.path.empty() ? "a selected node" : printable(tile.path)) + ": " +
             printable(isInAdvice ? tile.error : why) + "; " + advice(tile, reason.code()));
    tile.error = why;
  }
  return failures() == 0;
}

TileOutcome ExportReport::outcomeOf(const std::string& tile) const {
  const auto found = std::find_if(tiles_.begin(), tiles_.end(),
                                  [&](const TileOutcome& outcome) { return outcome.path == tile; });
  return found == tiles_.end() ? TileOutcome() : *found;
}

std::size_t ExportReport::failures() const {
  return static_cast<std::size_t>(std::count_if(
      tiles_.begin(), tiles_.end(), [](const TileOutcome& tile) { return !tile.error.empty(); }));
}

const TileCandidate* ExportReport::candidate(const std::string& tile) const {
  for (const TileCandidate& each : textures_)
    if (each.path == tile) return &each;
  return nullptr;
}

std::string ExportReport::textureOf(const std::string& tile) const {
  const TileCandidate* const known = candidate(tile);
  return known ? known->texture : "";
}

// The file that an export of the tile writes.
std::string ExportReport::fileOf(const std::string& tile) const {
  const std::string texture = textureOf(tile);
  return morvane::tileFileOf(texture.empty() ? tile : texture);
}

std::string ExportReport::advice(const TileOutcome& tile, StatusCode code) const {
  if (!tile.advice.empty()) return tile.advice;
  if (tile.error == morvane::kLoadFailed) return textureAdvice(tile.path);
  if (code == StatusCode::kChanged || code == StatusCode::kOtherKind) return "nothing was replaced";
  for (const Advice& known : kAdvice) {
    if (tile.error != known.error) continue;
    return known.error == morvane::kSaveFailed ? writingAdvice(code, known.text) : known.text;
  }
  return "its texture was not changed";
}

// Loads the texture again to learn what the plug-in does not say.
std::string ExportReport::textureAdvice(const std::string& tile) const {
  const TileCandidate* const known = candidate(tile);
  if (known && !known->textureNode.empty() && known->texture.empty())
    return "set the fileTextureName of " + printable(known->textureNode);
  const std::string texture = textureOf(tile);
  if (!texture.empty()) {
    if (morvane::factsOf(texture).type == std::filesystem::file_type::not_found) {
      const bool isKind = isTileFileName(texture);
      return "its texture " + printable(texture) +
             (isKind ? "" : " is neither a PSD nor a TGA file and") +
             (host::isMapped(texture) ? " does not exist; it is where --map leads: copy it there"
                                      : kMissingTexture);
    }
    morvane::PsdDocument document(1, 1);
    Status status;
    if (!document.load(texture.c_str(), &status))
      return "texture " + unreadable(texture, status, texture);
  }
  return "its texture must be a PSD file or an uncompressed TGA image of 24 or 32 bits";
}

}  // namespace tools

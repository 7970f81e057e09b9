#include "tools/batch/ExportReport.h"

#include <algorithm>
#include <filesystem>

#include "psd/PsdDocument.h"
#include "tools/model/TileFile.h"
#include "tools/scene/SceneTiles.h"
#include "tools/terminal/OutputFile.h"
#include "tools/terminal/Text.h"

namespace tools {
namespace {

constexpr std::string_view kTile = "Exporting tile ";
constexpr std::string_view kDots = "...";
constexpr std::string_view kError = "*** Error";
constexpr std::string_view kTileFailed = "*** Error exporting tile";
// The plug-in's own, and those that its material lookup gives.
constexpr std::string_view kWarnings[] = {"*** Warning : ", "Warning: "};

constexpr std::string_view kLoadFailed = "couldn't load psd";
constexpr std::string_view kSaveFailed = "couldn't save psd";
constexpr std::string_view kLayerFailed = "couldn't add goblin layer";
constexpr std::string_view kReplaced = "its goblins were replaced";
constexpr std::string_view kHostError = "Error: ";
constexpr std::string_view kHostWarning = "Warning: ";
constexpr std::string_view kChanged = ": changed while it was exported";
constexpr std::string_view kNotReplaced = ": somebody's ";

// What the plug-in logs, and what the person at the terminal can do about it.
struct Advice {
  std::string_view error;
  const char* text;
};
constexpr Advice kAdvice[] = {
    {kSaveFailed, "check that the texture's folder can be written and the disk is not full"},
    {kLayerFailed, "save the texture again as PSD: RGB, 8 bits a channel"},
    {kReplaced, "give each tile a texture of its own, and export again"},
    {"would be written as", "give one of the two another name"},
    {"goblin geometry exceeds layer size", "use a larger texture, or fewer or simpler goblins"},
    {"tile has no extent", "the tile's mesh must reach over some width in x and in z"},
    {"No mesh", "a tile is a transform with its mesh directly below it"},
    {"No transform", "name the tile's transform, not the shape below it"},
    {"couldn't get DAG path", "name the tile's transform"},
    {"material", "give the tile's mesh one material, its colour from one file texture"},
    {"texture", "give the tile's mesh one material, its colour from one file texture"},
    {"transform weirdness", "every goblin's mesh must stand below a plain transform"},
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
  for (const std::string_view marker : {kTile, kError, kWarnings[0], kWarnings[1]}) {
    end = std::min(end, line.find(marker, 1));
  }
  return end;
}

}  // namespace

void ExportReport::hear(std::string_view line) {
  while (!line.empty()) {
    const std::size_t end = messageEnd(line);
    hearMessage(line.substr(0, end));
    line.remove_prefix(end);
  }
}

void ExportReport::hearMessage(std::string_view message) {
  if (startsWith(message, kTile)) return beginTile(message.substr(kTile.size()));
  if (startsWith(message, kError)) return hearError(message);
  for (const std::string_view warning : kWarnings) {
    if (startsWith(message, warning)) return hearWarning(message.substr(warning.size()));
  }
}

void ExportReport::hearError(std::string_view message) {
  if (!open_) beginTile(nextNameless());
  const bool isLast = startsWith(message, kTileFailed);
  std::string& error = tiles_.back().error;
  if (error.empty()) error = trimmed(isLast ? message : message.substr(kError.size()));
  if (isLast) endTile();
}

void ExportReport::hearWarning(std::string_view message) {
  if (!open_) return;
  auto& warnings = tiles_.back().warnings;
  const std::string text(trimmed(message));
  const auto known = std::find_if(warnings.begin(), warnings.end(),
                                  [&](const auto& warning) { return warning.first == text; });
  if (known == warnings.end()) {
    warnings.emplace_back(text, 1);
  } else {
    ++known->second;
  }
}

void ExportReport::beginTile(std::string_view name) {
  endTile();
  name = trimmed(name);
  if (name.size() > kDots.size() && name.substr(name.size() - kDots.size()) == kDots) {
    name.remove_suffix(kDots.size());
  }
  tiles_.push_back({std::string(name), "", {}, 0});
  open_ = true;
  begin_ = Clock::now();
  if (began_) began_(tiles_.back());
}

// The plug-in does not name what is no DAG object, but it goes through the selection in order.
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

void ExportReport::hearHost(std::string_view line) {
  if (startsWith(line, kHostError)) reasons_.emplace_back(line.substr(kHostError.size()));
  if (startsWith(line, kHostWarning)) hostWarnings_.emplace_back(line.substr(kHostWarning.size()));
}

// Those about the tile's file.
void ExportReport::addHostWarnings(TileOutcome& tile) const {
  const std::string texture = textureOf(tile.path);
  if (texture.empty()) {
    return;
  }
  const std::string stem = texture.substr(0, texture.rfind('.'));
  for (const std::string& warning : hostWarnings_) {
    if (startsWith(warning, stem + '.')) {
      tile.warnings.emplace_back(warning, 1);
    }
  }
}

std::vector<std::string> ExportReport::takeChanged() {
  endTile();
  std::vector<std::string> changed;
  for (const TileOutcome& tile : tiles_) {
    if (reasonOf(tile).find(kChanged) != std::string::npos) {
      changed.push_back(tile.path);
    }
  }
  const auto isChanged = [&](const TileOutcome& tile) {
    return std::find(changed.begin(), changed.end(), tile.path) != changed.end();
  };
  tiles_.erase(std::remove_if(tiles_.begin(), tiles_.end(), isChanged), tiles_.end());
  const auto isTaken = [](const std::string& reason) {
    return reason.find(kChanged) != std::string::npos;
  };
  reasons_.erase(std::remove_if(reasons_.begin(), reasons_.end(), isTaken), reasons_.end());
  return changed;
}

void ExportReport::refuse(const std::string& tile, const std::string& error) {
  tiles_.push_back({tile, error, {}, 0});
}

// Of a texture that could not be read or written, or takes no layer: what was said of that file, or
// of the tile where it has none.
std::string ExportReport::reasonOf(const TileOutcome& tile) const {
  const auto failedAt = [&](std::string_view step) {
    return tile.error.find(step) != std::string::npos;
  };
  const bool isSave = failedAt(kSaveFailed);
  if (!isSave && !failedAt(kLoadFailed) && !failedAt(kLayerFailed)) return "";
  const std::string texture = textureOf(tile.path);
  const std::string file = texture.empty() ? tile.path : texture;
  const std::string stem = file.substr(0, file.rfind('.'));
  for (const std::string& reason : reasons_) {
    const bool fits =
        isSave ? startsWith(reason, "cannot write " + stem + '.') : startsWith(reason, file + ": ");
    if (fits) return reason;
  }
  return "";
}

bool ExportReport::isExported(const std::string& tile) const {
  return std::any_of(tiles_.begin(), tiles_.end(), [&](const TileOutcome& each) {
    return each.path == tile && each.error.empty();
  });
}

void ExportReport::lose(const std::string& tile, const std::string& error) {
  for (TileOutcome& each : tiles_) {
    if (each.path == tile && each.error.empty()) each.error = error;
  }
}

bool ExportReport::conclude() {
  endTile();
  for (TileOutcome& tile : tiles_) {
    addHostWarnings(tile);
    if (tile.error.empty()) continue;
    const std::string reason = reasonOf(tile);
    const std::string why = reason.empty() ? tile.error : tile.error + ": " + reason;
    const bool isInAdvice = tile.error.find(kLoadFailed) != std::string::npos;
    complain("export failed for " + (tile.path.empty() ? "a selected node" : printable(tile.path)) +
             ": " + printable(isInAdvice ? tile.error : why) + "; " + advice(tile, reason));
    tile.error = why;
  }
  return failures() == 0;
}

std::size_t ExportReport::failures() const {
  return static_cast<std::size_t>(std::count_if(
      tiles_.begin(), tiles_.end(), [](const TileOutcome& tile) { return !tile.error.empty(); }));
}

const host::TileCandidate* ExportReport::candidate(const std::string& tile) const {
  for (const host::TileCandidate& each : textures_) {
    if (each.path == tile) return &each;
  }
  return nullptr;
}

std::string ExportReport::textureOf(const std::string& tile) const {
  const host::TileCandidate* const known = candidate(tile);
  return known ? known->texture : "";
}

std::string ExportReport::advice(const TileOutcome& tile, const std::string& reason) const {
  if (tile.error.find(kLoadFailed) != std::string::npos) return textureAdvice(tile.path);
  const bool isAdvised =
      reason.find(kChanged) != std::string::npos || reason.find(kNotReplaced) != std::string::npos;
  if (isAdvised) {
    return "nothing was replaced";
  }
  for (const Advice& known : kAdvice) {
    if (tile.error.find(known.error) == std::string::npos) continue;
    return known.error == kSaveFailed ? writingAdvice(reason, known.text) : known.text;
  }
  return "its texture was not changed";
}

// Loads the texture again to learn what the plug-in does not say.
std::string ExportReport::textureAdvice(const std::string& tile) const {
  const host::TileCandidate* const known = candidate(tile);
  if (known && !known->textureNode.empty() && known->texture.empty()) {
    return "set the fileTextureName of " + printable(known->textureNode);
  }
  const std::string texture = textureOf(tile);
  if (!texture.empty()) {
    std::error_code missing;
    if (!std::filesystem::exists(texture, missing) && !missing) {
      return "its texture " + printable(texture) +
             (host::isMapped(texture) ? " does not exist; it is where --map leads: copy it there"
                                      : kMissingTexture);
    }
    morvane::PsdDocument document(1, 1);
    std::string error;
    if (!document.load(texture.c_str(), &error))
      return "texture " + unreadable(texture, error, texture);
  }
  return "its texture must be a PSD file or an uncompressed TGA image of 24 or 32 bits";
}

}  // namespace tools

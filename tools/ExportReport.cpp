#include "tools/ExportReport.h"

#include <filesystem>

#include "psd/PsdDocument.h"
#include "tools/Text.h"

namespace tools {
namespace {

constexpr std::string_view kTile = "Exporting tile ";
constexpr std::string_view kDots = "...";
constexpr std::string_view kError = "*** Error";
constexpr std::string_view kTileFailed = "*** Error exporting tile";

constexpr std::string_view kLoadFailed = "couldn't load psd";

// What the plug-in logs, and what the person at the terminal can do about it.
struct Advice {
  std::string_view error;
  const char* text;
};
constexpr Advice kAdvice[] = {
    {"couldn't save psd",
     "check that the texture's folder can be written and the disk is not full"},
    {"couldn't add goblin layer", "the texture must be an 8-bit RGB image"},
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

}  // namespace

// Some of the plug-in's messages end without a line feed, so that the next one follows on their
// line.
void ExportReport::hear(std::string_view line) {
  const std::size_t tile = line.find(kTile);
  const std::size_t error = line.find(kError);
  if (error != std::string_view::npos) hearError(line.substr(error));
  if (tile != std::string_view::npos) beginTile(line.substr(tile + kTile.size()));
}

void ExportReport::hearError(std::string_view message) {
  const std::size_t end = message.find(kTileFailed);
  if (!failed_) {
    if (end != 0) message = message.substr(kError.size(), end - kError.size());
    failures_.push_back({tile_, std::string(trimmed(message))});
    failed_ = true;
  }
  if (end != std::string_view::npos) {
    failed_ = false;
    tile_.clear();
  }
}

void ExportReport::beginTile(std::string_view name) {
  name = trimmed(name);
  if (name.size() > kDots.size() && name.substr(name.size() - kDots.size()) == kDots) {
    name.remove_suffix(kDots.size());
  }
  tile_ = name;
  failed_ = false;
  ++tiles_;
  if (!progress_.shown) return;
  const std::string of = progress_.expected ? " of " + std::to_string(progress_.expected) : "";
  complain("tile " + std::to_string(tiles_) + of + ": " + printable(name));
}

bool ExportReport::conclude() const {
  for (const Failure& failure : failures_) {
    const std::string tile = failure.tile.empty() ? "a selected node" : failure.tile;
    complain("export failed for " + printable(tile) + ": " + printable(failure.error) + "; " +
             advice(failure));
  }
  return failures_.empty();
}

std::string ExportReport::advice(const Failure& failure) const {
  if (failure.error.find(kLoadFailed) != std::string::npos) return textureAdvice(failure.tile);
  for (const Advice& known : kAdvice) {
    if (failure.error.find(known.error) != std::string::npos) return known.text;
  }
  return "its texture was not changed";
}

// Loads the texture again to learn what the plug-in does not say.
std::string ExportReport::textureAdvice(const std::string& tile) const {
  for (const host::TileCandidate& candidate : textures_) {
    if (candidate.path != tile) continue;
    const std::string shown = "its texture " + printable(candidate.texture);
    std::error_code ignored;
    if (!std::filesystem::exists(candidate.texture, ignored)) return shown + " does not exist";
    morvane::PsdDocument document(1, 1);
    std::string error;
    if (!document.load(candidate.texture.c_str(), &error))
      return shown + " cannot be read: " + printable(error);
  }
  return "its texture must be a PSD file or an uncompressed TGA image of 24 or 32 bits";
}

}  // namespace tools

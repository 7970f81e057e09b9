#include "tools/batch/SharedTextures.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "geometry/GoblinGeometry.h"
#include "psd/PsdDocument.h"
#include "tile/TileTexture.h"
#include "tools/scene/Session.h"
#include "util/WholeNames.h"

namespace tools {
namespace {

// One name for each file, whatever links lead to it.
std::string identityOf(const std::string& texture) {
  const std::string file = writtenFile(texture);
  std::error_code failed;
  const std::string real = morvane::canonicalName(file, failed);
  return failed ? file : real;
}

// 0 where there are none.
std::size_t hashOfGoblins(const morvane::PsdDocument& document) {
  std::uint32_t size = 0;
  const auto bytes = document.peekDataLayer(morvane::kGoblinLayerName, size);
  if (!bytes) return 0;
  return std::hash<std::string_view>()({reinterpret_cast<const char*>(bytes.get()), size});
}

std::size_t hashOfGoblins(const std::string& file) {
  morvane::PsdDocument document(1, 1);
  return document.load(file.c_str()) ? hashOfGoblins(document) : 0;
}

}  // namespace

std::string SharedTextures::Loss::errorOf(const Tile& tile) const {
  return "its goblins were replaced by those of " + winner.path +
         (tile.scene == winner.scene ? "" : " of " + winner.scene) + ", which writes " + file +
         ", too";
}

std::string writtenFile(const std::string& texture) {
  return absoluteName(morvane::tileFileOf(texture));
}

std::set<std::string> SharedTextures::filesOf(const std::vector<TileCandidate>& tiles) {
  std::set<std::string> files;
  for (const TileCandidate& tile : tiles)
    if (!tile.texture.empty()) files.insert(identityOf(tile.texture));
  return files;
}

SharedTextures::Known SharedTextures::knownOf(const std::set<std::string>& files) const {
  Known known;
  for (const std::string& file : files) {
    const auto owners = known_.owners.find(file);
    if (owners != known_.owners.end()) known.owners.insert(*owners);
    const auto foreseen = known_.foreseen.find(file);
    if (foreseen != known_.foreseen.end()) known.foreseen.insert(*foreseen);
    const auto texture = known_.psdTextures.find(file);
    if (texture != known_.psdTextures.end()) known.psdTextures.insert(*texture);
  }
  return known;
}

void SharedTextures::learn(const std::set<std::string>& files, const Known& known) {
  for (const std::string& file : files) {
    known_.owners.erase(file);
    known_.foreseen.erase(file);
    known_.psdTextures.erase(file);
  }
  known_.owners.insert(known.owners.begin(), known.owners.end());
  known_.foreseen.insert(known.foreseen.begin(), known.foreseen.end());
  known_.psdTextures.insert(known.psdTextures.begin(), known.psdTextures.end());
}

std::vector<Refusal> SharedTextures::claims(const std::string& scene,
                                            const std::vector<TileCandidate>& tiles) {
  const auto isPsd = [](const TileCandidate& tile) {
    return morvane::tileFileOf(tile.texture) == tile.texture;
  };
  for (const TileCandidate& tile : tiles)
    if (!tile.texture.empty() && isPsd(tile))
      known_.psdTextures.try_emplace(identityOf(tile.texture), Tile{scene, tile.path});
  std::vector<Refusal> claims;
  for (const TileCandidate& tile : tiles) {
    if (tile.texture.empty() || isPsd(tile)) continue;
    const auto owner = known_.psdTextures.find(identityOf(tile.texture));
    if (owner != known_.psdTextures.end()) {
      const Tile& other = owner->second;
      claims.push_back({tile.path,
                        tile.texture + " would be written as " + writtenFile(tile.texture) +
                            ", the texture of " + other.path +
                            (other.scene == scene ? "" : " of " + other.scene),
                        "give one of the two another name"});
    }
  }
  return claims;
}

std::vector<std::vector<std::size_t>> SharedTextures::rounds(
    const std::vector<TileCandidate>& tiles) {
  std::vector<std::vector<std::size_t>> rounds(1);
  std::map<std::string, std::size_t> uses;
  for (std::size_t i = 0; i < tiles.size(); ++i) {
    const std::size_t round = tiles[i].texture.empty() ? 0 : uses[identityOf(tiles[i].texture)]++;
    if (round == rounds.size()) rounds.emplace_back();
    rounds[round].push_back(i);
  }
  return rounds;
}

void SharedTextures::beginRound(const std::vector<TileCandidate>& tiles,
                                const std::vector<std::size_t>& round) {
  for (const std::size_t i : round) {
    if (tiles[i].texture.empty()) continue;
    const auto isEarlier = [&](const Write& write) { return write.path == tiles[i].path; };
    writes_.erase(std::remove_if(writes_.begin(), writes_.end(), isEarlier), writes_.end());
  }
  roundStart_ = writes_.size();
  for (const std::size_t i : round) {
    if (tiles[i].texture.empty()) continue;
    Write write{tiles[i].path, identityOf(tiles[i].texture), std::nullopt};
    const bool isWritten =
        known_.owners.count(write.file) != 0 ||
        std::any_of(writes_.begin(), writes_.begin() + static_cast<std::ptrdiff_t>(roundStart_),
                    [&](const Write& earlier) { return earlier.file == write.file; });
    if (isWritten) write.before = hashOfGoblins(write.file);
    writes_.push_back(std::move(write));
  }
}

void SharedTextures::endRound() {
  for (std::size_t i = roundStart_; i < writes_.size(); ++i) {
    Write& write = writes_[i];
    write.changed = write.before && *write.before != hashOfGoblins(write.file);
  }
}

void SharedTextures::foresee(const TileCandidate& tile, const morvane::PsdDocument& document) {
  Write write{tile.path, identityOf(tile.texture), std::nullopt};
  const std::size_t hash = hashOfGoblins(document);
  const auto [before, isFirst] = known_.foreseen.try_emplace(write.file, hash);
  write.changed = !isFirst && before->second != hash;
  before->second = hash;
  writes_.push_back(std::move(write));
}

void SharedTextures::keep(const TileCandidate& tile) {
  writes_.push_back({tile.path, identityOf(tile.texture), std::nullopt});
}

std::vector<SharedTextures::Loss> SharedTextures::settle(
    const std::string& scene, const std::function<bool(const std::string&)>& isExported) {
  std::vector<Loss> losses;
  for (const Write& write : std::exchange(writes_, {})) {
    if (!isExported(write.path)) continue;
    std::vector<Tile>& owners = known_.owners[write.file];
    const Tile tile{scene, write.path};
    if (write.changed && !owners.empty())
      losses.push_back({std::exchange(owners, {}), tile, write.file});
    owners.push_back(tile);
  }
  return losses;
}

}  // namespace tools

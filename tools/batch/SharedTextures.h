#ifndef MORVANE_TOOLS_BATCH_SHAREDTEXTURES_H_
#define MORVANE_TOOLS_BATCH_SHAREDTEXTURES_H_

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "psd/PsdDocument.h"
#include "tools/scene/TileCandidates.h"

namespace tools {

// A tile that is not given to the plug-in.
struct Refusal {
  std::string tile;  // its path
  std::string error;
  std::string advice;
};

// The absolute name of the file that an export of a tile with this texture writes. The working
// folder must be the scene's.
std::string writtenFile(const std::string& texture);

// Finds out whose goblins were lost in a run: a file has room for one tile's goblins, and the tile
// that is exported last leaves its own there. Tiles with the same goblins lose nothing: levels
// repeat tiles.
class SharedTextures {
 public:
  struct Tile {
    std::string scene;
    std::string path;
  };
  struct Loss {
    std::vector<Tile> lost;  // whose goblins the file held before
    Tile winner;
    std::string file;

    // What has happened to one of the lost tiles, and what to do.
    std::string errorOf(const Tile& tile) const;
    static constexpr const char* kAdvice = "give each tile a texture of its own, and export again";
  };

  // Whose goblins a file holds and whose texture it is, of some files.
  struct Known {
    std::map<std::string, std::vector<Tile>> owners;  // of the goblins in each file
    std::map<std::string, std::size_t> foreseen;      // hash of the goblins in each file
    std::map<std::string, Tile> psdTextures;          // whose texture each file is
  };

  // The files that an export of these tiles writes, each under one name whatever links lead to it.
  static std::set<std::string> filesOf(const std::vector<TileCandidate>& tiles);
  // For another process, which learns it in place of what it knew of these files.
  Known knownOf(const std::set<std::string>& files) const;
  void learn(const std::set<std::string>& files, const Known& known);

  // Tiles that would write the PSD file beside their textures over the texture of another tile, of
  // this scene or one before.
  std::vector<Refusal> claims(const std::string& scene, const std::vector<TileCandidate>& tiles);

  // Indices of `tiles`, in rounds that write each file once at most. One round when no file is
  // shared.
  static std::vector<std::vector<std::size_t>> rounds(const std::vector<TileCandidate>& tiles);

  // Around the export of a round. Files that the run has not written before are not looked at.
  void beginRound(const std::vector<TileCandidate>& tiles, const std::vector<std::size_t>& round);
  void endRound();

  // In place of a round: the tile's export would leave this document.
  void foresee(const TileCandidate& tile, const morvane::PsdDocument& document);

  // In place of a round: the file has the tile's goblins already.
  void keep(const TileCandidate& tile);

  // After a scene's rounds. `isExported` tells of the path of a tile whether it succeeded.
  std::vector<Loss> settle(const std::string& scene,
                           const std::function<bool(const std::string&)>& isExported);

 private:
  struct Write {
    std::string path;
    std::string file;
    std::optional<std::size_t> before;  // hash of the goblins, where they are someone's
    bool changed = false;
  };

  Known known_;
  std::vector<Write> writes_;   // of this scene, in order
  std::size_t roundStart_ = 0;  // in `writes_`
};

}  // namespace tools

#endif  // MORVANE_TOOLS_BATCH_SHAREDTEXTURES_H_

#ifndef MORVANE_TOOLS_BATCH_EXPORTREPORT_H_
#define MORVANE_TOOLS_BATCH_EXPORTREPORT_H_

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/batch/SharedTextures.h"
#include "tools/scene/TileCandidates.h"
#include "util/Status.h"

namespace tools {

// A goblin that reaches out of its tile: the path of its mesh, and how far, as a share of the
// tile's side.
struct OutsideGoblin {
  std::string path;
  float distance = 0;
};

// What was done with the file of a tile that did not fail.
enum class TileAction { kWritten, kUnchanged, kPlanned };

// What became of one tile.
struct TileOutcome {
  std::string path;   // the mere name for a node that is not a DAG object
  std::string error;  // the first that the plug-in logged; empty: exported
  std::vector<std::pair<std::string, std::size_t>> warnings;  // each text once, and how often
  double milliseconds = 0;
  std::vector<OutsideGoblin> outside{};  // the farthest first
  std::string advice{};  // what to do about an error that is not of the plug-in's own; or empty
  TileAction action = TileAction::kWritten;
  std::size_t goblins = 0;   // of a planned one
  std::size_t vertices = 0;  // likewise
};

// Follows an export by what the plug-in logs, the only place where it tells of a tile's failure.
class ExportReport {
 public:
  // `scene` is for messages. `textures` says which texture belongs to which tile. `began` (may be
  // empty) is called at the beginning of each tile.
  ExportReport(std::string scene, std::vector<TileCandidate> textures,
               std::function<void(const TileOutcome&)> began)
      : scene_(std::move(scene)), textures_(std::move(textures)), began_(std::move(began)) {}

  // One line of the plug-in's output. Some of its messages end without a line feed, so that a line
  // can hold several.
  void readLine(std::string_view line);

  // A line that the host is writing to standard error, where the plug-in says what its output
  // leaves out. May be called while another thread calls `hear`.
  void readHostLine(std::string_view line);

  bool isExported(const std::string& tile) const;

  // Tiles that failed because others changed their files meanwhile. Their outcomes are forgotten:
  // they are to be exported again. The plug-in must have finished.
  std::vector<std::string> takeChanged();

  // The last tile that was heard of is as a write of it would leave it, or was not written.
  void markLast(TileAction action, std::size_t goblins, std::size_t vertices);

  // Counts a tile as failed that is not given to the plug-in.
  void refuse(const Refusal& refusal);

  // The goblins of these tiles are not in their files any more. Tiles of other scenes are not
  // looked at.
  void markLost(const SharedTextures::Loss& loss);

  // Names every failed tile, why, and what to do, on standard error. False when there are any.
  // Nothing is heard afterwards.
  bool conclude();

  const std::vector<TileOutcome>& tiles() const { return tiles_; }
  std::size_t failures() const;
  // Of the tile at a path that this report was made for.
  TileOutcome outcomeOf(const std::string& tile) const;
  // As the scene names it; empty when that is not known.
  std::string textureOf(const std::string& tile) const;

 private:
  using Clock = std::chrono::steady_clock;

  void readMessage(std::string_view message);
  void addHostWarnings(TileOutcome& tile) const;
  void findOutside(TileOutcome& tile) const;
  void reportOutside(const TileOutcome& tile) const;
  void readError(std::string_view message);
  void readWarning(std::string_view message);
  void beginTile(std::string_view name);
  std::string nextNameless();
  void endTile();
  const TileCandidate* candidate(const std::string& tile) const;
  std::string fileOf(const std::string& tile) const;
  morvane::Status reasonOf(const TileOutcome& tile) const;
  std::string advice(const TileOutcome& tile, morvane::StatusCode code) const;
  std::string textureAdvice(const std::string& tile) const;

  std::string scene_;
  std::vector<TileCandidate> textures_;
  std::function<void(const TileOutcome&)> began_;
  std::vector<TileOutcome> tiles_;
  std::vector<std::string> reasons_;
  std::vector<std::string> hostWarnings_;
  std::size_t nextTexture_ = 0;  // where the next node that is not a DAG object is looked for
  bool open_ = false;            // the last tile is being exported
  Clock::time_point begin_{};
};

}  // namespace tools

#endif  // MORVANE_TOOLS_BATCH_EXPORTREPORT_H_

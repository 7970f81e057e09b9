#ifndef MORVANE_TOOLS_EXPORTREPORT_H_
#define MORVANE_TOOLS_EXPORTREPORT_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "host/Host.h"

namespace tools {

// Follows an export by what the plug-in logs, the only place where it tells of a tile's failure.
class ExportReport {
 public:
  struct Progress {
    bool shown = false;        // a line for each tile on standard error
    std::size_t expected = 0;  // tiles; 0 where that is not known before
  };

  // `textures` says which texture belongs to which tile.
  ExportReport(std::vector<host::TileCandidate> textures, Progress progress)
      : textures_(std::move(textures)), progress_(progress) {}

  // One line of the plug-in's output.
  void hear(std::string_view line);

  // Names every failed tile, why, and what to do, on standard error. False when there are any.
  bool conclude() const;

 private:
  struct Failure {
    std::string tile;
    std::string error;  // the first that the plug-in logged
  };

  void hearError(std::string_view message);
  void beginTile(std::string_view name);
  std::string advice(const Failure& failure) const;
  std::string textureAdvice(const std::string& tile) const;

  std::vector<host::TileCandidate> textures_;
  std::vector<Failure> failures_;
  std::string tile_;
  std::size_t tiles_ = 0;
  bool failed_ = false;  // the tile that is being exported
  Progress progress_;
};

}  // namespace tools

#endif  // MORVANE_TOOLS_EXPORTREPORT_H_

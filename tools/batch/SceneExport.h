#ifndef MORVANE_TOOLS_BATCH_SCENEEXPORT_H_
#define MORVANE_TOOLS_BATCH_SCENEEXPORT_H_

#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "host/Host.h"
#include "tools/batch/ExportForecast.h"
#include "tools/batch/ExportJob.h"
#include "tools/batch/ExportReport.h"
#include "tools/batch/SharedTextures.h"
#include "tools/terminal/ExitStatus.h"
#include "tools/terminal/ProgressBar.h"

namespace tools {

// What became of one scene.
struct SceneResult {
  ExitStatus status = kDone;
  std::string outcome = "not exported";  // "2 tiles exported, 1 failed"
  std::vector<std::string> records{};    // lines of JSON; none unless the job wants them
  std::set<std::string> failedScenes{};  // this one, and earlier ones that have lost goblins by it
  std::ptrdiff_t exportedTiles = 0;      // less those of earlier scenes
  std::ptrdiff_t failedTiles = 0;
};

// How far a scene is.
struct SceneProgress {
  std::string tile;        // its path; empty while the scene is opened
  std::size_t number = 0;  // from 0
  std::size_t tiles = 1;
};

struct SceneExportCalls {
  std::function<void(const SceneProgress&)> show;
  // Before the first tile of a scene is exported, with all that are to be; may be empty.
  std::function<void(const std::vector<TileCandidate>&)> begin;
};

// Exports scenes of a job, one after another. There can be one at a time.
class SceneExport {
 public:
  // `bar` is kept out of the way of what the plug-in prints.
  SceneExport(const ExportJob& job, SharedTextures& textures, ProgressBar& bar,
              SceneExportCalls calls);
  ~SceneExport();
  SceneExport(const SceneExport&) = delete;
  SceneExport& operator=(const SceneExport&) = delete;

  // `name` is the caller's, `path` absolute. Failures are told on standard error.
  SceneResult exportScene(const std::string& name, const std::string& path);
  // The scene that is open, in which these problems were found.
  SceneResult exportOpened(const std::string& name, const host::SceneProblems& problems);

 private:
  void fail(const host::SceneProblems& problems, const std::string& error, ExitStatus status);
  ExitStatus exportSelected(bool isDamaged);
  bool refuseTiles(ExportReport& report, const std::vector<TileCandidate>& tiles);
  bool leaveOut(ExportReport& report, const std::vector<TileCandidate>& tiles);
  bool planTiles(ExportReport& report);
  bool exportAgain(ExportReport& report, bool& heard);
  bool exportHeard(ExportReport& report, bool& heard);
  bool exportRounds(const std::vector<TileCandidate>& tiles);
  bool settle(ExportReport& report);
  void markEarlierLost(const SharedTextures::Tile& tile, const std::string& error);
  void keep(const ExportReport& report, bool isDamaged);

  const ExportJob& job_;
  SharedTextures& textures_;
  ProgressBar& bar_;
  SceneExportCalls calls_;
  ExportReport* report_ = nullptr;  // of the export that is going on
  std::string name_;
  std::size_t tiles_ = 0;  // of the scene
  std::size_t done_ = 0;   // of them, before this job
  SceneResult result_;
};

}  // namespace tools

#endif  // MORVANE_TOOLS_BATCH_SCENEEXPORT_H_

#ifndef MORVANE_TOOLS_BATCH_EXPORTRECORDS_H_
#define MORVANE_TOOLS_BATCH_EXPORTRECORDS_H_

#include <nlohmann/json.hpp>
#include <string>

#include "host/Host.h"
#include "tools/batch/ExportReport.h"
#include "tools/terminal/ExitStatus.h"
#include "tools/terminal/OutputAside.h"

namespace tools {

// [{"text", "count"}]; the one of goblins outside has "goblins", too: [{"goblin", "distance"}].
nlohmann::ordered_json warningsJson(const TileOutcome& tile);

// One line of JSON for each tile on standard output, which it keeps for these lines alone.
class ExportRecords {
 public:
  // {"scene", "tile", "texture", "goblins", "vertices", "warnings": [{"text", "count"}], "error",
  // "status", "milliseconds"}. `texture` is the scene's name of it, and the record's the file that
  // holds the goblins now; what is not known is null.
  // The working folder must be the scene's.
  void write(const std::string& scene, const TileOutcome& tile, const std::string& texture);
  // Of the scene as a whole: `tile` is null, a warning has also "kind" ("notice" or "damage"),
  // "file" and "line", and `error`, where it is not empty, says why the scene was not exported or
  // not wholly, `status` how it ended.
  void writeScene(const std::string& scene, const host::SceneProblems& problems,
                  const std::string& error, ExitStatus status);

  // False when a line could not be written.
  bool ok() const { return output_.ok(); }

 private:
  OutputAside output_;
};

}  // namespace tools

#endif  // MORVANE_TOOLS_BATCH_EXPORTRECORDS_H_

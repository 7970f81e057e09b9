#ifndef MORVANE_TOOLS_BATCH_EXPORTRECORDS_H_
#define MORVANE_TOOLS_BATCH_EXPORTRECORDS_H_

#include <nlohmann/json.hpp>
#include <string>

#include "host/Host.h"
#include "tools/batch/ExportReport.h"
#include "tools/terminal/ExitStatus.h"

namespace tools {

// [{"text", "count"}]; the one of goblins outside has "goblins", too: [{"goblin", "distance"}].
nlohmann::ordered_json warningsJson(const TileOutcome& tile);

// Lines of JSON:
// {"scene", "tile", "tiles", "texture", "goblins", "vertices", "warnings": [{"text", "count"}],
// "error", "action", "status", "milliseconds"}. `tiles` is how many the scene has in this job.
// `texture` is the scene's name of it, and the record's the file that holds the goblins now; what
// is not known is null. The working folder must be the scene's.
std::string tileRecord(const std::string& scene, const TileOutcome& tile,
                       const std::string& texture, std::size_t tiles);
// Of the scene as a whole: `tile` is null, a warning has also "kind" ("notice" or "damage"), "file"
// and "line", and `error`, where it is not empty, says why the scene was not exported or not
// wholly, `status` how it ended.
std::string sceneRecord(const std::string& scene, const host::SceneProblems& problems,
                        const std::string& error, ExitStatus status);

}  // namespace tools

#endif  // MORVANE_TOOLS_BATCH_EXPORTRECORDS_H_

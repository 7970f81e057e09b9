#ifndef MORVANE_TOOLS_BATCH_EXPORTFORECAST_H_
#define MORVANE_TOOLS_BATCH_EXPORTFORECAST_H_

#include <cstddef>
#include <string>
#include <vector>

#include "tile/TileExport.h"
#include "tools/batch/ExportReport.h"
#include "tools/scene/TileCandidates.h"

namespace tools {

struct TileForecast {
  TileCandidate tile;
  TileOutcome outcome;      // as the record of an export would have it
  std::size_t goblins = 0;  // below the tile, whatever becomes of it
};

// An export of one tile up to its save.
struct PlannedTile {
  bool ok = false;
  std::vector<std::string> lines;  // what the plug-in would log
  std::vector<std::string> hostLines;
  morvane::TileExport result;  // of no use unless `ok`
};
PlannedTile planTile(const TileCandidate& tile);
// Whether the tile's file holds just the goblins, and beside a TGA image the pixels, that the
// export would leave in it.
bool isUnchanged(const morvane::TileExport& planned);
// Lets a report hear what was planned, as if it had been done.
void replay(const PlannedTile& planned, ExportReport& report);

// What an export of the open scene without names would do, found out by the functions that the
// plug-in exports with; only the saving is left out. Failures are named on standard error as the
// export would. `scene` is the scene's name for that.
std::vector<TileForecast> forecastExport(const std::string& scene);

}  // namespace tools

#endif  // MORVANE_TOOLS_BATCH_EXPORTFORECAST_H_

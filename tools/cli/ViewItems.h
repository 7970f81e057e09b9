#ifndef MORVANE_TOOLS_CLI_VIEWITEMS_H_
#define MORVANE_TOOLS_CLI_VIEWITEMS_H_

#include <string>

#include "psd/PsdDocument.h"
#include "tools/scene/SceneTiles.h"
#include "tools/view/ViewPage.h"
#include "util/Status.h"

// The entries of the page of `view`, from what they show.
namespace tools {

// Fills in what the file at `path` holds, its goblins included. Fails for a file that cannot be
// loaded.
morvane::Status readDocument(const std::string& path, morvane::PsdDocument& document,
                             ViewItem& item);

// An entry for a file; `shown` is its name as the user wrote it.
ViewItem fileItem(const std::string& shown);

// An entry for a tile of the open scene, but for its texture.
ViewItem tileItem(const SceneTile& tile, const std::string& scene);

// Gives a file's entry the surface, the place and the unit that its tile has in the open scene.
void addSurface(const SceneTile& tile, ViewItem& item);

}  // namespace tools

#endif  // MORVANE_TOOLS_CLI_VIEWITEMS_H_

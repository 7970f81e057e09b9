#ifndef MORVANE_TOOLS_TILESELECTION_H_
#define MORVANE_TOOLS_TILESELECTION_H_

#include <string>
#include <vector>

namespace tools {

// Selects the nodes named (names or patterns), or without names every tile of the open scene.
// False, with the reason in `error` and told on standard error, unless all were found. `scene` is
// for messages.
bool selectTiles(const std::string& scene, std::vector<std::string> names, std::string& error);

}  // namespace tools

#endif  // MORVANE_TOOLS_TILESELECTION_H_

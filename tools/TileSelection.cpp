#include "tools/TileSelection.h"

#include "host/Host.h"
#include "tools/Text.h"

namespace tools {
namespace {

// A pattern means transforms: the shapes and materials that are often named like their tiles are no
// tiles.
std::string selectionScript(const std::string& name) {
  if (name.find_first_of("*?") == std::string::npos) return "select -add " + melString(name);
  return "{ string $found[] = `ls -long -type \"transform\" " + melString(name) + "`; " +
         "if (size($found) == 0) error " + melString("No transform matches name: " + name) +
         "; select -add $found; }";
}

bool fail(const std::string& scene, const std::string& reason, std::string& error) {
  error = reason;
  complain(printable(scene) + ": " + reason);
  return false;
}

}  // namespace

bool selectTiles(const std::string& scene, std::vector<std::string> names, std::string& error) {
  if (names.empty()) {
    for (const auto& tile : host::texturedTopLevelTransforms()) names.push_back(tile.path);
  }
  if (names.empty()) {
    return fail(scene,
                "no tile found: no top-level transform has a mesh whose colour comes from a file "
                "texture; name the nodes to export",
                error);
  }
  if (!host::execute("select -clear", "selection")) return false;
  for (const std::string& name : names) {
    if (host::execute(selectionScript(name), "node " + name)) continue;
    return fail(scene,
                "cannot select " + printable(name) +
                    ", so nothing was exported; name transforms of the scene, or none for all",
                error);
  }
  return true;
}

}  // namespace tools

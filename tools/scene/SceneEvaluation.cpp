#include "tools/scene/SceneEvaluation.h"

#include <optional>

#include "host/history/History.h"
#include "host/scene/Connections.h"
#include "host/scene/Dag.h"
#include "host/scene/Node.h"
#include "tile/GoblinExtraction.h"

namespace tools {
namespace {

constexpr int kLongestChain = 100;  // of connections; a longer one leads back to itself

// What a transform's matrix is made of.
constexpr const char* kPlacement[] = {"translate",   "rotate",
                                      "scale",       "shear",
                                      "rotateOrder", "rotateAxis",
                                      "rotatePivot", "rotatePivotTranslate",
                                      "scalePivot",  "scalePivotTranslate"};

std::string named(const host::NodePtr& node) {
  return node->name() + " (" + node->type().name() + "), which is not evaluated";
}

// Whether a plug is a value that somebody has set, rather than one that its node works out.
bool isGiven(const host::Plug& plug) {
  const std::string& type = plug.node()->type().name();
  return type == "transform" || type == "joint" || plug.attribute()->isDynamic ||
         plug.node()->values.find(plug.path()) != nullptr || host::sourceOf(plug).has_value();
}

// The node that works out the value of a plug, or of one of its children; null when it is given.
host::NodePtr driverOf(const host::Plug& plug, int longestChain) {
  const std::optional<host::Plug> source = host::sourceOf(plug);
  if (source) {
    return longestChain == 0 || !isGiven(*source) ? source->node()
                                                  : driverOf(*source, longestChain - 1);
  }
  for (const host::Plug& child : plug.children()) {
    host::NodePtr driver = driverOf(child, longestChain);
    if (driver != nullptr) return driver;
  }
  return nullptr;
}

host::NodePtr driverOfPlacement(const host::NodePtr& transform) {
  for (const char* const name : kPlacement) {
    const auto plug = host::Plug::find(transform, name);
    host::NodePtr driver = plug ? driverOf(*plug, kLongestChain) : nullptr;
    if (driver != nullptr) return driver;
  }
  return nullptr;
}

Unevaluated unevaluatedMesh(const host::DagPath& mesh) {
  const auto stop = host::unevaluatedBy(mesh.node());
  if (!stop) return Unevaluated();
  return {mesh.fullName() + " is made by " + stop->node + " (" + stop->type + "), " +
              (stop->reason.empty() ? "which is not evaluated" : "but " + stop->reason),
          stop->advice};
}

// Of the transforms from the goblin's own up to below the tile. The tile's own place plays no part,
// unless the goblin stands directly below it.
Unevaluated unevaluatedPlace(const host::DagPath& tile, const host::DagPath& goblin) {
  host::DagPath path = goblin.parent();
  do {
    const host::NodePtr driver = driverOfPlacement(path.node());
    if (driver != nullptr) {
      return {path.fullName() + " is driven by " + named(driver),
              "break that connection in Maya, or bake it"};
    }
    path = path.parent();
  } while (path.fullName().size() > tile.fullName().size());
  return Unevaluated();
}

}  // namespace

Unevaluated unevaluatedBelow(const MDagPath& tile) {
  bool isGoblin = false;
  for (morvane::MeshWalk walk(tile); !walk.isDone(); walk.next()) {
    const host::DagPath& mesh = *walk.path().hostPath();
    Unevaluated found = unevaluatedMesh(mesh);
    if (found.what.empty() && isGoblin) found = unevaluatedPlace(*tile.hostPath(), mesh);
    if (!found.what.empty()) return found;
    isGoblin = true;
  }
  return Unevaluated();
}

}  // namespace tools

#include "tools/scene/SceneEvaluation.h"

#include <maya/MItDag.h>

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

#include "host/history/History.h"
#include "host/scene/Connections.h"
#include "host/scene/Dag.h"
#include "host/scene/Node.h"
#include "host/state/SceneGaps.h"
#include "tile/GoblinExtraction.h"
#include "tile/MaterialLookup.h"

namespace tools {
namespace {

constexpr int kLongestChain = 100;  // of connections; a longer one leads back to itself

// What a transform's matrix is made of.
constexpr const char* kPlacement[] = {"translate",   "rotate",
                                      "scale",       "shear",
                                      "rotateOrder", "rotateAxis",
                                      "rotatePivot", "rotatePivotTranslate",
                                      "scalePivot",  "scalePivotTranslate"};

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

Unevaluated drivenPart(const std::string& name, const host::NodePtr& driver,
                       const std::string& advice) {
  const host::SceneGap* const gap = host::SceneGaps::current().at(*driver);
  if (gap != nullptr) return {name + ' ' + gap->text, gap->advice};
  return {name + " is driven by " + driver->name() + " (" + driver->type().name() +
              "), which is not evaluated",
          advice};
}

// One whose place holders stand for what its file holds.
bool isReference(const host::NodePtr& node) {
  return node->type().name() == "reference";
}

// What is otherwise in Maya, each text once.
class Parts {
 public:
  void add(Unevaluated part) {
    if (seen_.insert(part.what).second) parts_.push_back(std::move(part));
  }

  void addMesh(const host::DagPath& mesh) {
    const auto stop = host::unevaluatedBy(mesh.node());
    if (stop) {
      add({mesh.fullName() + " is made by " + stop->node + " (" + stop->type + "), " +
               (stop->reason.empty() ? "which is not evaluated" : "but " + stop->reason),
           stop->advice});
    }
    for (const auto& connection : mesh.node()->connections.intoAtOrBelow("pnts")) {
      const host::NodePtr driver = driverOf(connection->destination, kLongestChain);
      if (driver != nullptr) add(drivenPart(mesh.fullName(), driver, kDrivenAdvice));
    }
  }

  // Of the transforms from the goblin's own up to below the tile. The tile's own place plays no
  // part, unless the goblin stands directly below it.
  void addPlace(const host::DagPath& tile, const host::DagPath& goblin) {
    host::DagPath path = goblin.parent();
    do {
      const host::NodePtr driver = driverOfPlacement(path.node());
      if (driver != nullptr) add(drivenPart(path.fullName(), driver, kDrivenAdvice));
      path = path.parent();
    } while (path.fullName().size() > tile.fullName().size());
  }

  void addGap(const host::NodePtr& node, const std::string& name) {
    const host::SceneGap* const gap = host::SceneGaps::current().at(*node);
    if (gap != nullptr) add({name + ' ' + gap->text, gap->advice});
  }

  void addGapsBelow(const MDagPath& tile) {
    MItDag walk;
    for (walk.reset(tile, MItDag::kDepthFirst); !walk.isDone(); walk.next()) {
      MDagPath path;
      walk.getPath(path);
      addGap(path.hostPath()->node(), path.hostPath()->fullName());
    }
  }

  void addShading(const MDagPath& mesh) {
    const host::DagPath& path = *mesh.hostPath();
    for (const auto& connection : path.node()->connections.outOfAtOrBelow("instObjGroups"))
      if (isReference(connection->destination.node()))
        addGap(connection->destination.node(), path.fullName());
    for (const MObject& object : morvane::shadingNodes(mesh)) {
      const host::NodePtr node = std::dynamic_pointer_cast<host::Node>(object.hostObject());
      addGap(node, isReference(node) ? path.fullName() : "its shading " + node->name());
      const auto file = host::Plug::find(node, "fileTextureName");
      const host::NodePtr driver = file ? driverOf(*file, kLongestChain) : nullptr;
      if (driver != nullptr) add(drivenPart("its texture " + node->name(), driver, kDrivenAdvice));
    }
  }

  std::vector<Unevaluated> take() { return std::move(parts_); }

 private:
  static constexpr const char* kDrivenAdvice = "break that connection in Maya, or bake it";

  std::vector<Unevaluated> parts_;
  std::set<std::string> seen_;
};

}  // namespace

std::vector<Unevaluated> unevaluatedParts(const MDagPath& tile) {
  Parts parts;
  bool isGoblin = false;
  for (morvane::MeshWalk walk(tile); !walk.isDone(); walk.next()) {
    const MDagPath mesh = walk.path();
    parts.addMesh(*mesh.hostPath());
    if (isGoblin)
      parts.addPlace(*tile.hostPath(), *mesh.hostPath());
    else
      parts.addShading(mesh);
    isGoblin = true;
  }
  parts.addGapsBelow(tile);
  return parts.take();
}

Unevaluated summaryOf(const std::vector<Unevaluated>& parts, std::size_t most) {
  if (parts.empty()) return Unevaluated();
  Unevaluated summary = parts[0];
  most = std::min(most, parts.size());
  for (std::size_t i = 1; i < most; ++i) summary.what += "; " + parts[i].what;
  if (parts.size() > most)
    summary.what += ", and " + std::to_string(parts.size() - most) + " more like this";
  return summary;
}

bool lacksShading(const MDagPath& tile) {
  const morvane::MeshWalk walk(tile);
  if (walk.isDone()) return false;
  Parts parts;
  parts.addShading(walk.path());
  return !parts.take().empty();
}

}  // namespace tools

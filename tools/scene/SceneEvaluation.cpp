#include "tools/scene/SceneEvaluation.h"

#include <maya/MItDag.h>

#include <algorithm>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "host/evaluation/GraphEvaluation.h"
#include "host/history/History.h"
#include "host/scene/ComputedValues.h"
#include "host/scene/Dag.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"
#include "host/scene/Values.h"
#include "host/state/HostState.h"
#include "host/state/SceneGaps.h"
#include "tile/GoblinExtraction.h"
#include "tile/MaterialLookup.h"

namespace tools {
namespace {

// What a transform's matrix is made of.
constexpr const char* kPlacement[] = {"translate",
                                      "rotate",
                                      "scale",
                                      "shear",
                                      "rotateOrder",
                                      "rotateAxis",
                                      "rotatePivot",
                                      "rotatePivotTranslate",
                                      "scalePivot",
                                      "scalePivotTranslate",
                                      "offsetParentMatrix"};

using Trouble = std::optional<host::EvaluationTrouble>;

Trouble troubleOf(const host::Plug& plug) {
  return plug.node()->scene()->flowing->troubleOf(plug);
}

Trouble troubleOfPlacement(const host::NodePtr& transform) {
  if (!transform->connections.hasInputs()) return std::nullopt;
  for (const char* const name : kPlacement) {
    const auto plug = host::Plug::find(transform, name);
    Trouble trouble = plug ? troubleOf(*plug) : std::nullopt;
    if (trouble) return trouble;
  }
  return std::nullopt;
}

// A mesh keeps its points, whatever is connected into them.
Trouble troubleOfPoint(const host::Plug& point) {
  Trouble trouble = troubleOf(point);
  const auto source = host::sourceOf(point);
  if (trouble || !source) return trouble;
  for (const host::Plug& axis :
       point.children().empty() ? std::vector<host::Plug>{point} : point.children()) {
    const host::AttributeValue kept = host::computedValue(axis);
    const double* const number = std::get_if<double>(&kept);
    if (number && host::readNumber(axis) != *number)
      return host::EvaluationTrouble{source->node(), "points do not follow connections"};
  }
  return std::nullopt;
}

// Names the node and what keeps it from being evaluated, such as "b_translateX (animCurveTL), which
// is not evaluated".
std::string stopped(const std::string& node, const std::string& type, const std::string& reason) {
  return node + " (" + type + "), " + (reason.empty() ? "which is not evaluated" : "but " + reason);
}

Unevaluated drivenPart(const std::string& name, const host::EvaluationTrouble& trouble) {
  const host::Node& driver = *trouble.node;
  const host::SceneGap* const gap = host::HostState::current().gaps.at(driver);
  if (gap != nullptr) return {name + ' ' + gap->text, gap->advice};
  return {name + " is driven by " + stopped(driver.name(), driver.type().name(), trouble.reason),
          "break that connection in Maya, or bake it"};
}

// An edit whose place holders stand for content of its file.
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
      add({mesh.fullName() + " is made by " + stopped(stop->node, stop->type, stop->reason),
           stop->advice});
    }
    for (const auto& connection : mesh.node()->connections.intoAtOrBelow("pnts")) {
      const Trouble trouble = troubleOfPoint(connection->destination);
      if (trouble) add(drivenPart(mesh.fullName(), *trouble));
    }
  }

  // Looks at the transforms from the goblin's own up to the one below the tile. The tile's own
  // position matters only to a goblin directly below it.
  void addPlace(const host::DagPath& tile, const host::DagPath& goblin) {
    host::DagPath path = goblin.parent();
    do {
      const Trouble trouble = troubleOfPlacement(path.node());
      if (trouble) add(drivenPart(path.fullName(), *trouble));
      path = path.parent();
    } while (path.fullName().size() > tile.fullName().size());
  }

  void addGap(const host::NodePtr& node, const std::string& name) {
    const host::SceneGap* const gap = host::HostState::current().gaps.at(*node);
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
      const Trouble trouble = file ? troubleOf(*file) : std::nullopt;
      if (trouble) add(drivenPart("its texture " + node->name(), *trouble));
    }
  }

  std::vector<Unevaluated> take() { return std::move(parts_); }

 private:
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

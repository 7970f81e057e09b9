#include "host/file/SceneProblems.h"
#include "host/file/SceneReader.h"
#include "host/mesh/MeshData.h"
#include "host/mesh/MeshPrimitives.h"
#include "host/scene/Connections.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"
#include "host/scene/Values.h"
#include "host/text/Messages.h"

namespace host {
namespace {

constexpr int kLongestHistory = 1000;

// What makes the shape: nodes that hand it on unchanged are stepped over.
NodePtr makerOf(const NodePtr& mesh) {
  NodePtr node = mesh;
  const char* input = "inMesh";
  for (int i = 0; i < kLongestHistory; ++i) {
    const auto plug = Plug::find(node, input);
    const auto source = plug ? sourceOf(*plug) : std::nullopt;
    if (!source) {
      return node == mesh ? nullptr : node;
    }
    node = source->node();
    if (!node->type().isA("groupParts")) {
      return node;
    }
    input = "inputGeometry";
  }
  return nullptr;
}

std::optional<double> setNumber(const NodePtr& node, std::string_view shortName,
                                std::string_view longName) {
  for (const std::string_view name : {shortName, longName}) {
    const auto plug = Plug::find(node, name);
    if (plug && node->values.find(plug->path()) != nullptr) {
      return readNumber(*plug);
    }
  }
  return std::nullopt;
}

void note(SceneProblem::Kind kind, const std::string& text) {
  mel::showWarning(text);
  SceneProblems::current().add({kind, "", 0, text});
}

// `points` is how many points all primitives may still have; a few words of a file ask for many.
void evaluate(const NodePtr& node, int& points) {
  const NodePtr maker = makerOf(node);
  if (maker == nullptr) {
    return;
  }
  const std::string what = "mesh '" + Scene::current().displayName(node) + "' is made by '" +
                           maker->name() + "' (" + maker->type().name() + ")";
  if (!isPrimitive(maker->type().name())) {
    note(SceneProblem::Kind::kNotice,
         what + ", which is not evaluated: it has no geometry; delete its history in Maya");
    return;
  }
  const std::string problem = points <= 0
                                  ? "the primitives before it have too many points"
                                  : evaluatePrimitive(
                                        maker->type().name(),
                                        [&](std::string_view shortName, std::string_view longName) {
                                          return setNumber(maker, shortName, longName);
                                        },
                                        *node->mesh);
  points -= node->mesh->pointCount();
  if (!problem.empty()) {
    note(SceneProblem::Kind::kNotice,
         what + ", but " + problem + ": it has no geometry; delete its history in Maya");
  }
}

}  // namespace

void evaluateHistories() {
  int points = kMostPrimitivePoints;
  for (const auto& [serial, node] : Scene::current().nodes()) {
    if (node->mesh == nullptr) {
      continue;
    }
    if (node->mesh->storedFaceStarts().size() <= 1) {
      evaluate(node, points);
    } else if (!node->mesh->problem().empty()) {
      note(SceneProblem::Kind::kDamage, "mesh '" + Scene::current().displayName(node) +
                                            "' has no usable faces: " + node->mesh->problem());
    }
  }
}

}  // namespace host

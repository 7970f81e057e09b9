#include "host/history/History.h"

#include "host/file/SceneReader.h"
#include "host/mesh/MeshData.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"
#include "host/state/SceneProblems.h"
#include "host/text/Messages.h"

namespace host {
namespace {

void note(SceneProblem::Kind kind, const std::string& text) {
  mel::showWarning(text);
  SceneProblems::current().add({kind, "", 0, text});
}

void noteHistory(const NodePtr& node, const MeshHistory& history) {
  const std::string mesh = "mesh '" + Scene::current().displayName(node) + "'";
  if (!history.isMade()) {
    note(SceneProblem::Kind::kNotice,
         mesh + " is made by '" + history.stopNode + "' (" + history.stopType + ")" +
             (history.stopReason.empty() ? ", which is not evaluated"
                                         : ", but " + history.stopReason) +
             ": it has " + (node->mesh->pointCount() == 0 ? "no" : "the older") + " geometry; " +
             history.stopAdvice);
  }
  for (const std::string& text : history.notes)
    note(SceneProblem::Kind::kNotice, mesh + ": " + text);
}

void noteStored(const NodePtr& node) {
  if (node->mesh != nullptr && node->history == nullptr && !node->mesh->problem().empty() &&
      node->mesh->storedFaceStarts().size() > 1) {
    note(SceneProblem::Kind::kDamage, "mesh '" + Scene::current().displayName(node) +
                                          "' has no usable faces: " + node->mesh->problem());
  }
}

}  // namespace

void refreshSceneHistories() {
  refreshHistories(noteHistory);
}

void evaluateSceneHistories() {
  evaluateHistories(noteHistory);
  for (const auto& [serial, node] : Scene::current().nodes()) noteStored(node);
}

}  // namespace host

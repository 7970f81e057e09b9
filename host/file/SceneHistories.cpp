#include "host/history/History.h"

#include "host/file/SceneReader.h"
#include "host/mesh/MeshData.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"
#include "host/state/HostState.h"
#include "host/text/Messages.h"

namespace host {
namespace {

void note(HostState& state, SceneProblem::Kind kind, const std::string& text) {
  mel::showWarning(text);
  state.problems.add({kind, "", 0, text});
}

void noteHistory(HostState& state, const NodePtr& node, const MeshHistory& history) {
  const std::string mesh = "mesh '" + state.scene.displayName(node) + "'";
  if (!history.isMade()) {
    note(state, SceneProblem::Kind::kNotice,
         mesh + " is made by '" + history.stopNode + "' (" + history.stopType + ")" +
             (history.stopReason.empty() ? ", which is not evaluated"
                                         : ", but " + history.stopReason) +
             ": it has " + (node->mesh->pointCount() == 0 ? "no" : "the older") + " geometry; " +
             history.stopAdvice);
  }
  for (const std::string& text : history.notes)
    note(state, SceneProblem::Kind::kNotice, mesh + ": " + text);
}

void noteStored(HostState& state, const NodePtr& node) {
  if (node->mesh != nullptr && node->history == nullptr && !node->mesh->problem().empty() &&
      node->mesh->storedFaceStarts().size() > 1) {
    note(state, SceneProblem::Kind::kDamage,
         "mesh '" + state.scene.displayName(node) +
             "' has no usable faces: " + node->mesh->problem());
  }
}

}  // namespace

void refreshSceneHistories(HostState& state) {
  refreshHistories(state.scene, [&state](const NodePtr& node, const MeshHistory& history) {
    noteHistory(state, node, history);
  });
}

void evaluateSceneHistories(HostState& state) {
  evaluateHistories(state.scene, [&state](const NodePtr& node, const MeshHistory& history) {
    noteHistory(state, node, history);
  });
  for (const auto& [serial, node] : state.scene.nodes()) noteStored(state, node);
}

}  // namespace host

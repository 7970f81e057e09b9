#include "host/history/History.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

#include "host/history/Evaluation.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"

namespace host {

namespace {

void keep(Scene& scene, const NodePtr& mesh, MeshHistory history) {
  mesh->history = std::make_unique<MeshHistory>(std::move(history));
  scene.changes.dependentMeshes.insert(mesh->serial());
}

// The meshes to look at, in the order of their creation. A pass over the whole scene after each
// command would take quadratic time.
std::set<std::size_t> changedOrDependent(const Scene& scene,
                                         const std::vector<std::size_t>& changed) {
  std::set<std::size_t> serials = scene.changes.dependentMeshes;
  serials.insert(changed.begin(), changed.end());
  return serials;
}

}  // namespace

void evaluateHistories(Scene& scene, const HistoryReport& report) {
  scene.changes.take();
  Evaluation evaluation;
  for (const auto& [serial, node] : scene.nodes()) {
    if (node->history == nullptr && Evaluation::hasHistory(node)) {
      keep(scene, node, evaluation.evaluate(node));
      report(node, *node->history);
    }
  }
}

void refreshHistories(Scene& scene, const HistoryReport& report) {
  if (scene.changes.isEmpty()) return;
  std::vector<std::size_t> changed = scene.changes.take();
  std::sort(changed.begin(), changed.end());
  Evaluation evaluation(changed);
  for (const std::size_t serial : changedOrDependent(scene, changed)) {
    const NodePtr node = scene.nodeAtOrAfter(serial);
    if (node == nullptr || node->serial() != serial) continue;
    const bool isNew =
        node->history == nullptr && std::binary_search(changed.begin(), changed.end(), serial);
    if ((isNew || (node->history != nullptr && !evaluation.isFresh(*node))) &&
        Evaluation::hasHistory(node)) {
      MeshHistory history = evaluation.evaluate(node);
      report(node, history);
      if (history.isMade() || node->history == nullptr || !node->history->isMade())
        keep(scene, node, std::move(history));
    }
  }
}

std::optional<Unevaluated> unevaluatedBy(const NodePtr& mesh) {
  if (mesh->history == nullptr || mesh->history->isMade()) return std::nullopt;
  return Unevaluated{mesh->history->stopNode, mesh->history->stopType, mesh->history->stopReason,
                     mesh->history->stopAdvice};
}

}  // namespace host
